#include "uci/knowledge.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <system_error>

#include "base/append.h"
#include "book/bookfile.h"
#include "book/learn.h"
#include "book/learnfile.h"
#include "host/learntable.h"
#include "uci/output.h"
#include "uci/settings.h"

namespace tarvyle::uci {

namespace {

namespace fs = std::filesystem;

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

void ReadBook() {
  if (!settings.own_book || HoldsBook()) return;
  if (settings.book_file.empty()) {
    SayInfo("there is no book file");
  } else if (!fs::is_regular_file(settings.book_file) || !ReadLibFile(settings.book_file.c_str())) {
    SayInfo("cannot read the book file " + settings.book_file);
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
