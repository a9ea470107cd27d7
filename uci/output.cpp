#include "uci/output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>

#include "base/message.h"

namespace tarvyle::uci {

namespace {

constexpr std::size_t kLongestInfo = 300;

int reader = STDOUT_FILENO;

// False when the reader has gone.
bool WriteSome(std::string_view& text) {
  const ssize_t written = write(reader, text.data(), text.size());
  if (written >= 0) {
    text.remove_prefix(static_cast<std::size_t>(written));
    return true;
  }
  if (errno == EAGAIN) {
    pollfd room{reader, POLLOUT, 0};
    return poll(&room, 1, -1) >= 0 || errno == EINTR;
  }
  return errno == EINTR;
}

void SayEachLine(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    SayInfo(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
}

}  // namespace

void SayTo(int descriptor) { reader = descriptor; }

void Say(std::string_view line) {
  std::string text(line);
  text += '\n';
  std::string_view rest = text;
  while (!rest.empty() && WriteSome(rest)) {
  }
}

void SayInfo(std::string_view text) {
  std::string line = "info string ";
  for (const char letter : text.substr(0, kLongestInfo)) {
    line += letter >= ' ' && letter <= '~' ? letter : ' ';
  }
  Say(line);
}

MessagesAsInfo::MessagesAsInfo() : outside_(message_sink) { message_sink = SayEachLine; }

MessagesAsInfo::~MessagesAsInfo() { message_sink = outside_; }

}  // namespace tarvyle::uci
