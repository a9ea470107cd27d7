#include "search/style.h"

#include <cstring>

namespace tarvyle {

const char* const play_style_str[3] = {"knowledge1", "knowledge2", "knowledge3"};

bool load_play_style(const char* name) {
  if (name == nullptr) return false;
  for (int style = 0; style < 3; ++style) {
    if (std::strcmp(name, play_style_str[style]) != 0) continue;
    PLAY_STYLE = style;
    return true;
  }
  return false;
}

const char* print_play_str() { return play_style_str[PLAY_STYLE]; }

}  // namespace tarvyle
