#include "Random.h"
#include "support/Near.h"
#include <array>
#include <gtest/gtest.h>

using sim::Random;

TEST(Random, SameSeedPurposeAndIndexGiveTheSameNumbers) {
  Random a(7, "noise", 3), b(7, "noise", 3);
  for (int k = 0; k < 1000; ++k) EXPECT_EQ(a.Bits(), b.Bits());
}

TEST(Random, SeedPurposeAndIndexEachChangeTheNumbers) {
  const std::uint64_t reference = Random(7, "noise", 3).Bits();
  EXPECT_NE(reference, Random(8, "noise", 3).Bits());
  EXPECT_NE(reference, Random(7, "slips", 3).Bits());
  EXPECT_NE(reference, Random(7, "noise", 4).Bits());
}

TEST(Random, UniformNumbersFillTheUnitIntervalEvenly) {
  Random random(1);
  std::array<int, 10> bins{};
  for (int k = 0; k < 100000; ++k) {
    const double u = random.Uniform();
    ASSERT_GE(u, 0);
    ASSERT_LT(u, 1);
    ++bins[static_cast<std::size_t>(u * 10)];
  }
  // A bin's count has the standard deviation sqrt(100000 0.1 0.9) = 95.
  for (const int count : bins) EXPECT_NEAR(count, 10000, 5 * 95);
}

TEST(Random, NormalNumbersHaveMomentsOfTheNormalDistribution) {
  Random random(2);
  constexpr int n = 200000;
  double m1 = 0, m2 = 0, m3 = 0, m4 = 0;
  for (int k = 0; k < n; ++k) {
    const double x = random.Normal();
    m1 += x / n;
    m2 += x * x / n;
    m3 += x * x * x / n;
    m4 += x * x * x * x / n;
  }
  // Standard deviations of the sample moments: 1, sqrt 2, sqrt 15, sqrt 96 over sqrt n.
  const double root = std::sqrt(static_cast<double>(n));
  EXPECT_NEAR(m1, 0, 5 / root);
  EXPECT_NEAR(m2, 1, 5 * std::sqrt(2.0) / root);
  EXPECT_NEAR(m3, 0, 5 * std::sqrt(15.0) / root);
  EXPECT_NEAR(m4, 3, 5 * std::sqrt(96.0) / root);
}

TEST(Random, WholeNumbersReachBothEnds) {
  Random random(3);
  std::array<int, 3> seen{};
  for (int k = 0; k < 3000; ++k) {
    const auto w = random.Whole(-1, 1);
    ASSERT_TRUE(w >= -1 && w <= 1);
    ++seen[static_cast<std::size_t>(w + 1)];
  }
  for (const int count : seen) EXPECT_NEAR(count, 1000, 5 * 26);
}
