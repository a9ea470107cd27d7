// The second front end as a program of its own, for GUIs that start an engine without arguments.

#include <csignal>
#include <cstdio>

#include "host/engine.h"
#include "uci/dialogue.h"

int main() {
  // A write beyond a limit on file sizes reports it, like one on a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  if (!tarvyle::StartEngine()) {
    std::fputs("tarv-uci: out of memory\n", stderr);
    return 2;
  }
  tarvyle::uci::SpeakUci();
  return 0;
}
