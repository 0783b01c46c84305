#include "PrintResults.h"

#include "GNSS/ymdhms.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/TinyRun.h"

#include <cstring>
#include <string>

namespace {

/// Three epochs of GPS 5 and 12 and GLONASS 105; the variance of unit weight is 4, so that the
/// standard deviation of an unknown is twice the root of its cofactor.
class PrintResultsTest : public testing::Test {
protected:
  PrintResultsTest() {
    std::vector<TinyEpoch> epochs;
    for (int i = 0; i < 3; ++i) {
      TinyEpoch epoch;
      epoch.time = mjd(55844, 3600 + 30 * i);
      for (const short sat : std::initializer_list<short>{5, 12, 105}) {
        TinyRecord record;
        record.sat = sat;
        epoch.records.push_back(record);
      }
      epochs.push_back(epoch);
    }
    Fill(run, epochs);
    ctx.ifPhaseObs = false;
    ctx.s0apost = 4;
    ctx.ixbSAT.Resize(3, 2, -1L);
    ctx.xbSAT.Resize(3, 2, 0.0L);
  }
  ~PrintResultsTest() override {
    mjdns::NDecSecond = mjdDecimals;
    ymdhmsns::NDecSecond = ymdhmsDecimals;
  }
  void Unknowns(long n) {
    ctx.NUnk = n;
    ctx.QxxAll.Resize(n, n, 0.0L);
    ctx.ObsPerUnk.Resize(n, 1, 0L);
  }
  /// Unknown \p k with a standard deviation and a number of observations.
  void Set(long k, long double sigma, long observations) {
    ctx.QxxAll(k, k) = sigma * sigma / 4;
    ctx.ObsPerUnk(k) = observations;
  }
  void SetSatellite(long row, long column, long ix, long double value) {
    ctx.ixbSAT(row, column) = ix;
    ctx.xbSAT(row, column) = value;
  }
  std::string Print() {
    Captured out(std::cout);
    Captured errors(std::cerr);
    std::cout << std::fixed; // as the settings report leaves it
    PrintResults(ctx);
    progress = errors.Text();
    return out.Text();
  }
  /// All behind the statistics.
  std::string Blocks() {
    const std::string text = Print();
    const std::size_t last = text.find("[GLOBAL TEST]");
    return text.substr(text.find("\n\n", last) + 2);
  }
  std::string NamePlot(char (&field)[256], bool& flag, const char* file) {
    std::strcpy(field, folder.Name(file).c_str());
    flag = true;
    return field;
  }

  const ScratchFolder folder;
  TinyRun run;
  KorvanC& ctx = run.ctx;
  std::string progress;

private:
  const decltype(mjdns::NDecSecond) mjdDecimals = mjdns::NDecSecond;
  const decltype(ymdhmsns::NDecSecond) ymdhmsDecimals = ymdhmsns::NDecSecond;
};

std::string Blanks(std::size_t n) { return std::string(n, ' '); }
std::string Dashes(std::size_t n) { return std::string(n, '-'); }

// ---- Statistics ------------------------------------------------------------------------------

TEST_F(PrintResultsTest, Statistics) {
  ctx.IterDone = 3;
  ctx.IterThresFin = 0.00149;
  ctx.NObs = 123456;
  ctx.NObsG = 11;
  ctx.NObsR = 22;
  ctx.NObsOutl = 33;
  ctx.NObsOutlG = 44;
  ctx.NObsOutlR = 55;
  ctx.s0apost = 2.25L;
  EXPECT_EQ(
      Print(),
      "RECEIVER/SATELLITE DCB VALUES AND IONOSPHERE DELAY - RESULTS:\n"
      "-------------------------------------------------------------\n"
      "\n"
      "  #ITERATIONS:          3       THRESHOLD:      0.001\n"
      "  #EPOCHS    :          3\n"
      "  #OBS       :     123456    G:       11    R:       22\n"
      "  #OUTLIERS  :         33    G:       44    R:       55\n"
      "\n"
      "  REF. STD. APRIORI                              :            1.00\n"
      "  REF. STD. APOSTERIORI                          :            1.50\n"
      "  REFERENCE VARIANCE OF UNIT WEIGHT [GLOBAL TEST]:            2.25         [SQRT]      "
      "1.50\n"
      "\n");
  EXPECT_EQ(progress, "");
}

TEST_F(PrintResultsTest, ProgressLineWhenVerbose) {
  ctx.verbose = true;
  Print();
  EXPECT_EQ(progress, "Zenta::PrintResults():         Printing results to STDOUT!\n");
}

TEST_F(PrintResultsTest, DecimalsOfSecondsStaySet) {
  mjdns::NDecSecond = 5;
  ymdhmsns::NDecSecond = 5;
  Print();
  EXPECT_EQ(mjdns::NDecSecond, 1);
  EXPECT_EQ(ymdhmsns::NDecSecond, 0);
}

// ---- Receiver --------------------------------------------------------------------------------

const std::string kReceiverTitle = " RECEIVER GPS DCB VALUES:\n --------------------\n\n";
const std::string kBiasFileHead = "#REFERECNE EPOCH:  55844  3630.0\n"
                                  "#TYPE SAT_PRN      P1C1[m]               P2C1[m]\n";

TEST_F(PrintResultsTest, ReceiverBiases) {
  // 1.5 m are 5.00346 ns, 0.02 m 0.0667 ns; -2.25 m are -7.50519 ns, 0.04 m 0.1334 ns.
  Unknowns(2);
  ctx.ifEstREC = true;
  ctx.ixP1C1 = 0;
  ctx.xP1C1 = 1.5L;
  Set(0, 0.02L, 123);
  ctx.ixP2C1 = 1;
  ctx.xP2C1 = -2.25L;
  Set(1, 0.04L, 7);
  const std::string file = NamePlot(ctx.gnuplotDCB, ctx.isGNUPlotDCB, "dcb");
  EXPECT_EQ(
      Blocks(),
      kReceiverTitle +
          "  P1-C1 DCB:       1.5000 m +-     0.0200 m             0.00500 msec +-    0.00007 "
          "msec     [123 OBS / P1-C1 DCB]\n"
          "  P2-C1 DCB:      -2.2500 +-     0.0400            -0.00751 msec +-    0.00013 "
          "msec     [7 OBS / P2-C1 DCB]\n"
          "\n");
  EXPECT_EQ(ReadWhole(file), kBiasFileHead + "R" + Blanks(8) + "      1.5000    0.0200" +
                                 "     -2.2500    0.0400\n");
}

TEST_F(PrintResultsTest, ReceiverBiasThatIsNotEstimatedHasOnlyItsLineInTheFile) {
  Unknowns(1);
  ctx.ifEstREC = true;
  ctx.xP1C1 = 9; // without an index it does not show
  const std::string file = NamePlot(ctx.gnuplotDCB, ctx.isGNUPlotDCB, "dcb");
  EXPECT_EQ(Blocks(), kReceiverTitle + "\n");
  EXPECT_EQ(ReadWhole(file), kBiasFileHead + "R" + Blanks(8) + "      0.0000    0.0000" +
                                 "      0.0000    0.0000\n");
}

TEST_F(PrintResultsTest, SecondReceiverBiasAlone) {
  Unknowns(1);
  ctx.ifEstREC = true;
  ctx.ixP2C1 = 0;
  ctx.xP2C1 = 2;
  Set(0, 0, 0);
  const std::string file = NamePlot(ctx.gnuplotDCB, ctx.isGNUPlotDCB, "dcb");
  EXPECT_EQ(Blocks(), kReceiverTitle + "  P2-C1 DCB:       2.0000 +-     0.0000             "
                                       "0.00667 msec +-    0.00000 msec     [0 OBS / P2-C1 DCB]\n"
                                       "\n");
  EXPECT_EQ(ReadWhole(file), kBiasFileHead + "R" + Blanks(8) + "      0.0000    0.0000" +
                                 "      2.0000    0.0000\n");
}

TEST_F(PrintResultsTest, DeviationOfANegativeVarianceIsNotANumber) {
  Unknowns(1);
  ctx.ifEstREC = true;
  ctx.ixP2C1 = 0;
  ctx.QxxAll(0, 0) = -1;
  EXPECT_NE(Blocks().find("  P2-C1 DCB:       0.0000 +-       -nan"), std::string::npos);
}

// ---- Satellites ------------------------------------------------------------------------------

const std::string kSatelliteColumns =
    "  PRN           P1-C1 DCB [m +- m, msec +- msec]        #OBS/DCB                P2-C1 DCB [m "
    "+- m, msec +- msec]       #OBS/DCB\n";
const std::string kSatelliteRule = " " + Dashes(126) + "\n";

TEST_F(PrintResultsTest, GpsBiases) {
  // 0.6 m are 2.0014 ns; -1.2 m are -4.0028 ns; 0.03 m are 0.1 ns.
  Unknowns(3);
  ctx.ifEstGPS = true;
  SetSatellite(0, 0, 0, 0.6L);
  Set(0, 0.03L, 12);
  SetSatellite(0, 1, 1, -1.2L);
  Set(1, 0.06L, 345);
  SetSatellite(1, 1, 2, 3);
  Set(2, 0.5L, 1);
  const std::string file = NamePlot(ctx.gnuplotDCB, ctx.isGNUPlotDCB, "dcb");
  EXPECT_EQ(Blocks(), " SATELLITE GPS DCB VALUES:\n -------------------------\n\n" +
                          kSatelliteColumns + kSatelliteRule +
                          "    5      0.6000 +-  0.0300      0.0020 +-  0.0001   [    12]  "
                          "     -1.2000 +-  0.0600     -0.0040 +-  0.0002   [   345]  \n"
                          "   12" +
                          Blanks(64) +
                          "      3.0000 +-  0.5000      0.0100 +-  0.0017   [     1]  \n" +
                          kSatelliteRule + "\n");
  EXPECT_EQ(ReadWhole(file), kBiasFileHead +
                                 "S     G 5      0.6000    0.0300     -1.2000    0.0600\n" +
                                 "S     G12      0.0000    0.0000      3.0000    0.5000\n");
}

TEST_F(PrintResultsTest, BiasOfASatelliteWithoutObservationsIsBlankButInTheFile) {
  Unknowns(1);
  ctx.ifEstGPS = true;
  SetSatellite(0, 0, 0, 0.25L);
  Set(0, 1, 0);
  const std::string file = NamePlot(ctx.gnuplotDCB, ctx.isGNUPlotDCB, "dcb");
  EXPECT_NE(Blocks().find("\n    5" + Blanks(128) + "\n   12" + Blanks(128) + "\n"),
            std::string::npos);
  EXPECT_NE(ReadWhole(file).find("S     G 5      0.2500    1.0000      0.0000    0.0000\n"),
            std::string::npos);
}

TEST_F(PrintResultsTest, GlonassBiasesHaveTheInternalNumberInTheReportAndTheSlotInTheFile) {
  Unknowns(1);
  ctx.ifEstGLN = true;
  SetSatellite(2, 1, 0, -3);
  Set(0, 0.3L, 99);
  const std::string file = NamePlot(ctx.gnuplotDCB, ctx.isGNUPlotDCB, "dcb");
  EXPECT_EQ(Blocks(), " SATELLITE GLONASS DCB VALUES:\n -----------------------------\n\n" +
                          kSatelliteColumns + kSatelliteRule + "  105" + Blanks(64) +
                          "     -3.0000 +-  0.3000     -0.0100 +-  0.0010   [    99]  \n" +
                          kSatelliteRule + "\n\n");
  EXPECT_EQ(ReadWhole(file),
            kBiasFileHead + "S     R 5      0.0000    0.0000     -3.0000    0.3000\n");
}

TEST_F(PrintResultsTest, SatelliteNumbersDivideTheTables) {
  run.data.satList(0) = 99;
  run.data.satList(1) = 100;
  run.data.satList(2) = 199;
  ctx.ifEstGPS = ctx.ifEstGLN = true;
  Unknowns(1);
  const std::string text = Blocks();
  const std::size_t glonass = text.find("SATELLITE GLONASS");
  for (const auto& [row, isGps] :
       {std::pair("\n   99 ", true), std::pair("\n  100 ", false), std::pair("\n  199 ", false)}) {
    EXPECT_EQ(text.find(row) < glonass, isGps) << row;
    EXPECT_NE(text.find(row), std::string::npos) << row;
  }
}

TEST_F(PrintResultsTest, WithoutBiasesTheirFileIsNotCreated) {
  const std::string file = NamePlot(ctx.gnuplotDCB, ctx.isGNUPlotDCB, "dcb");
  EXPECT_EQ(Blocks(), "");
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(PrintResultsTest, ReferenceEpochLiesHalfWayOverMidnight) {
  run.data.epoch(0) = mjd(55844, 86399);
  run.data.epoch(2) = mjd(55845, 4);
  Unknowns(1);
  ctx.ifEstREC = true;
  const std::string file = NamePlot(ctx.gnuplotDCB, ctx.isGNUPlotDCB, "dcb");
  Print();
  EXPECT_EQ(ReadWhole(file).substr(0, 33), "#REFERECNE EPOCH:  55845     1.5\n");
}

// ---- Ambiguities -----------------------------------------------------------------------------

TEST_F(PrintResultsTest, AmbiguitiesOfDifferentSatellitesAreSetApart) {
  ctx.ifPhaseObs = true;
  AddArc(run, 5, 0, 1, 1.5L);
  AddArc(run, 5, 2, 2, -20.25L);
  AddArc(run, 105, 0, 2, 300);
  ctx.NUnkDCB = 2;
  Unknowns(5);
  Set(2, 0.25L, 1);
  Set(3, 0.5L, 1);
  Set(4, 10, 1);
  EXPECT_EQ(Blocks(),
            "  PHASE L4 AMBIGUITIES (REAL VALUES):\n"
            "  -----------------------------------\n"
            "    Number of all ambiguities:          3\n"
            "\n"
            "    ID     PRN        START_EPOCH              END_EPOCH                     L4 "
            "AMBIGUITY[m]       #OBS/AMBIG\n"
            "   " +
                Dashes(106) +
                "\n"
                "     1     G 5    2011-10-10 01:00:00    2011-10-10 01:00:30              1.5000 "
                "+-     0.2500              2\n"
                "     2     G 5    2011-10-10 01:01:00    2011-10-10 01:01:00            -20.2500 "
                "+-     0.5000              1\n"
                "\n"
                "     3     R 5    2011-10-10 01:00:00    2011-10-10 01:01:00            300.0000 "
                "+-    10.0000              3\n"
                "   " +
                Dashes(106) + "\n\n\n");
}

TEST_F(PrintResultsTest, NoAmbiguitiesLeaveTheirTableEmpty) {
  ctx.ifPhaseObs = true;
  const std::string text = Blocks();
  EXPECT_NE(text.find("    Number of all ambiguities:          0\n"), std::string::npos);
  EXPECT_NE(text.find("\n   " + Dashes(106) + "\n   " + Dashes(106) + "\n\n\n"), std::string::npos);
}

TEST_F(PrintResultsTest, AmbiguityOfAnotherSystemHasNoName) {
  ctx.ifPhaseObs = true;
  AddArc(run, 205, 0, 2, 1);
  Unknowns(1);
  EXPECT_NE(Blocks().find("\n     1    2011-10-10"), std::string::npos);
}

// ---- Ionosphere ------------------------------------------------------------------------------

class PrintIonosphereTest : public PrintResultsTest {
protected:
  PrintIonosphereTest() {
    ctx.ifEstION = true;
    ctx.NUnkDCB = 1;
    ctx.NIonUnkT = 2;
    ctx.nIono = 2;
    ctx.IonoEstInd.Resize(2, 2, 0L);
    ctx.IonoEstInd(1, 0) = 2;
    ctx.xION.Resize(2, 2);
    ctx.xION(0, 0) = 3.25L;
    ctx.xION(0, 1) = -0.5L;
    ctx.xION(1, 0) = 12.125L;
    ctx.xION(1, 1) = 1;
    Unknowns(5);
    Set(1, 0.01L, 30);
    Set(2, 0.02L, 31);
    Set(3, 0.03L, 40);
    Set(4, 0.04L, 41);
  }
};

TEST_F(PrintIonosphereTest, DelaysAndRates) {
  const std::string file = NamePlot(ctx.gnuplotIon, ctx.isGNUPlotIon, "ion");
  const std::string rule = " " + Dashes(62 + 17) + "\n";
  EXPECT_EQ(Blocks(),
            " IONOSPHERE DELAYS:\n ------------------\n\n"
            "  EPOCH[MJD]         ION DELAY[m]          ION DELAY RATE [m/h]       #OBS/DELAY\n" +
                rule +
                "  55844  3600.0      3.2500 +-  0.0100       -0.5000 +-  0.0200         [    30]  "
                "\n"
                "  55844  3660.0     12.1250 +-  0.0300        1.0000 +-  0.0400         [    40]  "
                "\n" +
                rule + "\n\n");
  EXPECT_EQ(ReadWhole(file), "#ION_TYPE: LINEAR\n"
                             "#    EPOCH[MJD]           ION_DELAY[m]      ION_DELAY_RATE[m/h]\n"
                             "  55844  3600.0      3.2500 +-  0.0100       -0.5000 +-  0.0200\n"
                             "  55844  3660.0     12.1250 +-  0.0300        1.0000 +-  0.0400\n");
}

TEST_F(PrintIonosphereTest, GradientsHaveTheirColumns) {
  ctx.ifEstIGrad = true;
  ctx.NIonUnkT = 4;
  ctx.nIono = 1;
  ctx.xIGRAD.Resize(2, 2);
  ctx.xIGRAD(0, 0) = 0.125L;
  ctx.xIGRAD(0, 1) = -0.0625L;
  const std::string file = NamePlot(ctx.gnuplotIon, ctx.isGNUPlotIon, "ion");
  const std::string rule = " " + Dashes(62 + 48 + 17) + "\n";
  const std::string line = "  55844  3600.0      3.2500 +-  0.0100       -0.5000 +-  0.0200      "
                           "0.1250 +-  0.0300       -0.0625 +-  0.0400";
  EXPECT_EQ(
      Blocks(),
      " IONOSPHERE DELAYS:\n ------------------\n\n"
      "  EPOCH[MJD]         ION DELAY[m]          ION DELAY RATE [m/h]         ION GRAD E     "
      "          ION GRAD N       #OBS/DELAY\n" +
          rule + line + "         [    30]  \n" + rule + "\n\n");
  EXPECT_EQ(ReadWhole(file),
            "#ION_TYPE: LINEAR\n"
            "#    EPOCH[MJD]           ION_DELAY[m]      ION_DELAY_RATE[m/h]   ION GRAD E     "
            "ION GRAD N\n" +
                line + "\n");
}

TEST_F(PrintIonosphereTest, AmbiguitiesLieBeforeTheIntervals) {
  AddArc(run, 5, 0, 2);
  Unknowns(6);
  Set(2, 0.75L, 5); // 1 bias and 1 ambiguity before it
  EXPECT_NE(Blocks().find("3.2500 +-  0.7500       -0.5000 +-  0.0000         [     5]  "),
            std::string::npos);
}

// ---- Files -----------------------------------------------------------------------------------

TEST_F(PrintIonosphereTest, FileThatCantBeCreatedLeavesTheReport) {
  const std::string sound = Blocks();
  std::strcpy(ctx.gnuplotIon, "/no/such/folder/ion");
  ctx.isGNUPlotIon = true;
  EXPECT_EQ(Blocks(), sound);
  EXPECT_NE(progress.find("/no/such/folder/ion"), std::string::npos);
}

TEST_F(PrintIonosphereTest, FileReplacesWhatWasThere) {
  const std::string file = NamePlot(ctx.gnuplotIon, ctx.isGNUPlotIon, "ion");
  folder.Write("ion", std::string(5000, 'x'));
  Print();
  EXPECT_EQ(ReadWhole(file).find('x'), std::string::npos);
}

} // namespace
