#include "GNSS/SatAzimuthZenit.h"

#include "GNSS/Azimut.h"
#include "GNSS/g_lg.h"
#include "funkcije/KotnePretvorbe.h"

#include <cmath>

namespace {

neu Direction(const xyz& rec, const xyzt& sat, const elipsoid& ell) {
  xyz d = sat - rec;
  d /= d.GetLength();
  return g2lg(d, rec, ell);
}

} // namespace

void SatelliteAzimuthElevation(const xyz& rec, const xyzt& sat, const elipsoid& ell,
                               long double* elv, long double* azi) {
  const neu v = Direction(rec, sat, ell);
  *elv = std::asin(v.GetU() / v.GetLength());
  *azi = Azimuth(0, 0, v.GetE(), v.GetN());
}

void SatelliteAzimuthZenith(const xyz& rec, const xyzt& sat, const elipsoid& ell, long double* zen,
                            long double* azi) {
  constexpr long double pi = anglens::Pi;
  long double elevation = 0;
  SatelliteAzimuthElevation(rec, sat, ell, &elevation, azi);
  *zen = pi / 2 - elevation;
}
