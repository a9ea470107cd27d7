#pragma once

namespace tarvyle {

// Prints the help text of the console.
void PrintHelp();

}  // namespace tarvyle
