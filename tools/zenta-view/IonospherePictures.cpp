#include "Pictures.h"
#include "Script.h"

#include "report/Quantities.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>

namespace view {

namespace {

using namespace report;

constexpr double kBand = 3;         // formal errors to either side
constexpr double kLargestGap = 601; // [s] a larger one parts the curve

std::string Row(const Epoch& t, double value, double sigma, double scale) {
  if (!std::isfinite(value) || !std::isfinite(sigma)) return "\n";
  return fmt::format("{:.3f} {:.6g} {:.6g}\n", PlotTime(t), ToTECU(value),
                     scale * std::fabs(ToTECU(sigma)));
}

/// Where the interval ends in the picture: the data may end within the last one.
Epoch EndWithin(const Report& r, std::size_t i, const Span& span) {
  return std::min(EndOf(r, i), span.last);
}

double HoursOf(const Report& r, std::size_t i, const Span& span) {
  return (EndWithin(r, i, span) - r.intervals[i].first) / 3600;
}

/// The delay along its pieces. A formal error at the end of a piece is that of the next one's
/// start where they join, else that of its own start.
std::string IntervalRows(const Report& r, const Span& span) {
  std::string rows;
  for (std::size_t i = 0; i < r.intervals.size(); ++i) {
    const Interval& p = r.intervals[i];
    const Epoch end = EndWithin(r, i, span);
    const bool joined = i + 1 < r.intervals.size() && r.intervals[i + 1].first == end;
    const double sigmaAtEnd = joined ? r.intervals[i + 1].delay.sigma : p.delay.sigma;
    rows += Row(p.first, p.delay.value, p.delay.sigma, kBand);
    rows += Row(end, p.delay.value + p.rate.value * HoursOf(r, i, span), sigmaAtEnd, kBand);
    // a step between two pieces is not to be joined by a line
    rows += "\n";
  }
  return rows;
}

template <typename Value> std::string EpochRows(const Report& r, Value valueOf) {
  std::string rows;
  const auto& all = *r.epochs;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (i > 0 && all[i].epoch - all[i - 1].epoch > kLargestGap) rows += "\n";
    const Estimate e = valueOf(all[i]);
    rows += Row(all[i].epoch, e.value, e.sigma, 1);
  }
  return rows;
}

/// What a picture shows from lowest to highest [m].
struct Extent {
  double low = std::numeric_limits<double>::infinity();
  double high = -low;
  void Add(double value) {
    if (!std::isfinite(value)) return;
    low = std::min(low, value);
    high = std::max(high, value);
  }
};

/// A second axis in metres of delay beside that in TECU.
std::string MetreAxis(const char* label, const Extent& shown) {
  return fmt::format(
      "set link y2 via y*{0:.8f} inverse y/{0:.8f}\nset y2tics {2:g}\nset format y2 '%g'\n"
      "set border 11\nset rmargin at screen 0.9\n"
      "set offsets 0,0,graph 0.05,graph 0.05\n"
      "set y2label '{1}' textcolor rgb '@ink@'\n",
      kMetresPerTECU, label, RoundStep(shown.low, shown.high));
}

/// Rows of one gradient by interval: middle, value, error; and the steps.
std::string GradientRows(const Report& r, const Span& span, bool east) {
  std::string rows;
  for (std::size_t i = 0; i < r.intervals.size(); ++i) {
    const Interval& p = r.intervals[i];
    const Estimate& g = east ? *p.east : *p.north;
    rows += Row(p.first, g.value, g.sigma, kBand);
    rows += Row(EndWithin(r, i, span), g.value, g.sigma, kBand);
    rows += "\n";
  }
  return rows;
}

} // namespace

std::optional<Picture> DelayPicture(const ViewData& data) {
  const Report& r = data.report;
  const std::optional<Span> span = SpanOf(r);
  if (r.intervals.empty() || !span) return {};
  Picture p;
  p.name = "delay";
  p.title = "Vertical ionospheric delay";
  p.caption = "Line: piece-wise linear delay with a band of three formal errors.";
  if (r.settings.estimatesGradients)
    p.caption += " With gradients, the constraint between two intervals stands on the gradient "
                 "towards east, so that the pieces do not join.";
  p.height = 400;
  Extent shown;
  for (std::size_t i = 0; i < r.intervals.size(); ++i) {
    const Interval& piece = r.intervals[i];
    shown.Add(piece.delay.value);
    shown.Add(piece.delay.value + piece.rate.value * HoursOf(r, i, *span));
  }
  if (r.epochs)
    for (const EpochDelay& e : *r.epochs) shown.Add(e.delay.value);
  p.script = Frame() + TimeAxis(*span) +
             "set ylabel 'vertical delay, TECU' textcolor rgb '@ink@'\n" +
             MetreAxis("m on GPS L1", shown) + Block("line", IntervalRows(r, *span));
  std::string plots;
  if (r.epochs && !r.epochs->empty()) {
    p.caption += " Behind it, the delay of every epoch alone, in a band of one formal error.";
    p.script += Block("epochs", EpochRows(r, [](const EpochDelay& e) { return e.delay; }));
    plots = "$epochs using 1:($2-$3):($2+$3) with filledcurves linecolor rgb '@glonass@' "
            "fill transparent solid 0.3 noborder title 'epoch by epoch', "
            "$epochs using 1:2 with lines linewidth 0.8 linecolor rgb '@glonass@' notitle, ";
  }
  p.script += "plot " + plots +
              "$line using 1:($2-$3):($2+$3) with filledcurves linecolor rgb '@band@' "
              "fill transparent solid 0.6 noborder notitle, "
              "$line using 1:2 with lines linewidth 2 linecolor rgb '@gps@' title 'by interval'\n";
  return p;
}

std::optional<Picture> RatePicture(const ViewData& data) {
  const Report& r = data.report;
  const std::optional<Span> span = SpanOf(r);
  if (r.intervals.empty() || !span) return {};
  std::string steps;
  std::string middles;
  Extent shown;
  for (std::size_t i = 0; i < r.intervals.size(); ++i) {
    const Interval& p = r.intervals[i];
    shown.Add(p.rate.value);
    const double half = (EndWithin(r, i, *span) - p.first) / 2;
    steps += Row(p.first, p.rate.value, p.rate.sigma, kBand);
    steps += Row(EndWithin(r, i, *span), p.rate.value, p.rate.sigma, kBand) + "\n";
    middles += Row({p.first.day, p.first.second + half}, p.rate.value, p.rate.sigma, kBand);
  }
  Picture p;
  p.name = "rate";
  p.title = "Rate of the vertical delay";
  p.caption = "One rate for each interval; bars are three formal errors to either side.";
  p.height = 280;
  p.script = Frame() + TimeAxis(*span) +
             "unset key\nset ylabel 'rate, TECU/h' textcolor rgb '@ink@'\n" +
             MetreAxis("m/h on GPS L1", shown) + Block("steps", steps) + Block("middles", middles) +
             "plot 0 with lines linecolor rgb '@shade@' linewidth 0.8, "
             "$steps using 1:2 with lines linewidth 2 linecolor rgb '@gps@' notitle, " +
             PointsWithBars("middles", "@gps@") + "\n";
  return p;
}

std::optional<Picture> GradientPicture(const ViewData& data) {
  const Report& r = data.report;
  const std::optional<Span> span = SpanOf(r);
  if (r.intervals.empty() || !r.intervals.front().east || !span) return {};
  Picture p;
  p.name = "gradient";
  p.title = "Gradients of the delay";
  p.caption = "By interval with a band of three formal errors, and epoch by epoch behind it; per "
              "unit of tan z, that is per 450 km along the shell.";
  p.height = 480;
  p.script = Frame() + "set multiplot layout 2,1\n";
  for (const bool east : {true, false}) {
    const std::string name = east ? "east" : "north";
    p.script += (east ? BareTimeAxis(*span) : TimeAxis(*span)) + (east ? "" : "unset key\n") +
                PanelLabel("towards " + name + ", TECU") +
                Block(name, GradientRows(r, *span, east));
    std::string plots;
    if (r.epochs && !r.epochs->empty()) {
      p.script +=
          Block(name + "_epochs",
                EpochRows(r, [east](const EpochDelay& e) { return east ? *e.east : *e.north; }));
      plots = fmt::format("${}_epochs using 1:2 with lines linewidth 0.8 linecolor rgb "
                          "'@glonass@' title 'epoch by epoch', ",
                          name);
    }
    p.script += fmt::format("plot 0 with lines linecolor rgb '@shade@' linewidth 0.8 notitle, {}"
                            "${} using 1:($2-$3):($2+$3) with filledcurves linecolor rgb '@band@' "
                            "fill transparent solid 0.6 noborder notitle, "
                            "${} using 1:2 with lines linewidth 2 linecolor rgb '@gps@' title 'by "
                            "interval'\n",
                            plots, name, name);
  }
  p.script += "unset multiplot\n";
  return p;
}

} // namespace view
