#pragma once

// Where the program's own files live, and how their names are built.

namespace tarvyle {

inline constexpr int kPathSize = 1024;  // bytes of `prog_dir` and of every path buffer

// Directory part of the program's own path with its trailing separator, or "" (current directory).
// Written once by SetProgDir.
extern char prog_dir[kPathSize];

// Derives `prog_dir` from the program's own path (argv[0]; may be null). Cuts after the last '/',
// or, when there is none, after the last '\\'; without either the directory is empty.
void SetProgDir(const char* own_path);

// Joins two texts into one of eight static buffers of kPathSize bytes, used in rotation: the result
// stays valid until eight further joins. A text too long for the buffer is cut.
const char* ConCat(const char* first, const char* second);

// The same with `prog_dir` as the first part.
const char* ConCat(const char* file_name);

// Size in bytes of the regular file at `path`. Anything that cannot be opened, or is no regular
// file, is reported on standard error and counts as 0.
long file_size(const char* path);

}  // namespace tarvyle
