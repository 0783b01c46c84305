#include "zenta-export/Json.h"

#include "support/Files.h"
#include "tools/report/Reports.h"

#include <cstdlib>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>

namespace {

using exports::Results;
using nlohmann::json;

Results FullResults() {
  Results results;
  results.report = ReadTestReport("full/report.txt");
  results.residuals = report::ReadResidualFile("r", ReportText("full/residuals.res"));
  results.arcs = report::ReadArcFile("a", ReportText("full/Ambiq.b"));
  return results;
}

Results ResultsOf(const std::string& file) {
  if (file == "full/report.txt") return FullResults();
  Results results;
  results.report = ReadTestReport(file);
  return results;
}

json JsonOf(const std::string& file) { return json::parse(exports::ToJson(ResultsOf(file))); }

class JsonOfEveryReport : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Recorded, JsonOfEveryReport, testing::ValuesIn(kReports),
                         [](const auto& file) {
                           return file.param.substr(0, file.param.find_first_of("/."));
                         });

// The validator is python3-jsonschema of Debian.
TEST_P(JsonOfEveryReport, FollowsTheSchema) {
  if (std::system("python3 -c 'import jsonschema' 2>/dev/null") != 0)
    GTEST_SKIP() << "python3-jsonschema is not installed";
  const ScratchFolder folder;
  const std::string name = folder.Write("results.json", exports::ToJson(ResultsOf(GetParam())));
  const std::string script = folder.Write(
      "validate.py", "import json, sys, jsonschema\n"
                     "schema = json.load(open(sys.argv[1]))\n"
                     "jsonschema.Draft202012Validator.check_schema(schema)\n"
                     "errors = list(jsonschema.Draft202012Validator(schema).iter_errors("
                     "json.load(open(sys.argv[2]))))\n"
                     "for e in errors: print(e.json_path, e.message, file=sys.stderr)\n"
                     "sys.exit(1 if errors else 0)\n");
  EXPECT_EQ(std::system(fmt::format("python3 {} {} {}", script, SCHEMA_FILE, name).c_str()), 0);
  // The validator does refuse: the same document without its statistics.
  json broken = json::parse(ReadWhole(name));
  broken.erase("statistics");
  const std::string bad = folder.Write("broken.json", broken.dump());
  EXPECT_NE(
      std::system(fmt::format("python3 {} {} {} 2>/dev/null", script, SCHEMA_FILE, bad).c_str()),
      0);
}

/// \p row as the report prints it stands in the text of the report.
void ExpectPrinted(const std::string& text, const std::string& row) {
  EXPECT_NE(text.find(row), std::string::npos) << row;
}

TEST_P(JsonOfEveryReport, NumbersAreTheReportsToTheLastDigit) {
  const std::string text = ReportText(GetParam());
  const json j = JsonOf(GetParam());
  for (const json& i : j["ionosphere"])
    ExpectPrinted(text,
                  fmt::format("{:6}{:8.1f}{:12.4f} +-{:8.4f}{:14.4f} +-{:8.4f}",
                              i["first"]["day"].get<long>(), i["first"]["second"].get<double>(),
                              i["delay"]["m"].get<double>(), i["delay"]["sigma_m"].get<double>(),
                              i["rate"]["m_per_h"].get<double>(),
                              i["rate"]["sigma_m_per_h"].get<double>()));
  for (const json& a : j["ambiguities"])
    ExpectPrinted(text, fmt::format("{:20.4f} +- {:10.4f}{:15}\n", a["m"].get<double>(),
                                    a["sigma_m"].get<double>(), a["observations"].get<long>()));
  for (const json& s : j["satellite_dcb"])
    for (const char* kind : {"p1c1", "p2c1"})
      if (!s[kind].is_null())
        ExpectPrinted(text,
                      fmt::format("{:12.4f} +-{:8.4f}{:12.4f} +-{:8.4f}   [{:6}]  ",
                                  s[kind]["m"].get<double>(), s[kind]["sigma_m"].get<double>(),
                                  s[kind]["us_printed"].get<double>(),
                                  s[kind]["sigma_us_printed"].get<double>(),
                                  s[kind]["observations"].get<long>()));
  for (const json& o : j["outliers"])
    ExpectPrinted(text,
                  fmt::format("  EPH: {:7}  {:6}{:8.1f}   PRN: ", o["epoch_index"].get<long>(),
                              o["time"]["day"].get<long>(), o["time"]["second"].get<double>()));
  const json& s = j["statistics"];
  ExpectPrinted(text, fmt::format("  #OBS       : {:10}", s["observations_counted"].get<long>()));
  ExpectPrinted(text,
                fmt::format("[GLOBAL TEST]: {:15.2f}", s["aposteriori_variance"].get<double>()));
}

TEST(Json, TECUAndNanosecondsFollowFromMetres) {
  // 1 TECU: 40.308193 / 1.57542^2 * 1e-2 = 0.16240546 m; 1 ns: 0.299792458 m
  const json j = JsonOf("full/report.txt");
  for (const json& i : j["ionosphere"]) {
    EXPECT_NEAR(i["delay"]["tecu"].get<double>() * 0.16240546, i["delay"]["m"].get<double>(), 2e-7);
    EXPECT_NEAR(i["rate"]["sigma_tecu_per_h"].get<double>() * 0.16240546,
                i["rate"]["sigma_m_per_h"].get<double>(), 2e-7);
    EXPECT_NEAR(i["gradient_east"]["tecu"].get<double>() * 0.16240546,
                i["gradient_east"]["m"].get<double>(), 2e-7);
  }
  for (const char* kind : {"p1c1", "p2c1"}) {
    const json& dcb = j["receiver_dcb"][kind];
    EXPECT_NEAR(dcb["ns"].get<double>() * 0.299792458, dcb["m"].get<double>(), 2e-7);
    // what the report prints in microseconds, with five decimals
    EXPECT_NEAR(dcb["ns"].get<double>() / 1000, dcb["us_printed"].get<double>(), 0.51e-5);
    EXPECT_NEAR(dcb["sigma_ns"].get<double>() / 1000, dcb["sigma_us_printed"].get<double>(),
                0.51e-5);
  }
}

TEST(Json, SaysHowObservationsAreCountedAndWhatIsHeldFixed) {
  const json c = JsonOf("full/report.txt")["meta"]["conventions"];
  EXPECT_NE(c["formal_errors"].get<std::string>().find("n iterations of m observations count n*m"),
            std::string::npos);
  EXPECT_NE(c["datum"].get<std::string>().find("held fixed at P1-P2 of P1P21110.DCB"),
            std::string::npos);
  EXPECT_NE(JsonOf("phase.txt")["meta"]["conventions"]["datum"].get<std::string>().find(
                "No satellite biases were known"),
            std::string::npos);
}

TEST(Json, ArcFileAddsEpochIndices) {
  const json a = JsonOf("full/report.txt")["ambiguities"];
  EXPECT_EQ(a[0]["first_epoch_index"], 0);
  EXPECT_EQ(a[0]["last_epoch_index"], 30); // 31 epochs of 30 s: 00:50:00 to 01:05:00
  EXPECT_FALSE(JsonOf("phase.txt")["ambiguities"][0].contains("first_epoch_index"));
}

TEST(Json, ResidualsStandByEpoch) {
  const json r = JsonOf("full/report.txt")["residuals"];
  ASSERT_EQ(r.size(), 60U);
  EXPECT_EQ(r[0]["time"]["iso"], "2011-10-10T00:50:00");
  EXPECT_EQ(r[0]["values"][0]["observable"], "P1-C1");
  EXPECT_TRUE(JsonOf("phase.txt")["residuals"].is_null());
}

TEST(Json, MisclosuresOfTheLastIterationAreMarked) {
  Results results = FullResults();
  auto& a = results.report.adjustment;
  a.misclosures.resize(3);
  a.iterated.outliers = 1;
  const json j = json::parse(exports::ToJson(results));
  EXPECT_EQ(j["outliers"][0]["last_iteration"], false);
  EXPECT_EQ(j["outliers"][1]["last_iteration"], false);
  EXPECT_EQ(j["outliers"][2]["last_iteration"], true);
  EXPECT_FALSE(j["outliers"][3].contains("last_iteration")); // a residual
}

TEST(Json, WhatIsNotANumberIsNull) {
  Results results = FullResults();
  results.report.intervals[0].delay.sigma = std::numeric_limits<double>::quiet_NaN();
  const json j = json::parse(exports::ToJson(results));
  EXPECT_TRUE(j["ionosphere"][0]["delay"]["sigma_m"].is_null());
  EXPECT_TRUE(j["ionosphere"][0]["delay"]["sigma_tecu"].is_null());
}

TEST(Json, FileNamesOfAnyEncodingStayJson) {
  Results results = FullResults();
  results.report.settings.files.observations = "caf\xe9 \"x\".11o";
  const json j = json::parse(exports::ToJson(results));
  EXPECT_EQ(j["settings"]["files"]["observations"], "caf\xef\xbf\xbd \"x\".11o");
}

} // namespace
