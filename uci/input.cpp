#include "uci/input.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <deque>
#include <string_view>
#include <utility>

#include "uci/output.h"
#include "uci/words.h"

namespace tarvyle::uci {

Interruption interruption;

namespace {

constexpr std::size_t kLongestLine = std::size_t{1} << 20;
constexpr std::size_t kChunk = 16384;

struct Input {
  int descriptor = STDIN_FILENO;
  bool ended = false;
  bool too_long = false;          // the line that is being read has been given up
  std::string unfinished;         // what has been read of it
  std::deque<std::string> fresh;  // whole lines, not looked at yet
  std::deque<std::string> later;  // came while the engine thought
};
Input input;

void FinishLine() {
  if (input.too_long) {
    SayInfo("a line of more than a million characters was ignored");
  } else {
    input.fresh.push_back(std::move(input.unfinished));
  }
  input.unfinished.clear();
  input.too_long = false;
}

void Take(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    input.unfinished += text.substr(0, end);
    if (input.unfinished.size() > kLongestLine) {
      input.unfinished.clear();
      input.too_long = true;
    }
    if (end == std::string_view::npos) return;
    FinishLine();
    text.remove_prefix(end + 1);
  }
}

void End() {
  input.ended = true;
  if (input.too_long || !input.unfinished.empty()) FinishLine();
}

// Reads what there is, waiting for it at most so many milliseconds (-1: for ever).
void Read(int milliseconds) {
  if (input.ended) return;
  pollfd waiting{input.descriptor, POLLIN, 0};
  const int ready = poll(&waiting, 1, milliseconds);
  if (ready == 0 || (ready < 0 && errno == EINTR)) return;
  std::array<char, kChunk> chunk;
  const ssize_t count = read(input.descriptor, chunk.data(), chunk.size());
  if (count > 0) {
    Take({chunk.data(), static_cast<std::size_t>(count)});
  } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
    End();
  }
}

std::string TakeFirst(std::deque<std::string>& lines) {
  std::string line = std::move(lines.front());
  lines.pop_front();
  return line;
}

void HearLine(std::string line) {
  std::string_view rest = line;
  const std::string_view word = NextWord(rest);
  if (word == "isready") {
    Say("readyok");
  } else if (word == "stop" || word == "ponderhit") {
    interruption.stop = true;
  } else if (word == "quit") {
    interruption = {true, true};
  } else {
    input.later.push_back(std::move(line));
  }
}

// Looks at the lines that have been read, up to one that stops the search.
void HearLines() {
  while (!input.fresh.empty() && !interruption.stop) HearLine(TakeFirst(input.fresh));
  if (input.ended) interruption.stop = true;
}

}  // namespace

void ListenTo(int descriptor) {
  input = {};
  input.descriptor = descriptor;
}

bool NextLine(std::string& line) {
  while (input.later.empty() && input.fresh.empty() && !input.ended) Read(-1);
  if (!input.later.empty()) {
    line = TakeFirst(input.later);
  } else if (!input.fresh.empty()) {
    line = TakeFirst(input.fresh);
  } else {
    return false;
  }
  return true;
}

void HearWhileThinking() {
  Read(0);
  HearLines();
}

// Lines may have been read together with the "go": those are looked at before more is waited for.
void WaitForStop() {
  HearLines();
  while (!interruption.stop) {
    Read(-1);
    HearLines();
  }
}

}  // namespace tarvyle::uci
