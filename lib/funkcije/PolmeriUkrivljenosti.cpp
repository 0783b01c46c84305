#include "funkcije/PolmeriUkrivljenosti.h"

#include <cmath>

long double PolmerN(long double phi, long double a, long double e) {
  const long double es = e * std::sin(phi);
  return a / std::sqrt((1 + es) * (1 - es));
}
