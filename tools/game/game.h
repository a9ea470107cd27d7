#pragma once

#include <CLI/App.hpp>

namespace tarvyle::tools {

// Adds the command `game`: saved games for people and for other programs.
void AddGame(CLI::App& app);

}  // namespace tarvyle::tools
