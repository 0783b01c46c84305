#include "Simulation.h"
#include "ReadBack.h"
#include "support/Near.h"
#include <gtest/gtest.h>
#include <set>

using namespace sim;

// --- Repeatability ---------------------------------------------------------------------------

TEST(MakeFiles, TheSameSeedGivesTheSameBytesInAnotherFolder) {
  Scenario s = CleanScenario();
  s.codeNoise = 0.3;
  s.phaseNoise.reset();
  s.multipath = 0.5;
  s.withMultipath = s.withClock = s.withCoordinates = s.withTracking = s.withP2C2 = true;
  s.randomSlips = 3;
  s.randomOutliers = 3;
  const MadeSet first(s), second(s);
  for (const auto& [kind, name] : first.Truth().at("files").items())
    EXPECT_EQ(ReadWhole(name.empty() ? "" : first.File(kind.c_str())),
              ReadWhole(second.File(kind.c_str())))
        << kind;
  EXPECT_EQ(first.Truth().at("ionosphere"), second.Truth().at("ionosphere"));
  EXPECT_EQ(first.Truth().at("disturbances"), second.Truth().at("disturbances"));
}

TEST(MakeFiles, AnotherSeedGivesOtherNoise) {
  Scenario s = CleanScenario();
  s.codeNoise = 0.3;
  const MadeSet first(s);
  s.seed = 2;
  const MadeSet second(s);
  EXPECT_NE(ReadWhole(first.File("observations")), ReadWhole(second.File("observations")));
}

// --- Layout ----------------------------------------------------------------------------------

TEST(MakeFiles, ObservationsAreReadBackWithAllTheirTypesAndSatellites) {
  Scenario s = CleanScenario();
  s.types = {"L2", "C1", "S1", "P2", "D1", "L1", "P1", "S2", "D2", "C2", "C5", "L5", "S5"};
  const MadeSet set(s);
  ReadBack back(set);
  EXPECT_EQ(back.data.nepochall, 120);
  EXPECT_EQ(back.header.nobs, 13);
  EXPECT_TRUE(back.header.iC1 && back.header.iP1 && back.header.iP2 && back.header.iL1 &&
              back.header.iL2 && back.header.iS1 && back.header.iD2 && back.header.iC2 &&
              back.header.iS5);
  EXPECT_EQ(back.header.interval, 60.0F);
  bool moreThanTwelve = false;
  for (long i = 0; i < back.data.nepochall; ++i) {
    moreThanTwelve = moreThanTwelve || back.data.nsat(i) > 12;
    EXPECT_TRUE(Near(back.data.epoch(i) - mjd(55844, 0), 60.0L * i, 1e-9L));
  }
  EXPECT_TRUE(moreThanTwelve);
  for (long k = 0; k < back.data.nsatall; ++k) {
    EXPECT_TRUE(Near(back.data.C1(k).GetObs(), 22.5e6L, 4.5e6L));
    EXPECT_TRUE(Near(back.data.C2(k).GetObs(), back.data.P2(k).GetObs(), 2));
    EXPECT_TRUE(Near(back.data.S1(k).GetObs(), 45, 10));
    EXPECT_LT(std::abs(back.data.D1(k).GetObs()), 6000);
    EXPECT_EQ(back.data.C5(k).IsNull(), back.data.sat(k) > 100);
  }
}

TEST(MakeFiles, DopplerIsTheRateOfThePhase) {
  Scenario s = CleanScenario();
  s.duration = 60;
  s.interval = 1;
  s.ionoInterval = 60;
  s.types = {"L1", "D1"};
  s.clockDrift = 0.3;
  const MadeSet set(s);
  ReadBack back(set);
  std::map<short, std::pair<long double, long double>> before; // phase and Doppler
  long record = 0;
  for (long i = 0; i < back.data.nepochall; ++i)
    for (short k = 0; k < back.data.nsat(i); ++k, ++record) {
      const short sat = back.data.sat(record);
      const long double phase = back.data.L1(record).GetObs();
      const long double doppler = back.data.D1(record).GetObs();
      if (before.contains(sat)) {
        const auto [oldPhase, oldDoppler] = before[sat];
        // Phase grows with distance, Doppler with approach; the atmosphere's change is in the
        // phase.
        EXPECT_TRUE(Near(phase - oldPhase, -(doppler + oldDoppler) / 2, 0.3L)) << sat;
      }
      before[sat] = {phase, doppler};
    }
}

TEST(MakeFiles, EventsAndClockOffsetsLeaveTheObservationsAlone) {
  Scenario s = CleanScenario();
  const MadeSet plain(s);
  s.eventEvery = 7;
  s.clockOnLines = true;
  s.clockOffset = -321.5;
  s.clockDrift = 0.01;
  const MadeSet disturbed(s);
  ReadBack a(plain), b(disturbed);
  ASSERT_EQ(a.data.nsatall, b.data.nsatall);
  EXPECT_EQ(b.data.nComment, 17 * 3); // 119 / 7 events of three lines
  ASSERT_TRUE(b.data.IfTimeCorr);
  for (long i = 0; i < b.data.nepochall; ++i)
    EXPECT_TRUE(Near(b.data.TCorr(i), (-321.5L + 0.6L * i) * 1e-6L, 0.51e-9L)) << i;
  for (long k = 0; k < a.data.nsatall; ++k) EXPECT_EQ(a.data.sat(k), b.data.sat(k));
}

TEST(MakeFiles, TypesAndDisturbancesDoNotChangeTheNoise) {
  Scenario s = CleanScenario();
  s.codeNoise = 0.3;
  const MadeSet plain(s);
  s.types = {"C1", "P2"};
  s.randomSlips = 2;
  s.slipFlags = true;
  const MadeSet other(s);
  ReadBack a(plain), b(other);
  ASSERT_EQ(a.data.nsatall, b.data.nsatall);
  for (long k = 0; k < a.data.nsatall; ++k) EXPECT_EQ(a.data.P2(k).GetObs(), b.data.P2(k).GetObs());
}

// --- The model -------------------------------------------------------------------------------

/// Vertical delay times its partial derivatives, written out from the truth file.
static double SlantFromTruth(const nlohmann::json& truth, const ReadBack& back,
                             const Corrected& r) {
  for (const auto& node : truth.at("ionosphere").at("nodes")) {
    if (r.epoch > node.at("last_epoch").get<long>()) continue;
    const mjd begin(node.at("mjd").get<unsigned int>(),
                    static_cast<long double>(node.at("second").get<double>()));
    const double hours = static_cast<double>(back.data.epoch(r.epoch) - begin) / 3600;
    const double z = std::asin(6371.0 / 6821 * std::cos(r.elevation));
    const double gradient = node.at("gradient_east_m").get<double>() * std::sin(r.azimuth) +
                            node.at("gradient_north_m").get<double>() * std::cos(r.azimuth);
    return r.ionoFactor * (node.at("delay_m").get<double>() +
                           hours * node.at("rate_m_per_h").get<double>() + std::tan(z) * gradient);
  }
  return NAN;
}

struct Bias {
  double p1c1 = 0, p2c1 = 0;
};

static std::map<short, Bias> BiasesFromTruth(const nlohmann::json& truth) {
  std::map<short, Bias> biases;
  for (const auto& s : truth.at("satellites"))
    biases[s.at("satellite")] = {s.at("xbSAT_p1c1_m"), s.at("xbSAT_p2c1_m")};
  return biases;
}

/// The misclosures of the estimation vanish at the truth, to the rounding of the file: half a
/// millimetre a code, a thousandth of half a cycle a phase.
static void ExpectVanishingMisclosures(const Scenario& scenario) {
  const MadeSet set(scenario);
  ReadBack back(set);
  const auto biases = BiasesFromTruth(set.Truth());
  std::map<short, double> level; // L4 less the ionosphere at the satellite's first record
  for (const Corrected& r : back.Records()) {
    const double slant = SlantFromTruth(set.Truth(), back, r);
    if (r.p1c1) {
      EXPECT_NEAR(*r.p1c1, biases.at(r.sat).p1c1, 1.01e-3) << r.sat << " " << r.epoch;
    }
    if (r.p2c1) {
      EXPECT_NEAR(*r.p2c1, biases.at(r.sat).p2c1 + slant, 1.01e-3) << r.sat << " " << r.epoch;
    }
    if (!r.l4) continue;
    level.try_emplace(r.sat, *r.l4 - slant);
    EXPECT_NEAR(*r.l4 - slant, level[r.sat], 0.45e-3) << r.sat << " " << r.epoch;
  }
}

static Scenario WithoutWindUp() {
  Scenario s = CleanScenario();
  s.windUp = WindUp::kNone;
  return s;
}

TEST(TruthOfASet, MisclosuresVanish) { ExpectVanishingMisclosures(WithoutWindUp()); }

TEST(TruthOfASet, MisclosuresVanishForEveryTrackingClass) {
  for (const Tracking tracking : {Tracking::kC1P2, Tracking::kC1X2}) {
    Scenario s = WithoutWindUp();
    s.tracking = tracking;
    s.withTracking = true;
    ExpectVanishingMisclosures(s);
  }
}

TEST(TruthOfASet, MisclosuresVanishWithGroupDelaysInPlaceOfTheBiasFiles) {
  Scenario s = WithoutWindUp();
  s.withP1P2 = s.withP1C1 = false;
  ExpectVanishingMisclosures(s);
}

TEST(TruthOfASet, MisclosuresVanishWithGradients) {
  for (const Gradients gradients : {Gradients::kFree, Gradients::kCoupled}) {
    Scenario s = WithoutWindUp();
    s.gradients = gradients;
    ExpectVanishingMisclosures(s);
  }
}

TEST(TruthOfASet, MisclosuresVanishWithPhysicalBiasesAndOffsets) {
  for (const Tracking tracking : {Tracking::kP1P2, Tracking::kC1P2, Tracking::kC1X2}) {
    Scenario s = WithoutWindUp();
    s.p1Bias = P1Bias::kPhysical;
    s.satelliteOffset = 0.7;
    s.glonassP1C1 = -0.2;
    s.glonassP2C1 = 1.5;
    s.tracking = tracking;
    s.withTracking = true;
    ExpectVanishingMisclosures(s);
  }
}

TEST(TruthOfASet, MisclosuresVanishWhereP1StandsForC1) {
  Scenario s = WithoutWindUp();
  s.types = {"P1", "P2", "L1", "L2"};
  ExpectVanishingMisclosures(s);
}

TEST(TruthOfASet, MisclosuresVanishInEveryQuarterOfTheEarthAndInTheFarSouth) {
  for (const auto& [latitude, longitude] :
       {std::pair{5.0, -70.0}, {-33.5, 151.0}, {70.0, 19.0}, {-77.8, 166.7}, {46.0, -120.0}}) {
    Scenario s = WithoutWindUp();
    s.latitude = latitude;
    s.longitude = longitude;
    ExpectVanishingMisclosures(s);
  }
}

TEST(TruthOfASet, MisclosuresVanishWithADriftingAndJumpingClock) {
  Scenario s = WithoutWindUp();
  s.clockOffset = 400;
  s.clockDrift = 0.2;
  s.clockJumps = true;
  ExpectVanishingMisclosures(s);
}

TEST(TruthOfASet, PhysicalBiasesLeaveTheirDifferencesInP1C1) {
  // P1 carries -k2 D, C1 is P1 less E; the program adds k2 D to C1, and E unless it tracks P1.
  Scenario s = CleanScenario();
  s.p1Bias = P1Bias::kPhysical;
  const MadeSet set(s);
  for (const auto& satellite : set.Truth().at("satellites")) {
    const double c = 0.299792458; // [m/ns]
    const short sat = satellite.at("satellite");
    const double k2 = sat < 100 ? 1.5457277801631601 : 1.53125;
    const double D = c * satellite.at("file_p1p2_ns").get<double>();
    const double E = c * satellite.at("file_p1c1_ns").get<double>();
    EXPECT_NEAR(satellite.at("left_p1c1_m").get<double>(), E - k2 * D, 1e-12);
    EXPECT_NEAR(satellite.at("left_p2c1_m").get<double>(), E, 1e-12);
  }
}

// --- Disturbances ----------------------------------------------------------------------------

/// Number of distinct (satellite, epoch) pairs at which L4 less the true ionosphere steps.
static std::map<std::pair<short, long>, double> StepsOfL4(const MadeSet& set) {
  ReadBack back(set);
  std::map<short, std::pair<long, double>> before;
  std::map<std::pair<short, long>, double> steps;
  for (const Corrected& r : back.Records()) {
    const double level = *r.l4 - SlantFromTruth(set.Truth(), back, r);
    const auto found = before.find(r.sat);
    if (found != before.end() && std::abs(level - found->second.second) > 1e-3)
      steps[{r.sat, r.epoch}] = level - found->second.second;
    before[r.sat] = {r.epoch, level};
  }
  return steps;
}

TEST(Disturbances, SlipsStandWhereTheTruthSaysAndNowhereElse) {
  Scenario s = WithoutWindUp();
  s.randomSlips = 6;
  const MadeSet set(s);
  const auto steps = StepsOfL4(set);
  const auto& slips = set.Truth().at("disturbances").at("slips");
  EXPECT_EQ(slips.size(), 6u);
  EXPECT_EQ(steps.size(), 6u);
  for (const auto& slip : slips) {
    const auto found = steps.find({slip.at("satellite"), slip.at("epoch")});
    ASSERT_NE(found, steps.end());
    EXPECT_NEAR(found->second, slip.at("l4_step_m").get<double>(), 0.9e-3);
    EXPECT_TRUE(slip.at("found").get<bool>());
  }
}

TEST(Disturbances, ASlipCanBeNamedAndFlagged) {
  Scenario s = WithoutWindUp();
  s.slipFlags = true;
  const MadeSet clean(s);
  ReadBack probe(clean);
  const short sat = probe.data.sat(0); // in view at the first epoch
  s.slips = {ParseSlip(SatelliteName(sat) + "@00:05:00=3/-2")};
  const MadeSet set(s);
  ReadBack back(set);
  int flagged = 0;
  long record = 0;
  for (long i = 0; i < back.data.nepochall; ++i)
    for (short k = 0; k < back.data.nsat(i); ++k, ++record) {
      const bool here = i == 5 && back.data.sat(record) == sat;
      EXPECT_EQ(back.data.L1(record).GetLli() & 1, here ? 1 : 0);
      EXPECT_EQ(back.data.L2(record).GetLli() & 1, here ? 1 : 0);
      flagged += back.data.L1(record).GetLli() & 1;
    }
  EXPECT_EQ(flagged, 1);
}

TEST(Disturbances, OutliersStandWhereTheTruthSaysAndNowhereElse) {
  Scenario s = WithoutWindUp();
  s.randomOutliers = 5;
  s.outlierType = "P2";
  s.outlierSize = 12;
  const MadeSet set(s);
  ReadBack back(set);
  const auto biases = BiasesFromTruth(set.Truth());
  std::map<std::pair<short, long>, double> found;
  for (const Corrected& r : back.Records()) {
    const double off = *r.p2c1 - biases.at(r.sat).p2c1 - SlantFromTruth(set.Truth(), back, r);
    if (std::abs(off) > 0.01) found[{r.sat, r.epoch}] = off;
  }
  const auto& outliers = set.Truth().at("disturbances").at("outliers");
  EXPECT_EQ(found.size(), 5u);
  for (const auto& outlier : outliers) {
    const auto here = found.find({outlier.at("satellite"), outlier.at("epoch")});
    ASSERT_NE(here, found.end());
    EXPECT_NEAR(here->second, outlier.at("size_m").get<double>(), 1.1e-3);
    EXPECT_EQ(std::abs(outlier.at("size_m").get<double>()), 12);
    EXPECT_GT(outlier.at("elevation_deg").get<double>(), 15);
  }
}

TEST(Disturbances, GapsHaveNoEpochsAndSatelliteGapsNoSatellite) {
  Scenario s = WithoutWindUp();
  s.gaps = {{600, 1200}};
  const MadeSet clean(s);
  ReadBack probe(clean);
  const short sat = probe.data.sat(0);
  s.satelliteGaps = {{sat, {0, 300}}};
  const MadeSet set(s);
  ReadBack back(set);
  EXPECT_EQ(back.data.nepochall, 120 - 11);
  EXPECT_EQ(back.data.flag(10), '1'); // the first one behind the gap
  EXPECT_EQ(back.data.flag(9), '0');
  bool seen = false;
  long record = 0;
  for (long i = 0; i < back.data.nepochall; ++i)
    for (short k = 0; k < back.data.nsat(i); ++k, ++record) {
      const bool here = back.data.sat(record) == sat;
      EXPECT_FALSE(i <= 5 && here);
      seen = seen || here;
    }
  EXPECT_TRUE(seen);
}

TEST(Disturbances, MillisecondJumpsAreInTheCodesAlone) {
  Scenario s = WithoutWindUp();
  s.clockOffset = 450;
  s.clockDrift = 0.1; // crosses half a millisecond after 500 s
  s.clockJumps = true;
  const MadeSet set(s);
  const auto& jumps = set.Truth().at("epochs").at("clock_jumps");
  ASSERT_EQ(jumps.size(), 1u);
  EXPECT_EQ(jumps[0].at("epoch"), 9);
  EXPECT_NEAR(jumps[0].at("step_s").get<double>(), -1e-3, 1e-12);
  ReadBack back(set);
  std::map<short, long double> before; // C1 less L1: twice the delay, which moves by decimetres
  long record = 0;
  for (long i = 0; i < back.data.nepochall; ++i)
    for (short k = 0; k < back.data.nsat(i); ++k, ++record) {
      const short sat = back.data.sat(record);
      if (sat > 100) continue;
      const long double here =
          back.data.C1(record).GetObs() - 0.19029367279836487L * back.data.L1(record).GetObs();
      if (before.contains(sat)) {
        EXPECT_TRUE(Near(here - before[sat], i == 9 ? -299792.458L : 0, 0.3L)) << i;
      }
      before[sat] = here;
    }
}

// --- Noise -----------------------------------------------------------------------------------

TEST(NoiseOfASet, HasTheStatedSizeAtEveryElevation) {
  Scenario s = WithoutWindUp();
  s.duration = 86400;
  s.codeNoise = 0.3;
  s.phaseNoise.reset();
  const MadeSet set(s);
  ReadBack back(set);
  const auto biases = BiasesFromTruth(set.Truth());
  double n = 0, sum = 0, squares1 = 0, squares2 = 0, product = 0;
  std::map<short, std::pair<double, double>> before; // L4 level and its sine
  double nPhase = 0, squaresPhase = 0;
  for (const Corrected& r : back.Records()) {
    const double sine = std::sin(r.elevation);
    const double slant = SlantFromTruth(set.Truth(), back, r);
    const double v1 = (*r.p1c1 - biases.at(r.sat).p1c1) * sine;
    const double v2 = (*r.p2c1 - biases.at(r.sat).p2c1 - slant) * sine;
    ++n;
    sum += v2;
    squares1 += v1 * v1;
    squares2 += v2 * v2;
    product += v1 * v2;
    const double level = *r.l4 - slant;
    const auto found = before.find(r.sat);
    if (found != before.end() && std::abs(level - found->second.first) < 5) {
      ++nPhase;
      squaresPhase += std::pow((level - found->second.first) * sine, 2);
    }
    before[r.sat] = {level, sine};
  }
  // P1-C1 and P2-C1 share C1: variances 2 s2, covariance s2. Differences of L1-L2 in time: four
  // phases.
  const double s2 = 0.3 * 0.3, root = std::sqrt(n);
  EXPECT_NEAR(sum / n, 0, 5 * std::sqrt(2 * s2) / root);
  EXPECT_NEAR(squares1 / n, 2 * s2, 5 * 2 * s2 * std::sqrt(2.0) / root);
  EXPECT_NEAR(squares2 / n, 2 * s2, 5 * 2 * s2 * std::sqrt(2.0) / root);
  EXPECT_NEAR(product / n, s2, 5 * 2 * s2 * std::sqrt(2.0) / root);
  EXPECT_NEAR(squaresPhase / nPhase, 2 * 0.03 * 0.03, 0.03 * 2 * 0.03 * 0.03);
}

// --- Truth -----------------------------------------------------------------------------------

TEST(TruthOfASet, CountsWhatIsAboveTheCutOff) {
  Scenario s = CleanScenario();
  const MadeSet set(s);
  ReadBack back(set);
  long above = 0;
  for (const Corrected& r : back.Records()) above += r.elevation > 10 * M_PI / 180 ? 1 : 0;
  EXPECT_EQ(set.Truth().at("values_per_iteration").at("p1c1"), above);
  EXPECT_EQ(set.Truth().at("values_per_iteration").at("p2c1"), above);
  EXPECT_LE(set.Truth().at("values_per_iteration").at("l4").get<long>(), above);
}

TEST(TruthOfASet, ArgumentsNameTheOrbitsOfTheRun) {
  Scenario s = CleanScenario();
  const auto has = [](const nlohmann::json& truth, const std::string& option) {
    for (const auto& a : truth.at("arguments").at("inputs"))
      if (a.get<std::string>().starts_with(option)) return true;
    return false;
  };
  const MadeSet broadcast(s);
  EXPECT_TRUE(has(broadcast.Truth(), "-eg") && has(broadcast.Truth(), "-er"));
  EXPECT_FALSE(has(broadcast.Truth(), "-es") || has(broadcast.Truth(), "-el"));
  s.precise = true;
  s.glonass = false;
  const MadeSet precise(s);
  EXPECT_TRUE(has(precise.Truth(), "-es"));
  EXPECT_FALSE(has(precise.Truth(), "-eg") || has(precise.Truth(), "-el"));
}

TEST(TruthOfASet, MissingPreciseOrbitsLeaveTheirSatelliteOut) {
  Scenario s = CleanScenario();
  s.precise = true;
  const MadeSet whole(s);
  ReadBack back(whole);
  const short sat = back.data.sat(0);
  s.sp3Missing = {{sat, {-7200, 90000}}};
  const MadeSet set(s);
  EXPECT_LT(set.Truth().at("values_per_iteration").at("p2c1").get<long>(),
            whole.Truth().at("values_per_iteration").at("p2c1").get<long>());
  for (const auto& arc : set.Truth().at("ambiguities")) EXPECT_NE(arc.at("satellite"), sat);
}
