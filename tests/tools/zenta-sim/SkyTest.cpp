#include "Sky.h"
#include "Constellation.h"
#include "GNSS/SatAzimuthZenit.h"
#include "NavFiles.h"
#include "Scenario.h"
#include "support/Files.h"
#include "support/Near.h"
#include <gtest/gtest.h>

using namespace sim;

class SkyOverAStation : public testing::Test {
protected:
  SkyOverAStation() : observer(xyz(4297150.8972L, 1111318.7846L, 4565463.3427L)) {
    const mjd first(55843, 72000), last(55845, 7200);
    gpsName = folder.Write("n", GpsNavigationText(GpsRecords(first, last, {}), 15));
    glonassName = folder.Write("g", GlonassNavigationText(GlonassRecords(first, last), 15));
  }
  ScratchFolder folder;
  Observer observer;
  std::string gpsName, glonassName;
};

TEST_F(SkyOverAStation, InterpolatedSatellitesAreThoseOfTheBroadcastOrbit) {
  Sky sky(gpsName, glonassName, observer, 55844, 0, 86400);
  ASSERT_EQ(sky.Satellites().size(), 56u);
  GPSbEph gps;
  gps.SetFile(gpsName.c_str());
  gps.ReadFile();
  GLNbEph glonass;
  glonass.SetFile(glonassName.c_str());
  glonass.ReadFile();
  for (const double seconds : {0.0, 7.0, 901.5, 30000.0, 43207.25, 86399.0, 86400.0}) {
    sky.SetTime(seconds);
    mjd t(55844, 0);
    t += static_cast<long double>(seconds);
    for (const short sat : sky.Satellites()) {
      xyzt position, velocity;
      long double tgd = 0;
      const long double range =
          IsGlonass(sat) ? glonass.CalcSatPosition(static_cast<short>(sat - 100), t, t,
                                                   observer.Position(), position, velocity, 0)
                         : gps.CalcSatPosition(static_cast<unsigned short>(sat), t, t,
                                               observer.Position(), position, &tgd, 0, 0);
      const Sight sight = sky.Look(sat);
      // A centimetre of GLONASS: the pull of the Sun and the Moon changes from record to record.
      EXPECT_TRUE(Near(sight.position.x, position.GetX(), 0.02L)) << sat << " " << seconds;
      EXPECT_TRUE(Near(sight.position.y, position.GetY(), 0.02L)) << sat << " " << seconds;
      EXPECT_TRUE(Near(sight.position.z, position.GetZ(), 0.02L)) << sat << " " << seconds;
      EXPECT_TRUE(Near(sight.range, range, 0.02L)) << sat << " " << seconds;
      EXPECT_TRUE(Near(sight.clock, position.GetT(), 1e-12L)) << sat << " " << seconds;
    }
  }
}

TEST_F(SkyOverAStation, DirectionsAreThoseOfTheProgram) {
  Sky sky(gpsName, glonassName, observer, 55844, 0, 86400);
  elipsoid grs80;
  grs80.Set(0);
  sky.SetTime(5000);
  for (const short sat : sky.Satellites()) {
    const Sight sight = sky.Look(sat);
    double elevation = 0, azimuth = 0;
    observer.Direction(sight.position, elevation, azimuth);
    long double programElevation = 0, programAzimuth = 0;
    SatelliteAzimuthElevation(observer.Position(),
                              xyzt(sight.position.x, sight.position.y, sight.position.z, 0), grs80,
                              &programElevation, &programAzimuth);
    EXPECT_TRUE(Near(elevation, programElevation, 1e-13L)) << sat;
    EXPECT_TRUE(Near(azimuth, programAzimuth, 1e-12L)) << sat;
  }
}
