#include "Harness.h"

#include "GNSS/GNSSpEph.h"
#include "GNSS/gnssobs.h"

#include <algorithm>
#include <cmath>

namespace {

const xyz kReceiver(4146524.0L, 613138.0L, 4791517.0L);

bool IsFinite(const xyzt& p) {
  return std::isfinite(p.GetX()) && std::isfinite(p.GetY()) && std::isfinite(p.GetZ());
}

void Evaluate(GNSSpEph& orbits, unsigned short sat, const mjd& t) {
  xyzt position;
  xyzt velocity;
  Ends([&] {
    orbits.CalcSatPosition(sat, t, position, velocity);
    FUZZ_CHECK(!orbits.PSisOK || (IsFinite(position) && IsFinite(velocity)));
    FUZZ_CHECK(!orbits.DTisOK || std::isfinite(position.GetT()));
  });
  Ends([&] {
    orbits.CalcSatPosition(sat, t, kReceiver, position, velocity);
    FUZZ_CHECK(!orbits.PSisOK || IsFinite(position));
  });
  gnssobs range;
  range = 2.2e7L;
  Ends([&] { orbits.CalcSatPosition(sat, t, kReceiver, position, velocity, range); });
}

} // namespace

FUZZ_TARGET(GNSSpEph) {
  GNSSpEph orbits;
  orbits.SetFile(WriteInput(input));
  orbits.ReadFile();
  for (long k = 0; k < orbits.sPos.Length(); ++k) {
    FUZZ_CHECK(IsFinite(orbits.GetSatPos(k)) && IsFinite(orbits.GetSatPosSig(k)));
    FUZZ_CHECK(std::isfinite(orbits.GetSatPos(k).GetT() + orbits.GetSatPosSig(k).GetT()));
  }
  const long epochs = orbits.GetNEpoch();
  const long satellites = std::min<long>(orbits.GetNSat(), 4);
  for (long i = 0; i < satellites; ++i)
    for (const long k : {0L, epochs / 2, epochs - 1}) {
      if (k < 0 || k >= epochs) continue;
      const auto sat = static_cast<unsigned short>(orbits.GetSatList(i));
      Ends([&] {
        mjd t = orbits.GetMJD(k);
        Evaluate(orbits, sat, t);
        t += 321.5L;
        Evaluate(orbits, sat, t);
      });
    }
  Evaluate(orbits, 1, mjd(55844, 3600));
  Ends([&] {
    orbits.SetNInterpPoints(4);
    Evaluate(orbits, 1, mjd(55844, 3600));
  });
}
