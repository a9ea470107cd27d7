#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Files that grow, each time by something whole. Whatever fails leaves its reason in `errno`.
//
// Who adds to a file, or reads it to put another in its place, has it alone meanwhile; else what
// one process adds goes down with the file that another one has replaced.

namespace tarvyle {

// Opens a file to add to its end, or makes it, and returns its descriptor; -1 when that fails.
// Never waits for the other end of a pipe.
int OpenToAppend(const std::string& path);

// Takes the open file for this process alone as long as it is open. False when that fails, with
// EWOULDBLOCK when another process has it.
bool LockFile(int file);

// Whether the open file is still the one at `path`: another may have been renamed over it, and what
// is added here is lost then.
bool IsStillAt(int file, const std::string& path);

// Opens the file at `path` to add to its end, or makes it, and takes it for this process alone: its
// descriptor, or -1, with EWOULDBLOCK when another process has it.
int OpenAloneToAppend(const std::string& path);

// Takes the plain file at `path` for this process alone: a descriptor that is held for it, or -1,
// with errno 0 where there is none to take, and with EWOULDBLOCK when another process has it.
int HoldFile(const std::string& path);

// Adds all bytes by one write, so that programs which share the file do not mix theirs. A part that
// is all the disk takes is a failure (ENOSPC) and stays.
bool AppendAtOnce(int file, std::string_view bytes);

// The same, and has them on the disk itself. A failure leaves the file, of which `size` is told, as
// it was.
bool AppendOnDisk(int file, std::size_t size, std::string_view bytes);

// Opens the plain file at `path`, or makes it, adds all bytes by one write and closes it. Waits a
// moment for a process that has it for itself; fails with EWOULDBLOCK when that keeps it, and with
// errno 0 for what can be opened and is no plain file.
bool AppendToFile(const std::string& path, std::string_view bytes);

}  // namespace tarvyle
