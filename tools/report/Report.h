#ifndef ZENTA_REPORT_REPORT_H
#define ZENTA_REPORT_REPORT_H

#include "Epoch.h"

#include <optional>
#include <string>
#include <vector>

/// What a report of zenta says, as plain values. Lengths are metres, delays are on GPS L1.
/// A formal error may be not a number: the program prints it so where a variance is negative.
namespace report {

/// Satellite in the program's numbering: GPS PRN 1 to 99, GLONASS 100 + slot; 0 where a report
/// leaves it out (arcs of further systems).
using Satellite = int;

inline bool IsGPS(Satellite s) { return s >= 1 && s <= 99; }
inline bool IsGLONASS(Satellite s) { return s >= 100 && s <= 199; }
/// G05, R12; empty for a satellite of another system.
std::string NameOf(Satellite s);

struct Files {
  // empty: not used
  std::string coordinates;
  std::string observations;
  std::string clock;
  std::string gpsNavigation;
  std::string glonassNavigation;
  std::string gpsOrbits;
  std::string glonassOrbits;
  std::string glonassChannels;
  std::string dcbP1P2;
  std::string dcbP1C1;
  std::string dcbP2C2;
  std::string codeTracking;
  std::string multipath1;
  std::string multipath2;
};

enum class BiasSource { none, broadcast, code };

struct Settings {
  std::string release; ///< of the program, as it prints it
  std::string created; ///< local date and time of the run, ISO 8601
  Files files;
  double minElevation = 0; ///< [degree]
  bool minElevationGiven = false;
  bool usesCode = false;
  bool usesP1C1 = false;
  bool usesP2C1 = false;
  bool usesPhase = false;
  BiasSource biases = BiasSource::none;
  bool weightedByElevation = false;
  std::optional<double> misclosureLimit;    ///< [m]
  std::optional<double> codeResidualLimit;  ///< [m]
  std::optional<double> phaseResidualLimit; ///< [m]
  bool estimatesReceiver = false;
  bool estimatesReceiverP1C1 = false;
  bool estimatesReceiverP2C1 = false;
  bool estimatesGPS = false;
  bool estimatesGLONASS = false;
  bool estimatesIonosphere = false;
  bool estimatesGradients = false;
  double interval = 0; ///< [s] of an ionosphere interval; 0: every epoch has one
};

struct Eclipse {
  Satellite satellite = 0;
  long observations = 0; ///< whose phases were left out
};

enum class Observable { P1C1, P2C1, L4 };
/// P1-C1, P2-C1, L1-L2
const char* NameOf(Observable o);

struct Outlier {
  long epochIndex = 0; ///< from 0
  Epoch epoch;
  Satellite satellite = 0;
  Observable observable = Observable::P1C1;
  double value = 0; ///< [m] model minus observation
};

/// One line of the adjustment's progress.
struct Summary {
  long observations = 0; ///< counted over all iterations
  long unknowns = 0;
  long outliers = 0;
  double variance = 0;
  double deviation = 0; ///< root of the variance
};

struct Adjustment {
  /// By misclosure, of every iteration one after the other; the last summary().outliers of them
  /// are those of the last iteration.
  std::vector<Outlier> misclosures;
  Summary iterated;
  std::vector<Outlier> residuals;    ///< found by the elimination pass
  std::optional<Summary> eliminated; ///< where there was such a pass

  const Summary& Last() const { return eliminated ? *eliminated : iterated; }
};

struct Statistics {
  long iterations = 0;
  double lastCorrection = 0; ///< [m] norm of the last correction
  long epochs = 0;
  long observations = 0; ///< counted over all iterations
  long outliers = 0;
  long observationsGPS = 0, observationsGLONASS = 0; ///< always 0 in present versions
  long outliersGPS = 0, outliersGLONASS = 0;         ///< likewise
  double aprioriDeviation = 0;
  double deviation = 0;
  double variance = 0;
};

struct Estimate {
  double value = 0; ///< [m], [m/h] for rates
  double sigma = 0; ///< formal error, same unit
};

struct Bias : Estimate {
  double microseconds = 0; ///< as printed; "msec" in the report's heads
  double sigmaMicroseconds = 0;
  long observations = 0;
};

struct SatelliteBiases {
  Satellite satellite = 0;
  std::optional<Bias> p1c1;
  std::optional<Bias> p2c1;
};

struct Ambiguity {
  long id = 0; ///< from 1
  Satellite satellite = 0;
  Epoch first, last; ///< to the second
  Estimate value;
  long observations = 0; ///< of the arc
};

struct Interval {
  Epoch first;
  Estimate delay;                      ///< vertical, at the first epoch
  Estimate rate;                       ///< [m/h]
  std::optional<Estimate> east, north; ///< [m] per unit of tan z
  long observations = 0;
};

struct EpochDelay {
  Epoch epoch;
  Estimate delay;
  std::optional<Estimate> east, north;
};

struct ResidualNote {
  std::string file;
  long count = 0;
};

struct Report {
  std::vector<std::string> warnings; ///< of the readers, printed before the report
  Settings settings;
  std::vector<Eclipse> eclipses; ///< empty without phases
  Adjustment adjustment;
  Statistics statistics;
  std::optional<Bias> receiverP1C1;
  std::optional<Bias> receiverP2C1;
  std::vector<SatelliteBiases> satellites; ///< those of GPS first
  std::vector<Ambiguity> ambiguities;
  std::vector<Interval> intervals;
  std::optional<ResidualNote> residuals;         ///< where a residual file was asked for
  std::optional<std::vector<EpochDelay>> epochs; ///< where epoch-wise delays were
};

/// First and last instant that the report tells of; none where it prints no epoch at all. The
/// last interval counts with its length.
struct Span {
  Epoch first, last;
};
std::optional<Span> SpanOf(const Report& r);

/// End of interval \p i: the start of the next where that follows without a gap, else one length
/// further.
Epoch EndOf(const Report& r, std::size_t i);

} // namespace report

#endif
