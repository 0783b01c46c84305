#include "ProcIono.h"

#include "GNSS/GNSSLinCombs.h"
#include "SetUnknowns.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Near.h"
#include "support/TinyRun.h"

#include <iomanip>
#include <vector>

namespace {

constexpr long double kG = 5929.0L / 3600.0L - 1; // GPS: alpha2 - alpha1

/// Elevation [rad] at which the slant delay is \p m times the vertical one.
long double ElevationOf(long double m) {
  return std::acos(std::sqrt(1 - 1 / (m * m)) * 6821.0L / 6371.0L);
}

mjd Hours(long double h) {
  mjd t(55844, 0);
  t += 3600 * h;
  return t;
}

/// A record with the given P1-C1, P2-C1 and L4 [m]; 0 leaves P1 or L4 out.
TinyRecord Record(short sat, long double p1c1, long double p2c1, long double l4 = 0,
                  long double elevation = ElevationOf(1)) {
  TinyRecord r;
  r.sat = sat;
  r.C1 = 2.0e7L;
  r.P1 = p1c1 == 0 ? 0 : r.C1 + p1c1;
  r.P2 = r.C1 + p2c1;
  r.L4 = l4;
  r.elevation = elevation;
  return r;
}

/// A run whose reports are collected.
struct Quiet : TinyRun {
  Captured out{std::cout};
  Captured errors{std::cerr};
  void Adjust() {
    std::cout << std::fixed;
    SetUnknowns(ctx);
    ProcIono(ctx);
  }
};

// ---- Three unknowns, solved by hand ------------------------------------------------------------
//
// P2-C1 = b + g M (d + r h) with M in {1, 2} and h in {0, 1}, three observations in each of the
// four cells. In terms of (b, g d, g r) the rows are (1 1 0), (1 1 1), (1 2 0), (1 2 2), so that
// with weight p each N = 3 p B, B = [4 6 3; 6 10 5; 3 5 5], det B = 10, and the diagonal of its
// inverse is (2.5, 1.1, 0.4). The cell pattern (2, -2, -1, 1) is orthogonal to all columns: added
// to the observations, like a spread (+e, 0, -e) within each cell, it stays in the residuals and
// changes no estimate.

struct HandSolved : Quiet {
  static constexpr long double kB = 4;
  static constexpr long double kD = 2.5L;
  static constexpr long double kR = -0.75L;
  static constexpr long double kPattern = 0.125L;
  static constexpr long double kSpread = 0.25L;

  HandSolved() {
    Fill(*this, {{Hours(0), Cells(0, 2 * kPattern, -kPattern)},
                 {Hours(1.0L / 3), {}},
                 {Hours(2.0L / 3), {}},
                 {Hours(1), Cells(1, -2 * kPattern, kPattern)}});
    header.iPC1 = false;
    ctx.ifPhaseObs = false;
    ctx.ifEstREC = ctx.ifEstION = true;
    ctx.NIonUnkT = 2;
    ctx.IonoInterval = 7200;
    ctx.MaxIonGap = 4000;
  }
  static std::vector<TinyRecord> Cells(long double h, long double at1, long double at2) {
    std::vector<TinyRecord> records;
    for (short i = 0; i < 6; ++i) {
      const long double m = i < 3 ? 1 : 2;
      const long double noise = (i < 3 ? at1 : at2) + kSpread * static_cast<long double>(1 - i % 3);
      records.push_back(Record(static_cast<short>(i + 1), 0, kB + kG * m * (kD + kR * h) + noise, 0,
                               ElevationOf(m)));
    }
    return records;
  }
  /// Sum of squared residuals: 3 c^2 (4 + 4 + 1 + 1) + 4 (2 e^2), with weight 2/3 each.
  static constexpr long double VtPv() {
    return 2.0L / 3.0L * (30 * kPattern * kPattern + 8 * kSpread * kSpread);
  }
};

TEST(ProcIono, ThreeUnknownsSolvedByHand) {
  HandSolved run;
  run.Adjust();
  EXPECT_TRUE(Near(run.ctx.xP2C1, HandSolved::kB, 1e-11L));
  EXPECT_TRUE(Near(run.ctx.xION(0, 0), HandSolved::kD, 1e-11L));
  EXPECT_TRUE(Near(run.ctx.xION(0, 1), HandSolved::kR, 1e-11L));
  EXPECT_EQ(run.ctx.IterDone, 2); // linear: the second correction is 0
  EXPECT_TRUE(Near(run.ctx.vtPv, HandSolved::VtPv(), 1e-10L));
}

TEST(ProcIono, CofactorsSolvedByHand) {
  HandSolved run;
  run.Adjust();
  const long double p3 = 3 * 2.0L / 3.0L;
  EXPECT_TRUE(Near(run.ctx.QxxAll(0, 0), 2.5L / p3, 1e-11L));
  EXPECT_TRUE(Near(run.ctx.QxxAll(1, 1), 1.1L / (p3 * kG * kG), 1e-11L));
  EXPECT_TRUE(Near(run.ctx.QxxAll(2, 2), 0.4L / (p3 * kG * kG), 1e-11L));
}

TEST(ProcIono, ObservationsAreCountedOnOverTheIterations) {
  HandSolved run;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObs, 24); // 12 in each of two iterations
  EXPECT_EQ(run.ctx.NRed, 24 - 3);
  EXPECT_TRUE(Near(run.ctx.s0apost, HandSolved::VtPv() / 21, 1e-11L));
  EXPECT_EQ(run.ctx.ObsPerUnk(0), 12); // but those of an unknown are not
}

TEST(ProcIono, MaxIterOneIteratesOnce) {
  HandSolved run;
  run.ctx.MaxIter = 1;
  run.Adjust();
  EXPECT_EQ(run.ctx.IterDone, 1);
  EXPECT_GT(run.ctx.IterThresFin, 1);
  EXPECT_EQ(run.ctx.NObs, 12);
  EXPECT_TRUE(Near(run.ctx.xP2C1, HandSolved::kB, 1e-11L));
}

TEST(ProcIono, SummaryIsOneLine) {
  HandSolved run;
  run.Adjust();
  std::ostringstream variance;
  variance << std::fixed << std::setprecision(4) << std::setw(10) << HandSolved::VtPv() / 21
           << "    [SQRT]: " << std::setprecision(3) << std::setw(10)
           << std::sqrt(HandSolved::VtPv() / 21);
  EXPECT_EQ(run.out.Text(), "ESTIMATION OF IONOSPHERIC DELAY:\n"
                            "--------------------------------\n\n"
                            "PROCESSING DATA:\n"
                            "  DONE!        #OBS:         24     #UNK:          3     #OUT:       "
                            "   0      REF. VAR. APOSTERORI: " +
                                variance.str() + "\n\n");
  EXPECT_EQ(run.errors.Text(), "");
}

TEST(ProcIono, VerboseCountsThePercent) {
  HandSolved run;
  run.ctx.verbose = true;
  run.ctx.MaxIter = 1;
  run.Adjust();
  const std::string erase = "\b\b\b\b\b\b";
  EXPECT_NE(run.errors.Text().find("Zenta::ProcIono(): DETERMINING IONO DELAY AND DCB VALUES!\n"
                                   "Zenta::ProcIono():           1:   Process:       " +
                                   erase + "   0 %" + erase + "  25 %" + erase + "  50 %" + erase +
                                   "  75 %" + erase + " 100 %\n"),
            std::string::npos)
      << run.errors.Text();
}

// ---- The pair P1-C1, P2-C1 -------------------------------------------------------------------

/// Eleven epochs, one GPS record each, with the same P1-C1 and P2-C1 but for one value.
struct Pairs : Quiet {
  Pairs(long double p1c1, long double p2c1, long outlier = -1, long double outP1C1 = 0,
        long double outP2C1 = 0) {
    std::vector<TinyEpoch> epochs;
    for (long i = 0; i < 11; ++i) {
      const bool out = i == outlier;
      epochs.push_back({Hours(static_cast<long double>(i) / 120),
                        {Record(1, out ? outP1C1 : p1c1, out ? outP2C1 : p2c1, 7)}});
    }
    Fill(*this, epochs);
    AddArc(*this, 1, 0, 10);
    ctx.ifEstREC = true;
  }
};

TEST(ProcIono, PairHasTheWeightsOfTwoDifferencesThatShareC1) {
  Pairs run(1.5L, 3);
  run.ctx.ifPhaseObs = false;
  run.Adjust();
  EXPECT_TRUE(Near(run.ctx.xP1C1, 1.5L, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.xP2C1, 3, 1e-9L));
  // inverse of 11 [2/3 -1/3; -1/3 2/3] is [2 1; 1 2]/11, the covariance of the differences
  EXPECT_TRUE(Near(run.ctx.QxxAll(0, 0), 2.0L / 11, 1e-17L));
  EXPECT_TRUE(Near(run.ctx.QxxAll(0, 1), 1.0L / 11, 1e-17L));
  EXPECT_TRUE(Near(run.ctx.QxxAll(1, 1), 2.0L / 11, 1e-17L));
}

TEST(ProcIono, WithoutFtNoMisclosureIsTested) {
  Pairs run(100, 200);
  run.Adjust();
  EXPECT_EQ(run.ctx.NObsOutl, 0);
  EXPECT_TRUE(Near(run.ctx.xP2C1, 200, 1e-9L));
}

TEST(ProcIono, MisclosureLimitOfP1C1StaysAThirdOfTheDefault) {
  // limits: P1-C1 50/3 = 16.67, P2-C1 as given. In the first iteration a misclosure is minus the
  // observation.
  Pairs p1c1(1, 3, 4, 17, 3);
  p1c1.ctx.isMaxfDiff = true;
  p1c1.ctx.MaxfDiff = 100;
  p1c1.ctx.MaxIter = 1;
  p1c1.Adjust();
  EXPECT_EQ(p1c1.ctx.NObsOutl, 1);
  Pairs p2c1(1, 3, 4, 16, 99);
  p2c1.ctx.isMaxfDiff = true;
  p2c1.ctx.MaxfDiff = 100;
  p2c1.ctx.MaxIter = 1;
  p2c1.Adjust();
  EXPECT_EQ(p2c1.ctx.NObsOutl, 0);
}

TEST(ProcIono, P1C1MisclosureOutlierTakesTheWholeRecordOut) {
  Pairs run(1, 3, 4, 17, 3);
  run.ctx.isMaxfDiff = true;
  run.ctx.MaxIter = 1;
  run.Adjust();
  EXPECT_FALSE(run.ctx.ifOP1C1(4));
  EXPECT_FALSE(run.ctx.ifOP2C1(4));
  EXPECT_FALSE(run.ctx.ifOL4(4));
  EXPECT_TRUE(run.ctx.ifOP1C1(5));
  EXPECT_EQ(run.ctx.ObsPerUnk(1), 10);
  EXPECT_NE(run.out.Text().find("  EPH:       4   55844   120.0   PRN:    1  OUTLIER P1-C1 (F):"
                                "    -17.000\n"),
            std::string::npos)
      << run.out.Text();
}

TEST(ProcIono, P2C1MisclosureOutlierLeavesTheP1C1In) {
  Pairs run(1, 3, 4, 1, 60);
  run.ctx.isMaxfDiff = true;
  run.ctx.MaxIter = 1;
  run.Adjust();
  EXPECT_TRUE(run.ctx.ifOP1C1(4));
  EXPECT_FALSE(run.ctx.ifOP2C1(4));
  EXPECT_FALSE(run.ctx.ifOL4(4));
  // normal matrix of the pairs: 11 P1-C1, 10 P2-C1, 10 cross terms
  EXPECT_TRUE(Near(run.ctx.Nall(0, 0), 11 * 2.0L / 3, 1e-17L));
  EXPECT_TRUE(Near(run.ctx.Nall(1, 1), 10 * 2.0L / 3, 1e-17L));
  EXPECT_TRUE(Near(run.ctx.Nall(0, 1), -10.0L / 3, 1e-17L));
}

// ---- Elimination -----------------------------------------------------------------------------

TEST(ProcIono, WithoutThresholdsThereIsNoEliminationPass) {
  Pairs run(1, 3, 4, 1, 30);
  run.Adjust();
  EXPECT_EQ(run.out.Text().find("OUTLIER DETECTION"), std::string::npos);
}

TEST(ProcIono, EliminatedP2C1LeavesTheSolutionOfTheOthers) {
  // After convergence the mean of P2-C1 is 3 + 27/11. The residual of value 4 is that minus 30.
  Pairs run(1, 3, 4, 1, 30);
  run.ctx.isThresBlunder = true;
  run.ctx.ThresBlunder = 10;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObsOutl, 1);
  EXPECT_TRUE(run.ctx.ifOP1C1(4));
  EXPECT_FALSE(run.ctx.ifOP2C1(4));
  EXPECT_TRUE(Near(run.ctx.xP2C1, 3, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.xP1C1, 1, 1e-9L));
  EXPECT_EQ(run.ctx.NObs, 2 * 33 - 1);
  const std::string text = run.out.Text();
  EXPECT_NE(text.find("PROCESSING DATA - OUTLIER DETECTION:\n  EPH:       4   55844   120.0   "
                      "PRN:    1  OUTLIER P2-C1 (V):    -24.545\n  DONE!"),
            std::string::npos)
      << text;
}

TEST(ProcIono, EliminatedL4IsWrittenWithFourDecimals) {
  Pairs run(1, 3);
  run.data.L4(6) = 7.5L; // ambiguity -> 7 + 0.5/11 = 7.0455; residual -0.4545
  run.ctx.isThresBlunderL4 = true;
  run.ctx.ThresBlunderL4 = 0.4L;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObsOutl, 1);
  EXPECT_FALSE(run.ctx.ifOL4(6));
  EXPECT_TRUE(Near(run.ctx.xAmb(0), 7, 1e-12L));
  EXPECT_NE(run.out.Text().find("  OUTLIER L1-L2 (V):    -0.4545\n"), std::string::npos)
      << run.out.Text();
}

TEST(ProcIono, VerboseEndsTheDetectionLineWithTheCount) {
  Pairs run(1, 3);
  run.ctx.verbose = run.ctx.isThresBlunder = true;
  run.Adjust();
  EXPECT_NE(run.errors.Text().find(
                "Zenta::ProcIono(): OUTLIER DETECTION AND ELIMINATION -> 0 OUTLIERS!\n"),
            std::string::npos);
}

TEST(ProcIono, OutlierOfP1C1KeepsItsP2C1) {
  // N of 11 pairs less one P1-C1 and its cross term
  Pairs run(1, 3, 4, 31, 3);
  run.ctx.ifPhaseObs = false;
  run.ctx.isThresBlunder = true;
  run.ctx.ThresBlunder = 10;
  run.Adjust();
  EXPECT_FALSE(run.ctx.ifOP1C1(4));
  EXPECT_TRUE(run.ctx.ifOP2C1(4));
  EXPECT_TRUE(Near(run.ctx.Nall(0, 0), 10 * 2.0L / 3, 1e-17L));
  EXPECT_TRUE(Near(run.ctx.Nall(1, 1), 11 * 2.0L / 3, 1e-17L));
  EXPECT_TRUE(Near(run.ctx.Nall(0, 1), -10.0L / 3, 1e-17L));
  EXPECT_TRUE(Near(run.ctx.xP1C1, 1, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.xP2C1, 3, 1e-9L));
}

TEST(ProcIono, PairOfOutliersTakesItsCrossTermOnce) {
  Pairs run(1, 3, 4, 31, 33);
  run.ctx.ifPhaseObs = false;
  run.ctx.isThresBlunder = true;
  run.ctx.ThresBlunder = 10;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObsOutl, 2);
  EXPECT_EQ(run.ctx.NObs, 2 * 22 - 2);
  EXPECT_TRUE(Near(run.ctx.Nall(0, 0), 10 * 2.0L / 3, 1e-17L));
  EXPECT_TRUE(Near(run.ctx.Nall(0, 1), -10.0L / 3, 1e-17L));
  // The sum is of the residuals before the last update: 30/11 m in both values of ten pairs,
  // 2/3 (30/11)^2 each. A second cross term would leave less.
  EXPECT_TRUE(Near(run.ctx.vtPv, 10 * 2.0L / 3 * 900 / 121, 1e-9L));
}

TEST(ProcIono, EliminationTestsWhatTheMisclosureTestLeftOut) {
  // 60 m exceeds "-ft" in both iterations, so that ten values are in the matrix. The residual
  // exceeds "-bt" too: an eleventh value is subtracted that was never added.
  Pairs run(1, 3, 4, 1, 60);
  run.header.iPC1 = false;
  run.ctx.ifPhaseObs = false;
  run.ctx.isMaxfDiff = run.ctx.isThresBlunder = true;
  run.ctx.ThresBlunder = 10;
  run.Adjust();
  EXPECT_TRUE(Near(run.ctx.Nall(0, 0), 9 * 2.0L / 3, 1e-17L));
  EXPECT_EQ(run.ctx.NObs, 2 * 10 - 1);
  EXPECT_EQ(run.ctx.ObsPerUnk(0), 10);
}

TEST(ProcIono, ResidualAtTheThresholdStays) {
  // two values 4 m off the mean of all on either side
  Pairs run(1, 3, 4, 1, 7);
  run.header.iPC1 = false;
  run.ctx.ifPhaseObs = false;
  run.data.P2(5) = run.data.C1(5).GetObs() - 1;
  run.ctx.isThresBlunder = true;
  run.ctx.ThresBlunder = 4.0001L;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObsOutl, 0);
}

// ---- Inversions ------------------------------------------------------------------------------

TEST(ProcIono, IterationsWithOneNormalMatrixInvertItOnce) {
  HandSolved run;
  run.Adjust();
  EXPECT_EQ(run.ctx.IterDone, 2);
  EXPECT_EQ(run.ctx.NInv, 1);
}

TEST(ProcIono, EliminationThatFindsNothingInvertsNothing) {
  Pairs run(1, 3);
  run.ctx.isThresBlunder = run.ctx.isThresBlunderL4 = true;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObsOutl, 0);
  EXPECT_EQ(run.ctx.NInv, 1);
}

TEST(ProcIono, EliminationThatTakesSomethingOutInvertsOnceMore) {
  Pairs run(1, 3, 4, 1, 30);
  run.ctx.isThresBlunder = true;
  run.ctx.ThresBlunder = 10;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObsOutl, 1);
  EXPECT_EQ(run.ctx.NInv, 2);
}

TEST(ProcIono, MisclosureLimitThatBitesOtherwiseInvertsOnceMore) {
  // 60 m exceeds 50 m in the first iteration; in the second, 15 m from the mean, it is used
  Pairs run(1, 45, 4, 1, 60);
  run.ctx.isMaxfDiff = true;
  run.ctx.MaxfDiff = 50;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObsOutl, 0);
  EXPECT_EQ(run.ctx.IterDone, 3);
  EXPECT_EQ(run.ctx.NInv, 2);
}

// ---- Selection -------------------------------------------------------------------------------

TEST(ProcIono, RecordsAtTheCutOffAreNotUsed) {
  Pairs run(1, 3);
  run.ctx.MinElevation = 30;
  run.ctx.ELV(2) = 3.141592653589793 * 30.0L / 180; // exactly the cut-off
  run.Adjust();
  EXPECT_FALSE(run.ctx.ifOP1C1(2));
  EXPECT_EQ(run.ctx.ObsPerUnk(0), 10);
}

TEST(ProcIono, L4OutsideEveryArcIsNotUsed) {
  Pairs run(1, 3);
  run.ctx.AmbIndex(0, 2) = 8; // the arc ends at epoch 8
  run.Adjust();
  EXPECT_TRUE(run.ctx.ifOL4(8));
  EXPECT_FALSE(run.ctx.ifOL4(9));
  EXPECT_TRUE(run.ctx.ifOP2C1(9));
}

TEST(ProcIono, AmbiguityWithoutObservationsKeepsItsValue) {
  Pairs run(1, 3);
  AddArc(run, 2, 0, 10, 12.5L); // satellite 2 is not observed
  run.Adjust();
  EXPECT_EQ(run.ctx.ObsPerUnk(3), 0);
  EXPECT_EQ(run.ctx.xAmb(1), 12.5L);
}

TEST(ProcIono, GlonassHasNoReceiverBias) {
  Quiet run;
  std::vector<TinyEpoch> epochs;
  for (long i = 0; i < 11; ++i)
    epochs.push_back(
        {Hours(static_cast<long double>(i) / 120), {Record(1, 1, 3), Record(105, 0, 9)}});
  Fill(run, epochs);
  run.ctx.ifEstREC = run.ctx.ifEstGLN = true;
  run.ctx.ifPhaseObs = false;
  run.Adjust();
  EXPECT_TRUE(Near(run.ctx.xP2C1, 3, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.xbSAT(1, 1), 9, 1e-9L)); // satellite 105 alone
}

TEST(ProcIono, SystemsThatAreNotProcessedAreLeftOut) {
  Quiet run;
  std::vector<TinyEpoch> epochs;
  for (long i = 0; i < 11; ++i)
    epochs.push_back({Hours(static_cast<long double>(i) / 120),
                      {Record(1, 1, 3), Record(105, 1, 9), Record(201, 1, 9)}});
  Fill(run, epochs);
  run.ctx.isGLN = false;
  run.ctx.ifEstREC = true;
  run.ctx.ifPhaseObs = false;
  run.ctx.MaxIter = 1;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObs, 22);
}

TEST(ProcIono, OnlyIonosphereUsesP1C1WithoutUnknowns) {
  // the P1-C1 value counts and enters vtPv with its weight and its cross term
  Quiet run;
  std::vector<TinyEpoch> epochs;
  for (long i = 0; i < 4; ++i)
    epochs.push_back({Hours(static_cast<long double>(i) / 120), {Record(1, 0.5L, kG * 2)}});
  Fill(run, epochs);
  run.ctx.ifEstION = true;
  run.ctx.NIonUnkT = 2;
  run.ctx.IonoInterval = 300;
  run.ctx.ifPhaseObs = false;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObs, 8 * run.ctx.IterDone);
  // With f1 = -0.5 fixed, f2 minimises 2/3 f2^2 - 2/3 f1 f2: f2 = f1/2 = -0.25, and
  // vtPv = 4 * 2/3 (0.25 + 0.0625 - 0.125) = 0.5
  EXPECT_TRUE(Near(run.ctx.vtPv, 0.5L, 1e-9L));
}

TEST(ProcIono, EpochsOfAShortBlockGoWithTheIntervalBehindIt) {
  // 8 epochs, a gap, 3 epochs that get no interval, a gap, 8 epochs
  Quiet run;
  std::vector<TinyEpoch> epochs;
  mjd t(55844, 0);
  for (const int length : {8, 3, 8}) {
    for (int i = 0; i < length; ++i) {
      epochs.push_back({t, {Record(1, 0, 2)}});
      t += 30.0L;
    }
    t += 970.0L;
  }
  Fill(run, epochs);
  run.ctx.ifEstION = true;
  run.ctx.NIonUnkT = 2;
  run.ctx.IonoInterval = 300;
  run.ctx.ifPhaseObs = false;
  run.Adjust();
  EXPECT_EQ(run.ctx.ObsPerUnk(0), 8);
  EXPECT_EQ(run.ctx.ObsPerUnk(2), 11);
}

// ---- Ionosphere
// ----------------------------------------------------------------------------------

TEST(ProcIono, ContinuityConstraintSolvedByHand) {
  // Epochs every 20 minutes, intervals of an hour: 0 to 3 and 4 to 7, the second 4/3 h behind the
  // first. Vertical delays y = (1, 2, 1, 3) at epochs 0, 3, 4, 7, the latter two 0 and 1 h into
  // the second interval. With d1 = d0 + 4/3 r0 the last value gives r1 alone, and a line through
  // (0, 1), (1, 2), (4/3, 1) remains: N = [3 7/3; 7/3 25/9], t = (4, 10/3), det N = 26/9,
  // d0 = (100 - 70)/9 / (26/9) = 15/13, r0 = (10 - 28/3) / (26/9) = 3/13, d1 = 19/13,
  // r1 = 3 - 19/13 = 20/13.
  Quiet run;
  std::vector<TinyEpoch> epochs;
  for (int i = 0; i < 8; ++i) epochs.push_back({Hours(i / 3.0L), {}});
  const long at[] = {0, 3, 4, 7};
  const long double y[] = {1, 2, 1, 3};
  for (int k = 0; k < 4; ++k)
    epochs[static_cast<std::size_t>(at[k])].records.push_back(Record(1, 0, kG * y[k]));
  Fill(run, epochs);
  run.header.iPC1 = false;
  run.ctx.ifPhaseObs = false;
  run.ctx.ifEstION = true;
  run.ctx.NIonUnkT = 2;
  run.ctx.IonoInterval = 3600;
  run.ctx.MaxIonGap = 1201;
  run.Adjust();
  ASSERT_EQ(run.ctx.nIono, 2);
  ASSERT_EQ(run.ctx.nIonoConst, 1);
  EXPECT_TRUE(Near(run.ctx.xION(0, 0), 15.0L / 13, 1e-10L));
  EXPECT_TRUE(Near(run.ctx.xION(0, 1), 3.0L / 13, 1e-10L));
  EXPECT_TRUE(Near(run.ctx.xION(1, 0), 19.0L / 13, 1e-10L));
  EXPECT_TRUE(Near(run.ctx.xION(1, 1), 20.0L / 13, 1e-10L));
  // residuals of the line: (2, -8, 6)/13, of the last value 0
  EXPECT_TRUE(Near(run.ctx.vtPv, 2.0L / 3 * kG * kG * (4 + 64 + 36) / 169, 1e-10L));
  EXPECT_EQ(run.ctx.NRed, 1 + (2 * 4 - 4)); // the constraint counts as an observation
}

TEST(ProcIono, IntervalWithoutObservationsFollowsTheConstraint) {
  // No record in the second interval: its rate stays 0. The 1 on its diagonals holds its delay
  // back, so that iterations carry it over step by step.
  Quiet run;
  std::vector<TinyEpoch> epochs;
  for (int i = 0; i < 8; ++i) {
    const long double h = i / 3.0L;
    epochs.push_back({Hours(h), {}});
    if (i < 4) epochs.back().records.push_back(Record(1, 0, kG * (2 + 0.5L * h)));
  }
  Fill(run, epochs);
  run.header.iPC1 = false;
  run.ctx.ifPhaseObs = false;
  run.ctx.ifEstION = true;
  run.ctx.NIonUnkT = 2;
  run.ctx.IonoInterval = 3600;
  run.ctx.MaxIonGap = 1201;
  run.ctx.IterThres = 1e-9;
  run.ctx.MaxIter = 1000;
  run.Adjust();
  EXPECT_EQ(run.ctx.ObsPerUnk(2), 0);
  EXPECT_TRUE(Near(run.ctx.xION(0, 0), 2, 1e-6L));
  EXPECT_TRUE(Near(run.ctx.xION(1, 0), 2 + 0.5L * 4 / 3, 1e-6L));
  EXPECT_EQ(run.ctx.xION(1, 1), 0);
}

TEST(ProcIono, GlonassDelayRefersToTheGpsFrequency) {
  // slots 5 and 6 on channels -7 and 6: f1 = 1598.0625 and 1605.375 MHz, f2 = 7/9 of it
  GLONASSc::SetFrequency(-7, 4);
  GLONASSc::SetFrequency(6, 5);
  const auto p2c1 = [](long double f1, long double m, long double h) {
    return std::pow(1575.42L / f1, 2) * (81.0L / 49.0L - 1) * m * (3 - h);
  };
  Quiet run;
  std::vector<TinyEpoch> epochs;
  for (int i = 0; i < 4; ++i) {
    const long double h = i / 3.0L;
    epochs.push_back({Hours(h),
                      {Record(105, 0, p2c1(1598.0625L, 1, h)),
                       Record(106, 0, p2c1(1605.375L, 2, h), 0, ElevationOf(2))}});
  }
  Fill(run, epochs);
  run.ctx.ifPhaseObs = false;
  run.ctx.ifEstION = true;
  run.ctx.NIonUnkT = 2;
  run.ctx.IonoInterval = 7200;
  run.ctx.MaxIonGap = 1201;
  run.Adjust();
  EXPECT_TRUE(Near(run.ctx.xION(0, 0), 3, 1e-11L));
  EXPECT_TRUE(Near(run.ctx.xION(0, 1), -1, 1e-11L));
  EXPECT_TRUE(Near(run.ctx.vtPv, 0, 1e-20L));
}

// ---- All kinds of unknowns, solved a second way
// --------------------------------------------------
//
// Two GPS satellites and a GLONASS one, six epochs in one interval. The observations are made up
// and fit no model. Each pair P1-C1, P2-C1 with its weight matrix w [[2/3, -1/3], [-1/3, 2/3]] is
// the same as its sum with weight w/6 and its difference with weight w/2 (eigenvalues 1/3 and 1),
// so that the rows, times the roots of their weights, can be orthogonalised: no normal equations.

using Column = std::vector<long double>;

long double Dot(const Column& a, const Column& b) {
  long double sum = 0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += a[i] * b[i];
  return sum;
}

/// Least squares by the modified Gram-Schmidt process.
struct Orthogonal {
  Column x;
  Column cofactor; ///< diagonal of the inverse of AT A
  Column residual; ///< A x - b

  Orthogonal(std::vector<Column> A, Column b) {
    const std::size_t n = A.size();
    std::vector<Column> R(n, Column(n, 0));
    Column c(n);
    for (std::size_t j = 0; j < n; ++j) {
      R[j][j] = std::sqrt(Dot(A[j], A[j]));
      for (long double& a : A[j]) a /= R[j][j];
      for (std::size_t k = j + 1; k < n; ++k) {
        R[j][k] = Dot(A[j], A[k]);
        for (std::size_t i = 0; i < b.size(); ++i) A[k][i] -= R[j][k] * A[j][i];
      }
      c[j] = Dot(A[j], b);
      for (std::size_t i = 0; i < b.size(); ++i) b[i] -= c[j] * A[j][i];
    }
    x = Back(R, c);
    for (long double& v : b) v = -v;
    residual = b;
    // R inverse column by column; the diagonal of R^-1 R^-T sums the squares of its rows
    cofactor.assign(n, 0);
    for (std::size_t j = 0; j < n; ++j) {
      Column e(n, 0);
      e[j] = 1;
      const Column column = Back(R, e);
      for (std::size_t i = 0; i < n; ++i) cofactor[i] += column[i] * column[i];
    }
  }
  static Column Back(const std::vector<Column>& R, Column c) {
    for (std::size_t j = R.size(); j-- > 0;) {
      for (std::size_t k = j + 1; k < R.size(); ++k) c[j] -= R[j][k] * c[k];
      c[j] /= R[j][j];
    }
    return c;
  }
};

struct AllKinds : Quiet {
  static constexpr std::size_t kUnknowns = 11; // 4 biases, 3 ambiguities, delay, rate, east, north
  std::vector<Column> A = std::vector<Column>(kUnknowns);
  Column b;

  AllKinds() {
    GLONASSc::SetFrequency(3, 4);
    std::vector<TinyEpoch> epochs;
    int seed = 0;
    for (int i = 0; i < 6; ++i) {
      epochs.push_back({Hours(i / 6.0L), {}});
      for (const int sat : {1, 2, 105}) {
        seed += 6;
        TinyRecord r =
            Record(static_cast<short>(sat), Any(seed), 10 + Any(seed + 1), Any(seed + 2));
        r.elevation = 0.9L + 0.5L * Any(seed + 3) / 3;
        r.azimuth = 3 + Any(seed + 4);
        r.weight = 1 + Any(seed + 5) / 4;
        AddRows(r, i / 6.0L, sat == 105, sat == 1 ? 4U : sat == 2 ? 5U : 6U);
        epochs.back().records.push_back(r);
      }
    }
    Fill(*this, epochs);
    for (const int sat : {1, 2, 105}) AddArc(*this, static_cast<short>(sat), 0, 5, 20);
    ctx.ifEstREC = ctx.ifEstGLN = ctx.ifEstION = ctx.ifEstIGrad = true;
    ctx.NIonUnkT = 4;
    ctx.IonoInterval = 7200;
    ctx.MaxIonGap = 1201;
  }
  /// Scattered between -3 and 3, none of them near 0.
  static long double Any(int seed) {
    const long double v = 3 * std::sin(1.7L * seed * seed + 0.3L);
    return std::fabs(v) < 0.01L ? 0.5L : v;
  }
  void AddRows(const TinyRecord& r, long double h, bool glonass, std::size_t ambiguity) {
    const long double z = std::asin(6371.0L / 6821.0L * std::cos(r.elevation));
    // channel 3: 1603.6875 MHz and 7/9 of it
    const long double g = glonass ? std::pow(1575.42L / 1603.6875L, 2) * (81.0L / 49.0L - 1) : kG;
    const long double v = g / std::cos(z);
    const long double east = v * std::tan(z) * std::sin(r.azimuth);
    const long double north = v * std::tan(z) * std::cos(r.azimuth);
    Column p1c1(kUnknowns, 0);
    Column p2c1 = p1c1;
    p1c1[glonass ? 2 : 0] = 1;
    p2c1[glonass ? 3 : 1] = 1;
    Column l4 = Column(kUnknowns, 0);
    l4[ambiguity] = 1;
    for (Column* row : {&p2c1, &l4}) {
      (*row)[7] = v;
      (*row)[8] = v * h;
      (*row)[9] = east;
      (*row)[10] = north;
    }
    const long double d1 = r.P1 - r.C1;
    const long double d2 = r.P2 - r.C1;
    AddRow(p1c1, p2c1, 1, d1 + d2, r.weight / 6);
    AddRow(p1c1, p2c1, -1, d1 - d2, r.weight / 2);
    AddRow(l4, p1c1, 0, r.L4, 100 * r.weight);
  }
  /// first + sign * second = value, with weight \p w.
  void AddRow(const Column& first, const Column& second, int sign, long double value,
              long double w) {
    for (std::size_t k = 0; k < kUnknowns; ++k)
      A[k].push_back(std::sqrt(w) * (first[k] + sign * second[k]));
    b.push_back(std::sqrt(w) * value);
  }
};

TEST(ProcIono, AllKindsOfUnknownsEqualAnOrthogonalSolution) {
  AllKinds run;
  run.Adjust();
  const Orthogonal truth(run.A, run.b);
  const KorvanC& ctx = run.ctx;
  const long double found[] = {ctx.xP1C1,      ctx.xP2C1,        ctx.xbSAT(2, 0), ctx.xbSAT(2, 1),
                               ctx.xAmb(0),    ctx.xAmb(1),      ctx.xAmb(2),     ctx.xION(0, 0),
                               ctx.xION(0, 1), ctx.xIGRAD(0, 0), ctx.xIGRAD(0, 1)};
  for (std::size_t k = 0; k < AllKinds::kUnknowns; ++k) {
    EXPECT_TRUE(Near(found[k], truth.x[k], 1e-11L)) << k;
    const long j = static_cast<long>(k);
    EXPECT_TRUE(Near(ctx.QxxAll(j, j) / truth.cofactor[k], 1, 1e-12L)) << k;
  }
  EXPECT_TRUE(Near(ctx.vtPv, Dot(truth.residual, truth.residual), 1e-9L));
  EXPECT_EQ(ctx.NObs, 54 * ctx.IterDone);
  EXPECT_EQ(ctx.ObsPerUnk(7), 36);
}

TEST(ProcIono, PhaseAloneWithGradientsNeedsTheAmbiguities) {
  // the same without code: ambiguities and delay of one interval hang together through the
  // mapping alone, and the solution still is the orthogonal one
  AllKinds run;
  run.ctx.ifCodeObs = run.ctx.ifEstREC = run.ctx.ifEstGLN = false;
  run.header.iPC1 = run.header.iPC4 = false;
  std::vector<Column> A(7);
  Column b;
  for (std::size_t i = 2; i < run.b.size(); i += 3) {
    for (std::size_t k = 0; k < 7; ++k) A[k].push_back(run.A[k + 4][i]);
    b.push_back(run.b[i]);
  }
  run.Adjust();
  const Orthogonal truth(A, b);
  EXPECT_TRUE(Near(run.ctx.xAmb(2), truth.x[2], 1e-9L));
  EXPECT_TRUE(Near(run.ctx.xION(0, 0), truth.x[3], 1e-9L));
  EXPECT_TRUE(Near(run.ctx.xION(0, 1), truth.x[4], 1e-9L));
  EXPECT_TRUE(Near(run.ctx.xIGRAD(0, 0), truth.x[5], 1e-9L));
  EXPECT_TRUE(Near(run.ctx.xIGRAD(0, 1), truth.x[6], 1e-9L));
}

// ---- Redundancy
// ----------------------------------------------------------------------------------

TEST(ProcIono, WithoutRedundancyTheVarianceIsZeroAndWarnedAbout) {
  // a delay and a rate from two observations
  Quiet run;
  Fill(run, {{Hours(0), {Record(1, 0, kG * 2)}},
             {Hours(1.0L / 3), {}},
             {Hours(2.0L / 3), {}},
             {Hours(1), {Record(1, 0, kG * 3)}}});
  run.ctx.ifPhaseObs = false;
  run.ctx.ifEstION = true;
  run.ctx.NIonUnkT = 2;
  run.ctx.IonoInterval = 7200;
  run.ctx.MaxIonGap = 1201;
  run.ctx.MaxIter = 1;
  run.Adjust();
  EXPECT_EQ(run.ctx.NRed, 0);
  EXPECT_EQ(run.ctx.s0apost, 0);
  EXPECT_TRUE(Near(run.ctx.xION(0, 1), 1, 1e-12L));
  EXPECT_NE(run.errors.Text().find("#### Zenta: Warning -> NO REDUNDANT OBSERVATIONS - REFERENCE "
                                   "VARIANCE SET TO 0! ####"),
            std::string::npos)
      << run.errors.Text();
}

TEST(ProcIono, EstimationWithoutObservationsIsWarnedAbout) {
  Pairs run(1, 3);
  for (long k = 0; k < 11; ++k) run.ctx.ELV(k) = 0;
  run.Adjust();
  EXPECT_EQ(run.ctx.NObs, 0);
  EXPECT_NE(
      run.errors.Text().find("#### Zenta: Warning -> NO OBSERVATIONS USED IN ESTIMATION! ####"),
      std::string::npos)
      << run.errors.Text();
}

TEST(ProcIono, MoreUnknownsThanObservationsGiveANegativeVariance) {
  // three ambiguities that are not observed
  Pairs run(1, 3, 4, 1, 9);
  run.ctx.MaxIter = 1;
  for (short sat = 2; sat < 40; ++sat) AddArc(run, sat, 0, 10);
  run.Adjust();
  EXPECT_EQ(run.ctx.NRed, 33 - 41);
  EXPECT_LT(run.ctx.s0apost, 0);
}

// ---- Failures --------------------------------------------------------------------------------

TEST(ProcIonoDeathTest, SingularNormalMatrixEndsTheProgram) {
  // biases of a satellite and of the receiver, forced together, can't be told apart
  EXPECT_ENDS(
      {
        TinyRun run;
        std::vector<TinyEpoch> epochs;
        for (long i = 0; i < 11; ++i)
          epochs.push_back({Hours(static_cast<long double>(i) / 120), {Record(1, 1, 3)}});
        Fill(run, epochs);
        run.ctx.ifEstREC = true;
        run.ctx.ifPhaseObs = false;
        SetUnknowns(run.ctx);
        run.ctx.ixbSAT(0, 0) = 0;
        run.ctx.ixbSAT(0, 1) = 1;
        run.ctx.ixP1C1 = 2;
        run.ctx.ixP2C1 = 3;
        run.ctx.NUnk = 4;
        run.ctx.Nall.Resize(4, 4, 0.0L);
        run.ctx.tall.Resize(4, 1, 0.0L);
        ProcIono(run.ctx);
      },
      "PROBLEMS INVERTING MATRIX N - SINGULARITY POSSIBILITY!!!");
}

TEST(ProcIonoDeathTest, SingleUnknownWhoseValuesAllGoEndsTheProgram) {
  // six values of 3 m and six of 9 m: all are 3 m off their mean
  EXPECT_ENDS(
      {
        TinyRun run;
        std::vector<TinyEpoch> epochs;
        for (long i = 0; i < 12; ++i)
          epochs.push_back(
              {Hours(static_cast<long double>(i) / 120), {Record(1, 0, i % 2 == 0 ? 3 : 9)}});
        Fill(run, epochs);
        run.header.iPC1 = false;
        run.ctx.ifEstREC = run.ctx.isThresBlunder = true;
        run.ctx.ThresBlunder = 1;
        run.ctx.ifPhaseObs = false;
        SetUnknowns(run.ctx);
        ProcIono(run.ctx);
      },
      "PROBLEMS INVERTING MATRIX N - SINGULARITY POSSIBILITY!!!");
}

TEST(ProcIonoDeathTest, NothingToEstimateEndsWithTheReportOfTheInverse) {
  EXPECT_ENDS(
      {
        TinyRun run;
        Fill(run, {{Hours(0), {Record(1, 1, 3)}}});
        run.ctx.ifEstREC = true; // one value is too few for a bias
        run.ctx.ifPhaseObs = false;
        SetUnknowns(run.ctx);
        ProcIono(run.ctx);
      },
      "Matrix is not defined:  \\[    0,    0\\]");
}

TEST(ProcIonoDeathTest, JoinedRestOfAnInnerBlockLeavesTheLastEpochsWithoutARow) {
  // 12 epochs of 30 s in intervals of 300 s, a gap, 8 more: one record short
  EXPECT_ENDS(
      {
        TinyRun run;
        std::vector<TinyEpoch> epochs;
        for (long i = 0; i < 20; ++i)
          epochs.push_back(
              {Hours((static_cast<long double>(i) + (i < 12 ? 0 : 40)) / 120), {Record(1, 1, 3)}});
        Fill(run, epochs);
        run.ctx.ifEstION = true;
        run.ctx.NIonUnkT = 2;
        run.ctx.IonoInterval = 300;
        run.ctx.ifPhaseObs = false;
        SetUnknowns(run.ctx);
        ProcIono(run.ctx);
      },
      "Row index not in range:     1 -> \\[    0,    0\\]");
}

TEST(ProcIonoDeathTest, IntervalFarLongerThanTheDataEndsWithTheReportOfTheTable) {
  // 210 s are less than a quarter of the hour: no interval is left
  EXPECT_ENDS(
      {
        TinyRun run;
        std::vector<TinyEpoch> epochs;
        for (long i = 0; i < 8; ++i)
          epochs.push_back({Hours(static_cast<long double>(i) / 120), {Record(1, 1, 3)}});
        Fill(run, epochs);
        run.ctx.ifEstION = true;
        run.ctx.NIonUnkT = 2;
        run.ctx.IonoInterval = 3600;
        run.ctx.ifPhaseObs = false;
        SetUnknowns(run.ctx);
        ProcIono(run.ctx);
      },
      "Matrix is not set:  \\[    0,    2\\]");
}

TEST(ProcIonoDeathTest, JoinedShortRestEndsWithTheRangeReport) {
  // 23 epochs of 30 s in intervals of 300 s leave one epoch over
  EXPECT_ENDS(
      {
        TinyRun run;
        std::vector<TinyEpoch> epochs;
        for (long i = 0; i < 23; ++i)
          epochs.push_back({Hours(static_cast<long double>(i) / 120), {Record(1, 1, 3)}});
        Fill(run, epochs);
        run.ctx.ifEstION = true;
        run.ctx.NIonUnkT = 2;
        run.ctx.IonoInterval = 300;
        run.ctx.ifPhaseObs = false;
        SetUnknowns(run.ctx);
        ProcIono(run.ctx);
      },
      "Row index not in range:     2 -> \\[    0,    1\\]");
}

// ---- Helpers ---------------------------------------------------------------------------------

TEST(ResetNS, LeavesTheBorder) {
  matrix<long double> N(3, 3, 5.0L);
  matrix<long double> t(3, 1, 6.0L);
  ResetNS(N, t, 2);
  EXPECT_EQ(N(1, 1), 0);
  EXPECT_EQ(N(0, 2), 5);
  EXPECT_EQ(N(2, 1), 5);
  EXPECT_EQ(t(1), 0);
  EXPECT_EQ(t(2), 6);
}

TEST(PartNorm, CountsTheLeadingElements) {
  matrix<long double> x(3, 1);
  x(0) = 3;
  x(1) = -4;
  x(2) = 100;
  EXPECT_EQ(PartNorm(x, 2), 5);
  EXPECT_EQ(PartNorm(x, 0), 0);
}

} // namespace
