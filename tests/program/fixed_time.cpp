// Preloaded into the engine by the tests of this folder: the wall clock that it sees does not run
// by itself but moves on by a fixed step at each reading. The engine looks at the clock every so
// many nodes, so a search that ends by time ends after the same number of nodes on every machine,
// however loaded. time() is always 1, which fixes the seed of everything random.
//
// FIXED_TIME_STEP_MS: milliseconds that pass between two readings; 10 without it.
// FIXED_TIME_PAUSE_MS: milliseconds of the real clock that a reading takes; 0 without it. Someone
// on the other end sees an engine that thinks, though it searches no node more.

#include <bits/types/struct_timeb.h>
#include <sys/time.h>
#include <sys/timeb.h>
#include <syscall.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace {

constexpr std::int64_t kStart_ms = 1'000'000'000;  // any moment that is not zero will do
constexpr std::int64_t kDefault_step_ms = 10;

std::int64_t Setting(const char* name, std::int64_t otherwise) {
  const char* const asked = std::getenv(name);
  return asked != nullptr ? std::atoll(asked) : otherwise;
}

std::int64_t NextReading_ms() {
  static const std::int64_t step = Setting("FIXED_TIME_STEP_MS", kDefault_step_ms);
  static const std::int64_t pause = Setting("FIXED_TIME_PAUSE_MS", 0);
  static std::int64_t now = kStart_ms;
  if (pause > 0) usleep(static_cast<useconds_t>(pause * 1000));
  return now += step;
}

}  // namespace

extern "C" {

time_t time(time_t* result) noexcept {
  if (result != nullptr) *result = 1;
  return 1;
}

int clock_gettime(clockid_t clock, timespec* result) noexcept {
  if (clock != CLOCK_REALTIME && clock != CLOCK_REALTIME_COARSE) {
    return static_cast<int>(syscall(SYS_clock_gettime, clock, result));
  }
  const std::int64_t now = NextReading_ms();
  result->tv_sec = now / 1000;
  result->tv_nsec = now % 1000 * 1'000'000;
  return 0;
}

int gettimeofday(timeval* result, void*) noexcept {
  const std::int64_t now = NextReading_ms();
  result->tv_sec = now / 1000;
  result->tv_usec = now % 1000 * 1000;
  return 0;
}

int ftime(timeb* result) {
  const std::int64_t now = NextReading_ms();
  *result = {};
  result->time = now / 1000;
  result->millitm = static_cast<unsigned short>(now % 1000);
  return 0;
}
}
