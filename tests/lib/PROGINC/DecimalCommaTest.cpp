#include "PROGINC/DecimalComma.h"

#include <gtest/gtest.h>

namespace {

TEST(HasDecimalCommas, CommaBetweenDigitsWithoutAPointAnywhere) {
  EXPECT_TRUE(HasDecimalCommas("G01   0,123\n"));
  EXPECT_TRUE(HasDecimalCommas("VERS. 2\nG01   0,123\n"));
}

TEST(HasDecimalCommas, NumbersWithPointsAreThere) {
  EXPECT_FALSE(HasDecimalCommas("in steps of 1,000 epochs\nG01   0.123\n"));
  EXPECT_FALSE(HasDecimalCommas("G01   0.123\n"));
}

TEST(HasDecimalCommas, CommaOfAListIsNone) {
  EXPECT_FALSE(HasDecimalCommas(""));
  EXPECT_FALSE(HasDecimalCommas(","));
  EXPECT_FALSE(HasDecimalCommas("A0,A1,T,W\n1, 2,x 3 ,4,"));
}

} // namespace
