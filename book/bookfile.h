#pragma once

namespace tarvyle {

// Reads a book file into the learn table. False, having entered nothing, when it cannot be read or
// is no regular file. A wrong move is told (base/message.h) with the number of its line, counted
// without comments and empty lines, and the rest of that line is dropped. The game is as before
// afterwards; the repetition counters have seen every line.
bool ReadLibFile(const char* path);

}  // namespace tarvyle
