#pragma once

#include <string_view>

// What the engine tells while it works: thinking lines, stages of a search, lines of a book that
// are wrong. It goes to standard output, where the console's reader is; whoever has another reader
// takes it instead. Complaints go to standard error, past all this.

namespace tarvyle {

// Receives the text of each message, with the newline at its end, in place of standard output when
// set.
extern void (*message_sink)(std::string_view text);

// Tells one or several whole lines, put together as std::printf does.
[[gnu::format(printf, 1, 2)]] void Message(const char* format, ...);

}  // namespace tarvyle
