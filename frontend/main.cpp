#include <csignal>

#include "base/path.h"
#include "frontend/loop.h"

int main(int argc, char* argv[]) {
  // A reader that goes away must not end the program before the learn file is written, nor may a
  // limit on file sizes: the write that meets one reports it.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  tarvyle::SetProgDir(argc > 0 ? argv[0] : nullptr);
  tarvyle::PlayWinBoard();
  return 0;
}
