#include "uci/place.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/number.h"
#include "book/epd.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "position/types.h"
#include "search/draw.h"
#include "uci/output.h"
#include "uci/words.h"

namespace tarvyle::uci {

namespace {

constexpr int kKeptMoves = 200;  // of a game that goes on for ever without an end in sight

struct Place {
  std::string fen;  // empty: the start position
  std::vector<std::string> moves;
};
Place place;

Place ReadPlace(std::string_view words) {
  Place read;
  const std::string_view kind = NextWord(words);
  if (kind != "startpos" && kind != "fen") throw std::runtime_error("startpos or fen expected");
  std::string_view word = NextWord(words);
  for (; !word.empty() && word != "moves"; word = NextWord(words)) {
    if (kind == "startpos") throw std::runtime_error("moves expected, not " + std::string(word));
    read.fen += std::string(word) + ' ';
  }
  if (kind == "fen" && read.fen.empty()) throw std::runtime_error("a FEN was expected");
  for (word = NextWord(words); !word.empty(); word = NextWord(words)) {
    read.moves.emplace_back(word);
  }
  return read;
}

bool PawnsStandRight() {
  return std::all_of(g.pawn_row_cnt, g.pawn_row_cnt + 2,
                     [](const auto& rows) { return rows[0] == 0 && rows[7] == 0; });
}

// The half-move clock of a FEN: its fifth word, which may be missing or something else (the texts
// of other programs end before it).
int HalfMoves(std::string_view fen) {
  constexpr int kWordsBefore = 4;
  for (int i = 0; i < kWordsBefore; ++i) NextWord(fen);
  int count = 0;
  return ReadInteger(NextWord(fen), count) ? std::clamp(count, 0, kFiftyMoves) : 0;
}

void SetUpFen(const std::string& fen, int half_moves) {
  ClearRepetitions();
  const bool read = fen.empty() ? InitNewGame() : InitGame(fen.c_str());
  g.fifty = half_moves;
  if (!read || !PawnsStandRight() || !LegalMoveList()) {
    throw std::runtime_error("illegal position: " + fen);
  }
}

// Number of moves at the end of the game that a repetition may lead back over.
int MovesToKeep() {
  int count = 0;
  while (count < kKeptMoves && IsReversible(g.game_moves[g.game_len - 1 - count])) ++count;
  return count;
}

// The list is what the insertion expects to have been looked at before.
void Insert(Move move) {
  LegalMoveList();
  InsertMoveInGame(move, kTypedMove);
}

// Makes room in the full record: the game begins anew at a later position, at the half-move clock
// that stands there.
void ShortenGame() {
  const int count = MovesToKeep();
  const std::vector<Move> kept(g.game_moves + g.game_len - count, g.game_moves + g.game_len);
  for (int i = 0; i < count; ++i) UndoGameMove();
  char text[kEpdSize];
  MakeEpd(text);
  SetUpFen(text, g.fifty);
  for (const Move move : kept) Insert(move);
}

// A promotion's letter may be missing, but nothing else may stand there.
bool IsMove(const std::string& text, Move& move) {
  return StrToMove(text, move) && std::string_view(MoveToStr(move)).starts_with(text);
}

void Play(const std::string& text) {
  Move move = 0;
  if (!IsMove(text, move)) throw std::runtime_error("illegal move: " + text);
  if (g.game_len == kMaxGameMoves) ShortenGame();
  Insert(move);
}

void SetUp(const Place& wanted) {
  SetUpFen(wanted.fen, HalfMoves(wanted.fen));
  for (const std::string& move : wanted.moves) Play(move);
}

}  // namespace

void ObeyPosition(std::string_view words) {
  try {
    Place wanted = ReadPlace(words);
    SetUp(wanted);
    place = std::move(wanted);
  } catch (const std::runtime_error& error) {
    SayInfo(error.what() + std::string(" (the position before stays)"));
    PlaceAgain();
  }
}

void PlaceNewGame() {
  place = {};
  SetUp(place);
}

void PlaceAgain() { SetUp(place); }

}  // namespace tarvyle::uci
