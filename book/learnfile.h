#pragma once

namespace tarvyle {

// Adds the records of a learn file to the table. Returns false, with the table empty, when the file
// cannot be opened, is no regular file, or is damaged anywhere: the whole file is refused then.
bool LoadLearnTable(const char* path);

// Writes the whole table to a file, bucket by bucket, newest node first, and has it on disk when
// it returns true. False when the file cannot be opened or written in full.
bool SaveLearnTable(const char* path);

}  // namespace tarvyle
