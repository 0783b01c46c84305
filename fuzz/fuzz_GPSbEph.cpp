#include "Harness.h"

#include "GNSS/GPSbEph.h"
#include "GNSS/gnssobs.h"

#include <algorithm>
#include <cmath>

namespace {

const xyz kReceiver(4146524.0L, 613138.0L, 4791517.0L);

void Evaluate(GPSbEph& orbits, unsigned short prn, const mjd& t) {
  xyzt position;
  long double groupDelay = 0;
  Ends([&] { orbits.CalcSatPosition(prn, t, t, position, &groupDelay, 1, 0); });
  Ends([&] { orbits.CalcSatPosition(prn, t, t, kReceiver, position, &groupDelay, 1, 0); });
  gnssobs range;
  range = 2.2e7L;
  Ends([&] { orbits.CalcSatPosition(prn, t, t, kReceiver, position, range, &groupDelay, 1, 0); });
}

} // namespace

FUZZ_TARGET(GPSbEph) {
  GPSbEph orbits;
  orbits.SetFile(WriteInput(input));
  orbits.ReadFile();
  for (const long double x : orbits.ghead.alfa) FUZZ_CHECK(std::isfinite(x));
  for (const long double x : orbits.ghead.beta) FUZZ_CHECK(std::isfinite(x));
  FUZZ_CHECK(std::isfinite(orbits.ghead.a0) && std::isfinite(orbits.ghead.a1));
  for (long k = 0; k < orbits.gdata.data.Length(); ++k)
    FUZZ_CHECK(std::isfinite(orbits.gdata.data(k)));
  const long records = std::min<long>(orbits.GetNSat(), 20);
  for (long k = 0; k < records; ++k) {
    mjd t = orbits.GetMJD(k);
    Evaluate(orbits, orbits.gdata.sat(k), t);
    t += 1234.5L;
    Evaluate(orbits, orbits.gdata.sat(k), t);
  }
  Evaluate(orbits, 1, mjd(55844, 3600));
}
