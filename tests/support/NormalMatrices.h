#ifndef SUPPORT_NORMALMATRICES_H
#define SUPPORT_NORMALMATRICES_H

#include "matrix/matrix.h"

#include <cmath>
#include <numeric>
#include <optional>
#include <random>
#include <vector>

/// Normal matrices as a day of one receiver makes them.
///
/// Circular GPS and GLONASS orbits over a station at 46 degrees north give passes,
/// elevations and mapping factors. Each pass has an ambiguity (more where its phase slips);
/// code and phase of every epoch couple the receiver or satellite biases and the ambiguity
/// with delay and rate of one ionosphere interval; a border ties each interval to the next.
struct NormalMatrixModel {
  long satellitesGPS = 32;
  long satellitesGLN = 0;
  bool satelliteBiases = false;   ///< two per satellite; otherwise two of the receiver
  long double interval = 3600.0L; ///< [s] of the ionosphere pieces
  long double slipsPerHour = 0;   ///< mean number that cut a pass
  long double span = 86400.0L;    ///< [s] observed
  long double step = 60.0L;       ///< [s] between epochs

  matrix<long double> Make() const;
};

namespace normal_matrix_detail {

constexpr long double kPi = 3.141592653589793238L;
constexpr long double kCutOff = 10 * kPi / 180;
constexpr long double kEarth = 6371000.0L;

struct Orbit {
  long double radius;      ///< [m]
  long double inclination; ///< [rad]
  long double node;        ///< [rad]
  long double argument;    ///< [rad] of latitude at the start
  long double motion;      ///< [rad/s]
};

inline Orbit OrbitOf(long satellite, long satellitesGPS) {
  if (satellite < satellitesGPS) {
    const auto plane = static_cast<long double>(satellite % 6);
    const auto slot = static_cast<long double>(satellite / 6);
    return {26560000.0L, 55 * kPi / 180, plane * kPi / 3, slot * 1.1L + plane * 0.4L,
            2 * kPi / 43082};
  }
  const auto plane = static_cast<long double>((satellite - satellitesGPS) / 8);
  const auto slot = static_cast<long double>((satellite - satellitesGPS) % 8);
  return {25510000.0L, 64.8L * kPi / 180, plane * 2 * kPi / 3 + 0.3L,
          slot * kPi / 4 + plane * kPi / 12, 2 * kPi / 40544};
}

/// Elevation [rad] over the station at time \p t [s].
inline long double Elevation(const Orbit& o, long double t) {
  const long double u = o.argument + o.motion * t;
  const long double node = o.node - 7.2921e-5L * t;
  const long double x = o.radius * (std::cos(u) * std::cos(node) -
                                    std::sin(u) * std::cos(o.inclination) * std::sin(node));
  const long double y = o.radius * (std::cos(u) * std::sin(node) +
                                    std::sin(u) * std::cos(o.inclination) * std::cos(node));
  const long double z = o.radius * std::sin(u) * std::sin(o.inclination);
  const long double latitude = 46 * kPi / 180;
  const long double up = x * std::cos(latitude) + z * std::sin(latitude) - kEarth;
  const long double north = z * std::cos(latitude) - x * std::sin(latitude);
  return std::atan2(up, std::hypot(north, y));
}

/// One observation equation: coefficient a of each unknown.
struct Equation {
  std::vector<long> unknown;
  std::vector<long double> a;
};

inline void Add(matrix<long double>& N, const Equation& row, const Equation& column,
                long double weight) {
  for (std::size_t i = 0; i < row.unknown.size(); ++i)
    for (std::size_t j = 0; j < column.unknown.size(); ++j)
      N(row.unknown[i], column.unknown[j]) += row.a[i] * column.a[j] * weight;
}

} // namespace normal_matrix_detail

inline matrix<long double> NormalMatrixModel::Make() const {
  using namespace normal_matrix_detail;
  const long satellites = satellitesGPS + satellitesGLN;
  const long epochs = std::lround(span / step);
  std::mt19937 random(20111010);
  std::bernoulli_distribution slips(static_cast<double>(slipsPerHour * step / 3600));

  // Elevation of what is in view, and the arc that each epoch of a satellite belongs to.
  struct Sight {
    long double elevation;
    long arc;
  };
  std::vector<std::optional<Sight>> sights(static_cast<std::size_t>(satellites * epochs));
  const auto at = [epochs](long s, long e) { return static_cast<std::size_t>(s * epochs + e); };
  long arcs = 0;
  for (long s = 0; s < satellites; ++s) {
    const Orbit orbit = OrbitOf(s, satellitesGPS);
    bool open = false;
    for (long e = 0; e < epochs; ++e) {
      const long double elevation = Elevation(orbit, static_cast<long double>(e) * step);
      const bool inView = elevation > kCutOff;
      if (inView && (!open || slips(random))) ++arcs;
      if (inView) sights[at(s, e)] = Sight{elevation, arcs - 1};
      open = inView;
    }
  }

  const long biases = satelliteBiases ? 2 * satellites : 2;
  const long intervals = std::lround(span / interval);
  const long ionosphere = biases + arcs;
  const long unknowns = ionosphere + 2 * intervals;
  matrix<long double> N(unknowns + intervals - 1, unknowns + intervals - 1, 0.0L);

  for (long e = 0; e < epochs; ++e) {
    const long double t = static_cast<long double>(e) * step;
    const long piece = std::min(static_cast<long>(t / interval), intervals - 1);
    const long double hours = (t - static_cast<long double>(piece) * interval) / 3600;
    for (long s = 0; s < satellites; ++s) {
      const std::optional<Sight>& sight = sights[at(s, e)];
      if (!sight) continue;
      const long double z = std::asin(6371 / 6821.0L * std::cos(sight->elevation));
      const long double p = std::sin(sight->elevation) * std::sin(sight->elevation);
      const long double ion = (s < satellitesGPS ? -0.6469L : -0.6531L) / std::cos(z);
      const long u = ionosphere + 2 * piece;
      const bool hasBias = satelliteBiases || s < satellitesGPS;
      const long bias = satelliteBiases ? s : 0;
      const long biasesOfAKind = biases / 2;
      Equation c1{{}, {}};
      Equation c2{{u, u + 1}, {ion, hours * ion}};
      const Equation l4{{biases + sight->arc, u, u + 1}, {-1, ion, hours * ion}};
      if (hasBias) {
        c1.unknown.push_back(bias);
        c1.a.push_back(-1);
        c2.unknown.push_back(biasesOfAKind + bias);
        c2.a.push_back(-1);
      }
      Add(N, c1, c1, 2 * p / 3);
      Add(N, c2, c2, 2 * p / 3);
      Add(N, c1, c2, -p / 3);
      Add(N, c2, c1, -p / 3);
      Add(N, l4, l4, p * 10000);
    }
  }
  for (long a = 0; a < unknowns; ++a)
    if (N(a, a) == 0) N(a, a) = 1;
  for (long k = 0; k + 1 < intervals; ++k) {
    const long c = unknowns + k;
    const long u = ionosphere + 2 * k;
    N(c, u) = N(u, c) = 1;
    N(c, u + 1) = N(u + 1, c) = interval / 3600;
    N(c, u + 2) = N(u + 2, c) = -1;
  }
  return N;
}

#endif
