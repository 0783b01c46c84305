#include "inputs/RunInputs.h"

#include "report/ReadReport.h"
#include "report/ResidualFile.h"
#include "support/Files.h"
#include "tools/report/Reports.h"
#include "tools/report/Shell.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

namespace {

using namespace inputs;
namespace fs = std::filesystem;

TEST(Find, LooksInTheFolderAskedForFirstThenAsNamedThenBesideTheReport) {
  const ScratchFolder folder;
  fs::create_directories(folder.Path() / "a/sub");
  fs::create_directories(folder.Path() / "b");
  folder.Write("a/sub/x.txt", "");
  folder.Write("a/y.txt", "");
  folder.Write("b/x.txt", "");
  const std::string a = folder.Name("a");
  EXPECT_EQ(Find("sub/x.txt", {a, ""}), a + "/sub/x.txt");
  EXPECT_EQ(Find("/elsewhere/y.txt", {a, ""}), a + "/y.txt");
  EXPECT_EQ(Find("sub/x.txt", {a, folder.Name("b")}), folder.Name("b") + "/x.txt");
  EXPECT_EQ(Find(folder.Name("b/x.txt"), {a, ""}), folder.Name("b/x.txt"));
  EXPECT_EQ(Find("z.txt", {a, folder.Name("b")}), "");
  EXPECT_EQ(Find("sub", {a, ""}), ""); // a folder is no file
}

TEST(ReadInputs, MissingFileIsNamed) {
  const ScratchFolder folder;
  std::string whyNot;
  EXPECT_FALSE(ReadInputs(ReadTestReport("full/report.txt"), {folder.Path().string(), ""}, whyNot));
  EXPECT_EQ(whyNot, "cagz2830.11o is not there");
}

/// A run on recorded files in a folder of its own, and its report.
class RecordedRun {
public:
  explicit RecordedRun(const std::string& arguments) {
    const Outcome o =
        RunProgram("sh", fmt::format("-c \"cd {} && '{}' {} -fpr.res >report.txt\"",
                                     folder_.Path().string(), ZENTA_PROGRAM, arguments));
    EXPECT_EQ(o.status, 0) << o.err;
    report = report::ReadReport("r", ReadWhole(folder_.Name("report.txt")));
    residuals = report::ReadResidualFile("f", ReadWhole(folder_.Name("r.res")));
  }
  std::string Folder() const { return folder_.Path().string(); }

  report::Report report;
  report::ResidualFile residuals;

private:
  ScratchFolder folder_;
};

std::string MainDay(const std::string& options) {
  const std::string orbits = RealData("2011-283-cagz/cod16571.eph");
  return fmt::format("-r{} -es{} -el{} -gf{} -cb1{} -cb2{} -ct{} {}",
                     RealData("2011-283-cagz/cagz2830.11o"), orbits, orbits,
                     RealData("derived/glonass-channels.txt"), RealData("dcb/P1P21110.DCB"),
                     RealData("dcb/P1C11110.DCB"), RealData("lists/RECEIVER.LST"), options);
}

// What the run itself found: eclipsed records by satellite, and residuals above the cut-off alone.
TEST(ReadInputs, DirectionsAreThoseOfTheRun) {
  SKIP_WITHOUT("2011-283-cagz/cagz2830.11o");
  const RecordedRun run(MainDay("-xREC,ION -ii01:00:00 -lCODE,PHASE -me10"));
  std::string whyNot;
  const auto inputs = ReadInputs(run.report, {run.Folder(), ""}, whyNot);
  ASSERT_TRUE(inputs) << whyNot;
  EXPECT_EQ(inputs->marker, "CAGZ");
  EXPECT_EQ(inputs->tracking, Tracking::P1P2);
  EXPECT_NEAR(inputs->latitude, 39.14 * 3.14159265 / 180, 0.01); // Capoterra, Sardinia
  EXPECT_NEAR(inputs->longitude, 8.97 * 3.14159265 / 180, 0.01);

  std::map<report::Satellite, long> eclipsed;
  std::map<std::pair<double, report::Satellite>, double> elevations;
  for (const Direction& d : inputs->directions) {
    if (d.eclipsed) ++eclipsed[d.satellite];
    elevations[{d.epoch.second, d.satellite}] = d.elevation;
  }
  ASSERT_EQ(eclipsed.size(), run.report.eclipses.size());
  for (const report::Eclipse& e : run.report.eclipses)
    EXPECT_EQ(eclipsed[e.satellite], e.observations) << e.satellite;
  for (const report::ResidualBlock& b : run.residuals.blocks)
    for (const report::Residual& r : b.residuals)
      ASSERT_GT(elevations.at({b.epoch.second, r.satellite}), 10 * 3.14159265358979 / 180);
}

// With the biases as the file lists them; k = f2^2/(f1^2-f2^2) is 1.5457 and 49/32.
TEST(ReadInputs, CorrectionsAreThoseOfTheBiasFile) {
  SKIP_WITHOUT("2011-283-cagz/cagz2830.11o");
  const RecordedRun run(MainDay("-xREC -lCODE -me10"));
  std::map<std::string, double> listed; // [ns] of the lines "G05   name   value   rms"
  for (const std::string& line : LinesOf(ReadWhole(RealData("dcb/P1P21110.DCB"))))
    if (line.size() > 34 && (line[0] == 'G' || line[0] == 'R') && line[1] >= '0' && line[1] <= '9')
      listed[line.substr(0, 3)] = std::stod(line.substr(26, 9));
  std::string whyNot;
  const auto inputs = ReadInputs(run.report, {run.Folder(), ""}, whyNot);
  ASSERT_TRUE(inputs) << whyNot;
  const CodeCorrection g = inputs->corrections.at(5);
  EXPECT_NEAR(g.C1, 1.5457278 * 0.299792458 * listed.at("G05"), 1e-5);
  EXPECT_NEAR(g.P2, 2.5457278 * 0.299792458 * listed.at("G05"), 1e-5);
  const CodeCorrection r = inputs->corrections.at(103);
  EXPECT_NEAR(r.C1, 49.0 / 32 * 0.299792458 * listed.at("R03"), 1e-5);
  EXPECT_NEAR(r.P2, 81.0 / 32 * 0.299792458 * listed.at("R03"), 1e-5);
}

TEST(ReadInputs, ObservationsOfAnotherRunAreNotTaken) {
  SKIP_WITHOUT("2011-283-cagz/cagz2830.11o");
  report::Report r = ReadTestReport("full/report.txt"); // of 60 epochs
  r.settings.files.codeTracking.clear();
  for (std::string* file : {&r.settings.files.gpsOrbits, &r.settings.files.glonassOrbits})
    *file = RealData("2011-283-cagz/cod16571.eph");
  r.settings.files.glonassChannels = RealData("derived/glonass-channels.txt");
  r.settings.files.dcbP1P2 = RealData("dcb/P1P21110.DCB");
  r.settings.files.dcbP1C1 = RealData("dcb/P1C11110.DCB");
  r.settings.files.observations = RealData("2011-283-cagz/cagz2830.11o");
  std::string whyNot;
  EXPECT_FALSE(ReadInputs(r, {".", ""}, whyNot));
  EXPECT_NE(whyNot.find("holds 2880 epochs, the run had 60"), std::string::npos) << whyNot;
}

TEST(ReadInputsDeathTest, FileThatItsReaderRefusesEndsWithTheReadersMessage) {
  const ScratchFolder folder;
  report::Report r = ReadTestReport("phase.txt");
  folder.Write("cagz2830.11o", "not a RINEX file\n");
  folder.Write("cod16571.eph", "not an orbit file\n");
  std::string whyNot;
  EXPECT_EXIT(ReadInputs(r, {folder.Path().string(), ""}, whyNot), testing::ExitedWithCode(1),
              "Error");
}

} // namespace
