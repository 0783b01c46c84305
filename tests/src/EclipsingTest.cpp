#include "Eclipsing.h"

#include "GNSS/GNSSLinCombs.h"
#include "GNSS/xyz_flh.h"
#include "GetInitPos.h"
#include "SetLinCombinations.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/Near.h"
#include "support/StandingOrbits.h"
#include "support/TinyRun.h"

#include <cmath>
#include <iomanip>
#include <map>

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

// ---- The stage: eclipses -----------------------------------------------------------------------

mjd Second(long double s) {
  mjd t(55844, 0);
  t += s;
  return t;
}

/// A satellite whose directions to the Sun and the Earth differ by \p degrees at \p t.
Standing AtAngle(const char* id, long double degrees, const mjd& t) {
  xyz sun;
  long double km = 0;
  SolidTide().SunPosition(t, sun, km);
  const xyz across = CrossP(sun, xyz(0, 0, 1)).GetUnitVector(1);
  // Off the Earth-Sun line by a, it sees the Sun off that line as well, by the parallax p:
  // sin p = R/S sin(a + p), so that the angle between the two is 180 degrees - (a + p).
  const long double atSatellite = Radians(180 - degrees);
  const long double a = atSatellite - std::asin(kOrbit / (km * 1000) * std::sin(atSatellite));
  return {id, kOrbit * std::cos(a) * sun + kOrbit * std::sin(a) * across};
}

using Angles = std::map<short, long double>; ///< by satellite [degree]

/// Satellites at the given angles, observed at two epochs, 1 s apart.
struct Season : TinyRun {
  Captured out{std::cout};
  Captured errors{std::cerr};

  explicit Season(const Angles& degrees) {
    std::vector<TinyRecord> records;
    std::vector<Standing> gps;
    std::vector<Standing> glonass;
    for (const auto& [sat, angle] : degrees) {
      TinyRecord r;
      r.sat = sat;
      r.L4 = 3;
      records.push_back(r);
      char id[8];
      std::snprintf(id, sizeof id, "%c%02d", sat < 100 ? 'G' : 'R', sat % 100);
      (sat < 100 ? gps : glonass).push_back(AtAngle(id, angle, Second(3600)));
    }
    Fill(*this, {{Second(3600), records}, {Second(3601), records}});
    for (long k = 0; k < data.nsatall; ++k) {
      for (matrix<gnssobs>* table : {&data.L1, &data.L2, &data.L4}) {
        (*table)(k) = 7.0L;
        (*table)(k).SetLli(1);
      }
    }
    gpsPrecise = StandingOrbits(gps);
    glonassPrecise = StandingOrbits(glonass);
    ctx.isGpEph = ctx.isRpEph = true;
    ctx.RecPosFC = xyz(6378137, 0, 0);
  }
  bool IsRemoved(long k) const {
    return data.L1(k).GetObs() == 0 && data.L2(k).GetObs() == 0 && data.L4(k).GetObs() == 0;
  }
};

TEST(GetEclipsing, AlignmentsWithin14DegreesOnEitherSideAreRemoved) {
  // in 1 s the Sun moves by 0.004 degree
  Season run(Angles{{1, 10}, {2, 170}, {3, 15}, {4, 165}, {5, 13.99L}, {6, 14.01L}, {7, 90}});
  GetEclipsing(run.ctx);
  const bool removed[] = {true, true, false, false, true, false, false};
  for (long k = 0; k < 14; ++k) EXPECT_EQ(run.IsRemoved(k), removed[k % 7]) << k;
}

TEST(GetEclipsing, RemovedPhasesLoseTheirFlagsAndOthersKeepThem) {
  Season run(Angles{{1, 10}, {2, 90}});
  GetEclipsing(run.ctx);
  EXPECT_EQ(run.data.L1(0).GetLli(), 0);
  EXPECT_EQ(run.data.L1(1).GetLli(), 1);
  EXPECT_EQ(run.data.L4(1).GetObs(), 7);
}

TEST(GetEclipsing, SatellitesAreCountedInTheOrderOfTheList) {
  Season run(Angles{{3, 10}, {9, 90}, {12, 5}, {104, 172}});
  run.data.sat(4) = 9; // the second epoch sees 9 in place of 3
  GetEclipsing(run.ctx);
  ASSERT_EQ(run.ctx.NEclipsSat, 3);
  const short sats[] = {3, 12, 104};
  const long counts[] = {1, 2, 2};
  for (long i = 0; i < 3; ++i) {
    EXPECT_EQ(run.ctx.EclipsSat(i), sats[i]);
    EXPECT_EQ(run.ctx.EclipsNObs(i), counts[i]);
  }
}

TEST(GetEclipsing, TypesThatTheHeaderLacksAreLeftAlone) {
  Season run(Angles{{1, 10}});
  run.header.iL4 = false;
  run.data.L4.Resize(0, 0);
  GetEclipsing(run.ctx);
  EXPECT_TRUE(run.data.L1(0).IsNull());
  EXPECT_TRUE(run.data.L2(0).IsNull());
  Season phaseOfL1(Angles{{1, 10}});
  phaseOfL1.header.iL2 = phaseOfL1.header.iL4 = false;
  phaseOfL1.data.L2.Resize(0, 0);
  phaseOfL1.data.L4.Resize(0, 0);
  GetEclipsing(phaseOfL1.ctx);
  EXPECT_TRUE(phaseOfL1.data.L1(0).IsNull());
  EXPECT_EQ(phaseOfL1.ctx.NEclipsSat, 1);
  Season phaseOfL2(Angles{{1, 10}});
  phaseOfL2.header.iL1 = phaseOfL2.header.iL4 = false;
  phaseOfL2.data.L1.Resize(0, 0);
  phaseOfL2.data.L4.Resize(0, 0);
  GetEclipsing(phaseOfL2.ctx);
  EXPECT_TRUE(phaseOfL2.data.L2(0).IsNull());
  EXPECT_EQ(phaseOfL2.ctx.NEclipsSat, 1);
}

TEST(GetEclipsing, SatelliteWithoutOrbitOrSystemIsKept) {
  Season run(Angles{{1, 10}, {104, 10}});
  run.gpsPrecise = StandingOrbits({AtAngle("G02", 10, Second(3600))});
  run.ctx.isGLN = false;
  run.data.sat(1) = 204;
  GetEclipsing(run.ctx);
  EXPECT_EQ(run.ctx.NEclipsSat, 0);
  for (long k = 0; k < 4; ++k) EXPECT_FALSE(run.IsRemoved(k)) << k;
}

TEST(GetEclipsing, SunIsFoundForEveryEpochInMetres) {
  Season run(Angles{{1, 90}});
  GetEclipsing(run.ctx);
  ASSERT_EQ(run.ctx.SunMag.NRow(), 2);
  for (long i = 0; i < 2; ++i) {
    xyz sun;
    long double km = 0;
    run.sunMoon.SunPosition(run.data.epoch(i), sun, km);
    EXPECT_TRUE(Near(run.ctx.SunMag(i), 1000 * km, 1e-3L));
    EXPECT_TRUE(run.ctx.posSunUnit(i) == sun);
    EXPECT_TRUE(Near(run.ctx.SunMag(i), 0.9985L * kAU, 0.002L * kAU)); // in October
  }
}

TEST(GetEclipsing, LeavesStandardOutputInFixedPoint) {
  Season run(Angles{{1, 90}});
  std::cout << std::defaultfloat;
  GetEclipsing(run.ctx);
  std::cout << std::setprecision(2) << 1234567.0;
  EXPECT_EQ(run.out.Text(), "1234567.00");
}

TEST(GetEclipsing, MoreSatellitesThanTheTablesHold) {
  Angles all;
  for (short sat = 1; sat <= 17; ++sat) all[sat] = 5;
  Season run(all);
  run.ctx.EclipsSat.Resize(8, 1);
  run.ctx.EclipsNObs.Resize(8, 1);
  GetEclipsing(run.ctx);
  ASSERT_EQ(run.ctx.NEclipsSat, 17);
  for (short i = 0; i < 17; ++i) {
    EXPECT_EQ(run.ctx.EclipsSat(i), i + 1);
    EXPECT_EQ(run.ctx.EclipsNObs(i), 2);
  }
}

TEST(GetEclipsing, WithoutPhaseNothingHappens) {
  Season run(Angles{{1, 10}});
  run.ctx.verbose = true;
  run.ctx.ifPhaseObs = false;
  GetEclipsing(run.ctx);
  PhaseWindUp(run.ctx);
  PrintEclipsingSatellite(run.ctx);
  EXPECT_FALSE(run.IsRemoved(0));
  EXPECT_EQ(run.out.Text(), "");
  EXPECT_EQ(run.errors.Text(), "");
}

TEST(GetEclipsing, VerboseTellsTheNumber) {
  Season run(Angles{{1, 10}, {2, 90}});
  run.ctx.verbose = true;
  GetEclipsing(run.ctx);
  EXPECT_EQ(run.errors.Text(), "Zenta::GetEclipsing(): SETTING ECLIPSING SEASONS FOR SATELLITES!\n"
                               "Zenta::GetEclipsing():         #Eclipsing Satellites: 1\n");
}

TEST(PrintEclipsingSatellite, TableOfTheRemovedRecords) {
  Season run(Angles{{3, 10}, {12, 5}, {104, 172}});
  GetEclipsing(run.ctx);
  PrintEclipsingSatellite(run.ctx);
  EXPECT_EQ(run.out.Text(), "ECLIPSING EPOCHS FOR SATELLITES:\n"
                            "--------------------------------\n"
                            "\n"
                            "   ID     PRN      #ECLIPSING OBS\n"
                            "  -------------------------------\n"
                            "    1     G 3                   2\n"
                            "    2     G12                   2\n"
                            "    3     R 4                   2\n"
                            "  -------------------------------\n"
                            "\n"
                            "\n");
}

// ---- The stage: wind-up ------------------------------------------------------------------------

/// A satellite over the pole and a receiver beside the pole: in an hour the Sun goes round by 15
/// degrees, and the wind-up by a 24th of a cycle. At midnight the receiver's longitude is
/// \p degrees west of the Sun's; at 0 the wind-up is half a cycle.
struct Polar : TinyRun {
  static constexpr long double kHour = 3600;
  static constexpr long double kMetresPerCycle =
      299792458.0L / 1227.60e6L - 299792458.0L / 1575.42e6L;
  Captured errors{std::cerr};

  explicit Polar(long double degrees, short sat = 7, long double step = kHour / 2) {
    TinyRecord r;
    r.sat = sat;
    r.L4 = 3;
    std::vector<TinyEpoch> epochs;
    for (int i = 0; i < 5; ++i) epochs.push_back({Second(step * i), {r}});
    Fill(*this, epochs);
    const xyz overPole(0, 0, kOrbit);
    gpsPrecise = StandingOrbits({{"G07", overPole}});
    glonassPrecise = StandingOrbits({{"R05", overPole}});
    ctx.isGpEph = ctx.isRpEph = true;
    xyz sun;
    long double km = 0;
    sunMoon.SunPosition(Second(0), sun, km);
    const long double longitude = std::atan2(sun.GetY(), sun.GetX()) - Radians(degrees);
    ctx.RecPosFCG = flh(Radians(89.9L), std::remainder(longitude, 2 * kPi), 0);
    ctx.RecPosFC = flh2xyz(ctx.RecPosFCG, ctx.eGPS);
    GetEclipsing(ctx);
  }
  /// What was added to L4 of epoch \p i, in cycles.
  long double Added(long i) const { return (data.L4(i).GetObs() - 3) / kMetresPerCycle; }
  /// Wind-up of epoch \p i by itself.
  long double Cycles(long i) const {
    const long double l = ctx.RecPosFCG.GetL();
    const long double f = ctx.RecPosFCG.GetF();
    const xyz north(-std::sin(f) * std::cos(l), -std::sin(f) * std::sin(l), std::cos(f));
    const xyz west(std::sin(l), -std::cos(l), 0);
    return WindUp(xyz(0, 0, kOrbit), ctx.SunMag(i) * ctx.posSunUnit(i), ctx.RecPosFC, north, west);
  }
};

TEST(PhaseWindUp, CyclesTimesTheDifferenceOfTheWavelengthsAreAdded) {
  Polar run(60);
  AddArc(run, 7, 0, 4);
  PhaseWindUp(run.ctx);
  for (long i = 0; i < 4; ++i) EXPECT_TRUE(Near(run.Added(i), run.Cycles(i), 1e-9L)) << i;
  // half an hour is a 48th of a cycle
  EXPECT_TRUE(Near(std::fabs(run.Added(1) - run.Added(0)), 1.0L / 48, 1e-4L));
}

TEST(PhaseWindUp, LastEpochOfTheArcStaysAsItIs) {
  Polar run(60);
  AddArc(run, 7, 0, 3);
  PhaseWindUp(run.ctx);
  EXPECT_NE(run.Added(2), 0);
  EXPECT_EQ(run.Added(3), 0);
  EXPECT_EQ(run.Added(4), 0);
}

TEST(PhaseWindUp, ArcOfOneEpochIsNotCorrected) {
  Polar run(60);
  AddArc(run, 7, 2, 2);
  PhaseWindUp(run.ctx);
  for (long i = 0; i < 5; ++i) EXPECT_EQ(run.Added(i), 0);
}

TEST(PhaseWindUp, SeriesGoesOnAcrossHalfACycle) {
  // 3 degrees before the half cycle; after half an hour 4.5 degrees behind it
  for (const long double start : {3.0L, -3.0L}) {
    Polar run(start);
    AddArc(run, 7, 0, 4);
    PhaseWindUp(run.ctx);
    const long double step = run.Added(1) - run.Added(0);
    EXPECT_TRUE(Near(std::fabs(step), 1.0L / 48, 1e-4L));
    for (long i = 1; i < 3; ++i)
      EXPECT_TRUE(Near(run.Added(i + 1) - run.Added(i), step, 1e-4L)) << i;
    EXPECT_TRUE(Near(run.Added(0), run.Cycles(0), 1e-9L)); // the first as it is
    if (start > 0) {
      EXPECT_GT(std::fabs(run.Added(3)), 0.5L);
      EXPECT_TRUE(Near(std::fabs(run.Added(3) - run.Cycles(3)), 1, 1e-9L));
    }
  }
}

TEST(PhaseWindUp, EachArcBeginsAnew) {
  Polar run(3);
  AddArc(run, 7, 0, 2);
  AddArc(run, 7, 3, 4);
  PhaseWindUp(run.ctx);
  EXPECT_TRUE(Near(run.Added(3), run.Cycles(3), 1e-9L));
}

TEST(PhaseWindUp, MissingL4StaysMissingAndTheSeriesGoesOn) {
  // 4.5 hours apart, the inner two missing: 13.5 hours are more than half a cycle
  Polar run(60, 7, 4.5L * Polar::kHour);
  AddArc(run, 7, 0, 4);
  run.data.L4(1) = run.data.L4(2) = 0.0L;
  PhaseWindUp(run.ctx);
  EXPECT_EQ(run.data.L4(1).GetObs(), 0);
  EXPECT_EQ(run.data.L4(2).GetObs(), 0);
  EXPECT_TRUE(Near(std::fabs(run.Added(3) - run.Added(0)), 13.5L / 24, 1e-3L));
}

TEST(PhaseWindUp, GlonassIsCorrectedWithTheGpsWavelengths) {
  EXPECT_TRUE(Near(Polar::kMetresPerCycle, 0.0539165406262L, 1e-13L));
  Polar run(60, 105);
  GLC::lamb1 = GLC::lamb2 = 0.2L; // whatever the combinations left there
  AddArc(run, 105, 0, 4);
  PhaseWindUp(run.ctx);
  EXPECT_TRUE(Near(run.Added(0), run.Cycles(0), 1e-9L));
  GLC::lamb1 = GNSSc::lamb1;
  GLC::lamb2 = GNSSc::lamb2;
}

TEST(PhaseWindUp, SystemsThatAreNotProcessedAreSkipped) {
  Polar run(60);
  AddArc(run, 7, 0, 4);
  run.ctx.isGPS = false;
  run.ctx.verbose = true;
  PhaseWindUp(run.ctx);
  EXPECT_EQ(run.Added(0), 0);
  EXPECT_EQ(run.errors.Text(), "Zenta::PhaseWindUp(): APPLYING PHASE WIND-UP BIAS!\n");
}

// ---- Recorded data
// -------------------------------------------------------------------------------

/// Satellites with removed phases, and how many, of ALBH on 2010-01-01.
std::map<short, long> EclipsedOfAlbh(bool broadcast) {
  TinyRun run;
  const Captured out(std::cout);
  const Captured errors(std::cerr);
  run.file.SetFile(RealData("2010-001-albh-gras/ALBH0010.10O").c_str());
  run.file.ReadFile();
  if (broadcast) {
    run.gpsBroadcast.SetFile(RealData("2010-001-albh-gras/ALBH0010.10N").c_str());
    run.gpsBroadcast.ReadFile();
    run.ctx.isGPSnav = true;
  } else {
    run.gpsPrecise.SetFile(RealData("2010-001-albh-gras/igs15645.sp3").c_str());
    run.gpsPrecise.ReadFile();
    run.ctx.isGpEph = true;
  }
  run.ctx.isGPS = run.ctx.ifPhaseObs = true;
  GetReceiverProperties(run.ctx);
  SetLinearCombinations(run.ctx);
  GetEclipsing(run.ctx);
  std::map<short, long> eclipsed;
  for (long i = 0; i < run.ctx.NEclipsSat; ++i)
    eclipsed[run.ctx.EclipsSat(i)] = run.ctx.EclipsNObs(i);
  return eclipsed;
}

TEST(GetEclipsing, BroadcastAndPreciseOrbitsFindTheSameSatellites) {
  SKIP_WITHOUT("2010-001-albh-gras/igs15645.sp3");
  const std::map<short, long> broadcast = EclipsedOfAlbh(true);
  const std::map<short, long> precise = EclipsedOfAlbh(false);
  ASSERT_FALSE(precise.empty());
  ASSERT_EQ(broadcast.size(), precise.size());
  for (const auto& [sat, count] : precise) {
    ASSERT_TRUE(broadcast.count(sat)) << sat;
    // metres of orbit are 1e-5 degree: an epoch more or less at either end
    EXPECT_LE(std::abs(broadcast.at(sat) - count), 2) << sat;
  }
}

} // namespace
