#include "CommandLine.h"
#include "Compare.h"
#include "Scenario.h"
#include "Simulation.h"
#include "command/Command.h"
#include "report/Input.h"
#include "report/ReadReport.h"
#include "report/Refusal.h"
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace sim {

namespace {

/// Texts of the options that need more than a number.
struct RawOptions {
  std::string date = "2011-10-10", start = "00:00:00", duration = "24:00:00";
  std::string ionInterval = "01:00:00";
  std::string systems = "GR";
  std::vector<std::string> with = {"p1p2", "p1c1", "channels", "sp3"};
  std::vector<std::string> slips, outliers, gaps, satelliteGaps, sp3Missing, sp3BadClocks;
  double sp3Margin = 2;
  double phaseNoise = 0.002;
  bool matchedPhaseNoise = false;
};

} // namespace

static void AddTimeOptions(CLI::App& app, Scenario& s, RawOptions& raw) {
  const char* group = "Time";
  app.add_option("--date", raw.date, "day of the first epoch, yyyy-mm-dd")
      ->group(group)
      ->capture_default_str();
  app.add_option("--start", raw.start, "GPS time of the first epoch, hh:mm:ss")
      ->group(group)
      ->capture_default_str();
  app.add_option("--duration", raw.duration, "length, hh:mm:ss; the end is not an epoch")
      ->group(group)
      ->capture_default_str();
  app.add_option("--interval", s.interval, "between epochs [s]")
      ->group(group)
      ->capture_default_str();
}

static void AddStationOptions(CLI::App& app, Scenario& s) {
  const char* group = "Station";
  app.add_option("--lat", s.latitude, "geodetic latitude [deg], north positive")
      ->group(group)
      ->capture_default_str();
  app.add_option("--lon", s.longitude, "longitude [deg], east positive")
      ->group(group)
      ->capture_default_str();
  app.add_option("--height", s.height, "above GRS80 [m]")->group(group)->capture_default_str();
  app.add_option("--antenna-up", s.antennaUp, "antenna over marker [m]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--antenna-east", s.antennaEast, "[m]")->group(group)->capture_default_str();
  app.add_option("--antenna-north", s.antennaNorth, "[m]")->group(group)->capture_default_str();
  app.add_option("--marker", s.marker, "marker name")->group(group)->capture_default_str();
  app.add_option("--header-error", s.headerError,
                 "error of the observation header's position [m]; needs --with coordinates")
      ->group(group)
      ->capture_default_str();
}

static void AddSignalOptions(CLI::App& app, Scenario& s, RawOptions& raw) {
  const char* group = "Satellites and observations";
  app.add_option("--systems", raw.systems, "G, R or GR")
      ->group(group)
      ->capture_default_str()
      ->check(CLI::IsMember({"G", "R", "GR"}));
  app.add_option("--types", s.types,
                 "observation types in the order of the file, of C1 P1 P2 L1 L2 C2 S1 S2 D1 D2 C5 "
                 "L5 S5")
      ->group(group)
      ->delimiter(',')
      ->capture_default_str();
  app.add_option("--mask", s.mask, "lowest elevation that is tracked [deg]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--cutoff", s.cutoff, "cut-off of the run [deg]; decides the expected arcs")
      ->group(group)
      ->capture_default_str();
  app.add_flag("--precise", s.precise, "the run uses the SP3 files, not the navigation files")
      ->group(group);
  app.add_option("--tracking", s.tracking, "code-tracking class of the receiver")
      ->group(group)
      ->transform(CLI::CheckedTransformer(std::map<std::string, Tracking>{
          {"P1P2", Tracking::kP1P2}, {"C1P2", Tracking::kC1P2}, {"C1X2", Tracking::kC1X2}}))
      ->option_text("P1P2|C1P2|C1X2=P1P2");
  app.add_option("--with", raw.with,
                 "further files, of p1p2 p1c1 p2c2 tracking channels sp3 clock coordinates "
                 "multipath, "
                 "or none; the truth holds for a run that is given all of them")
      ->group(group)
      ->option_text("LIST=p1p2,p1c1,channels,sp3")
      ->delimiter(',')
      ->capture_default_str()
      ->check(CLI::IsMember({"p1p2", "p1c1", "p2c2", "tracking", "channels", "sp3", "clock",
                             "coordinates", "multipath", "none"}));
}

static void AddBiasOptions(CLI::App& app, Scenario& s) {
  const char* group = "Biases";
  app.add_option("--receiver-p1c1", s.receiverP1C1, "GPS receiver DCB P1-C1 [m]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--receiver-p2c1", s.receiverP2C1, "GPS receiver DCB P2-C1 [m]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--glonass-p1c1", s.glonassP1C1,
                 "the same of GLONASS [m], for which a run estimates satellite DCBs alone")
      ->group(group)
      ->capture_default_str();
  app.add_option("--glonass-p2c1", s.glonassP2C1, "[m]")->group(group)->capture_default_str();
  app.add_option("--p1p2", s.p1p2Sigma, "spread of the satellites' P1-P2 [ns]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--p1c1", s.p1c1Sigma, "spread of the satellites' P1-C1 [ns]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--p2c2", s.p2c2Sigma, "spread of the satellites' P2-C2 [ns]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--satellite-offset", s.satelliteOffset,
                 "spread of satellite biases that no file tells [m]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--p1-bias", s.p1Bias,
                 "model: nothing of the satellites is left in P1-C1; physical: P1 and C1 as sent")
      ->group(group)
      ->transform(CLI::CheckedTransformer(std::map<std::string, P1Bias>{
          {"model", P1Bias::kModel}, {"physical", P1Bias::kPhysical}}))
      ->option_text("model|physical=model");
}

static void AddIonosphereOptions(CLI::App& app, Scenario& s, RawOptions& raw) {
  const char* group = "Ionosphere (vertical delay on GPS L1)";
  app.add_option("--ionosphere", s.law,
                 "model: a chain of linear pieces as the estimator has it; bulge: a daily bulge "
                 "with equatorial crests")
      ->group(group)
      ->transform(CLI::CheckedTransformer(
          std::map<std::string, IonoLaw>{{"model", IonoLaw::kModel}, {"bulge", IonoLaw::kBulge}}))
      ->option_text("model|bulge=model");
  app.add_option("--ion-interval", raw.ionInterval, "length of a piece, hh:mm:ss")
      ->group(group)
      ->capture_default_str();
  app.add_option("--ion-base", s.ionoBase, "at night [m]")->group(group)->capture_default_str();
  app.add_option("--ion-amplitude", s.ionoAmplitude, "added at 14 h local time [m]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--ion-spread", s.ionoSpread, "random part at each node [m]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--ion-nodes", s.ionoNodes,
                 "delays at the nodes and at the end of the last piece [m], in place of the law")
      ->group(group)
      ->delimiter(',');
  app.add_option("--gradients", s.gradients,
                 "none; free: any; coupled: the east gradient is the delay at the next node, "
                 "which is what the estimation's constraints say")
      ->group(group)
      ->transform(CLI::CheckedTransformer(
          std::map<std::string, Gradients>{{"none", Gradients::kNone},
                                           {"free", Gradients::kFree},
                                           {"coupled", Gradients::kCoupled}}))
      ->option_text("none|free|coupled=none");
  app.add_option("--gradient-size", s.gradientSize, "spread of the gradients [m]")
      ->group(group)
      ->capture_default_str();
}

static void AddNoiseOptions(CLI::App& app, Scenario& s, RawOptions& raw) {
  const char* group = "Noise (at the zenith; it grows with 1 / sin(elevation))";
  app.add_option("--code-noise", s.codeNoise, "of each code [m]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--phase-noise", raw.phaseNoise, "of each phase [m]")
      ->group(group)
      ->capture_default_str();
  app.add_flag("--matched-phase-noise", raw.matchedPhaseNoise,
               "L1-L2 has a tenth of the code noise, as the weights of the program have it")
      ->group(group);
  app.add_option("--multipath", s.multipath, "amplitude of code multipath at the horizon [m]")
      ->group(group)
      ->capture_default_str();
  app.add_option(
         "--wind-up", s.windUp,
         "program: the turns that the program reckons with, on both carriers; exact: what it "
         "takes off to the last bit; physical: the turns of the antennas; none")
      ->group(group)
      ->transform(
          CLI::CheckedTransformer(std::map<std::string, WindUp>{{"none", WindUp::kNone},
                                                                {"physical", WindUp::kPhysical},
                                                                {"program", WindUp::kProgram},
                                                                {"exact", WindUp::kExact}}))
      ->option_text("none|physical|program|exact=program");
}

static void AddClockOptions(CLI::App& app, Scenario& s) {
  const char* group = "Receiver clock";
  app.add_option("--clock-offset", s.clockOffset, "at the first epoch [microseconds]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--clock-drift", s.clockDrift, "[microseconds/s]")
      ->group(group)
      ->capture_default_str();
  app.add_flag("--clock-jumps", s.clockJumps,
               "jumps of a millisecond keep the code clock within half of one")
      ->group(group);
  app.add_flag("--clock-on-lines", s.clockOnLines, "the epoch lines tell the clock offset")
      ->group(group);
}

static void AddDisturbanceOptions(CLI::App& app, Scenario& s, RawOptions& raw) {
  const char* group = "Disturbances (may be repeated)";
  app.add_option("--slip", raw.slips, "cycle slip, G05@hh:mm:ss=n1/n2 [cycles on L1/L2]")
      ->group(group);
  app.add_option("--slips", s.randomSlips, "number of random slips")
      ->group(group)
      ->capture_default_str();
  app.add_flag("--slip-flags", s.slipFlags, "slips set the loss-of-lock digit")->group(group);
  app.add_option("--outlier", raw.outliers, "outlier, G05@hh:mm:ss=P2:metres; C1 P1 P2 L1 L2")
      ->group(group);
  app.add_option("--outliers", s.randomOutliers, "number of random outliers")
      ->group(group)
      ->capture_default_str();
  app.add_option("--outlier-type", s.outlierType, "of the random ones")
      ->group(group)
      ->capture_default_str()
      ->check(CLI::IsMember({"C1", "P1", "P2", "L1", "L2"}));
  app.add_option("--outlier-size", s.outlierSize, "of the random ones [m], either sign")
      ->group(group)
      ->capture_default_str();
  app.add_option("--gap", raw.gaps, "no epochs, hh:mm:ss-hh:mm:ss")->group(group);
  app.add_option("--satellite-gap", raw.satelliteGaps,
                 "satellite not tracked, G05@hh:mm:ss-hh:mm:ss")
      ->group(group);
  app.add_option("--events", s.eventEvery, "an event with comments ahead of every n-th epoch")
      ->group(group)
      ->capture_default_str();
}

static void AddSp3Options(CLI::App& app, Scenario& s, RawOptions& raw) {
  const char* group = "SP3 files";
  app.add_option("--sp3-interval", s.sp3Interval, "between their epochs [s]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--sp3-margin", raw.sp3Margin, "before the first and behind the last day [h]")
      ->group(group)
      ->capture_default_str();
  app.add_option("--sp3-missing", raw.sp3Missing, "position of 0, G05@hh:mm:ss-hh:mm:ss")
      ->group(group);
  app.add_option("--sp3-bad-clock", raw.sp3BadClocks,
                 "clock of 999999.999999, G05@hh:mm:ss-hh:mm:ss")
      ->group(group);
}

static void TakeDate(const std::string& text, Scenario& s) {
  unsigned int year = 0, month = 0, day = 0;
  char rest = 0;
  if (std::sscanf(text.c_str(), "%4u-%2u-%2u%c", &year, &month, &day, &rest) != 3 || year < 1981 ||
      year > 2099 || month < 1 || month > 12 || day < 1 || day > 31)
    Fail("--date is no date yyyy-mm-dd: " + text);
  s.year = static_cast<unsigned short>(year);
  s.month = static_cast<unsigned short>(month);
  s.day = static_cast<unsigned short>(day);
}

template <class T>
static void TakeAll(const std::vector<std::string>& texts, T (*parse)(const std::string&),
                    std::vector<T>& out) {
  for (const std::string& text : texts) out.push_back(parse(text));
}

static void TakeFiles(const std::vector<std::string>& with, Scenario& s) {
  const auto has = [&](const char* kind) {
    return std::find(with.begin(), with.end(), kind) != with.end();
  };
  s.withP1P2 = has("p1p2");
  s.withP1C1 = has("p1c1");
  s.withP2C2 = has("p2c2");
  s.withChannels = has("channels");
  s.withClock = has("clock");
  s.withCoordinates = has("coordinates");
  s.withMultipath = has("multipath");
  s.withTracking = has("tracking");
  s.withSp3 = has("sp3");
}

static void TakeRaw(const RawOptions& raw, Scenario& s) {
  TakeDate(raw.date, s);
  s.start = ParseTime(raw.start);
  s.duration = ParseTime(raw.duration);
  s.ionoInterval = ParseTime(raw.ionInterval);
  s.gps = raw.systems.find('G') != std::string::npos;
  s.glonass = raw.systems.find('R') != std::string::npos;
  s.sp3Margin = 3600 * raw.sp3Margin;
  s.phaseNoise = raw.phaseNoise;
  if (raw.matchedPhaseNoise) s.phaseNoise.reset();
  TakeFiles(raw.with, s);
  TakeAll(raw.slips, ParseSlip, s.slips);
  TakeAll(raw.outliers, ParseOutlier, s.outliers);
  TakeAll(raw.gaps, ParseSpan, s.gaps);
  TakeAll(raw.satelliteGaps, ParseSatelliteSpan, s.satelliteGaps);
  TakeAll(raw.sp3Missing, ParseSatelliteSpan, s.sp3Missing);
  TakeAll(raw.sp3BadClocks, ParseSatelliteSpan, s.sp3BadClocks);
}

/// Prints the deviations. \param limit  [m], [m/h]; what exceeds it is refused; 0: none
static void Compare(const std::string& truthName, const std::string& reportName, double limit) {
  using report::Refusal;
  const nlohmann::json truth = nlohmann::json::parse(report::ReadInput(truthName), nullptr, false);
  const report::Report results =
      report::ReadReport(report::InputName(reportName), report::ReadInput(reportName));
  long unmatched = 0;
  std::vector<Deviations> all;
  try {
    all = CompareWithTruth(results, truth, unmatched);
  } catch (const nlohmann::json::exception&) {
    throw Refusal(report::InputName(truthName) + ": no truth file of zenta-sim");
  }
  std::cout << DeviationTable(all, unmatched);
  for (const Deviations& d : all)
    if (limit > 0 && !(d.Largest() <= limit))
      throw Refusal(d.what + ": the largest deviation exceeds the limit");
}

int RunCommand(int argc, const char* const* argv) {
  CLI::App app("Simulated GNSS data with a known ionosphere and known biases, and how far results "
               "are from them",
               "zenta-sim");
  app.require_subcommand(1);
  app.get_formatter()->column_width(34);

  Scenario scenario;
  RawOptions raw;
  scenario.progress = isatty(STDERR_FILENO) != 0;
  CLI::App* make = app.add_subcommand("make", "write a set of input files and the truth");
  make->add_option("folder", scenario.folder, "where the files go")->required();
  make->add_option("--seed", scenario.seed,
                   "of everything random; the same seed gives the same bytes")
      ->capture_default_str();
  make->add_flag("--progress,!--no-progress", scenario.progress,
                 "show the progress on standard error, also when that is no terminal");
  AddTimeOptions(*make, scenario, raw);
  AddStationOptions(*make, scenario);
  AddSignalOptions(*make, scenario, raw);
  AddBiasOptions(*make, scenario);
  AddIonosphereOptions(*make, scenario, raw);
  AddNoiseOptions(*make, scenario, raw);
  AddClockOptions(*make, scenario);
  AddDisturbanceOptions(*make, scenario, raw);
  AddSp3Options(*make, scenario, raw);

  std::string truthName, reportName = "-";
  double limit = 0;
  CLI::App* compare =
      app.add_subcommand("compare", "print how far the estimates of a report are from the truth");
  compare->add_option("truth", truthName, "truth.json of the set")->required();
  compare->add_option("report", reportName, "standard output of the run; - is standard input")
      ->capture_default_str();
  compare->add_option("--limit", limit,
                      "largest deviation [m, m/h]; beyond it the exit status is 1");

  return command::Run(app, argc, argv, [&] {
    if (compare->parsed()) return Compare(truthName, reportName, limit);
    TakeRaw(raw, scenario);
    MakeFiles(scenario);
  });
}

} // namespace sim
