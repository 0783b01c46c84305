#include "ProcIono.h"

#include "SetUnknowns.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Near.h"
#include "support/TinyRun.h"

#include <iomanip>

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
