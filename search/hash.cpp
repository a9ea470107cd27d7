#include "search/hash.h"

#include <algorithm>

#include "position/castling.h"
#include "position/enpassant.h"
#include "search/limits.h"

namespace tarvyle {

namespace {

constexpr std::uint32_t kGreatestDepth = 0x3FF;  // the field's greatest
static_assert(std::uint32_t{kMaxIteration} <= kGreatestDepth,
              "no move is searched deeper than its node");

constexpr int kMaterialUnit = 1000;  // of an entry: a pawn

bool IsOccupied(const HashEntry& entry) { return entry.generation == hash_generation; }

// The position key nearly always decides; the extra key, which costs most, is asked last.
bool IsCurrentPosition(const HashEntry& entry) {
  return entry.key == g.key && entry.white_key == g.color_key[White] && IsOccupied(entry) &&
         static_cast<int>(entry.white_pawns) * kMaterialUnit == g.material[White] &&
         static_cast<int>(entry.black_pawns) * kMaterialUnit == g.material[Black] &&
         entry.ext_key == pos_ext_key();
}

bool Settles(const HashEntry& entry, int alpha, int beta) {
  switch (entry.bound) {
    case kExact: return true;
    case kLower: return entry.score >= beta;
    case kUpper: return entry.score <= alpha;
    default: return false;
  }
}

// What an entry is worth when another wants its slot.
int Weight(const HashEntry& entry) {
  return static_cast<int>(entry.depth) + 2 * static_cast<int>(entry.bound);
}

int GreatestDepth(const HashEntry* table) {
  int greatest = 0;
  for (const HashEntry* entry = table; entry != table + Hash_Size; ++entry) {
    if (IsOccupied(*entry)) greatest = std::max(greatest, static_cast<int>(entry->depth));
  }
  return greatest;
}

std::uint32_t EnPassantBits() {
  return static_cast<std::uint32_t>(en_pass_to(LastMove(), g.xside));
}

}  // namespace

bool HashLook(int alpha, int beta, int depth, int& score, Move& move) {
  const HashEntry& entry = HashSlot(g.side, g.key.low);
  if (!IsCurrentPosition(entry)) return false;
  move = entry.move;
  if (static_cast<int>(entry.depth) < depth || !Settles(entry, alpha, beta)) return false;
  score = entry.score;
  return true;
}

void HashInsert(int score, int beta, int depth, Move move) {
  const Bound bound = move == 0 ? kUpper : score < beta ? kExact : kLower;
  HashEntry& entry = HashSlot(g.side, g.key.low);
  if (IsOccupied(entry) && Weight(entry) > depth + 2 * bound) return;
  entry.key = g.key;
  entry.white_key = g.color_key[White];
  entry.score = score;
  entry.move = move;
  entry.ext_key = pos_ext_key() & 0x3FFFFF;
  entry.bound = static_cast<std::uint32_t>(bound) & 3;
  entry.generation = hash_generation & 0xFF;
  entry.white_pawns = static_cast<std::uint32_t>(g.material[White] / kMaterialUnit) & 0x7FF;
  entry.black_pawns = static_cast<std::uint32_t>(g.material[Black] / kMaterialUnit) & 0x7FF;
  entry.depth = static_cast<std::uint32_t>(depth) & kGreatestDepth;
}

// Halving again and again is one shift: two passes over the tables, however deep the entries. Each
// takes its time when they are large, and nobody looks at the clock meanwhile.
void HashDepthLow() {
  const int greatest = std::max(GreatestDepth(hash[White]), GreatestDepth(hash[Black]));
  int halvings = 1;
  while (greatest >> halvings > 2) ++halvings;
  for (HashEntry* table : hash) {
    for (HashEntry* entry = table; entry != table + Hash_Size; ++entry) {
      entry->depth = (entry->depth >> halvings) & kGreatestDepth;
    }
  }
}

int HashDamp() {
  std::int64_t used = 0;
  for (const HashEntry* table : hash) {
    used += std::count_if(table, table + Hash_Size,
                          [](const HashEntry& e) { return IsOccupied(e) && e.depth != 0; });
  }
  return static_cast<int>(used * 100 / (2 * static_cast<std::int64_t>(Hash_Size)));
}

bool HashEmptyNode(int side, std::uint32_t key_lo, std::uint32_t key_hi, int depth) {
  static constexpr HashEntry kNothing{};
  const HashEntry& slot = HashSlot(side, key_lo);
  const HashEntry& entry = IsOccupied(slot) ? slot : kNothing;
  if (entry.key == (std::uint64_t{key_hi} << 32 | key_lo)) return false;
  return static_cast<int>(entry.depth) <= depth;
}

std::uint32_t pos_ext_key() {
  const auto white_king = static_cast<std::uint32_t>(g.king_sq[White]);
  const auto black_king = static_cast<std::uint32_t>(g.king_sq[Black]);
  return EnPassantBits() | white_king << 6 | black_king << 12 | StandingRights() << 18;
}

}  // namespace tarvyle
