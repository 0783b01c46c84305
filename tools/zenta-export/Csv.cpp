#include "Csv.h"

#include "command/Command.h"
#include "report/Conventions.h"

#include <cmath>
#include <fmt/format.h>

namespace exports {

namespace {

using namespace report;

std::string Quoted(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string out = "\"";
  for (const char c : text) out += c == '"' ? "\"\"" : std::string(1, c);
  return out + '"';
}

/// A text of several lines, each as a comment.
std::string Comment(const std::string& text) {
  std::string out = "# ";
  for (const char c : text) {
    if (c == '\r') continue;
    out += c;
    if (c == '\n') out += "# ";
  }
  return out + '\n';
}

/// A table under construction: fields one after the other, line by line.
class Table {
public:
  Table(std::string name, const std::string& head, const std::string& columns)
      : name_(std::move(name)), text_(head + columns + '\n') {}

  Table& Text(const std::string& text) { return Field(Quoted(text)); }
  Table& Number(double x) { return Field(std::isfinite(x) ? fmt::format("{}", x) : ""); }
  Table& Number(const std::optional<double>& x) { return x ? Number(*x) : Field(""); }
  Table& Count(long n) { return Field(fmt::format("{}", n)); }
  Table& Time(const Epoch& t) {
    return Field(Iso(t)).Field(fmt::format("{}", DecimalDay(t))).Count(t.day).Number(t.second);
  }
  Table& Delay(const Estimate& e) {
    return Number(e.value)
        .Number(e.sigma)
        .Number(RoundedTECU(e.value))
        .Number(RoundedTECU(e.sigma));
  }
  Table& Delay(const std::optional<Estimate>& e) { return e ? Delay(*e) : Empty(4); }
  Table& Dcb(const std::optional<Bias>& b) {
    if (!b) return Empty(5);
    return Number(b->value)
        .Number(b->sigma)
        .Number(RoundedNanoseconds(b->value))
        .Number(RoundedNanoseconds(b->sigma))
        .Count(b->observations);
  }
  Table& Empty(int n) {
    while (n-- > 0) Field("");
    return *this;
  }
  void EndRow() {
    text_ += '\n';
    first_ = true;
  }
  std::pair<std::string, std::string> Done() { return {name_, std::move(text_)}; }

private:
  Table& Field(const std::string& field) {
    if (!first_) text_ += ',';
    text_ += field;
    first_ = false;
    return *this;
  }

  std::string name_;
  std::string text_;
  bool first_ = true;
};

constexpr const char* kTime = "iso,mjd,day,second";
constexpr const char* kDcb = "m,sigma_m,ns,sigma_ns,observations";

std::string DelayColumns(const std::string& name, const std::string& per = "") {
  return fmt::format("{0}_m{1},{0}_sigma_m{1},{0}_tecu{1},{0}_sigma_tecu{1}", name, per);
}

/// What every file says before its columns.
std::string HeadOf(const Report& r) {
  std::string head =
      fmt::format("# Written by zenta-export {} from a report of Zenta, release {}, run at {} "
                  "local time\n",
                  command::Version(), r.settings.release, r.settings.created);
  head += Comment("Observations: " + r.settings.files.observations);
  for (const Convention& c : ConventionsOf(r)) head += Comment(c.key + ": " + c.text);
  return head;
}

class Tables {
public:
  explicit Tables(const Results& results)
      : results_(results), r_(results.report), head_(HeadOf(results.report)) {}

  std::vector<std::pair<std::string, std::string>> All() {
    std::vector<std::pair<std::string, std::string>> all = {
        Settings(), Statistics(), ReceiverBiases(), SatelliteBiases(), Ambiguities(), Intervals()};
    if (r_.epochs) all.push_back(EpochDelays(*r_.epochs));
    all.push_back(Eclipses());
    all.push_back(Outliers());
    if (results_.residuals) all.push_back(Residuals(*results_.residuals));
    return all;
  }

private:
  Table Make(const std::string& name, const std::string& columns) const {
    return {name, head_, columns};
  }

  std::pair<std::string, std::string> Settings() const {
    const report::Settings& s = r_.settings;
    const Files& f = s.files;
    Table t = Make("settings.csv", "setting,value");
    const auto text = [&t](const char* name, const std::string& value) {
      t.Text(name).Text(value).EndRow();
    };
    const auto yes = [&text](const char* name, bool value) { text(name, value ? "yes" : "no"); };
    const auto number = [&t](const char* name, const std::optional<double>& value) {
      t.Text(name).Number(value).EndRow();
    };
    text("release", s.release);
    text("created_local_time", s.created);
    text("file_observations", f.observations);
    text("file_coordinates", f.coordinates);
    text("file_receiver_clock", f.clock);
    text("file_gps_navigation", f.gpsNavigation);
    text("file_glonass_navigation", f.glonassNavigation);
    text("file_gps_orbits", f.gpsOrbits);
    text("file_glonass_orbits", f.glonassOrbits);
    text("file_glonass_channels", f.glonassChannels);
    text("file_dcb_p1p2", f.dcbP1P2);
    text("file_dcb_p1c1", f.dcbP1C1);
    text("file_dcb_p2c2", f.dcbP2C2);
    text("file_code_tracking", f.codeTracking);
    text("file_multipath_c1p1", f.multipath1);
    text("file_multipath_p2", f.multipath2);
    number("elevation_cutoff_deg", s.minElevation);
    yes("uses_p1c1", s.usesP1C1);
    yes("uses_p2c1", s.usesP2C1);
    yes("uses_l4", s.usesPhase);
    text("weights", s.weightedByElevation ? "sin^2 elevation" : "equal");
    number("misclosure_limit_m", s.misclosureLimit);
    number("code_residual_limit_m", s.codeResidualLimit);
    number("phase_residual_limit_m", s.phaseResidualLimit);
    yes("estimates_receiver_p1c1", s.estimatesReceiverP1C1);
    yes("estimates_receiver_p2c1", s.estimatesReceiverP2C1);
    yes("estimates_gps_satellites", s.estimatesGPS);
    yes("estimates_glonass_satellites", s.estimatesGLONASS);
    yes("estimates_ionosphere", s.estimatesIonosphere);
    yes("estimates_gradients", s.estimatesGradients);
    number("interval_s", s.estimatesIonosphere ? std::optional(s.interval) : std::nullopt);
    return t.Done();
  }

  std::pair<std::string, std::string> Statistics() const {
    const report::Statistics& s = r_.statistics;
    Table t = Make("statistics.csv", "statistic,value");
    const auto count = [&t](const char* name, long n) { t.Text(name).Count(n).EndRow(); };
    const auto number = [&t](const char* name, double x) { t.Text(name).Number(x).EndRow(); };
    count("iterations", s.iterations);
    number("last_correction_m", s.lastCorrection);
    count("epochs", s.epochs);
    count("observations_counted", s.observations);
    count("unknowns", r_.adjustment.Last().unknowns);
    count("outliers", s.outliers);
    number("apriori_deviation", s.aprioriDeviation);
    number("aposteriori_deviation", s.deviation);
    number("aposteriori_variance", s.variance);
    return t.Done();
  }

  std::pair<std::string, std::string> ReceiverBiases() const {
    Table t = Make("receiver_dcb.csv", std::string("dcb,") + kDcb);
    if (r_.receiverP1C1) t.Text("P1-C1").Dcb(r_.receiverP1C1).EndRow();
    if (r_.receiverP2C1) t.Text("P2-C1").Dcb(r_.receiverP2C1).EndRow();
    return t.Done();
  }

  std::pair<std::string, std::string> SatelliteBiases() const {
    Table t = Make("satellite_dcb.csv", std::string("satellite,dcb,") + kDcb);
    for (const report::SatelliteBiases& b : r_.satellites) {
      if (b.p1c1) t.Text(NameOf(b.satellite)).Text("P1-C1").Dcb(b.p1c1).EndRow();
      if (b.p2c1) t.Text(NameOf(b.satellite)).Text("P2-C1").Dcb(b.p2c1).EndRow();
    }
    return t.Done();
  }

  std::pair<std::string, std::string> Ambiguities() const {
    std::string columns = "id,satellite,first_iso,first_mjd,first_day,first_second,last_iso,"
                          "last_mjd,last_day,last_second,m,sigma_m,observations";
    if (results_.arcs) columns += ",first_epoch_index,last_epoch_index";
    Table t = Make("ambiguities.csv", columns);
    for (std::size_t j = 0; j < r_.ambiguities.size(); ++j) {
      const Ambiguity& a = r_.ambiguities[j];
      t.Count(a.id).Text(NameOf(a.satellite)).Time(a.first).Time(a.last);
      t.Number(a.value.value).Number(a.value.sigma).Count(a.observations);
      if (results_.arcs)
        t.Count((*results_.arcs)[j].firstEpoch).Count((*results_.arcs)[j].lastEpoch);
      t.EndRow();
    }
    return t.Done();
  }

  std::string GradientColumns() const {
    if (!r_.settings.estimatesGradients) return "";
    return ',' + DelayColumns("gradient_east") + ',' + DelayColumns("gradient_north");
  }

  std::pair<std::string, std::string> Intervals() const {
    Table t =
        Make("ionosphere.csv", fmt::format("{},{},{}{},observations", kTime, DelayColumns("delay"),
                                           DelayColumns("rate", "_per_h"), GradientColumns()));
    for (const Interval& i : r_.intervals) {
      t.Time(i.first).Delay(i.delay).Delay(i.rate);
      if (r_.settings.estimatesGradients) t.Delay(i.east).Delay(i.north);
      t.Count(i.observations).EndRow();
    }
    return t.Done();
  }

  std::pair<std::string, std::string> EpochDelays(const std::vector<EpochDelay>& epochs) const {
    Table t = Make("ionosphere_epochs.csv",
                   fmt::format("{},{}{}", kTime, DelayColumns("delay"), GradientColumns()));
    for (const EpochDelay& e : epochs) {
      t.Time(e.epoch).Delay(e.delay);
      if (r_.settings.estimatesGradients) t.Delay(e.east).Delay(e.north);
      t.EndRow();
    }
    return t.Done();
  }

  std::pair<std::string, std::string> Eclipses() const {
    Table t = Make("eclipses.csv", "satellite,observations");
    for (const Eclipse& e : r_.eclipses) t.Text(NameOf(e.satellite)).Count(e.observations).EndRow();
    return t.Done();
  }

  std::pair<std::string, std::string> Outliers() const {
    Table t =
        Make("outliers.csv", fmt::format("found_by,epoch_index,{},satellite,observable,m", kTime));
    const auto row = [&t](const char* found, const Outlier& o) {
      t.Text(found).Count(o.epochIndex).Time(o.epoch).Text(NameOf(o.satellite));
      t.Text(NameOf(o.observable)).Number(o.value).EndRow();
    };
    for (const Outlier& o : r_.adjustment.misclosures) row("misclosure", o);
    for (const Outlier& o : r_.adjustment.residuals) row("residual", o);
    return t.Done();
  }

  std::pair<std::string, std::string> Residuals(const ResidualFile& file) const {
    Table t = Make("residuals.csv", fmt::format("{},satellite,observable,m", kTime));
    for (const ResidualBlock& b : file.blocks)
      for (const Residual& v : b.residuals)
        t.Time(b.epoch)
            .Text(NameOf(v.satellite))
            .Text(NameOf(v.observable))
            .Number(v.value)
            .EndRow();
    return t.Done();
  }

  const Results& results_;
  const Report& r_;
  const std::string head_;
};

} // namespace

std::vector<std::pair<std::string, std::string>> ToCsv(const Results& results) {
  return Tables(results).All();
}

} // namespace exports
