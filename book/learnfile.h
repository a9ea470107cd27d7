#pragma once

namespace tarvyle {

enum class LearnFileState {
  kLoaded,
  kMissing,     // nothing is there, or no regular file
  kDamaged,     // some record is not sound: the whole file is refused
  kUnreadable,  // its content could not be had, for want of memory say: `errno` tells why
};

// Adds the records of a learn file to the table, which is empty unless that succeeds.
LearnFileState ReadLearnFile(const char* path);

// The same; whether the file was loaded.
bool LoadLearnTable(const char* path);

// Writes the whole table to a file, bucket by bucket, newest node first, and has it on disk when
// it returns true. False when the file cannot be opened or written in full.
bool SaveLearnTable(const char* path);

}  // namespace tarvyle
