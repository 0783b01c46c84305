#include "Signals.h"
#include "Constellation.h"
#include "Scenario.h"
#include "Vec3.h"

namespace sim {

Carriers CarriersOf(short sat) {
  Carriers c{};
  c.f1 = kGpsL1;
  c.f2 = kGpsL2;
  if (IsGlonass(sat)) {
    const int k = GlonassChannel(static_cast<short>(sat - 100));
    c.f1 = 1602e6 + 562500.0 * k;
    c.f2 = 1246e6 + 437500.0 * k;
  }
  c.lambda1 = kLight / c.f1;
  c.lambda2 = kLight / c.f2;
  c.alpha1 = (kGpsL1 / c.f1) * (kGpsL1 / c.f1);
  c.alpha2 = (kGpsL1 / c.f2) * (kGpsL1 / c.f2);
  return c;
}

double GpsWindUpPerCycle() { return kLight / kGpsL1 - kLight / kGpsL2; }

} // namespace sim
