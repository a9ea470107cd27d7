#pragma once

#include <string_view>

namespace tarvyle {

// Writes a file that somebody named in a command, through links to where they lead. False when that
// fails, with the reason in `errno`: then there is no half file, and an older one of this name is
// still whole; but only where the folder takes a new file beside it.
bool WriteNamedFile(const char* path, std::string_view content);

}  // namespace tarvyle
