#include "GNSS/GNSSpEph.h"

#include "GNSS/SolidTide.h"
#include "GNSS/antexNew.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/Near.h"
#include "support/StandingOrbits.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace {

const char* const kAntex = "antex/igs08_1648_subset.atx";

xyz Place(const xyzt& p) { return {p.GetX(), p.GetY(), p.GetZ()}; }

xyz SunAt(const mjd& t) {
  xyz unit;
  long double km = 0;
  SolidTide().SunPosition(t, unit, km);
  return unit * (1000 * km);
}

// Moved orbits of a recorded file beside the original ones.
class AntennaOffset : public testing::Test {
protected:
  void Load(const char* sp3) {
    before.SetFile(RealData(sp3).c_str());
    before.ReadFile();
    after = before;
    atx.SetFile(RealData(kAntex).c_str());
    atx.ReadFile();
  }
  // Offset [m] of a record; false without one.
  bool OffsetOf(long record, neu& offset) {
    const Captured err(std::cerr);
    const short satellite = before.GetSat(record);
    atx.SetSatellite(satellite, before.GetMJD(record / before.GetNSat()));
    atx.GetAntennaOffset(offset, satellite < 100 ? 0 : 2);
    return atx.GetAtxIndex() != -1;
  }
  // The offset's length, its x and y parts times the sine of the angle between Earth and Sun.
  void ExpectMoved(long record, const neu& offset) {
    const xyz pos = Place(before.GetSatPos(record)), moved = Place(after.GetSatPos(record));
    const xyz toEarth = (-1 * pos).GetUnitVector(1);
    const xyz toSun = (SunAt(before.GetMJD(record / before.GetNSat())) - pos).GetUnitVector(1);
    const xyz shift = moved - pos;
    const long double across = std::hypot(offset.GetN(), offset.GetE());
    const long double sine = CrossP(toEarth, toSun).GetLength();
    EXPECT_TRUE(Near(shift.GetLength(), std::hypot(offset.GetU(), across * sine), 1e-9L));
    EXPECT_TRUE(Near(shift * toEarth, offset.GetU(), 1e-9L));
    // x points to the Sun's side, y at right angles to the Sun.
    const long double cosine = toEarth * toSun;
    EXPECT_TRUE(Near(shift * toSun, offset.GetU() * cosine + offset.GetN() * sine * sine, 1e-9L));
  }
  GNSSpEph before;
  GNSSpEph after;
  antex atx;
};

TEST_F(AntennaOffset, GPSOrbitsMoveByTheOffset) {
  SKIP_WITHOUT("2011-283-cagz/igs16571.sp3");
  SKIP_WITHOUT(kAntex);
  Load("2011-283-cagz/igs16571.sp3");
  const Captured out(std::cout);
  after.ApplyAntennaOffset(atx, false);
  EXPECT_EQ(out.Text(), "");
  int withX = 0, alongZ = 0;
  for (long r = 0; r < before.sat.NRow(); ++r) {
    neu offset;
    ASSERT_TRUE(OffsetOf(r, offset));
    ExpectMoved(r, offset);
    EXPECT_EQ(after.GetSatPos(r).GetT(), before.GetSatPos(r).GetT());
    const bool along = std::fabs(offset.GetN()) + std::fabs(offset.GetE()) < 0.001L;
    ++(along ? alongZ : withX);
    if (!along) continue;
    const xyz shift = Place(after.GetSatPos(r)) - Place(before.GetSatPos(r));
    EXPECT_TRUE(Near(shift.GetLength(), offset.GetLength(), 1e-9L));
  }
  EXPECT_EQ(withX + alongZ, before.GetNSat() * before.GetNEpoch());
  EXPECT_GT(withX, 0);
  EXPECT_GT(alongZ, 0);
}

TEST_F(AntennaOffset, GLONASSOrbitsMoveByTheOffsetOfTheirFirstFrequency) {
  SKIP_WITHOUT("2011-283-cagz/cod16571.eph");
  SKIP_WITHOUT(kAntex);
  Load("2011-283-cagz/cod16571.eph");
  std::string warnings;
  {
    const Captured err(std::cerr);
    after.ApplyAntennaOffset(atx, false);
    warnings = err.Text();
  }
  int glonass = 0, without = 0;
  for (long r = 0; r < before.sat.NRow(); ++r) {
    neu offset;
    if (!OffsetOf(r, offset)) {
      EXPECT_TRUE(Place(after.GetSatPos(r)) == Place(before.GetSatPos(r)));
      ++without;
      continue;
    }
    ExpectMoved(r, offset);
    if (before.GetSat(r) > 100) ++glonass;
  }
  EXPECT_GT(glonass, 2000);
  EXPECT_EQ(without > 0, !warnings.empty());
}

TEST_F(AntennaOffset, SatelliteWithoutOffsetIsWarnedOfAndStays) {
  SKIP_WITHOUT("2011-283-cagz/igs16571.sp3");
  SKIP_WITHOUT(kAntex);
  Load("2011-283-cagz/igs16571.sp3");
  after.sat(0) = 77;  // none of this number
  after.sat(1) = 211; // another system
  after.sPos(2) = xyzt(0, 0, 0, 999999);
  std::string warnings;
  {
    const Captured err(std::cerr);
    after.ApplyAntennaOffset(atx, false);
    warnings = err.Text();
  }
  EXPECT_NE(warnings.find("SATELLITE PHASE CENTER OFFSET NOT FOUND IN ANTEX FILE: PRN:  77 ####"),
            std::string::npos);
  EXPECT_EQ(warnings.find("211"), std::string::npos);
  EXPECT_TRUE(after.GetSatPos(0) == before.GetSatPos(0));
  EXPECT_TRUE(after.GetSatPos(1) == before.GetSatPos(1));
  EXPECT_TRUE(after.GetSatPos(2) == xyzt(0, 0, 0, 999999));
  EXPECT_FALSE(after.GetSatPos(3) == before.GetSatPos(3));
}

TEST_F(AntennaOffset, VerboseRunPrintsEachEpoch) {
  SKIP_WITHOUT("2011-283-cagz/igs16571.sp3");
  SKIP_WITHOUT(kAntex);
  Load("2011-283-cagz/igs16571.sp3");
  std::string text;
  {
    const Captured out(std::cout);
    after.ApplyAntennaOffset(atx, true);
    text = out.Text();
  }
  EXPECT_EQ(text.substr(0, 51), "   0.  55844     0.0\n   1.  55844   900.0\n   2.  55");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 96);
}

// ---- Satellites that stand still, and offsets written by hand

std::string AntexLine(const std::string& text, const std::string& label) {
  return text + std::string(60 - text.size(), ' ') + label + "\n";
}

/// An offset [mm] in the order of the file: x, y, z.
std::string AntexFrequency(const std::string& name, double x, double y, double z) {
  char offset[61];
  std::snprintf(offset, sizeof offset, "%10.2f%10.2f%10.2f", x, y, z);
  return AntexLine("   " + name, "START OF FREQUENCY") + AntexLine(offset, "NORTH / EAST / UP") +
         "   NOAZI    0.00    0.00\n" + AntexLine("   " + name, "END OF FREQUENCY");
}

std::string AntexSatellite(const std::string& type, const std::string& frequencies) {
  return AntexLine("", "START OF ANTENNA") + AntexLine(type, "TYPE / SERIAL NO") +
         AntexLine("     0.0", "DAZI") + AntexLine("     0.0   1.0   1.0", "ZEN1 / ZEN2 / DZEN") +
         AntexLine("     2", "# OF FREQUENCIES") + frequencies + AntexLine("", "END OF ANTENNA");
}

/// Unit vector to the Sun from the Astronomical Almanac's formulae of low precision (0.01 deg), in
/// the Earth-fixed frame; GPS time is 15 s ahead of UTC in October 2011.
xyz AlmanacSun(const mjd& t) {
  constexpr long double degree = 3.14159265358979323846L / 180;
  const long double n = t.GetMJDay() - 51544.5L + (t.GetSecond() - 15) / 86400; // days from J2000
  const long double L = 280.460L + 0.9856474L * n;
  const long double g = (357.528L + 0.9856003L * n) * degree;
  const long double lambda = (L + 1.915L * std::sin(g) + 0.020L * std::sin(2 * g)) * degree;
  const long double epsilon = 23.439L * degree;
  const long double declination = std::asin(std::sin(epsilon) * std::sin(lambda));
  const long double ascension = std::atan2(std::cos(epsilon) * std::sin(lambda), std::cos(lambda));
  const long double longitude = ascension - (280.46062L + 360.98564737L * n) * degree;
  return {std::cos(declination) * std::cos(longitude), std::cos(declination) * std::sin(longitude),
          std::sin(declination)};
}

/// The shift [m] of a satellite by its offset. The Sun is so far away that the satellite sees it
/// where the Earth does, within 2e-4 rad.
xyz Shift(const xyz& pos, const xyz& sun, long double x, long double y, long double z) {
  const long double r = std::sqrt(pos * pos);
  const xyz down(-pos.GetX() / r, -pos.GetY() / r, -pos.GetZ() / r);
  // down x sun, and its product with down: the part of sun at right angles to down
  const xyz side(down.GetY() * sun.GetZ() - down.GetZ() * sun.GetY(),
                 down.GetZ() * sun.GetX() - down.GetX() * sun.GetZ(),
                 down.GetX() * sun.GetY() - down.GetY() * sun.GetX());
  const xyz sunward = sun - (down * sun) * down;
  return x * sunward + y * side + z * down;
}

class StandingAntennas : public testing::Test {
protected:
  StandingAntennas() {
    const ScratchFolder folder;
    atx.SetFile(
        folder
            .Write("hand.atx", AntexLine("     1.4            M", "ANTEX VERSION / SYST") +
                                   AntexLine("A", "PCV TYPE / REFANT") +
                                   AntexLine("", "END OF HEADER") +
                                   AntexSatellite("BLOCK IIA           G05",
                                                  AntexFrequency("G01", 1000, 2000, 3000) +
                                                      AntexFrequency("G02", 7000, 8000, 9000)) +
                                   AntexSatellite("GLONASS-M           R05",
                                                  AntexFrequency("R01", -3000, 1000, 2000) +
                                                      AntexFrequency("R02", 7000, 8000, 9000)) +
                                   AntexSatellite("BLOCK IIF           G07",
                                                  AntexFrequency("G01", 0.4, -0.5, 3000) +
                                                      AntexFrequency("G02", 7000, 8000, 9000)) +
                                   AntexSatellite("BLOCK IIF           G08",
                                                  AntexFrequency("G01", 0.5, -0.6, 3000) +
                                                      AntexFrequency("G02", 7000, 8000, 9000)))
            .c_str());
    atx.ReadFile();
  }
  /// Moves \p satellites. \returns the warnings.
  std::string Move(const std::vector<Standing>& satellites) {
    orbits = StandingOrbits(satellites);
    const Captured err(std::cerr);
    orbits.ApplyAntennaOffset(atx, false);
    return err.Text();
  }
  antex atx;
  GNSSpEph orbits;
  const xyz place{15000000, -12000000, 18000000};
};

TEST_F(StandingAntennas, OffsetTurnsWithTheSun) {
  const xyz other(-9000000, 20000000, 13000000);
  EXPECT_EQ(Move({{"G05", place}, {"R05", other}}), "");
  for (long k = 0; k < orbits.GetNEpoch(); ++k) {
    const xyz sun = AlmanacSun(orbits.GetMJD(k));
    const xyz gps = Place(orbits.GetSatPos(2 * k)) - place;
    const xyz glonass = Place(orbits.GetSatPos(2 * k + 1)) - other;
    EXPECT_TRUE(Near((gps - Shift(place, sun, 1, 2, 3)).GetLength(), 0, 2e-3L)) << k;
    EXPECT_TRUE(Near((glonass - Shift(other, sun, -3, 1, 2)).GetLength(), 0, 2e-3L)) << k;
  }
}

TEST_F(StandingAntennas, LessThanAMillimetreAcrossLeavesTheSunOut) {
  EXPECT_EQ(Move({{"G07", place}, {"G08", place}}), "");
  const xyz along = Shift(place, xyz(), 0, 0, 3);
  for (long k = 0; k < orbits.GetNEpoch(); ++k) {
    const xyz sun = AlmanacSun(orbits.GetMJD(k));
    const xyz near = Place(orbits.GetSatPos(2 * k)) - place;
    const xyz across = Place(orbits.GetSatPos(2 * k + 1)) - place;
    EXPECT_TRUE(Near((near - along).GetLength(), 0, 1e-9L)) << k;
    EXPECT_TRUE(Near((across - Shift(place, sun, 0.0005L, -0.0006L, 3)).GetLength(), 0, 1e-6L));
    EXPECT_GT((across - along).GetLength(), 1e-5L) << k;
  }
}

TEST_F(StandingAntennas, MissingPositionHidesNoMissingOffset) {
  EXPECT_EQ(Move({{"G05", xyz()}}), "");
  EXPECT_TRUE(orbits.GetSatPos(0) == xyzt(0, 0, 0, 0));
  const std::string warnings = Move({{"G09", xyz()}});
  EXPECT_NE(warnings.find("SATELLITE PHASE CENTER OFFSET NOT FOUND IN ANTEX FILE: PRN:   9 ####"),
            std::string::npos);
  EXPECT_TRUE(orbits.GetSatPos(0) == xyzt(0, 0, 0, 0));
  EXPECT_EQ(Move({{"E09", xyz()}}), "");
}

TEST(AntennaOffsetWithoutOrbits, NothingIsDone) {
  GNSSpEph none;
  antex atx;
  const Captured out(std::cout);
  none.ApplyAntennaOffset(atx, true);
  EXPECT_EQ(out.Text(), "");
}

} // namespace
