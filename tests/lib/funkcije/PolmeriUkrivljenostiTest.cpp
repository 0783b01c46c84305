#include "funkcije/PolmeriUkrivljenosti.h"

#include "support/Near.h"

namespace {

constexpr long double kA = 6378137;
constexpr long double kE = 0.0818191910428L; // GRS80, Moritz 1980

TEST(PolmerN, SemiMajorAxisAtTheEquatorAndPolarRadiusAtThePole) {
  EXPECT_EQ(PolmerN(0, kA, kE), kA);
  // Moritz 1980: polar radius of curvature 6399593.6259 m.
  EXPECT_TRUE(Near(PolmerN(3.14159265358979323846L / 2, kA, kE), 6399593.6259L, 2e-3L));
}

TEST(PolmerN, ClosedFormAtFortyFiveDegrees) {
  // sin2 = 1/2
  EXPECT_TRUE(
      Near(PolmerN(3.14159265358979323846L / 4, kA, kE), kA / std::sqrt(1 - kE * kE / 2), 1e-11L));
}

TEST(PolmerN, SphereHasOneRadius) { EXPECT_EQ(PolmerN(0.7L, 6371000, 0), 6371000); }

} // namespace
