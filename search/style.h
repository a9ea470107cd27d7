#pragma once

namespace tarvyle {

// How the nodes of the principal variation probe their moves, and whether others reduce late ones.
enum PlayStyle : int { kKnowledge1, kKnowledge2, kKnowledge3 };

// The style in use, kKnowledge3 at the start; set by configuration and "style".
extern int PLAY_STYLE;

// Names of the play styles, in the order of PLAY_STYLE.
extern const char* const play_style_str[3];

// Selects a play style by its exact name. False, changing nothing, for null or an unknown name.
bool load_play_style(const char* name);

// Name of the current style.
const char* print_play_str();

}  // namespace tarvyle
