#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Files that grow, each time by something whole. Whatever fails leaves its reason in `errno`.

namespace tarvyle {

// Opens a file to add to its end, or makes it, and returns its descriptor; -1 when that fails.
// Never waits for the other end of a pipe.
int OpenToAppend(const std::string& path);

// Takes the open file for this process alone as long as it is open. False when that fails, with
// EWOULDBLOCK when another process has it.
bool LockFile(int file);

// Adds all bytes by one write, so that programs which share the file do not mix theirs. A part that
// is all the disk takes is a failure (ENOSPC) and stays.
bool AppendAtOnce(int file, std::string_view bytes);

// The same, and has them on the disk itself. A failure leaves the file, of which `size` is told, as
// it was.
bool AppendOnDisk(int file, std::size_t size, std::string_view bytes);

// Opens the plain file at `path`, or makes it, adds all bytes by one write and closes it.
bool AppendToFile(const std::string& path, std::string_view bytes);

}  // namespace tarvyle
