#ifndef ZENTA_SIM_IONOSPHERE_H
#define ZENTA_SIM_IONOSPHERE_H

#include "Epochs.h"
#include "Scenario.h"
#include <vector>

namespace sim {

/// The ionosphere's single layer, as the estimator has it.
inline constexpr double kEarthRadius = 6371; ///< [km]
inline constexpr double kShellHeight = 450;  ///< [km]

/// Zenith angle [rad], at the layer, of a ray of elevation \p elevation [rad] at the receiver.
double ShellZenith(double elevation);

/// An interval of the ionosphere: indices of its first and last epoch.
struct Interval {
  long first = 0;
  long last = 0;
};

/// The intervals of a run.
struct IntervalTable {
  std::vector<Interval> intervals;
  /// A remainder shorter than a quarter of an interval had to be joined to the interval before
  /// it: a run on these data with this interval ends with a range report instead of results.
  bool joined = false;
  /// Interval k begins less than 601 s after the end of k - 1, so that the two are constrained to
  /// meet; false for k = 0.
  std::vector<bool> continued;
};

/// Cuts the epochs as the program does: a new interval begins at the first epoch that is more
/// than \p length [s] after the begin of the last one, and behind every gap of more than 601 s;
/// stretches of less than four epochs have none.
IntervalTable CutIntervals(const std::vector<Epoch>& epochs, double length);

/// For each epoch the interval that the program reckons it to: it advances by at most one an
/// epoch, as soon as the last epoch of the current one has passed.
std::vector<long> IntervalOfEpochs(const IntervalTable& table, long epochs);

/// The ionosphere over the station in one interval, in the terms of the report.
struct IonoNode {
  mjd begin;                                  ///< epoch at which the interval begins
  double delay = 0;                           ///< [m] vertical on GPS L1 at the begin
  double rate = 0;                            ///< [m/h]
  double eastGradient = 0, northGradient = 0; ///< [m] per unit of tan z
};

/// Where a ray pierces: the receiver and the direction.
struct Ray {
  double latitude = 0, longitude = 0; ///< [rad] receiver
  double elevation = 0, azimuth = 0;  ///< [rad]
};

/// The true ionosphere.
class Ionosphere {
public:
  /// \param latitude, longitude  [rad] of the station
  Ionosphere(const Scenario& scenario, const EpochTable& epochs, double latitude, double longitude);

  /// Slant delay [m] on GPS L1 at epoch \p i of the table.
  double Slant(long i, const Ray& ray) const;
  /// Step [m] of the slant delay on GPS L1 at epoch \p i, where the model's pieces of two
  /// intervals don't meet: with gradients, and behind a gap. 0 within an interval.
  double Step(long i, const Ray& ray) const;
  /// One node per interval. With the bulge: the delay over the station at the nodes, the slope
  /// between them, and the gradients that a ray 30 degrees off the zenith at the layer sees.
  const std::vector<IonoNode>& Nodes() const { return nodes_; }
  const IntervalTable& Intervals() const { return intervals_; }

  /// Vertical delay [m] of the bulge at latitude and longitude [rad] of the layer.
  double Bulge(double secondsOfDay, double latitude, double longitude) const;

private:
  void MakeModelNodes(const Scenario& scenario);
  void MakeGradients(const Scenario& scenario);
  void MakeBulgeNodes(double latitude, double longitude);
  double BaseLaw(double seconds, double longitude) const;
  double TimeOfNode(std::size_t k) const;
  double ModelSlant(std::size_t k, double seconds, const Ray& ray) const;

  IonoLaw law_;
  double base_, amplitude_;
  const EpochTable& epochs_;
  IntervalTable intervals_;
  std::vector<long> intervalOf_;
  std::vector<IonoNode> nodes_;
  double longitude_;
};

} // namespace sim

#endif
