#include "GNSS/DCB.h"

#include "GNSS/SatelliteNumber.h"
#include "GNSS/TimeConverse.h"
#include "PROGINC/FileName.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/TextNumber.h"

#include <cctype>
#include <cstdio>
#include <limits>

namespace {

constexpr std::size_t kLineLimit = 511;
constexpr std::string_view kHeaderEnd = "PRN / STATION NAME";

// Columns of a satellite line, from 0.
constexpr std::size_t kColSystem = 0;
constexpr std::size_t kColTens = 1;
constexpr std::size_t kColOnes = 2;
constexpr std::size_t kColBlank = 3;
constexpr std::size_t kColValue = 26; // [ns]
constexpr std::size_t kColRms = 38;   // [ns]

// Where the year begins in a file name, counted from its end; the month follows.
constexpr std::size_t kYearFromEnd = 8;
constexpr std::size_t kYearFromEndAll = 12; // with the suffix _ALL

constexpr double kSecondsPerNs = 1e-9;
constexpr long double kMillisecond = 0.001; // [s] the double value
constexpr unsigned short kLastYearOf2000 = 78;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

/// [s] from a number in nanoseconds.
long double Bias(std::string_view line, std::size_t column) {
  return static_cast<long double>(ToDouble(Columns(line, column))) * kSecondsPerNs;
}

mjd FirstOfMonth(int year, int month) {
  return ymdhms2mjd(
      ymdhms(static_cast<unsigned short>(year), static_cast<unsigned short>(month), 1, 0, 0, 0.0L));
}

void WarnNotListed(short sat, const char* what) {
  char text[100];
  std::snprintf(text, sizeof text,
                "SATELLITE: %02d NOT LISTED IN DCB VALUES - SETTING 0.0s VALUES%s!", sat, what);
  ProgramWarning("Zenta", text);
}

} // namespace

void DCB::SetFile(const char* name) { CopyFileName(name, file); }

void DCB::ReadFile() {
  ParseValidDate();
  LineSource source = LineSource::FromFile(file);
  CheckData(source);
  sat.Resize(nsat);
  VAL.Resize(nsat);
  RMS.Resize(nsat);
  source.Rewind();
  ReadData(source);
}

void DCB::CheckData(LineSource& source) {
  nsat = 0;
  source.Find(kHeaderEnd, kLineLimit);
  std::string_view line;
  while (nsat < std::numeric_limits<short>::max() && source.Next(line, kLineLimit))
    if (IsSatelliteLine(line)) ++nsat;
}

void DCB::ReadData(LineSource& source) {
  source.Find(kHeaderEnd, kLineLimit);
  std::string_view line;
  for (long i = 0; i < nsat && source.Next(line, kLineLimit);) {
    if (!IsSatelliteLine(line)) continue;
    sat(i) = ParseSatelliteNum(line);
    VAL(i) = Bias(line, kColValue);
    RMS(i) = Bias(line, kColRms);
    ++i;
  }
}

bool DCB::IsSatelliteLine(std::string_view line) {
  const char system = Column(line, kColSystem);
  return (system == 'G' || system == 'R') && IsDigit(Column(line, kColTens)) &&
         IsDigit(Column(line, kColOnes)) && IsSpace(Column(line, kColBlank));
}

short DCB::ParseSatelliteNum(std::string_view line) { return SatelliteNumber(line, kColSystem); }

void DCB::ParseValidDate() {
  const std::string_view name(file);
  const std::size_t fromEnd = Contains(name, "_ALL") ? kYearFromEndAll : kYearFromEnd;
  StartEpoch.Set(44250, 0.0L);
  EndEpoch.Set(85000, 0.0L);
  if (name.size() < fromEnd) return;
  const std::string_view yearText = name.substr(name.size() - fromEnd, 2);
  const std::string_view monthText = name.substr(name.size() - fromEnd + 2, 2);
  if (!IsDigit(yearText[0]) || !IsDigit(yearText[1]) || !IsDigit(monthText[0])) return;

  const int shortYear = ToInt(yearText);
  const int year = (shortYear <= kLastYearOf2000 ? 2000 : 1900) + shortYear;
  const int month = ToInt(monthText);
  StartEpoch = FirstOfMonth(year, month);
  EndEpoch = month == 12 ? FirstOfMonth(year + 1, 1) : FirstOfMonth(year, month + 1);
  EndEpoch += -kMillisecond;
}

long DCB::Find(short wanted) const {
  for (long i = 0; i < nsat; ++i)
    if (sat(i) == wanted) return i;
  return -1;
}

void DCB::GetDCB(short wanted, long double& val, long double& rms) const {
  const long i = Find(wanted);
  if (i < 0) WarnNotListed(wanted, "");
  val = i < 0 ? 0 : VAL(i);
  rms = i < 0 ? 0 : RMS(i);
}

long double DCB::GetDCBRMS(short wanted) const {
  const long i = Find(wanted);
  if (i < 0) WarnNotListed(wanted, " FOR RMS");
  return i < 0 ? 0 : RMS(i);
}

long double DCB::GetDCBVAL(short wanted) const {
  const long i = Find(wanted);
  if (i < 0) WarnNotListed(wanted, " FOR VAL");
  return i < 0 ? 0 : VAL(i);
}
