#include "GNSS/SatAzimuthZenit.h"

#include "GNSS/g_lg.h"
#include "GNSS/xyz_flh.h"
#include "support/Near.h"

namespace {

constexpr long double kPi = 3.141592653589793; // the double value
constexpr long double kDeg = kPi / 180;

elipsoid Grs80() {
  elipsoid ell;
  ell.Set(0);
  return ell;
}

const elipsoid kGrs80 = Grs80();
const flh kPlace(46 * kDeg, 14.5L * kDeg, 300);
const xyz kReceiver = flh2xyz(kPlace, kGrs80);

// A satellite 22000 km away in the direction.
xyzt Satellite(long double elevation, long double azimuth) {
  const long double d = 22000e3L;
  const neu v(d * std::cos(elevation) * std::cos(azimuth),
              d * std::cos(elevation) * std::sin(azimuth), d * std::sin(elevation));
  const xyz at = kReceiver + lg2g(v, kPlace);
  return {at.GetX(), at.GetY(), at.GetZ(), 1e9L};
}

TEST(SatelliteAzimuthElevation, ElevationIsTheFirstOutput) {
  for (int elevation = -80; elevation < 90; elevation += 10)
    for (int azimuth = 0; azimuth < 360; azimuth += 15) {
      long double first = 0, second = 0;
      const xyzt sat = Satellite(elevation * kDeg, azimuth * kDeg);
      SatelliteAzimuthElevation(kReceiver, sat, kGrs80, &first, &second);
      EXPECT_TRUE(Near(first, elevation * kDeg, 1e-13L)) << elevation << ' ' << azimuth;
      // Due north may come out a rounding error short of a full turn.
      const long double off = std::remainder(second - azimuth * kDeg, 2 * kPi);
      EXPECT_TRUE(Near(off, 0, 1e-12L)) << elevation << ' ' << azimuth;
      SatelliteAzimuthZenith(kReceiver, sat, kGrs80, &first, &second);
      EXPECT_TRUE(Near(first, kPi / 2 - elevation * kDeg, 1e-13L)) << elevation << ' ' << azimuth;
      EXPECT_TRUE(Near(std::remainder(second - azimuth * kDeg, 2 * kPi), 0, 1e-12L));
    }
}

TEST(SatelliteAzimuthElevation, StraightOverhead) {
  // On the equator the vertical is the x axis to the bit.
  const xyz receiver(6378137, 0, 0);
  const xyzt sat(26000e3L, 0, 0, 0);
  long double elevation = 0, zenith = 1, azimuth = 1;
  SatelliteAzimuthElevation(receiver, sat, kGrs80, &elevation, &azimuth);
  EXPECT_TRUE(Near(elevation, kPi / 2, 1e-15L));
  EXPECT_EQ(azimuth, 0);
  SatelliteAzimuthZenith(receiver, sat, kGrs80, &zenith, &azimuth);
  EXPECT_TRUE(Near(zenith, 0, 1e-15L));
  EXPECT_EQ(azimuth, 0);
}

TEST(SatelliteAzimuthElevation, OverheadAnywhereIsNeverNotANumber) {
  for (int f = -89; f < 90; f += 7)
    for (int l = -175; l < 180; l += 25) {
      const flh below(f * kDeg, l * kDeg, 100), above(f * kDeg, l * kDeg, 20200e3L);
      const xyz sat = flh2xyz(above, kGrs80);
      long double elevation = 0, azimuth = 0;
      SatelliteAzimuthElevation(flh2xyz(below, kGrs80), xyzt(sat.GetX(), sat.GetY(), sat.GetZ(), 0),
                                kGrs80, &elevation, &azimuth);
      // The cosine of a small angle is flat: 1e-10 rad are 5e-21 below 1.
      EXPECT_TRUE(Near(elevation, kPi / 2, 1e-9L));
      EXPECT_TRUE(azimuth >= 0 && azimuth < 2 * kPi);
    }
}

TEST(SatelliteAzimuthElevation, ReceiverWithoutPositionHasNoDirection) {
  long double elevation = 0, azimuth = 0;
  SatelliteAzimuthElevation(xyz(), Satellite(1, 1), kGrs80, &elevation, &azimuth);
  EXPECT_TRUE(std::isnan(elevation));
  EXPECT_TRUE(std::isnan(azimuth));
}

} // namespace
