#ifndef ZENTA_SIM_LISTFILES_H
#define ZENTA_SIM_LISTFILES_H

#include "Biases.h"
#include "Epochs.h"
#include "Vec3.h"
#include <string>
#include <vector>

namespace sim {

/// Kinds of bias files.
enum class BiasKind { kP1P2, kP1C1, kP2C2 };

/// Text of a monthly bias file in CODE's layout, with a receiver's line behind the satellites'.
std::string BiasFileText(BiasKind kind, const Scenario& scenario,
                         const std::map<short, SatelliteBias>& biases);
/// Receiver list with the receivers of the three classes among others.
std::string ReceiverListText();
/// Name of the listed receiver of a class; the observation header has it.
std::string ReceiverName(Tracking tracking);
/// Channels of the GLONASS slots: one period before 2000 on other channels, one since then.
std::string ChannelListText();
/// Receiver clock corrections, a line per epoch.
std::string ClockFileText(const std::vector<Epoch>& epochs);

/// A station moving at a constant velocity.
struct StationMotion {
  Vec3 position; ///< [m] at `epoch`
  Vec3 velocity; ///< [m/year]
  mjd epoch;
};
/// Coordinate file with the station between two others.
std::string CoordinateFileText(const Scenario& scenario, const StationMotion& station);

} // namespace sim

#endif
