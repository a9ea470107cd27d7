// The learn table, record by record.

#include "host/learntable.h"

#include <gtest/gtest.h>

#include <string>

#include "book/learn.h"
#include "book/learnfile.h"
#include "tests/support/files.h"
#include "tests/support/host_support.h"

namespace tarvyle {

using namespace support;

namespace {

class LearnTableVisit : public HostTest {
 protected:
  // Book positions, and one that was searched.
  void SetUp() override {
    ASSERT_TRUE(FreshProcess(folder_.Write("lines.bk", "e2e4 e7e5 g1f3\nd2d4 d7d5\n")));
    ASSERT_EQ(SearchToDepth(3, 1).depth, 3);
  }

  TemporaryFolder folder_;
};

TEST_F(LearnTableVisit, SeesEveryNode) {
  int books = 0;
  int results = 0;
  VisitLearnTable([&](const LearnNode& node) {
    ++(node.book != 0 ? books : results);
    return true;
  });
  EXPECT_EQ(books, 5);
  EXPECT_EQ(results, 1);
}

TEST_F(LearnTableVisit, EndsWhenItIsTold) {
  int seen = 0;
  VisitLearnTable([&](const LearnNode& /*node*/) { return ++seen < 3; });
  EXPECT_EQ(seen, 3);
}

TEST_F(LearnTableVisit, GivesTheRecordsThatTheEngineWrites) {
  std::string records;
  VisitLearnTable([&](const LearnNode& node) {
    records += RecordOf(node);
    return true;
  });
  const std::string file = folder_.Path("table.lrn");
  ASSERT_TRUE(SaveLearnTable(file.c_str()));
  EXPECT_EQ(records, support::ReadFile(file));
}

// What a file held in the fields without a meaning does not get into another one.
TEST_F(LearnTableVisit, WritesLinkAndCheckByteAnew) {
  LearnNode* node = FindCurrentNode();
  ASSERT_NE(node, nullptr);
  const std::string before = RecordOf(*node);
  node->link = 0xDEADBEEF;
  node->check ^= 0x55;
  EXPECT_EQ(RecordOf(*node), before);
  EXPECT_EQ(node->link, 0xDEADBEEF) << "the node itself stays";
}

}  // namespace

}  // namespace tarvyle
