#include "SatPosition.h"

#include "support/Near.h"
#include "support/StandingOrbits.h"
#include "support/TinyRun.h"

#include <cmath>

namespace {

const mjd kTime(55844, 3600);

/// A receiver on the equator at longitude 0.
struct Sky : TinyRun {
  Sky() {
    ctx.RecPosFC = xyz(6378137, 0, 0);
    ctx.isGPS = ctx.isGLN = true;
  }
  void GpsBroadcast(unsigned short prn) {
    gpsBroadcast.gdata.SetNRecords(1);
    gpsBroadcast.gdata.sat(0) = prn;
    gpsBroadcast.gdata.mjdo(0) = mjd(55844, 0);
    gpsBroadcast.gdata.data(0, 10) = 5153.6L; // sqrt A
    gpsBroadcast.gdata.data(0, 15) = 0.96L;   // inclination
    ctx.isGPSnav = true;
  }
  void GlonassBroadcast(short slot) {
    GLNbEphData& records = glonassBroadcast.rdata;
    records.SetNRecords(1);
    records.sat(0) = slot;
    records.mjdo(0) = mjd(55844, 3600);
    records.data(0, 3) = 25000; // x [km], standing for a moment
    ctx.isGLNnav = true;
  }
  void GpsPrecise() {
    gpsPrecise = StandingOrbits({{"G07", xyz(26000e3L, 1000e3L, 2000e3L)}});
    ctx.isGpEph = true;
  }
  void GlonassPrecise() {
    glonassPrecise = StandingOrbits({{"R05", xyz(25000e3L, -3000e3L, 2000e3L)}});
    ctx.isRpEph = true;
  }
  bool Locate(short sat) { return EmissionPosition(ctx, sat, kTime, position); }

  xyzt position{1, 2, 3, 4};
};

TEST(IsProcessed, NumbersTellTheSystem) {
  TinyRun run;
  run.ctx.isGPS = true;
  const auto processed = [&](int sat) { return IsProcessed(run.ctx, static_cast<short>(sat)); };
  for (const int sat : {1, 32, 99}) EXPECT_TRUE(processed(sat)) << sat;
  for (const int sat : {100, 101, 199, 200, 305}) EXPECT_FALSE(processed(sat)) << sat;
  run.ctx.isGPS = false;
  run.ctx.isGLN = true;
  for (const int sat : {100, 101, 199}) EXPECT_TRUE(processed(sat)) << sat;
  for (const int sat : {1, 99, 200, 401}) EXPECT_FALSE(processed(sat)) << sat;
}

TEST(EmissionPosition, WithoutOrbitThereIsNone) {
  Sky run;
  EXPECT_FALSE(run.Locate(7));
  EXPECT_FALSE(run.Locate(105));
  EXPECT_EQ(run.position.GetX(), 0);
}

TEST(EmissionPosition, PreciseOrbitsAnswerForTheirOwnSystem) {
  Sky run;
  run.GpsPrecise();
  EXPECT_TRUE(run.Locate(7));
  EXPECT_TRUE(Near(run.position.GetY(), 1000e3L, 1e-6L));
  EXPECT_FALSE(run.Locate(105));
  run.GlonassPrecise();
  EXPECT_TRUE(run.Locate(105));
  EXPECT_TRUE(Near(run.position.GetY(), -3000e3L, 1e-6L));
}

TEST(EmissionPosition, SatelliteThatThePreciseOrbitsLackHasNone) {
  Sky run;
  run.GpsPrecise();
  run.GlonassPrecise();
  EXPECT_FALSE(run.Locate(8));
  EXPECT_FALSE(run.Locate(106));
}

TEST(EmissionPosition, BroadcastOrbitsComeFirst) {
  Sky run;
  run.GpsBroadcast(7);
  run.GpsPrecise();
  EXPECT_TRUE(run.Locate(7));
  // on its circle, where the precise orbit is not
  EXPECT_TRUE(Near(run.position.GetLength(), 5153.6L * 5153.6L, 1e-6L));
  run.GlonassBroadcast(5);
  run.GlonassPrecise();
  EXPECT_TRUE(run.Locate(105)); // slot 5
  EXPECT_TRUE(Near(run.position.GetX(), 25000e3L, 1));
  EXPECT_TRUE(Near(run.position.GetY(), 0, 1));
}

TEST(EmissionPosition, RecordThatMakesNoOrbitHasNone) {
  for (const auto& [column, value] : {std::pair(10, 0.0L), std::pair(8, 1.5L),
                                      std::pair(15, std::nanl("")), std::pair(0, HUGE_VALL)}) {
    Sky run;
    run.GpsBroadcast(7);
    ASSERT_TRUE(run.Locate(7));
    run.gpsBroadcast.gdata.data(0, column) = value;
    EXPECT_FALSE(run.Locate(7)) << column;
  }
  Sky run;
  run.GlonassBroadcast(5);
  ASSERT_TRUE(run.Locate(105));
  run.glonassBroadcast.rdata.data(0, 3) = 0; // in the centre of the Earth
  EXPECT_FALSE(run.Locate(105));
}

TEST(EmissionPosition, IsTheOneOfTheTravelTimeBefore) {
  Sky run;
  run.GpsBroadcast(7);
  ASSERT_TRUE(run.Locate(7));
  // light needs |satellite - receiver| / c in the frame of the emission
  const xyzt found = run.position;
  const long double travel =
      (run.gpsBroadcast.ps - xyz(found.GetX(), found.GetY(), found.GetZ())).GetLength() /
      299792458.0L;
  mjd emission = kTime;
  emission += -travel;
  xyzt at;
  long double tgd = 0;
  run.gpsBroadcast.CalcSatPosition(7, emission, kTime, at, &tgd, 0, 0);
  EXPECT_TRUE(Near(found.GetX(), at.GetX(), 1e-4L));
  EXPECT_TRUE(Near(found.GetY(), at.GetY(), 1e-4L));
  EXPECT_TRUE(Near(found.GetZ(), at.GetZ(), 1e-4L));
  EXPECT_GT(travel, 0.06L);
}

} // namespace
