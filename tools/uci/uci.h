#pragma once

namespace CLI {
class App;
}

namespace tarvyle::tools {

// Adds the subcommand "uci".
void AddUci(CLI::App& app);

}  // namespace tarvyle::tools
