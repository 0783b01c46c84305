#include "Constellation.h"
#include "GNSS/GLNbEph.h"
#include "GNSS/GPSbEph.h"
#include "GNSS/TimeConverse.h"
#include "NavFiles.h"
#include "support/Files.h"
#include "support/Near.h"
#include <gtest/gtest.h>

using namespace sim;

static const mjd kNoon(55844, 43200);

static mjd Later(mjd t, long double seconds) {
  t += seconds;
  return t;
}

/// Navigation files of a day, read by the program's classes.
class NavigationFiles : public testing::Test {
protected:
  NavigationFiles() {
    const mjd first(55844, 0), last(55845, 0);
    std::array<double, kGpsSatellites> delays{};
    delays[4] = -7.25e-9;
    gpsRecords = GpsRecords(first, last, delays);
    glonassRecords = GlonassRecords(first, last);
    gps.SetFile(folder.Write("n", GpsNavigationText(gpsRecords, 15)).c_str());
    gps.ReadFile();
    glonass.SetFile(folder.Write("g", GlonassNavigationText(glonassRecords, 15)).c_str());
    glonass.ReadFile();
  }
  ScratchFolder folder;
  std::vector<GpsRecord> gpsRecords;
  std::vector<GlonassRecord> glonassRecords;
  GPSbEph gps;
  GLNbEph glonass;
};

TEST_F(NavigationFiles, GpsRecordsAreReadBackToTheirLastDigit) {
  ASSERT_EQ(gps.GetNSat(), 32u * 13u);
  for (std::size_t k = 0; k < gpsRecords.size(); ++k) {
    const long row = static_cast<long>(k);
    EXPECT_EQ(gps.gdata.sat(row), gpsRecords[k].number);
    EXPECT_TRUE(gps.GetMJD(row) == gpsRecords[k].epoch);
    for (long c = 0; c < GPSbEphData::NValues; ++c) {
      const double value = gpsRecords[k].values[static_cast<std::size_t>(c)];
      EXPECT_TRUE(Near(gps.gdata.data(row, c), value, 1e-12L * std::abs(value))) << k << " " << c;
    }
  }
}

TEST_F(NavigationFiles, GlonassRecordsAreReadBackInGpsTime) {
  ASSERT_EQ(static_cast<std::size_t>(glonass.GetNSat()), glonassRecords.size());
  for (std::size_t k = 0; k < glonassRecords.size(); ++k) {
    const long row = static_cast<long>(k);
    EXPECT_EQ(glonass.rdata.sat(row), glonassRecords[k].number);
    EXPECT_TRUE(Near(glonass.GetMJD(row) - glonassRecords[k].epoch, 15, 1e-9L)); // leap seconds
    for (long c = 0; c < GLNbEphData::NValues; ++c) {
      const double value = glonassRecords[k].values[static_cast<std::size_t>(c)];
      EXPECT_TRUE(Near(glonass.rdata.data(row, c), value, 1e-12L * std::abs(value)))
          << k << " " << c;
    }
  }
}

TEST_F(NavigationFiles, GroupDelaysStandInTheirSatellitesRecords) {
  for (long k = 0; k < static_cast<long>(gps.GetNSat()); ++k)
    EXPECT_TRUE(Near(gps.gdata.data(k, 25), gps.gdata.sat(k) == 5 ? -7.25e-9L : 0, 1e-20L));
}

TEST_F(NavigationFiles, NeighbouringGpsRecordsDescribeOneOrbit) {
  // The record is chosen by the second epoch: the later of the two around it.
  for (unsigned short prn = 1; prn <= 32; ++prn) {
    xyzt before, after;
    long double tgd = 0;
    gps.CalcSatPosition(prn, Later(kNoon, 3600), Later(kNoon, -60), before, &tgd, 0, 0);
    gps.CalcSatPosition(prn, Later(kNoon, 3600), Later(kNoon, 60), after, &tgd, 0, 0);
    EXPECT_LT((before - after).GetLength(), 1e-3L) << prn;
    EXPECT_TRUE(Near(before.GetT(), after.GetT(), 1e-14L)) << prn;
  }
}

TEST_F(NavigationFiles, NeighbouringGlonassRecordsMeetHalfWay) {
  // Records at 11:45 and 12:15 UTC meet at 12:00 UTC, 15 s later in GPS time.
  const mjd middle = Later(kNoon, 15);
  for (short slot = 1; slot <= 24; ++slot) {
    xyzt before, after, velocity;
    glonass.CalcSatPosition(slot, middle, Later(middle, -60), before, velocity, 0);
    glonass.CalcSatPosition(slot, middle, Later(middle, 60), after, velocity, 0);
    EXPECT_LT((before - after).GetLength(), 0.01L) << slot;
  }
}

TEST_F(NavigationFiles, OrbitsHaveTheSizeAndSpeedOfTheirSystems) {
  for (unsigned short prn = 1; prn <= 32; ++prn) {
    xyzt a;
    long double tgd = 0;
    gps.CalcSatPosition(prn, kNoon, kNoon, a, &tgd, 0, 0);
    EXPECT_TRUE(Near(a.GetLength(), 26560e3L, 500e3L)) << prn;
  }
  for (short slot = 1; slot <= 24; ++slot) {
    xyzt a, velocity;
    glonass.CalcSatPosition(slot, kNoon, kNoon, a, velocity, 0);
    EXPECT_TRUE(Near(a.GetLength(), 25508e3L, 50e3L)) << slot;
    // 3.95 km/s in space; the turning frame takes off 0.8 to 1.9 km/s along the orbit's east part.
    EXPECT_GT(velocity.GetLength(), 3000) << slot;
    EXPECT_LT(velocity.GetLength(), 4000) << slot;
  }
}

TEST(Constellation, ChannelsAreSharedByAntipodalSlots) {
  for (short slot = 1; slot <= 20; slot = static_cast<short>(slot % 4 == 0 ? slot + 5 : slot + 1))
    EXPECT_EQ(GlonassChannel(slot), GlonassChannel(static_cast<short>(slot + 4)));
}
