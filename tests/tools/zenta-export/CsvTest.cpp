#include "zenta-export/Csv.h"

#include "tools/report/Reports.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <map>

namespace {

using exports::Results;

std::map<std::string, std::string> TablesOf(const Results& results) {
  const auto tables = exports::ToCsv(results);
  return {tables.begin(), tables.end()};
}

Results FullResults() {
  Results results;
  results.report = ReadTestReport("full/report.txt");
  results.residuals = report::ReadResidualFile("r", ReportText("full/residuals.res"));
  results.arcs = report::ReadArcFile("a", ReportText("full/Ambiq.b"));
  return results;
}

/// Lines behind the comments, without their ends.
std::vector<std::string> Rows(const std::string& table) {
  std::vector<std::string> rows;
  for (const std::string& line : LinesOf(table))
    if (!line.starts_with("# ")) rows.push_back(line.substr(0, line.size() - 1));
  return rows;
}

TEST(Csv, OneFilePerTable) {
  const auto tables = TablesOf(FullResults());
  for (const char* name :
       {"settings.csv", "statistics.csv", "receiver_dcb.csv", "satellite_dcb.csv",
        "ambiguities.csv", "ionosphere.csv", "ionosphere_epochs.csv", "eclipses.csv",
        "outliers.csv", "residuals.csv"})
    EXPECT_TRUE(tables.contains(name)) << name;
  EXPECT_EQ(Rows(tables.at("ionosphere_epochs.csv")).size(), 61U);
  EXPECT_EQ(Rows(tables.at("outliers.csv")).size(), 1U + 12 + 26);
  Results phase;
  phase.report = ReadTestReport("phase.txt");
  const auto fewer = TablesOf(phase);
  EXPECT_FALSE(fewer.contains("residuals.csv"));
  EXPECT_FALSE(fewer.contains("ionosphere_epochs.csv"));
}

TEST(Csv, EveryRowHasTheColumnsOfItsHead) {
  for (const auto& [name, text] : TablesOf(FullResults())) {
    if (name == "settings.csv") continue; // has texts, which may hold commas
    const std::vector<std::string> rows = Rows(text);
    const auto commas = [](const std::string& row) {
      return std::count(row.begin(), row.end(), ',');
    };
    for (const std::string& row : rows) EXPECT_EQ(commas(row), commas(rows[0])) << name << row;
  }
}

TEST(Csv, RowsHoldTheNumbersOfTheReport) {
  const auto tables = TablesOf(FullResults());
  EXPECT_EQ(Rows(tables.at("ambiguities.csv"))[1],
            "1,G02,2011-10-10T00:50:00,55844.03472222222,55844,3000,2011-10-10T01:05:00,"
            "55844.04513888889,55844,3900,-3.4469,0.0318,31,0,30");
  // 4.4359 m / 0.299792458 = 14.796570 ns, 0.0480 m = 0.160111 ns
  EXPECT_EQ(Rows(tables.at("receiver_dcb.csv"))[2], "P2-C1,4.4359,0.048,14.79657,0.160111,437");
  EXPECT_EQ(Rows(tables.at("eclipses.csv"))[2], "R03,24");
}

TEST(Csv, EveryFileSaysWhatItsNumbersMean) {
  for (const auto& [name, text] : TablesOf(FullResults())) {
    EXPECT_TRUE(text.starts_with("# Written by zenta-export ")) << name;
    for (const char* key : {"\n# delay: ", "\n# mapping: ", "\n# shell: ", "\n# dcb: ",
                            "\n# datum: ", "\n# formal_errors: ", "\n# Observations: cagz2830.11o"})
      EXPECT_NE(text.find(key), std::string::npos) << name << key;
  }
}

TEST(Csv, TextsAreQuotedAndMissingNumbersEmpty) {
  Results results = FullResults();
  results.report.settings.files.observations = "a,\"b\".11o";
  results.report.receiverP1C1->sigma = std::numeric_limits<double>::quiet_NaN();
  const auto tables = TablesOf(results);
  EXPECT_NE(tables.at("settings.csv").find("file_observations,\"a,\"\"b\"\".11o\"\n"),
            std::string::npos);
  EXPECT_EQ(Rows(tables.at("receiver_dcb.csv"))[1], "P1-C1,-0.6506,,-2.170168,,437");
}

TEST(Csv, LineBreakInAFileNameStaysWithinItsComment) {
  Results results = FullResults();
  results.report.settings.files.dcbP1P2 = "a\nb";
  for (const std::string& row : Rows(TablesOf(results).at("eclipses.csv")))
    EXPECT_EQ(row.find("b and P1-C1"), std::string::npos);
}

} // namespace
