#pragma once

#include <CLI/App.hpp>

namespace tarvyle::tools {

// Adds the command `learn`: what learn files hold, and bringing several together.
void AddLearn(CLI::App& app);

}  // namespace tarvyle::tools
