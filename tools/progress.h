#pragma once

#include <chrono>
#include <cstddef>

namespace tarvyle::tools {

// A progress bar with the time left, on standard error while that is a terminal; silent otherwise.
class Progress {
 public:
  explicit Progress(std::size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // `done` of `total` are done. Steps that cost nothing (`skipped`) do not count for the time left.
  void Show(std::size_t done, std::size_t skipped = 0);

  // Takes the bar off the screen, before a line is printed.
  void Clear();

 private:
  std::size_t total_;
  bool visible_;
  std::chrono::steady_clock::time_point begin_;
};

}  // namespace tarvyle::tools
