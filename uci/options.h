#pragma once

#include <string_view>

// What the GUI may set.

namespace tarvyle::uci {

// Gives all options the values that they have at the start.
void ResetOptions();

// Declares every option.
void SayOptions();

// Obeys what follows "setoption". A name or value that does not fit is reported and changes
// nothing.
void ObeySetOption(std::string_view words);

}  // namespace tarvyle::uci
