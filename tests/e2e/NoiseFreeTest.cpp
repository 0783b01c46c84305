// Noise-free data in the class of the estimator's model: estimates equal truth.

#include "SimulatedRun.h"
#include <gtest/gtest.h>

using namespace sim;

namespace {

struct Place {
  const char* name;
  double latitude, longitude; ///< [deg]
};

constexpr Place kPlaces[] = {
    {"West", 5, -70}, {"MiddleLatitudes", 46, 14.5}, {"FarNorth", 70, 19}, {"South", -33.5, 151}};

/// Systems, orbits and station of one run.
using Case = std::tuple<bool, bool, Place>;

class NoiseFreeSky : public testing::TestWithParam<Case> {};

std::string NameOf(const testing::TestParamInfo<Case>& info) {
  const auto& [glonass, precise, place] = info.param;
  return std::string(glonass ? "GpsGlonass" : "Gps") + (precise ? "Precise" : "Broadcast") +
         place.name;
}

} // namespace

TEST_P(NoiseFreeSky, ReceiverBiasesDelaysRatesAndAmbiguitiesAreTheTruth) {
  const auto& [glonass, precise, place] = GetParam();
  Scenario s = ExactDay();
  s.glonass = glonass;
  s.precise = precise;
  s.latitude = place.latitude;
  s.longitude = place.longitude;
  const SimulatedRun run(s);
  ExpectTruth(run, 5);
  EXPECT_EQ(run.Unmatched(), 0);
  EXPECT_EQ(run.Errors().at("delays").errors.size(), 24u);
  EXPECT_TRUE(run.Report().adjustment.misclosures.empty());
}

INSTANTIATE_TEST_SUITE_P(Everywhere, NoiseFreeSky,
                         testing::Combine(testing::Bool(), testing::Bool(),
                                          testing::ValuesIn(kPlaces)),
                         NameOf);

TEST(NoiseFree, SatelliteBiasesOfGpsAreTheTruth) {
  Scenario s = ExactDay();
  s.glonass = false;
  s.satelliteOffset = 0.5;
  const SimulatedRun run(s, Estimation(s, "GPS,ION", "CODE,PHASE"));
  ExpectTruth(run, 5);
  EXPECT_EQ(run.Errors().at("GPS satellite DCBs P1-C1").errors.size(), 32u);
  EXPECT_EQ(run.Errors().at("GPS satellite DCBs P2-C1").errors.size(), 32u);
}

TEST(NoiseFree, SatelliteBiasesOfBothSystemsAreTheTruth) {
  Scenario s = ExactDay();
  s.satelliteOffset = 0.5;
  s.glonassP1C1 = -0.3;
  s.glonassP2C1 = 1.8;
  const SimulatedRun run(s, Estimation(s, "GPS,GLN,ION", "CODE,PHASE"));
  ExpectTruth(run, 7);
  EXPECT_EQ(run.Errors().at("GLONASS satellite DCBs P2-C1").errors.size(), 24u);
}

TEST(NoiseFree, ReceiverBiasesBesideGlonassSatelliteBiasesAreTheTruth) {
  Scenario s = ExactDay();
  s.glonassP1C1 = -0.3;
  s.glonassP2C1 = 1.8;
  const SimulatedRun run(s, Estimation(s, "REC,GLN,ION", "CODE,PHASE"));
  ExpectTruth(run, 7);
}

TEST(NoiseFree, CodeAloneGivesTheTruth) {
  // Codes are rounded to a millimetre in the file: a delay has some hundred of them.
  const SimulatedRun run(ExactDay(), Estimation(ExactDay(), "REC,ION", "CODE"));
  ExpectTruth(run, 4);
}

TEST(NoiseFree, PhaseAloneGivesTheTruth) {
  const SimulatedRun run(ExactDay(), Estimation(ExactDay(), "ION", "PHASE"));
  ExpectTruth(run, 3);
}

TEST(NoiseFree, EqualWeightsGiveTheTruth) {
  const SimulatedRun run(ExactDay(), {"-xREC,ION", "-ii00:59:50", "-lCODE,PHASE", "-me10"});
  ExpectTruth(run, 5);
}

TEST(NoiseFree, EveryTrackingClassGivesTheTruth) {
  for (const Tracking tracking : {Tracking::kP1P2, Tracking::kC1P2, Tracking::kC1X2}) {
    Scenario s = ExactDay();
    s.tracking = tracking;
    s.withTracking = true;
    ExpectTruth(SimulatedRun(s), 5);
  }
}

TEST(NoiseFree, GroupDelaysInPlaceOfBiasFilesGiveTheTruth) {
  Scenario s = ExactDay();
  s.withP1P2 = s.withP1C1 = false;
  ExpectTruth(SimulatedRun(s), 5);
}

TEST(NoiseFree, ChannelsOfTheNavigationFileGiveTheTruth) {
  Scenario s = ExactDay();
  s.withChannels = false;
  ExpectTruth(SimulatedRun(s), 5);
}

TEST(NoiseFree, ClockMultipathAndCoordinateFilesGiveTheTruth) {
  Scenario s = ExactDay();
  s.withClock = s.withMultipath = s.withCoordinates = s.withP2C2 = true;
  s.clockOffset = 300;
  s.clockDrift = 0.002;
  s.clockOnLines = true;
  s.multipath = 1.5;
  s.headerError = 2000;
  s.eventEvery = 50;
  ExpectTruth(SimulatedRun(s), 5);
}

TEST(NoiseFree, MillisecondJumpsCancelInEveryCombination) {
  Scenario s = ExactDay();
  s.clockDrift = 0.05;
  s.clockJumps = true;
  const SimulatedRun run(s);
  ExpectTruth(run, 5);
  EXPECT_GE(run.Truth().at("epochs").at("clock_jumps").size(), 3u);
}

TEST(NoiseFree, GapsCutArcsAndIntervalsAndLeaveTheTruth) {
  Scenario s = ExactDay();
  s.gaps = {{10800, 12000}, {43200, 43500}};
  const SimulatedRun run(s);
  ExpectTruth(run, 5);
  EXPECT_EQ(run.Unmatched(), 0);
}

TEST(NoiseFree, MissingPreciseOrbitsLeaveTheTruth) {
  Scenario s = ExactDay();
  s.precise = true;
  s.sp3Missing = {{7, {20000, 30000}}, {112, {-7200, 90000}}};
  s.sp3BadClocks = {{9, {0, 86400}}};
  const SimulatedRun run(s);
  ExpectTruth(run, 5);
  EXPECT_EQ(run.Unmatched(), 0);
}

TEST(NoiseFree, AWindUpLeftAtTheEndsOfTheArcsMovesNothingByAMillimetre) {
  // The program takes no wind-up off an arc's last phase. With the full wind-up in the data one
  // of some hundred phases of an arc is off by up to five centimetres.
  for (const WindUp windUp : {WindUp::kProgram, WindUp::kPhysical}) {
    Scenario s = ExactDay();
    s.interval = 30;
    s.windUp = windUp;
    const SimulatedRun run(s);
    ASSERT_EQ(run.Result().status, 0);
    for (const char* what : {"receiver DCB P1-C1", "receiver DCB P2-C1", "delays", "rates"})
      EXPECT_LE(run.Errors().at(what).Largest(), 1e-3) << what;
    EXPECT_LE(run.Errors().at("ambiguities").Rms(), 1e-3);
  }
}
