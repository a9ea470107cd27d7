// Lines to the GUI, and what the engine's own procedures print.

#include "uci/output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/captured.h"
#include "tests/support/uci_support.h"

namespace tarvyle::uci {

using namespace support;

namespace {

using Output = UciTest;

Lines passed_on;
void KeepWords(std::string_view words) { passed_on.emplace_back(words); }

TEST_F(Output, IsWholeLines) {
  EXPECT_EQ(Said([] {
              Say("uciok");
              Say("");
              Say("a\tb");
            }),
            (Lines{"uciok", "", "a\tb"}));
}

TEST_F(Output, ShowsPrintableCharactersAsInfo) {
  EXPECT_EQ(Said([] { SayInfo("cannot read ~/x y"); }), Lines{"info string cannot read ~/x y"});
  EXPECT_EQ(Said([] {
              SayInfo(
                  "a\tb\nc\rd\x7f"
                  "e\xc3\xa4"
                  "f\x1f"
                  "g");
            }),
            Lines{"info string a b c d e  f g"});
  EXPECT_EQ(Said([] { SayInfo(std::string_view("a\0b", 3)); }), Lines{"info string a b"});
  EXPECT_EQ(Said([] { SayInfo(""); }), Lines{"info string "});
}

TEST_F(Output, CutsInfoAfterThreeHundredCharacters) {
  const std::string text(300, 'x');
  EXPECT_EQ(Said([&] { SayInfo(text); }), Lines{"info string " + text});
  EXPECT_EQ(Said([&] { SayInfo(text + "y"); }), Lines{"info string " + text});
}

TEST_F(Output, WaitsForAReaderThatIsSlow) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  fcntl(ends[1], F_SETFL, O_NONBLOCK);
  SayTo(ends[1]);
  const std::string line(300000, 'x');  // more than a pipe holds
  std::string heard;
  std::thread gui([&] {
    char chunk[4096];
    for (ssize_t count = 1; count > 0;) {
      std::this_thread::sleep_for(std::chrono::microseconds(100));
      count = read(ends[0], chunk, sizeof chunk);
      heard.append(chunk, static_cast<std::size_t>(count));
    }
  });
  Say(line);
  Say("end");
  close(ends[1]);
  gui.join();
  close(ends[0]);
  EXPECT_EQ(heard, line + "\nend\n");
}

TEST_F(Output, LetsAReaderGoAway) {
  const auto handler = std::signal(SIGPIPE, SIG_IGN);
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  close(ends[0]);
  SayTo(ends[1]);
  Say("nobody hears this");
  SayInfo("nor this");
  close(ends[1]);
  std::signal(SIGPIPE, handler);
}

TEST_F(Output, HoldsBackWhatIsPrinted) {
  const std::string printed = Printed([&] {
    std::fputs("before ", stdout);
    EXPECT_EQ(Said([] {
                std::puts("held");
                Say("said");
              }),
              Lines{"said"});
    std::fputs("after", stdout);
  });
  EXPECT_EQ(printed, "before after");
}

TEST_F(Output, PassesOnWhatWasHeldBackLineByLine) {
  passed_on = {};
  Said([] {
    std::fputs("one\n\nthree", stdout);
    PassOnWords(KeepWords);
    PassOnWords(KeepWords);
    std::puts("four");
    DropWords();
    PassOnWords(KeepWords);
    std::puts("five");
    PassOnWords(KeepWords);
  });
  EXPECT_EQ(passed_on, (Lines{"one", "", "three", "five"}));
}

TEST_F(Output, PassesOnAnyAmount) {
  passed_on = {};
  Said([] {
    for (int i = 0; i < 20000; ++i) std::printf("line %d\n", i);
    PassOnWords(KeepWords);
  });
  ASSERT_EQ(passed_on.size(), 20000u);
  EXPECT_EQ(passed_on.front(), "line 0");
  EXPECT_EQ(passed_on.back(), "line 19999");
}

TEST_F(Output, CannotHoldBackWithoutAFileOfItsOwn) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  rlimit none = before;
  none.rlim_cur = 3;
  setrlimit(RLIMIT_NOFILE, &none);
  EXPECT_THROW(HeldWords(), std::runtime_error);
  setrlimit(RLIMIT_NOFILE, &before);
}

}  // namespace

}  // namespace tarvyle::uci
