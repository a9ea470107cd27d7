// The configuration file: any bytes, and what the engine asks of it afterwards.

#include <cstdint>
#include <cstring>
#include <string>

#include "base/property.h"
#include "frontend/startup.h"
#include "fuzz/harness.h"
#include "search/settings.h"

namespace {

// What README.md promises of "time search default seconds", in 1/100 s.
constexpr int kLeastAllowance = 700;
constexpr int kGreatestAllowance = 10000;

constexpr const char* kKeys[] = {"hash size", "book move", "learn file write", "", "="};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvyle;
  static fuzz::MemoryFile file;
  file.Fill(fuzz::Text(data, size));
  property_clear();
  fuzz::Expect(property_load(file.Path()), "a file that is there can be read");
  for (const Property* entry = dict; entry != nullptr; entry = entry->next) {
    fuzz::Expect(!entry->name.empty() && !entry->value.empty(), "name and value are not empty");
  }
  for (const char* key : kKeys) fuzz::Expect(property_get(key) != nullptr, "there is an answer");
  ApplySettings();
  fuzz::Expect(limit_time >= kLeastAllowance && limit_time <= kGreatestAllowance,
               "the allowance has its bounds");
  fuzz::Expect(PLAY_STYLE >= 0 && PLAY_STYLE <= 2, "the style is one of three");
  return 0;
}
