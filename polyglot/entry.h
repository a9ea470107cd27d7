#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The entries of a book: 16 bytes each, numbers with their highest byte first, in ascending order
// of keys.

namespace tarvyle::polyglot {

inline constexpr std::size_t kEntrySize = 16;
inline constexpr unsigned kMostWeight = 0xFFFF;

// What a book says of one move of one position.
struct Entry {
  std::uint64_t key = 0;     // of the position, key.h
  std::uint16_t move = 0;    // movecode.h
  std::uint16_t weight = 0;  // how often the move is played, compared with the others there
  std::uint32_t learn = 0;   // what programs note there; this one writes 0

  friend bool operator==(const Entry&, const Entry&) = default;
};

// The entry that kEntrySize bytes hold.
Entry EntryOf(std::string_view bytes);

// The content of a book file with these entries, in whatever order they are given: within a
// position the heaviest comes first.
std::string BytesOf(std::vector<Entry> entries);

}  // namespace tarvyle::polyglot
