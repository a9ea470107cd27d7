// What the engine tells while it works, and who hears it.

#include "base/message.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/captured.h"

namespace tarvyle {

using namespace support;

namespace {

std::vector<std::string> received;

class MessageTest : public testing::Test {
 protected:
  MessageTest() { received.clear(); }
  ~MessageTest() override { message_sink = nullptr; }

  static void Receive() {
    message_sink = [](std::string_view text) { received.emplace_back(text); };
  }
};

TEST_F(MessageTest, GoesToStandardOutputInItsTurn) {
  const Said said = Listen([] {
    std::fputs("before ", stdout);
    Message("# %s, %d\n", "move", -3);
    std::fputs("after", stdout);
  });
  EXPECT_EQ(said.out, "before # move, -3\nafter");
  EXPECT_EQ(said.err, "");
}

TEST_F(MessageTest, GoesToItsReceiverAndNowhereElse) {
  const Said said = Listen([] {
    Receive();
    Message("# %5s|%02f\n", "e2e4", 1.5);
    Message("plain\n");
  });
  EXPECT_EQ(received, (std::vector<std::string>{"#  e2e4|1.500000\n", "plain\n"}));
  EXPECT_EQ(said.out + said.err, "");
}

TEST_F(MessageTest, MayBeOfAnyLength) {
  const std::string text(100000, 'x');
  Receive();
  Message("%s%d\n", text.c_str(), 7);
  ASSERT_EQ(received.size(), 1u);
  EXPECT_TRUE(received[0] == text + "7\n");
  Message("%s", "");
  EXPECT_EQ(received[1], "");
}

TEST_F(MessageTest, GoesToStandardOutputAgainWithoutAReceiver) {
  Receive();
  message_sink = nullptr;
  EXPECT_EQ(Printed([] { Message("heard\n"); }), "heard\n");
  EXPECT_TRUE(received.empty());
}

}  // namespace

}  // namespace tarvyle
