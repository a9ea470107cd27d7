#include "frontend/startup.h"

#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/path.h"
#include "base/property.h"
#include "book/bookfile.h"
#include "book/learnfile.h"
#include "eval/scoretable.h"
#include "frontend/console.h"
#include "position/attack.h"
#include "position/setup.h"
#include "search/clock.h"
#include "search/hashinit.h"
#include "search/lifetimes.h"
#include "search/style.h"

namespace tarvyle {

namespace {

constexpr const char* kProgramName = "tarvyle";
constexpr const char* kBuildDate = "Jul 22 2013";
constexpr int kListingLine = 1024;
constexpr int kCannotRun = 126;  // the shell's status, or the next, when it cannot start the lister

constexpr int kLeastTime = 700;  // bounds of the configured allowance, 1/100 s
constexpr int kGreatestTime = 10000;

void PrintInstanceWarning() {
  if (prev_inst == 1) std::puts("# warning: learn file write disable ");
  if (prev_inst == 2) std::puts("# warning: tarvyle(2): learn file write disable ");
}

void LoadConfiguration() {
  if (property_load(ConCat("tarvyle.cfg"))) return;
  std::fputs("conf.file not found\n", stderr);
  std::exit(1);
}

// A sound file that cannot be read now holds what was learned: it is neither deleted nor replaced.
void LeaveLearnFile(const char* path, int reason) {
  learn_file_stays = 1;
  std::fprintf(stderr, "# warning: learn file %s cannot be read (%s), it stays as it is \n", path,
               std::strerror(reason));
}

// The book is read only without a usable learn file: one that was written holds the book.
void LoadKnowledge() {
  const char* learn_file = ConCat("tarvyle.lrn");
  switch (ReadLearnFile(learn_file)) {
    case LearnFileState::kLoaded: return;
    case LearnFileState::kMissing: break;
    case LearnFileState::kDamaged: std::remove(learn_file); break;
    case LearnFileState::kUnreadable: LeaveLearnFile(learn_file, errno); break;
  }
  std::fputs("#  learn file notfound, load book-file \n", stderr);
  if (ReadLibFile(ConCat("tarvyle.bk"))) return;
  std::fputs("book file notfound  \n", stderr);
  std::exit(1);
}

void ApplyTimeSetting() {
  // A number of seconds too large for the product wraps before it is clamped.
  const auto seconds =
      static_cast<std::uint32_t>(std::atoi(property_get("time search default seconds")));
  const int hundredths = static_cast<int>(seconds * 100u);
  if (hundredths == 0) std::puts("#warning: limit time error in cfg file ");
  SetAllowance(std::clamp(hundredths, kLeastTime, kGreatestTime));
}

void NameSavedGame() { std::strcpy(game_fname, ConCat("tarvyle_save_game.dat")); }

void ApplyPlayStyle() {
  std::puts("# load play style: ");
  if (load_play_style(property_get("play style"))) {
    std::printf("# %s \n", print_play_str());
    std::puts("# ok ");
  } else {
    std::puts("# error ");
  }
}

}  // namespace

unsigned prog_is_run() {
  std::FILE* listing = popen("ps -e", "r");  // NOLINT(cert-env33-c): that `ps` which PATH finds
  if (listing == nullptr) {
    std::perror("# pre_inst_detect: Problems with pipe");
    return 1;
  }
  int lines = 0;
  char line[kListingLine];
  while (std::fgets(line, sizeof line, listing) != nullptr) {
    if (std::strstr(line, kProgramName) != nullptr) ++lines;
  }
  const int status = pclose(listing);
  const int exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
  if (exit_status == kCannotRun || exit_status == kCannotRun + 1) return 1;
  return lines >= 2 ? 2 : 0;
}

void InitAllVar() {
  InitAtk();
  HashInit();
  InitEvaluate();
}

void ApplySettings() {
  is_rnd_search = std::strcmp(property_get("random search?!"), "enable") == 0 ? 1 : 0;
  ApplyTimeSetting();
  ApplyPlayStyle();
}

void ResetProcess() {
  property_clear();
  console = {};
  NameSavedGame();
  BeginProcess();
}

void StartUp() {
  prev_inst = prog_is_run();
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  std::setvbuf(stdin, nullptr, _IONBF, 0);
  std::printf("# Chess, build %s \n", kBuildDate);
  PrintInstanceWarning();
  LoadConfiguration();
  InitAllVar();
  InitNewGame();
  LoadKnowledge();
  NameSavedGame();
  ApplySettings();
  std::puts("# <help> - help ");
  std::puts("# move: ? ");
}

}  // namespace tarvyle
