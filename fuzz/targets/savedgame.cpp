// Saved games: a file that was made from a sound one by changing some of its words or its length;
// when it is taken, lines of input go on with it ("undo", "redo", moves).
//
// Input: a byte that chooses the sound game; a byte that says how many words are changed, for each
// its offset (two bytes) and the new word (four bytes; for an offset with the highest bit one
// byte); if the first byte has its highest bit, the length of the file (two bytes); the rest are
// lines.

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/token.h"
#include "frontend/savedgame.h"
#include "fuzz/harness.h"
#include "fuzz/inputlines.h"
#include "position/game.h"
#include "position/image.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/soundness.h"
#include "position/types.h"

namespace {

using namespace tarvyle;

constexpr unsigned kOtherLength = 0x80;
constexpr unsigned kSingleByte = 0x8000;

struct Game {
  const char* position;
  const char* moves;
  int taken_back;
};
constexpr Game kGames[] = {
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", "", 0},
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
     "e2e4 e7e5 g1f3 b8c6 f1b5 a7a6 b5c6 d7c6 e1g1 f7f6 d2d4 e5d4 f3d4 c6c5 d4b3 d8d1 f1d1", 3},
    {"r3k2r/1Pppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPpP/R3K2R w KQkq -",
     "b7a8q a6c8 e1c1 g2h1q a2a4 b4a3 a8c8", 2},
    {"8/2p5/3p4/1P5r/K4pP1/7k/4P3/R7 b - g3", "f4g3 e2e4 c7c5 b5c6", 0},
};

std::string FileOf(const Game& game) {
  InitGame(game.position);
  std::string_view moves = game.moves;
  for (auto text = NextToken(moves, " "); !text.empty(); text = NextToken(moves, " ")) {
    Move move = 0;
    fuzz::Expect(StrToMove(text, move) && InsertMoveInGame(move, 0), "the games are legal");
  }
  for (int i = 0; i < game.taken_back; ++i) UndoGameMove();
  TagRecord();
  return {reinterpret_cast<const char*>(&g), sizeof g};
}

std::vector<std::string> SoundFiles() {
  std::vector<std::string> files;
  for (const Game& game : kGames) files.push_back(FileOf(game));
  return files;
}

template <typename Number>
bool Take(std::string_view& input, Number& number) {
  if (input.size() < sizeof number) return false;
  std::memcpy(&number, input.data(), sizeof number);
  input.remove_prefix(sizeof number);
  return true;
}

void ChangeWords(std::string& file, std::string_view& input) {
  for (unsigned count = fuzz::TakeByte(input) % 16; count > 0; --count) {
    std::uint16_t offset = 0;
    if (!Take(input, offset)) return;
    if ((offset & kSingleByte) != 0) {
      file[(offset ^ kSingleByte) % file.size()] = static_cast<char>(fuzz::TakeByte(input));
      continue;
    }
    std::uint32_t word = 0;
    if (!Take(input, word)) return;
    std::memcpy(file.data() + offset % (file.size() / 4) * 4, &word, sizeof word);
  }
}

// The file that the input asks for; what is left of the input are the lines.
std::string FileFrom(std::string_view& input) {
  static const std::vector<std::string> files = SoundFiles();
  const unsigned choice = fuzz::TakeByte(input);
  std::string file = files[choice % files.size()];
  ChangeWords(file, input);
  std::uint16_t length = 0;
  if ((choice & kOtherLength) != 0 && Take(input, length)) file.resize(length);
  return file;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzz::MemoryFile file;
  fuzz::StartOnce();
  std::string_view input = fuzz::Text(data, size);
  file.Fill(FileFrom(input));
  fuzz::FreshPosition();
  const auto before = std::make_unique<GameRecord>(g);
  if (!LoadGame(file.Path())) {
    fuzz::Expect(std::memcmp(&g, before.get(), sizeof g) == 0, "a refused file changes nothing");
    return 0;
  }
  fuzz::FreshProcess();
  fuzz::Expect(LoadGame(file.Path()) && RecordIsSound(g), "a game that is taken is sound");
  fuzz::ObeyLines(input);
  return 0;
}
