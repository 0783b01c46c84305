#include "GNSS/ClkErr.h"

#include "PROGINC/FileName.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/TextNumber.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::size_t kLineLimit = 99;
constexpr std::string_view kHeaderEnd = "END OF HEADER";
constexpr std::string_view kKeyGpsGln = "GPS_GLONASS:";
constexpr std::size_t kColGpsGln = 12; // behind the key at the line start
constexpr double kSecondsPerMicrosecond = 1e-6;

/// The numbers of a data line.
struct ClockLine {
  unsigned day = 0;      ///< Modified Julian Day
  double second = 0;     ///< [s] of the day
  double correction = 0; ///< [microseconds]
};

/// Reads a number at \p at and moves behind it. \returns false, with \p value and \p at as they
/// were, where there is none.
bool ReadDay(const char*& at, unsigned& value) {
  char* end = nullptr;
  const long day = std::strtol(at, &end, 10);
  if (end == at) return false;
  // What does not fit, a negative day too, is a day that mjd refuses.
  constexpr unsigned kLargest = std::numeric_limits<unsigned>::max();
  value = day < 0 || day > long{kLargest} ? kLargest : static_cast<unsigned>(day);
  at = end;
  return true;
}

bool ReadNumber(const char*& at, double& value) {
  char* end = nullptr;
  const double number = std::strtod(at, &end);
  if (end == at || !std::isfinite(number)) return false;
  value = number;
  at = end;
  return true;
}

/// Replaces the numbers that \p line has, up to the first that can't be read.
void Update(ClockLine& numbers, std::string_view line) {
  char text[kLineLimit + 1];
  CopyText(line, text);
  const char* at = text;
  if (ReadDay(at, numbers.day) && ReadNumber(at, numbers.second))
    ReadNumber(at, numbers.correction);
}

} // namespace

void ClkErr::SetFile(const char* name) { CopyFileName(name, clkfile); }

void ClkErr::ReadFile() {
  LineSource source = LineSource::FromFile(clkfile);
  ReadFileHeader(source);
  epoch.Resize(nepoch);
  CErr.Resize(nepoch);
  source.Rewind();
  ReadFileData(source);
}

void ClkErr::ReadFileHeader(LineSource& source) {
  gps_gln = 0;
  nepoch = 0;
  std::string_view line;
  while (source.Next(line, kLineLimit)) {
    if (Contains(line, kKeyGpsGln)) gps_gln = ToDouble(Columns(line, kColGpsGln));
    if (Contains(line, kHeaderEnd)) break;
  }
  while (source.Skip(kLineLimit)) ++nepoch;
}

void ClkErr::ReadFileData(LineSource& source) {
  source.Find(kHeaderEnd, kLineLimit);
  ClockLine numbers;
  std::string_view line;
  for (long i = 0; i < nepoch && source.Next(line, kLineLimit); ++i) {
    Update(numbers, line);
    epoch(i).Set(numbers.day, numbers.second);
    CErr(i) = static_cast<long double>(numbers.correction) * kSecondsPerMicrosecond;
  }
}
