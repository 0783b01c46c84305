#ifndef GNSS_XYZ_FLH_H
#define GNSS_XYZ_FLH_H

#include "GNSS/elipsoid.h"
#include "GNSS/flh.h"
#include "GNSS/xyz.h"

/// Geodetic to Cartesian coordinates in the Earth-centred Earth-fixed frame of \p ell.
///
/// \param p  latitude and longitude [rad], ellipsoidal height [m]; not checked
/// \returns x, y, z [m]
/// Source: Hofmann-Wellenhof and Moritz, Physical Geodesy, 5.6.
xyz flh2xyz(const flh& p, const elipsoid& ell);
/// As above; dt is copied.
xyzt flht2xyzt(const flht& p, const elipsoid& ell);

/// Cartesian to geodetic coordinates (inverse: flh2xyz).
///
/// \param p    Earth-centred Earth-fixed position [m]
/// \param ell  reference ellipsoid: GRS80 for GPS, PZ-90 for GLONASS
/// \returns latitude and longitude [rad], ellipsoidal height [m]. Longitude lies in
///   [-pi, pi]; a point on the negative x axis (y = 0) gets -pi. On the polar axis and at the
///   centre of the Earth latitude and height are not numbers, and so they are for a point deep
///   inside the Earth (up to some 100 km from its centre) whose latitude never settles. The
///   result is not checked; copying it checks it, see flh.
///
/// Iterates until latitude moves by no more than 1e-14 rad (6e-8 m on the ground); the height
/// is that of the latitude before the last move.
/// Source: Hofmann-Wellenhof and Moritz, Physical Geodesy, 5.6.
flh xyz2flh(const xyz& p, const elipsoid& ell);
/// As xyz2flh with dt copied, but iterates until latitude [rad] and height [m] together move
/// by no more than 1e-14: at the Earth's surface, until the height does not move at all.
flht xyzt2flht(const xyzt& p, const elipsoid& ell);

#endif
