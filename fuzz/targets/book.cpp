// The opening book: any bytes, and a move from what was read.

#include <cstdint>
#include <cstring>
#include <memory>

#include "book/book.h"
#include "book/bookfile.h"
#include "book/learn.h"
#include "fuzz/harness.h"
#include "position/legal.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/types.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvyle;
  static fuzz::MemoryFile file;
  fuzz::StartOnce();
  LearnReset();
  fuzz::FreshPosition();
  file.Fill(fuzz::Text(data, size));
  const auto before = std::make_unique<GameRecord>(g);
  fuzz::Expect(ReadLibFile(file.Path()), "a file that is there can be read");
  fuzz::Expect(std::memcmp(&g, before.get(), sizeof g) == 0, "the game is as before");
  fuzz::Expect(LegalMoveList(), "the start position is legal");
  RndMovesWithLib(0, treeCnt[1] - 1);
  MoveFromLib(0, treeCnt[1] - 1);
  return 0;
}
