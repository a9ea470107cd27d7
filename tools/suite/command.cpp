#include <memory>

#include "tools/commandline.h"
#include "tools/subcommands.h"
#include "tools/suite/solve.h"

namespace tarvyle::tools {

void AddSuite(const Command& program) {
  Command command =
      program.AddCommand("suite", "Searches the positions of a test suite and counts the solved",
                         "tarv suite bratko-kopec.epd --seconds 10");
  auto options = std::make_shared<SuiteOptions>();
  command.Add("FILE", options->file, "EPD lines with bm or am, - for standard input").Required();
  command.AddBounds(options->bounds);
  command.Add("--expect", options->expected, "status 1 when fewer are solved").Between(0, 1000000);
  command.Does([options] { RunSuite(*options); });
}

}  // namespace tarvyle::tools
