#pragma once

#include "search/settings.h"  // IWYU pragma: export

// Play styles by name.

namespace tarvyle {

// Names of the play styles, in the order of PLAY_STYLE.
extern const char* const play_style_str[3];

// Selects a play style by its exact name. False, changing nothing, for null or an unknown name.
bool load_play_style(const char* name);

// Name of the current style.
const char* print_play_str();

}  // namespace tarvyle
