#ifndef GNSS_TRAVELTIME_H
#define GNSS_TRAVELTIME_H

#include "GNSS/mjd.h"
#include "GNSS/xyz.h"

#include <cmath>

constexpr long double kSignalSpeed = 299792458.0L; ///< [m/s] speed of light
/// A signal under way for longer than a day comes from no satellite.
constexpr long double kLongestTravel = 86400.0L; ///< [s]

/// Sets \p emission to \p t + \p shift [s].
/// \returns false, with \p emission as it was, for a shift that no signal's travel time can be.
inline bool SetEmissionEpoch(const mjd& t, long double shift, mjd& emission) {
  if (!(std::fabs(shift) <= kLongestTravel)) return false;
  emission = t;
  emission += shift;
  return true;
}

/// What the iteration of a travel time ended with.
struct TravelResult {
  long double range = 0; ///< [m] geometric range
  bool settled = true;   ///< before the last pass that is allowed
};

/// Range between a receiver and where the satellite was when it sent the signal.
///
/// \param t         epoch of reception
/// \param rec       receiver [m], Earth-fixed at t
/// \param omega     [rad/s] rotation of the Earth
/// \param most      more passes than these are not settled; one more is made
/// \param emission  receives the epoch of emission
/// \param ps        receives the receiver [m], Earth-fixed at the epoch of emission
/// \param evaluate  gives the satellite [m], Earth-fixed at \p emission
///
/// Passes end when the range moves by no more than 1e-5 m; a range that is not a number ends them
/// at once.
template <typename Evaluate>
TravelResult IterateTravelTime(const mjd& t, const xyz& rec, long double omega, int most,
                               mjd& emission, xyz& ps, Evaluate evaluate) {
  TravelResult result;
  long double tau = -0.075; // [s] the double
  long double change = 1;   // [m]
  int count = 0;
  while (change > 1e-5 && count <= most) {
    if (!SetEmissionEpoch(t, tau, emission)) return {result.range, false};
    const auto& satellite = evaluate();
    ps = rec.RotateZ(omega * -tau);
    result.range = (ps - satellite).GetLength();
    change = std::fabs(result.range + kSignalSpeed * tau);
    tau = -result.range / kSignalSpeed;
    ++count;
  }
  result.settled = count <= most;
  return result;
}

#endif
