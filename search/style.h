#pragma once

namespace tarvyle {

// How the nodes of the principal variation probe their moves, and whether others reduce late ones.
enum PlayStyle : int {
  kKnowledge1,  // probes from one depth less on, root moves searched fully anyway; no reductions
  kKnowledge2,  // probes once; verifies a move that fails low, the best reply to it left out
  kKnowledge3,  // probes from one depth less on; verifies so, at half the depth
};

// The style in use, kKnowledge3 at the start; set by configuration and "style".
extern int PLAY_STYLE;

// Names of the play styles, in the order of PLAY_STYLE.
extern const char* const play_style_str[3];

// Selects a play style by its exact name. False, changing nothing, for null or an unknown name.
bool load_play_style(const char* name);

// Name of the current style.
const char* print_play_str();

}  // namespace tarvyle
