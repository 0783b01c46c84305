#include "GNSS/xyz_flh.h"

#include "funkcije/KotnePretvorbe.h"
#include "funkcije/PolmeriUkrivljenosti.h"

#include <cmath>
#include <limits>

namespace {

constexpr long double kPi = anglens::Pi;
constexpr long double kTolerance = 1e-14; // [rad]; [m] is added to it where the height counts
// Points that settle do so in 10 passes at the Earth's surface; the slowest known, 40 km from
// its centre, needs 23000.
constexpr long kMostPasses = 100000;

enum class StopOn { Latitude, LatitudeAndHeight };

struct Meridian {
  long double f; // [rad] latitude
  long double h; // [m] height
};

bool operator==(const Meridian& a, const Meridian& b) { return a.f == b.f && a.h == b.h; }

// atan by hand: atan2 would give +pi where -pi is wanted.
long double Longitude(long double x, long double y) {
  const long double l = std::atan(y / x);
  if (!(x < 0)) return l;
  return y > 0 ? l + kPi : l - kPi;
}

Meridian Pass(const Meridian& from, long double p, long double z, long double a, long double e) {
  const long double N = PolmerN(from.f, a, e);
  const long double h = p / std::cos(from.f) - N;
  return {std::atan(z / (p * (1 - N * e * e / (N + h)))), h};
}

// Height and latitude of a point p [m] from the axis and z [m] above the equator.
//
// Where the passes come back to where they were, they would go round for ever. At the Earth's
// surface this is a height that moves by its last bit, and either value will do; deep inside
// it is a latitude that never settles.
Meridian Settle(long double p, long double z, const elipsoid& ell, StopOn stop) {
  const long double a = ell.GetA();
  const long double e = ell.GetE();
  Meridian now;
  now.f = std::atan(z / ((1 + e) * p * (1 - e)));
  now.h = p / std::cos(now.f) - PolmerN(now.f, a, e);
  Meridian mark = now;
  long double turn = 0; // [rad] last move of the latitude
  for (long pass = 1, nextMark = 2; pass <= kMostPasses; ++pass) {
    const Meridian next = Pass(now, p, z, a, e);
    turn = std::fabs(next.f - now.f);
    const long double move = stop == StopOn::Latitude ? turn : turn + std::fabs(next.h - now.h);
    now = next;
    // Also left by a move that is not a number.
    if (!(move > kTolerance)) return now;
    if (now == mark) break;
    if (pass != nextMark) continue;
    mark = now;
    nextMark *= 2;
  }
  if (turn <= kTolerance) return now;
  return {std::numeric_limits<long double>::quiet_NaN(),
          std::numeric_limits<long double>::quiet_NaN()};
}

} // namespace

xyz flh2xyz(const flh& p, const elipsoid& ell) {
  const long double e = ell.GetE();
  const long double f = p.GetF(), l = p.GetL(), h = p.GetH();
  const long double N = PolmerN(f, ell.GetA(), e);
  return {(N + h) * std::cos(f) * std::cos(l), (N + h) * std::cos(f) * std::sin(l),
          (N * (1 - e * e) + h) * std::sin(f)};
}

xyzt flht2xyzt(const flht& p, const elipsoid& ell) {
  flh position;
  position.Set(p.GetF(), p.GetL(), p.GetH());
  const xyz v = flh2xyz(position, ell);
  return {v.GetX(), v.GetY(), v.GetZ(), p.GetT()};
}

flh xyz2flh(const xyz& p, const elipsoid& ell) {
  const long double fromAxis = std::sqrt(p.GetX() * p.GetX() + p.GetY() * p.GetY());
  const Meridian m = Settle(fromAxis, p.GetZ(), ell, StopOn::Latitude);
  flh position;
  position.Set(m.f, Longitude(p.GetX(), p.GetY()), m.h);
  return position;
}

flht xyzt2flht(const xyzt& p, const elipsoid& ell) {
  const long double fromAxis = std::sqrt(p.GetX() * p.GetX() + p.GetY() * p.GetY());
  const Meridian m = Settle(fromAxis, p.GetZ(), ell, StopOn::LatitudeAndHeight);
  flht position;
  position.Set(m.f, Longitude(p.GetX(), p.GetY()), m.h, p.GetT());
  return position;
}
