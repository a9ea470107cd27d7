#pragma once

#include <string>
#include <vector>

namespace tarvyle::tools {

// Checks every record of learn files and prints what is wrong: damage, and what the engine's reader
// accepts but no engine writes (a text that is no position or not in the engine's own form, a key,
// side or length that does not belong to it, a depth or score that no search gives, a position for
// the second time). Changes the current position. Throws CheckFailed at the end when anything was
// wrong, std::runtime_error for a file that cannot be read.
void VerifyFiles(const std::vector<std::string>& files);

}  // namespace tarvyle::tools
