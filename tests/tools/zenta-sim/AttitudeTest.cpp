#include "Attitude.h"
#include "GNSS/SolidTide.h"
#include "Sun.h"
#include "support/Near.h"
#include <gtest/gtest.h>

using namespace sim;

TEST(SunOfTheSimulation, IsThatOfTheProgram) {
  SolidTide tide;
  for (const unsigned int day : {51544u, 55844u, 56389u}) {
    const mjd t(day, 45000);
    xyz unit;
    long double kilometres = 0;
    tide.SunPosition(t, unit, kilometres);
    const Vec3 sun = SunPosition(t);
    EXPECT_TRUE(Near(sun.x / Length(sun), unit.GetX(), 1e-8L));
    EXPECT_TRUE(Near(sun.y / Length(sun), unit.GetY(), 1e-8L));
    EXPECT_TRUE(Near(sun.z / Length(sun), unit.GetZ(), 1e-8L));
    EXPECT_TRUE(Near(Length(sun), kilometres * 1000, 10e3L));
  }
}

TEST(IsAligned, CountsBothSidesOfTheEarthAndNothingFrom14DegreesOn) {
  const Vec3 satellite = {26e6, 0, 0};
  const auto sunAt = [](double degrees) {
    // The direction from the satellite counts; at this distance it is that from the Earth.
    return Vec3{1.5e15 * std::cos(degrees * kDegree), 1.5e15 * std::sin(degrees * kDegree), 0};
  };
  EXPECT_TRUE(IsAligned(satellite, sunAt(10)));
  EXPECT_TRUE(IsAligned(satellite, sunAt(170)));
  EXPECT_TRUE(IsAligned(satellite, sunAt(13.9)));
  EXPECT_FALSE(IsAligned(satellite, sunAt(14.1)));
  EXPECT_FALSE(IsAligned(satellite, sunAt(90)));
}

TEST(WindUp, OfASatelliteOverheadIsTheTurnOfItsPanels) {
  // At latitude and longitude 0 the satellite is on the x axis. Its antenna looks down, its
  // panels' axis is square to the Sun: the Sun's way around the x axis is that of the dipoles.
  const Observer observer(xyz(6378137, 0, 0));
  const Vec3 satellite = {26e6, 0, 0};
  double previous = 0, total = 0;
  for (int degrees = 0; degrees <= 360; degrees += 5) {
    const double a = degrees * kDegree;
    const Vec3 sun = {0, 1.5e11 * std::sin(a), 1.5e11 * std::cos(a)};
    const double cycles = WindUpCycles(observer, satellite, sun, RaySense::kToReceiver);
    if (degrees == 0) previous = cycles;
    const double here = Unwrapped(cycles, previous);
    total += here - previous;
    EXPECT_NEAR(std::abs(here - previous), degrees == 0 ? 0 : 5.0 / 360, 1e-4) << degrees;
    previous = here;
  }
  EXPECT_NEAR(std::abs(total), 1, 1e-9);
}

TEST(WindUp, IsTheSameForBothSensesOfTheRayWhereTheVerticalPointsFromTheEarthsCentre) {
  // On the equator the normal of the ellipsoid does.
  const Observer observer(xyz(6378137, 0, 0));
  const Vec3 sun = {0.5e11, -0.9e11, 1.0e11};
  for (const Vec3& satellite :
       {Vec3{20e6, 15e6, 5e6}, Vec3{22e6, -3e6, -13e6}, Vec3{15e6, 2e6, 21e6}}) {
    const double along = WindUpCycles(observer, satellite, sun, RaySense::kToReceiver);
    const double against = WindUpCycles(observer, satellite, sun, RaySense::kToSatellite);
    EXPECT_NEAR(Unwrapped(against, along), along, 1e-9);
  }
}

TEST(WindUp, IsContinuedOverHalfACycle) {
  EXPECT_NEAR(Unwrapped(-0.45, 0.45), 0.55, 1e-15);
  EXPECT_NEAR(Unwrapped(0.2, 5.1), 5.2, 1e-15);
}
