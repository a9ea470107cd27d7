#pragma once

#include <gtest/gtest.h>

#include <string>

// Whoever includes this uses the engine as well:
// IWYU pragma: begin_exports
#include "base/property.h"
#include "host/engine.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/hashmemory.h"
#include "search/root.h"
#include "search/state.h"
#include "search/status.h"
#include "search/style.h"
// IWYU pragma: end_exports

// The engine held as a library, for the tests of what holds it so.

namespace tarvyle::support {

inline constexpr int kSmallTables = 0x10000;  // entries of each hash table

// Each test has what a fresh process has, but for small hash tables.
class HostTest : public testing::Test {
 protected:
  HostTest() {
    static const bool started = StartEngine() && HashAllocate(kSmallTables);
    EXPECT_TRUE(started);
    AsAtTheStart();
  }

  ~HostTest() override {
    if (Hash_Size != kSmallTables) HashAllocate(kSmallTables);
    AsAtTheStart();
  }

 private:
  static void AsAtTheStart() {
    property_clear();
    load_play_style("knowledge3");
    is_rnd_search = 0;
    limit_time = kDefaultLimit;
    world = {RealMilliseconds, RealSeed};
    root_hooks = {};
    status_sink = nullptr;
    HashClear();
    FreshProcess();
  }
};

}  // namespace tarvyle::support
