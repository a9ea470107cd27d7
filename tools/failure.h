#pragma once

#include <stdexcept>

namespace tarvyle::tools {

// What a command was asked to check does not hold: the program ends with status 1. Any other
// exception means that it could not do its work (status 2).
class CheckFailed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace tarvyle::tools
