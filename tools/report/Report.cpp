#include "Report.h"

#include <algorithm>
#include <fmt/format.h>

namespace report {

std::string NameOf(Satellite s) {
  if (IsGPS(s)) return fmt::format("G{:02}", s);
  if (IsGLONASS(s)) return fmt::format("R{:02}", s - 100);
  return {};
}

const char* NameOf(Observable o) {
  switch (o) {
  case Observable::P1C1:
    return "P1-C1";
  case Observable::P2C1:
    return "P2-C1";
  case Observable::L4:
    return "L1-L2";
  }
  return "";
}

Epoch EndOf(const Report& r, std::size_t i) {
  constexpr double kLargestGap = 601; // [s] a larger one parts intervals
  const Epoch& first = r.intervals[i].first;
  const double length = r.settings.interval;
  if (i + 1 < r.intervals.size()) {
    const Epoch& next = r.intervals[i + 1].first;
    if (next - first <= length + kLargestGap) return next;
  }
  return {first.day, first.second + length};
}

std::optional<Span> SpanOf(const Report& r) {
  std::vector<Epoch> all;
  for (std::size_t i = 0; i < r.intervals.size(); ++i) all.push_back(r.intervals[i].first);
  for (const Ambiguity& a : r.ambiguities) {
    all.push_back(a.first);
    all.push_back(a.last);
  }
  if (r.epochs)
    for (const EpochDelay& e : *r.epochs) all.push_back(e.epoch);
  if (all.empty()) return {};
  const auto [first, last] = std::minmax_element(all.begin(), all.end());
  // Arcs and epoch-wise delays reach the last observation; without them the last interval tells.
  if (r.ambiguities.empty() && (!r.epochs || r.epochs->empty()))
    return Span{*first, EndOf(r, r.intervals.size() - 1)};
  return Span{*first, *last};
}

} // namespace report
