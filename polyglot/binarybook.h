#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "polyglot/entry.h"
#include "position/types.h"

// A book file in memory, and the moves that it knows of a position.

namespace tarvyle::polyglot {

inline constexpr std::uintmax_t kMostBookBytes = std::uintmax_t{1} << 30;
inline constexpr std::size_t kMostOfPosition = 1000;

// A book that has been read. One without an entry knows no move.
struct BinaryBook {
  std::string bytes;          // whole entries in ascending order
  std::size_t left_over = 0;  // bytes of the file behind its last whole entry
  bool was_sorted = true;     // as the format asks for; others are sorted when they are read

  [[nodiscard]] std::size_t Size() const { return bytes.size() / kEntrySize; }
};

// Reads a book file in place of what `book` holds. Returns "", or why it cannot be read: "it is no
// plain file". The book is empty then.
std::string ReadBook(const std::string& path, BinaryBook& book);

// The book that a file with this content is.
BinaryBook BookOf(std::string_view content);

// Whether a file's content is such a book, and no text or picture: the numbers of its entries have
// zero bytes, and the first entries are sorted.
bool LooksLikeBook(std::string_view content);

// A move of a book with the sum of its entries' weights.
struct WeightedMove {
  Move move;
  unsigned weight;
};

// The entries with this key, in the order of the book. No more than kMostOfPosition: a position has
// fewer moves, and a strange file might hold millions.
std::vector<Entry> EntriesOf(const BinaryBook& book, std::uint64_t key);

// The legal moves that the book has for the position on the board, each once and the heaviest
// first; entries of other moves are left out. Writes the list of ply `ply`.
std::vector<WeightedMove> MovesHere(const BinaryBook& book);

// The move that a random number draws, each as likely as its weight says; one without weight only
// when none has any, and then all alike. 0 when there are no moves.
Move DrawMove(const std::vector<WeightedMove>& moves, unsigned random);

}  // namespace tarvyle::polyglot
