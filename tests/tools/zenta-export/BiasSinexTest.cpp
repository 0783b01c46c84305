#include "zenta-export/BiasSinex.h"

#include "tools/report/Refused.h"
#include "tools/report/Reports.h"

#include <gtest/gtest.h>

namespace {

using namespace exports;

const SinexHead kHead = {"ZEN", "CAGZ", "2011:284:00060"};

std::vector<std::string> Solution(const std::string& sinex) {
  std::vector<std::string> lines;
  for (const std::string& line : LinesOf(sinex))
    if (line.starts_with(" DSB")) lines.push_back(line);
  return lines;
}

// Receiver P1-C1 = -0.6506 +- 0.0435 m, P2-C1 = 4.4359 +- 0.0480 m: the biases of P1 and P2 less
// that of C1. C1C-C1W = 0.6506 m / 0.299792458 = 2.1702 ns, C1C-C2W = -14.7966 ns.
TEST(BiasSinex, ReceiverLinesHaveTheOppositeSignOfTheEstimates) {
  const std::vector<std::string> lines =
      Solution(ToBiasSinex(ReadTestReport("full/report.txt"), kHead, nullptr));
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], " DSB  G    G   CAGZ      C1C  C1W  2011:283:03000 2011:283:04770 ns   "
                      "               2.1702      0.1451\n");
  EXPECT_EQ(lines[1], " DSB  G    G   CAGZ      C1C  C2W  2011:283:03000 2011:283:04770 ns   "
                      "             -14.7966      0.1601\n");
}

// Satellite 2: P1-C1 = -3.6487, P2-C1 = 3.8766 m, on top of C1 + 0.5 m and P2 + 0.8 m. Then
// bias(P1) - bias(C1) = -3.6487 + 0.5 m and bias(P2) - bias(C1) = 3.8766 + 0.5 - 0.8 m.
TEST(BiasSinex, SatelliteLinesGetTheHeldBiasesBack) {
  inputs::RunInputs held;
  held.first = {55844, 3000};
  held.last = {55844, 4770};
  held.corrections[2] = {0.5, 0.8};
  const std::vector<std::string> lines =
      Solution(ToBiasSinex(ReadTestReport("satellites.txt"), kHead, &held));
  ASSERT_EQ(lines.size(), 24U); // 12 satellites with both
  EXPECT_EQ(lines[0], " DSB       G02 CAGZ      C1C  C1W  2011:283:03000 2011:283:04770 ns   "
                      "              10.5029      0.1838\n");
  EXPECT_EQ(lines[1], " DSB       G02 CAGZ      C1C  C2W  2011:283:03000 2011:283:04770 ns   "
                      "             -11.9303      0.2065\n");
  // slot 2: P1-C1 = -0.5546 m
  EXPECT_EQ(lines[16], " DSB       R02 CAGZ      C1C  C1P  2011:283:03000 2011:283:04770 ns   "
                       "               1.8499      0.1838\n");
  EXPECT_NE(lines[17].find("C1C  C2P"), std::string::npos);
}

TEST(BiasSinex, HeadCountsItsLinesAndBlocksClose) {
  const std::string sinex = ToBiasSinex(ReadTestReport("full/report.txt"), kHead, nullptr);
  EXPECT_TRUE(sinex.starts_with(
      "%=BIA 1.00 ZEN 2011:284:00060 ZEN 2011:283:03000 2011:283:04770 R 00000002\n"));
  EXPECT_TRUE(sinex.ends_with("-BIAS/SOLUTION\n%=ENDBIA\n"));
  for (const char* block :
       {"FILE/REFERENCE", "FILE/COMMENT", "BIAS/DESCRIPTION", "BIAS/SOLUTION"}) {
    EXPECT_NE(sinex.find(std::string("\n+") + block + "\n"), std::string::npos);
    EXPECT_NE(sinex.find(std::string("\n-") + block + "\n"), std::string::npos);
  }
  EXPECT_NE(sinex.find("* Datum: Satellite biases are held fixed at P1-P2 of"), std::string::npos);
}

TEST(BiasSinex, CommentLinesHaveEightyCharactersAtMost) {
  const std::string sinex = ToBiasSinex(ReadTestReport("full/report.txt"), kHead, nullptr);
  for (const std::string& line : LinesOf(sinex.substr(0, sinex.find("+BIAS/SOLUTION"))))
    EXPECT_LE(line.size(), 81U) << line;
}

TEST(BiasSinex, SatelliteBiasesOnTopOfKnownOnesNeedTheInputs) {
  EXPECT_TRUE(NeedsInputs(ReadTestReport("satellites.txt")));
  EXPECT_FALSE(NeedsInputs(ReadTestReport("full/report.txt")));
  report::Report unknown = ReadTestReport("satellites.txt");
  unknown.settings.biases = report::BiasSource::none;
  EXPECT_FALSE(NeedsInputs(unknown));
}

TEST(BiasSinex, ReportWithoutBiasesIsRefused) {
  EXPECT_NE(RefusalOf([] { ToBiasSinex(ReadTestReport("phase.txt"), kHead, nullptr); }), "");
}

} // namespace
