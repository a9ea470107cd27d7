#include "uci/output.h"

#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <string>

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

// Takes out all that was printed since the last time.
std::string TakeWords() {
  std::fflush(stdout);
  const off_t size = lseek(STDOUT_FILENO, 0, SEEK_CUR);
  if (size <= 0) return {};
  std::string words(static_cast<std::size_t>(size), '\0');
  const ssize_t taken = pread(STDOUT_FILENO, words.data(), words.size(), 0);
  words.resize(taken > 0 ? static_cast<std::size_t>(taken) : 0);
  lseek(STDOUT_FILENO, 0, SEEK_SET);
  return words;
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

HeldWords::HeldWords() : outside_(dup(STDOUT_FILENO)) {
  std::fflush(stdout);
  const int held = memfd_create("words", MFD_CLOEXEC);
  if (held < 0 || outside_ < 0 || dup2(held, STDOUT_FILENO) < 0) {
    throw std::runtime_error("cannot redirect standard output");
  }
  close(held);
}

HeldWords::~HeldWords() {
  std::fflush(stdout);
  dup2(outside_, STDOUT_FILENO);
  close(outside_);
}

void PassOnWords(void (*say)(std::string_view)) {
  const std::string words = TakeWords();
  std::string_view rest = words;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    say(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
}

void DropWords() { TakeWords(); }

}  // namespace tarvyle::uci
