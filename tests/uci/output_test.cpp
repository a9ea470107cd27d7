// Lines to the GUI, and the engine's own messages among them.

#include "uci/output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstddef>
#include <string>
#include <string_view>
#include <thread>

#include "base/message.h"
#include "tests/support/captured.h"
#include "tests/support/uci_support.h"

namespace tarvyle::uci {

using namespace support;

namespace {

using Output = UciTest;

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

TEST_F(Output, TellsTheEnginesMessagesAsInfo) {
  const std::string printed = Printed([&] {
    Message("before\n");
    EXPECT_EQ(Said([] {
                Message("#move %s\n", "e2e4");
                Say("said");
                Message("one\n\nthree\tand");
              }),
              (Lines{"info string #move e2e4", "said", "info string one", "info string ",
                     "info string three and"}));
    Message("after\n");
  });
  EXPECT_EQ(printed, "before\nafter\n");
}

void HearNothing(std::string_view /*text*/) {}

TEST_F(Output, LeavesMessagesToWhoHeardThemBefore) {
  message_sink = HearNothing;
  EXPECT_EQ(Said([] { Message("heard\n"); }), Lines{"info string heard"});
  EXPECT_EQ(message_sink, HearNothing);
  message_sink = nullptr;
}

}  // namespace

}  // namespace tarvyle::uci
