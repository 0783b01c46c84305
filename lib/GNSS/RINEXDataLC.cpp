#include "GNSS/RINEXData.h"

#include "GNSS/GNSSLinCombs.h"
#include "GNSS/Wavelengths.h"

#include <cmath>

namespace {

using Numbers = const long double&;

/// Forms combine(satellite, a, b) in \p table for each record that has both observations.
template <typename Combine>
void Form(const RINEXData& store, const matrix<gnssobs>& a, const matrix<gnssobs>& b,
          matrix<gnssobs>& table, Combine combine) {
  table.Resize(store.nsatall);
  for (long r = 0; r < store.nsatall; ++r) {
    if (a(r).IsNull() || b(r).IsNull()) continue;
    table(r) = combine(store.sat(r), a(r).GetObs(), b(r).GetObs());
  }
}

// Satellites without wavelengths of their own are left with those of the record before.

void SetWavelengthL1(short sat) {
  if (HasWavelengths(sat)) GLC::lamb1 = WavelengthsOf(sat).L1;
}

void SetWavelengths(short sat) {
  if (!HasWavelengths(sat)) return;
  const Wavelengths lambda = WavelengthsOf(sat);
  GLC::lamb1 = lambda.L1;
  GLC::lamb2 = lambda.L2;
}

void SetIonosphereFree(short sat) {
  if (!HasWavelengths(sat)) return;
  const bool isGps = sat < 100;
  GLC::LCion1 = isGps ? GNSSc::LCion1 : GLONASSc::LCion1;
  GLC::LCion2 = isGps ? GNSSc::LCion2 : GLONASSc::LCion2;
}

/// Ionosphere-free code; of GPS with the coefficients that SetIonosphereFree left behind.
long double IonosphereFreeCode(short sat, Numbers code1, Numbers code2) {
  if (sat < 100) return GNSS_P3(code1, code2);
  return sat < 200 ? GNSS_P3R(code1, code2) : 0;
}

/// Records of one epoch.
struct Records {
  long first;
  long end;
};

constexpr double kMillisecond = 299792.458; // [m] of light travel
constexpr int kMaxPairs = 100;              // satellites compared between two epochs

/// Compares the records of two epochs for a jump of the code by whole milliseconds.
/// \returns whether there is one; its size [m], without its sign, in \p jump.
bool FindJump(const RINEXData& store, Records previous, Records current, double& jump) {
  bool found = false;
  double milliseconds = 0;
  int pairs = 0;
  for (long p = previous.first; p < previous.end && pairs < kMaxPairs; ++p) {
    long q = current.first;
    while (q < current.end && store.sat(q) != store.sat(p)) ++q;
    if (q == current.end) continue;
    const long double lambda = WavelengthsOf(store.sat(p)).L1;
    if (std::fabs(lambda) <= kNoWavelength) continue;
    if (store.C1(p).IsNull() || store.L1(p).IsNull() || store.C1(q).IsNull() ||
        store.L1(q).IsNull())
      continue;
    ++pairs;
    const auto dC = static_cast<double>(store.C1(q).GetObs() - store.C1(p).GetObs());
    const auto dL = static_cast<double>(lambda * (store.L1(q).GetObs() - store.L1(p).GetObs()));
    const double v = (dC - dL) / kMillisecond;
    milliseconds = std::round(v);
    if (std::fabs(v) > 0.5 && 100000 * std::fabs(v - milliseconds) < 1) found = true;
  }
  // The last satellite compared tells the size, whether or not it showed the jump itself.
  if (found) jump = kMillisecond * std::fabs(milliseconds);
  return found;
}

void AddToPhase(gnssobs& phase, long double metres, long double wavelength) {
  if (phase.IsNull() || std::fabs(wavelength) <= kNoWavelength) return;
  phase += metres / wavelength;
}

void AddToPhases(RINEXData& store, Records current, double metres) {
  for (long r = current.first; r < current.end; ++r) {
    if (!HasWavelengths(store.sat(r))) continue;
    const Wavelengths lambda = WavelengthsOf(store.sat(r));
    if (store.rhead.iL1) AddToPhase(store.L1(r), metres, lambda.L1);
    if (store.rhead.iL2) AddToPhase(store.L2(r), metres, lambda.L2);
  }
}

void AddToCode(matrix<gnssobs>& code, Records records, long double metres) {
  for (long r = records.first; r < records.end; ++r)
    if (!code(r).IsNull()) code(r) += metres;
}

} // namespace

void RINEXData::SetLC_CLI() {
  if (!rhead.iL1 || !rhead.iC1) return;
  rhead.iCLI = true;
  Form(*this, C1, L1, CLI, [](short s, Numbers code, Numbers phase) {
    SetWavelengthL1(s);
    return GNSS_CLI(code, phase);
  });
}

void RINEXData::SetLC_CL1() {
  if (!rhead.iL1 || !rhead.iC1) return;
  rhead.iCL1 = true;
  Form(*this, C1, L1, CL1, [](short s, Numbers code, Numbers phase) {
    SetWavelengthL1(s);
    return GNSS_CL1(code, phase);
  });
}

void RINEXData::SetLC_PC1() {
  if (!rhead.iC1 || !rhead.iP1) return;
  rhead.iPC1 = true;
  Form(*this, C1, P1, PC1, [](short, Numbers c1, Numbers p1) { return p1 - c1; });
}

void RINEXData::SetLC_PP3() {
  if (!rhead.iP1 || !rhead.iP2) return;
  rhead.iPP3 = true;
  Form(*this, P1, P2, PP3, IonosphereFreeCode);
}

void RINEXData::SetLC_PC3() {
  if (!rhead.iC1 || !rhead.iP2) return;
  rhead.iPC3 = true;
  Form(*this, C1, P2, PC3, IonosphereFreeCode);
}

void RINEXData::SetLC_L3() {
  if (!rhead.iL1 || !rhead.iL2) return;
  rhead.iL3 = true;
  Form(*this, L1, L2, L3, [](short s, Numbers phase1, Numbers phase2) {
    SetWavelengths(s);
    SetIonosphereFree(s);
    return GNSS_L3(phase1, phase2);
  });
}

void RINEXData::SetLC_PC4() {
  if (!rhead.iC1 || !rhead.iP2) return;
  rhead.iPC4 = true;
  Form(*this, C1, P2, PC4, [](short, Numbers c1, Numbers p2) { return GNSS_P4(c1, p2); });
}

void RINEXData::SetLC_PP4() {
  if (!rhead.iP1 || !rhead.iP2) return;
  rhead.iPP4 = true;
  Form(*this, P1, P2, PP4, [](short, Numbers p1, Numbers p2) { return GNSS_P4(p1, p2); });
}

void RINEXData::SetLC_L4() {
  if (!rhead.iL1 || !rhead.iL2) return;
  rhead.iL4 = true;
  Form(*this, L1, L2, L4, [](short s, Numbers phase1, Numbers phase2) {
    SetWavelengths(s);
    return GNSS_L4(phase1, phase2);
  });
}

void RINEXData::SetLC_MW(bool useC1) {
  rhead.iMW = rhead.iL1 && rhead.iL2 && rhead.iP2 && (useC1 ? rhead.iC1 : rhead.iP1);
  if (!rhead.iMW) return;
  const matrix<gnssobs>& code1 = useC1 ? C1 : P1;
  MW.Resize(nsatall);
  for (long r = 0; r < nsatall; ++r) {
    if (L1(r).IsNull() || L2(r).IsNull() || code1(r).IsNull() || P2(r).IsNull()) continue;
    SetWavelengths(sat(r));
    MW(r) = GNSS_MW(L1(r).GetObs(), L2(r).GetObs(), code1(r).GetObs(), P2(r).GetObs());
  }
}

void RINEXData::Corr4ClockError() {
  const long double interval = rhead.GetInterval();
  if (interval == 0 || !std::isfinite(interval)) return;
  Records records{0, 0};
  for (long i = 0; i < nepochall; ++i) {
    records = {records.end, records.end + nsat(i)};
    const long double steps = epoch(i).GetSecond() / interval;
    const long double dt = interval * (std::round(static_cast<double>(steps)) - steps);
    epoch(i) += dt;
    const long double travel = GNSSc::c * dt;
    if (rhead.iC1) AddToCode(C1, records, travel);
    if (rhead.iP1) AddToCode(P1, records, travel);
    if (rhead.iP2) AddToCode(P2, records, travel);
    if (rhead.iC5) AddToCode(C5, records, travel);
  }
}

void RINEXData::CorrMSJumps(long& njumps) {
  njumps = 0;
  if (!rhead.iC1 || !rhead.iL1 || nepochall == 0) return;
  double jump = 0; // [m] held from the last jump on
  Records current{0, nsat(0)};
  for (long i = 1; i < nepochall; ++i) {
    const Records previous = current;
    current = {previous.end, previous.end + nsat(i)};
    if (FindJump(*this, previous, current, jump)) ++njumps;
    if (jump > 0) AddToPhases(*this, current, jump);
  }
}
