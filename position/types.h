#pragma once

#include <cstdint>

// Squares, colours, pieces and the move word.

namespace tarvyle {

// Squares are numbered row by row from the top of a board with White at the bottom:
// 0 = a8, 7 = h8, 56 = a1, 63 = h1.
using Square = int;

inline constexpr int kSquares = 64;

enum Colour : int { White, Black, NoColour };

enum Piece : int { NoPiece, Pawn, Knight, Bishop, Rook, Queen, King };

enum HomeSquare : Square {
  A8 = 0,
  E8 = 4,
  H8 = 7,
  A1 = 56,
  E1 = 60,
  H1 = 63,
};

// A piece is told by its code, its colour, its square and its slot, in this order wherever several
// of them are arguments. What asks about a square takes the square first.

// The piece list has a slot for each piece of a set-up, White's before Black's.
inline constexpr int kSlotsPerColour = 16;
inline constexpr int kPieceSlots = 2 * kSlotsPerColour;

constexpr int FirstSlot(int colour) { return kSlotsPerColour * colour; }
constexpr int LastSlot(int colour) { return FirstSlot(colour) + kSlotsPerColour - 1; }
constexpr bool SlotOfColour(int slot, int colour) {
  return slot >= FirstSlot(colour) && slot <= LastSlot(colour);
}

// Material value by piece code; a pawn is 1000.
inline constexpr int value[7] = {0, 1000, 3000, 3000, 5000, 10000, 1000000};

// By colour: the square step of a pawn's advance, the row of promotion, and the row from which a
// pawn may make a double step.
inline constexpr int dP[2] = {-8, 8};
inline constexpr int prom_row[2] = {0, 7};
inline constexpr int first_pawn_row[2] = {6, 1};

// The row before that of promotion, from which pawns promote.
constexpr int SeventhRow(int colour) { return prom_row[colour] - dP[colour] / 8; }

// The row that pawns pass over with a double step.
constexpr int PassedRow(int colour) { return first_pawn_row[colour] + dP[colour] / 8; }

// Home square of the king and of the long- and short-side rooks, by colour.
inline constexpr Square kKingHome[2] = {E1, E8};
inline constexpr Square kLongRookHome[2] = {A1, A8};
inline constexpr Square kShortRookHome[2] = {H1, H8};

// Piece letters by colour and piece code; code 0 is a blank.
inline constexpr char kPieceLetters[2][8] = {" PNBRQK", " pnbrqk"};

constexpr int FileOf(Square square) { return square & 7; }
constexpr int RowOf(Square square) { return square >> 3; }
constexpr bool OnBoard(Square square) { return square >= 0 && square < kSquares; }

// The 16-wide form of a square, row * 16 + file: a step that leaves the board shows in bits 0x88.
constexpr int ToWide(Square square) { return square + (square & ~7); }
constexpr Square FromWide(int wide) { return ((wide & ~7) >> 1) | (wide & 7); }
constexpr bool OffBoard(int wide) { return (wide & 0x88) != 0; }

// Bishop, rook and queen, whose codes follow each other, move along lines.
constexpr bool IsSlider(int piece) { return piece >= Bishop && piece <= Queen; }

// A move in one word; 0 is the null move.
//   bits 0-5 target, 6-11 origin, 12-14 the moving piece (of a promotion: the new piece),
//   27 short castling, 28 long castling, 29 en passant (with 30), 30 capture, 31 promotion.
using Move = std::uint32_t;

inline constexpr Move kTargetMask = 0x3F;
inline constexpr Move kPieceMask = 0x7000;
inline constexpr Move kShortCastling = 0x08000000;
inline constexpr Move kLongCastling = 0x10000000;
inline constexpr Move kCastling = kShortCastling | kLongCastling;
inline constexpr Move kEnPassant = 0x20000000;
inline constexpr Move kCapture = 0x40000000;
inline constexpr Move kPromotion = 0x80000000;
inline constexpr Move kNotQuiet = kCastling | kCapture | kPromotion;

// The bits of a move that tell its piece.
constexpr Move PieceBits(int piece) { return static_cast<Move>(piece << 12); }

inline constexpr Move kEnPassantCapture = kCapture | kEnPassant | PieceBits(Pawn);

constexpr Square TargetOf(Move move) { return static_cast<Square>(move & kTargetMask); }
constexpr Square OriginOf(Move move) { return static_cast<Square>(move >> 6 & 0x3F); }
constexpr int PieceOf(Move move) { return static_cast<int>(move >> 12 & 7); }

// The piece that leaves the origin: a pawn when the move promotes.
constexpr int MoverOf(Move move) { return (move & kPromotion) != 0 ? Pawn : PieceOf(move); }

// Whether the move can be undone by moving back: neither a capture, a promotion, castling nor a
// pawn move, nor the null move.
constexpr bool IsReversible(Move move) {
  return move != 0 && (move & kNotQuiet) == 0 && PieceOf(move) != Pawn;
}

constexpr Move MoveWord(int piece, Square origin, Square target) {
  return PieceBits(piece) | static_cast<Move>(origin << 6 | target);
}

// Castling moves by colour: the king's move; the rook's is implied.
inline constexpr Move kShortCastlingMove[2] = {MoveWord(King, E1, E1 + 2) | kShortCastling,
                                               MoveWord(King, E8, E8 + 2) | kShortCastling};
inline constexpr Move kLongCastlingMove[2] = {MoveWord(King, E1, E1 - 2) | kLongCastling,
                                              MoveWord(King, E8, E8 - 2) | kLongCastling};

// Castling rights: bit 2 * colour is the long (a-file) side, the next one the short side.
constexpr std::uint32_t LongRight(int colour) { return 1u << (2 * colour); }
constexpr std::uint32_t ShortRight(int colour) { return 2u << (2 * colour); }

}  // namespace tarvyle
