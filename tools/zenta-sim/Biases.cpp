#include "Biases.h"
#include "Constellation.h"
#include "Random.h"
#include "Text.h"
#include "Vec3.h"
#include <algorithm>
#include <vector>

namespace sim {

namespace {

/// Coefficients of the ionosphere-free combination k1 P1 - k2 P2.
struct IonosphereFree {
  double k1, k2;
};

} // namespace

static constexpr IonosphereFree kGps = {1575.42 * 1575.42 / (1575.42 * 1575.42 - 1227.6 * 1227.6),
                                        1227.6 * 1227.6 / (1575.42 * 1575.42 - 1227.6 * 1227.6)};
static constexpr IonosphereFree kGlonass = {81.0 / 32, 49.0 / 32}; // frequency ratio 9 : 7

static constexpr double kMetresPerNs = kLight * 1e-9;

/// [m] P1-P2 of a satellite as the run knows it: from the file, from the navigation file, or not.
static double KnownP1P2(short sat, const SatelliteBias& bias, const Scenario& scenario) {
  const bool fromNavigation = !IsGlonass(sat) && !scenario.precise;
  return scenario.withP1P2 || fromNavigation ? bias.p1p2 * kMetresPerNs : 0;
}

CodeCorrection CorrectionOf(short sat, const SatelliteBias& bias, const Scenario& scenario) {
  const IonosphereFree k = IsGlonass(sat) ? kGlonass : kGps;
  const double D = KnownP1P2(sat, bias, scenario);
  CodeCorrection correction = {k.k2 * D, k.k1 * D};
  if (!scenario.withP1C1 || scenario.tracking == Tracking::kP1P2) return correction;
  const double E = bias.p1c1 * kMetresPerNs;
  correction.c1 += E;
  if (scenario.tracking == Tracking::kC1X2) correction.p2 += E;
  return correction;
}

/// Biases as a satellite sends them: the ionosphere-free P1, P2 has none, and P1-P2 and P1-C1 are
/// those of the files. A cross-correlating receiver's P2 is C1 and the difference P2-P1.
static void SetPhysical(short sat, const Scenario& scenario, SatelliteBias& bias) {
  const IonosphereFree k = IsGlonass(sat) ? kGlonass : kGps;
  const double D = bias.p1p2 * kMetresPerNs, E = bias.p1c1 * kMetresPerNs;
  bias.p1 = -k.k2 * D;
  bias.p2 = -k.k1 * D - (scenario.tracking == Tracking::kC1X2 ? E : 0);
  bias.c1 = bias.p1 - E;
}

static SatelliteBias MakeBias(short sat, const Scenario& scenario) {
  Random random(scenario.seed, "biases", static_cast<std::uint64_t>(sat));
  SatelliteBias bias;
  bias.p1p2 = Rounded(scenario.p1p2Sigma * random.Normal(), 3);
  bias.p1c1 = Rounded(scenario.p1c1Sigma * random.Normal(), 3);
  bias.p2c2 = Rounded(scenario.p2c2Sigma * random.Normal(), 3);
  const CodeCorrection correction = CorrectionOf(sat, bias, scenario);
  if (scenario.p1Bias == P1Bias::kPhysical) {
    SetPhysical(sat, scenario, bias);
  } else {
    bias.c1 = -correction.c1;
    bias.p2 = -correction.p2;
  }
  bias.p1 += scenario.satelliteOffset * random.Normal();
  bias.p2 += scenario.satelliteOffset * random.Normal();
  if (P1StandsForC1(scenario)) bias.p1 = bias.c1;
  bias.c2 = bias.p2 - bias.p2c2 * kMetresPerNs;
  bias.leftP1C1 = bias.p1 - (bias.c1 + correction.c1); // -correction where P1 stands for C1
  bias.leftP2C1 = (bias.p2 + correction.p2) - (bias.c1 + correction.c1);
  return bias;
}

std::map<short, SatelliteBias> MakeBiases(const Scenario& scenario) {
  std::map<short, SatelliteBias> biases;
  for (short prn = 1; prn <= kGpsSatellites; ++prn) biases[prn] = MakeBias(prn, scenario);
  for (short slot = 1; slot <= kGlonassSatellites; ++slot) {
    const short sat = static_cast<short>(100 + slot);
    biases[sat] = MakeBias(sat, scenario);
  }
  return biases;
}

bool P1StandsForC1(const Scenario& scenario) {
  const auto& types = scenario.types;
  return std::find(types.begin(), types.end(), "C1") == types.end();
}

double GroupDelay(const SatelliteBias& bias) { return -kGps.k2 * bias.p1p2 * 1e-9; }

double ReceiverP1C1(short sat, const Scenario& scenario) {
  if (P1StandsForC1(scenario)) return 0;
  return IsGlonass(sat) ? scenario.glonassP1C1 : scenario.receiverP1C1;
}

double ReceiverP2C1(short sat, const Scenario& scenario) {
  return IsGlonass(sat) ? scenario.glonassP2C1 : scenario.receiverP2C1;
}

} // namespace sim
