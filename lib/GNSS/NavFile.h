#ifndef GNSS_NAVFILE_H
#define GNSS_NAVFILE_H

#include "GNSS/TimeConverse.h"
#include "GNSS/mjd.h"
#include "PROGINC/LineSource.h"
#include "matrix/UniqList.h"
#include "matrix/matrix.h"

#include <cmath>
#include <cstddef>
#include <iosfwd>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/// What the readers of GPS and GLONASS navigation files share: RINEX 2 header lines, records of
/// a satellite number, an epoch and numbers with D exponents, and the messages of their classes.

constexpr std::size_t kNavHeaderLimit = 99;  ///< longest header line
constexpr std::size_t kNavRecordLimit = 255; ///< longest line of a record, where it is passed over

/// \p mantissa times ten to the power \p exponent, in double precision; nan where that overflows or
/// the mantissa is no number.
double ScaledNumber(std::string_view mantissa, std::string_view exponent);
/// A number of a header line as fixed columns: mantissa, one exponent letter, exponent. What is no
/// number is 0.
long double HeaderNumber(std::string_view line, std::size_t column, std::size_t mantissa);

/// The line RINEX VERSION / TYPE.
void ReadVersionType(std::string_view line, float& version, char (&type)[20]);
/// The line PGM / RUN BY / DATE.
void ReadPgmRunByDate(std::string_view line, char (&pgm)[21], char (&runby)[21], char (&date)[21]);
/// Leap seconds of the line LEAP SECONDS.
short ReadLeapSeconds(std::string_view line);
/// Text of the warning of a line of no known label.
std::string UnknownLabel(std::string_view line);

/// Hands the lines before END OF HEADER to \p parse, which takes a string_view.
/// \returns whether END OF HEADER was found.
template <typename Parse> bool ReadHeaderLines(LineSource& source, Parse parse) {
  std::string_view line;
  while (source.Next(line, kNavHeaderLimit)) {
    if (Contains(line, "END OF HEADER")) return true;
    parse(line);
  }
  return false;
}
/// The lines of \p in up to and including END OF HEADER.
LineSource TakeHeader(std::istream& in);
/// The stream fails where \p complete is false.
std::istream& MarkIncomplete(std::istream& in, bool complete);

/// The satellite number that a record starts with: blanks and line ends, then digits.
/// \returns false, and the source fails, when there is none or it is above \p most.
bool ReadSatelliteNumber(LineSource& source, unsigned most, unsigned& number);
/// Number of records of \p lines lines from here on. Only their starts are looked at.
unsigned CountRecords(LineSource& source, int lines, unsigned most);
/// A calendar date and time of day in free format; one that is no date ends the program.
bool ReadCalendar(LineSource& source, ymdhms& date);
/// A number of a record: all characters up to a D or E, line ends included, are its mantissa; the
/// exponent is a sign and digits of three characters at most. Without them the source fails and
/// the number is 0; with a mantissa that is none, and where it overflows, it is nan.
long double ReadExponentNumber(LineSource& source);

/// \p table with its first \p rows rows alone.
template <typename T> void CutRows(matrix<T>& table, long rows) {
  matrix<T> cut(rows, table.NCol());
  for (long k = 0; k < cut.Length(); ++k) cut(k) = table(k);
  table = std::move(cut);
}

/// Warns that satellite \p number has a record in the file in work with something that is no
/// number.
void WarnOfRecord(unsigned number);

/// Fills the tables of \p records, of class GPSbEphData or GLNbEphData. Where the text is not as
/// it should be, reading stops and the tables are cut to the records that were read completely. Of
/// a record with a value that is no number all values are 0, which makes no orbit, with a warning.
/// \param epochOf        gives the epoch of a record from its date
/// \param readParameter  reads one value
/// \returns whether all were read.
template <typename Records, typename EpochOf, typename ReadParameter>
bool ReadRecords(LineSource& source, Records& records, EpochOf epochOf,
                 ReadParameter readParameter) {
  using Number = std::remove_reference_t<decltype(records.sat(0))>;
  const long counted = static_cast<long>(records.nsatall);
  long k = 0;
  for (; k < counted; ++k) {
    unsigned number = 0;
    if (!ReadSatelliteNumber(source, std::numeric_limits<Number>::max(), number)) break;
    ymdhms date;
    if (!ReadCalendar(source, date)) break;
    records.sat(k) = static_cast<Number>(number);
    records.mjdo(k) = epochOf(date);
    bool isValid = true;
    for (long i = 0; i < Records::NValues; ++i) {
      records.data(k, i) = readParameter(source);
      isValid = isValid && std::isfinite(records.data(k, i));
    }
    if (source.Failed()) break;
    if (!isValid) {
      for (long i = 0; i < Records::NValues; ++i) records.data(k, i) = 0;
      WarnOfRecord(number);
    }
    source.Skip(kNavRecordLimit);
  }
  if (k < counted) {
    records.nsatall = static_cast<decltype(records.nsatall)>(k);
    CutRows(records.sat, k);
    CutRows(records.mjdo, k);
    CutRows(records.data, k);
  }
  records.satList = k > 0 ? UniqList(records.sat) : matrix<Number>();
  return k == counted;
}

/// One named value on standard output in scientific notation with 15 digits.
void WriteParameter(const char* name, long double value);

#endif
