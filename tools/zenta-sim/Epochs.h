#ifndef ZENTA_SIM_EPOCHS_H
#define ZENTA_SIM_EPOCHS_H

#include "GNSS/mjd.h"
#include "Scenario.h"
#include <vector>

namespace sim {

/// One epoch of observation.
struct Epoch {
  mjd tag;                ///< the receiver's time, on the epoch line
  mjd used;               ///< the time that the program evaluates: less the clock file's correction
  double seconds = 0;     ///< [s] `used` since midnight of the first day
  double trueSeconds = 0; ///< [s] the instant of observation in GPS time, likewise
  double clock = 0;       ///< [s] receiver clock less GPS time, with its jumps: in codes and files
  double phaseClock = 0;  ///< [s] the same without the jumps: in the phases
  bool afterGap = false;  ///< epochs are missing before this one
};

/// Jumps of the receiver clock by a millisecond.
struct ClockJump {
  long epoch = 0;
  double step = 0; ///< [s]
};

/// All epochs of a scenario.
struct EpochTable {
  unsigned int day0 = 0; ///< MJD of the first day
  std::vector<Epoch> epochs;
  std::vector<ClockJump> jumps;

  /// Index of the epoch nearest to \p seconds since midnight of the first day.
  long Nearest(double seconds) const;
};

EpochTable MakeEpochs(const Scenario& scenario);

/// The receiver clock correction [microseconds] as the clock file tells it.
double ClockFileValue(const Epoch& epoch);

} // namespace sim

#endif
