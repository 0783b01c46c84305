// An ionosphere that is not of the model's class: what the model misses.

#include "SimulatedRun.h"
#include <gtest/gtest.h>

using namespace sim;

static Scenario UnderTheBulge(double amplitude) {
  Scenario s = ExactDay();
  s.law = IonoLaw::kBulge;
  s.ionoAmplitude = amplitude;
  s.start = 21600;
  s.duration = 43200;
  return s;
}

TEST(Bulge, IsFollowedWithinDecimetresAtMiddleLatitudes) {
  const SimulatedRun run(UnderTheBulge(2));
  ASSERT_EQ(run.Result().status, 0);
  // A day of one and a half to three metres; its north-south slope is no part of the model.
  EXPECT_LT(run.Errors().at("delays").Rms(), 0.2);
  EXPECT_GT(run.Errors().at("delays").Rms(), 0.005);
  EXPECT_LE(run.Errors().at("receiver DCB P1-C1").Largest(), 1e-3);
}

TEST(Bulge, IsMissedInProportionToItsHeight) {
  // The estimates are linear in the observations, and the even ionosphere of the night is of the
  // model's class.
  const SimulatedRun low(UnderTheBulge(1)), high(UnderTheBulge(2));
  ASSERT_EQ(high.Result().status, 0);
  ASSERT_EQ(low.Report().ambiguities.size(), high.Report().ambiguities.size());
  const auto& one = low.Errors().at("delays").errors;
  const auto& two = high.Errors().at("delays").errors;
  ASSERT_EQ(one.size(), two.size());
  for (std::size_t k = 0; k < one.size(); ++k) EXPECT_NEAR(two[k], 2 * one[k], 1e-3) << k;
}
