#pragma once

namespace tarvyle {

// "st": sets `limit_time` from seconds, fractions allowed, within 4 to 100 s; warns when it clamps,
// and reports a missing or zero number, changing nothing.
void SetTimePerMove(const char* seconds);

// "time": sets `limit_time` from the engine's remaining clock in 1/100 s, spread over the moves up
// to the next multiple of 40, within 7 to 30 s.
void SetTimeByClock(const char* hundredths);

}  // namespace tarvyle
