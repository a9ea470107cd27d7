// The configuration file: any bytes, and what the engine asks of it afterwards.

#include <cstdint>
#include <cstring>
#include <string>

#include "base/property.h"
#include "frontend/startup.h"
#include "fuzz/harness.h"
#include "search/settings.h"

namespace {

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
  fuzz::Expect(limit_time >= 700 && limit_time <= 10000, "the allowance has its bounds");
  fuzz::Expect(PLAY_STYLE >= 0 && PLAY_STYLE <= 2, "the style is one of three");
  return 0;
}
