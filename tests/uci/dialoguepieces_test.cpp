// Whole dialogues, however their bytes come: no line that has come waits for another one.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <compare>
#include <cstddef>
#include <initializer_list>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/build_kind.h"
#include "tests/support/uci_support.h"
#include "uci/dialogue.h"

namespace tarvyle::uci {

using namespace support;

namespace {

using namespace std::chrono_literals;

// An answer takes milliseconds; this long only a machine that stands still would take, or an engine
// that waits for more than it was told.
constexpr auto kPatience = 20s;

constexpr const char* kMatedInfinitely = "position fen 7k/5KQ1/8/8/8/8/8/8 b - - 0 1";
constexpr const char* kStalemate = "position fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1";
constexpr const char* kMateInOne = "position fen 7k/8/5KQ1/8/8/8/8/8 w - - 0 1";
constexpr const char* kOneReply = "position fen 7k/8/8/8/8/8/1r6/K7 w - - 0 1";

struct DialogueRow {
  const char* name;
  const char* before;  // lines that are said first
  const char* go;
};

// Searches that end before the engine first listens, or soon after.
constexpr std::array kDialogueRows = {
    DialogueRow{"depth 1", "position startpos", "go depth 1 infinite"},
    DialogueRow{"one node", "position startpos", "go nodes 1 infinite"},
    DialogueRow{"a millisecond", "position startpos", "go movetime 1 infinite"},
    DialogueRow{"no clock", "position startpos", "go wtime 0 btime 0 ponder"},
    DialogueRow{"nothing but the stop", "position startpos", "go infinite"},
    DialogueRow{"mate in one", kMateInOne, "go infinite"},
    DialogueRow{"mate in one asked for", kMateInOne, "go mate 1 infinite"},
    DialogueRow{"one reply", kOneReply, "go wtime 100 ponder"},
    DialogueRow{"one reply at random", kOneReply,
                "setoption name Random Search value true\ngo infinite"},
    DialogueRow{"mated", kMatedInfinitely, "go infinite"},
    DialogueRow{"stalemate", kStalemate, "go ponder"},
};

std::vector<std::string> InRandomPieces(const std::string& text, std::mt19937& random) {
  std::vector<std::string> pieces;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = 1 + random() % (random() % 2 == 0 ? 4 : text.size());
    pieces.push_back(text.substr(at, size));
    at += size;
  }
  return pieces;
}

// A GUI that speaks with an engine on another thread.
class Gui {
 public:
  Gui() {
    EXPECT_EQ(pipe2(in_, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(out_, O_CLOEXEC), 0);
    engine_ = std::thread([this] {
      SpeakUci(in_[0], out_[1]);
      close(out_[1]);
    });
  }

  ~Gui() {
    Leave();
    engine_.join();
    for (const int file : {in_[0], out_[0]}) close(file);
  }

  Gui(const Gui&) = delete;
  Gui& operator=(const Gui&) = delete;

  void Leave() {
    if (in_[1] >= 0) close(in_[1]);
    in_[1] = -1;
  }

  // Tells a piece and waits until the engine has read it.
  void Tell(const std::string& piece) const {
    EXPECT_EQ(write(in_[1], piece.data(), piece.size()), static_cast<ssize_t>(piece.size()));
    const auto end = std::chrono::steady_clock::now() + kPatience;
    for (int waiting = 1; waiting > 0 && std::chrono::steady_clock::now() < end;) {
      EXPECT_EQ(ioctl(in_[0], FIONREAD, &waiting), 0);
      if (waiting > 0) std::this_thread::sleep_for(20us);
    }
  }

  // The next so many lines but infos: without moves and, where none comes, "silence" last.
  Lines Answers(std::size_t count) {
    Lines said;
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (said.size() < count && (said.empty() || said.back() != "silence")) {
      const std::string line = NextLineBefore(end);
      if (!line.starts_with("info")) said.push_back(line.substr(0, line.find(' ')));
    }
    return said;
  }

 private:
  std::string NextLineBefore(std::chrono::steady_clock::time_point end) {
    std::size_t size = heard_.find('\n');
    while (size == std::string::npos) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
          end - std::chrono::steady_clock::now());
      pollfd waiting{out_[0], POLLIN, 0};
      std::array<char, 4096> chunk;
      if (poll(&waiting, 1, std::max(0, static_cast<int>(left.count()))) <= 0) return "silence";
      const ssize_t count = read(out_[0], chunk.data(), chunk.size());
      if (count <= 0) return "silence";
      heard_.append(chunk.data(), static_cast<std::size_t>(count));
      size = heard_.find('\n');
    }
    std::string line = heard_.substr(0, size);
    heard_.erase(0, size + 1);
    return line;
  }

  int in_[2] = {-1, -1};
  int out_[2] = {-1, -1};
  std::string heard_;
  std::thread engine_;
};

// A search without end: "isready" is answered at once, "stop" as well, and what follows it.
const Lines kAnswersToTheRest = {"readyok", "bestmove", "readyok"};

class Dialogues : public UciTest {
 protected:
  // Speaks the row's dialogue in the ways that `pieces_of` cuts it, one after the other.
  template <typename Cut>
  static void SpeakEach(const DialogueRow& row, Cut pieces_of) {
    SCOPED_TRACE(row.name);
    Gui gui;
    gui.Tell(std::string("setoption name Seed value 1\n") + row.before + "\nisready\n");
    ASSERT_EQ(gui.Answers(1), Lines{"readyok"});
    const std::string text = std::string(row.go) + "\nisready\nstop\nisready\n";
    for (std::size_t i = 0;; ++i) {
      const std::vector<std::string> pieces = pieces_of(text, i);
      if (pieces.empty()) break;
      for (const std::string& piece : pieces) gui.Tell(piece);
      ASSERT_EQ(gui.Answers(3), kAnswersToTheRest) << testing::PrintToString(pieces);
    }
  }
};

TEST_F(Dialogues, AreAnsweredInOnePiece) {
  for (const DialogueRow& row : kDialogueRows) {
    SpeakEach(row, [](const std::string& text, std::size_t i) {
      return i < 3 ? std::vector{text} : std::vector<std::string>();
    });
  }
}

// Instrumented builds cut at every third byte only.
constexpr std::size_t kEveryByte = support::kSlowBuild ? 3 : 1;

TEST_F(Dialogues, AreAnsweredCutAtAnyByte) {
  for (const DialogueRow& row : kDialogueRows) {
    SpeakEach(row, [](const std::string& text, std::size_t i) {
      const std::size_t at = i * kEveryByte + 1;
      return at < text.size() ? std::vector{text.substr(0, at), text.substr(at)}
                              : std::vector<std::string>();
    });
  }
}

TEST_F(Dialogues, AreAnsweredInRandomPieces) {
  std::mt19937 random(1);
  for (const DialogueRow& row : kDialogueRows) {
    SpeakEach(row, [&random](const std::string& text, std::size_t i) {
      return i < 10 ? InRandomPieces(text, random) : std::vector<std::string>();
    });
  }
}

// The book answers half of the time.
TEST_F(Dialogues, AreAnsweredByTheBook) {
  const std::string book = folder_.Write("one.bk", "h2h4\n");
  const std::string before = "setoption name Book File value " + book +
                             "\nsetoption name OwnBook value true\nposition startpos";
  SpeakEach(
      {"book", before.c_str(), "go depth 1 infinite"}, [](const std::string& text, std::size_t i) {
        if (i == 20) return std::vector<std::string>();
        return std::vector{"setoption name Seed value " + std::to_string(i + 1) + "\n" + text};
      });
}

TEST_F(Dialogues, HoldSeveralSearches) {
  Gui gui;
  gui.Tell(
      "position startpos\ngo infinite\nstop\ngo infinite\nstop\ngo depth 1 infinite\nisready\n"
      "stop\ngo depth 2\nisready\n");
  const Lines said = gui.Answers(6);
  EXPECT_EQ(std::count(said.begin(), said.end(), "bestmove"), 4);
  EXPECT_EQ(std::count(said.begin(), said.end(), "readyok"), 2);
}

// Nor does the end of the input wait for anything, whatever came last.
TEST_F(Dialogues, EndWithTheInput) {
  for (const DialogueRow& row : kDialogueRows) {
    for (const char* last : {"", "isready", "isready\n"}) {
      SCOPED_TRACE(row.name + std::string(last));
      Gui gui;
      gui.Tell(std::string(row.before) + "\n" + row.go + "\n" + last);
      gui.Leave();
      Lines said = gui.Answers(3);
      ASSERT_FALSE(said.empty());
      EXPECT_EQ(said.back(), "silence");
      EXPECT_EQ(std::count(said.begin(), said.end(), "bestmove"), 1);
      EXPECT_EQ(std::count(said.begin(), said.end(), "readyok"), *last == '\0' ? 0 : 1);
    }
  }
}

TEST_F(Dialogues, EndWithQuit) {
  for (const DialogueRow& row : kDialogueRows) {
    SCOPED_TRACE(row.name);
    Gui gui;
    gui.Tell(std::string(row.before) + "\n" + row.go + "\nquit\nisready\n");
    EXPECT_EQ(gui.Answers(2), (Lines{"bestmove", "silence"}));
  }
}

}  // namespace

}  // namespace tarvyle::uci
