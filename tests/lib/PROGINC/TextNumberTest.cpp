#include "PROGINC/TextNumber.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(TextNumber, ReadsThePrefixThatIsANumber) {
  EXPECT_EQ(ToDouble("  21234567.123 5"), 21234567.123);
  EXPECT_EQ(ToDouble("-0.707ns"), -0.707);
  EXPECT_EQ(ToDouble("1.5E-3"), 1.5e-3);
  EXPECT_EQ(ToInt("  42x"), 42);
  EXPECT_EQ(ToInt("-7"), -7);
}

TEST(TextNumber, TextWithoutANumberIsZero) {
  EXPECT_EQ(ToDouble(""), 0);
  EXPECT_EQ(ToDouble("              "), 0);
  EXPECT_EQ(ToDouble("abc"), 0);
  EXPECT_EQ(ToInt(""), 0);
  EXPECT_EQ(ToInt("x"), 0);
}

TEST(TextNumber, NonNumbersAndValuesBeyondTheRangeAreZero) {
  EXPECT_EQ(ToDouble("nan"), 0);
  EXPECT_EQ(ToDouble("-inf"), 0);
  EXPECT_EQ(ToDouble("1e999"), 0);
}

TEST(TextNumber, WholeNumbersStopAtTheLimits) {
  EXPECT_EQ(ToInt("99999999999999999999"), std::numeric_limits<int>::max());
  EXPECT_EQ(ToInt("-99999999999999999999"), std::numeric_limits<int>::min());
}

TEST(TextNumber, LongTextIsReadToo) { EXPECT_EQ(ToDouble(std::string(500, ' ') + "2.5"), 2.5); }

} // namespace
