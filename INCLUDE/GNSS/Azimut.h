#ifndef GNSS_AZIMUT_H
#define GNSS_AZIMUT_H

/// Plane azimuth from point 1 to point 2: the angle from the second axis (north) towards the
/// first (east).
///
/// \param x1,y1  first and second coordinate of point 1
/// \param x2,y2  first and second coordinate of point 2
/// \returns [rad], 0 <= azimuth < 2 pi up to rounding. A difference below 1e-14 counts as 0;
///   the azimuth between equal points is 0. Differences that are not numbers give not a number.
long double Azimuth(long double x1, long double y1, long double x2, long double y2);

#endif
