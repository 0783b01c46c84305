#ifndef ZENTA_SIM_ATTITUDE_H
#define ZENTA_SIM_ATTITUDE_H

#include "Sky.h"
#include "Vec3.h"

namespace sim {

/// The Sun is within 14 degrees of the line through satellite and Earth's centre, on either side:
/// the attitude of the satellite is not known, and the program drops its phases.
bool IsAligned(const Vec3& satellite, const Vec3& sun);

/// Sense of the unit vector along the ray in the formula of the phase wind-up.
enum class RaySense {
  kToReceiver,  ///< from the satellite: the effect of the antennas
  kToSatellite, ///< from the receiver: what the program reckons with
};

/// Phase wind-up [cycles], -0.5 to 0.5, of a satellite whose panels face the \p sun and whose
/// antenna faces the Earth, at a receiver whose dipoles point north and west.
///
/// The sense of the ray reverses the angle between the effective dipoles and mirrors it at the
/// plane of satellite, receiver and Earth's centre; as far as the local vertical lies in that
/// plane, the two make up for each other. With the ray to the satellite both dipoles vanish at the
/// zenith, where the angle is of no use. Source: Wu, Wu, Hajj, Bertiger and Lichten, Effects of
/// antenna orientation on GPS carrier phase, manuscripta geodaetica 18, 1993.
double WindUpCycles(const Observer& observer, const Vec3& satellite, const Vec3& sun,
                    RaySense sense);

/// \p cycles shifted by whole cycles to lie within half a cycle of \p previous.
double Unwrapped(double cycles, double previous);

} // namespace sim

#endif
