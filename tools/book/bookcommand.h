#pragma once

#include <CLI/App.hpp>

namespace tarvyle::tools {

// Adds the command `book`: checking, measuring and making book files.
void AddBook(CLI::App& app);

}  // namespace tarvyle::tools
