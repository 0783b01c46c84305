#include "zenta-view/Script.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace view;

long PointsOf(const Dots& dots) {
  const std::string rows = dots.Rows();
  return std::count(rows.begin(), rows.end(), '\n') / 3; // two ends and a blank line
}

TEST(Script, PlotTimeIsSecondsSince1970) {
  EXPECT_EQ(PlotTime({40587, 0}), 0);
  EXPECT_EQ(PlotTime({51544, 43200}), 946728000); // 2000-01-01 12:00
}

TEST(Dots, PointsInOneCellAreDrawnOnce) {
  Dots dots(0, 100, -1, 1, 100, 20);
  dots.Add(10.1, 0.01);
  dots.Add(10.9, 0.09);
  dots.Add(11.1, 0.01);
  EXPECT_EQ(PointsOf(dots), 2);
}

TEST(Dots, PointsOutsideTheAreaAreLeftOut) {
  Dots dots(0, 100, -1, 1, 100, 20);
  dots.Add(-0.1, 0);
  dots.Add(100.1, 0);
  dots.Add(50, 1.1);
  dots.Add(50, std::numeric_limits<double>::quiet_NaN());
  dots.Add(std::numeric_limits<double>::infinity(), 0);
  EXPECT_TRUE(dots.Empty());
  dots.Add(0, -1);
  dots.Add(100, 1);
  EXPECT_EQ(PointsOf(dots), 2);
}

TEST(Dots, PointStaysWhereItIs) {
  Dots dots(0, 1e9, 0, 10, 100, 100);
  dots.Add(123456789.25, 3.25);
  EXPECT_TRUE(dots.Rows().starts_with("123456789.25 3.25\n"));
}

TEST(TimeAxis, MarksFitTheSpan) {
  const auto axis = [](double seconds) { return TimeAxis({{55844, 0}, {55844, seconds}}); };
  EXPECT_NE(axis(1770).find("set xtics 300\n"), std::string::npos);
  EXPECT_NE(axis(86370).find("set xtics 10800\n"), std::string::npos);
  EXPECT_NE(axis(86370).find("2011-10-10'"), std::string::npos);
  EXPECT_NE(axis(3 * 86400).find("2011-10-10 to 2011-10-13"), std::string::npos);
  EXPECT_NE(axis(0).find("set xrange ['1318204800.000':'1318204860.000']"), std::string::npos);
}

TEST(RoundStep, HasOneTwoOrFiveAndSixMarksAtMost) {
  EXPECT_DOUBLE_EQ(RoundStep(0, 6), 1);
  EXPECT_DOUBLE_EQ(RoundStep(-0.4, 3.1), 1);
  EXPECT_DOUBLE_EQ(RoundStep(0, 0.62), 0.2);
  EXPECT_DOUBLE_EQ(RoundStep(10, 34), 5);
  EXPECT_DOUBLE_EQ(RoundStep(0, 55), 10);
  EXPECT_DOUBLE_EQ(RoundStep(2, 2), 1);
  EXPECT_DOUBLE_EQ(RoundStep(0, std::numeric_limits<double>::quiet_NaN()), 1);
}

} // namespace
