#include "GNSS/GPSbEph.h"

#include "ClassMessage.h"
#include "GNSS/Azimut.h"
#include "GNSS/TimeConverse.h"
#include "GNSS/gnssobs.h"
#include "NavFile.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/TextNumber.h"
#include "TravelTime.h"

#include <cmath>
#include <cstdio>
#include <istream>
#include <limits>

namespace {

// Columns of a record's values.
constexpr long kAf0 = 0;
constexpr long kAf1 = 1;
constexpr long kAf2 = 2;
constexpr long kCrs = 4;
constexpr long kDeltaN = 5;
constexpr long kM0 = 6;
constexpr long kCuc = 7;
constexpr long kEccentricity = 8;
constexpr long kCus = 9;
constexpr long kSqrtA = 10;
constexpr long kToe = 11;
constexpr long kCic = 12;
constexpr long kOmega0 = 13;
constexpr long kCis = 14;
constexpr long kI0 = 15;
constexpr long kCrc = 16;
constexpr long kPerigee = 17;
constexpr long kOmegaDot = 18;
constexpr long kIDot = 19;
constexpr long kTGD = 25;

// Columns of the header lines, counted from 0.
constexpr std::size_t kColIon = 2; // four numbers
constexpr std::size_t kIonWidth = 12;
constexpr std::size_t kIonMantissa = 8;
constexpr std::size_t kColA0 = 3;
constexpr std::size_t kColA1 = 22;
constexpr std::size_t kUtcMantissa = 15;
constexpr std::size_t kColT = 41;
constexpr std::size_t kColW = 50;
constexpr std::size_t kIntegerWidth = 9;

constexpr int kRecordLines = 8;
constexpr int kMostPasses = 10;            // of the travel time
constexpr int kMostKeplerPasses = 100;     // of Kepler's equation
constexpr double kKeplerSettled = 1e-14;   // [rad]
constexpr long double kFarEpoch = 8000.0L; // [s] from the record
constexpr long double kOldEpoch = 7200.0L; // [s] from the record

} // namespace

bool GPSbEphHeader::Read(LineSource& source) {
  return ReadHeaderLines(source, [this](std::string_view line) { ParseLine(line); });
}

void GPSbEphHeader::ParseLine(std::string_view line) {
  if (Contains(line, "RINEX VERSION / TYPE")) return ParseRVersionType(line);
  if (Contains(line, "PGM / RUN BY / DATE")) return ParsePgmRunByDate(line);
  if (Contains(line, "ION ALPHA")) return ParseIon(line, alfa);
  if (Contains(line, "ION BETA")) return ParseIon(line, beta);
  if (Contains(line, "DELTA-UTC: A0,A1,T,W")) return ParseDeltaUTC(line);
  if (Contains(line, "LEAP SECONDS")) return ParseLeapS(line);
  if (Contains(line, "COMMENT")) return;
  GLNbEphHeaderWarning(UnknownLabel(line).c_str());
}

void GPSbEphHeader::ParseRVersionType(std::string_view line) {
  ReadVersionType(line, version, type);
}

void GPSbEphHeader::ParsePgmRunByDate(std::string_view line) {
  ReadPgmRunByDate(line, pgm, runby, date);
}

void GPSbEphHeader::ParseIon(std::string_view line, long double (&coefficient)[4]) {
  for (std::size_t i = 0; i < 4; ++i)
    coefficient[i] = HeaderNumber(line, kColIon + kIonWidth * i, kIonMantissa);
}

void GPSbEphHeader::ParseDeltaUTC(std::string_view line) {
  a0 = HeaderNumber(line, kColA0, kUtcMantissa);
  a1 = HeaderNumber(line, kColA1, kUtcMantissa);
  T = ToInt(Columns(line, kColT, kIntegerWidth));
  W = ToInt(Columns(line, kColW, kIntegerWidth));
}

void GPSbEphHeader::ParseLeapS(std::string_view line) { leaps = ReadLeapSeconds(line); }

void GPSbEphHeader::GLNbEphHeaderWarning(const char* text) { ClassWarning("GPSbEphHeader", text); }

std::istream& operator>>(std::istream& in, GPSbEphHeader& header) {
  LineSource source = TakeHeader(in);
  return MarkIncomplete(in, header.Read(source));
}

void GPSbEphData::SetNRecords(unsigned int n) {
  nsatall = n;
  index.Clear();
  sat.Resize(n);
  mjdo.Resize(n);
  data.Resize(n, NValues);
}

bool GPSbEphData::Read(LineSource& source) {
  if (nsatall == 0) GPSbEphDataError("NUMBER OF RECORDS not set!");
  index.Clear();
  return ReadRecords(source, *this, ymdhms2mjd, ReadParameter);
}

const std::vector<long>& GPSbEphData::RecordsOf(unsigned short prn) const {
  return index.Of(prn, sat, static_cast<long>(nsatall));
}

long double GPSbEphData::ReadParameter(LineSource& source) { return ReadExponentNumber(source); }

void GPSbEphData::GPSbEphDataWarning(const char* text) { ClassWarning("GPSbEphData", text); }

void GPSbEphData::GPSbEphDataError(const char* text) { ClassError("GPSbEphData", '#', text); }

std::istream& operator>>(std::istream& in, GPSbEphData& data) {
  LineSource source = LineSource::FromStream(in);
  return MarkIncomplete(in, data.Read(source));
}

void GPSbEph::SetFile(const char* name) { CopyText(name, navig); }

void GPSbEph::ReadFile() {
  LineSource source = LineSource::FromFile(navig);
  CountNav(source);
  source.Rewind();
  ReadNav(source);
}

void GPSbEph::CountNav(LineSource& source) {
  ghead.Read(source);
  nsatall = CountRecords(source, kRecordLines, std::numeric_limits<unsigned short>::max());
  gdata.SetNRecords(nsatall);
}

void GPSbEph::ReadNav(LineSource& source) {
  ghead.Read(source);
  gdata.Read(source);
  nsatall = gdata.nsatall;
}

long GPSbEph::GetDataIndex(unsigned short prn, const mjd& tsel) const {
  long last = -1;
  for (const long k : gdata.RecordsOf(prn)) {
    last = k;
    if (gdata.mjdo(k) > tsel) return k;
  }
  if (last >= 0) return last;
  char text[64];
  std::snprintf(text, sizeof text, "SAT: G%02d IS NOT LISTED IN GPS NAVIGATION FILE!!!", prn);
  GPSbEphError(text);
}

void GPSbEph::WarnOfAge(unsigned short prn, const mjd& t, long double tk) const {
  const ymdhms date = mjd2ymdhms(t);
  char text[128];
  std::snprintf(
      text, sizeof text,
      "SAT: G%02d [%4d-%02d-%02d %02d:%02d:%04.1lf] -> DT = %5.2lf h PARAMETER TO BIG [>2h]", prn,
      date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(), date.GetMinute(),
      static_cast<double>(date.GetSecond()), static_cast<double>(tk / 3600.0L));
  GPSbEphWarning(text);
}

long double GPSbEph::EccentricAnomaly(long double M, long double e) {
  long double E = 0;
  long double change = 1;
  int pass = 1;
  while (change > kKeplerSettled) {
    const long double before = E;
    E = M + e * std::sin(before);
    change = std::fabs(E - before);
    if (++pass > kMostKeplerPasses) GPSbEphError("TO MANY ITERATIONS (E)");
  }
  return E;
}

void GPSbEph::CalcSatPosition(unsigned short prn, const mjd& t, const mjd& tsel, xyzt& pos,
                              long double* tgd, unsigned short warn, unsigned short) {
  Evaluate(GetDataIndex(prn, tsel), t, pos, tgd, warn);
}

void GPSbEph::Evaluate(long k, const mjd& t, xyzt& pos, long double* tgd, unsigned short warn) {
  const unsigned short prn = gdata.sat(k);
  const auto value = [this, k](long column) { return gdata.data(k, column); };
  const mjd& Tr = gdata.mjdo(k);
  ephr = t;

  const long double tk = t - Tr; // [s] from the record, for clock and orbit
  if (std::fabs(tk) > kFarEpoch)
    ProgramWarning("Zenta", "CALCULATION EPOCH NOT IN EPOCH INTERVAL OF GPS NAVIGATION ORBIT ORBIT "
                            "FILE!");
  if (warn != 0 && std::fabs(tk) > kOldEpoch) WarnOfAge(prn, t, tk);

  const long double sqrtA = value(kSqrtA);
  const long double A = sqrtA * sqrtA;
  const long double e = value(kEccentricity);
  const long double n = std::sqrt(GMz / A) / A + value(kDeltaN); // mean motion [rad/s]
  const long double E = EccentricAnomaly(value(kM0) + n * tk, e);
  const long double sinE = std::sin(E);
  const long double cosE = std::cos(E);

  Relativity = RelK * e * sqrtA * sinE;
  const long double dt = value(kAf0) + value(kAf1) * tk + value(kAf2) * tk * tk + Relativity;
  *tgd = value(kTGD);

  // The second coordinate is rounded to double precision: 1e-16 rad, 3 nm on the orbit.
  const long double nu =
      Azimuth(0, 0, std::sqrt((1.0L - e) * (1.0L + e)) * sinE, static_cast<double>(cosE - e));
  const long double phi = nu + value(kPerigee); // argument of latitude
  const long double sin2phi = std::sin(2.0L * phi);
  const long double cos2phi = std::cos(2.0L * phi);
  const long double u = phi + value(kCus) * sin2phi + value(kCuc) * cos2phi;
  const long double r = A * (1.0L - e * cosE) + value(kCrs) * sin2phi + value(kCrc) * cos2phi;
  const long double i =
      value(kI0) + value(kCis) * sin2phi + value(kCic) * cos2phi + value(kIDot) * tk;
  const long double node = value(kOmega0) + (value(kOmegaDot) - OMEGAz) * tk - OMEGAz * value(kToe);

  const long double x = r * std::cos(u); // in the orbital plane
  const long double y = r * std::sin(u);
  const long double cosNode = std::cos(node);
  const long double sinNode = std::sin(node);
  const long double yFlat = y * std::cos(i); // on the equator
  p0.Set(x * cosNode - yFlat * sinNode, x * sinNode + yFlat * cosNode, y * std::sin(i), dt);
  pos = p0;
}

long double GPSbEph::CalcSatPosition(unsigned short prn, const mjd& t, const mjd& tsel,
                                     const xyz& rec, xyzt& pos, long double* tgd,
                                     unsigned short warn, unsigned short) {
  const long k = GetDataIndex(prn, tsel);
  mjd emission;
  const TravelResult travel =
      IterateTravelTime(t, rec, OMEGAz, kMostPasses, emission, ps, [&]() -> const xyzt& {
        Evaluate(k, emission, pos, tgd, warn);
        return pos;
      });
  if (!travel.settled)
    GPSbEphWarning("GPSbEph::CalcSatPosition():      TO MANY ITERATIONS: > 10!!");
  return travel.range;
}

long double GPSbEph::CalcSatPosition(unsigned short prn, const mjd& t, const mjd& tsel,
                                     const xyz& rec, xyzt& pos, const gnssobs& obs,
                                     long double* tgd, unsigned short warn, unsigned short spare) {
  const long double tau = obs.GetObs() / kSignalSpeed; // [s]
  mjd emission;
  if (!SetEmissionEpoch(t, -tau, emission)) return -1;
  CalcSatPosition(prn, emission, tsel, pos, tgd, warn, spare);
  ps = rec.RotateZ(OMEGAz * tau);
  return (ps - pos).GetLength();
}

void GPSbEph::PrintParameter(const char* name, long double value) { WriteParameter(name, value); }

void GPSbEph::GPSbEphError(const char* text) { ClassError("GPSbEph", '*', text); }

void GPSbEph::GPSbEphWarning(const char* text) { ClassWarning("GPSbEph", text); }
