#ifndef ZENTA_SIM_SCENARIO_H
#define ZENTA_SIM_SCENARIO_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sim {

/// How the ionosphere is made.
enum class IonoLaw {
  kModel, ///< in the class of the estimator: a delay at each node, linear between the nodes
  kBulge, ///< a daily bulge with equatorial crests over the whole shell
};

/// Gradients of the kModel ionosphere.
enum class Gradients {
  kNone,
  kFree,    ///< any value per interval
  kCoupled, ///< the east gradient equals the delay carried to the next node, see docs/SIMULATOR.md
};

/// Phase wind-up in the phases.
enum class WindUp {
  kNone,
  kPhysical, ///< the turns that antennas make, the same on both carriers
  kProgram,  ///< the turns that the program reckons with, the same on both carriers
  kExact,    ///< exactly what it takes off: GPS wavelengths, nothing at an arc's last epoch
};

/// Code-tracking class of the receiver.
enum class Tracking { kP1P2 = 0, kC1P2 = 1, kC1X2 = 2 };

/// Where the P1 biases of the satellites come from.
enum class P1Bias {
  kModel,    ///< none is left in P1-C1 once the program has corrected C1
  kPhysical, ///< the biases that the files tell are in P1 and C1 as a satellite sends them
};

/// A stretch of time [s] since the midnight that begins the first day; both ends belong to it.
struct TimeSpan {
  double from = 0;
  double to = 0;
};

/// A satellite and a stretch of time. Satellites are numbered as everywhere: GPS PRN n is n,
/// GLONASS slot n is 100 + n.
struct SatelliteSpan {
  short sat = 0;
  TimeSpan span;
};

/// From an epoch on both phases of a satellite are off by whole cycles.
struct Slip {
  short sat = 0;
  double time = 0; ///< [s] since midnight of the first day; the nearest epoch counts
  long n1 = 0;     ///< [cycles] added to L1
  long n2 = 0;     ///< [cycles] added to L2
};

/// One observation that is off.
struct Outlier {
  short sat = 0;
  double time = 0;  ///< as for Slip
  std::string type; ///< "C1", "P1", "P2", "L1", "L2"
  double size = 0;  ///< [m] added, for phases too
};

/// Everything that a simulated data set depends on; the defaults are those of the command line.
struct Scenario {
  std::string folder = "."; ///< where the files go
  std::uint64_t seed = 1;
  bool progress = false; ///< write the progress to standard error

  // Time (GPS).
  unsigned short year = 2011, month = 10, day = 10;
  double start = 0;        ///< [s] of the day, first epoch
  double duration = 86400; ///< [s] epochs lie in [start, start + duration)
  double interval = 30;    ///< [s]

  // Station.
  std::string marker = "SIMU";
  std::string markerNumber = "10001M001";
  double latitude = 46, longitude = 14.5;                    ///< [deg]
  double height = 300;                                       ///< [m] above GRS80
  double antennaUp = 0.1, antennaEast = 0, antennaNorth = 0; ///< [m] antenna over marker
  double headerError = 0; ///< [m] error of the header's position (needs the coordinate file)

  // Satellites and signals.
  bool gps = true, glonass = true;
  double mask = 3;      ///< [deg] satellites below are not tracked
  double cutoff = 10;   ///< [deg] the run's elevation cut-off; decides the expected arcs
  bool precise = false; ///< the run uses the SP3 files
  std::vector<std::string> types = {"C1", "P1", "P2", "L1", "L2"};
  Tracking tracking = Tracking::kP1P2;

  // Files beside observations, navigation and truth.
  bool withP1P2 = true, withP1C1 = true, withChannels = true;
  bool withSp3 = true; ///< written in any case for a run on precise orbits
  bool withP2C2 = false, withTracking = false, withClock = false, withCoordinates = false;
  bool withMultipath = false;

  // Biases.
  double p1p2Sigma = 3;       ///< [ns] spread of the satellites' P1-P2
  double p1c1Sigma = 0.8;     ///< [ns] spread of the satellites' P1-C1
  double p2c2Sigma = 0.8;     ///< [ns] spread of the satellites' P2-C2
  double receiverP1C1 = 0.35; ///< [m] GPS
  double receiverP2C1 = 2.5;  ///< [m] GPS
  double glonassP1C1 = 0;     ///< [m] receiver bias of GLONASS, which has no unknown of its own
  double glonassP2C1 = 0;     ///< [m]
  double satelliteOffset = 0; ///< [m] spread of satellite biases that no file tells
  P1Bias p1Bias = P1Bias::kModel;

  // Ionosphere; delays are metres on GPS L1, vertical.
  IonoLaw law = IonoLaw::kModel;
  double ionoInterval = 3600;    ///< [s] between nodes
  double ionoBase = 1.5;         ///< [m] at night
  double ionoAmplitude = 4;      ///< [m] added at 14 h local time
  double ionoSpread = 0.2;       ///< [m] random part of each node (kModel)
  std::vector<double> ionoNodes; ///< [m] delays at the nodes and at the end, in place of the above
  Gradients gradients = Gradients::kNone;
  double gradientSize = 0.5; ///< [m] spread of the gradients

  // Noise and multipath at the zenith; both grow with 1 / sin(elevation).
  double codeNoise = 0.3;                   ///< [m] each code
  std::optional<double> phaseNoise = 0.002; ///< [m] each phase; absent: matched
  double multipath = 0;                     ///< [m] amplitude near the horizon
  WindUp windUp = WindUp::kProgram;

  // Receiver clock.
  double clockOffset = 0;    ///< [microseconds] at the first epoch
  double clockDrift = 0;     ///< [microseconds/s]
  bool clockJumps = false;   ///< the code clock is kept within half a millisecond by jumps of one
  bool clockOnLines = false; ///< the clock offset stands on the epoch lines

  // Disturbances.
  std::vector<Slip> slips;
  long randomSlips = 0;
  bool slipFlags = false; ///< slips set the loss-of-lock digit
  std::vector<Outlier> outliers;
  long randomOutliers = 0;
  std::string outlierType = "P2";
  double outlierSize = 30; ///< [m] of the random ones, either sign
  std::vector<TimeSpan> gaps;
  std::vector<SatelliteSpan> satelliteGaps;
  long eventEvery = 0; ///< an event with comments ahead of every n-th epoch

  // SP3 files.
  double sp3Interval = 900;                ///< [s]
  double sp3Margin = 7200;                 ///< [s] before the first and behind the last day
  std::vector<SatelliteSpan> sp3Missing;   ///< positions of 0
  std::vector<SatelliteSpan> sp3BadClocks; ///< clocks of 999999.999999

  /// [m] noise of one phase at the zenith: given, or a tenth of the code noise in L1 - L2, which
  /// is what the program's default weights mean.
  double PhaseNoise() const;
};

/// Refuses what can't be made: the command prints \p text and ends with status 1.
[[noreturn]] void Fail(const std::string& text);
/// Fails on a scenario that can't be made.
void Check(const Scenario& scenario);

/// "G05" or "R11" as a satellite number; fails on anything else.
short ParseSatellite(const std::string& text);
/// "hh:mm:ss.s" (hours may exceed 23) in seconds.
double ParseTime(const std::string& text);
/// "hh:mm:ss-hh:mm:ss"
TimeSpan ParseSpan(const std::string& text);
/// "G05@hh:mm:ss-hh:mm:ss"
SatelliteSpan ParseSatelliteSpan(const std::string& text);
/// "G05@hh:mm:ss=n1/n2"
Slip ParseSlip(const std::string& text);
/// "G05@hh:mm:ss=P2:metres"
Outlier ParseOutlier(const std::string& text);
/// Inverse of ParseSatellite.
std::string SatelliteName(short sat);
inline bool IsGlonass(short sat) { return sat >= 100; }

} // namespace sim

#endif
