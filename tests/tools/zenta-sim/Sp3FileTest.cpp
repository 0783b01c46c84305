#include "Sp3File.h"
#include "GNSS/GNSSpEph.h"
#include "support/Files.h"
#include "support/Near.h"
#include <gtest/gtest.h>

using namespace sim;

/// A circle of 26000 km in the equator, turned by a quarter from satellite to satellite.
static OrbitPoint Circle(short sat, const mjd& t) {
  const double angle = SecondsSince(55844, t) * 1e-4 + sat * kPi / 2;
  return {{26e6 * std::cos(angle), 26e6 * std::sin(angle), 1e6}, 1e-5 * sat};
}

static const EpochGrid kGrid = {mjd(55843, 75600), 900, 113};

class Sp3Orbits : public testing::Test {
protected:
  GNSSpEph Read(const std::vector<short>& satellites, const Sp3Faults& faults) {
    GNSSpEph orbits;
    orbits.SetFile(folder.Write("o.sp3", Sp3Text(kGrid, satellites, Circle, faults)).c_str());
    orbits.ReadFile();
    return orbits;
  }
  ScratchFolder folder;
};

TEST_F(Sp3Orbits, PositionsAndClocksAreReadBack) {
  GNSSpEph orbits = Read({1, 2, 101}, {{}, {}, 55844});
  EXPECT_EQ(orbits.GetNEpoch(), 113);
  ASSERT_EQ(orbits.GetNSat(), 3);
  EXPECT_EQ(orbits.GetSatList(2), 101);
  EXPECT_TRUE(Near(orbits.GetMJD(0) - kGrid.first, 0, 1e-8L));
  for (long k = 0; k < 3 * 113; ++k) {
    const OrbitPoint truth = Circle(orbits.GetSat(k), orbits.GetMJD(k / 3));
    EXPECT_TRUE(Near(orbits.GetSatPos(k).GetX(), truth.position.x, 0.00051L)); // half a mm
    EXPECT_TRUE(Near(orbits.GetSatPos(k).GetY(), truth.position.y, 0.00051L));
    EXPECT_TRUE(Near(orbits.GetSatPos(k).GetZ(), truth.position.z, 0.00051L));
    EXPECT_TRUE(Near(orbits.GetSatPos(k).GetT(), truth.clock, 0.51e-12L));
  }
}

TEST_F(Sp3Orbits, MissingPositionsHaveNoOrbitAroundThem) {
  GNSSpEph orbits = Read({1, 2}, {{{2, {36000, 37000}}}, {}, 55844});
  xyzt position, velocity;
  orbits.CalcSatPosition(2, mjd(55844, 36500), position, velocity);
  EXPECT_FALSE(orbits.PSisOK);
  orbits.CalcSatPosition(1, mjd(55844, 36500), position, velocity);
  EXPECT_TRUE(orbits.PSisOK);
  orbits.CalcSatPosition(2, mjd(55844, 60000), position, velocity);
  EXPECT_TRUE(orbits.PSisOK);
}

TEST_F(Sp3Orbits, BadClocksSpoilTheClockAlone) {
  GNSSpEph orbits = Read({1, 2}, {{}, {{1, {36000, 37000}}}, 55844});
  xyzt position, velocity;
  orbits.CalcSatPosition(1, mjd(55844, 36500), position, velocity);
  EXPECT_TRUE(orbits.PSisOK);
  EXPECT_FALSE(orbits.DTisOK);
}
