#include "eval/dump.h"

#include "eval/scoretable.h"
#include "position/types.h"

namespace tarvyle {

namespace {

constexpr const char* kPieceNames[7] = {"nopiece", "pawn",  "knight", "bishop",
                                        "rook",    "queen", "king"};
constexpr const char* kColourNames[2] = {"white", "black"};
constexpr const char* kFileName = "sctable.txt";

}  // namespace

int PrintArray(std::FILE* stream, const int* table, int piece, int colour) {
  std::fprintf(stream, "%s %s\n", kColourNames[colour], kPieceNames[piece]);
  int result = 0;
  for (int row = 0; row < 8; ++row) {
    for (int file = 0; file < 8; ++file) std::fprintf(stream, "%3d,", table[8 * row + file]);
    result = std::fputc('\n', stream);
  }
  return result;
}

void PrintScoreTables(std::FILE* stream) {
  for (int colour = White; colour <= Black; ++colour) {
    for (int piece = Pawn; piece <= King; ++piece) {
      PrintArray(stream, score_table[colour][piece], piece, colour);
    }
  }
}

int print_score_tbl() {
  std::FILE* file = std::fopen(kFileName, "w");
  if (file == nullptr) {
    std::fprintf(stderr, "# error open file %s \n", kFileName);
    return 0;
  }
  PrintScoreTables(file);
  std::fclose(file);
  return 0;
}

}  // namespace tarvyle
