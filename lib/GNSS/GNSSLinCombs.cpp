#include "GNSS/GNSSLinCombs.h"

namespace {

// The formulas, once for numbers and once for gnssobs, whose operators add the rule of the
// missing value: it is applied to the scaled operands.

template <typename T> T IonosphereFreePhase(const T& L1, const T& L2) {
  return GLC::LCion1 * GLC::lamb1 * L1 - GLC::LCion2 * GLC::lamb2 * L2;
}
template <typename T> T IonosphereFreeCode(const T& P1, const T& P2) {
  return GLC::LCion1 * P1 - GLC::LCion2 * P2;
}
template <typename T> T GeometryFreePhase(const T& L1, const T& L2) {
  return GLC::lamb1 * L1 - GLC::lamb2 * L2;
}
template <typename T> T WideLanePhase(const T& L1, const T& L2) {
  return GLC::LCwl1 * GLC::lamb1 * L1 - GLC::LCwl2 * GLC::lamb2 * L2;
}
template <typename T> T NarrowLanePhase(const T& L1, const T& L2) {
  return GLC::LCnl1 * GLC::lamb1 * L1 + GLC::LCnl2 * GLC::lamb2 * L2;
}
template <typename T> T NarrowLaneCode(const T& P1, const T& P2) {
  return GLC::LCnl1 * P1 + GLC::LCnl2 * P2;
}

} // namespace

void GLONASSc::SetFrequency(long double k, short i) {
  freq(i, 0) = freq10 + dfreq10 * k;
  freq(i, 1) = freq20 + dfreq20 * k;
  const long double lamb1 = c / freq(i, 0);
  const long double lamb2 = c / freq(i, 1);
  lamb(i, 0) = lamb1;
  lamb(i, 1) = lamb2;
  lambWL(i) = lamb1 * lamb2 / (lamb2 - lamb1);
  lambNL(i) = lamb1 * lamb2 / (lamb1 + lamb2);
  for (long j = 0; j < 2; ++j) {
    const long double ratio = GNSSc::freq1 / freq(i, j);
    alphaG(i, j) = ratio * ratio;
  }
}

long double GNSS_L3(const long double& L1, const long double& L2) {
  return IonosphereFreePhase(L1, L2);
}
gnssobs GNSS_L3(const gnssobs& L1, const gnssobs& L2) { return IonosphereFreePhase(L1, L2); }

long double GNSS_P3(const long double& P1, const long double& P2) {
  return IonosphereFreeCode(P1, P2);
}
gnssobs GNSS_P3(const gnssobs& P1, const gnssobs& P2) { return IonosphereFreeCode(P1, P2); }

long double GNSS_P3R(const long double& P1, const long double& P2) {
  return GLONASSc::LCion1 * P1 - GLONASSc::LCion2 * P2;
}

long double GNSS_L4(const long double& L1, const long double& L2) {
  return GeometryFreePhase(L1, L2);
}
gnssobs GNSS_L4(const gnssobs& L1, const gnssobs& L2) { return GeometryFreePhase(L1, L2); }

long double GNSS_P4(const long double& P1, const long double& P2) { return P2 - P1; }
gnssobs GNSS_P4(const gnssobs& P1, const gnssobs& P2) { return P2 - P1; }

long double GNSS_L5(const long double& L1, const long double& L2) { return WideLanePhase(L1, L2); }
gnssobs GNSS_L5(const gnssobs& L1, const gnssobs& L2) { return WideLanePhase(L1, L2); }

long double GNSS_NLL(const long double& L1, const long double& L2) {
  return NarrowLanePhase(L1, L2);
}
gnssobs GNSS_NLL(const gnssobs& L1, const gnssobs& L2) { return NarrowLanePhase(L1, L2); }

long double GNSS_NLP(const long double& P1, const long double& P2) {
  return NarrowLaneCode(P1, P2);
}
gnssobs GNSS_NLP(const gnssobs& P1, const gnssobs& P2) { return NarrowLaneCode(P1, P2); }

long double GNSS_MW(const long double& L1, const long double& L2, const long double& P1,
                    const long double& P2) {
  return GNSS_L5(L1, L2) - GNSS_NLP(P1, P2);
}
gnssobs GNSS_MW(const gnssobs& L1, const gnssobs& L2, const gnssobs& P1, const gnssobs& P2) {
  return GNSS_L5(L1, L2) - GNSS_NLP(P1, P2);
}

long double GNSS_CL1(const long double& C1, const long double& L1) { return C1 - GLC::lamb1 * L1; }

long double GNSS_CLI(const long double& C1, const long double& L1) {
  return C1 / 2 + GLC::lamb1 * L1 / 2;
}
