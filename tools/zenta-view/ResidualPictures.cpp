#include "Pictures.h"
#include "Script.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <map>
#include <numbers>

namespace view {

namespace {

using namespace report;

constexpr int kPanelHeight = 190;
constexpr int kPanelWidth = 800;

const char* SlugOf(Observable o) {
  switch (o) {
  case Observable::P1C1:
    return "p1c1";
  case Observable::P2C1:
    return "p2c1";
  case Observable::L4:
    break;
  }
  return "l4";
}

/// Points of one panel by system.
struct PanelDots {
  Dots gps;
  Dots glonass;

  PanelDots(double left, double right, double limit)
      : gps(left, right, -limit, limit, CellsOf(kPanelWidth), CellsOf(kPanelHeight)),
        glonass(left, right, -limit, limit, CellsOf(kPanelWidth), CellsOf(kPanelHeight)) {}
  void Add(Satellite s, double x, double y) { (IsGPS(s) ? gps : glonass).Add(x, y); }
};

double Limit(double largest) { return largest > 0 ? largest * 1.05 : 1; }

/// The plots of a panel's points, and their blocks in \p script.
std::string PlotsOf(const PanelDots& dots, const std::string& name, std::string& script) {
  std::string plots;
  const auto add = [&](const Dots& d, const char* system, const char* colour) {
    if (d.Empty()) return;
    const std::string block = fmt::format("{}_{}", name, system);
    script += Block(block, d.Rows());
    // the line of the key is of its own, since that of the points would hardly show
    plots += fmt::format("{}${} using 1:2 with lines linewidth 2 linecolor rgb '{}' notitle, "
                         "keyentry "
                         "with points pointtype 7 pointsize 0.6 linecolor rgb '{}' title '{}'",
                         plots.empty() ? "" : ", ", block, colour, colour, system);
  };
  add(dots.gps, "GPS", "@gps@");
  add(dots.glonass, "GLONASS", "@glonass@");
  return plots;
}

std::map<Observable, double> LargestByObservable(const ResidualFile& file) {
  std::map<Observable, double> largest;
  for (const ResidualBlock& b : file.blocks)
    for (const Residual& r : b.residuals)
      if (std::isfinite(r.value))
        largest[r.observable] = std::max(largest[r.observable], std::fabs(r.value));
  return largest;
}

std::string PanelFrame(Observable o, double limit) {
  return PanelLabel(std::string(NameOf(o)) + ", m") +
         fmt::format("set yrange [{:.6g}:{:.6g}]\n", -limit, limit);
}

Span SpanOfBlocks(const ResidualFile& file) {
  return {file.blocks.front().epoch, file.blocks.back().epoch};
}

std::string TimePanel(const ResidualFile& file, Observable o, double limit, const Span& span) {
  const double first = PlotTime(span.first);
  PanelDots dots(first, std::max(PlotTime(span.last), first + 60), limit);
  for (const ResidualBlock& b : file.blocks)
    for (const Residual& r : b.residuals)
      if (r.observable == o) dots.Add(r.satellite, PlotTime(b.epoch), r.value);
  std::string script;
  const std::string plots = PlotsOf(dots, SlugOf(o), script);
  return script + PanelFrame(o, limit) + "plot " + plots + '\n';
}

// ---- By elevation -----------------------------------------------------------------------------

constexpr double kBinWidth = 5; // [degree]
constexpr long kFewest = 10;    // residuals for a root mean square

struct MeanSquare {
  double sum = 0;
  long count = 0;
};

std::string RmsRows(const std::map<int, MeanSquare>& bins) {
  std::string rows;
  for (const auto& [bin, m] : bins) {
    if (m.count < kFewest) continue;
    rows += fmt::format("{:.4g} {:.6g}\n", (bin + 0.5) * kBinWidth,
                        std::sqrt(m.sum / static_cast<double>(m.count)));
  }
  return rows;
}

std::string ElevationPanel(const std::vector<LocatedResidual>& located, Observable o,
                           double limit) {
  PanelDots dots(0, 90, limit);
  std::map<int, MeanSquare> gps;
  std::map<int, MeanSquare> glonass;
  for (const LocatedResidual& l : located) {
    if (l.residual.observable != o || !std::isfinite(l.residual.value)) continue;
    dots.Add(l.residual.satellite, l.elevation, l.residual.value);
    MeanSquare& m =
        (IsGPS(l.residual.satellite) ? gps : glonass)[static_cast<int>(l.elevation / kBinWidth)];
    m.sum += l.residual.value * l.residual.value;
    ++m.count;
  }
  std::string script;
  std::string plots = PlotsOf(dots, SlugOf(o), script);
  const auto addRms = [&](const std::map<int, MeanSquare>& bins, const char* system, int dash,
                          const char* title) {
    const std::string rows = RmsRows(bins);
    if (rows.empty()) return;
    const std::string block = fmt::format("{}_rms_{}", SlugOf(o), system);
    script += Block(block, rows);
    plots += fmt::format(", ${} using 1:2 with linespoints linewidth 2 dashtype {} pointtype {} "
                         "pointsize 0.5 linecolor rgb '@ink@' title '{}'",
                         block, dash, dash == 1 ? 7 : 5, title);
  };
  addRms(gps, "gps", 1, "rms of GPS in 5°");
  addRms(glonass, "glonass", 2, "rms of GLONASS");
  return script + PanelFrame(o, limit) + "plot " + plots + '\n';
}

// ---- Sky --------------------------------------------------------------------------------------

constexpr int kClasses = 9;

/// Residuals averaged in cells of the sky, seen from below: north up, east to the right.
class Sky {
public:
  void Add(const LocatedResidual& l) {
    const double azimuth = l.azimuth * std::numbers::pi / 180;
    const double r = 90 - l.elevation;
    const auto cell = std::pair(static_cast<int>(std::floor(r * std::sin(azimuth) / kCell)),
                                static_cast<int>(std::floor(r * std::cos(azimuth) / kCell)));
    MeanSquare& m = cells_[cell];
    m.sum += l.residual.value;
    ++m.count;
  }
  bool Empty() const { return cells_.empty(); }

  /// What 19 of 20 cells stay below.
  double Scale() const {
    std::vector<double> means;
    for (const auto& [cell, m] : cells_) means.push_back(std::fabs(MeanOf(m)));
    std::sort(means.begin(), means.end());
    const double scale = means[(means.size() - 1) * 19 / 20];
    return scale > 0 ? scale : 1;
  }

  /// Rows of the cells in class \p c, of equal width from -scale to scale.
  std::string Rows(int c, double scale) const {
    std::string rows;
    for (const auto& [cell, m] : cells_) {
      const double place = (MeanOf(m) / scale + 1) / 2 * kClasses;
      if (std::clamp(static_cast<int>(std::floor(place)), 0, kClasses - 1) != c) continue;
      const double x = (cell.first + 0.5) * kCell;
      const double y = (cell.second + 0.5) * kCell;
      rows += fmt::format("{0:.2f} {1:.2f}\n{0:.2f} {2:.2f}\n\n", x, y, y + 0.02);
    }
    return rows;
  }

private:
  static constexpr double kCell = 1.2; // [degree] of zenith distance
  static double MeanOf(const MeanSquare& m) { return m.sum / static_cast<double>(m.count); }
  std::map<std::pair<int, int>, MeanSquare> cells_;
};

std::string SkyFrame() {
  std::string script =
      "set size ratio -1\nset xrange [-104:104]\nset yrange [-104:104]\nunset "
      "border\nunset tics\nunset grid\nset key at screen 0.74,0.86 left top Left reverse "
      "spacing 1.3 vertical\nset lmargin at screen 0.02\nset rmargin at screen 0.7\nset tmargin at "
      "screen 0.99\nset bmargin at screen 0.01\n"
      "set style textbox opaque margins 0.5,0.5 fillcolor rgb '@paper@' noborder\n"
      "set parametric\nset trange [0:2*pi]\nset samples 181\n";
  for (const int elevation : {0, 30, 60})
    script += fmt::format("set label '{}°' at 0,{} center front boxed textcolor rgb '@ink@'\n",
                          elevation, 90 - elevation);
  script += "set label 'N' at 0,98 center textcolor rgb '@ink@'\n"
            "set label 'E' at 98,0 center textcolor rgb '@ink@'\n"
            "set label 'S' at 0,-98 center textcolor rgb '@ink@'\n"
            "set label 'W' at -98,0 center textcolor rgb '@ink@'\n";
  return script;
}

/// The unit that shows numbers up to \p scale [m] without leading zeros.
struct Unit {
  const char* name;
  double perMetre;
};
Unit UnitFor(double scale) { return scale < 0.1 ? Unit{"mm", 1000} : Unit{"m", 1}; }

/// Both ends of class \p c; \p scale is that of the colours, in the unit of the key.
std::string ClassName(int c, double scale) {
  const auto edge = [scale](int k) { return (2.0 * k / kClasses - 1) * scale; };
  if (c == 0) return fmt::format("below {:.2g}", edge(1));
  if (c == kClasses - 1) return fmt::format("above {:.2g}", edge(kClasses - 1));
  return fmt::format("{:.2g} to {:.2g}", edge(c), edge(c + 1));
}

} // namespace

std::optional<Picture> ResidualTimePicture(const ViewData& data) {
  if (!data.residuals || data.residuals->blocks.empty()) return {};
  const ResidualFile& file = *data.residuals;
  const std::map<Observable, double> largest = LargestByObservable(file);
  const Span span = SpanOfBlocks(file);
  Picture p;
  p.name = "residuals_time";
  p.title = "Residuals by time";
  p.caption = "Model minus observation of all that took part in the last adjustment; points that "
              "fall on each other are drawn once.";
  p.height = 60 + static_cast<int>(largest.size()) * (kPanelHeight + 40);
  p.script = Frame() + fmt::format("set multiplot layout {},1\n", largest.size());
  std::size_t panel = 0;
  for (const auto& [observable, value] : largest) {
    const bool last = ++panel == largest.size();
    p.script += (last ? TimeAxis(span) : BareTimeAxis(span)) + (panel == 2 ? "unset key\n" : "") +
                TimePanel(file, observable, Limit(value), span);
  }
  p.script += "unset multiplot\n";
  return p;
}

std::optional<Picture> ResidualElevationPicture(const ViewData& data,
                                                const std::vector<LocatedResidual>& located) {
  if (located.empty()) return {};
  const std::map<Observable, double> largest = LargestByObservable(*data.residuals);
  Picture p;
  p.name = "residuals_elevation";
  p.title = "Residuals by elevation";
  p.caption = "Curves: root mean square in steps of five degrees.";
  p.height = 60 + static_cast<int>(largest.size()) * (kPanelHeight + 40);
  p.script = Frame() + fmt::format("set multiplot layout {},1\nset xrange [0:90]\nset xtics 10\n"
                                   "set format x ''\n",
                                   largest.size());
  std::size_t panel = 0;
  for (const auto& [observable, value] : largest) {
    if (++panel == largest.size())
      p.script += "set format x '%g'\nset xlabel 'elevation, degree' textcolor rgb '@ink@'\n";
    p.script +=
        (panel == 2 ? "unset key\n" : "") + ElevationPanel(located, observable, Limit(value));
  }
  p.script += "unset multiplot\n";
  return p;
}

std::optional<Picture> SkyPicture(Observable observable,
                                  const std::vector<LocatedResidual>& located) {
  Sky sky;
  for (const LocatedResidual& l : located)
    if (l.residual.observable == observable && std::isfinite(l.residual.value)) sky.Add(l);
  if (sky.Empty()) return {};
  const double scale = sky.Scale();
  Picture p;
  p.name = fmt::format("sky_{}", SlugOf(observable));
  p.title = fmt::format("Residuals of {} over the sky", NameOf(observable));
  p.caption = "Means over cells of 1.2 degrees, north up, east to the right, zenith in the middle.";
  p.width = 640;
  p.height = 460;
  const Unit unit = UnitFor(scale);
  p.script =
      Frame() + SkyFrame() +
      fmt::format("set label 'mean, {}' at screen 0.757,0.9 textcolor rgb '@ink@'\n", unit.name);
  std::string plots;
  for (const int r : {90, 60, 30})
    plots += fmt::format("{0}*cos(t),{0}*sin(t) with lines linecolor rgb '@faint@' notitle, ", r);
  plots += "[-90:90] 0,t with lines linecolor rgb '@faint@' notitle, "
           "[-90:90] t,0 with lines linecolor rgb '@faint@' notitle";
  for (int c = kClasses - 1; c >= 0; --c) {
    const std::string rows = sky.Rows(c, scale);
    if (!rows.empty()) {
      p.script += Block(fmt::format("c{}", c), rows);
      plots += fmt::format(", $c{} using 1:2 with lines linewidth 3 linecolor rgb '@d{}@' notitle",
                           c, c);
    }
    plots += fmt::format(", keyentry with points pointtype 7 pointsize 0.9 linecolor rgb '@d{}@' "
                         "title '{}'",
                         c, ClassName(c, scale * unit.perMetre));
  }
  p.script += "plot " + plots + '\n';
  return p;
}

} // namespace view
