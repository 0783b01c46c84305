#ifndef ZENTA_SIM_RECEIVER_H
#define ZENTA_SIM_RECEIVER_H

#include "Biases.h"
#include "Epochs.h"
#include "Multipath.h"
#include "ObsFile.h"
#include "Random.h"
#include "Signals.h"
#include "Sky.h"
#include <map>
#include <vector>

namespace sim {

/// One satellite in view at one epoch, before any receiver noise.
struct View {
  short sat = 0;
  Sight sight;
  double elevation = 0, azimuth = 0; ///< [rad]
  double rangeRate = 0;              ///< [m/s], only where Doppler is observed
  double slant = 0;                  ///< [m] ionospheric delay on GPS L1
  double windUp = 0;                 ///< [cycles] continuous from epoch to epoch
  bool aligned = false;              ///< with the Sun: the program drops the phases
  bool orbit = true;                 ///< the run has an orbit for it
  bool lossOfLock = false;           ///< a slip begins here and is to be flagged
  long slip1 = 0, slip2 = 0;         ///< [cycles] sum of the slips so far
  double ionoStep = 0;               ///< [m] of L4, sum of the steps of the ionosphere so far
};

/// What one outlier adds [m].
struct Offsets {
  double c1 = 0, p1 = 0, p2 = 0, l1 = 0, l2 = 0;
};

/// The receiver: turns views into observations. Every satellite has its own noise, ambiguities
/// and multipath.
class Receiver {
public:
  Receiver(const Scenario& scenario, const std::map<short, SatelliteBias>& biases);

  /// The fields of a satellite in the order of the scenario's types.
  /// \param turns  [cycles] wind-up in the phases
  ObsLine Observe(const Epoch& epoch, const View& view, const Offsets& offsets, double turns);

  /// [m] L4 of the whole cycles of a satellite's phases, its slips included.
  double PhaseLevel(const View& view) const;
  /// [m] multipath on C1 and P1 (0) or on P2 (1).
  double MultipathOf(int signal, const View& view) const;

private:
  struct Channel {
    Random noise;
    Multipath multipath;
    Carriers carriers;
    long n1, n2; ///< [cycles] initial ambiguities
  };
  struct NoiseDraw;
  Channel MakeChannel(short sat) const;
  const Channel& Of(short sat) const { return channels_.at(sat); }
  double Doppler(const View& view, double wavelength) const;

  const Scenario& scenario_;
  const std::map<short, SatelliteBias>& biases_;
  std::map<short, Channel> channels_;
  std::vector<int> kinds_; ///< index into the known types, per field
};

} // namespace sim

#endif
