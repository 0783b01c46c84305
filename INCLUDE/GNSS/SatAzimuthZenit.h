#ifndef GNSS_SATAZIMUTHZENIT_H
#define GNSS_SATAZIMUTHZENIT_H

#include "GNSS/elipsoid.h"
#include "GNSS/xyz.h"

class LocalFrame;

/// Direction to a satellite in the local frame of a receiver.
///
/// The first output is the zenith angle (or the elevation), the second the azimuth, although
/// the name puts the azimuth first.
/// \param rec  receiver, Earth-fixed [m]; converted to geodetic coordinates at each call
/// \param sat  satellite, Earth-fixed [m]; its dt is ignored
/// \param ell  ellipsoid whose normal is the vertical
/// \param zen  [rad] 0 at the zenith, pi/2 at the horizon
/// \param azi  [rad] from north over east, 0 <= azi < 2 pi; 0 for a satellite within 1e-14 rad
///   of the zenith
/// A receiver on the polar axis, at the centre of the Earth or at the satellite has no direction:
/// both are then not numbers or meaningless.
void SatelliteAzimuthZenith(const xyz& rec, const xyzt& sat, const elipsoid& ell, long double* zen,
                            long double* azi);
/// As above with the elevation \p elv [rad], pi/2 at the zenith, negative below the horizon.
void SatelliteAzimuthElevation(const xyz& rec, const xyzt& sat, const elipsoid& ell,
                               long double* elv, long double* azi);
/// As above with the local frame at \p rec at hand: for many satellites and one receiver.
void SatelliteAzimuthElevation(const xyz& rec, const xyz& sat, const LocalFrame& frame,
                               long double* elv, long double* azi);

#endif
