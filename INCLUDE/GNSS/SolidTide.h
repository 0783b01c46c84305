#ifndef GNSS_SOLIDTIDE_H
#define GNSS_SOLIDTIDE_H

#include "GNSS/flh.h"
#include "GNSS/mjd.h"
#include "GNSS/xyz.h"

/// Low-precision Sun and Moon in the Earth-fixed frame, sidereal time, and the solid Earth tide.
///
/// Times are GPS time; they are taken back to UTC, which stands for UT1. Precession beyond the
/// mean equinox of date, nutation and polar motion are left out. The Sun is good to about 0.01
/// degree, the Moon to about 0.3 degree. Distances are in kilometres, while the rest of the
/// program works in metres: who needs a position multiplies unit vector, distance and 1000.
/// Coefficients are the double-precision values of the published decimals.
class SolidTide {
public:
  /// Greenwich mean sidereal angle at \p t [rad], 0 <= angle < 2 pi.
  /// Source: Aoki et al. 1982 (IAU 1982), as in Vallado, Fundamentals of Astrodynamics, 3.5.
  long double GSTime(const mjd& t) const;
  /// Local mean sidereal angle at the longitude of \p p [rad], 0 <= angle < 2 pi.
  long double LSTime(const mjd& t, const flh& p) const;

  /// Direction and distance of the Sun.
  /// \param unit  Earth-fixed unit vector
  /// \param dist  [km]
  /// Source: Vallado, algorithm "Sun", from the Astronomical Almanac.
  void SunPosition(const mjd& t, xyz& unit, long double& dist) const;
  /// Direction and distance of the Moon, as for the Sun.
  /// Source: Astronomical Almanac, low-precision formulae for the Moon.
  void MoonPosition(const mjd& t, xyz& unit, long double& dist) const;

  /// Displacement of a point by the tides of degree 2 of Sun and Moon, permanent part included,
  /// with nominal Love numbers, and the radial correction of the K1 tide.
  ///
  /// \param unitPoint  Earth-fixed unit vector to the point
  /// \param radius     geocentric distance of the point [km]
  /// \param disp       displacement [m], Earth-fixed
  /// Latitude and longitude of the K1 correction are those of SetGeodPos; where none was set the
  /// correction is 0.
  /// Source: IERS Standards (1992), chapter 7, displacement of stations.
  void SolidEarthTide(const mjd& t, const xyz& unitPoint, const long double& radius, xyz& disp);

  /// Squared eccentricity of the latitude conversions; 0 leaves latitudes as they are.
  void SetE2(long double value) { e2 = value; }
  /// Geodetic position of the point of SolidEarthTide.
  void SetGeodPos(const flh& p) { RecPos = p; }

private:
  friend struct SolidTidePeer;

  /// Right ascension and declination to longitude, -pi < lon < pi, and geodetic latitude [rad].
  void ECI2ECEFg(const long double& ra, const long double& dec, long double& lon, long double& lat,
                 const mjd& t) const;
  /// Geocentric to geodetic latitude on the ellipsoid [rad].
  void geoc2geod(const long double& geoc, long double& geod) const;
  /// Geodetic to geocentric latitude on the ellipsoid [rad].
  void geod2geoc(const long double& geod, long double& geoc) const;

  xyz EarthFixed(const xyz& celestial, const mjd& t) const;
  xyz BodyTide(const xyz& unitPoint, const xyz& unitBody, long double GMr, long double Rr) const;

  static constexpr long double twopi = 6.283185307179586;
  static constexpr long double deg2rad = 0.017453292519943295; ///< [rad/deg]
  static constexpr long double AU = 149597870.0;               ///< [km] astronomical unit
  static constexpr long double RE = 6378.137;                  ///< [km] Earth's equatorial radius
  static constexpr long double l2 = 0.0852;                    ///< Shida number of degree 2
  static constexpr long double h2 = 0.609;                     ///< Love number of degree 2
  static constexpr long double MASS_RATIO_SUN = 332946.0482;   ///< Sun to Earth
  static constexpr long double MASS_RATIO_MOON = 0.0123000371; ///< Moon to Earth

  long double e2 = 0; ///< squared eccentricity of the latitude conversions
  // Of the last displacement.
  long double GMrSun = 0;  ///< [m] tide scale R (R/D)3 mass ratio
  long double GMrMoon = 0; ///< [m]
  long double RrSun = 0;   ///< cosine between point and Sun
  long double RrMoon = 0;  ///< cosine between point and Moon
  long double SunMag = 0;  ///< [km] distance
  long double MoonMag = 0; ///< [km] distance
  xyz UnitVecSun;          ///< direction, Earth-fixed
  xyz UnitVecMoon;         ///< direction, Earth-fixed
  flh RecPos;              ///< geodetic position of the point
};

#endif
