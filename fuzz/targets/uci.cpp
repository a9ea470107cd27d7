// The Universal Chess Interface: any bytes as lines of input. At their end every search stops.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/harness.h"
#include "search/clock.h"
#include "uci/dialogue.h"

namespace {

constexpr std::uint64_t kNodesPerSearch = 200;  // until the end of the input is seen

// Left out: files would be written, large tables allocated, and many positions searched.
bool IsLeftOut(std::string text) {
  for (char& letter : text) {
    letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  constexpr std::array<std::string_view, 3> kWords = {"output", "hash", "bench"};
  return std::any_of(kWords.begin(), kWords.end(),
                     [&](std::string_view word) { return text.find(word) != std::string::npos; });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvyle::fuzz;
  const std::string_view text = Text(data, size);
  if (IsLeftOut(std::string(text))) return 0;
  StartOnce();
  FreshProcess();
  tarvyle::world.first_count = [] { return tarvyle::kNodesPerPoll - kNodesPerSearch; };
  MemoryFile input;
  input.Fill(text);
  static const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  const int lines = open(input.Path(), O_RDONLY | O_CLOEXEC);
  Expect(nowhere >= 0 && lines >= 0, "files can be opened");
  tarvyle::uci::SpeakUci(lines, nowhere);
  close(lines);
  return 0;
}
