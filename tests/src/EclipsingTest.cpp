#include "Eclipsing.h"

#include "support/Near.h"

#include <cmath>

namespace {

constexpr long double kPi = 3.14159265358979323846L;
constexpr long double kOrbit = 26560e3L;
constexpr long double kAU = 149597870e3L;

xyz Direction(long double angle, long double length) {
  return {length * std::cos(angle), length * std::sin(angle), 0};
}
long double Radians(long double degrees) { return degrees * kPi / 180; }

TEST(sign, TellsTheSign) {
  EXPECT_EQ(sign(2.5L), 1);
  EXPECT_EQ(sign(-1e-30L), -1);
  EXPECT_EQ(sign(0.0L), 0);
}

TEST(SunEarthAngle, AlignmentOnEitherSideCounts) {
  const xyz satellite(kOrbit, 0, 0);
  // the Sun stands at the stated angle from the direction to the Earth, seen from the satellite
  const auto sunAt = [&](long double degrees) {
    return satellite + Direction(kPi - Radians(degrees), kAU);
  };
  EXPECT_TRUE(Near(SunEarthAngle(satellite, sunAt(10)), Radians(10), 1e-12L));
  EXPECT_TRUE(Near(SunEarthAngle(satellite, sunAt(170)), Radians(10), 1e-12L));
  EXPECT_TRUE(Near(SunEarthAngle(satellite, sunAt(15)), Radians(15), 1e-12L));
}

TEST(SunEarthAngle, ExactAlignmentIsZero) {
  EXPECT_TRUE(Near(SunEarthAngle(xyz(kOrbit, 0, 0), xyz(-kAU, 0, 0)), 0, 1e-9L));
}

TEST(ContinuousCycles, SeriesStaysWithinHalfACycleOfTheLastValue) {
  EXPECT_TRUE(Near(ContinuousCycles(-0.45L, 0.45L), 0.55L, 1e-18L));
  EXPECT_TRUE(Near(ContinuousCycles(0.45L, -0.45L), -0.55L, 1e-18L));
  EXPECT_TRUE(Near(ContinuousCycles(0.1L, 2.9L), 3.1L, 1e-18L));
  EXPECT_EQ(ContinuousCycles(0.25L, 0.125L), 0.25L);
}

TEST(ContinuousCycles, HalvesGoAwayFromZero) {
  EXPECT_EQ(ContinuousCycles(0.5L, 0), -0.5L);
  EXPECT_EQ(ContinuousCycles(-0.5L, 0), 0.5L);
}

// Receiver on the x axis: up is x, north z, west -y. A satellite above it, off the zenith by
// `off` rad in the x-y plane, sees the Sun far away in the direction (0, sin b, cos b).
struct Overhead {
  xyz receiver{6371e3L, 0, 0};
  xyz north{0, 0, 1};
  xyz west{0, -1, 0};
  xyz satellite;
  xyz sun;
  Overhead(long double off, long double degrees)
      : satellite(Direction(off, kOrbit)),
        sun(0, kAU * std::sin(Radians(degrees)), kAU * std::cos(Radians(degrees))) {}
  long double Cycles() const { return WindUp(satellite, sun, receiver, north, west); }
};

TEST(WindUp, SatelliteOverheadTurnsTheSignalByMinusItsYaw) {
  // At the zenith, with k from the satellite down to the receiver (Wu et al.): y_s = -x x e_s =
  // (0, cos b, -sin b), x_s = (0, sin b, cos b), D_s = 2 x_s, D_r = 2 (0, 0, 1); the angle
  // between them is b, and k (D_s x D_r) = -4 sin b: the signal turns by -b.
  for (const long double b : {-120.0L, -30.0L, 15.0L, 60.0L, 170.0L})
    EXPECT_TRUE(Near(Overhead(1e-5L, b).Cycles(), -b / 360, 1e-4L)) << b;
}

TEST(WindUp, EqualsTheTextbookFormOfTheDipoles) {
  // The same with k pointing down, as Wu et al. write it. Seen from the other side both dipoles
  // are mirrored at the plane of receiver, satellite and Earth's centre, and so is the angle.
  for (const long double b : {-75.0L, 10.0L, 140.0L}) {
    const Overhead o(0.15L, b);
    const xyz k = (o.receiver - o.satellite).GetUnitVector(1);
    const xyz z = o.satellite.GetUnitVector(-1);
    const xyz e = (o.sun - o.satellite).GetUnitVector(1);
    const xyz y = CrossP(z, e);
    const xyz x = CrossP(y, z);
    const xyz ds = x - k * (k * x) - CrossP(k, y);
    const xyz dr = o.north - k * (k * o.north) + CrossP(k, o.west);
    const long double angle = std::acos(ds * dr / (ds.GetLength() * dr.GetLength()));
    EXPECT_TRUE(Near(o.Cycles(), sign(k * CrossP(ds, dr)) * angle / (2 * kPi), 1e-12L)) << b;
  }
}

TEST(WindUp, StraightOverheadTheDipolesVanishAndTheWindUpIsZero) {
  EXPECT_EQ(Overhead(0, 40).Cycles(), 0);
}

} // namespace
