#include "tests/support/uci_support.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <initializer_list>
#include <sstream>

#include "host/positiontext.h"
#include "uci/dialogue.h"
#include "uci/golimits.h"
#include "uci/input.h"
#include "uci/knowledge.h"
#include "uci/options.h"
#include "uci/place.h"
#include "uci/think.h"

namespace tarvyle::support {

namespace {

constexpr const char* kDataFolder = "XDG_DATA_HOME";

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

int MemoryFile() { return memfd_create("uci test", MFD_CLOEXEC); }

void WriteAll(int file, std::string_view text) {
  EXPECT_EQ(write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

}  // namespace

std::string TextBetween(const std::string& line, std::string_view word, std::string_view end) {
  const std::string start = " " + std::string(word) + " ";
  const std::size_t at = line.find(start);
  if (at == std::string::npos) return {};
  const std::string rest = line.substr(at + start.size());
  return end.empty() ? rest : rest.substr(0, rest.find(" " + std::string(end)));
}

long long NumberAfter(const std::string& line, std::string_view word) {
  const std::string text = TextBetween(line, word);
  return text.empty() ? -1 : std::atoll(text.c_str());
}

Lines Beginning(const Lines& lines, std::string_view start) {
  Lines found;
  for (const std::string& line : lines) {
    if (line.starts_with(start)) found.push_back(line);
  }
  return found;
}

UciTest::UciTest() : home_(Environment(kDataFolder)) {
  setenv(kDataFolder, folder_.Path("data").c_str(), 1);
  int ends[2] = {-1, -1};
  EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
  in_ = ends[0];
  gui_ = ends[1];
  out_ = MemoryFile();
  uci::ListenTo(in_);
  uci::SayTo(out_);
  uci::interruption = {};
  uci::ResetOptions();
  uci::ObeySetOption("name Seed value 1");
  uci::ObeySetOption("name Move Overhead value 0");
  uci::PlaceNewGame();
}

UciTest::~UciTest() {
  if (home_.empty()) {
    unsetenv(kDataFolder);
  } else {
    setenv(kDataFolder, home_.c_str(), 1);
  }
  uci::ResetOptions();
  uci::KnowledgeIsStale();
  uci::ListenTo(STDIN_FILENO);
  uci::SayTo(STDOUT_FILENO);
  for (const int file : {gui_, in_, out_, replay_}) {
    if (file >= 0) close(file);
  }
}

Lines UciTest::TakeLines() const {
  const off_t size = lseek(out_, 0, SEEK_CUR);
  std::string text(static_cast<std::size_t>(size), '\0');
  EXPECT_EQ(pread(out_, text.data(), text.size(), 0), size);
  EXPECT_EQ(ftruncate(out_, 0), 0);
  lseek(out_, 0, SEEK_SET);
  EXPECT_TRUE(text.empty() || text.back() == '\n') << text;
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void UciTest::Send(std::string_view text) const { WriteAll(gui_, text); }

void UciTest::HangUp() {
  close(gui_);
  gui_ = -1;
}

void UciTest::Replay(std::string_view text) {
  if (replay_ >= 0) close(replay_);
  replay_ = MemoryFile();
  WriteAll(replay_, text);
  lseek(replay_, 0, SEEK_SET);
  uci::ListenTo(replay_);
}

Lines UciTest::Go(const std::string& limits, const std::string& position) {
  return Said([&] {
    if (!position.empty()) uci::ObeyPosition(position);
    uci::Think(uci::ReadLimits(limits));
  });
}

Lines UciTest::Speak(const std::string& text) {
  Send(text + "quit\n");
  uci::SpeakUci(in_, out_);
  return TakeLines();
}

std::string UciTest::Board() { return CurrentText(); }

}  // namespace tarvyle::support
