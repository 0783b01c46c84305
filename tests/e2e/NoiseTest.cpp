// Errors against formal errors, over many seeds.
//
// The simulated noise is what the weights mean: variances proportional to 1 / sin2(elevation),
// P1-C1 and P2-C1 correlated by their common C1, and L1-L2 with a tenth of the noise of one code.
// With weights that are right up to a common factor, the errors of the estimates have the
// covariance s2 Q: s2 is the variance of unit weight, the variance of one code at the zenith, and
// Q the cofactor matrix.
//
// The report's formal errors use the estimate of s2 instead,
//
//     s0^2 = vtPv / (c + N - u)
//
// with the constraints c, the unknowns u and the observations N. vtPv of the last iteration has
// the expectation s2 (c + n - u), n being the observations of ONE iteration. But N counts on from
// iteration to iteration: after k of them N = k n. (The sum that the counting leaves behind is no
// part of vtPv: the model is linear, so the second iteration already finds the residuals, and its
// correction ends the iteration.) So
//
//     E(s0^2) = s2 (c + n - u) / (c + k n - u),
//
// about s2 / 2 for the usual two iterations, and errors over formal errors have the deviation
//
//     sqrt((c + k n - u) / (c + n - u)),
//
// about 1.4, not 1.

#include "SimulatedRun.h"
#include <cmath>
#include <gtest/gtest.h>

using namespace sim;

namespace {

/// What a run counted.
struct Counts {
  double constraints, unknowns, perIteration, iterations;
  /// (c + k n - u) / (c + n - u)
  double Excess() const {
    return (constraints + iterations * perIteration - unknowns) /
           (constraints + perIteration - unknowns);
  }
};

/// Errors over formal errors of one kind of estimates, over all seeds.
struct Sample {
  std::vector<double> values;
  double Mean() const {
    double sum = 0;
    for (const double v : values) sum += v;
    return sum / static_cast<double>(values.size());
  }
  double Deviation() const {
    double sum = 0;
    for (const double v : values) sum += v * v;
    return std::sqrt(sum / static_cast<double>(values.size()) - Mean() * Mean());
  }
};

} // namespace

static Counts CountsOf(const SimulatedRun& run) {
  Counts counts{};
  for (const auto& node : run.Truth().at("ionosphere").at("nodes"))
    counts.constraints += node.at("continues").get<bool>() ? 1 : 0;
  const report::Statistics& statistics = run.Report().statistics;
  counts.iterations = static_cast<double>(statistics.iterations);
  counts.perIteration = static_cast<double>(statistics.observations) / counts.iterations;
  counts.unknowns = static_cast<double>(run.Report().adjustment.Last().unknowns);
  return counts;
}

/// 200 seeds: the mean of a sample has the standard deviation 1.4 / sqrt 200 = 0.1, half of the
/// tolerance; the deviation one of 5 %, a quarter of the tolerance.
static void ExpectFormalErrors(Scenario s, const std::vector<std::string>& estimation) {
  constexpr std::uint64_t kSeeds = 200;
  std::map<std::string, Sample> samples;
  double excess = 0, variance = 0;
  for (std::uint64_t seed = 1; seed <= kSeeds; ++seed) {
    s.seed = seed;
    const SimulatedRun run(s, estimation);
    ASSERT_EQ(run.Result().status, 0) << run.Result().err;
    const Counts counts = CountsOf(run);
    excess += counts.Excess() / kSeeds;
    variance += run.Report().adjustment.Last().variance / kSeeds;
    for (const auto& [what, deviations] : run.Errors())
      for (std::size_t k = 0; k < deviations.errors.size(); ++k)
        samples[what].values.push_back(deviations.errors[k] / deviations.sigmas[k]);
  }
  EXPECT_GT(excess, 1.9); // two iterations at least
  EXPECT_NEAR(variance * excess / (s.codeNoise * s.codeNoise), 1, 0.05);
  for (const auto& [what, sample] : samples) {
    EXPECT_NEAR(sample.Mean(), 0, 0.2) << what;
    EXPECT_NEAR(sample.Deviation() / std::sqrt(excess), 1, 0.2) << what;
  }
  EXPECT_GE(samples.size(), 4u);
}

static Scenario NoisyHours() {
  Scenario s;
  s.interval = 120;
  s.duration = 3 * 3720; // three intervals of 31 epochs
  s.start = 30000;
  s.phaseNoise.reset();
  s.windUp = WindUp::kExact;
  s.withSp3 = false;
  s.cutoff = 20;
  return s;
}

TEST(Noise, ErrorsOfCodeEstimatesHaveTheFormalSize) {
  Scenario s = NoisyHours();
  s.codeNoise = 1;
  ExpectFormalErrors(s, Estimation(s, "REC,ION", "CODE"));
}

TEST(Noise, ErrorsOfCodeAndPhaseEstimatesHaveTheFormalSize) {
  // Less noise, so that no phase steps as far as a slip: 3 mm of L1-L2 at the cut-off against
  // steps of 14 cm.
  Scenario s = NoisyHours();
  s.codeNoise = 0.1;
  s.ionoAmplitude = 0;
  ExpectFormalErrors(s, Estimation(s, "REC,ION", "CODE,PHASE"));
}
