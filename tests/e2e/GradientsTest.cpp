// Gradients: which truths the estimation can find.
//
// Between neighbouring intervals the normal equations are bordered by a constraint row with the
// coefficients 1 at the delay of the earlier interval, dT / 3600 at its rate and -1 at the unknown
// behind the rate. Without gradients that is the delay of the later interval, and the row says
// that the pieces meet. With gradients it is the east gradient of the earlier interval, so that
// the row says
//
//     delay + rate dT = east gradient                                                    (1)
//
// for every interval but the last, and nothing says that the pieces meet. The constraint holds for
// the corrections of every iteration, and so for the estimates, which begin at 0. A truth that
// obeys (1) is found; of any other the estimates are the nearest ones that obey it.

#include "SimulatedRun.h"
#include <gtest/gtest.h>

using namespace sim;

static Scenario WithGradients(Gradients gradients) {
  Scenario s = ExactDay();
  s.duration = 6 * 3600; // six intervals
  s.gradients = gradients;
  return s;
}

TEST(Gradients, OfOneIntervalAreTheTruth) {
  // A single interval has no neighbour and no constraint.
  Scenario s = WithGradients(Gradients::kFree);
  s.duration = 3600;
  const SimulatedRun run(s);
  ExpectTruth(run, 7);
  EXPECT_EQ(run.Errors().at("east gradients").errors.size(), 1u);
}

TEST(Gradients, ThatObeyTheConstraintsAreTheTruth) {
  const SimulatedRun run(WithGradients(Gradients::kCoupled));
  ExpectTruth(run, 6);
  EXPECT_EQ(run.Errors().at("east gradients").errors.size(), 6u);
}

TEST(Gradients, OfAnyOtherTruthObeyTheConstraintsAndMissTheTruth) {
  const SimulatedRun run(WithGradients(Gradients::kFree));
  ASSERT_EQ(run.Result().status, 0);
  const auto& nodes = run.Report().intervals;
  ASSERT_EQ(nodes.size(), 6u);
  for (std::size_t k = 0; k + 1 < nodes.size(); ++k) {
    const double hours = (nodes[k + 1].first - nodes[k].first) / 3600;
    const double next = nodes[k].delay.value + nodes[k].rate.value * hours;
    // Three numbers rounded to a tenth of a millimetre.
    EXPECT_NEAR(next, nodes[k].east.value().value, 1.6e-4);
  }
  // The true gradients are decimetres, the true delays one to six metres.
  EXPECT_GT(run.Errors().at("delays").Rms(), 0.1);
  EXPECT_GT(run.Errors().at("east gradients").Rms(), 0.1);
}

TEST(Gradients, LeftOutOfTheEstimationShowInTheDelaysAlone) {
  // Receiver DCB P1-C1 has no ionosphere in it.
  const SimulatedRun run(WithGradients(Gradients::kFree),
                         Estimation(WithGradients(Gradients::kFree), "REC,ION", "CODE,PHASE"));
  ASSERT_EQ(run.Result().status, 0);
  EXPECT_LE(run.Errors().at("receiver DCB P1-C1").Largest(), 1e-3);
  EXPECT_GT(run.Errors().at("delays").Largest(), 1e-3);
}
