#include "Compare.h"
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sstream>

namespace sim {

using nlohmann::json;

// --- The report -----------------------------------------------------------------------------

/// The numbers of a line; "nan" counts as one, and so do those glued to other characters.
static std::vector<double> Numbers(const std::string& line) {
  std::string clean;
  for (std::size_t k = 0; k < line.size(); ++k) {
    const char c = line[k];
    const bool digit = (c >= '0' && c <= '9') || c == '.';
    const bool minus = c == '-' && k + 1 < line.size() &&
                       ((line[k + 1] >= '0' && line[k + 1] <= '9') || line[k + 1] == '.');
    const bool glued = minus && k > 0 && line[k - 1] >= '0' && line[k - 1] <= '9';
    if (glued) clean += ' ';
    clean += digit || (minus && !glued) ? c : ' ';
  }
  std::istringstream in(clean);
  std::vector<double> numbers;
  for (double value = 0; in >> value;) numbers.push_back(value);
  return numbers;
}

/// The number that follows \p label in \p line, 0 without one.
static double NumberBehind(const std::string& line, const std::string& label) {
  const std::size_t at = line.find(label);
  return at == std::string::npos ? 0 : std::strtod(line.c_str() + at + label.size(), nullptr);
}

static void ReadStatistics(const std::string& line, Report& report) {
  if (line.starts_with("  #ITERATIONS: "))
    report.iterations = std::lround(NumberBehind(line, "#ITERATIONS:"));
  if (line.starts_with("  #OBS       : "))
    report.observations = std::lround(NumberBehind(line, "#OBS       :"));
  if (line.starts_with("  #OUTLIERS  : "))
    report.outliers = std::lround(NumberBehind(line, "#OUTLIERS  :"));
  if (line.starts_with("  REFERENCE VARIANCE OF UNIT WEIGHT"))
    report.variance = NumberBehind(line, "[GLOBAL TEST]:");
}

static void ReadReceiverLine(const std::string& line, Report& report) {
  for (const char* pair : {"P1-C1", "P2-C1"}) {
    const std::string label = std::string("  ") + pair + " DCB: ";
    if (!line.starts_with(label)) continue;
    report.receiver[pair] = {NumberBehind(line, label), NumberBehind(line, "+- ")};
  }
}

/// A row of a satellite table: number, then 64 columns for P1-C1 and for P2-C1.
static void ReadSatelliteRow(const std::string& line, Report& report) {
  const long sat = std::strtol(line.substr(0, 5).c_str(), nullptr, 10);
  if (sat < 1 || sat > 199) return;
  std::size_t at = 5;
  for (const char* pair : {"P1-C1", "P2-C1"}) {
    if (line.size() <= at) return;
    const std::size_t close = line.find(']', at);
    const std::string block = line.substr(at, 64);
    const bool blank = block.find_first_not_of(' ') == std::string::npos;
    if (!blank) {
      const std::vector<double> n = Numbers(block);
      if (n.size() >= 2) report.satellites[static_cast<short>(sat)][pair] = {n[0], n[1]};
    }
    at = blank || close == std::string::npos ? at + 64 : close + 3;
  }
}

/// Days from 1858-11-17 (Fliegel and Van Flandern).
static double CalendarToMjd(const std::vector<double>& n, std::size_t at) {
  const long y = std::lround(n[at]), m = std::lround(n[at + 1]), d = std::lround(n[at + 2]);
  const long a = (m - 14) / 12;
  const long jd = (1461 * (y + 4800 + a)) / 4 + (367 * (m - 2 - 12 * a)) / 12 -
                  (3 * ((y + 4900 + a) / 100)) / 4 + d - 32075;
  return static_cast<double>(jd - 2400001) +
         (3600 * n[at + 3] + 60 * n[at + 4] + n[at + 5]) / 86400;
}

static void ReadAmbiguityRow(const std::string& line, Report& report) {
  const std::size_t system = line.find_first_of("GR");
  if (system == std::string::npos) return;
  std::string clean = line.substr(system + 1);
  // The dashes and colons of the two dates are no signs.
  for (std::size_t k = 1; k + 1 < clean.size(); ++k)
    if ((clean[k] == '-' || clean[k] == ':') && clean[k - 1] >= '0' && clean[k - 1] <= '9')
      clean[k] = ' ';
  const std::vector<double> n = Numbers(clean);
  if (n.size() < 16) return;
  const long number = std::lround(n[0]);
  report.ambiguities.push_back({static_cast<short>(line[system] == 'R' ? 100 + number : number),
                                CalendarToMjd(n, 1),
                                CalendarToMjd(n, 7),
                                {n[13], n[14]},
                                std::lround(n[15])});
}

static void ReadIonosphereRow(const std::string& line, Report& report) {
  const std::vector<double> n = Numbers(line);
  if (n.size() < 6) return;
  Report::Node node;
  node.mjd = n[0] + n[1] / 86400;
  node.delay = {n[2], n[3]};
  node.rate = {n[4], n[5]};
  node.hasGradients = n.size() >= 10;
  if (node.hasGradients) {
    node.eastGradient = {n[6], n[7]};
    node.northGradient = {n[8], n[9]};
  }
  report.nodes.push_back(node);
}

Report ReadReport(const std::string& text) {
  enum class Block { kNone, kReceiver, kSatellites, kAmbiguities, kIonosphere };
  Report report;
  Block block = Block::kNone;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("RECEIVER/SATELLITE DCB VALUES AND IONOSPHERE DELAY")) {
      report.complete = true;
      block = Block::kReceiver;
    } else if (line.starts_with(" SATELLITE ")) {
      block = Block::kSatellites;
    } else if (line.starts_with("  PHASE L4 AMBIGUITIES")) {
      block = Block::kAmbiguities;
    } else if (line.starts_with(" IONOSPHERE DELAYS:")) {
      block = Block::kIonosphere;
    } else if (line.starts_with("PRINTING OF RESIDUALS") || line.starts_with("ESTIMATION OF ")) {
      block = Block::kNone;
    }
    switch (block) {
    case Block::kNone:
      break;
    case Block::kReceiver:
      ReadStatistics(line, report);
      ReadReceiverLine(line, report);
      break;
    case Block::kSatellites:
      ReadSatelliteRow(line, report);
      break;
    case Block::kAmbiguities:
      ReadAmbiguityRow(line, report);
      break;
    case Block::kIonosphere:
      ReadIonosphereRow(line, report);
      break;
    }
  }
  return report;
}

// --- The comparison -------------------------------------------------------------------------

double Deviations::Mean() const {
  double sum = 0;
  for (const double e : errors) sum += e;
  return sum / static_cast<double>(errors.size());
}

double Deviations::Rms() const {
  double sum = 0;
  for (const double e : errors) sum += e * e;
  return std::sqrt(sum / static_cast<double>(errors.size()));
}

double Deviations::Largest() const {
  double largest = 0;
  for (const double e : errors) largest = std::max(largest, std::abs(e));
  return largest;
}

double Deviations::MeanNormalised() const {
  double sum = 0;
  for (std::size_t k = 0; k < errors.size(); ++k) sum += errors[k] / sigmas[k];
  return sum / static_cast<double>(errors.size());
}

double Deviations::RmsNormalised() const {
  double sum = 0;
  for (std::size_t k = 0; k < errors.size(); ++k) sum += std::pow(errors[k] / sigmas[k], 2);
  return std::sqrt(sum / static_cast<double>(errors.size()));
}

namespace {

/// Collects the deviations of one kind.
class Kind {
public:
  Kind(std::string what, std::string unit) {
    all_.what = std::move(what), all_.unit = std::move(unit);
  }
  void Add(const Estimate& estimate, double truth) {
    all_.errors.push_back(estimate.value - truth);
    all_.sigmas.push_back(estimate.sigma);
  }
  void AppendTo(std::vector<Deviations>& list) const {
    if (!all_.errors.empty()) list.push_back(all_);
  }

private:
  Deviations all_;
};

} // namespace

static double MjdOf(const json& time) {
  return time.at("mjd").get<double>() + time.at("second").get<double>() / 86400;
}

static void CompareBiases(const Report& report, const json& truth, std::vector<Deviations>& all) {
  for (const auto& [pair, key] : {std::pair{"P1-C1", "p1c1_m"}, std::pair{"P2-C1", "p2c1_m"}}) {
    Kind receiver(fmt::format("receiver DCB {}", pair), "m");
    if (report.receiver.contains(pair))
      receiver.Add(report.receiver.at(pair), truth.at("receiver_dcb").at(key));
    receiver.AppendTo(all);
  }
  for (const auto& [pair, key] :
       {std::pair{"P1-C1", "xbSAT_p1c1_m"}, std::pair{"P2-C1", "xbSAT_p2c1_m"}}) {
    Kind gps(fmt::format("GPS satellite DCBs {}", pair), "m");
    Kind glonass(fmt::format("GLONASS satellite DCBs {}", pair), "m");
    for (const json& satellite : truth.at("satellites")) {
      const short sat = satellite.at("satellite");
      const auto row = report.satellites.find(sat);
      if (row == report.satellites.end() || !row->second.contains(pair)) continue;
      (sat < 100 ? gps : glonass).Add(row->second.at(pair), satellite.at(key));
    }
    gps.AppendTo(all);
    glonass.AppendTo(all);
  }
}

static void CompareIonosphere(const Report& report, const json& truth, std::vector<Deviations>& all,
                              long& unmatched) {
  Kind delays("delays", "m"), rates("rates", "m/h");
  Kind east("east gradients", "m"), north("north gradients", "m");
  for (const Report::Node& node : report.nodes) {
    const auto& nodes = truth.at("ionosphere").at("nodes");
    const auto same = std::find_if(nodes.begin(), nodes.end(), [&](const json& n) {
      return std::abs(MjdOf(n) - node.mjd) * 86400 < 0.06; // the report has tenths of a second
    });
    if (same == nodes.end()) {
      ++unmatched;
      continue;
    }
    delays.Add(node.delay, same->at("delay_m"));
    rates.Add(node.rate, same->at("rate_m_per_h"));
    if (!node.hasGradients) continue;
    east.Add(node.eastGradient, same->at("gradient_east_m"));
    north.Add(node.northGradient, same->at("gradient_north_m"));
  }
  for (const Kind* kind : {&delays, &rates, &east, &north}) kind->AppendTo(all);
}

static void CompareAmbiguities(const Report& report, const json& truth,
                               std::vector<Deviations>& all, long& unmatched) {
  Kind ambiguities("ambiguities", "m");
  for (const Report::Ambiguity& ambiguity : report.ambiguities) {
    const auto& arcs = truth.at("ambiguities");
    const auto same = std::find_if(arcs.begin(), arcs.end(), [&](const json& arc) {
      const auto near = [](double a, double b) { return std::abs(a - b) * 86400 < 1; };
      return arc.at("satellite") == ambiguity.sat &&
             near(MjdOf(arc.at("first")), ambiguity.first) &&
             near(MjdOf(arc.at("last")), ambiguity.last);
    });
    if (same == arcs.end()) {
      ++unmatched;
      continue;
    }
    ambiguities.Add(ambiguity.value, same->at("ambiguity_m"));
  }
  ambiguities.AppendTo(all);
}

std::vector<Deviations> CompareWithTruth(const Report& report, const json& truth, long& unmatched) {
  unmatched = 0;
  std::vector<Deviations> all;
  CompareBiases(report, truth, all);
  CompareIonosphere(report, truth, all, unmatched);
  CompareAmbiguities(report, truth, all, unmatched);
  return all;
}

std::string DeviationTable(const std::vector<Deviations>& all, long unmatched) {
  std::string text = fmt::format("{:<30}{:>8}{:>12}{:>12}{:>12}{:>16}\n", "ESTIMATES LESS TRUTH",
                                 "NUMBER", "MEAN", "RMS", "LARGEST", "RMS / FORMAL");
  text += std::string(93, '-') + "\n";
  for (const Deviations& d : all) {
    const double normalised = d.RmsNormalised();
    text +=
        fmt::format("{:<30}{:>8}{:>12.4f}{:>12.4f}{:>12.4f}{:>16}  {}\n", d.what, d.errors.size(),
                    d.Mean(), d.Rms(), d.Largest(),
                    std::isfinite(normalised) ? fmt::format("{:.2f}", normalised) : "-", d.unit);
  }
  if (unmatched > 0)
    text += fmt::format("{} estimates without a truth to compare with\n", unmatched);
  return text;
}

} // namespace sim
