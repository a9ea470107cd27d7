#include "tools/listings.h"

#include <charconv>
#include <cstdio>
#include <iostream>
#include <stdexcept>

#include "book/epd.h"
#include "eval/evaluate.h"
#include "eval/scoretable.h"
#include "position/attack.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "search/hash.h"
#include "search/state.h"
#include "tools/lines.h"

namespace tarvyle::tools {

namespace {

constexpr int kDeepestPerft = 90;

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

int ParseDepth(std::string_view text) {
  int depth = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), depth);
  if (error != std::errc() || end != text.data() + text.size() || depth < 0 ||
      depth > kDeepestPerft) {
    throw std::runtime_error("depth expected, not \"" + std::string(text) + "\"");
  }
  return depth;
}

}  // namespace

std::string DescribePosition(std::string_view line) {
  const std::string fen(Fields(line)[0]);
  if (!SetUp(fen)) return fen + "\trefused";
  InitEvaluate();
  set_dir(g.side);
  const int score = Evaluate(-kInfinity, kInfinity);
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

unsigned long long Perft(int depth) {
  if (depth == 0) return 1;
  LegalMoveList();
  if (depth == 1) return static_cast<unsigned long long>(ListLength());
  unsigned long long leaves = 0;
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1]; ++i) {
    const Move move = tree[i];
    MakeMove(move);
    leaves += Perft(depth - 1);
    UnMakeMove(move);
  }
  return leaves;
}

std::string DescribePerft(std::string_view line) {
  const auto fields = Fields(line);
  const std::string fen(fields[0]);
  if (fields.size() < 2) throw std::runtime_error("FEN, tab, depth expected");
  const int depth = ParseDepth(fields[1]);
  if (!SetUp(fen)) return fen + "\trefused";
  return fen + '\t' + std::to_string(depth) + '\t' + std::to_string(Perft(depth));
}

void PrintPerft(const std::string& fen, int depth, bool divide) {
  if (!SetUp(fen)) throw std::runtime_error("position refused: " + fen);
  if (divide && depth > 0) {
    LegalMoveList();
    for (int i = treeCnt[0]; i < treeCnt[1]; ++i) {
      const Move move = tree[i];
      MakeMove(move);
      const auto leaves = Perft(depth - 1);
      UnMakeMove(move);
      std::cout << MoveToStr(move) << ": " << leaves << '\n';
    }
  }
  std::cout << Perft(depth) << '\n';
}

}  // namespace tarvyle::tools
