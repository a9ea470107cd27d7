#pragma once

#include <string_view>

namespace tarvyle::fuzz {

// Obeys the input line by line, as the command loop does, inside an empty folder that is emptied
// again; lines that could reach beyond that folder are left out. Ends at "quit" and where the
// process would end on purpose, and when the nodes are used up.
void ObeyLines(std::string_view input);

}  // namespace tarvyle::fuzz
