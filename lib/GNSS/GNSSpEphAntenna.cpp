#include "GNSS/GNSSpEph.h"

#include "GNSS/SolidTide.h"
#include "GNSS/antexNew.h"
#include "PROGINC/ProgramError.h"

#include <cmath>
#include <cstdio>
#include <iomanip>
#include <iostream>

namespace {

constexpr short kFirstGLONASS = 100;
constexpr short kFirstOther = 200;
constexpr short kGPSL1 = 0; // frequency codes of antex::GetAntennaOffset
constexpr short kGLONASSL1 = 2;

bool HasPosition(const xyzt& p) {
  return std::fabs(p.GetX()) + std::fabs(p.GetY()) + std::fabs(p.GetZ()) >= 1;
}

// [m] Sun in the Earth-fixed frame
xyz SunAt(const mjd& t) {
  xyz unit;
  long double kilometres = 0;
  SolidTide().SunPosition(t, unit, kilometres);
  return unit * (1000 * kilometres);
}

// Offset of the phase centre of the body frame (x, y, z in n, e, u), turned Earth-fixed: z points
// to the Earth, y along the axis of the solar panels, at right angles to the Sun. The x and y
// axes are not brought to length 1: both have the sine of the angle at the satellite between
// Earth and Sun, and vanish where it has no attitude.
xyz PhaseCentre(const neu& offset, const xyz& pos, const mjd& t) {
  const xyz eZ = pos * (-1 / pos.GetLength());
  if (std::fabs(offset.GetN()) + std::fabs(offset.GetE()) < 0.001) return offset.GetU() * eZ;
  const xyz e = (SunAt(t) - pos).GetUnitVector(1);
  const xyz eY = CrossP(eZ, e);
  const xyz eX = CrossP(eY, eZ);
  return offset.GetU() * eZ + offset.GetE() * eY + offset.GetN() * eX;
}

void WarnWithoutOffset(short satellite) {
  char text[100];
  std::snprintf(text, sizeof text,
                "SATELLITE PHASE CENTER OFFSET NOT FOUND IN ANTEX FILE: PRN: %3d", satellite);
  ProgramWarning("Zenta", text);
}

} // namespace

void GNSSpEph::ApplyAntennaOffset(antex& atx, bool verbose) {
  for (long k = 0; k < epoch.NRow(); ++k) {
    const mjd& t = epoch(k);
    if (verbose) std::cout << std::setw(4) << k << ". " << t << std::endl;
    for (long record = nsat * k; record < nsat * (k + 1); ++record) {
      const short satellite = sat(record);
      xyzt& pos = sPos(record);
      if (satellite >= kFirstOther) continue;
      atx.SetSatellite(satellite, t);
      if (atx.GetAtxIndex() == -1) {
        WarnWithoutOffset(satellite);
        continue;
      }
      if (!HasPosition(pos)) continue; // 0 is no position, and must stay so
      neu offset;
      atx.GetAntennaOffset(offset, satellite < kFirstGLONASS ? kGPSL1 : kGLONASSL1);
      const xyz shift = PhaseCentre(offset, xyz(pos.GetX(), pos.GetY(), pos.GetZ()), t);
      pos += xyzt(shift.GetX(), shift.GetY(), shift.GetZ(), 0);
    }
  }
}
