// The workbench: the engine's parts on the command line.

#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>

#include "host/engine.h"
#include "tools/commandline.h"
#include "tools/commands.h"
#include "tools/failure.h"

namespace tarvyle::tools {

namespace {

constexpr int kCheckFailed = 1;
constexpr int kUsageError = 2;

void AddCommands(const Command& program) {
  AddEngineParts(program);
  AddLearn(program);
  AddBook(program);
  AddGame(program);
  AddSuite(program);
  AddUci(program);
}

int Obey(int argc, char** argv) {
  try {
    if (!StartEngine()) throw std::runtime_error("out of memory");
    return ObeyCommandLine(argc, argv, AddCommands, kUsageError);
  } catch (const CheckFailed& failure) {
    std::fprintf(stderr, "tarv: %s\n", failure.what());
    return kCheckFailed;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tarv: %s\n", error.what());
    return kUsageError;
  }
}

}  // namespace

}  // namespace tarvyle::tools

int main(int argc, char** argv) {
  // A write beyond a limit on file sizes reports it, like one on a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  return tarvyle::tools::Obey(argc, argv);
}
