#include "PROGINC/TextNumber.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

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

TEST(TextNumber, SinglePrecisionHasARangeOfItsOwn) {
  EXPECT_EQ(ToFloat("10.1"), 10.1F);
  EXPECT_EQ(ToFloat("3.4028234e38"), 3.4028234e38F);
  EXPECT_EQ(ToFloat("3.5e38"), 0);
  EXPECT_EQ(ToFloat("-1e300"), 0);
  EXPECT_EQ(ToFloat("inf"), 0);
}

TEST(TextNumber, FewerBitsStopAtTheirOwnLimits) {
  EXPECT_EQ(ToWhole<short>("-7"), -7);
  EXPECT_EQ(ToWhole<short>("65541"), 32767);
  EXPECT_EQ(ToWhole<short>("-65531"), -32768);
  EXPECT_EQ(ToWhole<unsigned short>("65538"), 65535);
  EXPECT_EQ(ToWhole<unsigned short>("-1"), 0);
}

TEST(TextNumber, WhatOverflowsIsZero) {
  EXPECT_EQ(FiniteOrZero(-2.5L), -2.5L);
  EXPECT_EQ(FiniteOrZero(1e300 * 1e300), 0);
  EXPECT_EQ(FiniteOrZero(std::numeric_limits<long double>::quiet_NaN()), 0);
}

TEST(TextNumber, LongTextIsReadToo) { EXPECT_EQ(ToDouble(std::string(500, ' ') + "2.5"), 2.5); }

TEST(TextNumber, SignsAndWhiteSpaceAsInTheCLibrary) {
  EXPECT_EQ(ToDouble(" \t\n\v\f\r+2.5"), 2.5);
  EXPECT_EQ(ToDouble("+-2.5"), 0);
  EXPECT_EQ(ToDouble("+ 2.5"), 0);
  EXPECT_EQ(ToDouble("+"), 0);
  EXPECT_TRUE(std::signbit(ToDouble("-0")));
  EXPECT_EQ(ToInt("\t+3"), 3);
  EXPECT_EQ(ToInt("+-3"), 0);
  EXPECT_EQ(ToInt("2147483648"), std::numeric_limits<int>::max());
  EXPECT_EQ(ToInt("-2147483648"), std::numeric_limits<int>::min());
}

TEST(TextNumber, AnExponentWithoutDigitsIsNotRead) {
  EXPECT_EQ(ToDouble("2e"), 2);
  EXPECT_EQ(ToDouble("2e+"), 2);
  EXPECT_EQ(ToDouble("2D3"), 2);
  EXPECT_EQ(ToDouble("."), 0);
  EXPECT_EQ(ToDouble(".5"), 0.5);
  EXPECT_EQ(ToDouble("5."), 5);
}

TEST(TextNumber, HexadecimalAndTinyNumbersAreRead) {
  EXPECT_EQ(ToDouble("0x1A"), 26);
  EXPECT_EQ(ToDouble("0x"), 0);
  EXPECT_EQ(ToDouble("10x2"), 10);
  EXPECT_EQ(ToDouble("4.9e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(ToDouble("1e-400"), 0);
}

TEST(TextNumber, AViewIsReadNoFurtherThanItsEnd) {
  const std::string_view line = "123456";
  EXPECT_EQ(ToDouble(line.substr(0, 3)), 123);
  EXPECT_EQ(ToInt(line.substr(2, 2)), 34);
  EXPECT_EQ(ToDouble(std::string_view()), 0);
  EXPECT_EQ(ToInt(std::string_view()), 0);
}

TEST(TextNumber, RandomTextsReadAsInTheCLibrary) {
  std::mt19937 random(20111010);
  const std::string characters = "  +-..0123456789eExXaf\t\n";
  std::uniform_int_distribution<std::size_t> pick(0, characters.size() - 1);
  std::uniform_int_distribution<int> length(0, 14);
  for (int i = 0; i < 200000; ++i) {
    std::string text;
    for (int n = length(random); n > 0; --n) text += characters[pick(random)];
    const double truth = std::strtod(text.c_str(), nullptr);
    const double value = ToDouble(text);
    ASSERT_EQ(value, std::isfinite(truth) ? truth : 0) << text;
    ASSERT_TRUE(truth != 0 || std::signbit(value) == std::signbit(truth)) << text;
    ASSERT_EQ(ToInt(text),
              std::clamp<long>(std::strtol(text.c_str(), nullptr, 10),
                               std::numeric_limits<int>::min(), std::numeric_limits<int>::max()))
        << text;
  }
}

} // namespace
