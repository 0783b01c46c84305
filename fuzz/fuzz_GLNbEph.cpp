#include "Harness.h"

#include "GNSS/GLNbEph.h"
#include "GNSS/gnssobs.h"

#include <algorithm>
#include <cmath>

namespace {

const xyz kReceiver(4146524.0L, 613138.0L, 4791517.0L);

void Evaluate(GLNbEph& orbits, short slot, const mjd& t) {
  xyzt position;
  xyzt velocity;
  Ends([&] { orbits.CalcSatPosition(slot, t, t, position, velocity, 1); });
  Ends([&] { orbits.CalcSatPosition(slot, t, t, kReceiver, position, velocity, 1); });
  gnssobs range;
  range = 2.2e7L;
  Ends([&] { orbits.CalcSatPosition(slot, t, t, kReceiver, position, velocity, range, 1); });
}

} // namespace

FUZZ_TARGET(GLNbEph) {
  GLNbEph orbits;
  orbits.SetFile(WriteInput(input));
  orbits.ReadFile();
  FUZZ_CHECK(std::isfinite(orbits.rhead.TauC));
  for (long k = 0; k < orbits.rdata.data.Length(); ++k)
    FUZZ_CHECK(std::isfinite(orbits.rdata.data(k)));
  const long records = std::min<long>(orbits.GetNSat(), 5);
  for (long k = 0; k < records; ++k) {
    mjd t = orbits.GetMJD(k);
    Evaluate(orbits, orbits.rdata.sat(k), t);
    t += 754.5L;
    Evaluate(orbits, orbits.rdata.sat(k), t);
  }
  Evaluate(orbits, 1, mjd(55844, 3600));
}
