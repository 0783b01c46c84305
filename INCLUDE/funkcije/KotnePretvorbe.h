#ifndef FUNKCIJE_KOTNEPRETVORBE_H
#define FUNKCIJE_KOTNEPRETVORBE_H

#include <cmath>
#include <concepts>
#include <limits>
#include <string>

/// Conversions between radians, degrees and packed angles. A packed angle holds degrees,
/// minutes and seconds in one number D.MMSS: 45.3012 is 45 degrees 30 minutes 12 seconds.
/// T is double or long double; pi is its double-precision value.
namespace anglens {
inline constexpr double Pi = 3.141592653589793;

/// An angle cut into whole degrees, whole minutes and seconds.
template <std::floating_point T> struct DegMinSec {
  int d;
  int m;
  T s;
};

/// \p x rounded down to an int; the nearest limit beyond its range, 0 for not a number.
template <std::floating_point T> int WholePart(T x) {
  if (std::isnan(x)) return 0;
  if (x >= static_cast<T>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
  if (x <= static_cast<T>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
  return static_cast<int>(std::floor(x));
}

/// Cuts the packed angle \p a >= 0.
template <std::floating_point T> DegMinSec<T> SplitPacked(T a) {
  const int d = WholePart(a);
  const int m = WholePart(100 * (a - static_cast<T>(d)));
  return {d, m, 100 * (100 * (a - static_cast<T>(d)) - static_cast<T>(m))};
}
} // namespace anglens

/// Degrees to radians.
template <std::floating_point T> T deg2rad(T x) { return static_cast<T>(anglens::Pi) * (x / 180); }

/// Radians to degrees.
template <std::floating_point T> T rad2deg(T x) { return 180 * x / static_cast<T>(anglens::Pi); }

/// Packed D.MMSS of either sign to radians.
template <std::floating_point T> T dms2rad(T x) {
  const auto [d, m, s] = anglens::SplitPacked(std::fabs(x));
  const T rad = deg2rad(s / 3600 + static_cast<T>(m) / 60 + static_cast<T>(d));
  return x < 0 ? -rad : rad;
}

/// Radians of either sign to packed D.MMSS. Seconds are not rounded: an angle a rounding error
/// below a full minute comes out as 59.99... seconds.
template <std::floating_point T> T rad2dms(T x) {
  const T g = rad2deg(std::fabs(x));
  const int d = anglens::WholePart(g);
  const int m = anglens::WholePart(60 * (g - static_cast<T>(d)));
  const T s = 60 * (60 * (g - static_cast<T>(d)) - static_cast<T>(m));
  const T dms = s / 10000 + static_cast<T>(m) / 100 + static_cast<T>(d);
  return x < 0 ? -dms : dms;
}

/// The packed angle \p value as text: degrees and minutes in three places each, seconds in
/// \p ndec + 4 places with \p ndec decimals. Of a negative angle the degrees carry the sign, so
/// one between -1 and 0 degrees loses it.
std::string dms2dms(long double value, int ndec);

#endif
