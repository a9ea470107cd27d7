#include "base/number.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace tarvyle {
namespace {

struct LeadingRow {
  const char* text;
  int number;
};

class LeadingNumber : public testing::TestWithParam<LeadingRow> {};

constexpr int kOtherwise = 77;

TEST_P(LeadingNumber, IsReadAsFarAsItIsOne) {
  EXPECT_EQ(LeadingInteger(GetParam().text, kOtherwise), GetParam().number) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LeadingNumber,
    testing::Values(LeadingRow{"38", 38}, LeadingRow{" \t+38 entries", 38}, LeadingRow{"-26", -26},
                    LeadingRow{"0", 0}, LeadingRow{"007", 7}, LeadingRow{"3.9", 3},
                    LeadingRow{"", kOtherwise}, LeadingRow{"x1", kOtherwise},
                    LeadingRow{"-", kOtherwise}, LeadingRow{"2147483647", INT_MAX},
                    LeadingRow{"-2147483648", INT_MIN}, LeadingRow{"2147483648", kOtherwise},
                    LeadingRow{"-2147483649", kOtherwise}, LeadingRow{"4294967297", kOtherwise},
                    LeadingRow{"18446744073709551617", kOtherwise},
                    LeadingRow{"-18446744073709551617", kOtherwise}));

TEST(WholeNumber, IsReadFromTheFirstCharacterToTheLast) {
  int number = 5;
  EXPECT_TRUE(ReadInteger("-42", number));
  EXPECT_EQ(number, -42);
  for (const char* text : {"", "4x", " 4", "+4", "4.0", "2147483648"}) {
    EXPECT_FALSE(ReadInteger(text, number)) << text;
    EXPECT_EQ(number, -42) << "stays as it is";
  }
  std::uint64_t large = 0;
  EXPECT_TRUE(ReadInteger("18446744073709551615", large));
  EXPECT_EQ(large, UINT64_MAX);
  EXPECT_FALSE(ReadInteger("-1", large));
}

}  // namespace
}  // namespace tarvyle
