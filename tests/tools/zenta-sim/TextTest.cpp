#include "Text.h"
#include <gtest/gtest.h>

using namespace sim;

TEST(SimText, ExponentialHasNineteenColumnsAndTheLetterD) {
  EXPECT_EQ(Exponential(-1.5e-9), "-1.500000000000D-09");
  EXPECT_EQ(Exponential(0), " 0.000000000000D+00");
  EXPECT_EQ(Exponential(5153.65), " 5.153650000000D+03");
  EXPECT_EQ(ShortExponential(1.118e-8), "  1.1180D-08");
}

static std::string Thousandths(double value) {
  std::string text;
  AppendThousandths(text, value, 14);
  return text;
}

TEST(SimText, ThousandthsAreRoundedAndRightAligned) {
  EXPECT_EQ(Thousandths(20000000.1234), "  20000000.123");
  EXPECT_EQ(Thousandths(-0.0006), "        -0.001");
  EXPECT_EQ(Thousandths(0.0004), "         0.000");
  EXPECT_EQ(Thousandths(-123456789.9996), "-123456790.000");
  EXPECT_EQ(Thousandths(12), "        12.000");
}

TEST(SimText, HeaderLineHasItsLabelInColumnSixtyOne) {
  EXPECT_EQ(HeaderLine("SIMU", "MARKER NAME"),
            "SIMU" + std::string(56, ' ') + "MARKER NAME         \n");
}
