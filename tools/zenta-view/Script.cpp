#include "Script.h"

#include <cmath>
#include <fmt/format.h>

namespace view {

namespace {

constexpr double kDay = 86400;
constexpr int kMJDof1970 = 40587;

/// Between marks of a time axis [s]: about eight of them.
double MarkStep(double seconds) {
  for (const double step : {60.0, 300.0, 600.0, 900.0, 1800.0, 3600.0, 7200.0, 10800.0, 21600.0})
    if (seconds / step <= 9) return step;
  return kDay * std::ceil(seconds / kDay / 8);
}

} // namespace

double PlotTime(const report::Epoch& t) { return (t.day - kMJDof1970) * kDay + t.second; }

std::string Frame() {
  return "set encoding utf8\n"
         "set border 3 linewidth 1 linecolor rgb '@ink@'\n"
         "set tics nomirror out scale 0.5 textcolor rgb '@ink@'\n"
         "set grid linetype 1 linewidth 0.6 linecolor rgb '@faint@'\n"
         "set key above left horizontal Left reverse samplen 1.6 height 0.4 textcolor rgb '@ink@'\n"
         "set lmargin at screen 0.085\nset rmargin at screen 0.985\n";
}

std::string TimeAxis(const report::Span& span) {
  const double first = PlotTime(span.first);
  const double last = std::max(PlotTime(span.last), first + 60);
  const std::string firstDay = report::Iso(span.first).substr(0, 10);
  const std::string lastDay = report::Iso(span.last).substr(0, 10);
  const bool oneDay = last - first <= kDay;
  return fmt::format("set xdata time\nset timefmt '%s'\nset format x '{}'\n"
                     "set xrange ['{:.3f}':'{:.3f}']\nset xtics {}\nset mxtics 1\n"
                     "set xlabel 'time of the observations, {}{}' textcolor rgb '@ink@'\n",
                     oneDay ? "%H:%M" : "%H:%M\\n%d %b", first, last, MarkStep(last - first),
                     firstDay, firstDay == lastDay ? "" : " to " + lastDay);
}

std::string BareTimeAxis(const report::Span& span) {
  return TimeAxis(span) + "set format x ''\nunset xlabel\n";
}

std::string PanelLabel(const std::string& text) {
  return fmt::format("set label 1 '{}' at screen 0.018, graph 0.5 center rotate by 90 "
                     "textcolor rgb '@ink@'\n",
                     text);
}

double RoundStep(double low, double high) {
  constexpr double kMarks = 6;
  const double least = (high - low) / kMarks;
  if (!(least > 0)) return 1; // nothing to divide, or no number
  const double ten = std::pow(10, std::floor(std::log10(least)));
  for (const double step : {1.0, 2.0, 5.0})
    if (step * ten >= least) return step * ten;
  return 10 * ten;
}

std::string Block(const std::string& name, const std::string& rows) {
  return fmt::format("${} << EOD\n{}EOD\n", name, rows);
}

std::string PointsWithBars(const std::string& name, const std::string& colour) {
  // gnuplot's own error bars would have a disc of paper behind every point
  return fmt::format("${0} using 1:($2-$3):(0):(2*$3) with vectors nohead linewidth 1.4 linecolor "
                     "rgb '{1}' notitle, ${0} using 1:2 with points pointtype 7 pointsize 0.35 "
                     "linecolor rgb '{1}' notitle",
                     name, colour);
}

Dots::Dots(double left, double right, double bottom, double top, int columns, int rows)
    : left_(left), width_(right - left), bottom_(bottom), height_(top - bottom), columns_(columns),
      rows_(rows) {}

void Dots::Add(double x, double y) {
  const double column = (x - left_) / width_ * columns_;
  const double row = (y - bottom_) / height_ * rows_;
  // written so that what is not a number stays outside
  if (!(column >= 0 && column <= columns_ && row >= 0 && row <= rows_)) return;
  cells_.try_emplace({static_cast<int>(column), static_cast<int>(row)}, x, y);
}

std::string Dots::Rows() const {
  std::string out;
  const double stroke = height_ / rows_ * 0.02;
  for (const auto& [cell, point] : cells_)
    out += fmt::format("{0:.13g} {1:.7g}\n{0:.13g} {2:.7g}\n\n", point.first, point.second,
                       point.second + stroke);
  return out;
}

} // namespace view
