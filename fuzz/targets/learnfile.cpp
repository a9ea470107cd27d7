// The learn file: any bytes, or records whose lengths and check bytes were put right first; then a
// look into what was read, a choice of a book move, and a copy that must be read again.

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "book/book.h"
#include "book/learn.h"
#include "book/learnfile.h"
#include "fuzz/harness.h"
#include "position/legal.h"
#include "position/movestack.h"
#include "position/types.h"

namespace {

using namespace tarvyle;

// Gives each record the length and the check byte that its text asks for.
void PutRecordsRight(std::string& bytes) {
  for (std::size_t at = 0; at + kLearnHeader < bytes.size();) {
    const std::size_t end = bytes.find('\0', at + kLearnHeader);
    if (end == std::string::npos) return;
    const auto length = static_cast<std::int16_t>(end + 1 - at);
    const std::uint8_t check = CheckByte(bytes.c_str() + at + kLearnHeader);
    std::memcpy(bytes.data() + at + kRecordLengthAt, &length, sizeof length);
    bytes[at + kRecordCheckAt] = static_cast<char>(check);
    at = end + 1;
  }
}

// Compares each head with the next: at once, as this is asked in most executions.
bool NothingIsKnown() {
  return learn[0] == nullptr &&
         std::memcmp(learn, learn + 1, sizeof learn - sizeof(LearnNode*)) == 0;
}

void LookAround() {
  int score = 0;
  FindCurrentNode();
  LearnLook(3, -100, 100, score);
  fuzz::Expect(LegalMoveList(), "the start position is legal");
  RndMovesWithLib(0, treeCnt[1] - 1);
  MoveFromLib(0, treeCnt[1] - 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzz::MemoryFile file;
  static fuzz::MemoryFile copy;
  fuzz::StartOnce();
  LearnReset();
  fuzz::FreshPosition();
  std::string_view input = fuzz::Text(data, size);
  const bool put_right = fuzz::TakeByte(input) % 2 == 1;
  std::string bytes(input);
  if (put_right) PutRecordsRight(bytes);
  file.Fill(bytes);
  if (!LoadLearnTable(file.Path())) {
    fuzz::Expect(NothingIsKnown(), "a damaged file leaves nothing");
    return 0;
  }
  LookAround();
  fuzz::Expect(SaveLearnTable(copy.Path()), "the table can be written");
  fuzz::Expect(copy.Content().size() == bytes.size(), "every record keeps its length");
  LearnReset();
  fuzz::Expect(LoadLearnTable(copy.Path()), "what was written is read");
  return 0;
}
