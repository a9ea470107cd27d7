#include "tools/uci/uci.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>

#include "tools/uci/loop.h"

namespace tarvyle::tools {

void AddUci(CLI::App& app) {
  CLI::App* command = app.add_subcommand("uci", "Speaks the Universal Chess Interface to a GUI");
  command->callback([] {
    // A GUI that goes away ends the input: that is the end, not a signal.
    std::signal(SIGPIPE, SIG_IGN);
    const int out = dup(STDOUT_FILENO);
    SpeakUci(STDIN_FILENO, out);
    close(out);
  });
}

}  // namespace tarvyle::tools
