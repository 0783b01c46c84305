#include "Attitude.h"
#include <algorithm>

namespace sim {

bool IsAligned(const Vec3& satellite, const Vec3& sun) {
  static const double kCosine = std::cos(14 * kDegree);
  return std::abs(Dot(Unit(sun - satellite), Unit(satellite))) > kCosine;
}

/// Effective dipole of the crossed dipoles \p x, \p y along the ray \p k; \p sense is -1 for the
/// transmitting side.
static Vec3 Dipole(const Vec3& x, const Vec3& y, const Vec3& k, double sense) {
  return Unit(x - Dot(k, x) * k + sense * Cross(k, y));
}

double WindUpCycles(const Observer& observer, const Vec3& satellite, const Vec3& sun,
                    RaySense sense) {
  const Vec3 toSatellite = Unit(satellite - observer.Where());
  const Vec3 k = sense == RaySense::kToSatellite ? toSatellite : -1.0 * toSatellite;
  const Vec3 z = -1.0 * Unit(satellite);
  const Vec3 y = Cross(z, Unit(sun - satellite));
  const Vec3 sent = Dipole(Cross(y, z), y, k, -1);
  const Vec3 received = Dipole(observer.North(), -1.0 * observer.East(), k, 1);
  const double angle = std::acos(std::clamp(Dot(sent, received), -1.0, 1.0));
  const double side = Dot(k, Cross(sent, received));
  return side > 0 ? angle / (2 * kPi) : side < 0 ? -angle / (2 * kPi) : 0;
}

double Unwrapped(double cycles, double previous) { return cycles - std::round(cycles - previous); }

} // namespace sim
