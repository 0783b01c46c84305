#ifndef FUNKCIJE_POLMERIUKRIVLJENOSTI_H
#define FUNKCIJE_POLMERIUKRIVLJENOSTI_H

/// Radius of curvature of the ellipsoid in the prime vertical, a / sqrt(1 - e2 sin2 phi).
///
/// \param phi  [rad] geodetic latitude
/// \param a    [m] semi-major axis
/// \param e    first eccentricity
/// \returns [m]
long double PolmerN(long double phi, long double a, long double e);

#endif
