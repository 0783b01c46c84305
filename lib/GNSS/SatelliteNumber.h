#ifndef GNSS_SATELLITENUMBER_H
#define GNSS_SATELLITENUMBER_H

#include "PROGINC/LineSource.h"

#include <cstddef>
#include <string_view>

/// Satellite number written as a system letter in \p column of \p line, the tens digit (or a
/// blank) and the units digit: GPS its PRN, GLONASS 100 + slot, Galileo 200 + PRN; another letter
/// leaves the bare number. Digits are taken character by character, whatever they are.
inline short SatelliteNumber(std::string_view line, std::size_t column) {
  const char tens = Column(line, column + 1);
  const char units = Column(line, column + 2);
  const int number = (tens == ' ' ? 0 : 10 * (tens - '0')) + (units - '0');
  switch (Column(line, column)) {
  case 'R':
    return static_cast<short>(number + 100);
  case 'E':
    return static_cast<short>(number + 200);
  default:
    return static_cast<short>(number);
  }
}

#endif
