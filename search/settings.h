#pragma once

// What the configuration and the commands set for every search to come.

namespace tarvyle {

inline constexpr int kDefaultLimit = 750;  // 1/100 s

// How the nodes of the principal variation probe their moves, and whether others reduce late ones.
enum PlayStyle : int {
  // From depth 3 on probes twice, at one less and in full depth, below once. Root moves are
  // searched fully whatever their probes say. Other nodes reduce nothing.
  kKnowledge1,
  // Probes once. Verifies a move that fails low: searches it again, the best reply to it left out.
  kKnowledge2,
  // Probes at one depth less and in full depth. Verifies likewise, at half the depth.
  kKnowledge3,
};

// Lives as long as the process. Others than this folder write `is_rnd_search` themselves.
struct SearchSettings {
  int limit_time = kDefaultLimit;  // allowance for one move, 1/100 s; set through SetAllowance
  int PLAY_STYLE = kKnowledge3;    // the style in use; set through load_play_style
  int is_rnd_search = 0;  // 1: the randomised root search is on; set by configuration and commands

  bool operator==(const SearchSettings&) const = default;
};
inline SearchSettings search_settings;

inline constexpr auto& limit_time = search_settings.limit_time;
inline constexpr auto& PLAY_STYLE = search_settings.PLAY_STYLE;
inline constexpr auto& is_rnd_search = search_settings.is_rnd_search;

}  // namespace tarvyle
