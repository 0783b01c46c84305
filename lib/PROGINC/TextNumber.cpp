#include "PROGINC/TextNumber.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

double ToDouble(std::string_view text) {
  // strtod needs a terminator that a view does not have.
  char buffer[64];
  double value = 0;
  if (text.size() < sizeof buffer) {
    *std::copy(text.begin(), text.end(), buffer) = '\0';
    value = std::strtod(buffer, nullptr);
  } else {
    value = std::strtod(std::string(text).c_str(), nullptr);
  }
  return std::isfinite(value) ? value : 0.0;
}

int ToInt(std::string_view text) {
  const std::string terminated(text);
  const long value = std::strtol(terminated.c_str(), nullptr, 10);
  return static_cast<int>(
      std::clamp<long>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}
