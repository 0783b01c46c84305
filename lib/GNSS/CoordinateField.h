#ifndef GNSS_COORDINATEFIELD_H
#define GNSS_COORDINATEFIELD_H

#include <cmath>
#include <iomanip>
#include <ostream>

/// Two components of coordinates are the same.
inline bool SameComponent(long double a, long double b) { return std::fabs(a - b) < 1e-14; }

/// One component on a stream in fixed notation.
inline void WriteField(std::ostream& out, long double value, int width, int decimals) {
  out << std::setw(width) << std::setprecision(decimals) << value;
}

#endif
