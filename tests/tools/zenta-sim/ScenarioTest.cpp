#include "Scenario.h"
#include "tools/report/Refused.h"
#include <cmath>
#include <gtest/gtest.h>

using namespace sim;

TEST(Scenario, SatellitesAreNamedAndNumbered) {
  EXPECT_EQ(ParseSatellite("G05"), 5);
  EXPECT_EQ(ParseSatellite("R24"), 124);
  EXPECT_EQ(SatelliteName(5), "G05");
  EXPECT_EQ(SatelliteName(124), "R24");
}

TEST(Scenario, TimesMayPassMidnight) {
  EXPECT_EQ(ParseTime("01:02:03.5"), 3723.5);
  EXPECT_EQ(ParseTime("25:00:00"), 90000);
}

TEST(Scenario, SlipsOutliersAndSpansAreTakenApart) {
  const Slip slip = ParseSlip("R07@02:30:00=-3/+4");
  EXPECT_EQ(slip.sat, 107);
  EXPECT_EQ(slip.time, 9000);
  EXPECT_EQ(slip.n1, -3);
  EXPECT_EQ(slip.n2, 4);
  const Outlier outlier = ParseOutlier("G31@00:00:30=P2:-12.5");
  EXPECT_EQ(outlier.sat, 31);
  EXPECT_EQ(outlier.time, 30);
  EXPECT_EQ(outlier.type, "P2");
  EXPECT_EQ(outlier.size, -12.5);
  const SatelliteSpan span = ParseSatelliteSpan("G01@01:00:00-02:00:00");
  EXPECT_EQ(span.sat, 1);
  EXPECT_EQ(span.span.from, 3600);
  EXPECT_EQ(span.span.to, 7200);
}

TEST(Scenario, PhaseNoiseMatchesTheWeightOfThePhases) {
  // The program's weights give L1-L2 a hundred times the weight of a code, a tenth of its noise;
  // the difference of two phases has sqrt 2 times the noise of one.
  Scenario s;
  s.codeNoise = 0.3;
  s.phaseNoise.reset();
  EXPECT_NEAR(s.PhaseNoise() * std::sqrt(2.0), 0.03, 1e-15);
  s.phaseNoise = 0.002;
  EXPECT_EQ(s.PhaseNoise(), 0.002);
}

/// \p action is refused with a message that holds \p text.
static testing::AssertionResult Refuses(const auto& action, const std::string& text) {
  const std::string message = RefusalOf(action);
  if (message.find(text) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "\"" << message << "\" does not hold \"" << text << "\"";
}

TEST(Scenario, WhatIsNoSatelliteTimeOrNumberIsRefused) {
  EXPECT_TRUE(Refuses([] { ParseSatellite("G33"); }, "no satellite: G33"));
  EXPECT_TRUE(Refuses([] { ParseSatellite("R25"); }, "no satellite: R25"));
  EXPECT_TRUE(Refuses([] { ParseSatellite("E01"); }, "no satellite: E01"));
  EXPECT_TRUE(Refuses([] { ParseSatellite("G00"); }, "no satellite: G00"));
  EXPECT_TRUE(Refuses([] { ParseTime("12:00"); }, "':' is missing in 00"));
  EXPECT_TRUE(Refuses([] { ParseTime("aa:00:00"); }, "no number in aa:00:00"));
  EXPECT_TRUE(Refuses([] { ParseTime("00:00:inf"); }, "no number in 00:00:inf"));
  EXPECT_TRUE(Refuses([] { ParseSpan("02:00:00-01:00:00"); }, "ends before it begins"));
  EXPECT_TRUE(Refuses([] { ParseOutlier("G01@00:00:00=S1:3"); }, "no type for an outlier"));
  EXPECT_TRUE(Refuses([] { ParseSlip("G01@00:00:00=3"); }, "'/' is missing"));
}

TEST(Scenario, WhatCantBeMadeIsRefused) {
  const auto refuses = [](auto change, const char* text) {
    Scenario s;
    change(s);
    EXPECT_TRUE(Refuses([&] { Check(s); }, text));
  };
  refuses([](Scenario& s) { s.interval = 0; }, "--interval");
  refuses([](Scenario& s) { s.duration = 1; }, "--duration");
  refuses([](Scenario& s) { s.latitude = 90; }, "--lat");
  refuses([](Scenario& s) { s.gps = s.glonass = false; }, "--systems");
  refuses([](Scenario& s) { s.types = {"C9"}; }, "unknown type C9");
  refuses([](Scenario& s) { s.headerError = 5; }, "--header-error");
  refuses([](Scenario& s) { s.windUp = WindUp::kExact, s.interval = 1; }, "--wind-up exact");
}
