#include "report/ReadReport.h"
#include "support/Files.h"
#include "tools/report/Reports.h"
#include "tools/report/Shell.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>

namespace {

namespace fs = std::filesystem;

Outcome RunView(const std::string& arguments) { return RunProgram(ZENTA_VIEW, arguments); }

/// A folder with what a run leaves behind.
class RunFolder {
public:
  RunFolder() {
    for (const char* file : {"report.txt", "residuals.res", "Ambiq.b"})
      fs::copy_file(ReportFile(std::string("full/") + file), folder_.Name(file));
  }
  std::string Path() const { return folder_.Path().string(); }
  std::string Name(const std::string& file) const { return folder_.Name(file); }
  void Write(const std::string& file, const std::string& text) const { folder_.Write(file, text); }
  std::string Page() const { return ReadWhole(folder_.Name("zenta-view.html")); }

private:
  ScratchFolder folder_;
};

long CountOf(const std::string& text, const std::string& part) {
  long n = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++n;
  return n;
}

class ZentaView : public testing::Test {
protected:
  void SetUp() override {
    if (RunProgram("gnuplot", "--version").status != 0) GTEST_SKIP() << "gnuplot is not installed";
  }
};

TEST_F(ZentaView, FolderOfARunBecomesAPage) {
  const RunFolder run;
  const Outcome o = RunView(run.Path());
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(o.out, run.Name("zenta-view.html") + "\n");
  const std::string page = run.Page();
  EXPECT_TRUE(page.starts_with("<!DOCTYPE html>"));
  EXPECT_TRUE(page.ends_with("</html>\n"));
  // delay, rate, gradients, biases, residuals by time, arcs; the rest needs the input files
  EXPECT_EQ(CountOf(page, "<svg"), 6);
  EXPECT_NE(page.find("cagz2830.11o is not there"), std::string::npos);
  EXPECT_NE(page.find("14.797 ± 0.160"), std::string::npos); // P2-C1, 4.4359 m in ns
}

TEST_F(ZentaView, PageAsksForNothingElse) {
  const RunFolder run;
  ASSERT_EQ(RunView(run.Path()).status, 0);
  const std::string page = run.Page();
  for (const char* part : {"http://", "https://", "<script", " src=", "@import", "url("})
    EXPECT_EQ(page.find(part), std::string::npos) << part;
  EXPECT_NE(page.find("default-src 'none'"), std::string::npos);
}

TEST_F(ZentaView, NamesOfPartsAreThereOnceAndReferencesMeet) {
  const RunFolder run;
  ASSERT_EQ(RunView(run.Path()).status, 0);
  const std::string page = run.Page();
  std::set<std::string> ids;
  const std::regex id("\\sid=['\"]([^'\"]+)['\"]");
  for (std::sregex_iterator m(page.begin(), page.end(), id), end; m != end; ++m)
    EXPECT_TRUE(ids.insert((*m)[1]).second) << (*m)[1];
  const std::regex reference("href=['\"]#([^'\"]+)['\"]");
  long references = 0;
  for (std::sregex_iterator m(page.begin(), page.end(), reference), end; m != end;
       ++m, ++references)
    EXPECT_TRUE(ids.contains((*m)[1])) << (*m)[1];
  EXPECT_GT(references, 10);
}

TEST_F(ZentaView, ColoursOfThePageFollowItsTheme) {
  const RunFolder run;
  ASSERT_EQ(RunView(run.Path()).status, 0);
  const std::string page = run.Page();
  EXPECT_NE(page.find("prefers-color-scheme: dark"), std::string::npos);
  EXPECT_NE(page.find("'var(--gps)'"), std::string::npos);
  EXPECT_EQ(page.find("rgb(  1, 162"), std::string::npos);
  EXPECT_EQ(page.find("@ink@"), std::string::npos);
}

TEST_F(ZentaView, PicturesAsFiles) {
  const RunFolder run;
  const Outcome o =
      RunView(fmt::format("--svg {0}/svg --png {0}/png --theme dark {0}", run.Path()));
  ASSERT_EQ(o.status, 0) << o.err;
  for (const char* name : {"delay", "rate", "gradient", "dcb", "residuals_time", "arcs"}) {
    const std::string svg = ReadWhole(run.Name(fmt::format("svg/{}.svg", name)));
    EXPECT_TRUE(svg.starts_with("<?xml")) << name;
    EXPECT_EQ(svg.find("var(--"), std::string::npos) << name;
    EXPECT_TRUE(ReadWhole(run.Name(fmt::format("png/{}.png", name))).starts_with("\x89PNG"))
        << name;
  }
}

TEST_F(ZentaView, RunWithoutIonosphereHasItsBiases) {
  const ScratchFolder folder;
  fs::copy_file(ReportFile("code.txt"), folder.Name("report.txt"));
  ASSERT_EQ(RunView(folder.Path().string()).status, 0);
  const std::string page = ReadWhole(folder.Name("zenta-view.html"));
  EXPECT_EQ(CountOf(page, "<svg"), 1);
  EXPECT_NE(page.find("the run wrote no residual file"), std::string::npos);
  EXPECT_NE(page.find("No outliers."), std::string::npos);
}

TEST_F(ZentaView, EveryKindOfReportIsDrawn) {
  for (const std::string& file : kReports) {
    const ScratchFolder folder;
    const Outcome o =
        RunView(fmt::format("-o {} --report {}", folder.Name("p.html"), ReportFile(file)));
    EXPECT_EQ(o.status, 0) << file << o.err;
  }
}

TEST_F(ZentaView, NamesInAReportDoNotBecomeMarkup) {
  const RunFolder run;
  run.Write("report.txt",
            With(ReportText("full/report.txt"), " : cagz2830.11o", " : <b>x</b>.11o"));
  ASSERT_EQ(RunView(run.Path()).status, 0);
  EXPECT_EQ(run.Page().find("<b>x</b>"), std::string::npos);
  EXPECT_NE(run.Page().find("&lt;b&gt;x&lt;/b&gt;"), std::string::npos);
}

TEST_F(ZentaView, ReportFromAPipe) {
  const ScratchFolder folder;
  const Outcome o =
      RunView(fmt::format("--report - -o {} < {}", folder.Name("p.html"), ReportFile("phase.txt")));
  EXPECT_EQ(o.status, 0) << o.err;
}

TEST(ZentaViewRefusals, CutReportHasStatusOneAndNoPage) {
  const RunFolder run;
  const std::string text = ReportText("full/report.txt");
  run.Write("report.txt", text.substr(0, text.size() - 40));
  const Outcome o = RunView(run.Path());
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.err.find("report.txt:"), std::string::npos) << o.err;
  EXPECT_FALSE(fs::exists(run.Name("zenta-view.html")));
}

TEST(ZentaViewRefusals, FolderWithoutAReportSaysHowToMakeOne) {
  const ScratchFolder folder;
  const Outcome o = RunView(folder.Path().string());
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.err.find("zenta ... > "), std::string::npos) << o.err;
  EXPECT_EQ(RunView("/nowhere").status, 1);
}

TEST(ZentaViewRefusals, FileInPlaceOfAFolderPointsToItsOption) {
  const std::string file = ReportFile("code.txt");
  const Outcome o = RunView(file);
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.err.find("--report " + file), std::string::npos) << o.err;
}

TEST(ZentaViewRefusals, FolderWithSeveralReportsAsksForOne) {
  const RunFolder run;
  run.Write("second.txt", ReportText("code.txt"));
  const Outcome o = RunView(run.Path());
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.err.find("--report"), std::string::npos) << o.err;
}

TEST(ZentaViewRefusals, CutResidualFileHasStatusOne) {
  const RunFolder run;
  const std::string bytes = ReportText("full/residuals.res");
  run.Write("residuals.res", bytes.substr(0, bytes.size() - 1));
  const Outcome o = RunView(run.Path());
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.err.find("residuals.res: byte "), std::string::npos) << o.err;
}

TEST(ZentaViewRefusals, MissingGnuplotIsNamed) {
  const RunFolder run;
  const Outcome o = RunProgram("env", fmt::format("PATH=/nowhere '{}' {}", ZENTA_VIEW, run.Path()));
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.err.find("gnuplot-nox"), std::string::npos) << o.err;
}

TEST(ZentaViewRefusals, WrongUsageHasStatusTwo) {
  EXPECT_EQ(RunView("--no-such-option").status, 2);
  EXPECT_EQ(RunView("one two").status, 2);
  EXPECT_EQ(RunView("--theme green .").status, 2);
}

// ---- On recorded files ------------------------------------------------------------------------

TEST_F(ZentaView, RecordedDayHasEveryPicture) {
  constexpr const char* kObservations = "2011-283-cagz/cagz2830.11o";
  SKIP_WITHOUT(kObservations);
  const ScratchFolder folder;
  const std::string orbits = RealData("2011-283-cagz/cod16571.eph");
  ASSERT_EQ(
      RunProgram("sh", fmt::format("-c \"cd {} && '{}' -r{} -es{} -el{} -gf{} -xREC,ION "
                                   "-ii01:00:00 -lCODE,PHASE -pCOSZ -me10 -fpday.res "
                                   ">report.txt\"",
                                   folder.Path().string(), ZENTA_PROGRAM, RealData(kObservations),
                                   orbits, orbits, RealData("derived/glonass-channels.txt")))
          .status,
      0);
  const Outcome o = RunView(folder.Path().string());
  ASSERT_EQ(o.status, 0) << o.err;
  const std::string page = ReadWhole(folder.Name("zenta-view.html"));
  for (const char* name : {"delay", "rate", "dcb", "residuals_time", "residuals_elevation",
                           "sky_p1c1", "sky_p2c1", "sky_l4", "arcs"})
    EXPECT_EQ(CountOf(page, fmt::format("<h2 id=\"s-{}\">", name)), 1) << name;
  EXPECT_LT(page.size(), 4000000U);
  EXPECT_NE(page.find("<h1>CAGZ</h1>"), std::string::npos);
}

} // namespace
