#include "Sun.h"
#include "GNSS/TimeConverse.h"

namespace sim {

/// Julian centuries of UTC from J2000.
static double Centuries(const mjd& t) {
  const long double days = static_cast<long double>(t.GetMJDay()) - 51544.5L +
                           (t.GetSecond() - LeapSecond(t)) / 86400.0L;
  return static_cast<double>(days / 36525.0L);
}

/// Greenwich mean sidereal angle [rad].
static double SiderealAngle(double T) {
  const double seconds =
      67310.54841 + (876600.0 * 3600 + 8640184.812866) * T + 0.093104 * T * T - 6.2e-6 * T * T * T;
  return std::fmod(seconds / 240 * kDegree, 2 * kPi);
}

/// From ecliptic longitude and latitude [rad] of date to the Earth-fixed frame.
static Vec3 EarthFixed(double lambda, double beta, double distance, double T) {
  const double epsilon = (23.439291 - 0.0130042 * T) * kDegree;
  const Vec3 ecliptic = {std::cos(beta) * std::cos(lambda), std::cos(beta) * std::sin(lambda),
                         std::sin(beta)};
  const Vec3 equatorial = {ecliptic.x,
                           std::cos(epsilon) * ecliptic.y - std::sin(epsilon) * ecliptic.z,
                           std::sin(epsilon) * ecliptic.y + std::cos(epsilon) * ecliptic.z};
  return TurnedZ(distance * equatorial, -SiderealAngle(T));
}

Vec3 SunPosition(const mjd& t) {
  const double T = Centuries(t);
  const double mean = std::fmod(280.4606184 + 36000.77005361 * T, 360);
  const double M = std::fmod(357.5277233 + 35999.05034 * T, 360) * kDegree;
  const double lambda =
      (mean + 1.914666471 * std::sin(M) + 0.019994643 * std::sin(2 * M)) * kDegree;
  const double astronomicalUnits =
      1.000140612 - 0.016708617 * std::cos(M) - 0.000139589 * std::cos(2 * M);
  return EarthFixed(lambda, 0, astronomicalUnits * 149597870e3, T);
}

Vec3 MoonPosition(const mjd& t) {
  const double T = Centuries(t);
  const double M = (134.9 + 477198.85 * T) * kDegree;
  const double F = (93.3 + 483202.03 * T) * kDegree;
  const double lambda = (218.32 + 481267.8813 * T + 6.29 * std::sin(M)) * kDegree;
  const double beta = 5.13 * std::sin(F) * kDegree;
  return EarthFixed(lambda, beta, 385000e3 * (1 - 0.0545 * std::cos(M)), T);
}

} // namespace sim
