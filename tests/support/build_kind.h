#pragma once

// What kind of build the tests run in.

namespace tarvyle::support {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif

// Builds that check every step run a part of the long tests only.
#if defined(__SANITIZE_ADDRESS__) || defined(TARVYLE_CHECK_RECORD)
inline constexpr bool kSlowBuild = true;
#else
inline constexpr bool kSlowBuild = false;
#endif

}  // namespace tarvyle::support
