#include "ProcIonoEph.h"

#include "GNSS/GNSSLinCombs.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/Near.h"
#include "support/TinyRun.h"

#include <array>
#include <cmath>
#include <cstring>
#include <iomanip>
#include <sstream>
#include <vector>

namespace {

constexpr long double kG = 5929.0L / 3600.0L - 1; // GPS: alpha2 - alpha1

/// Elevation [rad] at which the slant delay is \p m times the vertical one.
long double ElevationOf(long double m) {
  return std::acos(std::sqrt(1 - 1 / (m * m)) * 6821.0L / 6371.0L);
}

/// A record whose P2-C1 and L4 [m] are given, seen along \p m times the vertical; 0 leaves the L4
/// out.
TinyRecord Seen(short sat, long double p2c1, long double m, long double azimuth = 0,
                long double l4 = 0) {
  TinyRecord r;
  r.sat = sat;
  r.C1 = 2.0e7L;
  r.P2 = r.C1 + p2c1;
  r.L4 = l4;
  r.elevation = ElevationOf(m);
  r.azimuth = azimuth;
  return r;
}

struct Line {
  std::string epoch;
  std::vector<long double> numbers; ///< value, error, value, error, ...
};

/// A run behind its adjustment: every value took part, nothing is a bias.
struct Epochwise : TinyRun {
  Captured out{std::cout};
  Captured errors{std::cerr};

  explicit Epochwise(const std::vector<std::vector<TinyRecord>>& epochs, bool gradients = false) {
    mjdns::NDecSecond = 1; // as the results report leaves it
    std::vector<TinyEpoch> timed;
    mjd t(55844, 0);
    for (const auto& records : epochs) {
      timed.push_back({t, records});
      t += 30.0L;
    }
    Fill(*this, timed);
    ctx.ifEstION = ctx.ifEstIONEph = true;
    ctx.ifEstIGrad = gradients;
    ctx.ixbSAT.Resize(data.satList.Length(), 2, -1);
    ctx.xbSAT.Resize(data.satList.Length(), 2, 0.0L);
    ctx.ifOP1C1.Resize(data.nsatall, 1, true);
    ctx.ifOP2C1.Resize(data.nsatall, 1, true);
    ctx.ifOL4.Resize(data.nsatall, 1, true);
  }

  /// The lines of the epochs, between the two rules.
  std::vector<Line> Solve() {
    std::cout << std::fixed;
    ProcIonoEph(ctx);
    std::istringstream text(out.Text());
    std::vector<Line> lines;
    std::string row;
    for (int rules = 0; std::getline(text, row);) {
      if (row.rfind(" ---", 0) == 0) ++rules;
      if (rules != 1 || row.rfind(" ---", 0) == 0) continue;
      Line line{row.substr(0, 15), {}};
      std::string rest = row.substr(15);
      for (std::size_t at = rest.find("+-"); at != std::string::npos; at = rest.find("+-"))
        rest.replace(at, 2, "  ");
      std::istringstream numbers(rest);
      for (std::string number; numbers >> number;) line.numbers.push_back(std::stold(number));
      lines.push_back(line);
    }
    return lines;
  }
};

/// Printed with four decimals.
testing::AssertionResult Prints(long double printed, long double truth) {
  return Near(printed, truth, 0.5001e-4L);
}

// ---- The delay alone ---------------------------------------------------------------------------

TEST(ProcIonoEph, DelayIsTheWeightedMeanOfItsObservations) {
  // P2-C1 = g M v: slant values 2 and 2.4 + 0.3 along M = 1 and 1.2, weights 1 and 0.5
  const long double m[] = {1, 1.2L};
  const long double y[] = {kG * 2, kG * 2.7L};
  const long double w[] = {1, 0.5L};
  Epochwise run({{Seen(1, y[0], m[0]), Seen(2, y[1], m[1])}});
  run.ctx.WGHT(1) = w[1];
  const std::vector<Line> lines = run.Solve();
  ASSERT_EQ(lines.size(), 1U);
  long double n = 0;
  long double sum = 0;
  for (int i = 0; i < 2; ++i) {
    n += w[i] * kG * kG * m[i] * m[i];
    sum += w[i] * kG * m[i] * y[i];
  }
  const long double delay = sum / n;
  long double square = 0; // of the residuals; the redundancy is 1
  for (int i = 0; i < 2; ++i) square += w[i] * std::pow(y[i] - kG * m[i] * delay, 2);
  EXPECT_EQ(lines[0].epoch, "  55844     0.0");
  ASSERT_EQ(lines[0].numbers.size(), 2U);
  EXPECT_TRUE(Prints(lines[0].numbers[0], delay));
  EXPECT_TRUE(Prints(lines[0].numbers[1], std::sqrt(square / n)));
}

TEST(ProcIonoEph, OneObservationGivesNoLineAndTwoGiveOne) {
  Epochwise run({{Seen(1, 1, 1)}, {Seen(1, 1, 1), Seen(2, 1.5L, 1.5L)}, {}});
  const std::vector<Line> lines = run.Solve();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].epoch, "  55844    30.0");
  EXPECT_NE(run.out.Text().find("  #of estimated Iono delays: 1\n\n"), std::string::npos);
}

TEST(ProcIonoEph, BiasesOfReceiverAndSatelliteAreTakenOut) {
  // GPS: receiver 4 m and satellite -1 m; GLONASS: satellite 7 m alone
  GLONASSc::SetFrequency(1, 4);
  const long double r = std::pow(1575.42L / 1246.4375L, 2) - std::pow(1575.42L / 1602.5625L, 2);
  Epochwise run({{Seen(1, kG * 2 + 3, 1), Seen(105, r * 2 + 7, 1)}});
  run.ctx.ixP2C1 = 0;
  run.ctx.xP2C1 = 4;
  run.ctx.ixbSAT(0, 1) = 1;
  run.ctx.xbSAT(0, 1) = -1;
  run.ctx.ixbSAT(1, 1) = 2;
  run.ctx.xbSAT(1, 1) = 7;
  run.ctx.xbSAT(1, 0) = 99; // P1-C1 has no part here
  const std::vector<Line> lines = run.Solve();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(Prints(lines[0].numbers[0], 2));
}

TEST(ProcIonoEph, BiasesThatAreNoUnknownsDoNotEnter) {
  Epochwise run({{Seen(1, kG * 2, 1), Seen(2, kG * 3, 1.5L)}});
  run.ctx.xP2C1 = 4;
  run.ctx.xbSAT(0, 1) = -1;
  const std::vector<Line> lines = run.Solve();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(Prints(lines[0].numbers[0], 2));
}

TEST(ProcIonoEph, GlonassRefersToTheGpsFrequencyThroughItsChannel) {
  // slot 5 on channel -7, slot 6 on channel 6: f1 = 1598.0625 and 1605.375 MHz, f2 = 7/9 of it
  GLONASSc::SetFrequency(-7, 4);
  GLONASSc::SetFrequency(6, 5);
  const auto factor = [](long double f1) {
    return std::pow(1575.42L / f1, 2) * (81.0L / 49.0L - 1);
  };
  Epochwise run(
      {{Seen(105, factor(1598.0625L) * 5 * 1.25L, 1.25L), Seen(106, factor(1605.375L) * 5, 1)}});
  const std::vector<Line> lines = run.Solve();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(Prints(lines[0].numbers[0], 5));
}

TEST(ProcIonoEph, PhaseWeighsWPh2CodeTimesCode) {
  // code says 2, phase says 3, both along the vertical: (2 + 100 * 3) / 101
  Epochwise run({{Seen(1, kG * 2, 1, 0, kG * 3 + 50)}});
  AddArc(run, 1, 0, 0, 50);
  const std::vector<Line> lines = run.Solve();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(Prints(lines[0].numbers[0], 302.0L / 101));
  // residuals 100/101 and -1/101: sum of squares g^2 (100/101), cofactor 1/(101 g^2)
  EXPECT_TRUE(Prints(lines[0].numbers[1], std::sqrt(100.0L) / 101));
}

TEST(ProcIonoEph, PhaseAloneDeterminesTheEpochs) {
  Epochwise run({{Seen(1, 77, 1, 0, kG * 3 + 50), Seen(2, 77, 1.5L, 0, kG * 4.5L - 20)}});
  AddArc(run, 1, 0, 0, 50);
  AddArc(run, 2, 0, 0, -20);
  run.ctx.ifCodeObs = false;
  const std::vector<Line> lines = run.Solve();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(Prints(lines[0].numbers[0], 3));
}

TEST(ProcIonoEph, ValuesThatTookNoPartInTheAdjustmentAreNotUsed) {
  Epochwise run({{Seen(1, kG * 2, 1), Seen(2, 99, 1), Seen(3, kG * 2, 1, 0, 99)}});
  AddArc(run, 3, 0, 0);
  run.ctx.ifOP2C1(1) = false;
  run.ctx.ifOL4(2) = false;
  const std::vector<Line> lines = run.Solve();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(Prints(lines[0].numbers[0], 2));
}

TEST(ProcIonoEph, SystemsThatAreNotProcessedAreSkipped) {
  Epochwise run({{Seen(1, kG * 2, 1), Seen(105, 99, 1), Seen(205, 99, 1)}});
  run.ctx.isGLN = false;
  EXPECT_TRUE(run.Solve().empty());
}

TEST(ProcIonoEph, CombinationsThatTheFileLacksAreNotLookedAt) {
  Epochwise run({{Seen(1, 1, 1), Seen(2, 1, 1)}});
  run.header.iPC4 = run.header.iL4 = false;
  run.ctx.ifOP2C1.Resize(0, 0); // the adjustment sized no flags
  run.ctx.ifOL4.Resize(0, 0);
  EXPECT_TRUE(run.Solve().empty());
}

TEST(ProcIonoEph, WithoutChannelGlonassTellsNothingOfTheDelay) {
  GLONASSc::alphaG.Resize(GLONASSc::kSlots, 2, 0.0L);
  Epochwise run({{Seen(105, 1, 1), Seen(106, 2, 1)}});
  EXPECT_TRUE(run.Solve().empty());
  EXPECT_EQ(run.out.Text().find("nan"), std::string::npos);
}

// ---- With gradients
// ------------------------------------------------------------------------------
//
// Four observations y = g M (v + tan z (E sin A + N cos A)) of one epoch. The minors of the 4 x 3
// design, with alternating signs, are orthogonal to its columns; divided by the weights and added
// to the observations they stay in the residuals and change no estimate.

using Row = std::array<long double, 3>;

long double Det(const Row& a, const Row& b, const Row& c) {
  return a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0]) +
         a[2] * (b[0] * c[1] - b[1] * c[0]);
}

struct Gradients {
  static constexpr long double kDelay = 4;
  static constexpr long double kEast = 0.25L;
  static constexpr long double kNorth = -0.5L;
  static constexpr long double kM[4] = {1.1L, 1.4L, 1.7L, 2.0L};
  static constexpr long double kAzimuth[4] = {0.3L, 1.9L, 3.6L, 5.2L};
  static constexpr long double kWeight[4] = {1, 0.75L, 0.5L, 0.25L};
  std::array<Row, 4> A;
  std::array<long double, 4> v; ///< residuals

  Gradients() {
    for (std::size_t i = 0; i < 4; ++i) {
      const long double tanz = std::sqrt(kM[i] * kM[i] - 1); // M = 1/cos z
      A[i] = {kG * kM[i], kG * kM[i] * tanz * std::sin(kAzimuth[i]),
              kG * kM[i] * tanz * std::cos(kAzimuth[i])};
    }
    for (std::size_t i = 0; i < 4; ++i) {
      std::vector<Row> others;
      for (std::size_t j = 0; j < 4; ++j)
        if (j != i) others.push_back(A[j]);
      v[i] = (i % 2 == 0 ? 1 : -1) * Det(others[0], others[1], others[2]) / kWeight[i] * 0.1L;
    }
  }
  std::vector<TinyRecord> Records() const {
    std::vector<TinyRecord> records;
    for (std::size_t i = 0; i < 4; ++i) {
      const long double y = A[i][0] * kDelay + A[i][1] * kEast + A[i][2] * kNorth + v[i];
      records.push_back(Seen(static_cast<short>(i + 1), y, kM[i], kAzimuth[i]));
      records.back().weight = kWeight[i];
    }
    return records;
  }
  /// Standard deviations with redundancy 1, the cofactors by Cramer's rule.
  Row Sigma() const {
    std::array<Row, 3> N{};
    long double square = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      for (std::size_t a = 0; a < 3; ++a)
        for (std::size_t b = 0; b < 3; ++b) N[a][b] += kWeight[i] * A[i][a] * A[i][b];
      square += kWeight[i] * v[i] * v[i];
    }
    Row sigma;
    for (std::size_t a = 0; a < 3; ++a) {
      const std::size_t b = (a + 1) % 3;
      const std::size_t c = (a + 2) % 3;
      const long double minor = N[b][b] * N[c][c] - N[b][c] * N[c][b];
      sigma[a] = std::sqrt(square * minor / Det(N[0], N[1], N[2]));
    }
    return sigma;
  }
};

TEST(ProcIonoEph, FourObservationsSolveGradientsWithRedundancyOne) {
  const Gradients truth;
  Epochwise run({truth.Records()}, true);
  const std::vector<Line> lines = run.Solve();
  ASSERT_EQ(lines.size(), 1U);
  ASSERT_EQ(lines[0].numbers.size(), 6U);
  EXPECT_TRUE(Prints(lines[0].numbers[0], Gradients::kDelay));
  EXPECT_TRUE(Prints(lines[0].numbers[2], Gradients::kEast));
  EXPECT_TRUE(Prints(lines[0].numbers[4], Gradients::kNorth));
  const Row sigma = truth.Sigma();
  for (std::size_t j = 0; j < 3; ++j) {
    EXPECT_GT(sigma[j], 0.001L);
    EXPECT_TRUE(Prints(lines[0].numbers[2 * j + 1], sigma[j])) << j;
  }
}

TEST(ProcIonoEph, ThreeObservationsDoNotFallBackToTheDelayAlone) {
  std::vector<TinyRecord> records = Gradients().Records();
  records.pop_back();
  Epochwise run({records}, true);
  EXPECT_TRUE(run.Solve().empty());
}

TEST(ProcIonoEph, CodeAndPhaseOfTwoSatellitesDoNotDetermineGradients) {
  // four observations in two directions: the normal matrix is singular
  Epochwise run({{Seen(1, 1, 1.5L, 0.5L, 1), Seen(2, 2, 2, 2.5L, 2)}}, true);
  AddArc(run, 1, 0, 0);
  AddArc(run, 2, 0, 0);
  const Captured report(std::cout);
  std::cout << std::fixed;
  ProcIonoEph(run.ctx);
  EXPECT_EQ(report.Text().find("55844"), std::string::npos) << report.Text();
  EXPECT_NE(report.Text().find("  #of estimated Iono delays: 0\n"), std::string::npos);
}

// ---- The report
// ----------------------------------------------------------------------------------

TEST(ProcIonoEph, ReportAndFileWithoutGradients) {
  // 2.1 and 1.9 along the vertical: the variance is 2 (0.1 g)^2, that of the mean 0.01
  const ScratchFolder folder;
  Epochwise run({{Seen(1, kG * 2.1L, 1), Seen(2, kG * 1.9L, 1)}});
  std::strcpy(run.ctx.gnuplotIonEph, folder.Name("eph.dat").c_str());
  run.ctx.isGNUPlotIonEph = true;
  run.ctx.verbose = true;
  run.Solve();
  const std::string line = "  55844     0.0      2.0000 +-  0.1000\n";
  EXPECT_EQ(run.out.Text(), "ESTIMATION OF EPOCH TO EPOCH IONOSPHERIC DELAY:\n"
                            "-----------------------------------------------\n"
                            "\n"
                            "  EPOCH[MJD]              ION DELAY[m]\n"
                            " -------------------------------------\n" +
                                line +
                                " -------------------------------------\n"
                                "  #of estimated Iono delays: 1\n"
                                "\n");
  EXPECT_EQ(ReadWhole(folder.Name("eph.dat")), "#ION_TYPE: EPOCH BY EPOCH\n"
                                               "#    EPOCH[MJD]           ION_DELAY[m]\n" +
                                                   line);
  EXPECT_EQ(run.errors.Text(),
            "Zenta::ProcIonoEph(): EPOCH TO EPOCH ESTIMATION OF IONOSPHERIC DELAY!\n");
}

TEST(ProcIonoEph, ReportAndFileWithGradients) {
  const ScratchFolder folder;
  Epochwise run({Gradients().Records()}, true);
  std::strcpy(run.ctx.gnuplotIonEph, folder.Name("eph.dat").c_str());
  run.ctx.isGNUPlotIonEph = true;
  run.Solve();
  const Row sigma = Gradients().Sigma();
  std::ostringstream line;
  line << std::fixed << std::setprecision(4) << "  55844     0.0      4.0000 +-" << std::setw(8)
       << sigma[0] << "      0.2500 +-" << std::setw(8) << sigma[1] << "     -0.5000 +-"
       << std::setw(8) << sigma[2] << '\n';
  const std::string rule = " " + std::string(83, '-') + "\n";
  EXPECT_EQ(run.out.Text(), "ESTIMATION OF EPOCH TO EPOCH IONOSPHERIC DELAY:\n"
                            "-----------------------------------------------\n"
                            "\n"
                            "  EPOCH[MJD]              ION DELAY[m]"
                            "         ION GRAD E               ION GRAD N\n" +
                                rule + line.str() + rule +
                                "  #of estimated Iono delays: 1\n"
                                "\n");
  // the file's head names no gradients
  EXPECT_EQ(ReadWhole(folder.Name("eph.dat")), "#ION_TYPE: EPOCH BY EPOCH\n"
                                               "#    EPOCH[MJD]           ION_DELAY[m]\n" +
                                                   line.str());
}

TEST(ProcIonoEph, NotAskedForNothingHappens) {
  Epochwise run({{Seen(1, kG * 2, 1), Seen(2, kG * 2, 1)}});
  run.ctx.ifEstIONEph = false;
  run.ctx.verbose = true;
  run.Solve();
  EXPECT_EQ(run.out.Text(), "");
  EXPECT_EQ(run.errors.Text(), "");
}

} // namespace
