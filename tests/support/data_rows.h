#pragma once

#include <string>
#include <vector>

namespace tarvyle::support {

// The rows of a file of tests/data: lines split at tabs, without those that begin with '#'. A file
// that is not there or holds no row fails the test.
std::vector<std::vector<std::string>> DataRows(const std::string& name);

}  // namespace tarvyle::support
