#include "tools/book/topolyglot.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include "polyglot/entry.h"
#include "polyglot/key.h"
#include "polyglot/movecode.h"
#include "position/game.h"
#include "position/setup.h"
#include "position/types.h"
#include "tools/book/bookreader.h"
#include "tools/book/polyglotoutput.h"

namespace tarvyle::tools {

namespace {

// Lines by the move that they play; the last one tells those apart that play it twice.
struct Played {
  std::size_t lines = 0;
  std::size_t last_line = 0;
};
using Moves = std::map<std::uint16_t, Played>;
using Positions = std::map<std::uint64_t, Moves>;

Positions PositionsOf(const BookFile& book) {
  Positions positions;
  for (const BookLine& line : book.lines) {
    InitNewGame();
    for (const Move move : line.moves) {
      const std::uint16_t code = polyglot::CodeOfMove(move);
      Played& played = positions[polyglot::PositionKey()][code];
      if (played.last_line != line.number) ++played.lines;
      played.last_line = line.number;
      InsertMoveInGame(polyglot::MoveOfCode(code), 0);  // the move that will be read
    }
  }
  InitNewGame();
  return positions;
}

std::size_t MostLines(const Moves& moves) {
  std::size_t most = 0;
  for (const auto& [move, played] : moves) most = std::max(most, played.lines);
  return most;
}

// Where a number of lines is more than a weight can be, all of the position shrink alike.
std::uint16_t WeightOf(std::size_t lines, std::size_t most) {
  if (most > polyglot::kMostWeight) {
    lines = std::max<std::size_t>(lines * polyglot::kMostWeight / most, 1);
  }
  return static_cast<std::uint16_t>(lines);
}

std::vector<polyglot::Entry> EntriesOf(const Positions& positions) {
  std::vector<polyglot::Entry> entries;
  for (const auto& [key, moves] : positions) {
    const std::size_t most = MostLines(moves);
    for (const auto& [move, played] : moves) {
      entries.push_back({key, move, WeightOf(played.lines, most)});
    }
  }
  return entries;
}

}  // namespace

void BookToPolyglot(const ToPolyglotOptions& options) {
  RefuseInputAsOutput(options.book, options.output);
  const BookFile book = ReadSoundBook(options.book);
  const Positions positions = PositionsOf(book);
  if (positions.empty()) throw std::runtime_error(options.book + " has no line");
  const std::vector<polyglot::Entry> entries = EntriesOf(positions);
  WriteBookOutput(options.output, polyglot::BytesOf(entries),
                  std::to_string(entries.size()) + " entries of " +
                      std::to_string(positions.size()) + " positions from " +
                      std::to_string(book.lines.size()) + " lines");
}

}  // namespace tarvyle::tools
