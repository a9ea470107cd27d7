#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/boundedsearch.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

// Describing a command line. All that is needed of CLI11 stands behind this: it takes as long to
// compile as all the rest of the workbench.

namespace tarvyle::tools {

// An option or argument of a command; each rule returns the same option again.
class Option {
 public:
  explicit Option(CLI::Option* option) : option_(option) {}

  Option Required() const;
  Option Between(int least, int most) const;
  Option Between(double least, double most) const;
  Option OneOf(const std::vector<std::string>& values) const;
  Option Needs(const Option& other) const;
  Option Excludes(const Option& other) const;

  // Whether the line has it; for the time when the command runs.
  bool Given() const;

 private:
  CLI::Option* option_;
};

// A command, or a group of them.
class Command {
 public:
  explicit Command(CLI::App* app) : app_(app) {}

  // An option ("--depth", "-o,--output") or an argument by its place ("FILE") whose value goes to
  // `value`: a text, several, or a number (int, unsigned, double).
  template <typename Value>
  Option Add(const char* name, Value& value, const char* help) const;

  // An option without a value.
  Option AddFlag(const char* name, bool& value, const char* help) const;

  // --seconds and --depth, one of which must be given: the action of a later `Does` sees to that.
  void AddBounds(SearchBounds& bounds);

  // A command below this one; `example` ends its help, when there is one.
  Command AddCommand(const char* name, const char* what, const char* example = nullptr) const;

  // A command that only holds others, one of which must be given.
  Command AddGroup(const char* name, const char* what, const char* example) const;

  // What is done when the line asks for this command.
  void Does(std::function<void()> action) const;

 private:
  CLI::App* app_;
  std::function<void()> check_bounds_;
};

// Reads the command line by what `describe` adds to the program and does what it asks for. Returns
// the exit status: that of a wrong line is `usage_error`, after a complaint on standard error.
// Throws what the command throws.
int ObeyCommandLine(int argc, char** argv, void (*describe)(const Command& program),
                    int usage_error);

}  // namespace tarvyle::tools
