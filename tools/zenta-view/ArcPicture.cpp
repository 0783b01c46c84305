#include "Pictures.h"
#include "Script.h"

#include <fmt/format.h>
#include <map>

namespace view {

namespace {

using namespace report;

/// Row of each satellite in the picture, the first at the top.
std::map<Satellite, int> RowsOf(const ViewData& data, const std::vector<EclipseRun>& eclipses) {
  std::map<Satellite, int> rows;
  for (const Ambiguity& a : data.report.ambiguities) rows[a.satellite] = 0;
  for (const EclipseRun& e : eclipses) rows[e.satellite] = 0;
  int next = 0;
  for (auto& [satellite, row] : rows) row = next++;
  return rows;
}

/// A bar from first to last.
std::string BarRow(const Epoch& first, const Epoch& last, int row) {
  return fmt::format("{:.3f} {:.3f} {}\n", PlotTime(first), PlotTime(last), row);
}

/// Bars of a \p height in rows. Not thick lines: where these begin, some terminals draw a spike.
std::string Bars(double height, const char* colour, const char* title) {
  return fmt::format("using 1:3:1:2:($3-{0}):($3+{0}) with boxxyerror fill solid noborder "
                     "linecolor rgb '{1}' title '{2}'",
                     height / 2, colour, title);
}

} // namespace

std::optional<Picture> ArcPicture(const ViewData& data) {
  const Report& r = data.report;
  if (r.ambiguities.empty()) return {};
  const std::vector<EclipseRun> eclipses = EclipsesOf(data);
  const std::map<Satellite, int> rows = RowsOf(data, eclipses);
  std::string gps, glonass, marks, shade, names;
  for (const Ambiguity& a : r.ambiguities)
    (IsGPS(a.satellite) ? gps : glonass) += BarRow(a.first, a.last, rows.at(a.satellite));
  for (const Slip& s : SlipsOf(r, SamplingOf(data)))
    marks += fmt::format("{:.3f} {}\n", PlotTime(s.epoch), rows.at(s.satellite) - 0.4);
  for (const EclipseRun& e : eclipses) shade += BarRow(e.first, e.last, rows.at(e.satellite));
  for (const auto& [satellite, row] : rows)
    names += fmt::format("{}'{}' {}", row == 0 ? "" : ", ", NameOf(satellite), row);

  Picture p;
  p.name = "arcs";
  p.title = "Phase arcs";
  p.caption =
      "Bars: arcs with an ambiguity each. Triangles: an arc starts at the epoch after the "
      "one before, a cycle slip. Thin dark bars: the satellite turned or was shadowed, and its "
      "phases were left out.";
  const int n = static_cast<int>(rows.size());
  p.height = 90 + 16 * n;
  p.script = Frame() + TimeAxis(*SpanOf(r)) +
             fmt::format("set yrange [{}:-1]\nset ytics ({}) scale 0\n", n, names);
  std::string plots;
  const auto add = [&](const char* block, const std::string& data, const std::string& style) {
    if (data.empty()) return;
    p.script += Block(block, data);
    plots += fmt::format("{}${} {}", plots.empty() ? "" : ", ", block, style);
  };
  add("gps", gps, Bars(0.44, "@gps@", "GPS"));
  add("glonass", glonass, Bars(0.44, "@glonass@", "GLONASS"));
  add("shade", shade, Bars(0.16, "@ink@", "eclipsed"));
  add("slips", marks,
      "using 1:2 with points pointtype 11 pointsize 0.8 linecolor rgb '@mark@' title 'slip'");
  p.script += "plot " + plots + '\n';
  return p;
}

} // namespace view
