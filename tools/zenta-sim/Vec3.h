#ifndef ZENTA_SIM_VEC3_H
#define ZENTA_SIM_VEC3_H

#include <cmath>

namespace sim {

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kDegree = kPi / 180;    ///< [rad]
inline constexpr double kLight = 299792458.0;   ///< [m/s]
inline constexpr double kSecondsPerDay = 86400; ///< [s]

/// A Cartesian vector in double precision: a metre in 26000 km is kept to 4 nm.
struct Vec3 {
  double x = 0, y = 0, z = 0;
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vec3 operator*(double s, const Vec3& a) { return {s * a.x, s * a.y, s * a.z}; }
inline double Dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vec3 Cross(const Vec3& a, const Vec3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Vec3& a) { return std::sqrt(Dot(a, a)); }
inline Vec3 Unit(const Vec3& a) { return (1 / Length(a)) * a; }
/// \p a turned by \p angle [rad] about the z axis, counter-clockwise seen from its end.
inline Vec3 TurnedZ(const Vec3& a, double angle) {
  const double c = std::cos(angle), s = std::sin(angle);
  return {c * a.x - s * a.y, s * a.x + c * a.y, a.z};
}

} // namespace sim

#endif
