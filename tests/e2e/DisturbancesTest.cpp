// Slips and outliers of known size at known places.

#include "SimulatedRun.h"
#include <gtest/gtest.h>
#include <set>

using namespace sim;

using report::Epoch;
using report::Observable;

namespace {

/// An arc by satellite, begin and end.
using ArcKey = std::tuple<int, Epoch, Epoch>;
/// A value by satellite, index of the epoch and kind.
using ValueKey = std::tuple<int, long, Observable>;

} // namespace

static std::set<ArcKey> ArcsOfReport(const SimulatedRun& run) {
  std::set<ArcKey> arcs;
  for (const report::Ambiguity& a : run.Report().ambiguities)
    arcs.emplace(a.satellite, a.first, a.last);
  return arcs;
}

static std::set<ArcKey> ArcsOfTruth(const SimulatedRun& run) {
  const auto epoch = [](const nlohmann::json& t) { return Epoch{t.at("mjd"), t.at("second")}; };
  std::set<ArcKey> arcs;
  for (const auto& arc : run.Truth().at("ambiguities"))
    arcs.emplace(arc.at("satellite"), epoch(arc.at("first")), epoch(arc.at("last")));
  return arcs;
}

static std::string Text(const ArcKey& arc) {
  const auto& [satellite, first, last] = arc;
  return report::NameOf(satellite) + ": " + report::Iso(first) + " - " + report::Iso(last);
}

/// The arcs of the report are those of the truth.
static void ExpectArcsOfTruth(const SimulatedRun& run) {
  const std::set<ArcKey> report = ArcsOfReport(run), truth = ArcsOfTruth(run);
  for (const ArcKey& arc : report) EXPECT_TRUE(truth.contains(arc)) << "invented: " << Text(arc);
  for (const ArcKey& arc : truth) EXPECT_TRUE(report.contains(arc)) << "not found: " << Text(arc);
}

/// Noise of a good receiver, an ionosphere without storms.
static Scenario QuietDay() {
  Scenario s;
  s.withSp3 = false;
  s.ionoAmplitude = 2;
  return s;
}

TEST(Slips, NoneIsInventedOnCleanData) {
  for (const double interval : {30.0, 60.0}) {
    Scenario s = QuietDay();
    s.interval = interval;
    s.ionoInterval = 3590;
    s.phaseNoise = 0.001;
    const SimulatedRun run(s);
    ExpectArcsOfTruth(run);
    EXPECT_GT(ArcsOfReport(run).size(), 50u);
  }
}

TEST(Slips, AllAreFoundWhereTheyAreAndNowhereElse) {
  for (const std::uint64_t seed : {1u, 2u, 3u}) {
    Scenario s = QuietDay();
    s.seed = seed;
    s.phaseNoise = 0.001;
    s.randomSlips = 40;
    const SimulatedRun run(s);
    for (const auto& slip : run.Truth().at("disturbances").at("slips"))
      EXPECT_TRUE(slip.at("found").get<bool>());
    ExpectArcsOfTruth(run);
    s.randomSlips = 0;
    const SimulatedRun clean(s);
    // A slip leaves an arc of 20 epochs at least on either side.
    EXPECT_EQ(ArcsOfReport(run).size(), ArcsOfReport(clean).size() + 40) << seed;
  }
}

TEST(Slips, AmbiguitiesBehindASlipDifferByItsStep) {
  Scenario s = ExactDay();
  s.randomSlips = 20;
  const SimulatedRun run(s);
  ExpectTruth(run, 5); // the truth of each arc counts its slips
  EXPECT_EQ(run.Unmatched(), 0);
}

/// The truth's outliers as the run should reject them.
static std::set<ValueKey> Expected(const SimulatedRun& run, Observable observable) {
  std::set<ValueKey> all;
  for (const auto& o : run.Truth().at("disturbances").at("outliers"))
    all.emplace(o.at("satellite"), o.at("epoch"), observable);
  return all;
}

static std::set<ValueKey> AsSet(const std::vector<report::Outlier>& outliers) {
  std::set<ValueKey> all;
  for (const report::Outlier& o : outliers) all.emplace(o.satellite, o.epochIndex, o.observable);
  return all;
}

TEST(Outliers, ResidualTestOfCodesRejectsThoseAndNoOthers) {
  Scenario s = QuietDay();
  s.randomOutliers = 40;
  s.outlierSize = 15;
  const SimulatedRun run(s, Estimation(s, "REC,ION", "CODE,PHASE", {"-bt10"}));
  ASSERT_EQ(run.Result().status, 0);
  EXPECT_EQ(AsSet(run.Report().adjustment.residuals), Expected(run, Observable::P2C1));
  EXPECT_EQ(run.Report().adjustment.residuals.size(), 40u);
  EXPECT_EQ(run.Report().statistics.outliers, 40);
}

TEST(Outliers, OfC1AreInBothDifferencesAndRejectedInBoth) {
  Scenario s = QuietDay();
  s.randomOutliers = 20;
  s.outlierSize = 15;
  s.outlierType = "C1";
  const SimulatedRun run(s, Estimation(s, "REC,ION", "CODE,PHASE", {"-bt10"}));
  ASSERT_EQ(run.Result().status, 0);
  std::set<ValueKey> expected = Expected(run, Observable::P1C1);
  expected.merge(Expected(run, Observable::P2C1));
  EXPECT_EQ(AsSet(run.Report().adjustment.residuals), expected);
  EXPECT_EQ(run.Report().adjustment.residuals.size(), 40u);
}

TEST(Outliers, MisclosureTestRejectsThoseOfP2AndNoOthers) {
  // The first misclosures hold the whole bias and delay: 2.5 m and up to 6 m; later ones the noise.
  Scenario s = QuietDay();
  s.randomOutliers = 30;
  s.outlierSize = 60;
  const SimulatedRun run(s, Estimation(s, "REC,ION", "CODE,PHASE", {"-ft40"}));
  ASSERT_EQ(run.Result().status, 0);
  EXPECT_EQ(AsSet(run.Report().adjustment.misclosures), Expected(run, Observable::P2C1));
  // Each iteration finds them anew.
  EXPECT_EQ(run.Report().adjustment.misclosures.size(),
            30u * static_cast<std::size_t>(run.Report().statistics.iterations));
  EXPECT_EQ(run.Report().statistics.outliers, 30);
}

TEST(Outliers, MisclosureTestRejectsP1FromSixteenMetresOnWhateverTheThreshold) {
  Scenario s = QuietDay();
  s.randomOutliers = 30;
  s.outlierType = "P1";
  s.outlierSize = 20;
  const SimulatedRun run(s, Estimation(s, "REC,ION", "CODE,PHASE", {"-ft90"}));
  ASSERT_EQ(run.Result().status, 0);
  EXPECT_EQ(AsSet(run.Report().adjustment.misclosures), Expected(run, Observable::P1C1));
}

TEST(Outliers, ResidualTestOfPhasesRejectsThoseThatTheScreeningPasses) {
  // Every two minutes the screening passes steps of 14 cm.
  Scenario s = QuietDay();
  s.interval = 120;
  s.ionoInterval = 3590;
  s.phaseNoise = 0.0005;
  s.randomOutliers = 25;
  s.outlierType = "L1";
  s.outlierSize = 0.08;
  s.cutoff = 20;
  s.ionoAmplitude = 0;
  s.windUp = WindUp::kExact;
  const SimulatedRun run(s, Estimation(s, "REC,ION", "CODE,PHASE", {"-bl0.04"}));
  ASSERT_EQ(run.Result().status, 0);
  EXPECT_EQ(AsSet(run.Report().adjustment.residuals), Expected(run, Observable::L4));
  EXPECT_EQ(run.Report().adjustment.residuals.size(), 25u);
}

TEST(Outliers, OnceRejectedLeaveTheEstimatesOfCleanData) {
  Scenario s = QuietDay();
  const std::vector<std::string> estimation = Estimation(s, "REC,ION", "CODE,PHASE", {"-bt10"});
  const SimulatedRun clean(s, estimation);
  s.randomOutliers = 40;
  s.outlierSize = 15;
  const SimulatedRun run(s, estimation);
  ASSERT_EQ(clean.Report().intervals.size(), run.Report().intervals.size());
  for (std::size_t k = 0; k < run.Report().intervals.size(); ++k) {
    const report::Interval &a = clean.Report().intervals[k], &b = run.Report().intervals[k];
    // Forty of some forty thousand codes are missing.
    EXPECT_NEAR(a.delay.value, b.delay.value, 0.2 * a.delay.sigma + 1e-4);
    EXPECT_NEAR(a.rate.value, b.rate.value, 0.2 * a.rate.sigma + 1e-4);
  }
}
