#include "GNSS/Azimut.h"

#include "funkcije/KotnePretvorbe.h"

#include <cmath>

static long double ZeroWhenTiny(long double d) { return std::fabs(d) < 1e-14 ? 0 : d; }

long double Azimuth(long double x1, long double y1, long double x2, long double y2) {
  constexpr long double pi = anglens::Pi;
  const long double dx = ZeroWhenTiny(x2 - x1);
  const long double dy = ZeroWhenTiny(y2 - y1);
  if (dy == 0 && dx > 0) return pi / 2;
  if (dy == 0 && dx < 0) return 3 * pi / 2;
  if (dy == 0) return dx;
  const long double angle = std::atan(dx / dy);
  if (dy < 0) return pi + angle;
  return dx < 0 ? 2 * pi + angle : angle;
}
