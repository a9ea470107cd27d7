#pragma once

#include <string>

// Whole files, read so that what is missing and what cannot be read are told apart.

namespace tarvyle {

enum class FileState {
  kRead,
  kMissing,     // nothing is there, or something that is no regular file
  kUnreadable,  // a file is there, and its content could not be had: `errno` says why
};

// Reads all bytes of the regular file at `path` into `content`, which is empty unless that
// succeeds. Never waits for a pipe, and never throws: want of memory is ENOMEM.
FileState ReadFile(const char* path, std::string& content);

}  // namespace tarvyle
