#include "Arcs.h"
#include "support/Near.h"
#include <gtest/gtest.h>

using namespace sim;

static mjd At(long epoch, double interval = 30) {
  mjd t(55844, 0);
  t += static_cast<long double>(interval) * epoch;
  return t;
}

TEST(ArcFinder, AGapOrAStepBeginsANewArc) {
  ArcFinder finder(30);
  for (long i = 0; i < 60; ++i) {
    if (i == 20) continue;                                         // missing: 60 s to the next
    finder.Add(5, i, At(i), i < 40 ? 0 : 0.2, i < 40 ? 10 : 10.2); // a slip at epoch 40
  }
  const std::vector<Arc> arcs = finder.Finish();
  ASSERT_EQ(arcs.size(), 3u);
  EXPECT_EQ(arcs[0].last, 19);
  EXPECT_EQ(arcs[1].first, 21);
  EXPECT_EQ(arcs[1].count, 19);
  EXPECT_EQ(arcs[2].first, 40);
  EXPECT_EQ(arcs[2].ambiguity, 10.2);
}

TEST(ArcFinder, ArcsOfLessThanFifteenAreDropped) {
  ArcFinder finder(30);
  for (long i = 0; i < 14; ++i) finder.Add(5, i, At(i), 0, 1);
  for (long i = 0; i < 15; ++i) finder.Add(101, i, At(i), 0, 1);
  const std::vector<Arc> arcs = finder.Finish();
  ASSERT_EQ(arcs.size(), 1u);
  EXPECT_EQ(arcs[0].sat, 101);
  EXPECT_EQ(arcs[0].count, 15);
}

TEST(ArcFinder, StepsThatTheScreeningPassesStay) {
  EXPECT_NEAR(ArcFinder::LargestStep(1), 0.03, 1e-15);
  EXPECT_NEAR(ArcFinder::LargestStep(26), 0.08, 1e-15);
  ArcFinder finder(1);
  for (long i = 0; i < 40; ++i) finder.Add(5, i, At(i, 1), i < 20 ? 0 : 0.029, 1);
  EXPECT_EQ(finder.Finish().size(), 1u);
}
