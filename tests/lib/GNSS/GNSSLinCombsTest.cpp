#include "GNSS/GNSSLinCombs.h"

#include "support/Ends.h"
#include "support/Near.h"

#include <gtest/gtest.h>

namespace {

constexpr long double c = 299792458.0L;
constexpr long double f1 = 1575.42e6L;
constexpr long double f2 = 1227.60e6L;

// Codes and phases of a satellite at range rho [m] with the ionospheric delay I1 on L1 [m], no
// ambiguities: P = rho + I, L lambda = rho - I, and I2 = I1 f1^2/f2^2.
struct Signals {
  long double rho = 21234567.25L;
  long double I1 = 7.5L;
  long double I2 = I1 * (f1 / f2) * (f1 / f2);
  long double P1 = rho + I1;
  long double P2 = rho + I2;
  long double L1 = (rho - I1) * f1 / c;
  long double L2 = (rho - I2) * f2 / c;
};

gnssobs Obs(long double v) { return {v, 1, 7}; }

// Restores the working coefficients.
class GNSSLinCombs : public testing::Test {
protected:
  ~GNSSLinCombs() override {
    GLC::lamb1 = GNSSc::lamb1;
    GLC::lamb2 = GNSSc::lamb2;
    GLC::LCion1 = GNSSc::LCion1;
    GLC::LCion2 = GNSSc::LCion2;
  }
  const Signals s;
};

void ExpectFlagless(const gnssobs& g, long double value) {
  EXPECT_EQ(g.obs, value);
  EXPECT_EQ(g.lli, 0);
  EXPECT_EQ(g.ss, 0);
}

// An object in static storage that reads the tables before main starts.
const long kRowsBeforeMain = GLONASSc::alphaG.NRow();
const long double kFirstBeforeMain = GLONASSc::freq(0, 0);

} // namespace

TEST(GNSSc, Wavelengths) {
  EXPECT_TRUE(Near(GNSSc::lamb0, 29.30522561094819L, 1e-13L));
  EXPECT_TRUE(Near(GNSSc::lamb1, 0.19029367279836487L, 1e-16L));
  EXPECT_TRUE(Near(GNSSc::lamb2, 0.24421021342456825L, 1e-16L));
  EXPECT_TRUE(Near(GNSSc::lamWL, 0.8619184003220056L, 1e-15L));
  EXPECT_TRUE(Near(GNSSc::lamNL, 0.10695337814214669L, 1e-16L));
}

// f1 = 154 f0 and f2 = 120 f0: every coefficient is a ratio of small whole numbers.
TEST(GNSSc, CoefficientsAreRatiosOf77And60) {
  EXPECT_TRUE(Near(GNSSc::LCion1, 5929.0L / 2329.0L, 1e-18L));
  EXPECT_TRUE(Near(GNSSc::LCion2, 3600.0L / 2329.0L, 1e-18L));
  EXPECT_TRUE(Near(GNSSc::LCwl1, 77.0L / 17.0L, 1e-18L));
  EXPECT_TRUE(Near(GNSSc::LCwl2, 60.0L / 17.0L, 1e-18L));
  EXPECT_TRUE(Near(GNSSc::LCnl1, 77.0L / 137.0L, 1e-18L));
  EXPECT_TRUE(Near(GNSSc::LCnl2, 60.0L / 137.0L, 1e-18L));
  EXPECT_TRUE(Near(GNSSc::alpha, 5929.0L / 3600.0L, 1e-18L));
}

// f1 : f2 = 9 : 7.
TEST(GLONASSc, CoefficientsAreRatiosOf9And7) {
  EXPECT_EQ(GLONASSc::LCion1, 81.0L / 32.0L);
  EXPECT_EQ(GLONASSc::LCion2, 49.0L / 32.0L);
  EXPECT_EQ(GLONASSc::LCwl1, 9.0L / 2.0L);
  EXPECT_EQ(GLONASSc::LCwl2, 7.0L / 2.0L);
  EXPECT_EQ(GLONASSc::LCnl1, 9.0L / 16.0L);
  EXPECT_EQ(GLONASSc::LCnl2, 7.0L / 16.0L);
  EXPECT_TRUE(Near(GLONASSc::alpha, 81.0L / 49.0L, 1e-18L));
  EXPECT_TRUE(Near(GLONASSc::lamb10, 0.18713636579275905L, 1e-16L));
  EXPECT_TRUE(Near(GLONASSc::lamb20, 0.2406038988764045L, 1e-16L));
}

TEST(GLONASSc, TablesAreThereBeforeMain) {
  EXPECT_EQ(kRowsBeforeMain, 24);
  EXPECT_EQ(kFirstBeforeMain, 0.0L);
  EXPECT_EQ(GLONASSc::freq.NCol(), 2);
  EXPECT_EQ(GLONASSc::lamb.NCol(), 2);
  EXPECT_EQ(GLONASSc::lambWL.NCol(), 1);
  EXPECT_EQ(GLONASSc::lambNL.NCol(), 1);
  EXPECT_EQ(GLONASSc::alphaG.NCol(), 2);
}

TEST(GLONASSc, ChannelMinusSeven) {
  GLONASSc::SetFrequency(-7, 5);
  EXPECT_EQ(GLONASSc::freq(5, 0), 1598062500.0L);
  EXPECT_EQ(GLONASSc::freq(5, 1), 1242937500.0L);
}

TEST(GLONASSc, WavelengthsOfAChannel) {
  GLONASSc::SetFrequency(3, 4);
  const long double r1 = 1603687500.0L; // 1602 MHz + 3 x 0.5625 MHz
  const long double r2 = 1247312500.0L; // 1246 MHz + 3 x 0.4375 MHz
  EXPECT_TRUE(Near(GLONASSc::lamb(4, 0), c / r1, 1e-18L));
  EXPECT_TRUE(Near(GLONASSc::lamb(4, 1), c / r2, 1e-18L));
  // The wide lane beats at the difference, the narrow lane at the sum of the frequencies.
  EXPECT_TRUE(Near(GLONASSc::lambWL(4), c / (r1 - r2), 1e-17L));
  EXPECT_TRUE(Near(GLONASSc::lambNL(4), c / (r1 + r2), 1e-18L));
  EXPECT_TRUE(Near(GLONASSc::alphaG(4, 0), f1 * f1 / (r1 * r1), 1e-18L));
  EXPECT_TRUE(Near(GLONASSc::alphaG(4, 1), f1 * f1 / (r2 * r2), 1e-18L));
}

TEST(GLONASSc, ChannelFillsItsRowAlone) {
  const long double before = GLONASSc::freq(20, 0);
  const long double after = GLONASSc::freq(22, 0);
  GLONASSc::SetFrequency(1, 21);
  EXPECT_EQ(GLONASSc::freq(20, 0), before);
  EXPECT_EQ(GLONASSc::freq(22, 0), after);
  EXPECT_EQ(GLONASSc::freq(21, 0), 1602562500.0L);
}

TEST(GLONASScDeathTest, SlotWithoutARowEndsTheProgram) {
  EXPECT_ENDS(GLONASSc::SetFrequency(0, 24), "Row index not in range: ");
  EXPECT_ENDS(GLONASSc::SetFrequency(0, -1), "Row index not in range: ");
}

TEST_F(GNSSLinCombs, IonosphereFreeIsTheRange) {
  EXPECT_TRUE(Near(GNSS_L3(s.L1, s.L2), s.rho, 1e-9L));
  EXPECT_TRUE(Near(GNSS_P3(s.P1, s.P2), s.rho, 1e-9L));
}

TEST_F(GNSSLinCombs, GeometryFreePhaseAndCodeHaveTheSameSign) {
  EXPECT_TRUE(Near(GNSS_L4(s.L1, s.L2), s.I2 - s.I1, 1e-9L));
  EXPECT_TRUE(Near(GNSS_P4(s.P1, s.P2), s.I2 - s.I1, 1e-9L));
}

TEST_F(GNSSLinCombs, MelbourneWuebbenaIsFreeOfRangeAndIonosphere) {
  EXPECT_TRUE(Near(GNSS_MW(s.L1, s.L2, s.P1, s.P2), 0.0L, 1e-8L));
}

// The wide lane is longer: one more cycle on L1 and on L2 changes it by lambda_WL each.
TEST_F(GNSSLinCombs, LanesOfOneCycle) {
  const long double wide = c / (f1 - f2);
  const long double narrow = c / (f1 + f2);
  const long double one = 1;
  const long double none = 0;
  EXPECT_TRUE(Near(GNSS_L5(one, none), wide, 1e-17L));
  EXPECT_TRUE(Near(GNSS_L5(none, one), -wide, 1e-17L));
  EXPECT_TRUE(Near(GNSS_NLL(one, none), narrow, 1e-18L));
  EXPECT_TRUE(Near(GNSS_NLL(none, one), narrow, 1e-18L));
}

TEST_F(GNSSLinCombs, NarrowLaneCodeIsTheMeanWeightedByFrequency) {
  EXPECT_TRUE(Near(GNSS_NLP(s.P1, s.P2), (f1 * s.P1 + f2 * s.P2) / (f1 + f2), 1e-11L));
}

TEST_F(GNSSLinCombs, CodeAndPhaseOnL1) {
  EXPECT_TRUE(Near(GNSS_CL1(s.P1, s.L1), 2 * s.I1, 1e-10L));
  EXPECT_TRUE(Near(GNSS_CLI(s.P1, s.L1), s.rho, 1e-10L));
}

TEST_F(GNSSLinCombs, GlonassCodeNeedsNoWorkingCoefficients) {
  const long double I2 = s.I1 * 81.0L / 49.0L;
  GLC::LCion1 = GLC::LCion2 = 0;
  EXPECT_TRUE(Near(GNSS_P3R(s.rho + s.I1, s.rho + I2), s.rho, 1e-10L));
}

TEST_F(GNSSLinCombs, WorkingCoefficientsAreReadAtTheCall) {
  GLC::lamb1 = 2.0L;
  GLC::lamb2 = 3.0L;
  const long double ten = 10;
  EXPECT_EQ(GNSS_L4(ten, ten), -10.0L);
  EXPECT_EQ(GNSS_CL1(ten, ten), -10.0L);
  EXPECT_EQ(GNSS_CLI(ten, ten), 15.0L);
}

TEST_F(GNSSLinCombs, ObservationsGiveTheSameValuesWithoutFlags) {
  const gnssobs L1 = Obs(s.L1);
  const gnssobs L2 = Obs(s.L2);
  const gnssobs P1 = Obs(s.P1);
  const gnssobs P2 = Obs(s.P2);
  ExpectFlagless(GNSS_L3(L1, L2), GNSS_L3(s.L1, s.L2));
  ExpectFlagless(GNSS_P3(P1, P2), GNSS_P3(s.P1, s.P2));
  ExpectFlagless(GNSS_L4(L1, L2), GNSS_L4(s.L1, s.L2));
  ExpectFlagless(GNSS_P4(P1, P2), GNSS_P4(s.P1, s.P2));
  ExpectFlagless(GNSS_L5(L1, L2), GNSS_L5(s.L1, s.L2));
  ExpectFlagless(GNSS_NLL(L1, L2), GNSS_NLL(s.L1, s.L2));
  ExpectFlagless(GNSS_NLP(P1, P2), GNSS_NLP(s.P1, s.P2));
  ExpectFlagless(GNSS_MW(L1, L2, P2, P1), GNSS_MW(s.L1, s.L2, s.P2, s.P1));
}

TEST_F(GNSSLinCombs, OneMissingObservationMakesTheCombinationMissing) {
  const gnssobs one{1.0L, 1, 7};
  const gnssobs none;
  ExpectFlagless(GNSS_L4(none, none), 0.0L);
  ExpectFlagless(GNSS_L4(one, none), 0.0L);
  ExpectFlagless(GNSS_L4(none, one), 0.0L);
  ExpectFlagless(GNSS_L3(one, none), 0.0L);
  ExpectFlagless(GNSS_P3(none, one), 0.0L);
  ExpectFlagless(GNSS_P4(one, none), 0.0L);
  ExpectFlagless(GNSS_L5(one, none), 0.0L);
  ExpectFlagless(GNSS_NLL(none, one), 0.0L);
  ExpectFlagless(GNSS_NLP(one, none), 0.0L);
  ExpectFlagless(GNSS_MW(one, none, one, one), 0.0L);
}
