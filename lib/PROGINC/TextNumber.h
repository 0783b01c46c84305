#ifndef PROGINC_TEXTNUMBER_H
#define PROGINC_TEXTNUMBER_H

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

/// Decimal number at the start of \p text, as atof reads it in the C locale: leading white
/// space is passed over, and the conversion ends at the first character that can't continue
/// the number. Text without a number is 0; so are "nan", "inf" and values beyond the range of
/// double, which no data field means.
double ToDouble(std::string_view text);

/// Whole number at the start of \p text, as atoi reads it; 0 without a number, the nearest
/// limit of int for values beyond it.
int ToInt(std::string_view text);

/// \p x, or 0 where it is not finite: the neutral value of what overflows when it is put together
/// from the numbers of a file.
template <typename T> T FiniteOrZero(T x) { return std::isfinite(x) ? x : T{0}; }

/// As ToDouble in single precision; 0 for values beyond the range of float.
inline float ToFloat(std::string_view text) {
  const double value = ToDouble(text);
  return std::fabs(value) <= std::numeric_limits<float>::max() ? static_cast<float>(value) : 0.0F;
}

/// As ToInt, for a type of fewer bits: the nearest limit of it for values beyond it.
template <typename T> T ToWhole(std::string_view text) {
  using Limits = std::numeric_limits<T>;
  return static_cast<T>(std::clamp<int>(ToInt(text), Limits::min(), Limits::max()));
}

#endif
