#include "GNSS/GNSSpEph.h"

#include "GNSS/SolidTide.h"
#include "GNSS/antexNew.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/Near.h"

#include <algorithm>
#include <cmath>

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

TEST(AntennaOffsetWithoutOrbits, NothingIsDone) {
  GNSSpEph none;
  antex atx;
  const Captured out(std::cout);
  none.ApplyAntennaOffset(atx, true);
  EXPECT_EQ(out.Text(), "");
}

} // namespace
