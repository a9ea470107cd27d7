#include "tools/commandline.h"
#include "tools/subcommands.h"
#include "uci/dialogue.h"

namespace tarvyle::tools {

void AddUci(const Command& program) {
  program.AddCommand("uci", "Speaks the Universal Chess Interface to a GUI").Does([] {
    uci::SpeakUci();
  });
}

}  // namespace tarvyle::tools
