#include "CommandLine.h"

#include "BiasSinex.h"
#include "Csv.h"
#include "Json.h"
#include "command/Command.h"
#include "report/Input.h"
#include "report/ReadReport.h"
#include "report/Refusal.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fmt/format.h>
#include <unistd.h>

namespace exports {

namespace {

namespace fs = std::filesystem;
using report::Refusal;

struct Options {
  std::string report = "-";
  std::string json, csv, sinex;
  std::string residuals, arcs;
  std::vector<std::string> required;
  std::string station, agency = "ZEN", inputs;
};

void AddOptions(CLI::App& app, Options& o) {
  app.add_option("report", o.report, "Report of zenta; - is standard input")
      ->option_text("REPORT=-");
  app.add_option("-j,--json", o.json,
                 "Write one JSON document; - is standard output, and the "
                 "default where nothing else is asked for")
      ->option_text("FILE");
  app.add_option("-c,--csv", o.csv, "Write one CSV file per table into this folder")
      ->option_text("DIR");
  app.add_option("-b,--sinex", o.sinex, "Write the biases as Bias-SINEX 1.00; - is standard output")
      ->option_text("FILE");
  app.add_option("-r,--residuals", o.residuals, "Residual file of the run (zenta -fp)")
      ->option_text("FILE");
  app.add_option("-a,--arcs", o.arcs,
                 "Arc file of the run, Ambiq.b: adds epoch indices to the "
                 "ambiguities")
      ->option_text("FILE");
  app.add_option("--require", o.required,
                 "Sections that the report has to end with, so that one cut right before them is "
                 "refused")
      ->option_text("residuals,epochs")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->check(CLI::IsMember({"residuals", "epochs"}));
  app.add_option("--station", o.station,
                 "Station in the Bias-SINEX, up to 9 characters; first four letters of the "
                 "observation file unless given")
      ->option_text("NAME");
  app.add_option("--agency", o.agency, "Agency in the Bias-SINEX, 3 characters")
      ->option_text("AGENCY=ZEN");
  app.add_option("--inputs", o.inputs,
                 "Folder of the run's input files, for satellite biases in the Bias-SINEX; "
                 "otherwise they are looked for where the report says and beside it")
      ->option_text("DIR");
}

std::string FolderOf(const std::string& file) {
  return file == "-" ? std::string(".") : fs::path(file).parent_path().string();
}

void CheckRequired(const Options& o, const report::Report& r) {
  const auto required = [&o](const char* section) {
    return std::find(o.required.begin(), o.required.end(), section) != o.required.end();
  };
  const std::string name = report::InputName(o.report);
  if ((required("residuals") || !o.residuals.empty()) && !r.residuals)
    throw Refusal(fmt::format("{}: expected the section \"PRINTING OF RESIDUALS:\", found the end; "
                              "the run wrote no residual file, or the report is cut",
                              name));
  if (required("epochs") && !r.epochs)
    throw Refusal(fmt::format("{}: expected the section \"ESTIMATION OF EPOCH TO EPOCH IONOSPHERIC "
                              "DELAY:\", found the end; the run had none, or the report is cut",
                              name));
}

Results ReadAll(const Options& o) {
  Results results;
  results.report = report::ReadReport(report::InputName(o.report), report::ReadInput(o.report));
  CheckRequired(o, results.report);
  if (!o.residuals.empty()) {
    results.residuals = report::ReadResidualFile(o.residuals, report::ReadInput(o.residuals));
    const long count = results.residuals->Count();
    if (count != results.report.residuals->count)
      throw Refusal(fmt::format("{}: expected {} residuals, as the report says, found {}; the file "
                                "is cut or of another run",
                                o.residuals, results.report.residuals->count, count));
  }
  if (!o.arcs.empty()) {
    results.arcs = report::ReadArcFile(o.arcs, report::ReadInput(o.arcs));
    report::ExpectArcsOf(results.report, o.arcs, *results.arcs);
  }
  return results;
}

/// CAGZ of data/cagz2830.11o.
std::string StationOf(const report::Report& r) {
  std::string name = fs::path(r.settings.files.observations).filename().string().substr(0, 4);
  for (char& c : name) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    if (!((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))) c = '_';
  }
  return name;
}

std::string Now() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const sys_days day = floor<days>(now);
  const auto second = duration_cast<seconds>(now - day).count();
  constexpr int kMJDof1970 = 40587;
  return report::SinexTime(
      {static_cast<int>(day.time_since_epoch().count()) + kMJDof1970, static_cast<double>(second)});
}

std::string BiasSinexOf(const Options& o, const report::Report& r) {
  const SinexHead head{o.agency, o.station.empty() ? StationOf(r) : o.station, Now()};
  if (!NeedsInputs(r)) return ToBiasSinex(r, head, nullptr);
  std::string whyNot;
  const auto inputs = inputs::ReadInputs(r, {FolderOf(o.report), o.inputs}, whyNot);
  if (!inputs)
    throw Refusal(fmt::format("{}: satellite biases were estimated on top of known ones, which are "
                              "needed for the whole: {}; see --inputs",
                              report::InputName(o.report), whyNot));
  return ToBiasSinex(r, head, &*inputs);
}

void WriteCsv(const std::string& folder, const Results& results) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) throw Refusal(fmt::format("{}: can't be made: {}", folder, error.message()));
  for (const auto& [name, text] : ToCsv(results))
    report::WriteOutput((fs::path(folder) / name).string(), text);
}

void Export(Options o) {
  if (o.agency.size() != 3) throw command::Usage("--agency takes 3 characters");
  if (o.station.size() > 9) throw command::Usage("--station takes up to 9 characters");
  if (o.report == "-" && isatty(STDIN_FILENO) != 0)
    throw command::Usage("name a report, or send one to standard input: zenta ... | zenta-export");
  if (o.json.empty() && o.csv.empty() && o.sinex.empty()) o.json = "-";
  if (o.json == "-" && o.sinex == "-")
    throw command::Usage("only one of --json and --sinex can go to standard output");
  // Everything is read and laid out before the first byte is written.
  const Results results = ReadAll(o);
  const std::string json = o.json.empty() ? "" : ToJson(results);
  const std::string sinex = o.sinex.empty() ? "" : BiasSinexOf(o, results.report);
  if (!o.csv.empty()) WriteCsv(o.csv, results);
  if (!o.json.empty()) report::WriteOutput(o.json, json);
  if (!o.sinex.empty()) report::WriteOutput(o.sinex, sinex);
}

} // namespace

int RunCommand(int argc, const char* const* argv) {
  CLI::App app("Writes what a report of zenta says as JSON, CSV or Bias-SINEX.", "zenta-export");
  app.footer("Exit status: 0 done, 1 an input is refused, 2 wrong usage.");
  Options options;
  AddOptions(app, options);
  return command::Run(app, argc, argv, [&options] { Export(options); });
}

} // namespace exports
