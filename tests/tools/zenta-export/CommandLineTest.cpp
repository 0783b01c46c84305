#include "support/Files.h"
#include "tools/report/Reports.h"
#include "tools/report/Shell.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <map>

namespace {

Outcome RunExport(const std::string& arguments) { return RunProgram(ZENTA_EXPORT, arguments); }

TEST(ZentaExport, ReportFromAPipeBecomesJsonOnStandardOutput) {
  const Outcome o = RunExport("<" + ReportFile("code.txt"));
  EXPECT_EQ(o.status, 0);
  EXPECT_TRUE(o.out.starts_with("{\n \"format\": \"zenta-results\","));
  EXPECT_EQ(o.err, "");
}

TEST(ZentaExport, WritesWhatIsAskedFor) {
  const ScratchFolder folder;
  const Outcome o = RunExport(fmt::format(
      "-j {0}/r.json -c {0}/csv -b {0}/r.bia -r {1} -a {2} {3}", folder.Path().string(),
      ReportFile("full/residuals.res"), ReportFile("full/Ambiq.b"), ReportFile("full/report.txt")));
  EXPECT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(o.out, "");
  EXPECT_NE(ReadWhole(folder.Name("r.json")), "");
  EXPECT_NE(ReadWhole(folder.Name("csv/residuals.csv")), "");
  EXPECT_NE(ReadWhole(folder.Name("r.bia")), "");
}

TEST(ZentaExport, RefusedInputHasStatusOneAndWritesNothing) {
  const ScratchFolder folder;
  const std::string text = ReportText("full/report.txt");
  const std::string cut = folder.Write("cut.txt", text.substr(0, text.size() / 2));
  const Outcome o = RunExport(fmt::format("-j {} {}", folder.Name("r.json"), cut));
  EXPECT_EQ(o.status, 1);
  EXPECT_TRUE(o.err.starts_with("zenta-export: " + cut + ":")) << o.err;
  EXPECT_FALSE(std::filesystem::exists(folder.Name("r.json")));
  EXPECT_EQ(RunExport("/nowhere/report.txt").status, 1);
  EXPECT_EQ(RunExport("</dev/null").status, 1);
}

TEST(ZentaExport, ReportCutBeforeItsLastSectionsIsRefusedWhereTheyAreRequired) {
  const ScratchFolder folder;
  const std::string text = ReportText("full/report.txt");
  const std::string noEpochs =
      folder.Write("a", text.substr(0, text.find("ESTIMATION OF EPOCH TO EPOCH")));
  const std::string neither =
      folder.Write("b", text.substr(0, text.find("PRINTING OF RESIDUALS:")));
  EXPECT_EQ(RunExport(noEpochs).status, 0);
  EXPECT_EQ(RunExport("--require epochs " + noEpochs).status, 1);
  EXPECT_EQ(RunExport("--require residuals " + noEpochs).status, 0);
  EXPECT_EQ(RunExport("--require residuals,epochs " + neither).status, 1);
  EXPECT_EQ(RunExport(fmt::format("-r {} {}", ReportFile("full/residuals.res"), neither)).status,
            1);
  EXPECT_EQ(RunExport("--require residuals,epochs " + ReportFile("full/report.txt")).status, 0);
}

TEST(ZentaExport, ResidualFileOfAnotherRunIsRefused) {
  const ScratchFolder folder;
  const std::string bytes = ReportText("full/residuals.res");
  // The last epoch left out: what is left has the right form.
  std::size_t last = 0;
  for (std::size_t at = 2 + 2 * static_cast<unsigned char>(bytes[0]); at < bytes.size();) {
    last = at;
    at += 20 + 16 * static_cast<unsigned char>(bytes[at + 16]);
  }
  const std::string name = folder.Write("cut.res", bytes.substr(0, last));
  const Outcome o = RunExport(fmt::format("-r {} {}", name, ReportFile("full/report.txt")));
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.err.find("residuals, as the report says"), std::string::npos) << o.err;
}

TEST(ZentaExport, WrongUsageHasStatusTwo) {
  EXPECT_EQ(RunExport("--no-such-option").status, 2);
  EXPECT_EQ(RunExport("one two").status, 2);
  EXPECT_EQ(RunExport("--agency TOOLONG " + ReportFile("code.txt")).status, 2);
  EXPECT_EQ(RunExport("-j - -b - " + ReportFile("code.txt")).status, 2);
  EXPECT_EQ(RunExport("--require nothing " + ReportFile("code.txt")).status, 2);
}

TEST(ZentaExport, HelpAndVersionHaveStatusZero) {
  const Outcome help = RunExport("--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("--sinex"), std::string::npos);
  const Outcome version = RunExport("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_TRUE(version.out.starts_with("zenta-export 1."));
}

TEST(ZentaExport, OutputThatCanNotBeWrittenHasStatusOne) {
  EXPECT_EQ(RunExport("-j /nowhere/r.json " + ReportFile("code.txt")).status, 1);
  if (std::filesystem::exists("/dev/full")) {
    EXPECT_EQ(RunExport("-j /dev/full " + ReportFile("code.txt")).status, 1);
  }
}

TEST(ZentaExport, BiasSinexOfSatellitesSaysWhichInputIsMissing) {
  const Outcome o = RunExport("-b - " + ReportFile("satellites.txt"));
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.err.find("cagz2830.11o is not there"), std::string::npos) << o.err;
}

// ---- On recorded files ------------------------------------------------------------------------

constexpr const char* kObservations = "2011-283-cagz/cagz2830.11o";

/// Runs zenta on the recorded day for satellite biases from code, with further \p options.
/// \returns the Bias-SINEX lines of that run: satellite and observables to nanoseconds
std::map<std::string, double> WholeBiases(const std::string& options) {
  const ScratchFolder folder;
  const std::string report = folder.Name("report.txt");
  const std::string arguments =
      fmt::format("-r{} -es{} -xGPS -lCODE -me10 {} >{}", RealData(kObservations),
                  RealData("2011-283-cagz/igs16571.sp3"), options, report);
  EXPECT_EQ(std::system(fmt::format("cd {} && '{}' {} 2>/dev/null", folder.Path().string(),
                                    ZENTA_PROGRAM, arguments)
                            .c_str()),
            0);
  const Outcome o = RunExport("-b - " + report);
  EXPECT_EQ(o.status, 0) << o.err;
  std::map<std::string, double> biases;
  for (const std::string& line : LinesOf(o.out))
    if (line.starts_with(" DSB")) biases[line.substr(11, 24)] = std::stod(line.substr(70, 21));
  return biases;
}

// The sum of a satellite's and the receiver's biases is what code tells, whatever was known of
// it beforehand: held biases, up to 7 ns, must cancel when they are put back. What is left comes
// from differences of exactly 0, which count as missing: a held bias moves them away from 0.
TEST(ZentaExport, WholeSatelliteBiasesDoNotDependOnWhatWasHeldFixed) {
  SKIP_WITHOUT(kObservations);
  const auto free = WholeBiases("");
  const auto held = WholeBiases("-cb1" + RealData("dcb/P1P21110.DCB"));
  ASSERT_GT(free.size(), 50U); // two for each of some 31 satellites
  ASSERT_EQ(free.size(), held.size());
  for (const auto& [key, ns] : free) {
    ASSERT_TRUE(held.contains(key)) << key;
    EXPECT_NEAR(held.at(key), ns, 0.02) << key;
  }
}

TEST(ZentaExport, ReadsWhatTheProgramWritesToday) {
  SKIP_WITHOUT(kObservations);
  const ScratchFolder folder;
  const std::string orbits = RealData("2011-283-cagz/cod16571.eph");
  EXPECT_EQ(
      std::system(fmt::format("cd {} && '{}' -r{} -es{} -el{} -gf{} -xREC,IONEPH,IGRAD "
                              "-ii01:00:00 -lCODE,PHASE -pCOSZ -me10 -ft50 -bt5 -bl0.5 -fpr.res "
                              ">report.txt 2>/dev/null",
                              folder.Path().string(), ZENTA_PROGRAM, RealData(kObservations),
                              orbits, orbits, RealData("derived/glonass-channels.txt"))
                      .c_str()),
      0);
  const Outcome o =
      RunExport(fmt::format("--require residuals,epochs -j /dev/null -r {0}/r.res -a {0}/Ambiq.b "
                            "{0}/report.txt",
                            folder.Path().string()));
  EXPECT_EQ(o.status, 0) << o.err;
}

} // namespace
