#ifndef ZENTA_SIM_BIASES_H
#define ZENTA_SIM_BIASES_H

#include "Scenario.h"
#include <map>
#include <string>

namespace sim {

/// Code biases of one satellite.
struct SatelliteBias {
  // What the bias files tell [ns].
  double p1p2 = 0, p1c1 = 0, p2c2 = 0;
  // What the observations carry [m].
  double c1 = 0, p1 = 0, p2 = 0, c2 = 0;
  // What is left in P1-C1 and P2-C1 [m] after the program's corrections: the DCBs of the
  // satellite that an estimation of satellite biases finds besides the receiver's.
  double leftP1C1 = 0, leftP2C1 = 0;
};

/// The corrections that the program adds to C1 and P2 of a satellite [m].
struct CodeCorrection {
  double c1 = 0, p2 = 0;
};

/// Corrections of the program for a satellite with these file values [ns], see
/// docs/SIMULATOR.md. GPS without the P1-P2 file has the group delay of the navigation file,
/// which tells the same biases, where the run uses that file.
CodeCorrection CorrectionOf(short sat, const SatelliteBias& bias, const Scenario& scenario);

/// Biases of all satellites. Each satellite's come from a stream of its own.
std::map<short, SatelliteBias> MakeBiases(const Scenario& scenario);

/// Broadcast group delay [s] of a GPS satellite: the P1-P2 bias seen from the ionosphere-free
/// clock.
double GroupDelay(const SatelliteBias& bias);

/// The file has no C1, and the program takes P1 in its place: P1 is then made as C1, the receiver
/// has no P1-C1, and in P1-C1 the correction of C1 is left.
bool P1StandsForC1(const Scenario& scenario);

/// Receiver DCBs [m] that P1-C1 and P2-C1 of a satellite carry.
double ReceiverP1C1(short sat, const Scenario& scenario);
double ReceiverP2C1(short sat, const Scenario& scenario);

} // namespace sim

#endif
