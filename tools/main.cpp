// The workbench: the engine's parts on the command line.

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "host/engine.h"
#include "tools/commandline.h"
#include "tools/failure.h"
#include "tools/subcommands.h"

namespace tarvyle::tools {

namespace {

constexpr int kCheckFailed = 1;
constexpr int kUsageError = 2;  // and whatever else went wrong

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

// What could not be written on standard output, of help, version or any command, is no success.
int EndWith(int status) {
  std::cout.flush();
  errno = 0;  // it stays so when a write failed before
  const bool told = std::fflush(stdout) == 0 && std::ferror(stdout) == 0 && std::cout.good();
  if (told) return status;
  std::fprintf(stderr, "tarv: cannot write to standard output%s%s\n", errno != 0 ? ": " : "",
               errno != 0 ? std::strerror(errno) : "");
  return status != 0 ? status : kUsageError;
}

}  // namespace

}  // namespace tarvyle::tools

int main(int argc, char** argv) {
  // A write beyond a limit on file sizes reports it, like one on a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  return tarvyle::tools::EndWith(tarvyle::tools::Obey(argc, argv));
}
