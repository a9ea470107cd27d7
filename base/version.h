#pragma once

namespace tarvyle {

// The project's version, "1.1.0": what CMakeLists.txt says when the program is built.
extern const char* const kVersion;

}  // namespace tarvyle
