#include "PrintSet.h"

#include "support/Captured.h"
#include "support/TinyRun.h"

#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <iomanip>
#include <regex>
#include <string>

namespace {

/// A run whose report is collected on a stream in its state at the start of the program.
struct Report : TinyRun {
  std::string Print() {
    Captured out(std::cout);
    Captured errors(std::cerr);
    PrintSet(ctx);
    progress = errors.Text();
    return out.Text();
  }
  std::string progress;
};

/// The line of \p text that begins with \p label, without its end; empty when there is none.
std::string LineOf(const std::string& text, const std::string& label) {
  const std::size_t at = ("\n" + text).find("\n" + label);
  return at == std::string::npos ? "" : text.substr(at, text.find('\n', at) - at);
}

void Name(char (&field)[256], bool& flag, const char* name) {
  std::strcpy(field, name);
  flag = true;
}

std::string Underscores() { return std::string(120, '_'); }
std::string Equals() { return std::string(120, '='); }

TEST(PrintSet, HeadShowsProgramReleaseAndDate) {
  const std::string text = Report().Print();
  const std::regex head("^" + Underscores() +
                        "\n          PROGRAM:               Zenta                                  "
                        "    CODE AND PHASE "
                        "BASED IONOSPHERE DELAY\n"
                        "          [A-Z]+: +[^\n]+ [0-9]{4}\n"
                        "          RELEASE:               20 JUL 2012                              "
                        "             DATE: "
                        "[0-9]{4}-[0-9]{2}-[0-9]{2}  [0-9]{2}:[0-9]{2}:[0-9]{2}\n" +
                        Equals() + "\n\nINPUT DATA ");
  EXPECT_TRUE(std::regex_search(text, head)) << text;
}

/// All that follows the head.
std::string Body(const std::string& text) { return text.substr(text.find("INPUT DATA")); }

TEST(PrintSet, DefaultSettings) {
  Report run;
  EXPECT_EQ(Body(run.Print()), "INPUT DATA (FILE NAMES):\n"
                               "------------------------\n"
                               "\n"
                               "  Apriori coordinate file             :  ---\n"
                               "  Observation (RINEX) file            : \n"
                               "  Clock correction file               :  ---\n"
                               "  GPS broadcast navigation file       :  ---\n"
                               "  GLONASS broadcast navigation file   :  ---\n"
                               "  GPS precise ephemeris file          :  ---\n"
                               "  GLONASS precise ephemeris file      :  ---\n"
                               "  GLONASS frequency channel file      :  ---\n"
                               "  Differential code bias file (P1P2)  :  ---\n"
                               "  Differential code bias file (P1C1)  :  ---\n"
                               "  Differential code bias file (P2C2)  :  ---\n"
                               "  Receiver code tracking type file    :  ---\n"
                               "  Multipath on P1/C1 file             :  ---\n"
                               "  Multipath on P2 file                :  ---\n"
                               "\n"
                               "\n"
                               "PROCESSING SETTINGS USED:\n"
                               "-------------------------\n"
                               "\n"
                               "  Minimum elevation angle             : 5.0\n"
                               "  Observations used in processing     :\n"
                               "                Code observations     :  ---\n"
                               "               Phase observations     :  ---\n"
                               "  Minimum elevation angle             : 5.0 [DEFAULT VALUE]\n"
                               "  Differential code biases            :  ---\n"
                               "  Observation weighting               :  ---\n"
                               "  Blunder detection in observations   : \n"
                               "      Misclosure vector f [threshold] : NO\n"
                               "      Correction vector v [threshold] :\n"
                               "        Code observations             : NO\n"
                               "        Phase observations L4         : NO\n"
                               "  Unknowns determined in processing   :\n"
                               "      Receiver DCB values             :  ---\n"
                               "      GPS DCB values                  :  ---\n"
                               "      GLONASS DCB values              :  ---\n"
                               "      Ionospheric delay values        :  ---\n"
                               "      Ionospheric gradients           :  ---\n"
                               "      Ionospheric time interval       :  ---\n"
                               "\n"
                               "\n");
  EXPECT_EQ(run.progress, "");
}

TEST(PrintSet, EverySettingInUse) {
  Report run;
  KorvanC& c = run.ctx;
  Name(c.aprcrdfile, c.isAprCrd, "crd");
  Name(c.rnxfile, c.isRnx, "rnx");
  Name(c.clkfile, c.isClkFile, "clk");
  Name(c.gnavfile, c.isGPSnav, "gnav");
  Name(c.rnavfile, c.isGLNnav, "rnav");
  Name(c.gsp3file, c.isGpEph, "gsp3");
  Name(c.rsp3file, c.isRpEph, "rsp3");
  Name(c.glnfreqch, c.isGLNfrch, "chan");
  Name(c.dcbp1p2file, c.isP1P2, "p1p2");
  Name(c.dcbp1c1file, c.isP1C1, "p1c1");
  Name(c.dcbp2c2file, c.isP2C2, "p2c2");
  Name(c.rctrackfile, c.isRCodTrc, "track");
  Name(c.mp1file, c.isMP1, "mp1");
  Name(c.mp2file, c.isMP2, "mp2");
  c.MinElevation = 12.26;
  c.isMinElev = c.ifCodeObs = c.ifPhaseObs = true;
  c.rnxh.iPC1 = c.rnxh.iPC4 = true;
  c.obsP = 1;
  c.isMaxfDiff = c.isThresBlunder = c.isThresBlunderL4 = true;
  c.ThresBlunderL4 = 0.5L;
  c.ThresBlunder = 1000;
  c.ifEstREC = c.isxP1C1 = c.isxP2C1 = true;
  c.ifEstGPS = c.ifEstGLN = c.ifEstION = c.ifEstIGrad = true;
  c.IonoInterval = 3600;
  EXPECT_EQ(Body(run.Print()),
            "INPUT DATA (FILE NAMES):\n"
            "------------------------\n"
            "\n"
            "  Apriori coordinate file             : crd\n"
            "  Observation (RINEX) file            : rnx\n"
            "  Clock correction file               : clk\n"
            "  GPS broadcast navigation file       : gnav\n"
            "  GLONASS broadcast navigation file   : rnav\n"
            "  GPS precise ephemeris file          : gsp3\n"
            "  GLONASS precise ephemeris file      : rsp3\n"
            "  GLONASS frequency channel file      : chan\n"
            "  Differential code bias file (P1P2)  : p1p2\n"
            "  Differential code bias file (P1C1)  : p1c1\n"
            "  Differential code bias file (P2C2)  : p2c2\n"
            "  Receiver code tracking type file    : track\n"
            "  Multipath on P1/C1 file             : mp1\n"
            "  Multipath on P2 file                : mp2\n"
            "\n"
            "\n"
            "PROCESSING SETTINGS USED:\n"
            "-------------------------\n"
            "\n"
            "  Minimum elevation angle             : 12.3\n"
            "  Observations used in processing     :\n"
            "                Code observations     : P1-C1 P4->[P2-C1]\n"
            "               Phase observations     : L4->[L1-L2]\n"
            "  Minimum elevation angle             : 12.3 [MANUALLY SET]\n"
            "  Differential code biases            : DCB values provided by CODE\n"
            "  Observation weighting               : COS(Z) model\n"
            "  Blunder detection in observations   : \n"
            "      Misclosure vector f [threshold] : YES [50.000 m]\n"
            "      Correction vector v [threshold] :\n"
            "        Code observations             : YES [1000.000 m]\n"
            "        Phase observations L4         : YES [ 0.500 m]\n"
            "  Unknowns determined in processing   :\n"
            "      Receiver DCB values             : P1-C1 P2-C1\n"
            "      GPS DCB values                  : YES\n"
            "      GLONASS DCB values              : YES\n"
            "      Ionospheric delay values        : YES\n"
            "      Ionospheric gradients           : YES\n"
            "      Ionospheric time interval       : 3600.000 s\n"
            "\n"
            "\n");
}

TEST(PrintSet, ProgressLineWhenVerbose) {
  Report run;
  run.ctx.verbose = true;
  run.Print();
  EXPECT_EQ(run.progress, "Zenta::PrintSet(): PRINTING PROCESSING SETTINGS!\n");
}

// ---- Files -----------------------------------------------------------------------------------

const char* kMultipath1 = "  Multipath on P1/C1 file             : ";
const char* kMultipath2 = "  Multipath on P2 file                : ";

TEST(PrintSet, FirstMultipathFileAloneShowsBothLinesWithNames) {
  Report run;
  Name(run.ctx.mp1file, run.ctx.isMP1, "first");
  const std::string text = run.Print();
  EXPECT_EQ(LineOf(text, kMultipath1), kMultipath1 + std::string("first"));
  EXPECT_EQ(LineOf(text, kMultipath2), kMultipath2);
}

TEST(PrintSet, SecondMultipathFileAloneShowsNoName) {
  Report run;
  Name(run.ctx.mp2file, run.ctx.isMP2, "second");
  const std::string text = run.Print();
  EXPECT_EQ(LineOf(text, kMultipath1), kMultipath1 + std::string(" ---"));
  EXPECT_EQ(LineOf(text, kMultipath2), kMultipath2 + std::string(" ---"));
}

TEST(PrintSet, DroppedFileShowsNoName) {
  Report run;
  std::strcpy(run.ctx.clkfile, "absent");
  EXPECT_EQ(LineOf(run.Print(), "  Clock correction file"),
            "  Clock correction file               :  ---");
}

// ---- Settings --------------------------------------------------------------------------------

TEST(PrintSet, SourceOfTheBiases) {
  const std::string label = "  Differential code biases            : ";
  const struct {
    bool navigation;
    bool KorvanC::*file;
    const char* text;
  } cases[] = {
      {false, nullptr, " ---"},
      {true, nullptr, "Navigation time group delay"},
      {false, &KorvanC::isP1P2, "DCB values provided by CODE"},
      {true, &KorvanC::isP1C1, "DCB values provided by CODE"},
      {true, &KorvanC::isP2C2, "DCB values provided by CODE"},
  };
  for (const auto& c : cases) {
    Report run;
    run.ctx.isGPSnav = c.navigation;
    if (c.file) run.ctx.*c.file = true;
    EXPECT_EQ(LineOf(run.Print(), label), label + c.text);
  }
}

TEST(PrintSet, OtherWeightingSelectorsLeaveTheLabelAlone) {
  Report run;
  run.ctx.obsP = 2;
  const std::string label = "  Observation weighting               : ";
  EXPECT_EQ(LineOf(run.Print(), label), label);
}

TEST(PrintSet, CodeObservationsAreThoseTheFileOffers) {
  const std::string label = "                Code observations     :";
  const struct {
    bool p1c1;
    bool p4;
    const char* text;
  } cases[] = {{false, false, ""}, {true, false, " P1-C1"}, {false, true, " P4->[P2-C1]"}};
  for (const auto& c : cases) {
    Report run;
    run.ctx.ifCodeObs = true;
    run.ctx.rnxh.iPC1 = c.p1c1;
    run.ctx.rnxh.iPC4 = c.p4;
    EXPECT_EQ(LineOf(run.Print(), label), label + c.text);
  }
}

TEST(PrintSet, ReceiverBiasesAreThoseLaidOut) {
  const std::string label = "      Receiver DCB values             :";
  Report none;
  none.ctx.ifEstREC = true;
  EXPECT_EQ(LineOf(none.Print(), label), label);
  Report second;
  second.ctx.ifEstREC = second.ctx.isxP2C1 = true;
  EXPECT_EQ(LineOf(second.Print(), label), label + " P2-C1");
  Report off;
  off.ctx.isxP1C1 = true;
  EXPECT_EQ(LineOf(off.Print(), label), label + "  ---");
}

// ---- The state of standard output --------------------------------------------------------------

std::string IntervalLine(const std::function<void(KorvanC&)>& set) {
  Report run;
  run.ctx.ifEstION = true;
  run.ctx.IonoInterval = 1800;
  set(run.ctx);
  return LineOf(run.Print(), "      Ionospheric time interval       : ").substr(40);
}

TEST(PrintSet, IntervalHasOneDecimalWithoutThresholds) {
  EXPECT_EQ(IntervalLine([](KorvanC&) {}), "1800.0 s");
}

TEST(PrintSet, IntervalHasThreeDecimalsBehindAnyThreshold) {
  for (bool KorvanC::*threshold :
       {&KorvanC::isMaxfDiff, &KorvanC::isThresBlunder, &KorvanC::isThresBlunderL4})
    EXPECT_EQ(IntervalLine([threshold](KorvanC& ctx) { ctx.*threshold = true; }), "1800.000 s");
}

TEST(PrintSet, LeavesStandardOutputInFixedPointNotation) {
  Report run;
  Captured guard(std::cout); // puts notation and precision back
  std::cout << std::defaultfloat << std::setprecision(6);
  Captured out(std::cout);
  PrintSet(run.ctx);
  std::cout << 1e7 << ' ' << 0.25;
  const std::string text = out.Text();
  EXPECT_EQ(text.substr(text.rfind('\n') + 1), "10000000.0 0.2");
}

TEST(PrintSet, NotationOfEarlierStagesDoesNotShow) {
  Report run;
  Captured guard(std::cout);
  std::cout << std::scientific << std::setprecision(12);
  EXPECT_EQ(LineOf(run.Print(), "  Minimum elevation angle"),
            "  Minimum elevation angle             : 5.0");
}

} // namespace
