#include "Ionosphere.h"
#include "Vec3.h"
#include "support/Near.h"
#include <gtest/gtest.h>

using namespace sim;

static EpochTable Table(double duration, double interval, std::vector<TimeSpan> gaps = {}) {
  Scenario s;
  s.duration = duration;
  s.interval = interval;
  s.gaps = std::move(gaps);
  return MakeEpochs(s);
}

TEST(CutIntervals, AnIntervalBeginsBehindItsLengthNotAtIt) {
  // 30 s data, one hour: epoch 120 is exactly an hour after the first, epoch 121 begins the next.
  const IntervalTable table = CutIntervals(Table(2 * 3630, 30).epochs, 3600);
  ASSERT_EQ(table.intervals.size(), 2u);
  EXPECT_EQ(table.intervals[0].first, 0);
  EXPECT_EQ(table.intervals[0].last, 120);
  EXPECT_EQ(table.intervals[1].first, 121);
  EXPECT_EQ(table.intervals[1].last, 241);
  EXPECT_FALSE(table.continued[0]);
  EXPECT_TRUE(table.continued[1]);
  EXPECT_FALSE(table.joined);
}

TEST(CutIntervals, ARemainderOfLessThanAQuarterIsJoined) {
  // 121 epochs, and 30 more: 29 steps of 30 s are 870 s, less than 900.
  const IntervalTable joined = CutIntervals(Table(151 * 30, 30).epochs, 3600);
  ASSERT_EQ(joined.intervals.size(), 1u);
  EXPECT_EQ(joined.intervals[0].last, 150);
  EXPECT_TRUE(joined.joined);
  const IntervalTable kept = CutIntervals(Table(152 * 30, 30).epochs, 3600); // 900 s
  EXPECT_EQ(kept.intervals.size(), 2u);
  EXPECT_FALSE(kept.joined);
}

TEST(CutIntervals, AGapOfMoreThanTenMinutesBeginsAnewAndUnconstrained) {
  // Epochs every 30 s with none from 3600 s to 4200 s: 3570 to 4230 are 660 s.
  const EpochTable epochs = Table(7200, 30, {{3600, 4200}});
  const IntervalTable table = CutIntervals(epochs.epochs, 1800);
  ASSERT_EQ(table.intervals.size(), 4u);
  EXPECT_EQ(table.intervals[1].last, 119); // 3570 s
  EXPECT_EQ(table.intervals[2].first, 120);
  EXPECT_TRUE(table.continued[1]);
  EXPECT_FALSE(table.continued[2]);
  EXPECT_TRUE(table.continued[3]);
  const std::vector<long> of = IntervalOfEpochs(table, static_cast<long>(epochs.epochs.size()));
  EXPECT_EQ(of[119], 1);
  EXPECT_EQ(of[120], 2);
}

TEST(CutIntervals, ThreeEpochsBetweenGapsHaveNoInterval) {
  const EpochTable epochs = Table(7200, 30, {{1800, 2500}, {2610, 3400}});
  const IntervalTable table = CutIntervals(epochs.epochs, 1800);
  for (const Interval& interval : table.intervals) EXPECT_GE(interval.last - interval.first, 3);
}

TEST(ShellZenith, IsTheAngleInTheTriangleOfCentreReceiverAndPiercePoint) {
  EXPECT_NEAR(ShellZenith(kPi / 2), 0, 1e-15);
  EXPECT_NEAR(std::sin(ShellZenith(0)), 6371.0 / 6821.0, 1e-15);
  EXPECT_NEAR(std::sin(ShellZenith(kPi / 6)), 6371.0 / 6821.0 * std::cos(kPi / 6), 1e-15);
}

/// The model over a station at the equator, two hours of half-hour pieces.
struct ModelFixture : testing::Test {
  Scenario s;
  EpochTable epochs;
  ModelFixture() {
    s.duration = 7200;
    s.interval = 60;
    s.ionoInterval = 1800;
    epochs = MakeEpochs(s);
  }
  static constexpr Ray kZenith{0, 0, kPi / 2, 0};
};

TEST_F(ModelFixture, DelayIsContinuousAndLinearBetweenTheNodes) {
  const Ionosphere ionosphere(s, epochs, 0, 0);
  const auto& nodes = ionosphere.Nodes();
  ASSERT_EQ(nodes.size(), 4u); // pieces of 31 epochs, begun at 0, 1860, 3720 and 5580 s
  for (std::size_t k = 0; k + 1 < nodes.size(); ++k) {
    const double hours = static_cast<double>(nodes[k + 1].begin - nodes[k].begin) / 3600;
    EXPECT_NEAR(nodes[k].delay + nodes[k].rate * hours, nodes[k + 1].delay, 1e-12);
    const long first = ionosphere.Intervals().intervals[k].first;
    EXPECT_NEAR(ionosphere.Slant(first, kZenith), nodes[k].delay, 1e-12);
    EXPECT_NEAR(ionosphere.Slant(first + 15, kZenith), nodes[k].delay + nodes[k].rate / 4, 1e-12);
  }
}

TEST_F(ModelFixture, NodesMayBeGiven) {
  s.ionoNodes = {1, 2, 4, 8, 16};
  const Ionosphere ionosphere(s, epochs, 0, 0);
  EXPECT_EQ(ionosphere.Nodes()[2].delay, 4);
  EXPECT_NEAR(ionosphere.Nodes()[0].rate, 1 / (1860.0 / 3600), 1e-12);
  EXPECT_NEAR(ionosphere.Nodes()[3].rate, 8 / (1560.0 / 3600), 1e-12); // 5580 s to 7140 s
}

TEST_F(ModelFixture, GradientsGrowWithTheTangentTowardsEastAndNorth) {
  s.gradients = Gradients::kFree;
  const Ionosphere ionosphere(s, epochs, 0, 0);
  const IonoNode& node = ionosphere.Nodes()[0];
  ASSERT_NE(node.eastGradient, 0);
  const double elevation = 40 * kDegree, z = ShellZenith(elevation);
  const auto slantTowards = [&](double azimuth) {
    return ionosphere.Slant(0, {0, 0, elevation, azimuth}) * std::cos(z);
  };
  EXPECT_NEAR(slantTowards(kPi / 2) - node.delay, node.eastGradient * std::tan(z), 1e-12);
  EXPECT_NEAR(slantTowards(3 * kPi / 2) - node.delay, -node.eastGradient * std::tan(z), 1e-12);
  EXPECT_NEAR(slantTowards(0) - node.delay, node.northGradient * std::tan(z), 1e-12);
}

TEST_F(ModelFixture, CoupledEastGradientsAreTheDelaysAtTheNextNode) {
  s.gradients = Gradients::kCoupled;
  const Ionosphere ionosphere(s, epochs, 0, 0);
  const auto& nodes = ionosphere.Nodes();
  for (std::size_t k = 0; k + 1 < nodes.size(); ++k)
    EXPECT_NEAR(nodes[k].eastGradient, nodes[k + 1].delay, 1e-12);
}

TEST_F(ModelFixture, BulgeIsHighestInTheAfternoonAndOverTheCrests) {
  s.law = IonoLaw::kBulge;
  const Ionosphere ionosphere(s, epochs, 46 * kDegree, 0);
  const double noon = 14 * 3600.0, night = 2 * 3600.0;
  EXPECT_NEAR(ionosphere.Bulge(night, 46 * kDegree, 0), s.ionoBase, 1e-12);
  EXPECT_GT(ionosphere.Bulge(noon, 15 * kDegree, 0), ionosphere.Bulge(noon, 0, 0));
  EXPECT_GT(ionosphere.Bulge(noon, 15 * kDegree, 0), ionosphere.Bulge(noon, 46 * kDegree, 0));
  EXPECT_EQ(ionosphere.Bulge(noon, -0.3, 0), ionosphere.Bulge(noon, 0.3, 0));
  // Six hours later at the same longitude is ninety degrees further east at the same time.
  EXPECT_NEAR(ionosphere.Bulge(noon - 3600, 0.5, 0), ionosphere.Bulge(noon, 0.5, -15 * kDegree),
              1e-12);
}

TEST_F(ModelFixture, BulgeOverheadIsTheNodesDelay) {
  s.law = IonoLaw::kBulge;
  s.start = 40000;
  epochs = MakeEpochs(s);
  const double latitude = 30 * kDegree, longitude = 20 * kDegree;
  const Ionosphere ionosphere(s, epochs, latitude, longitude);
  EXPECT_NEAR(ionosphere.Slant(0, {latitude, longitude, kPi / 2, 1}), ionosphere.Nodes()[0].delay,
              1e-12);
  EXPECT_LT(ionosphere.Nodes()[0].northGradient, 0); // denser towards the equator
}
