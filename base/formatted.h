#pragma once

#include <cstdarg>
#include <string>

namespace tarvyle {

// The text that std::printf would print, of whatever length; empty where that would fail.
[[gnu::format(printf, 1, 2)]] std::string Formatted(const char* format, ...);
[[gnu::format(printf, 1, 0)]] std::string FormattedList(const char* format, std::va_list arguments);

}  // namespace tarvyle
