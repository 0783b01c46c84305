#include "Harness.h"

#include "PROGINC/TextNumber.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

/// As ToDouble says, by the C library.
double ByStrtod(const std::string& text) {
  const double value = std::strtod(text.c_str(), nullptr);
  return std::isfinite(value) ? value : 0;
}

int ByStrtol(const std::string& text) {
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(
      std::clamp<long>(std::strtol(text.c_str(), nullptr, 10), Limits::min(), Limits::max()));
}

bool Same(double a, double b) { return a == b && std::signbit(a) == std::signbit(b); }

} // namespace

FUZZ_TARGET(TextNumber) {
  const std::string text(input.substr(0, input.find('\0')));
  FUZZ_CHECK(Same(ToDouble(text), ByStrtod(text)));
  FUZZ_CHECK(ToInt(text) == ByStrtol(text));
}
