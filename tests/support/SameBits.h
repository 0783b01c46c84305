#ifndef SUPPORT_SAMEBITS_H
#define SUPPORT_SAMEBITS_H

#include "matrix/matrix.h"

#include <cmath>

/// Whether all 80 bits agree: value and sign, the sign of zero too; a non-number equals any
/// other. (Comparing memory would compare the padding as well.)
inline bool SameBits(long double x, long double y) {
  if (std::isnan(x) || std::isnan(y)) return std::isnan(x) && std::isnan(y);
  return x == y && std::signbit(x) == std::signbit(y);
}

/// Number of the first element that differs; -1 where none does, -2 for another shape.
inline long FirstDifference(const matrix<long double>& x, const matrix<long double>& y) {
  if (x.NRow() != y.NRow() || x.NCol() != y.NCol()) return -2;
  for (long k = 0; k < x.Length(); ++k)
    if (!SameBits(x(k), y(k))) return k;
  return -1;
}

inline bool SameBits(const matrix<long double>& x, const matrix<long double>& y) {
  return FirstDifference(x, y) == -1;
}

#endif
