#include "polyglot/binarybook.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <span>
#include <system_error>

#include "base/file.h"
#include "polyglot/key.h"
#include "polyglot/movecode.h"

namespace tarvyle::polyglot {

namespace {

// Compared byte by byte as without a sign, entries are in the order of their keys, the highest byte
// of which comes first.
using RawEntry = std::array<unsigned char, kEntrySize>;
static_assert(sizeof(RawEntry) == kEntrySize && alignof(RawEntry) == 1);

std::span<RawEntry> RawEntries(std::string& bytes) {
  return {reinterpret_cast<RawEntry*>(bytes.data()), bytes.size() / kEntrySize};
}

bool KeysAscend(std::span<const RawEntry> entries) {
  return std::is_sorted(entries.begin(), entries.end(), [](const auto& left, const auto& right) {
    return std::memcmp(left.data(), right.data(), sizeof(Entry::key)) < 0;
  });
}

// Makes whole entries in order of what stands in a file.
void SettleEntries(BinaryBook& book) {
  book.left_over = book.bytes.size() % kEntrySize;
  book.bytes.erase(book.bytes.size() - book.left_over);
  const std::span<RawEntry> entries = RawEntries(book.bytes);
  book.was_sorted = KeysAscend(entries);
  if (!book.was_sorted) std::sort(entries.begin(), entries.end());
}

Entry EntryAt(const BinaryBook& book, std::size_t index) {
  return EntryOf(std::string_view(book.bytes).substr(index * kEntrySize, kEntrySize));
}

// Index of the first entry whose key is not less.
std::size_t FirstOf(const BinaryBook& book, std::uint64_t key) {
  std::size_t first = 0;
  for (std::size_t count = book.Size(); count > 0;) {
    const std::size_t half = count / 2;
    if (EntryAt(book, first + half).key < key) {
      first += half + 1;
      count -= half + 1;
    } else {
      count = half;
    }
  }
  return first;
}

// Two entries may stand for one move, castling in its two forms.
void AddMove(Move move, unsigned weight, std::vector<WeightedMove>& moves) {
  const auto known = std::find_if(moves.begin(), moves.end(),
                                  [move](const WeightedMove& other) { return other.move == move; });
  if (known == moves.end()) {
    moves.push_back({move, weight});
  } else {
    known->weight += weight;
  }
}

}  // namespace

std::string ReadBook(const std::string& path, BinaryBook& book) {
  namespace fs = std::filesystem;
  book = {};
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) return error ? error.message() : std::strerror(ENOENT);
  if (!fs::is_regular_file(status)) return "it is no plain file";
  if (fs::file_size(path, error) > kMostBookBytes && !error) return "it is larger than 1 GiB";
  if (ReadFile(path.c_str(), book.bytes) != FileState::kRead) return std::strerror(errno);
  const bool is_empty = book.bytes.empty();
  SettleEntries(book);
  if (is_empty) return "it is empty";
  if (book.Size() > 0) return "";
  book = {};
  return "it is shorter than an entry of a Polyglot book";
}

BinaryBook BookOf(std::string_view content) {
  BinaryBook book;
  book.bytes = content;
  SettleEntries(book);
  return book;
}

bool LooksLikeBook(std::string_view content) {
  constexpr std::size_t kEnough = 64 * kEntrySize;
  const std::string_view start = content.substr(0, kEnough);
  return start.find('\0') != std::string_view::npos && BookOf(start).was_sorted;
}

std::vector<Entry> EntriesOf(const BinaryBook& book, std::uint64_t key) {
  std::vector<Entry> entries;
  const std::size_t first = FirstOf(book, key);
  const std::size_t end = std::min(book.Size(), first + kMostOfPosition);
  for (std::size_t i = first; i < end; ++i) {
    const Entry entry = EntryAt(book, i);
    if (entry.key != key) break;
    entries.push_back(entry);
  }
  return entries;
}

std::vector<WeightedMove> MovesHere(const BinaryBook& book) {
  std::vector<WeightedMove> moves;
  for (const Entry& entry : EntriesOf(book, PositionKey())) {
    const Move move = MoveOfCode(entry.move);
    if (move != 0) AddMove(move, entry.weight, moves);
  }
  std::stable_sort(moves.begin(), moves.end(),
                   [](const WeightedMove& left, const WeightedMove& right) {
                     return left.weight > right.weight;
                   });
  return moves;
}

Move DrawMove(const std::vector<WeightedMove>& moves, unsigned random) {
  if (moves.empty()) return 0;
  unsigned total = 0;
  for (const WeightedMove& move : moves) total += move.weight;
  if (total == 0) return moves[random % moves.size()].move;
  unsigned rest = random % total;
  for (const WeightedMove& move : moves) {
    if (rest < move.weight) return move.move;
    rest -= move.weight;
  }
  return 0;
}

}  // namespace tarvyle::polyglot
