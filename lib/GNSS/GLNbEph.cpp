#include "GNSS/GLNbEph.h"

#include "ClassMessage.h"
#include "GNSS/DateField.h"
#include "GNSS/TimeConverse.h"
#include "GNSS/gnssobs.h"
#include "NavFile.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/TextNumber.h"
#include "TravelTime.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <istream>
#include <limits>

namespace {

// Columns of a record's values.
constexpr long kClockBias = 0;
constexpr long kFrequencyBias = 1;
constexpr long kX = 3; // position, velocity, acceleration; the same for Y and Z
constexpr long kY = 7;
constexpr long kZ = 11;

// Columns of the header lines, counted from 0.
constexpr std::size_t kColYear = 0;
constexpr std::size_t kColMonth = 6;
constexpr std::size_t kColDay = 12;
constexpr std::size_t kDateWidth = 6;
constexpr std::size_t kColTauC = 20;
constexpr std::size_t kTauCMantissa = 16;

constexpr int kRecordLines = 4;
constexpr int kMostPasses = 50;           // of the travel time
constexpr long double kOldEpoch = 960.0L; // [s] from the record
constexpr long double kSecondsPerDay = 86400.0L;
constexpr long double kMetresPerKm = 1000.0L;

} // namespace

bool GLNbEphHeader::Read(LineSource& source) {
  return ReadHeaderLines(source, [this](std::string_view line) { ParseLine(line); });
}

void GLNbEphHeader::ParseLine(std::string_view line) {
  if (Contains(line, "RINEX VERSION / TYPE")) return ParseRVersionType(line);
  if (Contains(line, "PGM / RUN BY / DATE")) return ParsePgmRunByDate(line);
  if (Contains(line, "CORR TO SYSTEM TIME")) return ParseCorrSystemTime(line);
  if (Contains(line, "LEAP SECONDS")) return ParseLeapS(line);
  if (Contains(line, "COMMENT")) return;
  GLNbEphHeaderWarning(UnknownLabel(line).c_str());
}

void GLNbEphHeader::ParseRVersionType(std::string_view line) {
  ReadVersionType(line, version, type);
}

void GLNbEphHeader::ParsePgmRunByDate(std::string_view line) {
  ReadPgmRunByDate(line, pgm, runby, date);
}

void GLNbEphHeader::ParseCorrSystemTime(std::string_view line) {
  const auto number = [line](std::size_t column) {
    return DateField(Columns(line, column, kDateWidth));
  };
  RefTimeCorr.Set(number(kColYear), number(kColMonth), number(kColDay), 0, 0, 0);
  TauC = HeaderNumber(line, kColTauC, kTauCMantissa);
}

void GLNbEphHeader::ParseLeapS(std::string_view line) { leaps = ReadLeapSeconds(line); }

void GLNbEphHeader::GLNbEphHeaderWarning(const char* text) { ClassWarning("GLNbEphHeader", text); }

std::istream& operator>>(std::istream& in, GLNbEphHeader& header) {
  LineSource source = TakeHeader(in);
  return MarkIncomplete(in, header.Read(source));
}

void GLNbEphData::SetNRecords(int n) {
  index.Clear();
  nsatall = n;
  sat.Resize(n);
  mjdo.Resize(n);
  data.Resize(n, NValues);
}

bool GLNbEphData::Read(LineSource& source) {
  if (nsatall == 0) GLNbEphDataError("NUMBER OF RECORDS not set!");
  const auto gpsTime = [](const ymdhms& utc) {
    mjd t = ymdhms2mjd(utc);
    t += static_cast<long double>(LeapSecond(t));
    return t;
  };
  index.Clear();
  return ReadRecords(source, *this, gpsTime, ReadParameter);
}

const std::vector<long>& GLNbEphData::RecordsOf(short slot) const {
  return index.Of(slot, sat, nsatall);
}

long double GLNbEphData::ReadParameter(LineSource& source) { return ReadExponentNumber(source); }

void GLNbEphData::GLNbEphDataWarning(const char* text) { ClassWarning("GLNbEphData", text); }

void GLNbEphData::GLNbEphDataError(const char* text) { ClassError("GLNbEphData", '#', text); }

std::istream& operator>>(std::istream& in, GLNbEphData& data) {
  LineSource source = LineSource::FromStream(in);
  return MarkIncomplete(in, data.Read(source));
}

void GLNbEph::SetFile(const char* name) { CopyText(name, navig); }

void GLNbEph::ReadFile() {
  LineSource source = LineSource::FromFile(navig);
  CountNav(source);
  source.Rewind();
  ReadNav(source);
}

void GLNbEph::CountNav(LineSource& source) {
  rhead.Read(source);
  nsatall = static_cast<int>(CountRecords(source, kRecordLines, std::numeric_limits<short>::max()));
  rdata.SetNRecords(nsatall);
}

void GLNbEph::ReadNav(LineSource& source) {
  rhead.Read(source);
  rdata.Read(source);
  nsatall = rdata.nsatall;
}

long GLNbEph::GetDataIndex(short slot, const mjd& tsel) const {
  long previous = -1;
  for (const long k : rdata.RecordsOf(slot)) {
    const mjd& epoch = rdata.mjdo(k);
    if (previous < 0) {
      if (tsel < epoch) return k;
    } else if (tsel <= epoch && tsel > rdata.mjdo(previous)) {
      const long double days = tsel.GetMJDDec();
      const bool laterIsNearer = epoch.GetMJDDec() - days < days - rdata.mjdo(previous).GetMJDDec();
      return laterIsNearer ? k : previous;
    }
    previous = k;
  }
  if (previous >= 0) return previous;
  char text[64];
  std::snprintf(text, sizeof text, "SAT: R%02d IS NOT LISTED IN GLONASS NAVIGATION FILE!!!", slot);
  GLNbEphError(text);
}

void GLNbEph::WarnOfAge(short slot, const mjd& t, long double dt) const {
  const ymdhms date = mjd2ymdhms(t);
  char text[128];
  // The letter is G for a GLONASS slot too.
  std::snprintf(
      text, sizeof text,
      "SAT: G%02d [%4d-%02d-%02d %02d:%02d:%04.1lf] -> DT = %5.2lf' PARAMETER TO BIG [>16']", slot,
      date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(), date.GetMinute(),
      static_cast<double>(date.GetSecond()), static_cast<double>(dt / 60.0L));
  GLNbEphWarning(text);
}

void GLNbEph::DiffEqTwoBody(const matrix<long double>& y, long double GM, long double omega,
                            long double aE, long double C20, long double ax, long double ay,
                            long double az, matrix<long double>& dy) {
  GLNTrack::State state, derivative;
  for (long i = 0; i < 6; ++i) state[static_cast<std::size_t>(i)] = y(i);
  GLNTrack::Derivative(state.data(), {GM, omega, aE, C20, ax, ay, az}, derivative.data());
  for (long i = 0; i < 6; ++i) dy(i) = derivative[static_cast<std::size_t>(i)];
}

void GLNbEph::CalcSatPosition(short slot, const mjd& t, const mjd& tsel, xyzt& pos, xyzt& vel,
                              short warn) {
  Orbit orbit = OrbitOf(GetDataIndex(slot, tsel));
  GLNTrack::State y;
  FindPosition(t, orbit, warn, y);
  Complete(orbit, y, pos, vel);
}

GLNbEph::Orbit GLNbEph::OrbitOf(long k) const {
  mjd te = rdata.mjdo(k);
  te += rhead.TauC;
  return {k, te, te.GetMJDDec()};
}

void GLNbEph::FindPosition(const mjd& t, Orbit& orbit, short warn, GLNTrack::State& y) {
  const short slot = rdata.sat(orbit.k);
  ephr = t;
  const long double days = t.GetMJDDec();
  orbit.dt = kSecondsPerDay * (days - orbit.days);
  if (warn != 0 && std::fabs(orbit.dt) > kOldEpoch) WarnOfAge(slot, t, orbit.dt);
  GLNTrack& track = TrackOf(slot);
  const int direction = orbit.dt < 0 ? -1 : 1;
  if (direction != orbit.direction) {
    orbit.direction = direction;
    track.Begin(StartOf(orbit));
  }
  track.PositionAt(t, days, y);
}

GLNTrack& GLNbEph::TrackOf(short slot) {
  return tracks[static_cast<unsigned short>(slot) % tracks.size()];
}

GLNTrack::Start GLNbEph::StartOf(const Orbit& orbit) const {
  const auto metres = [&](long column) { return rdata.data(orbit.k, column) * kMetresPerKm; };
  return {{metres(kX), metres(kY), metres(kZ), metres(kX + 1), metres(kY + 1), metres(kZ + 1)},
          {GMz, OMEGAz, aE, C20, metres(kX + 2), metres(kY + 2), metres(kZ + 2)},
          orbit.epoch,
          orbit.direction,
          diffinterval};
}

// Velocity, clock and relativity of the last position, and all of it to the caller.
void GLNbEph::Complete(const Orbit& orbit, GLNTrack::State& y, xyzt& pos, xyzt& vel) {
  TrackOf(rdata.sat(orbit.k)).CompleteVelocity(y);
  const auto value = [&](long column) { return rdata.data(orbit.k, column); };
  const long double clock = value(kClockBias) - value(kFrequencyBias) * orbit.dt + rhead.TauC;
  constexpr long double c = kSignalSpeed;
  Relativity = 2.0L * (y[0] * y[3] + y[1] * y[4] + y[2] * y[5]) / (c * c);
  p0.Set(y[0], y[1], y[2], clock - Relativity);
  v0.Set(y[3], y[4], y[5], 0);
  pos = p0;
  vel = v0;
}

long double GLNbEph::CalcSatPosition(short slot, const mjd& t, const mjd& tsel, const xyz& rec,
                                     xyzt& pos, xyzt& vel, short warn) {
  Orbit orbit = OrbitOf(GetDataIndex(slot, tsel));
  GLNTrack::State y;
  mjd emission;
  // A pass needs the position alone; the rest is that of the last pass.
  const TravelResult travel =
      IterateTravelTime(t, rec, OMEGAz, kMostPasses, emission, ps, [&]() -> xyz {
        FindPosition(emission, orbit, warn, y);
        return {y[0], y[1], y[2]};
      });
  Complete(orbit, y, pos, vel);
  if (!travel.settled)
    GLNbEphWarning("GLNbEph::CalcSatPosition():      TO MANY ITERATIONS: > 50!!");
  return travel.range;
}

long double GLNbEph::CalcSatPosition(short slot, const mjd& t, const mjd& tsel, const xyz& rec,
                                     xyzt& pos, xyzt& vel, const gnssobs& obs, short warn) {
  const long double tau = obs.GetObs() / kSignalSpeed; // [s]
  mjd emission;
  if (!SetEmissionEpoch(t, -tau, emission)) return -1;
  CalcSatPosition(slot, emission, tsel, pos, vel, warn);
  pos = pos.RotateZ(OMEGAz * tau);
  return (rec - pos).GetLength();
}

unsigned long GLNbEph::GetSteps() const {
  unsigned long steps = 0;
  for (const GLNTrack& track : tracks) steps += track.Steps();
  return steps;
}

void GLNbEph::PrintParameter(const char* name, long double value) { WriteParameter(name, value); }

void GLNbEph::GLNbEphError(const char* text) { ClassError("GLNbEph", '*', text); }

void GLNbEph::GLNbEphWarning(const char* text) { ClassWarning("GLNbEph", text); }
