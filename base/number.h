#pragma once

#include <charconv>
#include <string_view>
#include <system_error>

// Whole decimal numbers in texts.

namespace tarvyle {

// The whole number that a text begins with, blanks and a sign before it, as far as there is one:
// "38", " +38 entries". `otherwise` when there is none, or none that fits 32 bits.
int LeadingInteger(const char* text, int otherwise);

// Reads a text that is a whole number from its first character to its last, with no sign but a
// minus. False, changing nothing, for any other, and for a number out of range of the type.
template <typename Integer>
bool ReadInteger(std::string_view text, Integer& number) {
  Integer read = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, read);
  if (error != std::errc() || stopped != end) return false;
  number = read;
  return true;
}

}  // namespace tarvyle
