#include <csignal>

#include "base/path.h"
#include "frontend/loop.h"

int main(int argc, char* argv[]) {
  // A reader that goes away must not end the program before the learn file is written.
  std::signal(SIGPIPE, SIG_IGN);
  tarvyle::SetProgDir(argc > 0 ? argv[0] : nullptr);
  tarvyle::PlayWinBoard();
  return 0;
}
