#include "position/reach.h"

#include <bit>

#include "position/directions.h"

namespace tarvyle {

SquareSet knight_set[kSquares];
SquareSet king_set[kSquares];
SquareSet pawn_set[2][kSquares];
SquareSet between_set[kSquares][kSquares];
std::uint8_t direction_index[2][kSquares][kSquares];
LineTable bishop_lines[kSquares];
LineTable rook_lines[kSquares];

namespace {

// Found by trial: any multipliers that send all occupancies of a square's lines to different
// places, or to equal sets, would do.
constexpr std::uint64_t kBishopMultipliers[kSquares] = {
    0x10088108220c0022, 0x0008628800410000, 0x00c418061150a002, 0x2002408500401101,
    0x00b0882028000008, 0x20068610c0040240, 0x001088011010000c, 0xa000802110500407,
    0x0000082001020211, 0x0000201801410820, 0x2105105902082410, 0x00480806004421a0,
    0x0024440420901640, 0x4000011002500082, 0x0250010090042000, 0x9081002202100400,
    0x80418120040400a0, 0x0102002408120c21, 0x0010082047004410, 0x0408400404008800,
    0x4007000090402000, 0x1005010a00908408, 0x0004040084010802, 0x000200010080b400,
    0x0092101008601888, 0x0002203090040080, 0x5002142040840080, 0x74c0104084004080,
    0x0000840008822000, 0x000101001200a089, 0x1808210646008201, 0x4040810000241201,
    0x0012082180c002c4, 0x1801100820100100, 0x0002042400020800, 0x4006004040040101,
    0x600c004200040108, 0x0510084244220100, 0x08040810a0604402, 0x0014808200910d00,
    0xa00c012840640820, 0x0108840121080802, 0x00806120b0010801, 0x0000404010400202,
    0x440008b010404400, 0x4401201084805301, 0x00a0840142086341, 0x0604012404201104,
    0x0111208220608240, 0xc822544404200200, 0x01000108a0900020, 0x4000400020880212,
    0x010c0011b20a0400, 0x0000102001044000, 0x2240080204404408, 0x0059210c1c82021a,
    0x0448220450041060, 0x0008108c04020280, 0x0108030025182800, 0x0404406020420200,
    0x0020000110b20a00, 0x30010460e0428480, 0x000440140434a200, 0x4102200141020084,
};

constexpr std::uint64_t kRookMultipliers[kSquares] = {
    0x4180011089204001, 0x0140004010002000, 0x4100102000410008, 0x0600100804220040,
    0x23000d0008000230, 0x0200010810040200, 0x0200081100a20014, 0x0100020080205100,
    0x2008800040008020, 0x0c02400040201004, 0x0601001047062000, 0x2202800800801000,
    0x0c42002012000408, 0x0002000410020008, 0x4928808042000100, 0x040600020108806c,
    0x4240008000408038, 0x0080888040002000, 0x0820008080201000, 0x1000808010000803,
    0x8201050011080100, 0x0484004002004100, 0x00002c0008011002, 0x3000020018840841,
    0x0080802880004016, 0x04100040c0006002, 0x2000110100200040, 0x044a000a00204010,
    0x2400108500080101, 0x0422000a00102814, 0x1101002100440200, 0x2009140200008847,
    0xc180002008400840, 0x0000401000402004, 0x0010420082001820, 0x1000801000800805,
    0x0000040181800800, 0x0102800200800400, 0x1001000401000200, 0x0000288042000411,
    0x0080400080208005, 0x4800820021020040, 0x9b41001020010044, 0x1000100008008080,
    0x8088000805010010, 0x0021000204010008, 0x0040012822040010, 0x4008004084020001,
    0x0000208000401880, 0x0004894001112100, 0x0010100020008080, 0x8002a49000090100,
    0x2010800400080080, 0x5002000810050200, 0x8041000402000100, 0x0000110080540200,
    0x0400401100220082, 0x0440204080120102, 0x5022002008401082, 0x8021001002200409,
    0x2d02000804201002, 0x020200040810011e, 0x4000009022080124, 0x0800810400884022,
};

// One set for each relevant occupancy, square after square: of all bishop lines 5248, of all rook
// lines 102400.
SquareSet line_sets[5248 + 102400];

// By direction of White's table and square: the squares of that line up to the edge.
SquareSet line_set[8][kSquares];

void FillLine(int direction, Square from) {
  SquareSet line = 0;
  const int step = dir_white[direction];
  for (int wide = ToWide(from) + step; !OffBoard(wide); wide += step) {
    line |= SetOf(FromWide(wide));
  }
  line_set[direction][from] = line;
}

// The squares whose occupancy matters to a slider with directions first..last: all but the last one
// of each line.
SquareSet RelevantSquares(Square from, int first, int last) {
  SquareSet relevant = 0;
  for (int d = first; d <= last; ++d) {
    for (SquareSet rest = line_set[d][from]; rest != 0;) {
      const Square square = TakeFirst(rest);
      if (line_set[d][square] != 0) relevant |= SetOf(square);
    }
  }
  return relevant;
}

// What such a slider sees: on each line, nothing behind the first occupied square.
SquareSet Seen(Square from, int first, int last, SquareSet occupied) {
  SquareSet seen = 0;
  for (int d = first; d <= last; ++d) {
    const SquareSet line = line_set[d][from];
    seen |= line;
    const SquareSet blockers = line & occupied;
    if (blockers == 0) continue;
    const Square nearest = dir_white[d] > 0 ? FirstOf(blockers) : 63 - std::countl_zero(blockers);
    seen ^= line_set[d][nearest];
  }
  return seen;
}

SquareSet StepSet(int piece, Square from) {
  SquareSet reached = 0;
  for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
    const int wide = ToWide(from) + dir_white[d];
    if (!OffBoard(wide)) reached |= SetOf(FromWide(wide));
  }
  return reached;
}

// The next subset of `mask` in the order of binary numbers; the empty set after the last.
constexpr SquareSet NextSubset(SquareSet subset, SquareSet mask) { return (subset - mask) & mask; }

// Fills the table of one square, whose sets stand from `sets` on, and returns the place behind
// them. What stands on two of the lines says nothing of the other two, so each half is looked at on
// its own.
SquareSet* FillLineTable(LineTable& table, Square square, int piece, std::uint64_t multiplier,
                         SquareSet* sets) {
  const int first = d_start[piece];
  const int half = first + 2;
  const int last = d_stop[piece];
  const SquareSet near_mask = RelevantSquares(square, first, half - 1);
  const SquareSet far_mask = RelevantSquares(square, half, last);
  table.relevant = near_mask | far_mask;
  table.multiplier = multiplier;
  table.shift = 64 - std::popcount(table.relevant);
  table.sets = sets;
  SquareSet near = 0;
  do {
    const SquareSet seen = Seen(square, first, half - 1, near);
    SquareSet far = 0;
    do {
      sets[table.IndexOf(near | far)] = seen | Seen(square, half, last, far);
      far = NextSubset(far, far_mask);
    } while (far != 0);
    near = NextSubset(near, near_mask);
  } while (near != 0);
  return sets + (std::size_t{1} << std::popcount(table.relevant));
}

void FillBetween(Square from) {
  for (int d = 0; d <= 7; ++d) {
    SquareSet passed = 0;
    for (int wide = ToWide(from) + dir_white[d]; !OffBoard(wide); wide += dir_white[d]) {
      between_set[from][FromWide(wide)] = passed;
      passed |= SetOf(FromWide(wide));
    }
  }
}

void FillDirectionIndex(Square from) {
  for (int table = 0; table < 2; ++table) {
    for (std::uint8_t& index : direction_index[table][from]) index = kNoDirection;
    const int* steps = table == 0 ? dir_white : dir_black;
    for (int d = 0; d < 16; ++d) {
      for (int wide = ToWide(from) + steps[d]; !OffBoard(wide); wide += steps[d]) {
        direction_index[table][from][FromWide(wide)] = static_cast<std::uint8_t>(d);
        if (d >= d_start[Knight]) break;
      }
    }
  }
}

}  // namespace

void InitReach() {
  for (int d = 0; d < 8; ++d) {
    for (Square square = 0; square < kSquares; ++square) FillLine(d, square);
  }
  SquareSet* sets = line_sets;
  for (Square square = 0; square < kSquares; ++square) {
    knight_set[square] = StepSet(Knight, square);
    king_set[square] = StepSet(King, square);
    pawn_set[White][square] = PawnTargets(White, SetOf(square));
    pawn_set[Black][square] = PawnTargets(Black, SetOf(square));
    sets = FillLineTable(bishop_lines[square], square, Bishop, kBishopMultipliers[square], sets);
    sets = FillLineTable(rook_lines[square], square, Rook, kRookMultipliers[square], sets);
    FillBetween(square);
    FillDirectionIndex(square);
  }
}

}  // namespace tarvyle
