#include "search/hash.h"

#include <algorithm>
#include <cstring>

#include "position/castling.h"
#include "position/movegen.h"

namespace tarvyle {

HashEntry* hash[2];
int Hash_Size = 0x80000;

namespace {

HashEntry& Slot(int side, std::uint32_t key_lo) {
  return hash[side][key_lo & static_cast<std::uint32_t>(Hash_Size - 1)];
}

bool IsCurrentPosition(const HashEntry& entry) {
  return entry.key == g.key && entry.white_key == g.color_key[White] &&
         entry.black_key == g.color_key[Black] && entry.white_material == g.material[White] &&
         entry.black_material == g.material[Black] && entry.ext_key == pos_ext_key();
}

bool Settles(const HashEntry& entry, int alpha, int beta) {
  switch (entry.bound) {
    case kExact: return true;
    case kLower: return entry.score >= beta;
    case kUpper: return entry.score <= alpha;
    default: return false;
  }
}

// Halves every depth of a table and returns the greatest new one.
int HalveDepths(HashEntry* table) {
  int greatest = 0;
  for (HashEntry* entry = table; entry != table + Hash_Size; ++entry) {
    entry->depth /= 2;
    greatest = std::max(greatest, entry->depth);
  }
  return greatest;
}

std::uint32_t EnPassantBits() {
  const Move last = LastMove();
  const Square to = TargetOf(last);
  const int step = OriginOf(last) - to;
  if (PieceOf(last) != Pawn || (step != 16 && step != -16)) return 0;
  const bool beside = (FileOf(to) > 0 && Holds(to - 1, Pawn, g.side)) ||
                      (FileOf(to) < 7 && Holds(to + 1, Pawn, g.side));
  return beside ? static_cast<std::uint32_t>(to - dP[g.xside]) : 0;
}

std::uint32_t CastlingBits() {
  std::uint32_t bits = 0;
  for (int colour = White; colour <= Black; ++colour) {
    if (!Holds(kKingHome[colour], King, colour)) continue;
    if (Holds(kLongRookHome[colour], Rook, colour)) bits |= g.castle & LongRight(colour);
    if (Holds(kShortRookHome[colour], Rook, colour)) bits |= g.castle & ShortRight(colour);
  }
  return bits;
}

}  // namespace

void HashClear() {
  const std::size_t bytes = static_cast<std::size_t>(Hash_Size) * sizeof(HashEntry);
  std::memset(static_cast<void*>(hash[White]), 0, bytes);
  std::memset(static_cast<void*>(hash[Black]), 0, bytes);
}

bool HashLook(int alpha, int beta, int depth, int& score, Move& move) {
  const HashEntry& entry = Slot(g.side, g.key.low);
  if (!IsCurrentPosition(entry)) return false;
  move = entry.move;
  if (entry.depth < depth || !Settles(entry, alpha, beta)) return false;
  score = entry.score;
  return true;
}

void HashInsert(int score, int beta, int depth, Move move) {
  const Bound bound = move == 0 ? kUpper : score < beta ? kExact : kLower;
  HashEntry& entry = Slot(g.side, g.key.low);
  if (entry.bound != kEmpty && entry.depth + 2 * entry.bound > depth + 2 * bound) return;
  entry = {g.key,
           g.color_key[White],
           g.color_key[Black],
           g.material[White],
           g.material[Black],
           pos_ext_key(),
           score,
           bound,
           depth,
           move};
}

void HashDepthLow() {
  int greatest = 0;
  do {
    greatest = std::max(HalveDepths(hash[White]), HalveDepths(hash[Black]));
  } while (greatest >= 3);
}

int HashDamp() {
  std::int64_t used = 0;
  for (const HashEntry* table : hash) {
    used +=
        std::count_if(table, table + Hash_Size, [](const HashEntry& e) { return e.depth != 0; });
  }
  return static_cast<int>(used * 100 / (2 * static_cast<std::int64_t>(Hash_Size)));
}

bool HashEmptyNode(int side, std::uint32_t key_lo, std::uint32_t key_hi, int depth) {
  const HashEntry& entry = Slot(side, key_lo);
  if (entry.key.low == key_lo && entry.key.high == key_hi) return false;
  return entry.depth <= depth;
}

std::uint32_t pos_ext_key() {
  const auto white_king = static_cast<std::uint32_t>(g.king_sq[White]);
  const auto black_king = static_cast<std::uint32_t>(g.king_sq[Black]);
  return EnPassantBits() | white_king << 6 | black_king << 12 | CastlingBits() << 18;
}

}  // namespace tarvyle
