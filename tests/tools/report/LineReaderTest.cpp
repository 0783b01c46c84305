#include "report/LineReader.h"

#include "tools/report/Refused.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace report;

double RealOf(const std::string& line, std::size_t width, int decimals) {
  const std::string text = line + '\n';
  LineReader lines("t", text);
  FieldReader f(lines, "a line");
  const double x = f.Real(width, decimals, "a number");
  f.ExpectEnd();
  return x;
}

std::string RealRefusal(const std::string& line, std::size_t width, int decimals) {
  return RefusalOf([&] { RealOf(line, width, decimals); });
}

TEST(FieldReader, NumberFillsItsColumnsOrIsWider) {
  EXPECT_EQ(RealOf("   -1.5000", 10, 4), -1.5);
  EXPECT_EQ(RealOf("-1.5000", 7, 4), -1.5);
  EXPECT_EQ(RealOf("1234567.5000", 8, 4), 1234567.5);
  EXPECT_NE(RealRefusal("  -1.5000", 10, 4), ""); // a blank short
  EXPECT_NE(RealRefusal("    -1.5000", 10, 4), "");
  EXPECT_NE(RealRefusal(" 1234567.5000", 8, 4), ""); // wider, yet a blank before it
}

TEST(FieldReader, NumberHasItsDecimals) {
  EXPECT_NE(RealRefusal("    -1.500", 10, 4), "");
  EXPECT_NE(RealRefusal("  -1.50000", 10, 4), "");
  EXPECT_NE(RealRefusal("        -1", 10, 4), "");
  EXPECT_NE(RealRefusal("          ", 10, 4), "");
  EXPECT_NE(RealRefusal("", 10, 4), "");
  EXPECT_NE(RealRefusal("  1.5e-004", 10, 4), "");
}

TEST(FieldReader, NotANumberIsOne) {
  EXPECT_TRUE(std::isnan(RealOf("     nan", 8, 4)));
  EXPECT_TRUE(std::isnan(RealOf("    -nan", 8, 4)));
  EXPECT_EQ(RealOf("    -inf", 8, 4), -INFINITY);
}

TEST(FieldReader, NeighboursWithoutABlankArePartedByTheirDecimals) {
  const std::string text = "123456.789012345.6789\n";
  LineReader lines("t", text);
  FieldReader f(lines, "a line");
  EXPECT_EQ(f.Real(8, 4, "a"), 123456.7890);
  EXPECT_EQ(f.Real(8, 4, "b"), 12345.6789);
}

TEST(FieldReader, MessageNamesFileLineColumnAndBoth) {
  const std::string text = "first\nabc?def\n";
  LineReader lines("in.txt", text);
  lines.Expect("first");
  FieldReader f(lines, "a line");
  f.Literal("abc");
  EXPECT_EQ(RefusalOf([&] { f.Literal("xy"); }),
            "in.txt:2: expected \"xy\" from column 4 on, found \"abc?def\"");
}

TEST(FieldReader, WholeNumberBeyondRangeIsRefused) {
  const std::string text = "99999999999999999999\n";
  LineReader lines("t", text);
  FieldReader f(lines, "a line");
  EXPECT_NE(RefusalOf([&] { f.Whole(10, "a count"); }), "");
}

TEST(LineReader, EndsOfLinesAreEitherKind) {
  const std::string text = "one\r\ntwo\n";
  LineReader lines("t", text);
  lines.Expect("one");
  lines.Expect("two");
  EXPECT_TRUE(lines.AtEnd());
  lines.ExpectEnd();
}

TEST(LineReader, LineWithoutAnEndIsRefused) {
  EXPECT_EQ(RefusalOf([] { LineReader("t", "one\ntwo"); }),
            "t:2: expected the end of the line, found the end of the text behind \"two\"; the "
            "report is cut");
}

TEST(LineReader, BytesThatDoNotPrintAreShownAsCodes) {
  const std::string text("a\x01\xff\n", 4);
  LineReader lines("t", text);
  EXPECT_EQ(RefusalOf([&] { lines.Expect("b"); }), "t:1: expected \"b\", found \"a\\x01\\xff\"");
}

} // namespace
