#include "tools/suite/suite.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "search/root.h"
#include "tools/suite/solve.h"

namespace tarvyle::tools {

void AddSuite(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("suite", "Searches the positions of a test suite and counts the solved");
  command->footer("Example:\n  tarv suite bratko-kopec.epd --seconds 10");
  auto options = std::make_shared<SuiteOptions>();
  command->add_option("FILE", options->file, "EPD lines with bm or am, - for standard input")
      ->required();
  CLI::Option* seconds =
      command->add_option("--seconds", options->bounds.seconds, "seconds for each position")
          ->check(CLI::Range(0.01, 100000.0));
  CLI::Option* depth =
      command->add_option("--depth", options->bounds.depth, "deepest iteration; repeats exactly")
          ->check(CLI::Range(2, kMaxIteration));
  command->add_option("--expect", options->expected, "status 1 when fewer are solved")
      ->check(CLI::Range(0, 1000000));
  command->callback([options, seconds, depth] {
    if (seconds->empty() && depth->empty()) throw CLI::RequiredError("--seconds or --depth");
    RunSuite(*options);
  });
}

}  // namespace tarvyle::tools
