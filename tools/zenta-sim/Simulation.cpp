#include "Simulation.h"
#include "Arcs.h"
#include "Attitude.h"
#include "Biases.h"
#include "Constellation.h"
#include "Disturbances.h"
#include "Epochs.h"
#include "GNSS/TimeConverse.h"
#include "GNSS/g_lg.h"
#include "GNSS/xyz_flh.h"
#include "Ionosphere.h"
#include "ListFiles.h"
#include "Multipath.h"
#include "NavFiles.h"
#include "ObsFile.h"
#include "Progress.h"
#include "Receiver.h"
#include "Sky.h"
#include "Sp3File.h"
#include "Sun.h"
#include "Text.h"
#include "Truth.h"
#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

namespace sim {

namespace {

/// Names of the files that a set consists of.
class FileNames {
public:
  FileNames(const Scenario& scenario) : folder_(scenario.folder) {
    const ymdhms date(scenario.year, scenario.month, scenario.day, 0, 0, 0);
    session_ = fmt::format("{:03}0", date.GetDayOfYear());
    year_ = fmt::format("{:02}", scenario.year % 100);
    month_ = fmt::format("{:02}", scenario.month);
  }
  std::string Rinex(char kind) const { return In("simu" + session_ + "." + year_ + kind); }
  std::string Sp3(char system) const { return In(fmt::format("sim{}{}.sp3", system, session_)); }
  std::string Bias(const char* pair) const { return In(pair + year_ + month_ + ".DCB"); }
  std::string In(const std::string& name) const {
    return (std::filesystem::path(folder_) / name).string();
  }

private:
  std::string folder_, session_, year_, month_;
};

/// The marker with the header's position, and the antenna above it.
struct Station {
  xyz marker, antenna;
};

/// One data set in the making.
class Simulation {
public:
  explicit Simulation(const Scenario& scenario);
  void Run();

private:
  using Views = std::vector<View>;

  void WriteOrbits();
  void WriteNavigation();
  void WriteSp3();
  void WriteLists();
  void WriteCoordinates();
  void WriteObservations();
  void WriteTruth();
  ObsHeader Header() const;
  Views Look(long epoch);
  void AddRangeRates(double seconds, Views& views);
  bool HasOrbit(short sat, const mjd& t);
  bool IsUsed(const View& view) const;
  double Level(const View& view, const Offsets& offsets) const;
  bool Continues(const View& view, double level, long next, const Views& views) const;
  void Count(long epoch, const View& view, double level);
  double Turns(long epoch, const View& view, double level, const Views& next) const;
  void AddMultipath(long epoch, const Views& views);
  bool Has(const char* type) const;
  bool InView(short sat, long epoch, double& elevation);

  const Scenario& s_;
  FileNames names_;
  EpochTable epochs_;
  std::map<short, SatelliteBias> biases_;
  Station station_;
  Observer observer_;
  std::vector<short> satellites_; ///< of the systems that are observed
  std::unique_ptr<Sky> sky_;
  std::unique_ptr<Ionosphere> ionosphere_;
  std::unique_ptr<Receiver> receiver_;
  Disturbances::InView inView_;
  std::unique_ptr<Disturbances> disturbances_;
  GNSSpEph preciseGps_, preciseGlonass_;
  std::map<short, double> windUp_;    ///< [cycles] last value, continuous
  std::map<short, double> arcTurns_;  ///< [cycles] whole turns at the begin of the arc
  std::map<short, double> ionoSteps_; ///< [m] of L4, sum of the steps of the ionosphere
  double cutoff_;                     ///< [rad] as the program reads it
  bool wantsDoppler_;
  ArcFinder arcs_;
  std::optional<Compact2Writer> multipath1_, multipath2_;
  Truth truth_;
};

} // namespace

static Station MakeStation(const Scenario& s) {
  elipsoid grs80;
  grs80.Set(0);
  const xyz exact = flh2xyz(flh(s.latitude * kDegree, s.longitude * kDegree, s.height), grs80);
  const auto rounded = [](long double v) {
    return static_cast<long double>(Rounded(static_cast<double>(v), 4));
  };
  const xyz marker(rounded(exact.GetX()), rounded(exact.GetY()), rounded(exact.GetZ()));
  const neu antenna(s.antennaNorth, s.antennaEast, s.antennaUp);
  return {marker, marker + lg2g(antenna, marker, grs80)};
}

Simulation::Simulation(const Scenario& scenario)
    : s_(scenario), names_(scenario), epochs_(MakeEpochs(scenario)), biases_(MakeBiases(scenario)),
      station_(MakeStation(scenario)), observer_(station_.antenna),
      cutoff_(static_cast<double>(static_cast<float>(scenario.cutoff)) * kDegree),
      wantsDoppler_(Has("D1") || Has("D2")), arcs_(scenario.interval) {}

bool Simulation::Has(const char* type) const {
  return std::find(s_.types.begin(), s_.types.end(), type) != s_.types.end();
}

// --- Orbits ---------------------------------------------------------------------------------

static mjd Shifted(mjd t, double seconds) {
  t += static_cast<long double>(seconds);
  return t;
}

/// Midnight of the last day of observation's end.
static mjd LastMidnight(const EpochTable& table) {
  return mjd(table.epochs.back().tag.GetMJDay() + 1, 0);
}

void Simulation::WriteNavigation() {
  const mjd begin(epochs_.day0, 0), end = LastMidnight(epochs_);
  const double margin = s_.sp3Margin + 7200;
  std::array<double, kGpsSatellites> delays{};
  for (short prn = 1; prn <= kGpsSatellites; ++prn)
    delays[static_cast<std::size_t>(prn - 1)] = GroupDelay(biases_.at(prn));
  const int leap = LeapSecond(begin);
  const double wholeHours = 7200 * std::ceil(margin / 7200);
  WriteFile(names_.Rinex('n'),
            GpsNavigationText(GpsRecords(Shifted(begin, -wholeHours), Shifted(end, margin), delays),
                              leap));
  WriteFile(
      names_.Rinex('g'),
      GlonassNavigationText(GlonassRecords(Shifted(begin, -margin), Shifted(end, margin)), leap));
}

/// The broadcast orbit and clock of one satellite at one epoch, without the relativistic term.
static OrbitPoint BroadcastPoint(GPSbEph& gps, GLNbEph& glonass, short sat, const mjd& t) {
  xyzt position, velocity;
  long double groupDelay = 0;
  long double clock = 0;
  if (IsGlonass(sat)) {
    glonass.CalcSatPosition(static_cast<short>(sat - 100), t, t, position, velocity, 0);
    clock = position.GetT() + glonass.Relativity;
  } else {
    gps.CalcSatPosition(static_cast<unsigned short>(sat), t, t, position, &groupDelay, 0, 0);
    clock = position.GetT() - gps.Relativity;
  }
  return {{static_cast<double>(position.GetX()), static_cast<double>(position.GetY()),
           static_cast<double>(position.GetZ())},
          static_cast<double>(clock)};
}

void Simulation::WriteSp3() {
  GPSbEph gps;
  gps.SetFile(names_.Rinex('n').c_str());
  gps.ReadFile();
  GLNbEph glonass;
  glonass.SetFile(names_.Rinex('g').c_str());
  glonass.ReadFile();
  const mjd begin(epochs_.day0, 0);
  const double length = static_cast<double>(LastMidnight(epochs_) - begin) + 2 * s_.sp3Margin;
  // A file of whole days ends one interval before midnight; one with a margin includes its end.
  const long count = static_cast<long>(length / s_.sp3Interval + 1e-6) + (s_.sp3Margin > 0 ? 1 : 0);
  const EpochGrid grid = {Shifted(begin, -s_.sp3Margin), s_.sp3Interval, count};
  const Sp3Faults faults = {s_.sp3Missing, s_.sp3BadClocks, epochs_.day0};
  const auto orbit = [&](short sat, const mjd& t) { return BroadcastPoint(gps, glonass, sat, t); };
  std::vector<short> prns, slots;
  for (const auto& [sat, bias] : biases_) (IsGlonass(sat) ? slots : prns).push_back(sat);
  WriteFile(names_.Sp3('g'), Sp3Text(grid, prns, orbit, faults));
  WriteFile(names_.Sp3('r'), Sp3Text(grid, slots, orbit, faults));
}

void Simulation::WriteOrbits() {
  WriteNavigation();
  if (s_.withSp3 || s_.precise) WriteSp3();
  sky_ = std::make_unique<Sky>(s_.gps ? names_.Rinex('n') : "", s_.glonass ? names_.Rinex('g') : "",
                               observer_, epochs_.day0, epochs_.epochs.front().seconds - 10,
                               epochs_.epochs.back().seconds + 10);
  satellites_ = sky_->Satellites();
  if (!s_.precise) return;
  preciseGps_.SetFile(names_.Sp3('g').c_str());
  preciseGps_.ReadFile();
  preciseGlonass_.SetFile(names_.Sp3('r').c_str());
  preciseGlonass_.ReadFile();
}

/// With precise orbits a position may be missing near the epoch.
bool Simulation::HasOrbit(short sat, const mjd& t) {
  if (!s_.precise) return true;
  const auto isOf = [&](const SatelliteSpan& span) { return span.sat == sat; };
  if (std::none_of(s_.sp3Missing.begin(), s_.sp3Missing.end(), isOf)) return true;
  GNSSpEph& orbits = IsGlonass(sat) ? preciseGlonass_ : preciseGps_;
  xyzt position, velocity;
  orbits.CalcSatPosition(static_cast<unsigned short>(sat), t, observer_.Position(), position,
                         velocity);
  return orbits.PSisOK;
}

// --- Lists ----------------------------------------------------------------------------------

void Simulation::WriteLists() {
  const auto bias = [&](const char* pair, BiasKind kind) {
    WriteFile(names_.Bias(pair), BiasFileText(kind, s_, biases_));
  };
  if (s_.withP1P2) bias("P1P2", BiasKind::kP1P2);
  if (s_.withP1C1) bias("P1C1", BiasKind::kP1C1);
  if (s_.withP2C2) bias("P2C2", BiasKind::kP2C2);
  if (s_.withTracking) WriteFile(names_.In("RECEIVER.LST"), ReceiverListText());
  if (s_.withChannels) WriteFile(names_.In("glonass.chn"), ChannelListText());
  if (s_.withClock) WriteFile(names_.In("simu.clk"), ClockFileText(epochs_.epochs));
  if (s_.withCoordinates) WriteCoordinates();
}

static Vec3 ToVec3(const xyz& v) {
  return {static_cast<double>(v.GetX()), static_cast<double>(v.GetY()),
          static_cast<double>(v.GetZ())};
}

/// The file tells where the station was in 2005; the program moves it to the middle epoch.
void Simulation::WriteCoordinates() {
  const ymdhms reference(2005, 1, 1, 0, 0, 0);
  const Vec3 velocity = {-0.0123, 0.0178, 0.0111};
  const mjd& middle = epochs_.epochs[epochs_.epochs.size() / 2].used;
  const double years =
      static_cast<double>(mjd2ymdhms(middle).GetYearDec() - reference.GetYearDec());
  const StationMotion motion = {ToVec3(station_.marker) - years * velocity, velocity,
                                ymdhms2mjd(reference)};
  WriteFile(names_.In("simu.crd"), CoordinateFileText(s_, motion));
}

// --- Observations ---------------------------------------------------------------------------

ObsHeader Simulation::Header() const {
  ObsHeader header;
  const Vec3 error = {0.6 * s_.headerError, -0.48 * s_.headerError, 0.64 * s_.headerError};
  header.position = ToVec3(station_.marker) + error;
  header.up = s_.antennaUp;
  header.east = s_.antennaEast;
  header.north = s_.antennaNorth;
  header.receiver = ReceiverName(s_.tracking);
  header.leapSeconds = LeapSecond(epochs_.epochs.front().tag);
  return header;
}

/// Range rates [m/s] by the ranges half a second before and after.
void Simulation::AddRangeRates(double seconds, Views& views) {
  for (const double side : {-0.5, 0.5}) {
    sky_->SetTime(seconds + side);
    for (View& view : views) view.rangeRate += 2 * side * sky_->Look(view.sat).range;
  }
}

/// The satellites in view at an epoch. Epochs must be asked for in order.
Simulation::Views Simulation::Look(long i) {
  const Epoch& epoch = epochs_.epochs[static_cast<std::size_t>(i)];
  const Vec3 sun = SunPosition(epoch.used);
  const RaySense sense =
      s_.windUp == WindUp::kPhysical ? RaySense::kToReceiver : RaySense::kToSatellite;
  Views views;
  sky_->SetTime(epoch.seconds);
  for (const short sat : satellites_) {
    View view;
    view.sat = sat;
    view.sight = sky_->Look(sat);
    observer_.Direction(view.sight.position, view.elevation, view.azimuth);
    if (view.elevation < s_.mask * kDegree || Covers(s_.satelliteGaps, sat, epoch.seconds))
      continue;
    const Ray ray = {observer_.Latitude(), observer_.Longitude(), view.elevation, view.azimuth};
    const Carriers carriers = CarriersOf(sat);
    view.slant = ionosphere_->Slant(i, ray);
    ionoSteps_[sat] += (carriers.alpha2 - carriers.alpha1) * ionosphere_->Step(i, ray);
    view.ionoStep = ionoSteps_[sat];
    view.windUp = Unwrapped(WindUpCycles(observer_, view.sight.position, sun, sense), windUp_[sat]);
    windUp_[sat] = view.windUp;
    view.aligned = IsAligned(view.sight.position, sun);
    view.orbit = HasOrbit(sat, epoch.used);
    bool fresh = false;
    disturbances_->Apply(i, view, fresh);
    view.lossOfLock = fresh && s_.slipFlags;
    views.push_back(view);
  }
  if (wantsDoppler_) AddRangeRates(epoch.trueSeconds, views);
  // Codes measure the range at the instant of observation, the geometry is that of the run.
  if (epoch.trueSeconds != epoch.seconds) {
    sky_->SetTime(epoch.trueSeconds);
    for (View& view : views) view.sight.range = sky_->Look(view.sat).range;
  }
  return views;
}

bool Simulation::IsUsed(const View& view) const { return view.orbit && view.elevation > cutoff_; }

/// [m] of L4: what was added to it, but for the ionosphere's even change.
double Simulation::Level(const View& view, const Offsets& offsets) const {
  return receiver_->PhaseLevel(view) + view.ionoStep + offsets.l1 - offsets.l2;
}

/// The satellite's arc goes on at epoch \p next, which the views are of.
bool Simulation::Continues(const View& view, double level, long next, const Views& views) const {
  if (next >= static_cast<long>(epochs_.epochs.size())) return false;
  const auto same =
      std::find_if(views.begin(), views.end(), [&](const View& v) { return v.sat == view.sat; });
  if (same == views.end() || !IsUsed(*same) || same->aligned) return false;
  const Epoch& epoch = epochs_.epochs[static_cast<std::size_t>(next)];
  const double dt = static_cast<double>(epoch.used - (&epoch - 1)->used);
  return arcs_.Continues(dt, Level(*same, disturbances_->OffsetsAt(next, view.sat)) - level);
}

/// Counts what the run uses of a satellite, and finds its arcs.
void Simulation::Count(long epoch, const View& view, double level) {
  if (!IsUsed(view)) return;
  if (Has("P1")) ++truth_.counts.p1c1;
  if (Has("P2")) ++truth_.counts.p2c1;
  if (!Has("L1") || !Has("L2") || view.aligned) return;
  // The program begins an arc with a wind-up within half a cycle, whatever went before.
  const double whole = s_.windUp == WindUp::kNone ? 0 : view.windUp - Unwrapped(view.windUp, 0);
  if (arcs_.Add(view.sat, epoch, epochs_.epochs[static_cast<std::size_t>(epoch)].used, level,
                receiver_->PhaseLevel(view) + GpsWindUpPerCycle() * whole))
    arcTurns_[view.sat] = whole;
}

/// [cycles] of wind-up in the phases of a satellite.
double Simulation::Turns(long epoch, const View& view, double level, const Views& next) const {
  if (s_.windUp == WindUp::kNone) return 0;
  if (s_.windUp != WindUp::kExact || !arcTurns_.contains(view.sat)) return view.windUp;
  // At its arc's last epoch the program takes off nothing but the whole turns that it does not
  // know of.
  return Continues(view, level, epoch + 1, next) ? view.windUp : arcTurns_.at(view.sat);
}

void Simulation::AddMultipath(long i, const Views& views) {
  if (!s_.withMultipath) return;
  const Epoch& first = epochs_.epochs.front();
  if (!multipath1_) {
    multipath1_.emplace(first.used, s_.interval);
    multipath2_.emplace(first.used, s_.interval);
  }
  std::vector<Compact2Writer::Value> values1, values2;
  for (const View& view : views) {
    values1.emplace_back(view.sat, receiver_->MultipathOf(0, view));
    values2.emplace_back(view.sat, receiver_->MultipathOf(1, view));
  }
  const Epoch& epoch = epochs_.epochs[static_cast<std::size_t>(i)];
  const long line = std::lround((epoch.seconds - first.seconds) / s_.interval);
  multipath1_->Add(line, values1);
  multipath2_->Add(line, values2);
}

/// \p sat is at least five degrees over the cut-off at the epoch, and its phases are kept.
bool Simulation::InView(short sat, long i, double& elevation) {
  const Epoch& epoch = epochs_.epochs[static_cast<std::size_t>(i)];
  sky_->SetTime(epoch.seconds);
  const Sight sight = sky_->Look(sat);
  double azimuth = 0;
  observer_.Direction(sight.position, elevation, azimuth);
  return elevation > cutoff_ + 5 * kDegree && !Covers(s_.satelliteGaps, sat, epoch.seconds) &&
         HasOrbit(sat, epoch.used) && !IsAligned(sight.position, SunPosition(epoch.used));
}

void Simulation::WriteObservations() {
  ObsWriter writer(names_.Rinex('o'), s_);
  writer.Header(Header(), epochs_.epochs.front().tag);
  const long count = static_cast<long>(epochs_.epochs.size());
  Progress progress(s_.progress, count);
  Views views = Look(0);
  for (long i = 0; i < count; ++i) {
    const Epoch& epoch = epochs_.epochs[static_cast<std::size_t>(i)];
    Views next = i + 1 < count ? Look(i + 1) : Views{};
    std::vector<ObsLine> lines;
    for (const View& view : views) {
      const Offsets offsets = disturbances_->OffsetsAt(i, view.sat);
      const double level = Level(view, offsets);
      Count(i, view, level);
      lines.push_back(receiver_->Observe(epoch, view, offsets, Turns(i, view, level, next)));
    }
    if (s_.eventEvery > 0 && i > 0 && i % s_.eventEvery == 0)
      writer.AddEvent(fmt::format("EVENT BEFORE EPOCH {}", i));
    writer.AddEpoch(epoch, lines);
    AddMultipath(i, views);
    views = std::move(next);
    progress.Done(i + 1);
  }
  writer.Close();
  if (multipath1_) WriteFile(names_.In("simu.mp1"), multipath1_->Text());
  if (multipath2_) WriteFile(names_.In("simu.mp2"), multipath2_->Text());
}

// --- Truth ----------------------------------------------------------------------------------

static std::string ClockTime(double seconds) {
  const long whole = std::lround(seconds);
  return fmt::format("{:02}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

void Simulation::WriteTruth() {
  const auto input = [&](bool used, const char* kind, const char* option, const std::string& name) {
    if (!used) return;
    truth_.files.emplace_back(kind, name);
    if (option != nullptr) truth_.inputs.push_back(option + name);
  };
  const auto orbit = [&](bool system, bool precise, const char* kind, const char* option,
                         const std::string& name) {
    input(!precise || s_.withSp3 || s_.precise, kind,
          system && precise == s_.precise ? option : nullptr, name);
  };
  input(true, "observations", "-r", names_.Rinex('o'));
  orbit(s_.gps, false, "gps_navigation", "-eg", names_.Rinex('n'));
  orbit(s_.glonass, false, "glonass_navigation", "-er", names_.Rinex('g'));
  orbit(s_.gps, true, "gps_sp3", "-es", names_.Sp3('g'));
  orbit(s_.glonass, true, "glonass_sp3", "-el", names_.Sp3('r'));
  input(s_.withP1P2, "p1p2", "-cb1", names_.Bias("P1P2"));
  input(s_.withP1C1, "p1c1", "-cb2", names_.Bias("P1C1"));
  input(s_.withP2C2, "p2c2", "-cb3", names_.Bias("P2C2"));
  input(s_.withTracking, "tracking", "-ct", names_.In("RECEIVER.LST"));
  input(s_.withChannels && s_.glonass, "channels", "-gf", names_.In("glonass.chn"));
  input(s_.withClock, "clock", "-cf", names_.In("simu.clk"));
  input(s_.withCoordinates, "coordinates", "-ac", names_.In("simu.crd"));
  input(s_.withMultipath, "multipath_1", "-mp1", names_.In("simu.mp1"));
  input(s_.withMultipath, "multipath_2", "-mp2", names_.In("simu.mp2"));
  truth_.estimation = {s_.gradients == Gradients::kNone ? "-xREC,ION" : "-xREC,ION,IGRAD",
                       "-ii" + ClockTime(s_.ionoInterval), "-lCODE,PHASE", "-pCOSZ",
                       fmt::format("-me{}", s_.cutoff)};
  truth_.scenario = &s_;
  truth_.epochs = &epochs_;
  truth_.ionosphere = ionosphere_.get();
  truth_.biases = &biases_;
  truth_.satellites = satellites_;
  truth_.arcs = arcs_.Finish();
  for (const Arc& arc : truth_.arcs) truth_.counts.l4 += arc.count;
  truth_.slips = disturbances_->Slips();
  truth_.outliers = disturbances_->Outliers();
  WriteFile(names_.In("truth.json"), TruthJson(truth_).dump(1) + "\n");
  std::string arguments;
  for (const auto* list : {&truth_.inputs, &truth_.estimation})
    for (const std::string& argument : *list) arguments += argument + "\n";
  WriteFile(names_.In("arguments.txt"), arguments);
}

void Simulation::Run() {
  WriteOrbits();
  WriteLists();
  ionosphere_ =
      std::make_unique<Ionosphere>(s_, epochs_, observer_.Latitude(), observer_.Longitude());
  if (ionosphere_->Intervals().joined)
    std::cerr << "zenta-sim: the last piece of the ionosphere is shorter than a quarter of "
                 "--ion-interval; a run with this interval ends with a range report\n";
  receiver_ = std::make_unique<Receiver>(s_, biases_);
  inView_ = [this](short sat, long epoch, double& elevation) {
    return InView(sat, epoch, elevation);
  };
  disturbances_ = std::make_unique<Disturbances>(s_, epochs_, satellites_, inView_);
  WriteObservations();
  WriteTruth();
}

void MakeFiles(const Scenario& scenario) {
  Check(scenario);
  std::error_code error;
  std::filesystem::create_directories(scenario.folder, error);
  if (error) Fail("can't make the folder " + scenario.folder + ": " + error.message());
  Simulation(scenario).Run();
}

} // namespace sim
