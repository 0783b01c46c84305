#ifndef REFERENCE_NUMBER_PLAIN_H
#define REFERENCE_NUMBER_PLAIN_H

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

/// The number of a field: cut out, converted by the C library, and 0 where it is not finite.
inline double ToDouble_plain(std::string_view field) {
  const double value = std::atof(std::string(field).c_str());
  return std::isfinite(value) ? value : 0.0;
}

#endif
