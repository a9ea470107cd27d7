#include <unistd.h>

#include <csignal>

#include "tools/commandline.h"
#include "tools/commands.h"
#include "tools/uci/loop.h"

namespace tarvyle::tools {

void AddUci(const Command& program) {
  program.AddCommand("uci", "Speaks the Universal Chess Interface to a GUI").Does([] {
    // A GUI that goes away ends the input: that is the end, not a signal.
    std::signal(SIGPIPE, SIG_IGN);
    const int out = dup(STDOUT_FILENO);
    SpeakUci(STDIN_FILENO, out);
    close(out);
  });
}

}  // namespace tarvyle::tools
