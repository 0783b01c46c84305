#include "Ionosphere.h"
#include "Random.h"
#include "Vec3.h"
#include <algorithm>
#include <cmath>

namespace sim {

static constexpr long double kLongestGap = 601; // [s] inside one chain of intervals

double ShellZenith(double elevation) {
  return std::asin(kEarthRadius / (kEarthRadius + kShellHeight) * std::cos(elevation));
}

/// Intervals of the unbroken stretch of epochs \p first to \p last.
static void CutBlock(const std::vector<Epoch>& epochs, long first, long last, long double length,
                     IntervalTable& table) {
  if (last - first < 3) return;
  const auto time = [&](long i) -> const mjd& { return epochs[static_cast<std::size_t>(i)].used; };
  const std::size_t before = table.intervals.size();
  long begin = first;
  for (long i = first + 1; i <= last; ++i) {
    if (!(time(i) - time(begin) > length)) continue;
    table.intervals.push_back({begin, i - 1});
    begin = i;
  }
  if (time(last) - time(begin) >= 0.25L * length || table.intervals.size() == before) {
    table.joined = table.joined || time(last) - time(begin) < 0.25L * length;
    table.intervals.push_back({begin, last});
    return;
  }
  table.intervals.back().last = last;
  table.joined = true;
}

IntervalTable CutIntervals(const std::vector<Epoch>& epochs, double length) {
  IntervalTable table;
  const long n = static_cast<long>(epochs.size());
  long begin = 0;
  for (long i = 1; i < n - 1; ++i) { // a gap before the very last epoch goes unnoticed
    const auto k = static_cast<std::size_t>(i);
    if (epochs[k].used - epochs[k - 1].used <= kLongestGap) continue;
    CutBlock(epochs, begin, i - 1, length, table);
    begin = i;
  }
  CutBlock(epochs, begin, n - 1, length, table);
  for (std::size_t k = 0; k < table.intervals.size(); ++k)
    table.continued.push_back(
        k > 0 && epochs[static_cast<std::size_t>(table.intervals[k].first)].used -
                         epochs[static_cast<std::size_t>(table.intervals[k - 1].last)].used <
                     kLongestGap);
  return table;
}

std::vector<long> IntervalOfEpochs(const IntervalTable& table, long epochs) {
  std::vector<long> result;
  const long last = static_cast<long>(table.intervals.size()) - 1;
  long k = 0;
  for (long i = 0; i < epochs; ++i) {
    if (k < last && table.intervals[static_cast<std::size_t>(k)].last < i) ++k;
    result.push_back(k);
  }
  return result;
}

Ionosphere::Ionosphere(const Scenario& scenario, const EpochTable& epochs, double latitude,
                       double longitude)
    : law_(scenario.law), base_(scenario.ionoBase), amplitude_(scenario.ionoAmplitude),
      epochs_(epochs), intervals_(CutIntervals(epochs.epochs, scenario.ionoInterval)),
      intervalOf_(IntervalOfEpochs(intervals_, static_cast<long>(epochs.epochs.size()))),
      longitude_(longitude) {
  if (intervals_.intervals.empty()) Fail("too few epochs for an ionosphere interval");
  for (const Interval& interval : intervals_.intervals)
    nodes_.push_back({epochs.epochs[static_cast<std::size_t>(interval.first)].used, 0, 0, 0, 0});
  if (law_ == IonoLaw::kBulge) {
    MakeBulgeNodes(latitude, longitude);
    return;
  }
  MakeModelNodes(scenario);
  if (scenario.gradients != Gradients::kNone) MakeGradients(scenario);
}

double Ionosphere::TimeOfNode(std::size_t k) const {
  const std::size_t n = intervals_.intervals.size();
  const long epoch = k < n ? intervals_.intervals[k].first : intervals_.intervals[n - 1].last;
  return epochs_.epochs[static_cast<std::size_t>(epoch)].seconds;
}

/// Night level and the positive half of a cosine around 14 h local time.
double Ionosphere::BaseLaw(double seconds, double longitude) const {
  const double hourAngle = 2 * kPi * (seconds / kSecondsPerDay - 14.0 / 24) + longitude;
  return base_ + amplitude_ * std::max(0.0, std::cos(hourAngle));
}

void Ionosphere::MakeModelNodes(const Scenario& scenario) {
  Random random(scenario.seed, "ionosphere");
  std::vector<double> delays; // at the nodes, and at the end of the last interval
  for (std::size_t k = 0; k <= nodes_.size(); ++k) {
    const double law = BaseLaw(TimeOfNode(k), longitude_) + scenario.ionoSpread * random.Normal();
    delays.push_back(k < scenario.ionoNodes.size() ? scenario.ionoNodes[k] : law);
  }
  for (std::size_t k = 0; k < nodes_.size(); ++k) {
    nodes_[k].delay = delays[k];
    nodes_[k].rate = (delays[k + 1] - delays[k]) / ((TimeOfNode(k + 1) - TimeOfNode(k)) / 3600);
  }
}

void Ionosphere::MakeGradients(const Scenario& scenario) {
  Random random(scenario.seed, "gradients");
  for (std::size_t k = 0; k < nodes_.size(); ++k) {
    IonoNode& node = nodes_[k];
    node.eastGradient = scenario.gradientSize * random.Normal();
    node.northGradient = scenario.gradientSize * random.Normal();
    const bool constrained = k + 1 < nodes_.size() && intervals_.continued[k + 1];
    if (scenario.gradients == Gradients::kCoupled && constrained)
      node.eastGradient = node.delay + node.rate * (TimeOfNode(k + 1) - TimeOfNode(k)) / 3600;
  }
}

double Ionosphere::Bulge(double seconds, double latitude, double longitude) const {
  // Crests at 15 degrees to both sides of the equator by day, half as high at 45 degrees.
  const double degrees = std::abs(latitude) / kDegree;
  const double crests = 1 + 0.8 * std::exp(-std::pow((degrees - 15) / 12, 2));
  const double decay = std::exp(-std::pow(degrees / 60, 2));
  return base_ + (BaseLaw(seconds, longitude) - base_) * crests * decay;
}

namespace {

struct PiercePoint {
  double latitude, longitude; ///< [rad]
};

} // namespace

static PiercePoint Pierced(const Ray& ray, double shellZenith) {
  const double arc = kPi / 2 - ray.elevation - shellZenith; // seen from the Earth's centre
  const double latitude = std::asin(std::sin(ray.latitude) * std::cos(arc) +
                                    std::cos(ray.latitude) * std::sin(arc) * std::cos(ray.azimuth));
  const double longitude =
      ray.longitude + std::atan2(std::sin(arc) * std::sin(ray.azimuth) * std::cos(ray.latitude),
                                 std::cos(arc) - std::sin(ray.latitude) * std::sin(latitude));
  return {latitude, longitude};
}

/// Elevation at the receiver of a ray that is \p zenith [rad] off the zenith at the layer.
static double ElevationOf(double zenith) {
  return std::acos((kEarthRadius + kShellHeight) / kEarthRadius * std::sin(zenith));
}

void Ionosphere::MakeBulgeNodes(double latitude, double longitude) {
  const double zenith = 30 * kDegree;
  const double elevation = ElevationOf(zenith);
  for (std::size_t k = 0; k < nodes_.size(); ++k) {
    const double t = TimeOfNode(k), next = TimeOfNode(k + 1);
    IonoNode& node = nodes_[k];
    node.delay = Bulge(t, latitude, longitude);
    node.rate = (Bulge(next, latitude, longitude) - node.delay) / ((next - t) / 3600);
    const double middle = (t + next) / 2;
    const auto towards = [&](double azimuth) {
      const PiercePoint p = Pierced({latitude, longitude, elevation, azimuth}, zenith);
      return Bulge(middle, p.latitude, p.longitude);
    };
    node.eastGradient = (towards(kPi / 2) - towards(3 * kPi / 2)) / (2 * std::tan(zenith));
    node.northGradient = (towards(0) - towards(kPi)) / (2 * std::tan(zenith));
  }
}

double Ionosphere::ModelSlant(std::size_t k, double seconds, const Ray& ray) const {
  const IonoNode& node = nodes_[k];
  const double zenith = ShellZenith(ray.elevation);
  const double hours = (seconds - TimeOfNode(k)) / 3600;
  const double gradient =
      node.eastGradient * std::sin(ray.azimuth) + node.northGradient * std::cos(ray.azimuth);
  return (node.delay + node.rate * hours + gradient * std::tan(zenith)) / std::cos(zenith);
}

double Ionosphere::Slant(long i, const Ray& ray) const {
  const double seconds = epochs_.epochs[static_cast<std::size_t>(i)].seconds;
  if (law_ == IonoLaw::kModel)
    return ModelSlant(static_cast<std::size_t>(intervalOf_[static_cast<std::size_t>(i)]), seconds,
                      ray);
  const double zenith = ShellZenith(ray.elevation);
  const PiercePoint p = Pierced(ray, zenith);
  return Bulge(seconds, p.latitude, p.longitude) / std::cos(zenith);
}

double Ionosphere::Step(long i, const Ray& ray) const {
  if (law_ != IonoLaw::kModel || i == 0) return 0;
  const auto epoch = static_cast<std::size_t>(i);
  const long before = intervalOf_[epoch - 1], here = intervalOf_[epoch];
  if (before == here) return 0;
  const double seconds = epochs_.epochs[epoch].seconds;
  return ModelSlant(static_cast<std::size_t>(here), seconds, ray) -
         ModelSlant(static_cast<std::size_t>(before), seconds, ray);
}

} // namespace sim
