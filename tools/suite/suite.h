#pragma once

#include <CLI/App.hpp>

namespace tarvyle::tools {

// Adds the command `suite`: how many positions of a test suite the engine solves.
void AddSuite(CLI::App& app);

}  // namespace tarvyle::tools
