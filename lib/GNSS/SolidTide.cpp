#include "GNSS/SolidTide.h"

#include "GNSS/TimeConverse.h"

#include <cmath>

namespace {

// Julian centuries of UTC from J2000 at a GPS time.
long double Centuries(const mjd& t) {
  const long double julianDate = 2400000.5L + t.GetMJDay() + t.GetSecond() / 86400;
  return (julianDate - 2451545 - static_cast<long double>(LeapSecond(t)) / 86400) / 36525;
}

// The angle in [0, turn).
long double WithinTurn(long double angle, long double turn) {
  const long double rest = std::fmod(angle, turn);
  if (!(rest < 0)) return rest;
  // A rest too small to be seen beside a full turn would be one.
  return rest + turn < turn ? rest + turn : 0;
}

// [deg] mean obliquity of the ecliptic
long double Obliquity(long double T) { return 23.439291 - 0.0130042 * T; }

} // namespace

long double SolidTide::GSTime(const mjd& t) const {
  const long double T = Centuries(t);
  // [s] of time; 240 of them are a degree
  const long double seconds =
      67310.54841 + 3164400184.812866 * T + 0.093104 * T * T - 6.2e-6 * T * T * T;
  return WithinTurn(seconds * deg2rad / 240, twopi);
}

long double SolidTide::LSTime(const mjd& t, const flh& p) const {
  return WithinTurn(GSTime(t) + p.GetL(), twopi);
}

xyz SolidTide::EarthFixed(const xyz& celestial, const mjd& t) const {
  return celestial.RotateZ(-GSTime(t));
}

void SolidTide::SunPosition(const mjd& t, xyz& unit, long double& dist) const {
  const long double T = Centuries(t);
  const long double L = std::fmod(280.4606184 + 36000.77005361 * T, 360.0L); // mean longitude
  const long double M = WithinTurn((357.5277233 + 35999.05034 * T) * deg2rad, twopi); // anomaly
  const long double lambda =
      deg2rad * (L + 1.914666471 * std::sin(M) + 0.019994643 * std::sin(2 * M));
  const long double eps = deg2rad * Obliquity(T);
  dist = AU * (1.000140612 - 0.016708617 * std::cos(M) - 0.000139589 * std::cos(2 * M));
  unit = EarthFixed(
      xyz(std::cos(lambda), std::cos(eps) * std::sin(lambda), std::sin(eps) * std::sin(lambda)), t);
}

void SolidTide::MoonPosition(const mjd& t, xyz& unit, long double& dist) const {
  const long double T = Centuries(t);
  const auto sine = [](long double degrees) { return std::sin(degrees * deg2rad); };
  const auto cosine = [](long double degrees) { return std::cos(degrees * deg2rad); };
  // clang-format off
  const long double longitude = 218.32 + 481267.8813 * T
      + 6.29 * sine(134.9 + 477198.85 * T)
      - 1.27 * sine(259.2 - 413335.38 * T)
      + 0.66 * sine(235.7 + 890534.23 * T)
      + 0.21 * sine(269.9 + 954397.7 * T)
      - 0.19 * sine(357.5 + 35999.05 * T)
      - 0.11 * sine(186.6 + 966404.05 * T);
  const long double latitude = 5.13 * sine(93.3 + 483202.03 * T)
      + 0.28 * sine(228.2 + 960400.87 * T)
      - 0.28 * sine(318.3 + 6003.18 * T)
      - 0.17 * sine(217.6 - 407332.2 * T);
  const long double parallax = 0.9508
      + 0.0518 * cosine(134.9 + 477198.85 * T)
      + 0.0095 * cosine(259.2 - 413335.38 * T)
      + 0.0078 * cosine(235.7 + 890534.23 * T)
      + 0.0028 * cosine(269.9 + 954397.7 * T);
  // clang-format on
  const long double lambda = std::fmod(longitude * deg2rad, twopi);
  const long double beta = std::fmod(latitude * deg2rad, twopi);
  const long double eps = deg2rad * Obliquity(T);
  dist = RE / std::sin(std::fmod(parallax * deg2rad, twopi));
  unit = EarthFixed(
      xyz(std::cos(beta) * std::cos(lambda),
          std::cos(eps) * std::cos(beta) * std::sin(lambda) - std::sin(eps) * std::sin(beta),
          std::sin(eps) * std::cos(beta) * std::sin(lambda) + std::cos(eps) * std::sin(beta)),
      t);
}

// Displacement by one body: GMr [m] scales it, Rr is the cosine between point and body.
xyz SolidTide::BodyTide(const xyz& unitPoint, const xyz& unitBody, long double GMr,
                        long double Rr) const {
  return GMr * (unitPoint * (3 * Rr * Rr * (h2 / 2 - l2) - h2 / 2) + unitBody * (3 * l2 * Rr));
}

void SolidTide::SolidEarthTide(const mjd& t, const xyz& unitPoint, const long double& radius,
                               xyz& disp) {
  const auto scale = [&radius](long double distance, long double massRatio) {
    const long double ratio = radius / distance;
    return 1000 * radius * ratio * ratio * ratio * massRatio;
  };
  SunPosition(t, UnitVecSun, SunMag);
  MoonPosition(t, UnitVecMoon, MoonMag);
  GMrSun = scale(SunMag, MASS_RATIO_SUN);
  GMrMoon = scale(MoonMag, MASS_RATIO_MOON);
  RrSun = UnitVecSun * unitPoint;
  RrMoon = UnitVecMoon * unitPoint;
  const long double K1 =
      -0.025 * std::sin(RecPos.GetF()) * std::cos(RecPos.GetF()) * std::sin(LSTime(t, RecPos));
  disp = BodyTide(unitPoint, UnitVecSun, GMrSun, RrSun) +
         BodyTide(unitPoint, UnitVecMoon, GMrMoon, RrMoon) + unitPoint * K1;
}

void SolidTide::ECI2ECEFg(const long double& ra, const long double& dec, long double& lon,
                          long double& lat, const mjd& t) const {
  lon = ra - GSTime(t);
  if (std::fabs(lon) >= twopi / 2) lon -= lon > 0 ? twopi : -twopi;
  geoc2geod(dec, lat);
}

void SolidTide::geoc2geod(const long double& geoc, long double& geod) const {
  geod = std::atan(std::tan(geoc) / (1 - e2));
}

void SolidTide::geod2geoc(const long double& geod, long double& geoc) const {
  geoc = std::atan((1 - e2) * std::tan(geod));
}
