#include "report/ReadReport.h"

#include "tools/report/Cuts.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace report;

class EveryReport : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Recorded, EveryReport, testing::ValuesIn(kReports), [](const auto& file) {
  return file.param.substr(0, file.param.find_first_of("/."));
});

std::string RefusalOfText(const std::string& text) {
  return RefusalOf([&] { ReadReport("r", text); });
}

TEST_P(EveryReport, CutBeforeAnyLineIsRefusedAtThatLine) {
  ExpectEveryCutRefused(ReportText(GetParam()));
}

TEST_P(EveryReport, CutWithinAnyLineIsRefused) {
  const std::vector<std::string> lines = LinesOf(ReportText(GetParam()));
  std::string text;
  for (const std::string& line : lines) {
    if (line.size() > 1) {
      EXPECT_NE(RefusalOfText(text + line.substr(0, line.size() / 2)), "") << line;
      EXPECT_NE(RefusalOfText(text + line.substr(0, line.size() - 1)), "") << line;
    }
    text += line;
  }
}

TEST_P(EveryReport, SomethingBehindItsEndIsRefused) {
  const std::string text = ReportText(GetParam());
  EXPECT_NE(RefusalOfText(text + "\n").find("expected the end of the report"), std::string::npos);
  EXPECT_NE(RefusalOfText(text + text).find("expected the end of the report"), std::string::npos);
}

TEST_P(EveryReport, ReadsTheSameWithEitherKindOfLineEnds) {
  std::string text = ReportText(GetParam());
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2)
    text.insert(at, 1, '\r');
  EXPECT_EQ(RefusalOfText(text), "");
}

TEST(ReadReport, SettingsOfTheFullReport) {
  const Settings s = ReadTestReport("full/report.txt").settings;
  EXPECT_EQ(s.release, "20 JUL 2012");
  EXPECT_EQ(s.created.size(), std::string("2011-10-10T01:02:03").size());
  EXPECT_EQ(s.files.observations, "cagz2830.11o");
  EXPECT_EQ(s.files.gpsNavigation, "");
  EXPECT_EQ(s.files.gpsOrbits, "cod16571.eph");
  EXPECT_EQ(s.files.glonassOrbits, "cod16571.eph");
  EXPECT_EQ(s.files.glonassChannels, "glonass-channels.txt");
  EXPECT_EQ(s.files.dcbP1P2, "P1P21110.DCB");
  EXPECT_EQ(s.files.dcbP1C1, "P1C11110.DCB");
  EXPECT_EQ(s.files.dcbP2C2, "");
  EXPECT_EQ(s.files.codeTracking, "RECEIVER.LST");
  EXPECT_EQ(s.files.multipath2, "");
  EXPECT_EQ(s.minElevation, 10);
  EXPECT_TRUE(s.minElevationGiven);
  EXPECT_TRUE(s.usesP1C1 && s.usesP2C1 && s.usesPhase);
  EXPECT_EQ(s.biases, BiasSource::code);
  EXPECT_TRUE(s.weightedByElevation);
  EXPECT_EQ(s.misclosureLimit, 8);
  EXPECT_EQ(s.codeResidualLimit, 4);
  EXPECT_EQ(s.phaseResidualLimit, 0.3);
  EXPECT_TRUE(s.estimatesReceiverP1C1 && s.estimatesReceiverP2C1);
  EXPECT_FALSE(s.estimatesGPS || s.estimatesGLONASS);
  EXPECT_TRUE(s.estimatesIonosphere && s.estimatesGradients);
  EXPECT_EQ(s.interval, 900);
}

TEST(ReadReport, SettingsOfARunWithCodeAlone) {
  const Settings s = ReadTestReport("code.txt").settings;
  EXPECT_TRUE(s.usesCode && s.usesP1C1 && s.usesP2C1);
  EXPECT_FALSE(s.usesPhase);
  EXPECT_EQ(s.minElevation, 5);
  EXPECT_FALSE(s.minElevationGiven);
  EXPECT_FALSE(s.weightedByElevation);
  EXPECT_FALSE(s.misclosureLimit || s.codeResidualLimit || s.phaseResidualLimit);
  EXPECT_TRUE(s.estimatesReceiver && s.estimatesGLONASS);
  EXPECT_FALSE(s.estimatesGPS || s.estimatesIonosphere);
  EXPECT_EQ(s.interval, 0);
}

TEST(ReadReport, SettingsOfARunWithoutBiases) {
  const Settings s = ReadTestReport("phase.txt").settings;
  EXPECT_FALSE(s.usesCode || s.usesP1C1 || s.usesP2C1);
  EXPECT_TRUE(s.usesPhase);
  EXPECT_EQ(s.biases, BiasSource::none);
  EXPECT_FALSE(s.estimatesReceiver);
  EXPECT_EQ(s.interval, 1800);
}

TEST(ReadReport, AdjustmentOfTheFullReport) {
  const Report r = ReadTestReport("full/report.txt");
  ASSERT_EQ(r.eclipses.size(), 2U);
  EXPECT_EQ(r.eclipses[1].satellite, 103);
  EXPECT_EQ(r.eclipses[1].observations, 24);
  ASSERT_EQ(r.adjustment.misclosures.size(), 12U);
  const Outlier& first = r.adjustment.misclosures.front();
  EXPECT_EQ(first.epochIndex, 5);
  EXPECT_EQ(first.epoch, (Epoch{55844, 3150}));
  EXPECT_EQ(first.satellite, 4);
  EXPECT_EQ(first.observable, Observable::P2C1);
  EXPECT_EQ(first.value, -8.271);
  EXPECT_EQ(r.adjustment.residuals.size(), 26U);
  ASSERT_TRUE(r.adjustment.eliminated);
  EXPECT_EQ(r.adjustment.eliminated->unknowns, 22);
  EXPECT_EQ(r.adjustment.eliminated->variance, 0.1555);
  EXPECT_EQ(r.statistics.iterations, 3);
  EXPECT_EQ(r.statistics.epochs, 60);
  EXPECT_EQ(r.statistics.observations, 5767);
  EXPECT_EQ(r.statistics.outliers, 26);
  EXPECT_EQ(r.statistics.deviation, 0.39);
  EXPECT_EQ(r.statistics.variance, 0.16);
}

TEST(ReadReport, ReceiverBiasesInMetresAndMicroseconds) {
  const Report r = ReadTestReport("full/report.txt");
  ASSERT_TRUE(r.receiverP1C1 && r.receiverP2C1);
  EXPECT_EQ(r.receiverP1C1->value, -0.6506);
  EXPECT_EQ(r.receiverP1C1->sigma, 0.0435);
  EXPECT_EQ(r.receiverP1C1->observations, 437);
  EXPECT_EQ(r.receiverP2C1->value, 4.4359);
  EXPECT_EQ(r.receiverP2C1->sigma, 0.0480);
  EXPECT_EQ(r.receiverP2C1->microseconds, 0.01480);
  EXPECT_EQ(r.receiverP2C1->sigmaMicroseconds, 0.00016);
}

TEST(ReadReport, SatelliteBiasesOfBothSystems) {
  const Report r = ReadTestReport("satellites.txt");
  ASSERT_EQ(r.satellites.size(), 13U);
  EXPECT_EQ(r.satellites[0].satellite, 2);
  EXPECT_EQ(r.satellites[0].p1c1->value, -3.6487);
  EXPECT_EQ(r.satellites[0].p2c1->sigma, 0.0619);
  EXPECT_EQ(r.satellites[0].p2c1->observations, 60);
  EXPECT_EQ(r.satellites[9].satellite, 103);
  EXPECT_EQ(r.satellites[9].p2c1->microseconds, 0.0115);
  EXPECT_EQ(r.satellites[12].satellite, 114);
  EXPECT_FALSE(r.satellites[12].p1c1 || r.satellites[12].p2c1);
}

TEST(ReadReport, AmbiguitiesAndIntervals) {
  const Report r = ReadTestReport("phase.txt");
  ASSERT_EQ(r.ambiguities.size(), 8U);
  const Ambiguity& a = r.ambiguities[1];
  EXPECT_EQ(a.id, 2);
  EXPECT_EQ(a.satellite, 4);
  EXPECT_EQ(Iso(a.first), "2011-10-10T00:50:00");
  EXPECT_EQ(Iso(a.last), "2011-10-10T00:58:00");
  EXPECT_EQ(a.value.value, -3.5356);
  EXPECT_EQ(a.value.sigma, 0.0448);
  EXPECT_EQ(a.observations, 17);
  ASSERT_EQ(r.intervals.size(), 1U);
  EXPECT_EQ(r.intervals[0].first, (Epoch{55844, 3000}));
  EXPECT_EQ(r.intervals[0].delay.value, 1.3968);
  EXPECT_EQ(r.intervals[0].rate.sigma, 0.0102);
  EXPECT_EQ(r.intervals[0].observations, 408);
  EXPECT_FALSE(r.intervals[0].east);
  EXPECT_FALSE(r.residuals || r.epochs);
}

TEST(ReadReport, LastSectionsOfTheFullReport) {
  const Report r = ReadTestReport("full/report.txt");
  ASSERT_TRUE(r.residuals);
  EXPECT_EQ(r.residuals->file, "residuals.res");
  ASSERT_TRUE(r.epochs);
  EXPECT_EQ(r.epochs->size(), 60U);
  EXPECT_TRUE(r.epochs->front().east && r.epochs->front().north);
  EXPECT_EQ(r.intervals.size(), 2U);
  EXPECT_TRUE(r.intervals.front().east);
  const std::optional<Span> span = SpanOf(r);
  ASSERT_TRUE(span);
  EXPECT_EQ(Iso(span->first), "2011-10-10T00:50:00");
  EXPECT_EQ(Iso(span->last), "2011-10-10T01:19:30");
}

TEST(ReadReport, PrintedMicrosecondsAreMetresOverTheSpeedOfLight) {
  for (const char* file : {"full/report.txt", "code.txt"}) {
    const Report r = ReadTestReport(file);
    for (const auto& b : {r.receiverP1C1, r.receiverP2C1})
      EXPECT_NEAR(b->microseconds, b->value / 299.792458, 0.5e-5 + 0.5e-4 / 299) << file;
  }
}

TEST(ReadReport, ForeignTextIsRefusedAtItsFirstLine) {
  EXPECT_TRUE(RefusalOfText("").starts_with("r:1: expected \"____"));
  EXPECT_TRUE(RefusalOfText("<html>\n").starts_with("r:1: expected \"____"));
  EXPECT_TRUE(RefusalOfText(std::string(5, '\0') + '\n').starts_with("r:1: expected "));
  EXPECT_TRUE(RefusalOfText("#ION_TYPE: LINEAR\n").starts_with("r:1: expected "));
  const std::string other = With(ReportText("full/report.txt"), "Zenta  ", "Other  ");
  EXPECT_TRUE(RefusalOfText(other).starts_with("r:2: expected ")) << RefusalOfText(other);
}

TEST(ReadReport, RefusalOfForeignTextSaysWhatAReportIs) {
  const std::string hint = "; a report is the standard output of zenta";
  EXPECT_TRUE(RefusalOfText("").ends_with(hint));
  EXPECT_TRUE(RefusalOfText("     2.11           OBSERVATION DATA\n").ends_with(hint));
  const std::string text = ReportText("code.txt");
  EXPECT_FALSE(RefusalOfText(text.substr(0, text.size() / 2)).ends_with(hint));
}

TEST(ReadReport, ReportThatEndsInAFatalMessageIsRefused) {
  const std::string text = ReportText("code.txt");
  const std::string cut = text.substr(0, text.find("  DONE!"));
  EXPECT_NE(RefusalOfText(cut + "\n**********\nMATRIX::ERROR:\n").find("found \"\""),
            std::string::npos);
}

TEST(ReadReport, CountsHaveToAgreeWithWhatTheyCount) {
  const std::string text = ReportText("full/report.txt");
  for (const auto& [from, to] :
       {std::pair("#OUT:         26", "#OUT:         25"),
        std::pair("  #OBS       :       5767", "  #OBS       :       5768"),
        std::pair("  #OUTLIERS  :         26", "  #OUTLIERS  :         27"),
        std::pair("all ambiguities:         12", "all ambiguities:         11"),
        std::pair("all ambiguities:         12", "all ambiguities:         13"),
        std::pair("delays: 60", "delays: 61"),
        std::pair("    2     R 3                  24", "    3     R 3                  24"),
        std::pair("angle             : 10.0 [", "angle             : 11.0 [")})
    EXPECT_NE(RefusalOfText(With(text, from, to)), "") << to;
}

TEST(ReadReport, DroppedOutlierLineIsRefused) {
  std::string text = ReportText("full/report.txt");
  const std::size_t at = text.find("  EPH:      16   55844  3480.0   PRN:    4  OUTLIER L1-L2 (V)");
  ASSERT_NE(at, std::string::npos);
  text.erase(at, text.find('\n', at) + 1 - at);
  EXPECT_NE(RefusalOfText(text).find("expected 25 outliers"), std::string::npos);
}

TEST(ReadReport, NumbersMayBeWiderThanTheirColumnsOrNoneAtAll) {
  const std::string text = ReportText("phase.txt");
  const Report r =
      ReadReport("r", With(With(text, "      1.3968 +-  0.0276", "-12345678.3968 +-    -nan"),
                           "REF. VAR. APOSTERORI:     0.0872    [SQRT]:      0.295",
                           "REF. VAR. APOSTERORI:    -0.0872    [SQRT]:       -nan"));
  EXPECT_EQ(r.intervals[0].delay.value, -12345678.3968);
  EXPECT_TRUE(std::isnan(r.intervals[0].delay.sigma));
  EXPECT_TRUE(std::isnan(r.adjustment.iterated.deviation));
}

TEST(ReadReport, WarningsOfReadersBeforeTheReportAreKept) {
  const std::string text = "\n#### RINEX: Warning -> TWO\nLINES ####\n     Continuing RINEX ... \n"
                           "\n#### GPSbEph: Warning -> OLD ####\n     Continuing GPSbEph ... \n\n" +
                           ReportText("phase.txt");
  const Report r = ReadReport("r", text);
  ASSERT_EQ(r.warnings.size(), 2U);
  EXPECT_EQ(r.warnings[0], "RINEX: Warning -> TWO\nLINES");
  EXPECT_EQ(r.warnings[1], "GPSbEph: Warning -> OLD");
  EXPECT_TRUE(LooksLikeReport(text));
}

TEST(ReadReport, OnlyReportsLookLikeReports) {
  EXPECT_TRUE(LooksLikeReport(ReportText("code.txt")));
  EXPECT_FALSE(LooksLikeReport(""));
  EXPECT_FALSE(LooksLikeReport("#ION_TYPE: LINEAR\n"));
  EXPECT_FALSE(LooksLikeReport(std::string(120, '_') + "\nsomething else\n"));
}

TEST(Report, NamesOfSatellites) {
  EXPECT_EQ(NameOf(5), "G05");
  EXPECT_EQ(NameOf(99), "G99");
  EXPECT_EQ(NameOf(112), "R12");
  EXPECT_EQ(NameOf(200), "");
  EXPECT_EQ(NameOf(0), "");
}

TEST(Report, IntervalEndsAtTheNextUnlessAGapPartsThem) {
  Report r;
  r.settings.interval = 3600;
  r.intervals.resize(3);
  r.intervals[0].first = {55844, 0};
  r.intervals[1].first = {55844, 3630};
  r.intervals[2].first = {55844, 9000}; // 5370 s later: a gap
  EXPECT_EQ(EndOf(r, 0), (Epoch{55844, 3630}));
  EXPECT_EQ(EndOf(r, 1), (Epoch{55844, 7230}));
  EXPECT_EQ(EndOf(r, 2), (Epoch{55844, 12600}));
  EXPECT_EQ(SpanOf(r)->last, (Epoch{55844, 12600}));
}

} // namespace
