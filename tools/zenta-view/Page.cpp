#include "Page.h"

#include "Html.h"
#include "command/Command.h"
#include "report/Conventions.h"
#include "report/Quantities.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fmt/format.h>

namespace view {

namespace {

using namespace report;

constexpr const char* kStyle = R"css(
*{box-sizing:border-box}
body{margin:0;background:var(--paper);color:var(--ink);font:16px/1.5 system-ui,sans-serif}
header,main,footer{max-width:64rem;margin:0 auto;padding:0 1.25rem}
header{padding-top:2rem}
h1{font-size:1.75rem;line-height:1.2;margin:0 0 .25rem}
h2{font-size:1.25rem;margin:3rem 0 .5rem;padding-top:.75rem;border-top:1px solid var(--faint)}
p{margin:.5rem 0;max-width:46rem}
.quiet{opacity:.75}
nav{display:flex;flex-wrap:wrap;gap:.25rem 1.25rem;margin:1rem 0}
a{color:var(--gps)}
.cards{display:grid;grid-template-columns:repeat(auto-fit,minmax(11.5rem,1fr));gap:1rem;margin:1.5rem 0}
.card{border:1px solid var(--faint);border-radius:.5rem;padding:.75rem 1rem}
.card b{display:block;font-size:1.2rem;line-height:1.3;font-weight:600}
.card span{font-size:.875rem;opacity:.75}
figure{margin:1rem 0 2rem}
figure{overflow-x:auto}
figure svg{display:block;width:100%;min-width:38rem;height:auto}
figure.narrow svg{min-width:30rem}
figure svg text,figure svg tspan{font-family:inherit}
figure.narrow{max-width:44rem}
figcaption{font-size:.9rem;opacity:.8;max-width:46rem}
.wide{overflow-x:auto}
table{border-collapse:collapse;font-variant-numeric:tabular-nums;font-size:.9rem;margin:.75rem 0}
th,td{padding:.25rem .75rem;text-align:left;border-bottom:1px solid var(--faint);vertical-align:top}
th{font-weight:600}
td.n,th.n{text-align:right;white-space:nowrap}
td.path{overflow-wrap:anywhere;min-width:9rem}
summary{cursor:pointer;padding:.25rem 0}
footer{padding:2rem 1.25rem 3rem;font-size:.875rem;opacity:.75}
@media print{nav{display:none}h2{break-after:avoid}figure{break-inside:avoid}}
)css";

/// A table under construction; cells are escaped.
class HtmlTable {
public:
  HtmlTable& Head(const std::vector<std::string>& names, std::size_t firstNumber) {
    firstNumber_ = firstNumber;
    Line(names, "th");
    return *this;
  }
  HtmlTable& Row(const std::vector<std::string>& cells) {
    Line(cells, "td");
    ++lines_;
    return *this;
  }
  /// Rows below the head.
  std::size_t Lines() const { return lines_; }
  std::string Done() const { return "<div class=\"wide\"><table>\n" + text_ + "</table></div>\n"; }

private:
  void Line(const std::vector<std::string>& cells, const char* tag) {
    text_ += "<tr>";
    for (std::size_t i = 0; i < cells.size(); ++i)
      text_ += fmt::format("<{0}{1}>{2}</{0}>", tag, i >= firstNumber_ ? " class=\"n\"" : "",
                           Escaped(cells[i]));
    text_ += "</tr>\n";
  }

  std::size_t firstNumber_ = 99;
  std::size_t lines_ = 0;
  std::string text_;
};

/// Key and value; the value may be broken anywhere, since file names stand in it.
std::string Pairs(const std::vector<std::pair<std::string, std::string>>& pairs) {
  std::string text = "<div class=\"wide\"><table>\n";
  for (const auto& [key, value] : pairs)
    text += fmt::format("<tr><th>{}</th><td class=\"path\">{}</td></tr>\n", Escaped(key),
                        Escaped(value));
  return text + "</table></div>\n";
}

std::string Fixed(double x, int decimals) {
  return std::isfinite(x) ? fmt::format("{:.{}f}", x, decimals) : "not a number";
}

std::string WithError(double value, double sigma, int decimals) {
  return fmt::format("{} ± {}", Fixed(value, decimals), Fixed(sigma, decimals));
}

// ---- Head -------------------------------------------------------------------------------------

std::string StationOf(const ViewData& data) {
  if (data.inputs && !data.inputs->marker.empty()) return data.inputs->marker;
  return std::filesystem::path(data.report.settings.files.observations).filename().string();
}

std::string SpanText(const Report& r) {
  const std::optional<Span> span = SpanOf(r);
  if (!span) return "no epochs in the report";
  const auto text = [](const Epoch& t) {
    std::string iso = Iso(t);
    return iso.replace(10, 1, " ");
  };
  return text(span->first) + " to " + text(span->last);
}

std::string Card(const std::string& value, const std::string& name) {
  return fmt::format("<div class=\"card\"><b>{}</b><span>{}</span></div>\n", Escaped(value),
                     Escaped(name));
}

std::string Cards(const Report& r) {
  std::string text = "<div class=\"cards\">\n";
  if (!r.intervals.empty()) {
    const auto [low, high] = std::minmax_element(
        r.intervals.begin(), r.intervals.end(),
        [](const auto& a, const auto& b) { return a.delay.value < b.delay.value; });
    text += Card(fmt::format("{} to {}", Fixed(ToTECU(low->delay.value), 1),
                             Fixed(ToTECU(high->delay.value), 1)),
                 "vertical delay, TECU");
  }
  if (r.receiverP1C1)
    text += Card(
        WithError(ToNanoseconds(r.receiverP1C1->value), ToNanoseconds(r.receiverP1C1->sigma), 2),
        "receiver DCB P1-C1, ns");
  if (r.receiverP2C1)
    text += Card(
        WithError(ToNanoseconds(r.receiverP2C1->value), ToNanoseconds(r.receiverP2C1->sigma), 2),
        "receiver DCB P2-C1, ns");
  text += Card(Fixed(r.adjustment.Last().deviation, 3), "reference deviation, m");
  text += Card(fmt::format("{}", r.statistics.outliers), "outliers taken out");
  return text + "</div>\n";
}

// ---- Tables -----------------------------------------------------------------------------------

/// \p table as it is, or folded away where it has many lines.
std::string FoldedIfLong(const HtmlTable& table, const char* what) {
  constexpr std::size_t kShownAtOnce = 12;
  if (table.Lines() <= kShownAtOnce) return table.Done();
  return fmt::format("<details><summary>All {} {}</summary>\n{}</details>\n", table.Lines(), what,
                     table.Done());
}

std::string BiasTable(const Report& r) {
  HtmlTable receiver;
  receiver.Head({"receiver", "m", "ns", "observations"}, 1);
  HtmlTable satellites;
  satellites.Head({"satellite", "P1-C1, m", "ns", "observations", "P2-C1, m", "ns", "observations"},
                  1);
  const auto cells = [](const std::optional<Bias>& b) -> std::vector<std::string> {
    if (!b) return {"", "", ""};
    return {WithError(b->value, b->sigma, 4),
            WithError(ToNanoseconds(b->value), ToNanoseconds(b->sigma), 3),
            fmt::format("{}", b->observations)};
  };
  const auto row = [&cells](HtmlTable& t, const std::string& name,
                            std::initializer_list<std::optional<Bias>> biases) {
    std::vector<std::string> line = {name};
    for (const std::optional<Bias>& b : biases)
      for (const std::string& cell : cells(b)) line.push_back(cell);
    t.Row(line);
  };
  if (r.receiverP1C1) row(receiver, "P1-C1", {r.receiverP1C1});
  if (r.receiverP2C1) row(receiver, "P2-C1", {r.receiverP2C1});
  for (const SatelliteBiases& b : r.satellites)
    row(satellites, NameOf(b.satellite), {b.p1c1, b.p2c1});
  return (receiver.Lines() > 0 ? receiver.Done() : "") +
         (satellites.Lines() > 0 ? FoldedIfLong(satellites, "satellites") : "");
}

std::string OutlierTable(const ViewData& data) {
  const std::vector<OutlierRun> runs = OutlierRunsOf(data.report, SamplingOf(data));
  if (runs.empty()) return "<p>No outliers.</p>\n";
  HtmlTable t;
  t.Head({"satellite", "observable", "found by", "first", "last", "epochs", "largest, m"}, 5);
  for (const OutlierRun& o : runs)
    t.Row({NameOf(o.satellite), NameOf(o.observable), o.byMisclosure ? "misclosure" : "residual",
           Iso(o.first), Iso(o.last), fmt::format("{}", o.count), Fixed(o.largest, 3)});
  std::string text =
      "<p>Outliers of one satellite and observable in epochs that follow each other are "
      "one line; the largest by size stands for them.</p>\n";
  return text + FoldedIfLong(t, "lines");
}

/// Counts by satellite and observable, the most first.
std::string OutlierCounts(const Report& r) {
  struct Count {
    Satellite satellite;
    Observable observable;
    long n;
    double largest;
  };
  std::vector<Count> counts;
  for (const Outlier& o : r.adjustment.residuals) {
    auto found = std::find_if(counts.begin(), counts.end(), [&o](const Count& c) {
      return c.satellite == o.satellite && c.observable == o.observable;
    });
    if (found == counts.end())
      found = counts.insert(counts.end(), {o.satellite, o.observable, 0, 0});
    ++found->n;
    if (std::fabs(o.value) > std::fabs(found->largest)) found->largest = o.value;
  }
  if (counts.empty()) return "";
  std::stable_sort(counts.begin(), counts.end(),
                   [](const Count& a, const Count& b) { return a.n > b.n; });
  constexpr std::size_t kMost = 10;
  HtmlTable t;
  t.Head({"satellite", "observable", "outliers", "largest, m"}, 2);
  for (std::size_t i = 0; i < std::min(counts.size(), kMost); ++i)
    t.Row({NameOf(counts[i].satellite), NameOf(counts[i].observable),
           fmt::format("{}", counts[i].n), Fixed(counts[i].largest, 3)});
  return (counts.size() > kMost
              ? fmt::format("<p>The {} with the most outliers by residual, of {}:</p>\n", kMost,
                            counts.size())
              : "<p>Outliers by residual:</p>\n") +
         t.Done();
}

std::string EclipseTable(const Report& r) {
  if (r.eclipses.empty()) return "";
  std::string text = "<p>Phases left out because the satellite turned or was shadowed: ";
  for (const Eclipse& e : r.eclipses)
    text += fmt::format("{}{} {}", &e == &r.eclipses.front() ? "" : ", ", NameOf(e.satellite),
                        e.observations);
  return text + ".</p>\n";
}

std::string OrNone(const std::string& file) { return file.empty() ? "none" : file; }

std::string SettingsTable(const Settings& s) {
  const auto limit = [](const std::optional<double>& x) {
    return x ? Fixed(*x, 3) + " m" : std::string("not tested");
  };
  std::string observables;
  for (const auto& [used, name] : {std::pair(s.usesP1C1, "P1-C1"), std::pair(s.usesP2C1, "P2-C1"),
                                   std::pair(s.usesPhase, "L1-L2")})
    if (used) observables += (observables.empty() ? "" : ", ") + std::string(name);
  std::string unknowns;
  for (const auto& [used, name] :
       {std::pair(s.estimatesReceiver, "receiver DCB"),
        std::pair(s.estimatesGPS, "GPS satellite DCB"),
        std::pair(s.estimatesGLONASS, "GLONASS satellite DCB"),
        std::pair(s.usesPhase, "ambiguities"), std::pair(s.estimatesIonosphere, "ionosphere"),
        std::pair(s.estimatesGradients, "gradients")})
    if (used) unknowns += (unknowns.empty() ? "" : ", ") + std::string(name);
  const char* biases = s.biases == BiasSource::code        ? "DCB files"
                       : s.biases == BiasSource::broadcast ? "broadcast group delays"
                                                           : "none";
  return Pairs({{"Observables", observables.empty() ? "none" : observables},
                {"Unknowns", unknowns.empty() ? "none" : unknowns},
                {"Elevation cut-off", Fixed(s.minElevation, 1) + "°"},
                {"Weights", s.weightedByElevation ? "squared sine of the elevation" : "equal"},
                {"Ionosphere interval",
                 s.estimatesIonosphere ? Fixed(s.interval, 1) + " s" : std::string("none")},
                {"Limit of misclosures", limit(s.misclosureLimit)},
                {"Limit of code residuals", limit(s.codeResidualLimit)},
                {"Limit of L4 residuals", limit(s.phaseResidualLimit)},
                {"Known satellite biases", biases},
                {"Observations", OrNone(s.files.observations)},
                {"GPS orbits",
                 OrNone(s.files.gpsOrbits.empty() ? s.files.gpsNavigation : s.files.gpsOrbits)},
                {"GLONASS orbits", OrNone(s.files.glonassOrbits.empty() ? s.files.glonassNavigation
                                                                        : s.files.glonassOrbits)},
                {"GLONASS channels", OrNone(s.files.glonassChannels)},
                {"P1-P2 biases", OrNone(s.files.dcbP1P2)},
                {"P1-C1 biases", OrNone(s.files.dcbP1C1)},
                {"P2-C2 biases", OrNone(s.files.dcbP2C2)},
                {"Code tracking", OrNone(s.files.codeTracking)},
                {"Coordinates", OrNone(s.files.coordinates)},
                {"Receiver clock", OrNone(s.files.clock)},
                {"Multipath on C1/P1", OrNone(s.files.multipath1)},
                {"Multipath on P2", OrNone(s.files.multipath2)}});
}

std::string StatisticsTable(const Report& r) {
  const Statistics& s = r.statistics;
  const Adjustment& a = r.adjustment;
  std::vector<std::pair<std::string, std::string>> pairs = {
      {"Iterations", fmt::format("{}", s.iterations)},
      {"Last correction", Fixed(s.lastCorrection, 3) + " m"},
      {"Epochs", fmt::format("{}", s.epochs)},
      {"Unknowns", fmt::format("{}", a.Last().unknowns)},
      {"Observations, counted over all iterations", fmt::format("{}", s.observations)},
      {"Outliers", fmt::format("{}", s.outliers)}};
  if (a.eliminated)
    pairs.emplace_back("Reference deviation before outliers were taken out",
                       Fixed(a.iterated.deviation, 3) + " m");
  pairs.emplace_back("Reference deviation", Fixed(a.Last().deviation, 3) + " m");
  return Pairs(pairs);
}

std::string ConventionList(const Report& r) {
  std::string text = "<div class=\"wide\"><table>\n";
  for (const Convention& c : ConventionsOf(r))
    text += fmt::format("<tr><th>{}</th><td class=\"path\">{}</td></tr>\n",
                        Escaped(ReplacedAll(c.key, "_", " ")), Escaped(c.text));
  return text + "</table></div>\n";
}

std::string WarningList(const Report& r) {
  if (r.warnings.empty()) return "";
  std::string text = "<h2 id=\"warnings\">Warnings of the readers</h2>\n<ul>\n";
  for (const std::string& w : r.warnings) text += "<li>" + Escaped(w) + "</li>\n";
  return text + "</ul>\n";
}

// ---- Pictures ---------------------------------------------------------------------------------

std::string Figure(const DrawnPicture& d) {
  const bool narrow = d.picture.width < 800;
  return fmt::format("<figure{}>\n{}\n<figcaption>{}</figcaption>\n</figure>\n",
                     narrow ? " class=\"narrow\"" : "", d.svg, Escaped(d.picture.caption));
}

std::string Heading(const std::string& id, const std::string& title) {
  return fmt::format("<h2 id=\"{}\">{}</h2>\n", id, Escaped(title));
}

} // namespace

std::string PageOf(const ViewData& data, const std::vector<DrawnPicture>& pictures) {
  const Report& r = data.report;
  const std::string station = StationOf(data);
  std::string links;
  const auto link = [&links](const std::string& id, const std::string& title) {
    links += fmt::format("<a href=\"#s-{}\">{}</a>\n", id, Escaped(title));
  };
  std::string figures;
  for (const DrawnPicture& d : pictures) {
    link(d.picture.name, d.picture.title);
    figures += Heading("s-" + d.picture.name, d.picture.title) + Figure(d);
    if (d.picture.name == "dcb") figures += BiasTable(r);
    if (d.picture.name == "arcs") figures += EclipseTable(r);
  }
  link("outliers", "Outliers");
  link("settings", "Settings");
  link("statistics", "Statistics");
  link("meaning", "What the numbers mean");
  std::string missing;
  for (const std::string& why : {data.whyNoResiduals, data.whyNoInputs})
    if (!why.empty()) missing += "<p class=\"quiet\">" + Escaped(why) + "</p>\n";

  return fmt::format(
             "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
             "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
             "<meta name=\"color-scheme\" content=\"light dark\">\n"
             "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
             "'unsafe-inline'; img-src data:\">\n"
             "<link rel=\"icon\" href=\"data:,\">\n<title>{} - Zenta</title>\n<style>\n",
             Escaped(station)) +
         ":root{" + Variables(Theme::light) + "}\n@media (prefers-color-scheme: dark){:root{" +
         Variables(Theme::dark) + "}}\n" + kStyle + "</style>\n</head>\n<body>\n<header>\n<h1>" +
         Escaped(station) + "</h1>\n<p>" + Escaped(SpanText(r)) + "</p>\n" + Cards(r) + "<nav>\n" +
         links + "</nav>\n" + missing + "</header>\n<main>\n" + figures +
         Heading("s-outliers", "Outliers") + OutlierCounts(r) + OutlierTable(data) +
         Heading("s-settings", "Settings") + SettingsTable(r.settings) +
         Heading("s-statistics", "Statistics") + StatisticsTable(r) + WarningList(r) +
         Heading("s-meaning", "What the numbers mean") + ConventionList(r) + "</main>\n<footer>" +
         Escaped(fmt::format(
             "Drawn by zenta-view {} from {}, written by Zenta, release {}, on {} local "
             "time.",
             command::Version(), data.reportName, r.settings.release,
             ReplacedAll(r.settings.created, "T", " "))) +
         "</footer>\n</body>\n</html>\n";
}

} // namespace view
