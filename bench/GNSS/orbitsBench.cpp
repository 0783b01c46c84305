// Orbits of the records of simulated observations, a day at 30 s and an hour at 1 s:
//   three stages  elevations, eclipses and wind-up, which ask for the same positions, against
//                 elevations alone, on broadcast and on precise orbits,
//   GLONASS       broadcast orbits, against an integration from the record each time,
//   SP3           precise orbits, against every product multiplied out for every node.
//
// Before anything is timed, every position, velocity, clock and warning is compared with those of
// the plain forms, and all that the three stages leave behind with what their plain forms leave.
// Ratios are those of medians of processor times.

#include "ApplyCorrections.h"
#include "Eclipsing.h"
#include "GetInitPos.h"
#include "ParseArgumetns.h"
#include "ReadFiles.h"
#include "Scenario.h"
#include "SetAmbiguities.h"
#include "SetLinCombinations.h"
#include "Simulation.h"
#include "reference/orbits_plain.h"
#include "reference/preparation_plain.h"
#include "support/Captured.h"
#include "support/Medians.h"
#include "support/Ratio.h"
#include "support/SameStore.h"
#include "support/ScratchFolder.h"
#include "support/TinyRun.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Observed {
  short sat;
  mjd t;
};

struct Subject {
  std::string name;
  std::string folder;
  xyz receiver;
  std::vector<Observed> gps;
  std::vector<Observed> glonass;
  GLNbEph broadcast;
  GNSSpEph precise;
};

struct Stages {
  void (*calculateAE)(KorvanC&);
  void (*getEclipsing)(KorvanC&);
  void (*phaseWindUp)(KorvanC&);
};
constexpr Stages kFast = {CalculateAE, GetEclipsing, PhaseWindUp};
constexpr Stages kPlain = {CalculateAE_plain, GetEclipsing_plain, PhaseWindUp_plain};

std::vector<std::string> Orbits(const Subject& subject, bool precise) {
  if (precise)
    return {"-es" + subject.folder + "/simg2830.sp3", "-el" + subject.folder + "/simr2830.sp3"};
  return {"-eg" + subject.folder + "/simu2830.11n", "-er" + subject.folder + "/simu2830.11g"};
}

/// A run up to the wind-up.
std::unique_ptr<TinyRun> Prepare(const Subject& subject, bool precise, const Stages& stages) {
  std::vector<std::string> arguments = {"zenta",
                                        "-r" + subject.folder + "/simu2830.11o",
                                        "-gf" + subject.folder + "/glonass.chn",
                                        "-xREC,ION",
                                        "-lCODE,PHASE",
                                        "-pCOSZ"};
  for (const std::string& orbits : Orbits(subject, precise)) arguments.push_back(orbits);
  std::vector<const char*> argv;
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  auto run = std::make_unique<TinyRun>();
  KorvanC& ctx = run->ctx;
  ParseArgumetns(ctx, static_cast<int>(argv.size()), argv.data());
  CheckArgumetns(ctx);
  SetFiles(ctx);
  ReadFiles(ctx);
  GetReceiverProperties(ctx);
  SetGlonassFrequency(ctx);
  stages.calculateAE(ctx);
  SetLinearCombinations(ctx);
  stages.getEclipsing(ctx);
  SetAmbiguities(ctx);
  stages.phaseWindUp(ctx);
  return run;
}

Subject Simulate(const ScratchFolder& folder, const std::string& name, double interval,
                 double duration) {
  sim::Scenario scenario;
  scenario.folder = folder.Name(name);
  scenario.interval = interval;
  scenario.duration = duration;
  sim::MakeFiles(scenario);
  Subject subject;
  subject.name = name;
  subject.folder = scenario.folder;
  const auto run = Prepare(subject, true, kFast);
  subject.receiver = run->ctx.RecPosFC;
  const RINEXData& store = run->data;
  long k = 0;
  for (long i = 0; i < store.nepochall; ++i)
    for (const long end = k + store.nsat(i); k < end; ++k)
      (store.sat(k) <= 99 ? subject.gps : subject.glonass)
          .push_back({store.sat(k), store.epoch(i)});
  subject.precise = run->gpsPrecise;
  subject.broadcast.SetFile((subject.folder + "/simu2830.11g").c_str());
  subject.broadcast.ReadFile();
  return subject;
}

short Slot(const Observed& o) { return static_cast<short>(o.sat - 100); }
unsigned short Number(const Observed& o) { return static_cast<unsigned short>(o.sat); }

PreciseOrbit_plain PlainPrecise(const Subject& subject) {
  return {subject.precise, subject.precise.GetMJD(1) - subject.precise.GetMJD(0)};
}

/// What one evaluation leaves.
struct Evaluated {
  xyzt pos;
  xyzt vel;
  xyz receiver;
  long double range = 0;
  long double relativity = 0;
  bool isPosition = true;
  bool isClock = true;
};

bool Same(const xyz& a, const xyz& b) {
  return SameBits(a.GetX(), b.GetX()) && SameBits(a.GetY(), b.GetY()) &&
         SameBits(a.GetZ(), b.GetZ());
}
bool Same(const xyzt& a, const xyzt& b) {
  return SameBits(a.GetX(), b.GetX()) && SameBits(a.GetY(), b.GetY()) &&
         SameBits(a.GetZ(), b.GetZ()) && SameBits(a.GetT(), b.GetT());
}
bool Same(const Evaluated& a, const Evaluated& b) {
  return Same(a.pos, b.pos) && Same(a.vel, b.vel) && Same(a.receiver, b.receiver) &&
         SameBits(a.range, b.range) && SameBits(a.relativity, b.relativity) &&
         a.isPosition == b.isPosition && a.isClock == b.isClock;
}

Evaluated Evaluate(GLNbEph& orbit, const Observed& o, const xyz& receiver) {
  Evaluated e;
  e.range = orbit.CalcSatPosition(Slot(o), o.t, o.t, receiver, e.pos, e.vel, 0);
  e.receiver = orbit.ps;
  e.relativity = orbit.Relativity;
  return e;
}
Evaluated Evaluate(GlonassOrbit_plain& orbit, const Observed& o, const xyz& receiver) {
  Evaluated e;
  e.range = orbit.CalcSatPosition(Slot(o), o.t, o.t, receiver, e.pos, e.vel);
  e.receiver = orbit.ps;
  e.relativity = orbit.Relativity;
  return e;
}
template <typename Precise> // GNSSpEph or its plain form
Evaluated Evaluate(Precise& orbit, const Observed& o, const xyz& receiver) {
  Evaluated e;
  e.range = orbit.CalcSatPosition(Number(o), o.t, receiver, e.pos, e.vel);
  e.receiver = orbit.ps;
  e.relativity = orbit.Relativity;
  e.isPosition = orbit.PSisOK;
  e.isClock = orbit.DTisOK;
  return e;
}

template <typename Fast, typename Plain>
bool IsSame(Fast& fast, Plain& plain, const std::vector<Observed>& list, const xyz& receiver) {
  for (const Observed& o : list)
    if (!Same(Evaluate(fast, o, receiver), Evaluate(plain, o, receiver))) return false;
  return true;
}

/// Whether warnings are as many and the same, of epochs up to an hour outside the file too.
bool IsWarnedAlike(const Subject& subject) {
  const auto warnings = [&](auto orbit) {
    const Captured err(std::cerr);
    for (int s = -3600; s < 90000; s += 777) {
      mjd t = subject.precise.GetMJD(0);
      t += static_cast<long double>(s);
      Evaluate(orbit, {subject.precise.GetSatList(0), t}, subject.receiver);
    }
    return err.Text();
  };
  const std::string fast = warnings(subject.precise);
  return !fast.empty() && fast == warnings(PlainPrecise(subject));
}

/// All that the three stages leave behind.
bool IsSame(const TinyRun& a, const TinyRun& b) {
  using samestore::Same;
  return Same(a.ctx.ELV, b.ctx.ELV) && Same(a.ctx.AZM, b.ctx.AZM) && Same(a.ctx.WGHT, b.ctx.WGHT) &&
         FirstDifference(a.data, b.data).empty() && Same(a.data.L4, b.data.L4) &&
         a.ctx.NEclipsSat == b.ctx.NEclipsSat;
}

bool AreSameStages(const Subject& subject, bool precise) {
  const auto run = [&](const Stages& stages, std::string& messages) {
    const Captured out(std::cout);
    const Captured err(std::cerr);
    auto prepared = Prepare(subject, precise, stages);
    messages = out.Text() + err.Text();
    return prepared;
  };
  std::string messages, plainMessages;
  const auto fast = run(kFast, messages);
  const auto plain = run(kPlain, plainMessages);
  return IsSame(*fast, *plain) && messages == plainMessages;
}

/// Compares all with the plain forms. \returns the GLONASS steps per evaluation, 0 for a
/// difference.
double Compare(const Subject& subject) {
  GLNbEph broadcast = subject.broadcast;
  GlonassOrbit_plain plainBroadcast(subject.broadcast);
  GNSSpEph precise = subject.precise;
  PreciseOrbit_plain plainPrecise = PlainPrecise(subject);
  const bool same = IsSame(broadcast, plainBroadcast, subject.glonass, subject.receiver) &&
                    IsSame(precise, plainPrecise, subject.gps, subject.receiver) &&
                    IsWarnedAlike(subject) && AreSameStages(subject, true) &&
                    AreSameStages(subject, false);
  std::printf("%s: %zu GPS and %zu GLONASS records, %s\n", subject.name.c_str(), subject.gps.size(),
              subject.glonass.size(),
              same ? "all as evaluated plainly" : "NOT AS EVALUATED PLAINLY");
  if (!same) return 0;
  return static_cast<double>(broadcast.GetSteps()) /
         static_cast<double>(plainBroadcast.evaluations);
}

// Timed calls write into the same two places: copies of what was just written in 80 bits take as
// long as a pass of the travel time.

void BM_GLONASS(benchmark::State& state, const Subject& subject) {
  xyzt pos, vel;
  for (auto _ : state) {
    GLNbEph orbit = subject.broadcast; // which has kept nothing yet
    for (const Observed& o : subject.glonass)
      orbit.CalcSatPosition(Slot(o), o.t, o.t, subject.receiver, pos, vel, 0);
    benchmark::DoNotOptimize(pos);
  }
}
void BM_GLONASS_plain(benchmark::State& state, const Subject& subject) {
  xyzt pos, vel;
  for (auto _ : state) {
    GlonassOrbit_plain orbit(subject.broadcast);
    for (const Observed& o : subject.glonass)
      orbit.CalcSatPosition(Slot(o), o.t, o.t, subject.receiver, pos, vel);
    benchmark::DoNotOptimize(pos);
  }
}

template <typename Precise>
void EvaluatePrecise(benchmark::State& state, const Subject& subject, Precise orbit) {
  xyzt pos, vel;
  for (auto _ : state) {
    for (const Observed& o : subject.gps)
      orbit.CalcSatPosition(Number(o), o.t, subject.receiver, pos, vel);
    benchmark::DoNotOptimize(pos);
  }
}
void BM_SP3(benchmark::State& state, const Subject& subject) {
  EvaluatePrecise(state, subject, subject.precise);
}
void BM_SP3_plain(benchmark::State& state, const Subject& subject) {
  EvaluatePrecise(state, subject, PlainPrecise(subject));
}

void BM_stages(benchmark::State& state, const Subject& subject, bool precise, bool three) {
  const auto run = Prepare(subject, precise, kFast);
  KorvanC& ctx = run->ctx;
  for (auto _ : state) {
    CalculateAE(ctx);
    if (three) {
      ctx.NEclipsSat = 0;
      GetEclipsing(ctx);
      PhaseWindUp(ctx);
    } else {
      ctx.positions.Clear();
    }
  }
}

void Register(const Subject& subject) {
  const auto add = [&subject](const char* kind, auto&& run) {
    benchmark::RegisterBenchmark((kind + ("/" + subject.name)).c_str(), run)
        ->Unit(benchmark::kMillisecond);
  };
  const auto on = [&subject](auto run) {
    return [&subject, run](benchmark::State& state) { run(state, subject); };
  };
  const auto stages = [&subject](bool precise, bool three) {
    return [&subject, precise, three](benchmark::State& state) {
      BM_stages(state, subject, precise, three);
    };
  };
  add("GLONASS", on(BM_GLONASS));
  add("GLONASS_plain", on(BM_GLONASS_plain));
  add("SP3", on(BM_SP3));
  add("SP3_plain", on(BM_SP3_plain));
  add("broadcast_elevations", stages(false, false));
  add("broadcast_three", stages(false, true));
  add("precise_elevations", stages(true, false));
  add("precise_three", stages(true, true));
}

/// What is asked of one sampling interval.
struct Targets {
  double steps;
  double glonass;
};

void PrintRatios(const Subject& subject, double steps, const Targets& targets,
                 const Medians& medians) {
  const auto ratio = [&](const char* a, const char* b) {
    const std::string day = "/" + subject.name;
    return RatioOf(medians.Of(a + day), medians.Of(b + day));
  };
  const std::string name = "orbits/" + subject.name + "/";
  PrintAtMost(name + "three-stages-broadcast", ratio("broadcast_three", "broadcast_elevations"),
              1.2);
  PrintAtMost(name + "three-stages-SP3", ratio("precise_three", "precise_elevations"), 1.2);
  PrintAtMost(name + "GLONASS-steps-per-evaluation", steps, targets.steps);
  PrintAtLeast(name + "GLONASS", ratio("GLONASS_plain", "GLONASS"), targets.glonass);
  PrintAtLeast(name + "SP3", ratio("SP3_plain", "SP3"), 1.6);
}

} // namespace

int main(int argc, char** argv) {
  const ScratchFolder folder;
  std::filesystem::current_path(folder.Path()); // where the arcs are written
  const Subject day = Simulate(folder, "day-30s", 30, 86400);
  const Subject hour = Simulate(folder, "hour-1s", 1, 3600);
  const double daySteps = Compare(day);
  const double hourSteps = Compare(hour);
  if (daySteps == 0 || hourSteps == 0) return 1;
  Register(day);
  Register(hour);
  Medians medians;
  if (!medians.RunAll(argc, argv)) return 1;
  std::printf("\n");
  PrintRatios(day, daySteps, {1.35, 6}, medians);
  PrintRatios(hour, hourSteps, {1.05, 9}, medians);
}
