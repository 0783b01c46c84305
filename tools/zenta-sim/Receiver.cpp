#include "Receiver.h"
#include <algorithm>
#include <cmath>

namespace sim {

namespace {

enum Kind { kC1, kP1, kP2, kL1, kL2, kC2, kS1, kS2, kD1, kD2, kC5, kL5, kS5 };
constexpr std::array<const char*, 13> kNames = {"C1", "P1", "P2", "L1", "L2", "C2", "S1",
                                                "S2", "D1", "D2", "C5", "L5", "S5"};

} // namespace

/// The noise of all observations of one record, drawn whether they are observed or not, so that
/// another choice of types has the same noise.
struct Receiver::NoiseDraw {
  double c1, p1, p2, l1, l2, c2, c5, l5; ///< [m]
};

Receiver::Receiver(const Scenario& scenario, const std::map<short, SatelliteBias>& biases)
    : scenario_(scenario), biases_(biases) {
  for (const auto& [sat, bias] : biases) channels_.emplace(sat, MakeChannel(sat));
  for (const std::string& type : scenario.types)
    kinds_.push_back(
        static_cast<int>(std::find(kNames.begin(), kNames.end(), type) - kNames.begin()));
}

Receiver::Channel Receiver::MakeChannel(short sat) const {
  const auto index = static_cast<std::uint64_t>(sat);
  Random ambiguities(scenario_.seed, "ambiguities", index);
  Random reflections(scenario_.seed, "multipath", index);
  const Carriers carriers = CarriersOf(sat);
  long n1 = 0, n2 = 0;
  // Away from an L4 of 0, which would count as a missing value.
  while (std::abs(carriers.lambda1 * static_cast<double>(n1) -
                  carriers.lambda2 * static_cast<double>(n2)) < 50) {
    n1 = static_cast<long>(ambiguities.Whole(-5000, 5000));
    n2 = static_cast<long>(ambiguities.Whole(-5000, 5000));
  }
  return {Random(scenario_.seed, "noise", index), Multipath(scenario_.multipath, reflections),
          carriers, n1, n2};
}

double Receiver::PhaseLevel(const View& view) const {
  const Channel& channel = Of(view.sat);
  return channel.carriers.lambda1 * static_cast<double>(channel.n1 + view.slip1) -
         channel.carriers.lambda2 * static_cast<double>(channel.n2 + view.slip2);
}

double Receiver::MultipathOf(int signal, const View& view) const {
  return Of(view.sat).multipath.Value(signal, view.elevation);
}

double Receiver::Doppler(const View& view, double wavelength) const {
  const double clockRate = 1e-6 * scenario_.clockDrift * kLight;
  return -(view.rangeRate + clockRate) / wavelength;
}

/// [m] of the neutral atmosphere.
static double Troposphere(double elevation) {
  return 2.3 / std::sqrt(std::pow(std::sin(elevation), 2) + 0.002);
}

ObsLine Receiver::Observe(const Epoch& epoch, const View& view, const Offsets& offsets,
                          double turns) {
  Channel& channel = channels_.at(view.sat);
  const Carriers& f = channel.carriers;
  const SatelliteBias& bias = biases_.at(view.sat);
  const double sine = std::sin(view.elevation);
  const double codeSigma = scenario_.codeNoise / sine;
  const double phaseSigma = scenario_.PhaseNoise() / sine;
  NoiseDraw n{};
  for (double* code : {&n.c1, &n.p1, &n.p2}) *code = codeSigma * channel.noise.Normal();
  for (double* phase : {&n.l1, &n.l2}) *phase = phaseSigma * channel.noise.Normal();
  for (double* code : {&n.c2, &n.c5}) *code = codeSigma * channel.noise.Normal();
  n.l5 = phaseSigma * channel.noise.Normal();

  const double common = view.sight.range - kLight * view.sight.clock + Troposphere(view.elevation);
  const double code = common + kLight * epoch.clock;
  const double phase = common + kLight * epoch.phaseClock;
  const double mp1 = MultipathOf(0, view), mp2 = MultipathOf(1, view);
  // On GLONASS the program takes off the turns with the wavelengths of GPS.
  const double turns2 = scenario_.windUp == WindUp::kExact
                            ? turns * (f.lambda1 - GpsWindUpPerCycle()) / f.lambda2
                            : turns;
  const bool isGps = !IsGlonass(view.sat);
  const double alpha5 = (kGpsL1 / kGpsL5) * (kGpsL1 / kGpsL5), lambda5 = kLight / kGpsL5;
  const double I = view.slant;

  const auto value = [&](int kind) -> double {
    switch (kind) {
    case kC1:
      return code + f.alpha1 * I + bias.c1 + mp1 + n.c1 + offsets.c1;
    case kP1:
      return code + f.alpha1 * I + bias.p1 + ReceiverP1C1(view.sat, scenario_) + mp1 + n.p1 +
             offsets.p1;
    case kP2:
      return code + f.alpha2 * I + bias.p2 + ReceiverP2C1(view.sat, scenario_) + mp2 + n.p2 +
             offsets.p2;
    case kC2:
      return code + f.alpha2 * I + bias.c2 + ReceiverP2C1(view.sat, scenario_) + mp2 + n.c2;
    case kL1:
      return (phase - f.alpha1 * I + n.l1 + offsets.l1) / f.lambda1 + turns +
             static_cast<double>(channel.n1 + view.slip1);
    case kL2:
      return (phase - f.alpha2 * I + n.l2 + offsets.l2) / f.lambda2 + turns2 +
             static_cast<double>(channel.n2 + view.slip2);
    case kS1:
      return 36 + 15 * sine;
    case kS2:
      return 30 + 16 * sine;
    case kD1:
      return Doppler(view, f.lambda1);
    case kD2:
      return Doppler(view, f.lambda2);
    case kC5:
      return isGps ? code + alpha5 * I + n.c5 : 0;
    case kL5:
      return isGps ? (phase - alpha5 * I + n.l5) / lambda5 + turns : 0;
    default:
      return isGps ? 33 + 16 * sine : 0; // S5
    }
  };

  ObsLine line{view.sat, {}};
  line.fields.reserve(kinds_.size());
  const int strength = std::clamp(static_cast<int>((30 + 16 * sine) / 6), 1, 9);
  for (const int kind : kinds_) {
    const bool isPhase = kind == kL1 || kind == kL2 || kind == kL5;
    line.fields.push_back(
        {value(kind), isPhase && view.lossOfLock ? 1 : 0, isPhase ? strength : 0});
  }
  return line;
}

} // namespace sim
