#include "Compare.h"
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>

using namespace sim;

/// Receiver DCBs, two satellites, two arcs and two intervals.
static report::Report ShortReport() {
  report::Report r;
  r.receiverP1C1 = report::Bias{{0.351, 0.002}, 0, 0, 0};
  r.receiverP2C1 = report::Bias{{-2.52, 0.01}, 0, 0, 0};
  r.satellites = {{101, report::Bias{{0.1, 0.01}, 0, 0, 0}, report::Bias{{-1.5, 0.02}, 0, 0, 0}},
                  {102, std::nullopt, report::Bias{{0.25, 0.03}, 0, 0, 0}}};
  r.ambiguities = {{1, 5, {55844, 0}, {55844, 5400}, {-123.4567, 0.0123}, 91},
                   {2, 112, {55844, 600}, {55844, 3540}, {12.5, 0.02}, 50}};
  r.intervals = {{{55844, 0}, {1.23, 0.01}, {0.5, 0.02}, std::nullopt, std::nullopt, 2000},
                 {{55844, 3660}, {1.74, 0.011}, {-0.25, 0.021}, std::nullopt, std::nullopt, 1990}};
  return r;
}

static nlohmann::json Truth() {
  return nlohmann::json::parse(R"({
    "receiver_dcb": {"p1c1_m": 0.35, "p2c1_m": -2.5},
    "satellites": [{"satellite": 101, "xbSAT_p1c1_m": 0.11, "xbSAT_p2c1_m": -1.5},
                   {"satellite": 102, "xbSAT_p1c1_m": 0.0, "xbSAT_p2c1_m": 0.2}],
    "ionosphere": {"nodes": [{"mjd": 55844, "second": 0.04, "delay_m": 1.2, "rate_m_per_h": 0.5,
                              "gradient_east_m": 0.3, "gradient_north_m": -0.1}]},
    "ambiguities": [{"satellite": 5, "first": {"mjd": 55844, "second": 0.0},
                     "last": {"mjd": 55844, "second": 5400.0}, "ambiguity_m": -123.4}]})");
}

static std::map<std::string, Deviations> ByKind(const report::Report& r, long& unmatched) {
  std::map<std::string, Deviations> by;
  for (const Deviations& d : CompareWithTruth(r, Truth(), unmatched)) by[d.what] = d;
  return by;
}

TEST(CompareWithTruth, TakesEstimateLessTruthAndCountsWhatHasNoMatch) {
  long unmatched = 0;
  auto by = ByKind(ShortReport(), unmatched);
  EXPECT_EQ(unmatched, 2); // the second interval and the second arc
  EXPECT_NEAR(by.at("receiver DCB P1-C1").Mean(), 0.001, 1e-12);
  EXPECT_NEAR(by.at("receiver DCB P2-C1").Mean(), -0.02, 1e-12);
  EXPECT_NEAR(by.at("receiver DCB P2-C1").RmsNormalised(), 2, 1e-9);
  EXPECT_NEAR(by.at("GLONASS satellite DCBs P1-C1").Mean(), -0.01, 1e-12);
  EXPECT_EQ(by.at("GLONASS satellite DCBs P1-C1").errors.size(), 1u);
  EXPECT_NEAR(by.at("GLONASS satellite DCBs P2-C1").Mean(), 0.025, 1e-12);
  EXPECT_NEAR(by.at("GLONASS satellite DCBs P2-C1").Largest(), 0.05, 1e-12);
  EXPECT_NEAR(by.at("GLONASS satellite DCBs P2-C1").Rms(), std::sqrt(0.00125), 1e-12);
  EXPECT_NEAR(by.at("delays").Mean(), 0.03, 1e-12);
  EXPECT_NEAR(by.at("rates").Rms(), 0, 1e-12);
  EXPECT_NEAR(by.at("ambiguities").Mean(), -0.0567, 1e-12);
  EXPECT_FALSE(by.contains("east gradients"));
}

TEST(CompareWithTruth, TakesGradientsWhereTheReportHasThem) {
  report::Report r = ShortReport();
  r.intervals[0].east = report::Estimate{0.35, 0.01};
  r.intervals[0].north = report::Estimate{-0.1, 0.01};
  long unmatched = 0;
  auto by = ByKind(r, unmatched);
  EXPECT_NEAR(by.at("east gradients").Mean(), 0.05, 1e-12);
  EXPECT_NEAR(by.at("north gradients").Mean(), 0, 1e-12);
}

TEST(DeviationTable, HasALineForEachKindAndNoNumberForErrorsWithoutASize) {
  const std::string text =
      DeviationTable({{"delays", "m", {0.1, -0.3}, {0.1, 0.1}}, {"rates", "m/h", {0.1}, {0}}}, 3);
  // Mean, root mean square, largest; errors of 1 and 3 formal errors: sqrt 5.
  EXPECT_NE(text.find("-0.1000      0.2236      0.3000            2.24  m\n"), std::string::npos);
  EXPECT_NE(text.find("               -  m/h\n"), std::string::npos);
  EXPECT_NE(text.find("3 estimates without a truth"), std::string::npos);
}
