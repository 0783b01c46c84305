#include "GNSS/GNSSpEph.h"

#include "ClassMessage.h"
#include "GNSS/SatelliteNumber.h"
#include "GNSS/gnssobs.h"
#include "NumberField.h"
#include "PROGINC/FileName.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/TextNumber.h"
#include "TravelTime.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace {

// Columns of SP3-c, counted from 0.
constexpr std::size_t kHeaderLimit = 99;  // longest header line
constexpr std::size_t kRecordLimit = 115; // longest line of an epoch block
constexpr std::size_t kColVersion = 1;
constexpr std::size_t kColFlag = 2;
constexpr std::size_t kColEpochs = 32;
constexpr std::size_t kColInterval = 23;
constexpr std::size_t kColDay = 38;
constexpr std::size_t kColDayFraction = 44;
constexpr std::size_t kColSatellites = 4;
constexpr std::size_t kColList = 9; // identifiers and exponents: 17 of 3 characters
constexpr std::size_t kColPositionBase = 2;
constexpr std::size_t kColClockBase = 13;
constexpr std::size_t kColRecordSatellite = 1;
constexpr std::size_t kFieldWidth = 14; // of coordinates and clock
constexpr std::size_t kColX = 4;
constexpr std::size_t kColY = 18;
constexpr std::size_t kColZ = 32;
constexpr std::size_t kColClock = 46;
constexpr std::size_t kBareRecord = 60; // a longer record has accuracies
constexpr std::size_t kColSigX = 61;    // exponents: 2 characters each
constexpr std::size_t kColSigY = 64;
constexpr std::size_t kColSigZ = 67;
constexpr std::size_t kColSigClock = 70; // 3 characters

constexpr int kListLines = 5;
constexpr int kListPerLine = 17;

constexpr long double kSecondsPerHour = 3600.0L;
constexpr double kClockMarker = 999999.0;  // [us] in the file (with decimals), [s] in the tables
constexpr long double kMicrosecond = 1e-6; // [s], the double
constexpr double kLargestClock = 0.9;      // [s]
constexpr double kOnNode = 1e-10;          // [h]
constexpr long double kOutside = 900.0L;   // [s]
constexpr int kMostPasses = 10;            // of the travel-time iteration
constexpr int kMostPoints = 100;           // half the nodes of an interpolation
constexpr long double kLongestInterval = 86400.0L * 200000; // [s] range of mjd
// Announced records of a file that was cut off are allowed up to here, more only if the file
// has the characters for them: x, y and z alone end in column 46.
constexpr long kCutFileRecords = 500000;
constexpr long kShortestRecord = 46;

// A range from here is not a number, which ends the iteration of a travel time.
const xyzt kNowhere(std::numeric_limits<long double>::quiet_NaN(), 0, 0, 0);

short Exponent(std::string_view line, std::size_t column) {
  return ToWhole<short>(Columns(line, column, 3));
}

// Fills the list from five lines of 17 fields; lines behind the last entry are read as well.
template <typename Decode>
void ReadList(LineSource& source, std::string_view line, matrix<short>& list, Decode decode) {
  long filled = 0;
  for (int row = 0; row < kListLines; ++row) {
    if (row > 0) source.Next(line, kHeaderLimit);
    for (std::size_t field = 0; field < kListPerLine && filled < list.NRow(); ++field)
      list(filled++) = decode(line, kColList + 3 * field);
  }
}

// False, with 0, where the field has no number.
bool ReadCoordinate(std::string_view line, std::size_t column, long double& metres) {
  double km = 0;
  const bool isNumber = ReadNumber(Columns(line, column, kFieldWidth), km);
  metres = km * 1000.0L;
  return isNumber;
}

// [us]; what is no number is a bad clock, a missing one 0.
double Clock(std::string_view line) {
  const std::string_view field = Columns(line, kColClock, kFieldWidth);
  double clock = 0;
  return ReadNumber(field, clock) || Trimmed(field).empty() ? clock : kClockMarker;
}

// Standard deviation unit * base^exponent, 0 where the line ends before the last digit and where
// that is no number.
long double Deviation(std::string_view line, std::size_t column, std::size_t width, double unit,
                      long double base) {
  if (line.size() < column + width) return 0;
  const auto exponent = static_cast<long double>(ToInt(Columns(line, column, width)));
  return FiniteOrZero(unit * std::pow(base, exponent));
}

// Calls use(k, product, sum, on) for each node k with what the nodes other than k give, taken in
// the order of the nodes: product of their tau and sum of their 1/tau, and how many of them the
// epoch is on; factors and terms of those are left out. What stands before node k is the same for
// all nodes behind it and is carried along; what stands behind k is appended one by one, since
// rounding depends on the order.
template <typename Use> void ForEachSlope(const long double* tau, long nodes, Use use) {
  long double inverse[2 * kMostPoints];
  bool offNode[2 * kMostPoints];
  int on = 0;
  for (long m = 0; m < nodes; ++m) {
    offNode[m] = std::fabs(tau[m]) > kOnNode;
    if (!offNode[m]) ++on;
    inverse[m] = 1.0L / tau[m];
  }
  long double productBefore = 1;
  long double sumBefore = 0;
  for (long k = 0; k < nodes; ++k) {
    long double product = productBefore;
    long double sum = sumBefore;
    for (long m = k + 1; m < nodes; ++m) {
      if (!offNode[m]) continue;
      product *= tau[m];
      sum += inverse[m];
    }
    use(k, product, sum, offNode[k] ? on : on - 1);
    if (!offNode[k]) continue;
    productBefore *= tau[k];
    sumBefore += inverse[k];
  }
}

// The product of all tau but the k-th for each k, multiplied in the order of the nodes, as above.
void ProductsWithoutOne(const long double* tau, long nodes, long double* products) {
  long double before = 1;
  for (long k = 0; k < nodes; ++k) {
    long double product = before;
    for (long m = k + 1; m < nodes; ++m) product *= tau[m];
    products[k] = product;
    before *= tau[k];
  }
}

matrix<long double> LagrangeDenominators(long double interval, int nodes) {
  matrix<long double> denominators(nodes, 1, 1.0L);
  for (int i = 0; i < nodes; ++i) {
    for (int j = 0; j < nodes; ++j) {
      if (j == i) continue;
      denominators(i) *= interval * static_cast<long double>(i - j) / kSecondsPerHour;
    }
  }
  return denominators;
}

} // namespace

void GNSSpEph::SetFile(const char* name) { CopyFileName(name, sp3file); }

void GNSSpEph::ReadFile() {
  LineSource source = LineSource::FromFile(sp3file);
  ReadFileHeader(source);
  ReadFileData(source);
  SetLfact();
}

void GNSSpEph::ReadFileHeader(LineSource& source) {
  const long characters = static_cast<long>(source.Rest().size());
  std::string_view line;

  source.Next(line, kHeaderLimit);
  version = Column(line, kColVersion);
  flag = Column(line, kColFlag);
  nepoch = ToInt(Columns(line, kColEpochs));

  source.Next(line, kHeaderLimit);
  interval = ToDouble(Columns(line, kColInterval));
  // Epochs could not be told apart, or not be counted on: as good as no interval.
  if (std::fabs(interval) > kLongestInterval) interval = 0;
  StartEpoch.Set(static_cast<unsigned>(ToInt(Columns(line, kColDay))),
                 86400.0L * ToDouble(Columns(line, kColDayFraction)));

  source.Next(line, kHeaderLimit);
  const int satellites = ToInt(Columns(line, kColSatellites));
  CheckCounts(satellites, characters);
  nsat = static_cast<short>(satellites);
  satList.Resize(nsat);
  satListSig.Resize(nsat);
  ReadList(source, line, satList, SatelliteNumber);
  source.Next(line, kHeaderLimit);
  ReadList(source, line, satListSig, Exponent);

  for (int skipped = 13; skipped <= 14; ++skipped) source.Skip(kHeaderLimit);
  source.Next(line, kHeaderLimit);
  posBase = ToDouble(Columns(line, kColPositionBase));
  clkBase = ToDouble(Columns(line, kColClockBase));
  for (int skipped = 16; skipped <= 22; ++skipped) source.Skip(kHeaderLimit);
}

// A file that was cut off is read as far as it goes, so a count is wrong only where no file
// like this could hold it.
void GNSSpEph::CheckCounts(long satellites, long characters) const {
  const long most = std::max(characters / kShortestRecord, kCutFileRecords);
  const bool fits = nepoch >= 0 && satellites >= 0 &&
                    satellites <= std::numeric_limits<short>::max() &&
                    nepoch * (satellites + 1) <= most;
  if (fits) return;
  const std::string text = "NUMBER OF EPOCHS (" + std::to_string(nepoch) + ") OR SATELLITES (" +
                           std::to_string(satellites) + ") NOT VALID IN PRECISE ORBIT FILE " +
                           sp3file + "!";
  GNSSpEphError(text.c_str());
}

void GNSSpEph::ReadFileData(LineSource& source) {
  const long records = static_cast<long>(nsat) * nepoch;
  epoch.Resize(nepoch);
  sat.Resize(records);
  sPos.Resize(records);
  sPosSig.Resize(records);

  std::string_view line;
  for (int k = 0; k < nepoch; ++k) {
    source.Skip(kRecordLimit);
    epoch(k) = StartEpoch;
    for (int i = 0; i < nsat; ++i) {
      source.Next(line, kRecordLimit);
      if (!line.empty()) ReadRecord(line, static_cast<long>(nsat) * k + i);
    }
    StartEpoch += interval;
  }
  isWhole = !source.Failed();
}

void GNSSpEph::ReadRecord(std::string_view line, long record) {
  sat(record) = SatelliteNumber(line, kColRecordSatellite);
  if (Column(line, 0) != 'P') return;
  xyzt& position = sPos(record);
  long double x = 0;
  long double y = 0;
  long double z = 0;
  if (!ReadCoordinate(line, kColX, x) || !ReadCoordinate(line, kColY, y) ||
      !ReadCoordinate(line, kColZ, z)) {
    position.Set(0, 0, 0, kClockMarker); // no position, no clock
    return;
  }
  const double clock = Clock(line);
  position.Set(x, y, z, clock * kMicrosecond);
  if (line.size() <= kBareRecord) return;
  if (std::fabs(clock - kClockMarker) < 2.0) {
    position.SetT(kClockMarker);
    return;
  }
  sPosSig(record).Set(Deviation(line, kColSigX, 2, 0.001, posBase),
                      Deviation(line, kColSigY, 2, 0.001, posBase),
                      Deviation(line, kColSigZ, 2, 0.001, posBase),
                      Deviation(line, kColSigClock, 3, 1e-12, clkBase));
}

void GNSSpEph::SetLfact() {
  Lfact = LagrangeDenominators(interval, 2 * nPtsPos);
  LfactDT = LagrangeDenominators(interval, 2 * nPtsTime);
}

void GNSSpEph::SetNInterpPoints(int n) {
  if (n < 1 || n > kMostPoints) GNSSpEphError("NUMBER OF INTERPOLATION POINTS NOT VALID!");
  nPtsPos = n;
  SetLfact();
}

void GNSSpEph::CalcSatPosition(unsigned short satellite, const mjd& t, xyzt& pos, xyzt& vel) {
  WarnOutsideFile(t);
  ephr = t;
  const long index = FindSatellite(satellite);
  if (AddPositions(index)) Complete(index, pos, vel);
}

// Velocity and clock at the epoch of the last positions, and all of it to the caller.
void GNSSpEph::Complete(long index, xyzt& pos, xyzt& vel) {
  AddVelocities(index);
  AddClocks(index);
  pos = p0;
  vel = v0;
}

// A travel time that ended without a position leaves those of the pass before, at \p t.
void GNSSpEph::LeaveAt(const mjd& t, long index, xyzt& pos, xyzt& vel) {
  const mjd last = ephr;
  ephr = t;
  AddPositions(index);
  Complete(index, pos, vel);
  ephr = last;
  PSisOK = DTisOK = false;
}

void GNSSpEph::WarnOutsideFile(const mjd& t) const {
  if (epoch(0) - t > kOutside || t - epoch(nepoch - 1) > kOutside)
    ProgramWarning("Zenta", "CALCULATION EPOCH NOT IN EPOCH INTERVAL OF INPUT PRECISE ORBIT FILE!");
}

long GNSSpEph::FindSatellite(unsigned short satellite) const {
  for (long i = 0; i < satList.NRow(); ++i)
    if (satList(i) == satellite) return i;
  return -1;
}

// With fewer epochs than nodes the first node is negative, which the container reports.
GNSSpEph::Span GNSSpEph::NodeSpan(int half) const {
  // Kept within the file, plus room for the clamping below: far outside, the quotient is beyond
  // the range of whole numbers.
  const long double intervals =
      std::clamp((ephr - epoch(0)) / interval, -1.0L, static_cast<long double>(nepoch));
  const long at = static_cast<long>(intervals);
  Span span{at - half + 1, at + half};
  if (span.first < 0) span = {0, 2L * half - 1};
  if (span.last > nepoch - 1) span = {nepoch - 2L * half, nepoch - 1L};
  return span;
}

// Hours from the nodes of the span to the epoch of evaluation.
void GNSSpEph::HoursFromNodes(Span span, long double* tau) const {
  for (long m = span.first; m <= span.last; ++m) *tau++ = (ephr - epoch(m)) / kSecondsPerHour;
}

// Without a position where there is no satellite, no interval or a node has none.
bool GNSSpEph::AddPositions(long index) {
  PSisOK = DTisOK = false;
  if (index < 0 || interval == 0) return false;
  const Span span = NodeSpan(nPtsPos);
  long double tau[2 * kMostPoints];
  long double products[2 * kMostPoints];
  HoursFromNodes(span, tau);
  for (long m = span.first; m <= span.last; ++m) {
    const xyzt& node = sPos(nsat * m + index);
    if (std::fabs(node.GetX()) + std::fabs(node.GetY()) + std::fabs(node.GetZ()) < 1.0L)
      return false;
  }
  const long nodes = span.last - span.first + 1;
  ProductsWithoutOne(tau, nodes, products);
  long double x = 0;
  long double y = 0;
  long double z = 0;
  for (long k = 0; k < nodes; ++k) {
    const xyzt& node = sPos(nsat * (span.first + k) + index);
    const long double denominator = Lfact(k);
    x += products[k] * node.GetX() / denominator;
    y += products[k] * node.GetY() / denominator;
    z += products[k] * node.GetZ() / denominator;
  }
  p0.Set(x, y, z, 0);
  PSisOK = DTisOK = true;
  return true;
}

// The derivative of a term is the sum of its products less one factor each, B sum(1/tau). On
// another node one factor is 0, and only the product without it is left: B alone.
void GNSSpEph::AddVelocities(long index) {
  const Span span = NodeSpan(nPtsPos);
  long double tau[2 * kMostPoints];
  HoursFromNodes(span, tau);
  long double x = 0;
  long double y = 0;
  long double z = 0;
  ForEachSlope(tau, span.last - span.first + 1,
               [&](long k, long double product, long double sum, int on) {
                 const xyzt& node = sPos(nsat * (span.first + k) + index);
                 const long double denominator = Lfact(k);
                 const long double slope = (on > 0 ? 1.0L : sum) * product;
                 x += slope * node.GetX() / denominator / kSecondsPerHour;
                 y += slope * node.GetY() / denominator / kSecondsPerHour;
                 z += slope * node.GetZ() / denominator / kSecondsPerHour;
               });
  v0.Set(x, y, z, 0);
}

void GNSSpEph::AddClocks(long index) {
  const Span span = NodeSpan(nPtsTime);
  long double tau[2 * kMostPoints];
  long double products[2 * kMostPoints];
  HoursFromNodes(span, tau);
  const long nodes = span.last - span.first + 1;
  ProductsWithoutOne(tau, nodes, products);
  for (long k = 0; k < nodes; ++k) {
    const long double clock = sPos(nsat * (span.first + k) + index).GetT();
    if (std::fabs(clock) > kLargestClock) {
      DTisOK = false;
      return;
    }
    p0.SetT(p0.GetT() + products[k] * clock / LfactDT(k));
  }
}

long double GNSSpEph::CalcSatPosition(unsigned short satellite, const mjd& t, const xyz& rec,
                                      xyzt& pos, xyzt& vel) {
  WarnOutsideFile(t);
  const long index = FindSatellite(satellite);
  xyz turned = ps; // receiver of the pass before; a pass without a position leaves it in ps
  mjd previous;    // epoch of the pass before
  bool isFirst = true;
  // A pass needs the position alone; velocity and clock are those of the last pass.
  const TravelResult travel =
      IterateTravelTime(t, rec, OMEGAz, kMostPasses, ephr, turned, [&]() -> const xyzt& {
        WarnOutsideFile(ephr);
        ps = turned;
        if (!AddPositions(index)) return kNowhere;
        previous = ephr;
        isFirst = false;
        return p0;
      });
  if (!PSisOK) {
    if (!isFirst) LeaveAt(previous, index, pos, vel);
    return -1;
  }
  Complete(index, pos, vel);
  ps = turned;
  if (!travel.settled)
    ProgramWarning("Zenta", "CalcSatPosition():      TO MANY ITERATIONS: > 10!!");

  constexpr long double c = kSignalSpeed;
  Relativity = 2.0L * (pos.GetX() * (vel.GetX() / c) / c + pos.GetY() * (vel.GetY() / c) / c +
                       pos.GetZ() * (vel.GetZ() / c) / c);
  pos.SetT(pos.GetT() - Relativity);
  return travel.range;
}

long double GNSSpEph::CalcSatPosition(unsigned short satellite, const mjd& t, const xyz& rec,
                                      xyzt& pos, xyzt& vel, const gnssobs& obs) {
  WarnOutsideFile(t);
  const long double tau = obs.GetObs() / kSignalSpeed; // [s]
  if (!SetEmissionEpoch(t, -tau, ephr)) {
    PSisOK = DTisOK = false;
    return -1;
  }
  CalcSatPosition(satellite, ephr, pos, vel);
  ps = rec.RotateZ(OMEGAz * tau);
  return (ps - pos).GetLength();
}

void GNSSpEph::GNSSpEphError(const char* text) { ClassError("GNSSpEph", '*', text); }
