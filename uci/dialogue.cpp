#include "uci/dialogue.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <string>
#include <string_view>

#include "base/version.h"
#include "host/engine.h"
#include "search/hashmemory.h"
#include "uci/extracommands.h"
#include "uci/golimits.h"
#include "uci/input.h"
#include "uci/knowledge.h"
#include "uci/options.h"
#include "uci/output.h"
#include "uci/place.h"
#include "uci/think.h"
#include "uci/words.h"

namespace tarvyle::uci {

namespace {

void ObeyUci(std::string_view /*words*/) {
  Say("id name Tarvyle " + std::string(kVersion));
  Say("id author Tarvyle developers");
  SayOptions();
  Say("uciok");
}

void Freshen() {
  if (FreshenKnowledge()) PlaceAgain();
}

// All that takes its time is done before the answer, so that no search has to.
void ObeyIsReady(std::string_view /*words*/) {
  Freshen();
  HashPopulate();
  Say("readyok");
}

void ObeyNewGame(std::string_view /*words*/) {
  FreshProcess();
  KnowledgeIsStale();
  FreshenKnowledge();
  PlaceNewGame();
  HashPopulate();
}

void ObeyGo(std::string_view words) {
  std::string_view rest = words;
  if (NextWord(rest) == "perft") return ObeyGoPerft(rest);
  Freshen();
  Think(ReadLimits(words));
}

// Nothing is being searched.
void ObeyStop(std::string_view /*words*/) {}

struct CommandRow {
  std::string_view word;
  void (*obey)(std::string_view words);
};

constexpr std::array kCommandRows = {
    CommandRow{"uci", ObeyUci},
    CommandRow{"isready", ObeyIsReady},
    CommandRow{"ucinewgame", ObeyNewGame},
    CommandRow{"setoption", ObeySetOption},
    CommandRow{"position", ObeyPosition},
    CommandRow{"go", ObeyGo},
    CommandRow{"stop", ObeyStop},
    CommandRow{"ponderhit", ObeyStop},
    CommandRow{"bench", ObeyBench},
    CommandRow{"perft", ObeyPerft},
    CommandRow{"eval", ObeyEval},
    CommandRow{"d", ObeyShow},
};

// False when it was "quit".
bool Obey(std::string_view line) {
  std::string_view rest = line;
  const std::string_view word = NextWord(rest);
  if (word.empty()) return true;
  if (word == "quit") return false;
  const auto* row = std::find_if(kCommandRows.begin(), kCommandRows.end(),
                                 [&](const CommandRow& r) { return r.word == word; });
  if (row != kCommandRows.end()) {
    row->obey(rest);
  } else {
    SayInfo("unknown command: " + std::string(word));
  }
  return true;
}

}  // namespace

void SpeakUci(int in, int out) {
  ListenTo(in);
  SayTo(out);
  interruption = {};
  const MessagesAsInfo told;
  HashClearInParts(true);
  ResetOptions();
  PlaceNewGame();
  std::string line;
  while (!interruption.quit && NextLine(line) && Obey(line)) {
  }
  HashClearInParts(false);
}

void SpeakUci() {
  std::signal(SIGPIPE, SIG_IGN);
  SpeakUci(STDIN_FILENO, STDOUT_FILENO);
}

}  // namespace tarvyle::uci
