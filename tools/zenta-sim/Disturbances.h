#ifndef ZENTA_SIM_DISTURBANCES_H
#define ZENTA_SIM_DISTURBANCES_H

#include "Receiver.h"
#include "Truth.h"
#include <functional>
#include <map>

namespace sim {

/// Slips and outliers by epoch and satellite: those that the scenario names and the random ones.
class Disturbances {
public:
  /// Tells whether a satellite is well in view, its phases kept, at an epoch, and its elevation.
  using InView = std::function<bool(short sat, long epoch, double& elevation)>;

  /// \param satellites  those that random disturbances may befall
  Disturbances(const Scenario& scenario, const EpochTable& epochs,
               const std::vector<short>& satellites, const InView& inView);

  /// Slips of \p sat [cycles] summed up to and including \p epoch; epochs must not go back.
  /// \p fresh: one begins at this epoch.
  void Apply(long epoch, View& view, bool& fresh);
  /// What the outliers add to the satellite's observations at the epoch.
  Offsets OffsetsAt(long epoch, short sat) const;

  const std::vector<PlacedSlip>& Slips() const { return slips_; }
  const std::vector<PlacedOutlier>& Outliers() const { return outliers_; }

private:
  void PlaceSlips();
  void PlaceOutliers();
  bool Place(const Slip& slip);
  bool RandomPlace(Random& random, long& epoch, short& sat, double& elevation) const;

  const Scenario& scenario_;
  const EpochTable& epochs_;
  const std::vector<short>& satellites_;
  const InView& inView_;
  std::vector<PlacedSlip> slips_;
  std::vector<PlacedOutlier> outliers_;
  std::map<short, std::map<long, Slip>> slipsOf_; ///< by satellite and epoch
  std::map<std::pair<long, short>, Offsets> offsets_;
};

} // namespace sim

#endif
