// Fields of F14.3 against the plain conversion, sign of zero included.

#include "PROGINC/FixedPoint.h"

#include "reference/number_plain.h"

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

testing::AssertionResult SameAsPlain(const std::string& field) {
  const double truth = ToDouble_plain(field.substr(0, kF14_3Width));
  const double value = ReadF14_3(field.c_str());
  if (value == truth && std::signbit(value) == std::signbit(truth))
    return testing::AssertionSuccess();
  return testing::AssertionFailure() << "\"" << field << "\": " << value << ", not " << truth;
}

/// The field right-justified in 14 characters, with the flags of an observation.
std::string Field(const std::string& number, const std::string& flags = "  ") {
  return std::string(kF14_3Width - number.size(), ' ') + number + flags;
}

bool IsReadAtOnce(const std::string& field) {
  double value;
  return ReadPlainF14_3(field.c_str(), value);
}

} // namespace

#ifdef __SSE2__
TEST(FixedPoint, FieldsOfTheFormatAreReadAtOnce) {
  for (const char* number :
       {"", "0.000", "-0.000", "7.123", "-7.123", ".500", "-.500", "45.250", "21234567.123",
        "113896393.120", "-113896393.120", "9999999999.999", "-999999999.999", "0000000000.001"}) {
    EXPECT_TRUE(IsReadAtOnce(Field(number))) << number;
    EXPECT_TRUE(SameAsPlain(Field(number)));
  }
}

TEST(FixedPoint, OtherFieldsAreNot) {
  for (const char* number : {"1.5",     "1.50",    "1.5000",  "15",    "1.2e3", "--7.123", "+7.123",
                             "7 7.123", "- 7.123", "7-7.123", "1.12 ", "1. 12", ".",       "-.",
                             "a7.123",  "7a.123",  "nan",     "inf",   "0x1.8", "1,123"}) {
    EXPECT_FALSE(IsReadAtOnce(Field(number))) << number;
    EXPECT_TRUE(SameAsPlain(Field(number)));
  }
}
#endif

TEST(FixedPoint, FlagsAreNotPartOfTheNumber) {
  for (const char* flags : {"12", "  ", "..", "e1", "-1", "9 "})
    for (const char* number : {"", "7.123", "-21234567.123", "1.5", "12345678901234", "1"})
      EXPECT_TRUE(SameAsPlain(Field(number, flags)));
}

TEST(FixedPoint, EveryNumberOfDigitsAndItsNegative) {
  std::mt19937_64 random(1);
  for (int digits = 0; digits <= 10; ++digits)
    for (int i = 0; i < 20000; ++i) {
      std::string number;
      for (int k = 0; k < digits; ++k) number += static_cast<char>('0' + random() % 10);
      number += '.';
      for (int k = 0; k < 3; ++k) number += static_cast<char>('0' + random() % 10);
      ASSERT_TRUE(SameAsPlain(Field(number)));
      if (digits < 10) {
        ASSERT_TRUE(SameAsPlain(Field("-" + number)));
      }
    }
}

TEST(FixedPoint, EveryCharacterInEveryPlace) {
  for (const char* number :
       {"", "7.123", "-7.123", "113896393.120", "-13896393.120", "9999999999.999"})
    for (std::size_t place = 0; place < kF14_3Width; ++place)
      for (int c = 1; c < 256; ++c) {
        std::string field = Field(number, "56");
        field[place] = static_cast<char>(c);
        ASSERT_TRUE(SameAsPlain(field));
      }
}

TEST(FixedPoint, RandomTexts) {
  std::mt19937_64 random(2);
  const std::string characters = "    ..--+0123456789012345678901234567899eExXnaif\t";
  for (int i = 0; i < 500000; ++i) {
    std::string field;
    for (int k = 0; k < 16; ++k) field += characters[random() % characters.size()];
    // As often as not a point where it should be, without which nothing goes at once.
    if (i % 2 == 0) field[10] = '.';
    ASSERT_TRUE(SameAsPlain(field));
  }
}

TEST(FixedPoint, DenormalsAndValuesBeyondTheRange) {
  for (const char* number : {"4.9e-324", "1e-310", "-2.5e-320", "1e-400", "1e999", "-1e999",
                             "1.79769e308", "1e308", "123456789e300"})
    EXPECT_TRUE(SameAsPlain(Field(number)));
}
