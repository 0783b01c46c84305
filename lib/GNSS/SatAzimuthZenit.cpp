#include "GNSS/SatAzimuthZenit.h"

#include "GNSS/Azimut.h"
#include "GNSS/xyz_flh.h"
#include "LocalFrame.h"
#include "funkcije/KotnePretvorbe.h"

#include <cmath>

void SatelliteAzimuthElevation(const xyz& rec, const xyz& sat, const LocalFrame& frame,
                               long double* elv, long double* azi) {
  xyz d = sat - rec;
  d /= d.GetLength();
  const neu v = frame.ToLocal(d.GetX(), d.GetY(), d.GetZ());
  *elv = std::asin(v.GetU() / v.GetLength());
  *azi = Azimuth(0, 0, v.GetE(), v.GetN());
}

void SatelliteAzimuthElevation(const xyz& rec, const xyzt& sat, const elipsoid& ell,
                               long double* elv, long double* azi) {
  const xyz position(sat.GetX(), sat.GetY(), sat.GetZ());
  SatelliteAzimuthElevation(rec, position, LocalFrame(xyz2flh(rec, ell)), elv, azi);
}

void SatelliteAzimuthZenith(const xyz& rec, const xyzt& sat, const elipsoid& ell, long double* zen,
                            long double* azi) {
  constexpr long double pi = anglens::Pi;
  long double elevation = 0;
  SatelliteAzimuthElevation(rec, sat, ell, &elevation, azi);
  *zen = pi / 2 - elevation;
}
