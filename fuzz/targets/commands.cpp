// The command loop: any bytes as lines of input.

#include <cstddef>
#include <cstdint>

#include "fuzz/harness.h"
#include "fuzz/inputlines.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvyle::fuzz;
  StartOnce();
  FreshProcess();
  ObeyLines(Text(data, size));
  return 0;
}
