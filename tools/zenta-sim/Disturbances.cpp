#include "Disturbances.h"
#include "Arcs.h"
#include <cmath>
#include <cstdlib>

namespace sim {

Disturbances::Disturbances(const Scenario& scenario, const EpochTable& epochs,
                           const std::vector<short>& satellites, const InView& inView)
    : scenario_(scenario), epochs_(epochs), satellites_(satellites), inView_(inView) {
  PlaceSlips();
  PlaceOutliers();
}

static double StepOf(const Slip& slip) {
  const Carriers f = CarriersOf(slip.sat);
  return f.lambda1 * static_cast<double>(slip.n1) - f.lambda2 * static_cast<double>(slip.n2);
}

/// False where the satellite slips at this epoch already.
bool Disturbances::Place(const Slip& slip) {
  const long epoch = epochs_.Nearest(slip.time);
  if (!slipsOf_[slip.sat].emplace(epoch, slip).second) return false;
  const double step = StepOf(slip);
  slips_.push_back(
      {slip, epoch, step, std::abs(step) > ArcFinder::LargestStep(scenario_.interval)});
  return true;
}

/// A satellite and an epoch, itself and its neighbours 20 epochs off well in view. A sky without
/// such a place gives none after some thousand trials.
bool Disturbances::RandomPlace(Random& random, long& epoch, short& sat, double& elevation) const {
  const long count = static_cast<long>(epochs_.epochs.size());
  if (count < 50 || satellites_.empty()) return false;
  for (int trial = 0; trial < 10000; ++trial) {
    epoch = static_cast<long>(random.Whole(20, count - 21));
    const auto k = random.Whole(0, static_cast<std::int64_t>(satellites_.size()) - 1);
    sat = satellites_[static_cast<std::size_t>(k)];
    double other = 0;
    if (inView_(sat, epoch - 20, other) && inView_(sat, epoch + 20, other) &&
        inView_(sat, epoch, elevation))
      return true;
  }
  return false;
}

/// Cycles whose L4 step is at least twice what the screening passes.
static Slip RandomSlip(Random& random, short sat, double time, double interval) {
  Slip slip{sat, time, 0, 0};
  while (std::abs(StepOf(slip)) < 2 * ArcFinder::LargestStep(interval)) {
    slip.n1 = static_cast<long>(random.Whole(-9, 9));
    slip.n2 = static_cast<long>(random.Whole(-9, 9));
  }
  return slip;
}

void Disturbances::PlaceSlips() {
  for (const Slip& slip : scenario_.slips)
    if (!Place(slip)) Fail("two slips of " + SatelliteName(slip.sat) + " at one epoch");
  Random random(scenario_.seed, "slips");
  for (long k = 0; k < scenario_.randomSlips;) {
    long epoch = 0;
    short sat = 0;
    double elevation = 0;
    if (!RandomPlace(random, epoch, sat, elevation)) Fail("no place for --slips");
    const double time = epochs_.epochs[static_cast<std::size_t>(epoch)].seconds;
    if (Place(RandomSlip(random, sat, time, scenario_.interval))) ++k;
  }
}

static void AddTo(Offsets& offsets, const Outlier& outlier) {
  double& target = outlier.type == "C1"   ? offsets.c1
                   : outlier.type == "P1" ? offsets.p1
                   : outlier.type == "P2" ? offsets.p2
                   : outlier.type == "L1" ? offsets.l1
                                          : offsets.l2;
  target += outlier.size;
}

void Disturbances::PlaceOutliers() {
  const auto place = [&](const Outlier& outlier, long epoch, double elevation) {
    outliers_.push_back({outlier, epoch, elevation});
    AddTo(offsets_[{epoch, outlier.sat}], outlier);
  };
  for (const Outlier& outlier : scenario_.outliers) {
    const long epoch = epochs_.Nearest(outlier.time);
    double elevation = 0;
    inView_(outlier.sat, epoch, elevation);
    place(outlier, epoch, elevation);
  }
  Random random(scenario_.seed, "outliers");
  for (long k = 0; k < scenario_.randomOutliers;) {
    long epoch = 0;
    short sat = 0;
    double elevation = 0;
    if (!RandomPlace(random, epoch, sat, elevation)) Fail("no place for --outliers");
    if (offsets_.contains({epoch, sat})) continue;
    const double sign = random.Uniform() < 0.5 ? -1 : 1;
    const double time = epochs_.epochs[static_cast<std::size_t>(epoch)].seconds;
    place({sat, time, scenario_.outlierType, sign * scenario_.outlierSize}, epoch, elevation);
    ++k;
  }
}

void Disturbances::Apply(long epoch, View& view, bool& fresh) {
  fresh = false;
  const auto found = slipsOf_.find(view.sat);
  if (found == slipsOf_.end()) return;
  for (const auto& [at, slip] : found->second) {
    if (at > epoch) break;
    view.slip1 += slip.n1;
    view.slip2 += slip.n2;
    fresh = at == epoch;
  }
}

Offsets Disturbances::OffsetsAt(long epoch, short sat) const {
  const auto found = offsets_.find({epoch, sat});
  return found == offsets_.end() ? Offsets{} : found->second;
}

} // namespace sim
