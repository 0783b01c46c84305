#include "Compare.h"
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace sim;

/// A short report in the layout of the program.
static const char* const kReport =
    "RECEIVER/SATELLITE DCB VALUES AND IONOSPHERE DELAY - RESULTS:\n"
    "-------------------------------------------------------------\n\n"
    "  #ITERATIONS:          2       THRESHOLD:      0.000\n"
    "  #EPOCHS    :        120\n"
    "  #OBS       :       4321    G:        0    R:        0\n"
    "  #OUTLIERS  :          3    G:        0    R:        0\n\n"
    "  REF. STD. APRIORI                              :            1.00\n"
    "  REF. STD. APOSTERIORI                          :            0.21\n"
    "  REFERENCE VARIANCE OF UNIT WEIGHT [GLOBAL TEST]:            0.04         [SQRT]      "
    "0.21\n\n"
    " RECEIVER GPS DCB VALUES:\n"
    " --------------------\n\n"
    "  P1-C1 DCB:       0.3510 m +-     0.0020 m             0.00117 msec +-    0.00001 msec     "
    "[1200 OBS / P1-C1 DCB]\n"
    "  P2-C1 DCB:      -2.5200 +-     0.0100             -0.00841 msec +-    0.00003 msec     "
    "[1200 OBS / P2-C1 DCB]\n\n"
    " SATELLITE GLONASS DCB VALUES:\n"
    " -----------------------------\n\n"
    "  PRN           P1-C1 DCB [m +- m, msec +- msec]\n"
    " ----\n"
    "  101      0.1000 +-  0.0100      0.0003 +-  0.0000   [    40]       -1.5000 +-  0.0200     "
    "-0.0050 +-  0.0001   [    41]  \n"
    "  102                                                                      0.2500 +-  "
    "0.0300      0.0008 +-  0.0001   [    42]  \n"
    " ----\n\n\n"
    "  PHASE L4 AMBIGUITIES (REAL VALUES):\n"
    "     1     G 5    2011-10-10 00:00:00    2011-10-10 01:30:00            -123.4567 +-     "
    "0.0123             91\n"
    "\n"
    "     2     R12    2011-10-10 00:10:00    2011-10-10 00:59:00              12.5000 +-     "
    "0.0200             50\n"
    " IONOSPHERE DELAYS:\n"
    " ------------------\n\n"
    "  EPOCH[MJD]         ION DELAY[m]          ION DELAY RATE [m/h]       #OBS/DELAY\n"
    "  55844      0.0      1.2300 +-  0.0100        0.5000 +-  0.0200         [  2000]  \n"
    "  55844   3660.0     -1.7400 +-  0.0110       -0.2500 +-  0.0210         [  1990]  \n";

TEST(ReadReport, FindsEveryEstimateWithItsError) {
  const Report report = ReadReport(kReport);
  EXPECT_TRUE(report.complete);
  EXPECT_EQ(report.iterations, 2);
  EXPECT_EQ(report.observations, 4321);
  EXPECT_EQ(report.outliers, 3);
  EXPECT_EQ(report.variance, 0.04);
  EXPECT_EQ(report.receiver.at("P1-C1").value, 0.3510);
  EXPECT_EQ(report.receiver.at("P1-C1").sigma, 0.0020);
  EXPECT_EQ(report.receiver.at("P2-C1").value, -2.52);
  EXPECT_EQ(report.receiver.at("P2-C1").sigma, 0.01);
  EXPECT_EQ(report.satellites.at(101).at("P1-C1").value, 0.1);
  EXPECT_EQ(report.satellites.at(101).at("P2-C1").value, -1.5);
  EXPECT_FALSE(report.satellites.at(102).contains("P1-C1"));
  EXPECT_EQ(report.satellites.at(102).at("P2-C1").value, 0.25);
  EXPECT_EQ(report.satellites.at(102).at("P2-C1").sigma, 0.03);
  ASSERT_EQ(report.ambiguities.size(), 2u);
  EXPECT_EQ(report.ambiguities[0].sat, 5);
  EXPECT_NEAR(report.ambiguities[0].first, 55844, 1e-9);
  EXPECT_NEAR(report.ambiguities[0].last, 55844 + 1.5 / 24, 1e-9);
  EXPECT_EQ(report.ambiguities[0].value.value, -123.4567);
  EXPECT_EQ(report.ambiguities[0].value.sigma, 0.0123);
  EXPECT_EQ(report.ambiguities[0].observations, 91);
  EXPECT_EQ(report.ambiguities[1].sat, 112);
  EXPECT_EQ(report.ambiguities[1].value.value, 12.5);
  ASSERT_EQ(report.nodes.size(), 2u);
  EXPECT_EQ(report.nodes[0].delay.value, 1.23);
  EXPECT_EQ(report.nodes[1].delay.value, -1.74);
  EXPECT_EQ(report.nodes[1].rate.value, -0.25);
  EXPECT_EQ(report.nodes[1].rate.sigma, 0.021);
  EXPECT_FALSE(report.nodes[1].hasGradients);
}

TEST(ReadReport, TakesGradientsWhereTheRowHasThem) {
  const Report report =
      ReadReport(" IONOSPHERE DELAYS:\n"
                 "  55844      0.0      1.2300 +-  0.0100        0.5000 +-  0.0200     -0.1000 "
                 "+-  0.0010        0.2000 +-  0.0020         [  2000]  \n");
  ASSERT_EQ(report.nodes.size(), 1u);
  ASSERT_TRUE(report.nodes[0].hasGradients);
  EXPECT_EQ(report.nodes[0].eastGradient.value, -0.1);
  EXPECT_EQ(report.nodes[0].northGradient.value, 0.2);
  EXPECT_EQ(report.nodes[0].northGradient.sigma, 0.002);
}

TEST(ReadReport, OfAnotherTextIsIncomplete) {
  EXPECT_FALSE(ReadReport("").complete);
  EXPECT_FALSE(ReadReport("INPUT DATA (FILE NAMES):\n").complete);
}

static nlohmann::json Truth() {
  return nlohmann::json::parse(R"({
    "receiver_dcb": {"p1c1_m": 0.35, "p2c1_m": -2.5},
    "satellites": [{"satellite": 101, "xbSAT_p1c1_m": 0.11, "xbSAT_p2c1_m": -1.5},
                   {"satellite": 102, "xbSAT_p1c1_m": 0.0, "xbSAT_p2c1_m": 0.2}],
    "ionosphere": {"nodes": [{"mjd": 55844, "second": 0.0, "delay_m": 1.2, "rate_m_per_h": 0.5,
                              "gradient_east_m": 0, "gradient_north_m": 0}]},
    "ambiguities": [{"satellite": 5, "first": {"mjd": 55844, "second": 0.0},
                     "last": {"mjd": 55844, "second": 5400.0}, "ambiguity_m": -123.4}]})");
}

TEST(CompareWithTruth, TakesEstimateLessTruthAndCountsWhatHasNoMatch) {
  long unmatched = 0;
  const auto all = CompareWithTruth(ReadReport(kReport), Truth(), unmatched);
  EXPECT_EQ(unmatched, 2); // the second node and the second ambiguity
  std::map<std::string, Deviations> by;
  for (const Deviations& d : all) by[d.what] = d;
  EXPECT_NEAR(by.at("receiver DCB P1-C1").Mean(), 0.001, 1e-12);
  EXPECT_NEAR(by.at("receiver DCB P2-C1").Mean(), -0.02, 1e-12);
  EXPECT_NEAR(by.at("receiver DCB P2-C1").RmsNormalised(), 2, 1e-9);
  EXPECT_NEAR(by.at("GLONASS satellite DCBs P1-C1").Mean(), -0.01, 1e-12);
  EXPECT_NEAR(by.at("GLONASS satellite DCBs P2-C1").Mean(), 0.025, 1e-12);
  EXPECT_NEAR(by.at("GLONASS satellite DCBs P2-C1").Largest(), 0.05, 1e-12);
  EXPECT_NEAR(by.at("delays").Mean(), 0.03, 1e-12);
  EXPECT_NEAR(by.at("rates").Rms(), 0, 1e-12);
  EXPECT_NEAR(by.at("ambiguities").Mean(), -0.0567, 1e-12);
}
