#include "GNSS/Azimut.h"

#include "support/Near.h"

#include <limits>

namespace {

constexpr long double kPi = 3.141592653589793; // the double value

TEST(Azimuth, AxesFromNorthOverEast) {
  EXPECT_EQ(Azimuth(0, 0, 0, 1), 0);
  EXPECT_EQ(Azimuth(0, 0, 1, 0), kPi / 2);
  EXPECT_EQ(Azimuth(0, 0, 0, -1), kPi);
  EXPECT_EQ(Azimuth(0, 0, -1, 0), 3 * kPi / 2);
}

TEST(Azimuth, EqualPointsGiveZero) {
  EXPECT_EQ(Azimuth(0, 0, 0, 0), 0);
  EXPECT_EQ(Azimuth(5, 6, 5, 6), 0);
}

TEST(Azimuth, OneDirectionPerQuadrant) {
  EXPECT_TRUE(Near(Azimuth(0, 0, 1, 1), kPi / 4, 1e-15L));
  EXPECT_TRUE(Near(Azimuth(0, 0, 1, -1), 3 * kPi / 4, 1e-15L));
  EXPECT_TRUE(Near(Azimuth(0, 0, -1, -1), 5 * kPi / 4, 1e-15L));
  EXPECT_TRUE(Near(Azimuth(0, 0, -1, 1), 7 * kPi / 4, 1e-15L));
}

TEST(Azimuth, AgreesWithTheDirectionAllRound) {
  for (int degree = 0; degree < 360; ++degree) {
    const long double a = degree * kPi / 180;
    EXPECT_TRUE(Near(Azimuth(3, -4, 3 + 7 * std::sin(a), -4 + 7 * std::cos(a)), a, 1e-15L));
  }
}

TEST(Azimuth, DifferencesBelowTenToTheMinusFourteenCountAsZero) {
  EXPECT_EQ(Azimuth(0, 0, 9e-15L, 9e-15L), 0);
  EXPECT_EQ(Azimuth(0, 0, -9e-15L, 1), 0);
  EXPECT_EQ(Azimuth(0, 0, 1, -9e-15L), kPi / 2);
  EXPECT_EQ(Azimuth(0, 0, -9e-15L, -1), kPi);
  EXPECT_GT(Azimuth(0, 0, -2e-14L, 1), 6);
  EXPECT_TRUE(Near(Azimuth(0, 0, 2e-14L, 2e-14L), kPi / 4, 1e-15L));
}

TEST(Azimuth, NotANumberGivesNotANumber) {
  const long double nan = std::numeric_limits<long double>::quiet_NaN();
  EXPECT_TRUE(std::isnan(Azimuth(0, 0, nan, 1)));
  EXPECT_TRUE(std::isnan(Azimuth(0, 0, nan, 0)));
  EXPECT_TRUE(std::isnan(Azimuth(0, 0, 0, nan)));
}

} // namespace
