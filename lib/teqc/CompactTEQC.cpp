#include "teqc/CompactTEQC.h"

#include "GNSS/SatelliteNumber.h"
#include "PROGINC/FileName.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/TextNumber.h"
#include "PROGINC/cfilef.h"
#include "matrix/UniqList.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace {

constexpr std::size_t kLineLimit = 255;
constexpr std::size_t kColInterval = 6;  // behind "T_SAMP"
constexpr std::size_t kColStart = 14;    // behind "START_TIME_MJD"
constexpr std::size_t kToken = 4;        // a blank, the system letter, two digits
constexpr std::size_t kField = 10;       // a value
constexpr std::size_t kColSlip = 8;      // of a field
constexpr int kSatellites = 300;         // satellite numbers are below this
constexpr double kLongestInterval = 1e9; // [s], thirty years
constexpr double kLastDay = 200000;      // behind the last day of mjd
constexpr const char* kSpace = " \t\v\f\r";

struct Header {
  bool compact2 = false; // the first line says so
  double interval = 0;   // [s]
  double start = 0;      // fractional MJD
};

// Reads up to the line with the start time, which the data follow. The source has failed where
// a label is missing; nothing is read from it then. A line may carry several labels.
Header ReadHeader(LineSource& source) {
  Header header;
  std::string_view line;
  source.Next(line, kLineLimit);
  header.compact2 = Contains(line, "COMPACT2");
  if (!Contains(line, "T_SAMP")) line = source.Find("T_SAMP", kLineLimit);
  header.interval = ToDouble(Columns(line, kColInterval));
  if (!Contains(line, "START_TIME_MJD")) line = source.Find("START_TIME_MJD", kLineLimit);
  header.start = ToDouble(Columns(line, kColStart));
  return header;
}

// Cuts the whole number off the start of the line; false without one.
bool TakeNumber(std::string_view& line, int& number) {
  std::string_view text = line.substr(line.find_first_not_of(kSpace));
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  const auto [behind, fault] = std::from_chars(text.data(), end, number);
  if (fault != std::errc()) return false;
  line = std::string_view(behind, static_cast<std::size_t>(end - behind));
  return true;
}

} // namespace

void CompactTEQC::SetFile(const char* name) {
  CopyFileName(name, compfile);
  if (!FileExists(compfile)) ProgramError("Zenta", "TEQC COMPACT FILE DOES NOT EXISTS!");
}

void CompactTEQC::ReadFile() {
  LineSource source = LineSource::FromFile(compfile);
  CheckData(source);
  SetData();
  source.Rewind();
  ReadData(source);
}

void CompactTEQC::CheckData(LineSource& source) {
  nobs = 0;
  neph = 0;
  const Header header = ReadHeader(source);
  if (!header.compact2)
    ProgramError("Zenta", "TEQC COMPACT FILE IS NOT WRITTEN IN VERSION COMPACT2!");
  version = 2;
  if (!(std::fabs(header.interval) <= kLongestInterval)) FileError("SAMPLING INTERVAL");
  if (!(header.start >= 0 && header.start < kLastDay)) FileError("START TIME");
  interval = static_cast<float>(header.interval);

  EpochLines lines;
  while (NextEpoch(source, lines)) {
    if (lines.n == 0) continue;
    if (nobs > std::numeric_limits<int>::max() - lines.count) FileError("NUMBER OF VALUES");
    nobs += lines.count;
    ++neph;
  }
}

void CompactTEQC::SetData() {
  nsat.Resize(neph);
  eph.Resize(neph);
  obs.Resize(nobs);
  sat.Resize(nobs);
  slip.Resize(nobs);
}

void CompactTEQC::ReadData(LineSource& source) {
  matrix<short> seen(kSatellites, 1, 0);
  mjd t;
  t = static_cast<long double>(ReadHeader(source).start);
  long e = 0;
  long start = 0;
  EpochLines lines;
  while (NextEpoch(source, lines)) {
    if (lines.n != 0) {
      eph(e) = t;
      nsat(e) = static_cast<unsigned short>(lines.count);
      ParseSat(lines.list, lines.count, start, seen);
      ParseObsLine(lines.values, lines.count, start);
      start += lines.count;
      ++e;
    }
    t += static_cast<long double>(interval);
  }

  // The first entry is the 0 of the numbers that were not seen.
  const matrix<short> numbers = UniqList(seen);
  satList.Resize(numbers.NRow() - 1);
  for (long i = 0; i < satList.NRow(); ++i)
    satList(i) = static_cast<unsigned short>(numbers(i + 1));
}

void CompactTEQC::ParseObsLine(std::string_view line, int n, long start) {
  for (int j = 0; j < n; ++j) {
    const std::string_view field = Columns(line, kField * static_cast<std::size_t>(j), kField);
    obs(start + j) = ToDouble(field);
    slip(start + j) = Column(field, kColSlip) == ' ';
  }
}

void CompactTEQC::ParseSat(std::string_view line, int n, long start, matrix<short>& seen) {
  for (int j = 0; j < n; ++j) {
    const int number = SatelliteNumber(line, kToken * static_cast<std::size_t>(j) + 1);
    if (number < 0 || number >= kSatellites) FileError("SATELLITE LIST");
    sat(start + j) = static_cast<unsigned short>(number);
    seen(number) = static_cast<short>(number);
  }
}

bool CompactTEQC::NextEpoch(LineSource& source, EpochLines& lines) const {
  std::string_view line;
  do {
    if (!source.Next(line, kLineLimit)) return false;
  } while (line.find_first_not_of(kSpace) == std::string_view::npos);
  if (!TakeNumber(line, lines.n)) return false;
  lines.values = {};
  if (lines.n == 0) return true;
  if (lines.n > 0) {
    if (static_cast<std::size_t>(lines.n) > line.size() / kToken) FileError("SATELLITE LIST");
    lines.count = lines.n;
    lines.list = line;
  }
  source.Next(lines.values, kLineLimit);
  return true;
}

void CompactTEQC::FileError(const char* what) const {
  const std::string text = std::string(what) + " NOT VALID IN TEQC COMPACT FILE " + compfile + "!";
  ProgramError("Zenta", text.c_str());
}
