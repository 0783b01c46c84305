#include "zenta-view/Pictures.h"

#include "tools/report/Reports.h"

#include <cmath>
#include <gtest/gtest.h>
#include <regex>

namespace {

using namespace view;
using report::Observable;

ViewData DataOf(const std::string& file) {
  ViewData data;
  data.report = ReadTestReport(file);
  return data;
}

/// Residuals of \p size in the four quarters of the sky.
std::vector<LocatedResidual> AroundTheSky(double size) {
  std::vector<LocatedResidual> located;
  for (const double azimuth : {45.0, 135.0, 225.0, 315.0})
    located.push_back({{5, Observable::L4, size}, 45, azimuth});
  return located;
}

long CountOf(const std::string& text, const std::string& part) {
  long n = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++n;
  return n;
}

TEST(SkyPicture, KeyIsInMillimetresWhereResidualsAreSmall) {
  EXPECT_NE(SkyPicture(Observable::L4, AroundTheSky(0.004))->script.find("'mean, mm'"),
            std::string::npos);
  EXPECT_NE(SkyPicture(Observable::L4, AroundTheSky(4))->script.find("'mean, m'"),
            std::string::npos);
}

// Class 8 of 9 holds what is near the largest; its block holds the one cell that has any.
TEST(SkyPicture, NorthIsUpAndEastToTheRight) {
  const auto place = [](double azimuth) {
    const std::vector<LocatedResidual> one = {{{5, Observable::L4, 1.0}, 45, azimuth}};
    const std::string script = SkyPicture(Observable::L4, one)->script;
    const std::string head = "$c8 << EOD\n";
    double x = 0;
    double y = 0;
    const std::size_t at = script.find(head);
    EXPECT_NE(at, std::string::npos);
    EXPECT_EQ(std::sscanf(script.c_str() + at + head.size(), "%lf %lf", &x, &y), 2);
    return std::pair(x, y);
  };
  constexpr double kCell = 1.2;
  const auto [eastX, eastY] = place(90);
  EXPECT_NEAR(eastX, 45, kCell);
  EXPECT_NEAR(eastY, 0, kCell);
  const auto [northX, northY] = place(0);
  EXPECT_NEAR(northX, 0, kCell);
  EXPECT_NEAR(northY, 45, kCell);
}

TEST(BiasPicture, BiasesOfTheReceiverHaveAnAxisEach) {
  const std::string script = BiasPicture(DataOf("full/report.txt"))->script;
  EXPECT_EQ(CountOf(script, "\nplot "), 2);
  EXPECT_EQ(CountOf(script, "set ylabel "), 2);
}

TEST(DelayPicture, MarksInMetresAreRound) {
  const std::string script = DelayPicture(DataOf("full/report.txt"))->script;
  std::smatch step;
  ASSERT_TRUE(std::regex_search(script, step, std::regex("set y2tics ([0-9.e-]+)\n")));
  const double leading =
      std::stod(step[1]) / std::pow(10, std::floor(std::log10(std::stod(step[1])) + 1e-9));
  EXPECT_TRUE(std::fabs(leading - 1) < 1e-9 || std::fabs(leading - 2) < 1e-9 ||
              std::fabs(leading - 5) < 1e-9)
      << step[1];
}

TEST(DelayPicture, SaysThatPiecesDoNotJoinWithGradients) {
  EXPECT_NE(DelayPicture(DataOf("full/report.txt"))->caption.find("do not join"),
            std::string::npos);
  EXPECT_EQ(DelayPicture(DataOf("phase.txt"))->caption.find("do not join"), std::string::npos);
}

// Wide marks would push a label of the axis out of the picture.
TEST(GradientPicture, LabelsOfPanelsStandAtTheLeftEdge) {
  const std::string script = GradientPicture(DataOf("full/report.txt"))->script;
  EXPECT_EQ(CountOf(script, "set ylabel "), 0);
  EXPECT_EQ(CountOf(script, " at screen 0.018, graph 0.5 center rotate by 90 "), 2);
}

// A thick line has a spike where it begins in PNG files.
TEST(ArcPicture, BarsAreBoxes) {
  const std::string script = ArcPicture(DataOf("full/report.txt"))->script;
  EXPECT_NE(script.find("with boxxyerror"), std::string::npos);
  EXPECT_EQ(script.find("with lines"), std::string::npos);
}

} // namespace
