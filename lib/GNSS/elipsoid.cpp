#include "GNSS/elipsoid.h"

#include "PROGINC/ProgramError.h"

#include <cmath>
#include <iterator>

namespace {

struct Figure {
  double a; // [m]
  double f;
};

// In the order of the codes.
constexpr Figure kFigures[] = {
    {6378137.0, 1 / 298.257222101},
    {6378137.0, 1 / 298.257223563},
    {6378136.0, 1 / 298.257839303},
    {6377397.155, 1 / 299.1528128},
    {6371000.0, 0},
};

} // namespace

void elipsoid::Set(int code) {
  if (code < 0 || code >= static_cast<int>(std::size(kFigures)))
    ProgramError("Zenta", "Improper ELLIPSOID setting!");
  a = kFigures[code].a;
  f = kFigures[code].f;
}

long double elipsoid::GetE() const { return std::sqrt(2 * f - f * f); }
long double elipsoid::GetESQR() const { return 2 * f - f * f; }
long double elipsoid::GetB() const { return a * (1 - f); }
long double elipsoid::GetE2() const { return std::sqrt(GetESQR() / (1 - GetESQR())); }
long double elipsoid::GetF2() const { return f / (1 - f); }
