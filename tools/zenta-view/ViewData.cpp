#include "ViewData.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <tuple>

namespace view {

namespace {

using namespace report;

constexpr double kDegree = std::numbers::pi / 180;
constexpr double kUsualSampling = 30; // [s]
constexpr double kTolerance = 0.7;    // [s] of jitter between epochs

/// Smallest step between neighbours of \p epochs; 0 where there are no two.
double SmallestStep(const std::vector<Epoch>& epochs) {
  double smallest = 0;
  for (std::size_t i = 1; i < epochs.size(); ++i) {
    const double step = epochs[i] - epochs[i - 1];
    if (step > 0.01 && (smallest == 0 || step < smallest)) smallest = step;
  }
  return smallest;
}

std::vector<Epoch> EpochsOf(const ViewData& data) {
  std::vector<Epoch> epochs;
  if (data.inputs)
    for (const inputs::Direction& d : data.inputs->directions) epochs.push_back(d.epoch);
  else if (data.residuals)
    for (const ResidualBlock& b : data.residuals->blocks) epochs.push_back(b.epoch);
  else if (data.report.epochs)
    for (const EpochDelay& e : *data.report.epochs) epochs.push_back(e.epoch);
  return epochs;
}

/// An epoch to the millisecond, so that it is found whatever was rounded on its way.
using Key = std::tuple<int, long, Satellite>;
Key KeyOf(const Epoch& t, Satellite s) { return {t.day, std::lround(t.second * 1000), s}; }

/// Joins outliers that follow each other.
class RunBuilder {
public:
  explicit RunBuilder(double sampling) : longestStep_(sampling + kTolerance) {}

  void Add(const Outlier& o, bool byMisclosure) {
    const auto key = std::tuple(o.satellite, o.observable, byMisclosure);
    const auto open = open_.find(key);
    if (open == open_.end() || o.epoch - runs_[open->second].last > longestStep_) {
      open_[key] = runs_.size();
      runs_.push_back({o.satellite, o.observable, byMisclosure, o.epoch, o.epoch, 1, o.value});
      return;
    }
    OutlierRun& run = runs_[open->second];
    run.last = o.epoch;
    ++run.count;
    if (std::fabs(o.value) > std::fabs(run.largest)) run.largest = o.value;
  }
  std::vector<OutlierRun> Runs() const { return runs_; }

private:
  double longestStep_;
  std::vector<OutlierRun> runs_;
  std::map<std::tuple<Satellite, Observable, bool>, std::size_t> open_;
};

} // namespace

double SamplingOf(const ViewData& data) {
  const double step = SmallestStep(EpochsOf(data));
  return step > 0 ? step : kUsualSampling;
}

std::vector<LocatedResidual> Locate(const ViewData& data) {
  std::vector<LocatedResidual> located;
  if (!data.residuals || !data.inputs) return located;
  std::map<Key, const inputs::Direction*> directions;
  for (const inputs::Direction& d : data.inputs->directions)
    directions[KeyOf(d.epoch, d.satellite)] = &d;
  for (const ResidualBlock& b : data.residuals->blocks)
    for (const Residual& r : b.residuals) {
      const auto found = directions.find(KeyOf(b.epoch, r.satellite));
      if (found == directions.end()) continue;
      located.push_back({r, found->second->elevation / kDegree, found->second->azimuth / kDegree});
    }
  return located;
}

std::vector<EclipseRun> EclipsesOf(const ViewData& data) {
  std::vector<EclipseRun> runs;
  if (!data.inputs) return runs;
  const double longestStep = SamplingOf(data) + kTolerance;
  std::map<Satellite, std::size_t> open;
  for (const inputs::Direction& d : data.inputs->directions) {
    if (!d.eclipsed) continue;
    const auto found = open.find(d.satellite);
    if (found != open.end() && d.epoch - runs[found->second].last <= longestStep) {
      runs[found->second].last = d.epoch;
      continue;
    }
    open[d.satellite] = runs.size();
    runs.push_back({d.satellite, d.epoch, d.epoch});
  }
  return runs;
}

std::vector<Slip> SlipsOf(const Report& r, double sampling) {
  std::vector<Slip> slips;
  for (std::size_t j = 1; j < r.ambiguities.size(); ++j) {
    const Ambiguity& before = r.ambiguities[j - 1];
    const Ambiguity& a = r.ambiguities[j];
    if (a.satellite != before.satellite) continue;
    // Ambiguities have their times rounded to the second.
    if (a.first - before.last <= sampling + 1) slips.push_back({a.satellite, a.first});
  }
  return slips;
}

std::vector<OutlierRun> OutlierRunsOf(const Report& r, double sampling) {
  RunBuilder builder(sampling);
  const Adjustment& a = r.adjustment;
  const std::size_t last = a.misclosures.size() - static_cast<std::size_t>(a.iterated.outliers);
  for (std::size_t i = last; i < a.misclosures.size(); ++i) builder.Add(a.misclosures[i], true);
  for (const Outlier& o : a.residuals) builder.Add(o, false);
  return builder.Runs();
}

} // namespace view
