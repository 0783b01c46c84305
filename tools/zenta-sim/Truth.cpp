#include "Truth.h"
#include "Vec3.h"
#include <nlohmann/json.hpp>

namespace sim {

using nlohmann::json;

static json Time(const mjd& t) {
  return {{"mjd", t.GetMJDay()}, {"second", static_cast<double>(t.GetSecond())}};
}

static const mjd& TimeOf(const Truth& truth, long epoch) {
  return truth.epochs->epochs[static_cast<std::size_t>(epoch)].used;
}

static json StationJson(const Scenario& s) {
  return {{"marker", s.marker},
          {"latitude_deg", s.latitude},
          {"longitude_deg", s.longitude},
          {"height_m", s.height}};
}

static json EpochsJson(const Truth& truth) {
  const auto& epochs = truth.epochs->epochs;
  json jumps = json::array();
  for (const ClockJump& jump : truth.epochs->jumps)
    jumps.push_back({{"epoch", jump.epoch}, {"step_s", jump.step}});
  return {{"count", epochs.size()},
          {"interval_s", truth.scenario->interval},
          {"first", Time(epochs.front().used)},
          {"last", Time(epochs.back().used)},
          {"clock_jumps", jumps}};
}

static json SatellitesJson(const Truth& truth) {
  json satellites = json::array();
  for (const short sat : truth.satellites) {
    const SatelliteBias& bias = truth.biases->at(sat);
    satellites.push_back({{"satellite", sat},
                          {"name", SatelliteName(sat)},
                          {"file_p1p2_ns", bias.p1p2},
                          {"file_p1c1_ns", bias.p1c1},
                          {"left_p1c1_m", bias.leftP1C1},
                          {"left_p2c1_m", bias.leftP2C1},
                          {"xbSAT_p1c1_m", bias.leftP1C1 + ReceiverP1C1(sat, *truth.scenario)},
                          {"xbSAT_p2c1_m", bias.leftP2C1 + ReceiverP2C1(sat, *truth.scenario)}});
  }
  return satellites;
}

static json IonosphereJson(const Truth& truth) {
  const IntervalTable& table = truth.ionosphere->Intervals();
  json nodes = json::array();
  for (std::size_t k = 0; k < table.intervals.size(); ++k) {
    const IonoNode& node = truth.ionosphere->Nodes()[k];
    json entry = Time(node.begin);
    entry["first_epoch"] = table.intervals[k].first;
    entry["last_epoch"] = table.intervals[k].last;
    entry["continues"] = static_cast<bool>(table.continued[k]);
    entry["delay_m"] = node.delay;
    entry["rate_m_per_h"] = node.rate;
    entry["gradient_east_m"] = node.eastGradient;
    entry["gradient_north_m"] = node.northGradient;
    nodes.push_back(entry);
  }
  return {{"law", truth.scenario->law == IonoLaw::kModel ? "model" : "bulge"},
          {"interval_s", truth.scenario->ionoInterval},
          {"joined", table.joined},
          {"nodes", nodes}};
}

static json ArcsJson(const Truth& truth) {
  json arcs = json::array();
  for (const Arc& arc : truth.arcs)
    arcs.push_back({{"satellite", arc.sat},
                    {"first_epoch", arc.first},
                    {"last_epoch", arc.last},
                    {"first", Time(TimeOf(truth, arc.first))},
                    {"last", Time(TimeOf(truth, arc.last))},
                    {"observations", arc.count},
                    {"ambiguity_m", arc.ambiguity}});
  return arcs;
}

static json DisturbancesJson(const Truth& truth) {
  json slips = json::array();
  for (const PlacedSlip& s : truth.slips)
    slips.push_back({{"satellite", s.slip.sat},
                     {"epoch", s.epoch},
                     {"time", Time(TimeOf(truth, s.epoch))},
                     {"cycles_l1", s.slip.n1},
                     {"cycles_l2", s.slip.n2},
                     {"l4_step_m", s.step},
                     {"found", s.found}});
  json outliers = json::array();
  for (const PlacedOutlier& o : truth.outliers)
    outliers.push_back({{"satellite", o.outlier.sat},
                        {"epoch", o.epoch},
                        {"time", Time(TimeOf(truth, o.epoch))},
                        {"type", o.outlier.type},
                        {"size_m", o.outlier.size},
                        {"elevation_deg", o.elevation / kDegree}});
  return {{"slips", slips}, {"outliers", outliers}};
}

static json NoiseJson(const Scenario& s) {
  return {{"code_zenith_m", s.codeNoise},
          {"phase_zenith_m", s.PhaseNoise()},
          {"law", "1 / sin(elevation)"},
          {"multipath_m", s.multipath}};
}

json TruthJson(const Truth& truth) {
  const Scenario& s = *truth.scenario;
  json files = json::object();
  for (const auto& [kind, name] : truth.files) files[kind] = name;
  return {{"seed", s.seed},
          {"files", files},
          {"arguments", {{"inputs", truth.inputs}, {"estimation", truth.estimation}}},
          {"station", StationJson(s)},
          {"epochs", EpochsJson(truth)},
          {"cutoff_deg", s.cutoff},
          {"receiver_dcb", {{"p1c1_m", ReceiverP1C1(1, s)}, {"p2c1_m", ReceiverP2C1(1, s)}}},
          {"satellites", SatellitesJson(truth)},
          {"ionosphere", IonosphereJson(truth)},
          {"ambiguities", ArcsJson(truth)},
          {"disturbances", DisturbancesJson(truth)},
          {"noise", NoiseJson(s)},
          {"values_per_iteration",
           {{"p1c1", truth.counts.p1c1}, {"p2c1", truth.counts.p2c1}, {"l4", truth.counts.l4}}}};
}

} // namespace sim
