#include "uci/knowledge.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <string_view>
#include <system_error>

#include "base/append.h"
#include "base/file.h"
#include "base/message.h"
#include "book/bookfile.h"
#include "book/learn.h"
#include "book/learnfile.h"
#include "host/learntable.h"
#include "uci/optionvalues.h"
#include "uci/output.h"
#include "uci/polyglotbook.h"

namespace tarvyle::uci {

namespace {

namespace fs = std::filesystem;

constexpr int kReportedLines = 5;  // of a book, that are wrong

bool is_stale = true;

fs::path ProgramFolder() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error).parent_path();
}

// By the rules for such folders a relative one does not count.
fs::path UserFolder() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && data[0] == '/') return fs::path(data) / "tarvyle";
  const char* home = std::getenv("HOME");
  return home != nullptr && home[0] == '/' ? fs::path(home) / ".local/share/tarvyle" : fs::path();
}

bool HoldsBook() {
  bool found = false;
  VisitLearnTable([&found](const LearnNode& node) {
    found = IsBookNode(node);
    return !found;
  });
  return found;
}

void ReadLearned() {
  const std::string& path = settings.learn_file;
  if (path.empty() || LoadLearnTable(path.c_str())) return;
  SayInfo("cannot read the learn file " + path);
}

// Letters of any language, but no other control characters than those between lines and words.
bool IsText(const std::string& content) {
  return std::none_of(content.begin(), content.end(), [](char letter) {
    return letter >= 0 && letter < ' ' &&
           std::string_view("\t\n\v\f\r").find(letter) == std::string_view::npos;
  });
}

// The first messages about wrong lines are passed on, the rest is counted.
struct WrongLines {
  int count = 0;
  void (*receiver)(std::string_view) = nullptr;
};
WrongLines wrong_lines;

bool ReadBookFile(const char* path) {
  wrong_lines = {0, message_sink};
  if (message_sink != nullptr) {
    message_sink = [](std::string_view text) {
      if (++wrong_lines.count <= kReportedLines) wrong_lines.receiver(text);
    };
  }
  const bool read = ReadLibFile(path);
  message_sink = wrong_lines.receiver;
  if (wrong_lines.count > kReportedLines) {
    SayInfo("and " + std::to_string(wrong_lines.count - kReportedLines) + " more wrong lines");
  }
  return read;
}

void ReadBook() {
  ForgetPolyglotBook();
  if (!settings.own_book) return;
  const std::string& path = settings.book_file;
  // That one stands beside the learn table; what the table holds does not keep it out.
  if (IsPolyglotBook(path)) return ReadPolyglotBook(path);
  if (HoldsBook()) return;
  std::string content;
  if (path.empty()) {
    SayInfo("there is no book file");
  } else if (ReadFile(path.c_str(), content) == FileState::kRead && !IsText(content)) {
    SayInfo("the book file " + path + " is no text");
  } else if (!ReadBookFile(path.c_str())) {
    SayInfo("cannot read the book file " + path);
  }
}

}  // namespace

std::string DefaultFile(const std::string& name) {
  for (const fs::path& folder : {ProgramFolder(), UserFolder()}) {
    std::error_code error;
    if (!folder.empty() && fs::is_regular_file(folder / name, error)) return folder / name;
  }
  return {};
}

void KnowledgeIsStale() { is_stale = true; }

bool FreshenKnowledge() {
  if (!is_stale) return false;
  is_stale = false;
  LearnReset();
  ReadLearned();
  ReadBook();
  return true;
}

void PutDownResult() {
  if (settings.learn_output.empty()) return;
  const LearnNode* node = FindCurrentNode();
  // By one write: programs that share the file do not mix their records.
  if (node != nullptr && !AppendToFile(settings.learn_output, RecordOf(*node))) {
    SayInfo("cannot write to the learn output " + settings.learn_output);
  }
}

}  // namespace tarvyle::uci
