// Position texts: set up or refused, and what every accepted position must stand: lists of moves,
// all of them made and taken back, the evaluation, and its own text.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "book/epd.h"
#include "eval/attackmap.h"
#include "eval/evaluate.h"
#include "frontend/display.h"
#include "fuzz/harness.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/soundness.h"
#include "position/types.h"

namespace {

using namespace tarvyle;

constexpr int kWidest = 1000000;

// Makes and takes back every move of the list.
void TryMoves() {
  const auto before = std::make_unique<GameRecord>(g);
  for (int i = treeCnt[0]; i < treeCnt[1]; ++i) {
    MakeMove(tree[i]);
    fuzz::Expect(g.key == (g.color_key[White] ^ g.color_key[Black]), "the keys agree");
    Generate();
    GenerateCaptures();
    UnMakeMove(tree[i]);
    fuzz::Expect(std::memcmp(before->board, g.board, sizeof g.board) == 0 && g.key == before->key,
                 "taking a move back restores the position");
  }
  fuzz::Expect(RecordIsSound(g), "the record is sound after all moves");
}

void ReadItsOwnText() {
  char text[kEpdSize];
  MakeEpd(text);
  const auto before = std::make_unique<GameRecord>(g);
  fuzz::Expect(InitGame(text), "the engine's own text is accepted");
  fuzz::Expect(std::equal(std::begin(g.board), std::end(g.board), before->board) &&
                   std::equal(std::begin(g.color), std::end(g.color), before->color) &&
                   g.side == before->side,
               "the engine's own text is the same position");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::StartOnce();
  fuzz::FreshPosition();
  const std::string text(fuzz::Text(data, size));
  const auto before = std::make_unique<GameRecord>(g);
  if (!InitGame(text.c_str())) {
    fuzz::Expect(std::memcmp(&g, before.get(), sizeof g) == 0, "a refused text changes nothing");
    return 0;
  }
  fuzz::Expect(RecordIsSound(g), "an accepted position is sound");
  GenerateCaptures();
  if (Generate()) TryMoves();
  LegalMoveList();
  GenerateAttackes();
  Evaluate(-kWidest, kWidest);
  Evaluate(0, 1);
  show_board();
  ReadItsOwnText();
  return 0;
}
