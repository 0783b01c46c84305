#include "GNSS/RINEXf.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

const std::string kEpoch = " 11 10 10  0  0 30.0000000  0 12G 5R12  3";

std::string With(std::size_t column, char c) {
  std::string line = kEpoch;
  line[column] = c;
  return line;
}

struct Parsed {
  explicit Parsed(std::string_view line) {
    ParseFirstObsLine(line, year, month, day, hour, minute, second, count);
  }
  unsigned short year = 0, month = 0, day = 0, hour = 0, minute = 0;
  long double second = -1;
  short count = -1;
};

} // namespace

TEST(ishash, OnlyHash) {
  EXPECT_TRUE(ishash('#'));
  EXPECT_FALSE(ishash('&'));
  EXPECT_TRUE(isampersand('&'));
  EXPECT_FALSE(isampersand('#'));
}

TEST(iscomment, LetterOrHashInColumn61) {
  const std::string blank(60, ' ');
  EXPECT_TRUE(iscomment(blank + "C"));
  EXPECT_TRUE(iscomment(blank + "#"));
  EXPECT_TRUE(iscomment(blank + "zOMMENT"));
  EXPECT_FALSE(iscomment(blank + "1"));
  EXPECT_FALSE(iscomment(blank + " COMMENT"));
  EXPECT_FALSE(iscomment(blank));
  EXPECT_FALSE(iscomment(""));
  EXPECT_FALSE(iscomment(blank + "\xe9"));
}

TEST(IsFirstObsLine, EpochLine) { EXPECT_TRUE(IsFirstObsLine(kEpoch)); }

TEST(IsFirstObsLine, TensMayBeBlank) {
  EXPECT_TRUE(IsFirstObsLine("  5  3  2  1  4  0.0000000  0  1G 5"));
  EXPECT_TRUE(IsFirstObsLine("  5  3  2  1  4   .0000000  0  1G 5")); // so may the seconds
}

TEST(IsFirstObsLine, EachColumnOfThePatternCounts) {
  for (const std::size_t blank : {0, 3, 6, 9, 12, 15})
    EXPECT_FALSE(IsFirstObsLine(With(blank, '1'))) << blank;
  for (const std::size_t digit : {2, 5, 8, 11, 14, 19, 20, 21, 22, 23, 24, 25}) {
    EXPECT_FALSE(IsFirstObsLine(With(digit, ' '))) << digit;
    EXPECT_FALSE(IsFirstObsLine(With(digit, 'x'))) << digit;
  }
  for (const std::size_t either : {1, 4, 7, 10, 13, 16, 17}) {
    EXPECT_TRUE(IsFirstObsLine(With(either, ' '))) << either;
    EXPECT_TRUE(IsFirstObsLine(With(either, '9'))) << either;
    EXPECT_FALSE(IsFirstObsLine(With(either, '-'))) << either;
  }
  EXPECT_FALSE(IsFirstObsLine(With(18, ' ')));
  EXPECT_TRUE(IsFirstObsLine(With(26, 'x'))); // behind the pattern anything goes
}

TEST(IsFirstObsLine, SecondsNeedSevenDecimals) {
  EXPECT_FALSE(IsFirstObsLine(" 11 10 10  0  0 30.000000   0 12G 5R12  3"));
}

TEST(IsFirstObsLine, LongerThan32Characters) {
  EXPECT_FALSE(IsFirstObsLine(" 11 10 10  0  0 30.0000000  4 12"));
  EXPECT_TRUE(IsFirstObsLine(" 11 10 10  0  0 30.0000000  4 12 "));
  EXPECT_FALSE(IsFirstObsLine(""));
}

TEST(IsFirstObsLine, ObservationLineIsNone) {
  EXPECT_FALSE(IsFirstObsLine("  21234567.123 5  21234567.123 5 109876543.219 5"));
}

TEST(ParseFirstObsLine, Fields) {
  const Parsed p(kEpoch);
  EXPECT_EQ(p.year, 2011);
  EXPECT_EQ(p.month, 10);
  EXPECT_EQ(p.day, 10);
  EXPECT_EQ(p.hour, 0);
  EXPECT_EQ(p.minute, 0);
  EXPECT_EQ(p.second, 30.0L);
  EXPECT_EQ(p.count, 12);
}

TEST(ParseFirstObsLine, YearsTurnAt80) {
  EXPECT_EQ(Parsed(" 80  1  1  0  0  0.0000000  0  1G01").year, 1980);
  EXPECT_EQ(Parsed(" 99  1  1  0  0  0.0000000  0  1G01").year, 1999);
  EXPECT_EQ(Parsed(" 79  1  1  0  0  0.0000000  0  1G01").year, 2079);
  EXPECT_EQ(Parsed(" 00  1  1  0  0  0.0000000  0  1G01").year, 2000);
  EXPECT_EQ(Parsed("  5  1  1  0  0  0.0000000  0  1G01").year, 2005);
}

TEST(ParseFirstObsLine, FractionsOfASecond) {
  EXPECT_EQ(Parsed(" 08  1 16 16 41 59.9995000  0  1G01").second,
            static_cast<long double>(59.9995));
}

TEST(ParseFirstObsLine, CountIsTheLastTwoDigitsOfItsField) {
  EXPECT_EQ(Parsed(" 11 10 10  0  0  0.0000000  0  9 1 2").count, 9);
  EXPECT_EQ(Parsed(" 11 10 10  0  0  0.0000000  0 33G01").count, 33);
  EXPECT_EQ(Parsed(" 11 10 10  0  0  0.0000000  0105G01").count, 5);
  EXPECT_EQ(Parsed(" 11 10 10  0  0  0.0000000  0 1234").count, 12);
}

TEST(ParseFirstObsLine, CountThatIsNoneIsZero) {
  EXPECT_EQ(Parsed(" 11 10 10  0  0  0.0000000  0   G01").count, 0);
  EXPECT_EQ(Parsed(" 11 10 10  0  0  0.0000000  0 -5G01").count, 0);
  EXPECT_EQ(Parsed(" 11 10 10  0  0  0.0000000  0 xxG01").count, 0);
}

TEST(ParseFirstObsLine, EmptyLineIsAllZero) {
  const Parsed p("");
  EXPECT_EQ(p.year, 2000);
  EXPECT_EQ(p.month, 0);
  EXPECT_EQ(p.second, 0.0L);
  EXPECT_EQ(p.count, 0);
}

TEST(FillObsLine, PadsToTheFields) {
  char line[5 * 16 + 1] = "  21234567.123 5";
  FillObsLine(line, 5);
  EXPECT_EQ(std::string(line), "  21234567.123 5" + std::string(64, ' '));
}

TEST(FillObsLine, CutsALongerLine) {
  char line[100];
  std::memset(line, 'x', 99);
  line[99] = '\0';
  FillObsLine(line, 5);
  EXPECT_EQ(std::string(line), std::string(80, 'x'));
}

TEST(FillObsLine, NoFieldsLeaveNothing) {
  char line[] = "abc";
  FillObsLine(line, 0);
  EXPECT_STREQ(line, "");
}
