#include "Json.h"

#include "command/Command.h"
#include "report/Conventions.h"
#include "report/Quantities.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace exports {

namespace {

using Json = nlohmann::ordered_json;
using namespace report;

Json Number(double x) { return std::isfinite(x) ? Json(x) : Json(nullptr); }
Json TextOrNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }
template <typename T> Json NumberOrNull(const std::optional<T>& x) {
  return x ? Number(*x) : Json(nullptr);
}

Json Time(const Epoch& t) {
  return {{"iso", Iso(t)}, {"mjd", DecimalDay(t)}, {"day", t.day}, {"second", t.second}};
}

Json Delay(const Estimate& e) {
  return {{"m", Number(e.value)},
          {"sigma_m", Number(e.sigma)},
          {"tecu", Number(RoundedTECU(e.value))},
          {"sigma_tecu", Number(RoundedTECU(e.sigma))}};
}

Json Rate(const Estimate& e) {
  return {{"m_per_h", Number(e.value)},
          {"sigma_m_per_h", Number(e.sigma)},
          {"tecu_per_h", Number(RoundedTECU(e.value))},
          {"sigma_tecu_per_h", Number(RoundedTECU(e.sigma))}};
}

Json Dcb(const std::optional<Bias>& b) {
  if (!b) return nullptr;
  return {{"m", Number(b->value)},
          {"sigma_m", Number(b->sigma)},
          {"ns", Number(RoundedNanoseconds(b->value))},
          {"sigma_ns", Number(RoundedNanoseconds(b->sigma))},
          {"us_printed", Number(b->microseconds)},
          {"sigma_us_printed", Number(b->sigmaMicroseconds)},
          {"observations", b->observations}};
}

Json MetaOf(const Report& r) {
  Json conventions = Json::object();
  for (const Convention& c : ConventionsOf(r)) conventions[c.key] = c.text;
  return {{"written_by", {{"name", "zenta-export"}, {"version", command::Version()}}},
          {"run",
           {{"program", "Zenta"},
            {"release", r.settings.release},
            {"created_local_time", r.settings.created}}},
          {"constants",
           {{"frequency_hz", kGPSL1},
            {"metres_per_tecu", kMetresPerTECU},
            {"shell_height_km", kShellHeight},
            {"earth_radius_km", kEarthRadius}}},
          {"conventions", conventions}};
}

Json FilesOf(const Files& f) {
  return {{"observations", TextOrNull(f.observations)},
          {"coordinates", TextOrNull(f.coordinates)},
          {"receiver_clock", TextOrNull(f.clock)},
          {"gps_navigation", TextOrNull(f.gpsNavigation)},
          {"glonass_navigation", TextOrNull(f.glonassNavigation)},
          {"gps_orbits", TextOrNull(f.gpsOrbits)},
          {"glonass_orbits", TextOrNull(f.glonassOrbits)},
          {"glonass_channels", TextOrNull(f.glonassChannels)},
          {"dcb_p1p2", TextOrNull(f.dcbP1P2)},
          {"dcb_p1c1", TextOrNull(f.dcbP1C1)},
          {"dcb_p2c2", TextOrNull(f.dcbP2C2)},
          {"code_tracking", TextOrNull(f.codeTracking)},
          {"multipath_c1p1", TextOrNull(f.multipath1)},
          {"multipath_p2", TextOrNull(f.multipath2)}};
}

Json ObservablesOf(const Settings& s) {
  Json used = Json::array();
  if (s.usesP1C1) used.push_back("P1-C1");
  if (s.usesP2C1) used.push_back("P2-C1");
  if (s.usesPhase) used.push_back("L1-L2");
  return used;
}

Json UnknownsOf(const Settings& s) {
  Json unknowns = Json::array();
  if (s.estimatesReceiverP1C1) unknowns.push_back("receiver P1-C1");
  if (s.estimatesReceiverP2C1) unknowns.push_back("receiver P2-C1");
  if (s.estimatesGPS) unknowns.push_back("GPS satellites");
  if (s.estimatesGLONASS) unknowns.push_back("GLONASS satellites");
  if (s.usesPhase) unknowns.push_back("ambiguities");
  if (s.estimatesIonosphere) unknowns.push_back("ionosphere");
  if (s.estimatesGradients) unknowns.push_back("gradients");
  return unknowns;
}

const char* KnownBiases(BiasSource source) {
  switch (source) {
  case BiasSource::broadcast:
    return "broadcast group delays";
  case BiasSource::code:
    return "DCB files";
  case BiasSource::none:
    break;
  }
  return "none";
}

Json SettingsOf(const Settings& s) {
  return {{"files", FilesOf(s.files)},
          {"elevation_cutoff_deg", s.minElevation},
          {"elevation_cutoff_given", s.minElevationGiven},
          {"observables", ObservablesOf(s)},
          {"known_biases", KnownBiases(s.biases)},
          {"weights", s.weightedByElevation ? "sin^2 elevation" : "equal"},
          {"misclosure_limit_m", NumberOrNull(s.misclosureLimit)},
          {"code_residual_limit_m", NumberOrNull(s.codeResidualLimit)},
          {"phase_residual_limit_m", NumberOrNull(s.phaseResidualLimit)},
          {"unknowns", UnknownsOf(s)},
          {"interval_s", s.estimatesIonosphere ? Number(s.interval) : Json(nullptr)}};
}

Json StageOf(const char* name, const Summary& s) {
  return {{"stage", name},
          {"observations_counted", s.observations},
          {"unknowns", s.unknowns},
          {"outliers", s.outliers},
          {"variance", Number(s.variance)},
          {"deviation", Number(s.deviation)}};
}

Json StatisticsOf(const Report& r) {
  const Statistics& s = r.statistics;
  Json stages = {StageOf("iterations", r.adjustment.iterated)};
  if (r.adjustment.eliminated)
    stages.push_back(StageOf("elimination of outliers", *r.adjustment.eliminated));
  return {{"iterations", s.iterations},
          {"last_correction_m", Number(s.lastCorrection)},
          {"epochs", s.epochs},
          {"observations_counted", s.observations},
          {"unknowns", r.adjustment.Last().unknowns},
          {"outliers", s.outliers},
          {"apriori_deviation", Number(s.aprioriDeviation)},
          {"aposteriori_deviation", Number(s.deviation)},
          {"aposteriori_variance", Number(s.variance)},
          {"stages", stages}};
}

Json OutlierOf(const Outlier& o, const char* found) {
  return {{"found_by", found},
          {"epoch_index", o.epochIndex},
          {"time", Time(o.epoch)},
          {"satellite", TextOrNull(NameOf(o.satellite))},
          {"observable", NameOf(o.observable)},
          {"m", Number(o.value)}};
}

Json OutliersOf(const Adjustment& a) {
  Json all = Json::array();
  const std::size_t last = a.misclosures.size() - static_cast<std::size_t>(a.iterated.outliers);
  for (std::size_t i = 0; i < a.misclosures.size(); ++i) {
    Json outlier = OutlierOf(a.misclosures[i], "misclosure");
    outlier["last_iteration"] = i >= last;
    all.push_back(outlier);
  }
  for (const Outlier& o : a.residuals) all.push_back(OutlierOf(o, "residual"));
  return all;
}

Json EclipsesOf(const Report& r) {
  Json all = Json::array();
  for (const Eclipse& e : r.eclipses)
    all.push_back({{"satellite", NameOf(e.satellite)}, {"observations", e.observations}});
  return all;
}

Json SatelliteBiasesOf(const Report& r) {
  Json all = Json::array();
  for (const SatelliteBiases& b : r.satellites)
    all.push_back(
        {{"satellite", NameOf(b.satellite)}, {"p1c1", Dcb(b.p1c1)}, {"p2c1", Dcb(b.p2c1)}});
  return all;
}

Json AmbiguityOf(const Ambiguity& a, const Arc* arc) {
  Json json = {{"id", a.id},
               {"satellite", TextOrNull(NameOf(a.satellite))},
               {"first", Time(a.first)},
               {"last", Time(a.last)},
               {"m", Number(a.value.value)},
               {"sigma_m", Number(a.value.sigma)},
               {"observations", a.observations}};
  if (arc) {
    json["first_epoch_index"] = arc->firstEpoch;
    json["last_epoch_index"] = arc->lastEpoch;
  }
  return json;
}

Json AmbiguitiesOf(const Results& results) {
  Json all = Json::array();
  const auto& ambiguities = results.report.ambiguities;
  for (std::size_t j = 0; j < ambiguities.size(); ++j)
    all.push_back(AmbiguityOf(ambiguities[j], results.arcs ? &(*results.arcs)[j] : nullptr));
  return all;
}

void AddGradients(const std::optional<Estimate>& east, const std::optional<Estimate>& north,
                  Json& json) {
  if (east) json["gradient_east"] = Delay(*east);
  if (north) json["gradient_north"] = Delay(*north);
}

Json IntervalsOf(const Report& r) {
  Json all = Json::array();
  for (const Interval& i : r.intervals) {
    Json json = {{"first", Time(i.first)}, {"delay", Delay(i.delay)}, {"rate", Rate(i.rate)}};
    AddGradients(i.east, i.north, json);
    json["observations"] = i.observations;
    all.push_back(json);
  }
  return all;
}

Json EpochDelaysOf(const std::vector<EpochDelay>& epochs) {
  Json all = Json::array();
  for (const EpochDelay& e : epochs) {
    Json json = {{"time", Time(e.epoch)}, {"delay", Delay(e.delay)}};
    AddGradients(e.east, e.north, json);
    all.push_back(json);
  }
  return all;
}

Json ResidualsOf(const ResidualFile& file) {
  Json all = Json::array();
  for (const ResidualBlock& b : file.blocks) {
    Json values = Json::array();
    for (const Residual& v : b.residuals)
      values.push_back({{"satellite", TextOrNull(NameOf(v.satellite))},
                        {"observable", NameOf(v.observable)},
                        {"m", Number(v.value)}});
    all.push_back({{"time", Time(b.epoch)}, {"values", values}});
  }
  return all;
}

// Texts of reports may be of any encoding; what is not UTF-8 becomes U+FFFD.
std::string Compact(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// A table has a line for every row, everything else is one line.
std::string Laid(const Json& json) {
  if (!json.is_array() || json.empty()) return Compact(json);
  std::string text = "[";
  for (const Json& row : json) text += (&row == &json.front() ? "\n  " : ",\n  ") + Compact(row);
  return text + "\n ]";
}

} // namespace

std::string ToJson(const Results& results) {
  const Report& r = results.report;
  Json json = {{"format", "zenta-results"},
               {"format_version", 1},
               {"meta", MetaOf(r)},
               {"warnings", r.warnings},
               {"settings", SettingsOf(r.settings)},
               {"statistics", StatisticsOf(r)},
               {"receiver_dcb", {{"p1c1", Dcb(r.receiverP1C1)}, {"p2c1", Dcb(r.receiverP2C1)}}},
               {"satellite_dcb", SatelliteBiasesOf(r)},
               {"ambiguities", AmbiguitiesOf(results)},
               {"ionosphere", IntervalsOf(r)},
               {"ionosphere_epochs", r.epochs ? EpochDelaysOf(*r.epochs) : Json(nullptr)},
               {"eclipses", EclipsesOf(r)},
               {"outliers", OutliersOf(r.adjustment)},
               {"residuals", results.residuals ? ResidualsOf(*results.residuals) : Json(nullptr)}};
  std::string text;
  for (const auto& [key, value] : json.items())
    text += (text.empty() ? "{\n \"" : ",\n \"") + key + "\": " + Laid(value);
  return text + "\n}\n";
}

} // namespace exports
