#include "tools/game/gamereader.h"

#include <sys/stat.h>

#include <cstdint>
#include <cstring>
#include <ctime>
#include <map>
#include <stdexcept>
#include <string_view>

#include "frontend/savedgame.h"
#include "host/positiontext.h"
#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/score.h"
#include "position/text.h"
#include "search/draw.h"
#include "tools/files.h"
#include "tools/san.h"

namespace tarvyle::tools {

namespace {

constexpr std::string_view kStartText = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk";

std::string WhatIsWrong(const std::string& path) {
  const std::string content = ReadWholeFile(path);
  std::uint32_t tag = 0;
  if (content.size() < kRecordSize) {
    return "it has " + std::to_string(content.size()) + " bytes, a saved game has " +
           std::to_string(kRecordSize);
  }
  std::memcpy(&tag, content.data(), sizeof tag);
  return tag != kSavedTag ? "it does not begin as one" : "its record is damaged";
}

GamePosition CurrentPosition() {
  GamePosition position;
  for (Square square = 0; square < kSquares; ++square) {
    position.board +=
        g.board[square] == NoPiece ? ' ' : kPieceLetters[g.color[square]][g.board[square]];
  }
  position.check = Check();
  return position;
}

// The FEN of the position that the game begins with. Its text would take the en-passant square from
// the move before, which there is none; the record has that of the set-up.
std::string CurrentFen() {
  std::string fields = EpdFields(CurrentText());
  if (g.ep_sq != 0) {
    fields.resize(fields.find_last_of(' ') + 1);
    fields += chb[g.ep_sq];
  }
  return fields + " " + std::to_string(g.fifty) + " 1";
}

std::optional<int> ScoreOf(int score, int side) {
  // A move from the book and an only reply have 0: nothing was searched.
  if (score == kTypedMove || score == 0) return std::nullopt;
  // The move has brought a mate one ply nearer; a mate that it gives needs no score.
  if (IsMating(score) && ++score >= -kMated) return std::nullopt;
  if (IsMated(score)) --score;
  return side == White ? score : -score;
}

// Plays the next recorded move and tells of it.
GameMove NextMove(int first_side) {
  const int index = g.game_len;
  GameMove next;
  next.move = g.game_moves[index];
  next.side = g.side;
  next.number = (index + first_side) / 2 + 1;
  next.san = next.move == 0 ? "--" : SanOf(next.move);
  next.score = ScoreOf(g.game_score[index], g.side);
  RedoGameMove();
  next.after = CurrentPosition();
  return next;
}

std::string NameOfSide(int side, int first_side, int length) {
  int typed = 0;
  int chosen = 0;
  for (int i = 0; i < length; ++i) {
    if ((i + first_side) % 2 != side) continue;
    ++(g.game_score[i] == kTypedMove ? typed : chosen);
  }
  if (typed + chosen == 0) return "?";
  return chosen > typed ? "Tarvyle" : "Player";
}

bool CannotMate() {
  int minors = 0;
  for (int colour = White; colour <= Black; ++colour) {
    const auto& count = g.piece_cnt[colour];
    if (count[Pawn] + count[Rook] + count[Queen] > 0) return false;
    minors += count[Knight] + count[Bishop];
  }
  return minors <= 1;
}

void JudgeEnd(const std::map<std::string, int>& visits, SavedGame& game) {
  const auto end = [&game](const char* result, const char* reason) {
    game.result = result;
    game.reason = reason;
  };
  if (LegalMoveList() && ListLength() == 0) {
    if (!Check()) return end("1/2-1/2", "stalemate");
    return end(g.side == White ? "0-1" : "1-0", "checkmate");
  }
  if (CannotMate()) return end("1/2-1/2", "too few pieces to mate");
  if (g.fifty >= kFiftyMoves) return end("1/2-1/2", "fifty-move rule");
  if (visits.at(CurrentText()) >= 3) return end("1/2-1/2", "threefold repetition");
  end("*", "");
}

std::string DateOf(const std::string& path) {
  struct stat status {};
  char text[32] = "????.??.??";
  std::tm day{};
  if (stat(path.c_str(), &status) == 0 && localtime_r(&status.st_mtime, &day) != nullptr) {
    std::strftime(text, sizeof text, "%Y.%m.%d", &day);
  }
  return text;
}

void PlayMoves(int length, SavedGame& game) {
  const int first_side = g.side;
  std::map<std::string, int> visits;
  ++visits[CurrentText()];
  while (g.game_len < length) {
    game.moves.push_back(NextMove(first_side));
    ++visits[CurrentText()];
  }
  JudgeEnd(visits, game);
  while (g.game_len < g.game_max) game.taken_back.push_back(NextMove(first_side).san);
  while (g.game_len > length) UndoGameMove();
}

}  // namespace

SavedGame ReadSavedGame(const std::string& path) {
  if (!LoadGame(path.c_str())) {
    throw std::runtime_error(path + " is no saved game: " + WhatIsWrong(path));
  }
  SavedGame game;
  const int length = g.game_len;
  while (g.game_len > 0) UndoGameMove();
  if (CurrentText() != kStartText || g.ep_sq != 0 || g.fifty != 0) game.start_fen = CurrentFen();
  game.start = CurrentPosition();
  game.white = NameOfSide(White, g.side, length);
  game.black = NameOfSide(Black, g.side, length);
  game.date = DateOf(path);
  PlayMoves(length, game);
  return game;
}

}  // namespace tarvyle::tools
