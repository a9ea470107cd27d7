#include "tools/progress.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace tarvyle::tools {

namespace {

constexpr std::size_t kBarWidth = 30;

std::string TimeText(double seconds) {
  const long whole = std::lround(seconds);
  char text[48];
  std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
  return text;
}

}  // namespace

Progress::Progress(std::size_t total)
    : total_(total),
      visible_(total > 0 && isatty(STDERR_FILENO) != 0),
      begin_(std::chrono::steady_clock::now()) {}

Progress::~Progress() { Clear(); }

void Progress::Show(std::size_t done, std::size_t skipped) {
  if (!visible_) return;
  const std::size_t filled = kBarWidth * done / total_;
  const std::string bar = std::string(filled, '#') + std::string(kBarWidth - filled, '.');
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin_;
  const std::size_t worked = done - skipped;
  const std::string left = worked == 0 ? "-:--:--"
                                       : TimeText(taken.count() / static_cast<double>(worked) *
                                                  static_cast<double>(total_ - done));
  std::fprintf(stderr, "\r\033[K[%s] %zu/%zu, %s left", bar.c_str(), done, total_, left.c_str());
  std::fflush(stderr);
}

void Progress::Clear() {
  if (!visible_) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
}

}  // namespace tarvyle::tools
