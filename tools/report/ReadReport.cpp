#include "ReadReport.h"

#include "LineReader.h"
#include "Refusal.h"

#include <fmt/format.h>

namespace report {

namespace {

constexpr std::string_view kProgram =
    "          PROGRAM:               Zenta                        "
    "              CODE AND PHASE BASED IONOSPHERE DELAY";

std::string Rule(std::size_t n) { return ' ' + std::string(n, '-'); }

Epoch EpochOf(FieldReader& f) {
  const auto t = f.Instant();
  return {t.day, t.second};
}

// ---- Messages of readers, before the report ---------------------------------------------------

bool IsWarningFrame(std::string_view line) {
  return line.starts_with("#### ") && line.find(": Warning -> ") != std::string_view::npos;
}

void ReadWarnings(LineReader& lines, Report& r) {
  while (lines.Skip("") || IsWarningFrame(lines.Peek())) {
    if (!IsWarningFrame(lines.Peek())) continue;
    std::string text(lines.Take("a warning"));
    while (!text.ends_with(" ####")) text += '\n' + std::string(lines.Take("the end of a warning"));
    r.warnings.push_back(text.substr(5, text.size() - 10));
    FieldReader f(lines, "what a reader does after its warning");
    f.Literal("     Continuing ");
    f.Rest();
  }
}

// ---- Settings ---------------------------------------------------------------------------------

std::string ReadDate(FieldReader& f) {
  const std::string_view text = f.Rest(); // 2011-10-10  01:02:03
  constexpr std::string_view kShape = "dddd-dd-dd  dd:dd:dd";
  bool fits = text.size() == kShape.size();
  for (std::size_t i = 0; fits && i < text.size(); ++i)
    fits = kShape[i] == 'd' ? text[i] >= '0' && text[i] <= '9' : text[i] == kShape[i];
  if (!fits) f.Refuse("date and time up to here, and nothing");
  return fmt::format("{}T{}", text.substr(0, 10), text.substr(12));
}

void ReadHead(LineReader& lines, Settings& s) {
  lines.Expect(std::string(120, '_'));
  lines.Expect(kProgram);
  FieldReader authors(lines, "the authors");
  authors.Literal("          AUTHORS:");
  FieldReader release(lines, "the release");
  release.Literal("          RELEASE:               ");
  const std::size_t column = release.Column();
  const std::string_view text = release.Rest();
  constexpr std::string_view kDate = "                                           DATE: ";
  const std::size_t at = text.find(kDate);
  if (at == std::string_view::npos) release.Refuse("a release and a date up to here, and nothing");
  s.release = text.substr(0, at);
  release.MoveTo(column + at + kDate.size());
  s.created = ReadDate(release);
  lines.Expect(std::string(120, '='));
  lines.Expect("");
}

void ReadFile(LineReader& lines, std::string_view label, std::string& name) {
  FieldReader f(lines, "a file");
  f.Literal(label);
  name = f.Rest();
  if (name == " ---") name.clear();
}

void ReadFiles(LineReader& lines, Files& files) {
  lines.Expect("INPUT DATA (FILE NAMES):");
  lines.Expect("------------------------");
  lines.Expect("");
  ReadFile(lines, "  Apriori coordinate file             : ", files.coordinates);
  ReadFile(lines, "  Observation (RINEX) file            : ", files.observations);
  ReadFile(lines, "  Clock correction file               : ", files.clock);
  ReadFile(lines, "  GPS broadcast navigation file       : ", files.gpsNavigation);
  ReadFile(lines, "  GLONASS broadcast navigation file   : ", files.glonassNavigation);
  ReadFile(lines, "  GPS precise ephemeris file          : ", files.gpsOrbits);
  ReadFile(lines, "  GLONASS precise ephemeris file      : ", files.glonassOrbits);
  ReadFile(lines, "  GLONASS frequency channel file      : ", files.glonassChannels);
  ReadFile(lines, "  Differential code bias file (P1P2)  : ", files.dcbP1P2);
  ReadFile(lines, "  Differential code bias file (P1C1)  : ", files.dcbP1C1);
  ReadFile(lines, "  Differential code bias file (P2C2)  : ", files.dcbP2C2);
  ReadFile(lines, "  Receiver code tracking type file    : ", files.codeTracking);
  ReadFile(lines, "  Multipath on P1/C1 file             : ", files.multipath1);
  ReadFile(lines, "  Multipath on P2 file                : ", files.multipath2);
}

double ReadElevation(FieldReader& f) {
  f.Literal("  Minimum elevation angle             : ");
  return f.Real(0, 1, "an elevation");
}

void ReadObservables(LineReader& lines, Settings& s) {
  lines.Expect("  Observations used in processing     :");
  FieldReader code(lines, "the code observations");
  code.Literal("                Code observations     :");
  s.usesCode = !code.Optional("  ---");
  if (s.usesCode) {
    s.usesP1C1 = code.Optional(" P1-C1");
    s.usesP2C1 = code.Optional(" P4->[P2-C1]");
  }
  code.ExpectEnd();
  FieldReader phase(lines, "the phase observations");
  phase.Literal("               Phase observations     :");
  s.usesPhase = phase.Optional(" L4->[L1-L2]");
  if (!s.usesPhase) phase.Literal("  ---");
  phase.ExpectEnd();
}

BiasSource ReadBiasSource(LineReader& lines) {
  FieldReader f(lines, "the source of satellite biases");
  f.Literal("  Differential code biases            : ");
  BiasSource source = BiasSource::none;
  if (f.Optional("DCB values provided by CODE"))
    source = BiasSource::code;
  else if (f.Optional("Navigation time group delay"))
    source = BiasSource::broadcast;
  else
    f.Literal(" ---");
  f.ExpectEnd();
  return source;
}

std::optional<double> ReadThreshold(LineReader& lines, std::string_view label) {
  FieldReader f(lines, "a threshold");
  f.Literal(label);
  std::optional<double> limit;
  if (!f.Optional("NO")) {
    f.Literal("YES [");
    limit = f.Real(6, 3, "a threshold");
    f.Literal(" m]");
  }
  f.ExpectEnd();
  return limit;
}

bool ReadYes(LineReader& lines, std::string_view label) {
  FieldReader f(lines, "a kind of unknowns");
  f.Literal(label);
  const bool yes = f.Optional("YES");
  if (!yes) f.Literal(" ---");
  f.ExpectEnd();
  return yes;
}

void ReadUnknowns(LineReader& lines, Settings& s) {
  lines.Expect("  Unknowns determined in processing   :");
  FieldReader receiver(lines, "the receiver biases");
  receiver.Literal("      Receiver DCB values             :");
  s.estimatesReceiver = !receiver.Optional("  ---");
  if (s.estimatesReceiver) {
    s.estimatesReceiverP1C1 = receiver.Optional(" P1-C1");
    s.estimatesReceiverP2C1 = receiver.Optional(" P2-C1");
  }
  receiver.ExpectEnd();
  s.estimatesGPS = ReadYes(lines, "      GPS DCB values                  : ");
  s.estimatesGLONASS = ReadYes(lines, "      GLONASS DCB values              : ");
  s.estimatesIonosphere = ReadYes(lines, "      Ionospheric delay values        : ");
  s.estimatesGradients = ReadYes(lines, "      Ionospheric gradients           : ");
  FieldReader interval(lines, "the ionosphere interval");
  interval.Literal("      Ionospheric time interval       : ");
  if (s.estimatesIonosphere) {
    const bool threshold = s.misclosureLimit || s.codeResidualLimit || s.phaseResidualLimit;
    s.interval = interval.Real(0, threshold ? 3 : 1, "an interval");
    interval.Literal(" s");
  } else {
    interval.Literal(" ---");
  }
  interval.ExpectEnd();
}

void ReadSettings(LineReader& lines, Settings& s) {
  ReadHead(lines, s);
  ReadFiles(lines, s.files);
  lines.Expect("");
  lines.Expect("");
  lines.Expect("PROCESSING SETTINGS USED:");
  lines.Expect("-------------------------");
  lines.Expect("");
  FieldReader cutoff(lines, "the elevation cut-off");
  s.minElevation = ReadElevation(cutoff);
  cutoff.ExpectEnd();
  ReadObservables(lines, s);
  FieldReader again(lines, "the elevation cut-off once more");
  if (ReadElevation(again) != s.minElevation) again.Refuse("the elevation of four lines above");
  s.minElevationGiven = again.Optional(" [MANUALLY SET]");
  if (!s.minElevationGiven) again.Literal(" [DEFAULT VALUE]");
  again.ExpectEnd();
  s.biases = ReadBiasSource(lines);
  FieldReader weights(lines, "the weighting");
  weights.Literal("  Observation weighting               : ");
  s.weightedByElevation = weights.Optional("COS(Z) model");
  if (!s.weightedByElevation) weights.Literal(" ---");
  weights.ExpectEnd();
  lines.Expect("  Blunder detection in observations   : ");
  s.misclosureLimit = ReadThreshold(lines, "      Misclosure vector f [threshold] : ");
  lines.Expect("      Correction vector v [threshold] :");
  s.codeResidualLimit = ReadThreshold(lines, "        Code observations             : ");
  s.phaseResidualLimit = ReadThreshold(lines, "        Phase observations L4         : ");
  ReadUnknowns(lines, s);
  lines.Expect("");
  lines.Expect("");
}

// ---- Eclipses ---------------------------------------------------------------------------------

/// Letter in 6 columns and number in 2.
Satellite ReadSatellite(FieldReader& f) {
  const bool gps = f.Optional("     G");
  if (!gps) f.Literal("     R");
  const long n = f.Whole(2, "a satellite");
  if (n < (gps ? 1 : 0) || n > 99) f.Refuse("a number of a satellite up to here, and nothing");
  return static_cast<Satellite>(gps ? n : 100 + n);
}

void ReadEclipses(LineReader& lines, std::vector<Eclipse>& eclipses) {
  const std::string rule = ' ' + Rule(31);
  lines.Expect("ECLIPSING EPOCHS FOR SATELLITES:");
  lines.Expect("--------------------------------");
  lines.Expect("");
  lines.Expect("   ID     PRN      #ECLIPSING OBS");
  lines.Expect(rule);
  while (!lines.Skip(rule)) {
    FieldReader f(lines, "an eclipsed satellite or the rule under them");
    const long id = f.Whole(5, "the number of an eclipsed satellite");
    if (id != static_cast<long>(eclipses.size()) + 1)
      f.Refuse("the next number before here, and it");
    Eclipse e;
    e.satellite = ReadSatellite(f);
    e.observations = f.Whole(20, "a number of observations");
    f.ExpectEnd();
    eclipses.push_back(e);
  }
  lines.Expect("");
  lines.Expect("");
}

// ---- Adjustment -------------------------------------------------------------------------------

Outlier ReadOutlier(LineReader& lines, char kind) {
  FieldReader f(lines, "an outlier or the summary of the adjustment");
  f.Literal("  EPH: ");
  Outlier o;
  o.epochIndex = f.Whole(7, "the index of an epoch");
  f.Literal("  ");
  o.epoch = EpochOf(f);
  f.Literal("   PRN: ");
  o.satellite = static_cast<Satellite>(f.Whole(4, "a satellite"));
  f.Literal("  OUTLIER ");
  if (f.Optional("P1-C1"))
    o.observable = Observable::P1C1;
  else if (f.Optional("P2-C1"))
    o.observable = Observable::P2C1;
  else {
    o.observable = Observable::L4;
    f.Literal("L1-L2");
  }
  f.Literal(fmt::format(" ({}): ", kind));
  o.value = f.Real(10, o.observable == Observable::L4 ? 4 : 3, "a value");
  f.ExpectEnd();
  return o;
}

Summary ReadSummary(LineReader& lines) {
  FieldReader f(lines, "the summary of the adjustment");
  Summary s;
  f.Literal("  DONE!        #OBS: ");
  s.observations = f.Whole(10, "a number of observations");
  f.Literal("     #UNK: ");
  s.unknowns = f.Whole(10, "a number of unknowns");
  f.Literal("     #OUT: ");
  s.outliers = f.Whole(10, "a number of outliers");
  f.Literal("      REF. VAR. APOSTERORI: ");
  s.variance = f.Real(10, 4, "a variance");
  f.Literal("    [SQRT]: ");
  s.deviation = f.Real(10, 3, "its root");
  f.ExpectEnd();
  return s;
}

std::vector<Outlier> ReadOutliers(LineReader& lines, char kind) {
  std::vector<Outlier> found;
  while (lines.NextStartsWith("  EPH: ")) found.push_back(ReadOutlier(lines, kind));
  return found;
}

void ReadAdjustment(LineReader& lines, const Settings& s, Adjustment& a) {
  lines.Expect("ESTIMATION OF IONOSPHERIC DELAY:");
  lines.Expect("--------------------------------");
  lines.Expect("");
  lines.Expect("PROCESSING DATA:");
  a.misclosures = ReadOutliers(lines, 'F');
  a.iterated = ReadSummary(lines);
  if (a.iterated.outliers > static_cast<long>(a.misclosures.size()))
    lines.RefuseLine(lines.Number(), fmt::format("at most {} outliers, as many as are listed above",
                                                 a.misclosures.size()));
  lines.Expect("");
  if (!s.codeResidualLimit && !s.phaseResidualLimit) return;
  lines.Expect("PROCESSING DATA - OUTLIER DETECTION:");
  a.residuals = ReadOutliers(lines, 'V');
  a.eliminated = ReadSummary(lines);
  if (a.eliminated->outliers != static_cast<long>(a.residuals.size()))
    lines.RefuseLine(lines.Number(),
                     fmt::format("{} outliers, as many as are listed above", a.residuals.size()));
  lines.Expect("");
}

// ---- Results ----------------------------------------------------------------------------------

long ReadCounts(LineReader& lines, std::string_view label, long& gps, long& glonass) {
  FieldReader f(lines, "counts by system");
  f.Literal(label);
  const long all = f.Whole(10, "a count");
  f.Literal("    G: ");
  gps = f.Whole(8, "a count of GPS");
  f.Literal("    R: ");
  glonass = f.Whole(8, "a count of GLONASS");
  f.ExpectEnd();
  return all;
}

double ReadDeviation(LineReader& lines, std::string_view label) {
  FieldReader f(lines, "a standard deviation");
  f.Literal(label);
  const double value = f.Real(15, 2, "a standard deviation");
  f.ExpectEnd();
  return value;
}

void ReadStatistics(LineReader& lines, const Adjustment& a, Statistics& s) {
  lines.Expect("RECEIVER/SATELLITE DCB VALUES AND IONOSPHERE DELAY - RESULTS:");
  lines.Expect(std::string(61, '-'));
  lines.Expect("");
  FieldReader iterations(lines, "the iterations");
  iterations.Literal("  #ITERATIONS: ");
  s.iterations = iterations.Whole(10, "a number of iterations");
  iterations.Literal("       THRESHOLD: ");
  s.lastCorrection = iterations.Real(10, 3, "the last correction");
  iterations.ExpectEnd();
  FieldReader epochs(lines, "the epochs");
  epochs.Literal("  #EPOCHS    : ");
  s.epochs = epochs.Whole(10, "a number of epochs");
  epochs.ExpectEnd();
  s.observations = ReadCounts(lines, "  #OBS       : ", s.observationsGPS, s.observationsGLONASS);
  if (s.observations != a.Last().observations)
    lines.RefuseLine(lines.Number(),
                     fmt::format("{} observations, as above", a.Last().observations));
  s.outliers = ReadCounts(lines, "  #OUTLIERS  : ", s.outliersGPS, s.outliersGLONASS);
  if (s.outliers != a.Last().outliers)
    lines.RefuseLine(lines.Number(), fmt::format("{} outliers, as above", a.Last().outliers));
  lines.Expect("");
  s.aprioriDeviation = ReadDeviation(lines, "  REF. STD. APRIORI                              : ");
  s.deviation = ReadDeviation(lines, "  REF. STD. APOSTERIORI                          : ");
  FieldReader variance(lines, "the reference variance");
  variance.Literal("  REFERENCE VARIANCE OF UNIT WEIGHT [GLOBAL TEST]: ");
  s.variance = variance.Real(15, 2, "a variance");
  variance.Literal("         [SQRT]");
  variance.Real(10, 2, "its root");
  variance.ExpectEnd();
  lines.Expect("");
}

Bias ReadReceiverBias(LineReader& lines, std::string_view name, std::string_view afterValue,
                      std::string_view afterSigma) {
  FieldReader f(lines, "a receiver bias");
  Bias b;
  f.Literal(fmt::format("  {} DCB: ", name));
  b.value = f.Real(12, 4, "a bias");
  f.Literal(afterValue);
  b.sigma = f.Real(10, 4, "a formal error");
  f.Literal(afterSigma);
  b.microseconds = f.Real(12, 5, "a bias");
  f.Literal(" msec +- ");
  b.sigmaMicroseconds = f.Real(10, 5, "a formal error");
  f.Literal(" msec     [");
  b.observations = f.Whole(0, "a number of observations");
  f.Literal(fmt::format(" OBS / {} DCB]", name));
  f.ExpectEnd();
  return b;
}

void ReadReceiverBiases(LineReader& lines, Report& r) {
  lines.Expect(" RECEIVER GPS DCB VALUES:");
  lines.Expect(Rule(20));
  lines.Expect("");
  if (r.settings.estimatesReceiverP1C1)
    r.receiverP1C1 = ReadReceiverBias(lines, "P1-C1", " m +- ", " m        ");
  if (r.settings.estimatesReceiverP2C1)
    r.receiverP2C1 = ReadReceiverBias(lines, "P2-C1", " +- ", "        ");
  lines.Expect("");
}

std::optional<Bias> ReadSatelliteBias(FieldReader& f) {
  if (f.Optional(std::string(64, ' '))) return {};
  Bias b;
  b.value = f.Real(12, 4, "a bias, or 64 blanks");
  f.Literal(" +-");
  b.sigma = f.Real(8, 4, "a formal error");
  b.microseconds = f.Real(12, 4, "a bias");
  f.Literal(" +-");
  b.sigmaMicroseconds = f.Real(8, 4, "a formal error");
  f.Literal("   [");
  b.observations = f.Whole(6, "a number of observations");
  f.Literal("]  ");
  return b;
}

void ReadSatelliteBiases(LineReader& lines, bool gps, std::vector<SatelliteBiases>& all) {
  const std::string title = fmt::format("SATELLITE {} DCB VALUES:", gps ? "GPS" : "GLONASS");
  const std::string rule = Rule(126);
  lines.Expect(' ' + title);
  lines.Expect(Rule(title.size()));
  lines.Expect("");
  lines.Expect("  PRN           P1-C1 DCB [m +- m, msec +- msec]        #OBS/DCB                "
               "P2-C1 DCB [m +- m, msec +- msec]       #OBS/DCB");
  lines.Expect(rule);
  while (!lines.Skip(rule)) {
    FieldReader f(lines, "a satellite or the rule under them");
    SatelliteBiases b;
    b.satellite = static_cast<Satellite>(f.Whole(5, "a satellite"));
    if (!(gps ? IsGPS(b.satellite) : IsGLONASS(b.satellite)))
      f.Refuse(fmt::format("a {} satellite before here, and its bias", gps ? "GPS" : "GLONASS"));
    b.p1c1 = ReadSatelliteBias(f);
    b.p2c1 = ReadSatelliteBias(f);
    f.ExpectEnd();
    all.push_back(b);
  }
  lines.Expect("");
}

Epoch ReadCalendar(FieldReader& f) {
  const long year = f.Whole(5, "a year");
  const auto part = [&f](std::string_view before, const char* what, long least, long most) {
    f.Literal(before);
    const long n = f.Whole(2, what);
    if (n < least || n > most) f.Refuse(fmt::format("{} up to here, and nothing", what));
    return static_cast<int>(n);
  };
  const int month = part("-", "a month", 1, 12);
  const int day = part("-", "a day", 1, 31);
  const int hour = part(" ", "an hour", 0, 23);
  const int minute = part(":", "a minute", 0, 59);
  const int second = part(":", "a second", 0, 60);
  return FromCalendar(static_cast<int>(year), month, day, (hour * 60 + minute) * 60 + second);
}

Ambiguity ReadAmbiguity(LineReader& lines) {
  FieldReader f(lines, "an ambiguity");
  Ambiguity a;
  a.id = f.Whole(6, "the number of an ambiguity");
  if (!f.NextStartsWith("        ")) a.satellite = ReadSatellite(f);
  f.Literal("   ");
  a.first = ReadCalendar(f);
  f.Literal("   ");
  a.last = ReadCalendar(f);
  a.value.value = f.Real(20, 4, "an ambiguity");
  f.Literal(" +- ");
  a.value.sigma = f.Real(10, 4, "a formal error");
  a.observations = f.Whole(15, "a number of observations");
  f.ExpectEnd();
  return a;
}

void ReadAmbiguities(LineReader& lines, std::vector<Ambiguity>& all) {
  const std::string rule = "  " + Rule(106);
  lines.Expect("  PHASE L4 AMBIGUITIES (REAL VALUES):");
  lines.Expect(' ' + Rule(35));
  FieldReader f(lines, "the number of ambiguities");
  f.Literal("    Number of all ambiguities: ");
  const long n = f.Whole(10, "a number of ambiguities");
  f.ExpectEnd();
  lines.Expect("");
  lines.Expect("    ID     PRN        START_EPOCH              END_EPOCH                     "
               "L4 AMBIGUITY[m]       #OBS/AMBIG");
  lines.Expect(rule);
  for (long j = 0; j < n; ++j) {
    const bool parted = j > 0 && lines.Skip("");
    const Ambiguity a = ReadAmbiguity(lines);
    if (a.id != j + 1) lines.RefuseLine(lines.Number(), fmt::format("ambiguity {}", j + 1));
    if (parted && a.satellite != 0 && a.satellite == all.back().satellite)
      lines.RefuseLine(lines.Number(), "another satellite under a blank line");
    if (j > 0 && !parted && a.satellite != all.back().satellite)
      lines.RefuseLine(lines.Number(), "a blank line before another satellite");
    all.push_back(a);
  }
  lines.Expect(rule);
  lines.Expect("");
  lines.Expect("");
}

Estimate ReadEstimate(FieldReader& f, std::size_t width, const char* what) {
  Estimate e;
  e.value = f.Real(width, 4, what);
  f.Literal(" +-");
  e.sigma = f.Real(8, 4, "a formal error");
  return e;
}

void ReadIntervals(LineReader& lines, bool gradients, std::vector<Interval>& all) {
  const std::string rule = Rule(62 + (gradients ? 48 : 0) + 17);
  lines.Expect(" IONOSPHERE DELAYS:");
  lines.Expect(Rule(18));
  lines.Expect("");
  lines.Expect(fmt::format(
      "  EPOCH[MJD]         ION DELAY[m]          ION DELAY RATE [m/h]{}       #OBS/DELAY",
      gradients ? "         ION GRAD E               ION GRAD N" : ""));
  lines.Expect(rule);
  while (!lines.Skip(rule)) {
    FieldReader f(lines, "an ionosphere interval or the rule under them");
    f.Literal(" ");
    Interval i;
    i.first = EpochOf(f);
    i.delay = ReadEstimate(f, 12, "a delay");
    i.rate = ReadEstimate(f, 14, "a rate");
    if (gradients) {
      i.east = ReadEstimate(f, 12, "a gradient to the east");
      i.north = ReadEstimate(f, 14, "a gradient to the north");
    }
    f.Literal("         [");
    i.observations = f.Whole(6, "a number of observations");
    f.Literal("]  ");
    f.ExpectEnd();
    if (!all.empty() && !(all.back().first < i.first))
      lines.RefuseLine(lines.Number(), "a later epoch than in the line above");
    all.push_back(i);
  }
  lines.Expect("");
  lines.Expect("");
}

void ReadResults(LineReader& lines, Report& r) {
  ReadStatistics(lines, r.adjustment, r.statistics);
  const Settings& s = r.settings;
  if (s.estimatesReceiver) ReadReceiverBiases(lines, r);
  if (s.estimatesGPS) ReadSatelliteBiases(lines, true, r.satellites);
  if (s.estimatesGLONASS) {
    ReadSatelliteBiases(lines, false, r.satellites);
    lines.Expect("");
  }
  if (s.usesPhase) ReadAmbiguities(lines, r.ambiguities);
  if (s.estimatesIonosphere) ReadIntervals(lines, s.estimatesGradients, r.intervals);
}

// ---- Last sections ----------------------------------------------------------------------------

ResidualNote ReadResidualNote(LineReader& lines) {
  lines.Expect("PRINTING OF RESIDUALS:");
  lines.Expect("----------------------");
  lines.Expect("");
  ResidualNote note;
  FieldReader file(lines, "the residual file");
  file.Literal("  Output residual file : ");
  note.file = file.Rest();
  FieldReader count(lines, "the number of residuals");
  count.Literal("  #of printed residuals: ");
  note.count = count.Whole(0, "a number of residuals");
  count.ExpectEnd();
  lines.Expect("");
  return note;
}

std::vector<EpochDelay> ReadEpochDelays(LineReader& lines, bool gradients) {
  const std::string rule = Rule(37 + (gradients ? 46 : 0));
  lines.Expect("ESTIMATION OF EPOCH TO EPOCH IONOSPHERIC DELAY:");
  lines.Expect("-----------------------------------------------");
  lines.Expect("");
  lines.Expect(fmt::format("  EPOCH[MJD]              ION DELAY[m]{}",
                           gradients ? "         ION GRAD E               ION GRAD N" : ""));
  lines.Expect(rule);
  std::vector<EpochDelay> all;
  while (!lines.Skip(rule)) {
    FieldReader f(lines, "the delay of an epoch or the rule under them");
    f.Literal(" ");
    EpochDelay d;
    d.epoch = EpochOf(f);
    d.delay = ReadEstimate(f, 12, "a delay");
    if (gradients) {
      d.east = ReadEstimate(f, 12, "a gradient to the east");
      d.north = ReadEstimate(f, 12, "a gradient to the north");
    }
    f.ExpectEnd();
    all.push_back(d);
  }
  FieldReader count(lines, "the number of delays");
  count.Literal("  #of estimated Iono delays: ");
  if (count.Whole(0, "a number of delays") != static_cast<long>(all.size()))
    lines.RefuseLine(lines.Number(), fmt::format("{} delays, as listed above", all.size()));
  count.ExpectEnd();
  lines.Expect("");
  return all;
}

} // namespace

static Report ReadSections(const std::string& name, std::string_view text) {
  LineReader lines(name, text);
  Report r;
  ReadWarnings(lines, r);
  ReadSettings(lines, r.settings);
  if (r.settings.usesPhase) ReadEclipses(lines, r.eclipses);
  ReadAdjustment(lines, r.settings, r.adjustment);
  ReadResults(lines, r);
  if (lines.NextIs("PRINTING OF RESIDUALS:")) r.residuals = ReadResidualNote(lines);
  if (lines.NextStartsWith("ESTIMATION OF EPOCH"))
    r.epochs = ReadEpochDelays(lines, r.settings.estimatesGradients);
  lines.ExpectEnd();
  return r;
}

Report ReadReport(const std::string& name, std::string_view text) {
  try {
    return ReadSections(name, text);
  } catch (const Refusal& refusal) {
    if (LooksLikeReport(text)) throw;
    throw Refusal(std::string(refusal.what()) + "; a report is the standard output of zenta");
  }
}

bool LooksLikeReport(std::string_view text) {
  const std::string first(120, '_');
  const std::size_t at = text.find(first);
  return at != std::string_view::npos && (at == 0 || text[at - 1] == '\n') &&
         text.substr(at + first.size()).find(kProgram) <= 2;
}

} // namespace report
