#include "tools/commandline.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "base/version.h"
#include "search/root.h"

namespace tarvyle::tools {

Option Option::Required() const { return Option(option_->required()); }

Option Option::Between(int least, int most) const {
  return Option(option_->check(CLI::Range(least, most)));
}

Option Option::Between(double least, double most) const {
  return Option(option_->check(CLI::Range(least, most)));
}

Option Option::OneOf(const std::vector<std::string>& values) const {
  return Option(option_->check(CLI::IsMember(values)));
}

Option Option::Needs(const Option& other) const { return Option(option_->needs(other.option_)); }

Option Option::Excludes(const Option& other) const {
  return Option(option_->excludes(other.option_));
}

bool Option::Given() const { return !option_->empty(); }

template <typename Value>
Option Command::Add(const char* name, Value& value, const char* help) const {
  return Option(app_->add_option(name, value, help));
}

template Option Command::Add(const char*, std::string&, const char*) const;
template Option Command::Add(const char*, std::vector<std::string>&, const char*) const;
template Option Command::Add(const char*, int&, const char*) const;
template Option Command::Add(const char*, unsigned&, const char*) const;
template Option Command::Add(const char*, double&, const char*) const;

Option Command::AddFlag(const char* name, bool& value, const char* help) const {
  return Option(app_->add_flag(name, value, help));
}

void Command::AddBounds(SearchBounds& bounds) {
  const Option seconds =
      Add("--seconds", bounds.seconds, "seconds for each position").Between(0.01, 100000.0);
  const Option depth = Add("--depth", bounds.depth, "deepest iteration; repeats exactly")
                           .Between(kFirstIteration, kMaxIteration);
  check_bounds_ = [seconds, depth] {
    if (!seconds.Given() && !depth.Given()) throw CLI::RequiredError("--seconds or --depth");
  };
}

Command Command::AddCommand(const char* name, const char* what, const char* example) const {
  CLI::App* app = app_->add_subcommand(name, what);
  if (example != nullptr) app->footer(std::string("Example:\n  ") + example);
  return Command(app);
}

Command Command::AddGroup(const char* name, const char* what, const char* example) const {
  Command group = AddCommand(name, what, example);
  group.app_->require_subcommand(1);
  return group;
}

void Command::Does(std::function<void()> action) const {
  app_->callback([check = check_bounds_, action = std::move(action)] {
    if (check) check();
    action();
  });
}

int ObeyCommandLine(int argc, char** argv, void (*describe)(const Command& program),
                    int usage_error) {
  CLI::App app("tarv - the engine's workbench", "tarv");
  app.set_version_flag("--version", std::string("tarv ") + kVersion, "Print the version and exit");
  app.require_subcommand(1);
  describe(Command(&app));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // help or the version was asked for
    std::fprintf(stderr, "tarv: %s\n", error.what());
    return usage_error;
  }
  return 0;
}

}  // namespace tarvyle::tools
