// Whole days: every file that a run leaves, read by docs/FORMATS.md alone, and the JSON made of it.

#include "support/Files.h"
#include "tools/report/Cuts.h"
#include "tools/report/Shell.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace {

/// A folder with what a run and zenta-export leave, in the names that check_outputs.py knows.
class RunOutputs : public testing::Test {
protected:
  /// Runs zenta in the folder.
  void Zenta(const std::string& arguments) const {
    ASSERT_EQ(
        InFolder(ZENTA_PROGRAM, arguments + " -gpiion.dat -gpeepochs.dat -gpddcb.dat >report.txt"),
        "");
  }

  /// Has zenta-export make the JSON, with \p options, and compares all.
  void ExpectAsDocumented(const std::string& options) const {
    if (RunProgram("python3", "-c 'import jsonschema'").status != 0)
      GTEST_SKIP() << "python3-jsonschema is not installed";
    ASSERT_EQ(InFolder(ZENTA_EXPORT, options + " -a Ambiq.b -j results.json report.txt"), "");
    const Outcome o =
        RunProgram("python3", fmt::format("'{0}/tests/docs/check_outputs.py' '{1}' "
                                          "'{0}/docs/schema/zenta-results.schema.json'",
                                          ZENTA_SOURCE, folder.Path().string()));
    EXPECT_EQ(o.status, 0) << o.err.substr(0, 2000);
    std::puts(o.out.c_str());
  }

  void ExpectCutsRefused() const { ExpectEveryCutRefused(ReadWhole(folder.Name("report.txt"))); }

  /// \returns what a failed command said, empty after a good one
  std::string InFolder(const std::string& program, const std::string& arguments) const {
    const Outcome o = RunProgram(
        "cd", fmt::format("'{}' && ('{}' {})", folder.Path().string(), program, arguments));
    return o.status == 0 ? "" : fmt::format("status {}: {}", o.status, o.err);
  }

  const ScratchFolder folder;
};

/// What the read-me shows of the example day stands in its report, \p report.
void ExpectInReadme(const std::string& report) {
  const std::string readme = ReadWhole(std::string(ZENTA_SOURCE) + "/README.md");
  const std::size_t start = readme.find("What it says of the example day");
  int shown = 0;
  for (const std::string& line : LinesOf(readme.substr(start, readme.find("\n## ") - start))) {
    if (!line.starts_with("     ")) continue; // text, "..." or empty
    const std::string quoted = line.substr(4, line.size() - 5);
    EXPECT_NE(report.find("\n" + quoted), std::string::npos) << quoted;
    ++shown;
  }
  EXPECT_GE(shown, 10);
}

// The day of tools/example.
TEST_F(RunOutputs, OfTheExampleDayAreAsDocumented) {
  ASSERT_EQ(InFolder(ZENTA_SIM,
                     "make day --seed 2011 --code-noise 0.3 --phase-noise 0.002 --no-progress"),
            "");
  Zenta("$(cat day/arguments.txt) -ft50 -bt10 -bl0.5 -fpresiduals.res");
  ExpectCutsRefused();
  ExpectInReadme(ReadWhole(folder.Name("report.txt")));
  ExpectAsDocumented("-r residuals.res");
}

class RecordedOutputs : public RunOutputs {
protected:
  static constexpr const char* kObservations = "2011-283-cagz/cagz2830.11o";

  /// Arguments of the recorded day in hourly intervals.
  static std::string Recorded(const std::string& more) {
    const std::string orbits = RealData("2011-283-cagz/cod16571.eph");
    return fmt::format("-r{} -es{} -el{} -gf{} -cb1{} -cb2{} -ct{} -ii01:00:00 -lCODE,PHASE -pCOSZ "
                       "-me10 {}",
                       RealData(kObservations), orbits, orbits,
                       RealData("derived/glonass-channels.txt"), RealData("dcb/P1P21110.DCB"),
                       RealData("dcb/P1C11110.DCB"), RealData("lists/RECEIVER.LST"), more);
  }
};

TEST_F(RecordedOutputs, WithGradientsAndOutliersAreAsDocumented) {
  SKIP_WITHOUT(kObservations);
  Zenta(Recorded("-xREC,IONEPH,IGRAD -ft40 -bt10 -bl0.5 -fpresiduals.res"));
  ExpectAsDocumented("-r residuals.res");
}

TEST_F(RecordedOutputs, WithGradientsAndSatelliteBiasesAreAsDocumented) {
  SKIP_WITHOUT(kObservations);
  Zenta(Recorded("-xGPS,GLN,ION,IGRAD"));
  ExpectCutsRefused();
  ExpectAsDocumented("");
}

} // namespace
