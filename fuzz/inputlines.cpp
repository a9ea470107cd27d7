#include "fuzz/inputlines.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "frontend/commands.h"
#include "frontend/loop.h"
#include "fuzz/harness.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/soundness.h"
#include "position/types.h"
#include "search/root.h"

namespace tarvyle::fuzz {

namespace {

namespace fs = std::filesystem;

// The folder that everything happens in: made at the first use, removed at the end of the process.
class Folder {
 public:
  Folder() : outside_(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {
    std::string name = (fs::temp_directory_path() / "fuzz-XXXXXX").string();
    Expect(outside_ >= 0 && mkdtemp(name.data()) != nullptr, "a folder can be made");
    path_ = name;
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    close(outside_);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  void Enter() const { fs::current_path(path_); }
  void Leave() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
      fs::remove_all(entry.path());
    }
    Expect(fchdir(outside_) == 0, "the way back is open");
  }

 private:
  int outside_;
  fs::path path_;
};

class InsideFolder {
 public:
  InsideFolder() { TheFolder().Enter(); }
  ~InsideFolder() { TheFolder().Leave(); }
  InsideFolder(const InsideFolder&) = delete;
  InsideFolder& operator=(const InsideFolder&) = delete;

 private:
  static Folder& TheFolder() {
    static Folder folder;
    return folder;
  }
};

// A name with a slash could mean a file elsewhere. Only position texts need slashes.
bool MayLeaveTheFolder(const char* line) {
  return std::strchr(line, '/') != nullptr && ReadCommand(line).token != "setboard";
}

bool MovesAreKept() { return g.game_len < g.game_max; }

bool IsTypedMove(const Command& command) {
  Move move = 0;
  return StrToMove(command.token, move);
}

// Obeys a line; false where the process ends. While moves may be redone, a new one ends it on
// purpose, when it is entered into the game: everything up to there is done here instead. "go"
// searches once and is not obeyed after that, for a second search need not end as the first did.
bool ObeyUnlessItEnds(const char* line) {
  const Command command = ReadCommand(line);
  if (!MovesAreKept()) return ObeyLine(line);
  if (command.token == "go") {
    Move move = 0;
    return !SearchMove(move);
  }
  return !IsTypedMove(command) && ObeyLine(line);
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

void ObeyLines(std::string_view input) {
  if (input.empty()) return;
  const InsideFolder inside;
  const std::string bytes(input);
  const std::unique_ptr<std::FILE, CloseFile> in(
      fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb"));
  Expect(in != nullptr, "the input can be read");
  char line[kInputLineSize];
  while (!NodesAreUsedUp() && std::fgets(line, sizeof line, in.get()) != nullptr) {
    if (MayLeaveTheFolder(line)) continue;
    if (!ObeyUnlessItEnds(line)) return;
    Expect(ply == 0 && RecordIsSound(g), "the record is sound after every line");
  }
}

}  // namespace tarvyle::fuzz
