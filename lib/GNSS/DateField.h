#ifndef GNSS_DATEFIELD_H
#define GNSS_DATEFIELD_H

#include "PROGINC/TextNumber.h"

#include <limits>
#include <string_view>

/// Whole number of a date at the start of \p text, 0 without one. What does not fit gives the
/// largest number, which no field of a date takes.
inline unsigned short DateField(std::string_view text) {
  constexpr int kLargest = std::numeric_limits<unsigned short>::max();
  const int value = ToInt(text);
  return static_cast<unsigned short>(value < 0 || value > kLargest ? kLargest : value);
}

#endif
