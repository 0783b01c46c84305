#include "funkcije/KotnePretvorbe.h"

#include <algorithm>
#include <cstdio>

std::string dms2dms(long double value, int ndec) {
  const auto [d, m, s] = anglens::SplitPacked(std::fabs(value));
  const int decimals = std::clamp(ndec, 0, 100);
  char text[400];
  std::snprintf(text, sizeof text, "%3d%3d%*.*f", value < 0 ? -d : d, m, decimals + 4, decimals,
                static_cast<double>(s));
  return text;
}
