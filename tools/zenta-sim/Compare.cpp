#include "Compare.h"
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace sim {

using nlohmann::json;

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
  void Add(const report::Estimate& estimate, double truth) {
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

/// The epoch of the report is the truth's to \p tolerance [s].
static bool IsAt(const report::Epoch& epoch, const json& truth, double tolerance) {
  const report::Epoch t = {truth.at("mjd").get<int>(), truth.at("second").get<double>()};
  return std::abs(epoch - t) < tolerance;
}

static void CompareReceiver(const report::Report& report, const json& truth,
                            std::vector<Deviations>& all) {
  const json& dcb = truth.at("receiver_dcb");
  Kind p1c1("receiver DCB P1-C1", "m"), p2c1("receiver DCB P2-C1", "m");
  if (report.receiverP1C1) p1c1.Add(*report.receiverP1C1, dcb.at("p1c1_m"));
  if (report.receiverP2C1) p2c1.Add(*report.receiverP2C1, dcb.at("p2c1_m"));
  p1c1.AppendTo(all);
  p2c1.AppendTo(all);
}

static void CompareSatellites(const report::Report& report, const json& truth, bool glonass,
                              std::vector<Deviations>& all) {
  const std::string system = glonass ? "GLONASS" : "GPS";
  Kind p1c1(system + " satellite DCBs P1-C1", "m"), p2c1(system + " satellite DCBs P2-C1", "m");
  for (const report::SatelliteBiases& biases : report.satellites) {
    if (report::IsGLONASS(biases.satellite) != glonass) continue;
    for (const json& satellite : truth.at("satellites")) {
      if (satellite.at("satellite") != biases.satellite) continue;
      if (biases.p1c1) p1c1.Add(*biases.p1c1, satellite.at("xbSAT_p1c1_m"));
      if (biases.p2c1) p2c1.Add(*biases.p2c1, satellite.at("xbSAT_p2c1_m"));
    }
  }
  p1c1.AppendTo(all);
  p2c1.AppendTo(all);
}

static void CompareIonosphere(const report::Report& report, const json& truth,
                              std::vector<Deviations>& all, long& unmatched) {
  Kind delays("delays", "m"), rates("rates", "m/h");
  Kind east("east gradients", "m"), north("north gradients", "m");
  const json& nodes = truth.at("ionosphere").at("nodes");
  for (const report::Interval& interval : report.intervals) {
    const auto same = std::find_if(nodes.begin(), nodes.end(), [&](const json& node) {
      return IsAt(interval.first, node, 0.06); // the report has tenths of a second
    });
    if (same == nodes.end()) {
      ++unmatched;
      continue;
    }
    delays.Add(interval.delay, same->at("delay_m"));
    rates.Add(interval.rate, same->at("rate_m_per_h"));
    if (interval.east) east.Add(*interval.east, same->at("gradient_east_m"));
    if (interval.north) north.Add(*interval.north, same->at("gradient_north_m"));
  }
  for (const Kind* kind : {&delays, &rates, &east, &north}) kind->AppendTo(all);
}

static void CompareAmbiguities(const report::Report& report, const json& truth,
                               std::vector<Deviations>& all, long& unmatched) {
  Kind ambiguities("ambiguities", "m");
  const json& arcs = truth.at("ambiguities");
  for (const report::Ambiguity& ambiguity : report.ambiguities) {
    const auto same = std::find_if(arcs.begin(), arcs.end(), [&](const json& arc) {
      return arc.at("satellite") == ambiguity.satellite &&
             IsAt(ambiguity.first, arc.at("first"), 1) && IsAt(ambiguity.last, arc.at("last"), 1);
    });
    if (same == arcs.end()) {
      ++unmatched;
      continue;
    }
    ambiguities.Add(ambiguity.value, same->at("ambiguity_m"));
  }
  ambiguities.AppendTo(all);
}

std::vector<Deviations> CompareWithTruth(const report::Report& report, const json& truth,
                                         long& unmatched) {
  unmatched = 0;
  std::vector<Deviations> all;
  CompareReceiver(report, truth, all);
  CompareSatellites(report, truth, false, all);
  CompareSatellites(report, truth, true, all);
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
