#include "zenta-view/ViewData.h"

#include "tools/report/Reports.h"

#include <gtest/gtest.h>

namespace {

using namespace view;
using report::Ambiguity;
using report::Observable;
using report::Outlier;

Ambiguity Arc(int satellite, double first, double last) {
  Ambiguity a;
  a.satellite = satellite;
  a.first = {55844, first};
  a.last = {55844, last};
  return a;
}

TEST(SlipsOf, ArcAtTheNextEpochOfTheSameSatelliteStartsWithASlip) {
  report::Report r;
  r.ambiguities = {Arc(5, 0, 600), Arc(5, 630, 900), Arc(5, 960, 1200), Arc(7, 1230, 1500)};
  const std::vector<Slip> slips = SlipsOf(r, 30);
  ASSERT_EQ(slips.size(), 1U); // 960 is a gap, 1230 another satellite
  EXPECT_EQ(slips[0].satellite, 5);
  EXPECT_EQ(slips[0].epoch.second, 630);
}

Outlier At(double second, int satellite, double value, Observable o = Observable::L4) {
  return {0, {55844, second}, satellite, o, value};
}

TEST(OutlierRunsOf, NeighboursBecomeOneRunWithItsLargest) {
  report::Report r;
  r.adjustment.residuals = {At(0, 5, 0.6),   At(30, 5, -0.9),  At(30, 7, 0.7),
                            At(60, 5, 0.65), At(120, 5, 0.61), At(120, 5, 3, Observable::P2C1)};
  const std::vector<OutlierRun> runs = OutlierRunsOf(r, 30);
  ASSERT_EQ(runs.size(), 4U);
  EXPECT_EQ(runs[0].satellite, 5);
  EXPECT_EQ(runs[0].count, 3);
  EXPECT_EQ(runs[0].last.second, 60);
  EXPECT_EQ(runs[0].largest, -0.9);
  EXPECT_EQ(runs[1].satellite, 7);
  EXPECT_EQ(runs[2].first.second, 120);
  EXPECT_EQ(runs[3].observable, Observable::P2C1);
}

TEST(OutlierRunsOf, MisclosuresAreThoseOfTheLastIteration) {
  report::Report r;
  r.adjustment.misclosures = {At(0, 5, 9), At(0, 5, 8), At(30, 5, 7)};
  r.adjustment.iterated.outliers = 2;
  const std::vector<OutlierRun> runs = OutlierRunsOf(r, 30);
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_TRUE(runs[0].byMisclosure);
  EXPECT_EQ(runs[0].count, 2);
  EXPECT_EQ(runs[0].largest, 8);
}

inputs::Direction Seen(double second, int satellite, bool eclipsed) {
  return {{55844, second}, satellite, 1, 2, eclipsed};
}

TEST(EclipsesOf, EclipsedEpochsThatFollowEachOtherAreOneRun) {
  ViewData data;
  data.inputs.emplace();
  data.inputs->directions = {Seen(0, 5, true),  Seen(0, 7, true),  Seen(30, 5, true),
                             Seen(60, 5, true), Seen(60, 7, true), Seen(90, 5, false),
                             Seen(120, 5, true)};
  const std::vector<EclipseRun> runs = EclipsesOf(data);
  ASSERT_EQ(runs.size(), 4U);
  EXPECT_EQ(runs[0].last.second, 60);
  EXPECT_EQ(runs[1].satellite, 7);
  EXPECT_EQ(runs[1].last.second, 0);
  EXPECT_EQ(runs[3].first.second, 120);
}

TEST(Locate, ResidualsGetTheDirectionOfTheirSatelliteAtTheirEpoch) {
  ViewData data;
  data.inputs.emplace();
  data.inputs->directions = {Seen(0, 5, false), Seen(0, 7, false)};
  data.inputs->directions[1].elevation = 3.14159265358979 / 6;
  data.inputs->directions[1].azimuth = 3.14159265358979;
  data.residuals.emplace();
  data.residuals->blocks = {{{55844, 0.0004}, {{7, Observable::L4, 0.5}}}, // 0.4 ms of rounding
                            {{55844, 30}, {{7, Observable::L4, 0.5}}}};    // no direction
  const std::vector<LocatedResidual> located = Locate(data);
  ASSERT_EQ(located.size(), 1U);
  EXPECT_NEAR(located[0].elevation, 30, 1e-9);
  EXPECT_NEAR(located[0].azimuth, 180, 1e-9);
}

TEST(SamplingOf, IsTheSmallestStepOfTheResults) {
  ViewData data;
  data.report = ReadTestReport("full/report.txt"); // an epoch-wise delay every 30 s
  EXPECT_DOUBLE_EQ(SamplingOf(data), 30);
  data.inputs.emplace();
  data.inputs->directions = {Seen(0, 5, false), Seen(0, 7, false), Seen(15, 5, false)};
  EXPECT_DOUBLE_EQ(SamplingOf(data), 15);
  EXPECT_DOUBLE_EQ(SamplingOf(ViewData()), 30);
}

} // namespace
