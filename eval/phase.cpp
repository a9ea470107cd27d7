#include "eval/phase.h"

#include <algorithm>

#include "position/record.h"
#include "position/types.h"

namespace tarvyle {

namespace {

// By piece code. A lone bishop weighs more than a lone knight, deliberately.
constexpr int kWeight[7] = {0, 0, 3, 4, 6, 14, 0};

// The phase is 0.0 up to the weight of one minor piece, and 1.0 from that of a full set on.
constexpr int kOneMinorPiece = kWeight[Bishop];
constexpr int kFullWeight = 40;

// By weight. The truncations of the evaluation hang on the last bit of this one division.
struct PhaseTable {
  double phase[kFullWeight + 1];
  constexpr PhaseTable() : phase() {
    for (int weight = 0; weight <= kFullWeight; ++weight) {
      phase[weight] = weight <= kOneMinorPiece ? 0.0 : weight / double{kFullWeight};
    }
  }
};
constexpr PhaseTable kPhases;

}  // namespace

int OpponentWeight(int colour) {
  const auto& count = g.piece_cnt[1 - colour];
  return kWeight[Queen] * count[Queen] + kWeight[Rook] * count[Rook] +
         kWeight[Knight] * count[Knight] + kWeight[Bishop] * count[Bishop];
}

double Stage(int colour) { return kPhases.phase[std::min(OpponentWeight(colour), kFullWeight)]; }

int stage_nb_int(int colour) {
  static constexpr int kByMinors[12] = {0, 0, 1, 3, 4, 4, 4, 4, 4, 4, 4, 4};
  static constexpr int kByBishops[14] = {0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  const int knights = g.piece_cnt[1 - colour][Knight];
  const int bishops = g.piece_cnt[1 - colour][Bishop];
  // A set-up may place more pieces than the tables name; the last entries hold for those.
  return std::min(4,
                  kByMinors[std::min(knights + bishops, 11)] + kByBishops[std::min(bishops, 13)]);
}

}  // namespace tarvyle
