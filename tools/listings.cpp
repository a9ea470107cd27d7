#include "tools/listings.h"

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "book/epd.h"
#include "host/engine.h"
#include "position/legal.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/perft.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "position/types.h"
#include "search/hash.h"
#include "tools/lines.h"

namespace tarvyle::tools {

namespace {

std::string Hex(std::uint64_t number, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "%0*llx", digits, static_cast<unsigned long long>(number));
  return text;
}

// The list of ply 0, moves separated by blanks, on request with their words.
std::string ListText(bool with_words) {
  std::string text;
  for (int i = treeCnt[0]; i < treeCnt[1]; ++i) {
    if (i > treeCnt[0]) text += ' ';
    text += MoveToStr(tree[i]);
    if (with_words) text += ':' + Hex(tree[i], 8);
  }
  return text;
}

bool SetUp(std::string_view fen) { return InitGame(std::string(fen).c_str()); }

}  // namespace

std::string DescribePosition(std::string_view line) {
  const std::string fen(Fields(line)[0]);
  if (!SetUp(fen)) return fen + "\trefused";
  const int score = StaticScore();
  char epd[kEpdSize];
  MakeEpd(epd);
  return fen + '\t' + std::to_string(score) + '\t' + Hex(g.key, 16) + '\t' +
         Hex(g.color_key[White], 16) + '\t' + Hex(g.color_key[Black], 16) + '\t' +
         Hex(pos_ext_key(), 8) + '\t' + epd;
}

std::string DescribeMoves(std::string_view line) {
  const std::string fen(Fields(line)[0]);
  if (!SetUp(fen)) return fen + "\trefused";
  Generate();
  const std::string moves = ListText(true);
  GenerateCaptures();
  const std::string captures = ListText(true);
  LegalMoveList();
  return fen + '\t' + moves + '\t' + captures + '\t' + ListText(false);
}

std::string DescribePerft(std::string_view line) {
  const auto fields = Fields(line);
  const std::string fen(fields[0]);
  if (fields.size() < 2) throw std::runtime_error("FEN, tab, depth expected");
  const int depth = DepthOf(fields[1], 0, kDeepestPerft);
  if (!SetUp(fen)) return fen + "\trefused";
  return fen + '\t' + std::to_string(depth) + '\t' + std::to_string(Perft(depth));
}

void PrintPerft(const std::string& fen, int depth, bool divide) {
  if (!SetUp(fen)) throw std::runtime_error("position refused: " + fen);
  const auto tell = [divide](Move move, std::uint64_t leaves) {
    if (divide) std::cout << MoveToStr(move) << ": " << leaves << '\n';
  };
  std::cout << (depth > 0 ? DividedPerft(depth, tell) : Perft(depth)) << '\n';
}

}  // namespace tarvyle::tools
