// The three commands one after the other, as a user types them.

#include "Process.h"
#include "support/Files.h"
#include "support/Paths.h"
#include <gtest/gtest.h>
#include <sstream>

static std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(Commands, MakeRunAndCompareEndWellWithinAMillimetre) {
  const ScratchFolder folder;
  const std::string here = folder.Path().string();
  const Outcome make = RunProgram(ZENTA_SIM_PROGRAM,
                                  {"make", "set", "--interval", "60", "--ion-interval", "00:59:50",
                                   "--code-noise", "0", "--phase-noise", "0", "--wind-up", "exact"},
                                  here);
  ASSERT_EQ(make.status, 0) << make.err;
  EXPECT_EQ(make.err, ""); // standard error is no terminal
  const Outcome run =
      RunProgram(ZENTA_PROGRAM, Lines(ReadWhole(folder.Name("set/arguments.txt"))), here);
  ASSERT_EQ(run.status, 0) << run.err;
  folder.Write("report.txt", run.out);
  const Outcome compare = RunProgram(
      ZENTA_SIM_PROGRAM, {"compare", "set/truth.json", "report.txt", "--limit", "0.001"}, here);
  EXPECT_EQ(compare.status, 0) << compare.out << compare.err;
  EXPECT_NE(compare.out.find("receiver DCB P2-C1"), std::string::npos);
}

TEST(Commands, CompareFailsBeyondItsLimitAndOnOtherFiles) {
  const ScratchFolder folder;
  const std::string here = folder.Path().string();
  const Outcome make = RunProgram(
      ZENTA_SIM_PROGRAM,
      {"make", "set", "--interval", "60", "--ion-interval", "00:59:50", "--systems", "G"}, here);
  ASSERT_EQ(make.status, 0) << make.err;
  const Outcome run =
      RunProgram(ZENTA_PROGRAM, Lines(ReadWhole(folder.Name("set/arguments.txt"))), here);
  ASSERT_EQ(run.status, 0) << run.err;
  folder.Write("report.txt", run.out);
  const auto compare = [&](const char* truth, const char* report) {
    return RunProgram(ZENTA_SIM_PROGRAM, {"compare", truth, report, "--limit", "1e-6"}, here);
  };
  EXPECT_EQ(compare("set/truth.json", "report.txt").status, 1);
  EXPECT_EQ(compare("set/truth.json", "set/truth.json").status, 1);
  EXPECT_EQ(compare("report.txt", "report.txt").status, 1);
  EXPECT_EQ(compare("absent", "report.txt").status, 1);
}
