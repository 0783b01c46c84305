#include "NavFile.h"

#include "NumberField.h"
#include "PROGINC/InputInWork.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/TextNumber.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <limits>
#include <sstream>

namespace {

// Columns of RINEX 2.11, tables A3 and A10, counted from 0.
constexpr std::size_t kColType = 20;
constexpr std::size_t kColRunBy = 20;
constexpr std::size_t kColDate = 40;
constexpr std::size_t kColLabel = 60;
constexpr std::size_t kExponentWidth = 3;
// Characters of a record within which its date must end.
constexpr std::size_t kDateWindow = 256;

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

void PassSpaces(LineSource& source) {
  const std::string_view rest = source.Rest();
  const auto first = std::find_if_not(rest.begin(), rest.end(), IsSpace);
  source.Advance(static_cast<std::size_t>(first - rest.begin()));
}

// A sign and digits, kExponentWidth characters at most; empty when there is no digit.
std::string_view TakeExponent(LineSource& source) {
  PassSpaces(source);
  const std::string_view field = source.Rest().substr(0, kExponentWidth);
  const std::size_t sign = !field.empty() && (field[0] == '-' || field[0] == '+') ? 1 : 0;
  std::size_t n = sign;
  while (n < field.size() && IsDigit(field[n])) ++n;
  if (n == sign) return {};
  source.Advance(n);
  return field.substr(0, n);
}

} // namespace

double ScaledNumber(std::string_view mantissa, std::string_view exponent) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  double number = 0;
  if (!ReadNumber(mantissa, number)) return kNone;
  if (number == 0) return 0; // also times what overflows
  number *= std::pow(10.0, ToInt(exponent));
  return std::isfinite(number) ? number : kNone;
}

long double HeaderNumber(std::string_view line, std::size_t column, std::size_t mantissa) {
  return FiniteOrZero(ScaledNumber(Columns(line, column, mantissa),
                                   Columns(line, column + mantissa + 1, kExponentWidth)));
}

void ReadVersionType(std::string_view line, float& version, char (&type)[20]) {
  version = ToFloat(Columns(line, 0, 9));
  CopyText(Trimmed(Columns(line, kColType, 19)), type);
}

void ReadPgmRunByDate(std::string_view line, char (&pgm)[21], char (&runby)[21], char (&date)[21]) {
  CopyText(Trimmed(Columns(line, 0, 20)), pgm);
  CopyText(Trimmed(Columns(line, kColRunBy, 20)), runby);
  CopyText(Trimmed(Columns(line, kColDate, 20)), date);
}

short ReadLeapSeconds(std::string_view line) { return ToWhole<short>(Columns(line, 0, 6)); }

std::string UnknownLabel(std::string_view line) {
  return std::string(Columns(line, kColLabel)) + " -> UNKNOWN HEADER LABEL";
}

LineSource TakeHeader(std::istream& in) {
  std::string text;
  std::string line;
  while (std::getline(in, line)) {
    text += line + '\n';
    if (Contains(line, "END OF HEADER")) break;
  }
  return LineSource(std::move(text));
}

std::istream& MarkIncomplete(std::istream& in, bool complete) {
  in.clear(in.eof() ? std::ios::eofbit : std::ios::goodbit);
  if (!complete) in.setstate(std::ios::failbit);
  return in;
}

bool ReadSatelliteNumber(LineSource& source, unsigned most, unsigned& number) {
  PassSpaces(source);
  const std::string_view rest = source.Rest();
  const char* const begin = rest.data();
  const auto [end, error] = std::from_chars(begin, begin + rest.size(), number);
  if (source.Failed() || error != std::errc() || number > most) {
    source.Fail();
    return false;
  }
  source.Advance(static_cast<std::size_t>(end - begin));
  return true;
}

unsigned CountRecords(LineSource& source, int lines, unsigned most) {
  unsigned count = 0;
  unsigned ignored = 0;
  while (ReadSatelliteNumber(source, most, ignored)) {
    ++count;
    for (int line = 0; line < lines; ++line) source.Skip(kNavRecordLimit);
  }
  return count;
}

bool ReadCalendar(LineSource& source, ymdhms& date) {
  std::istringstream in{std::string(source.Rest().substr(0, kDateWindow))};
  if (source.Failed() || !(in >> date)) {
    source.Fail();
    return false;
  }
  in.clear(); // the position of a stream that has met its end can't be asked
  source.Advance(static_cast<std::size_t>(in.tellg()));
  return true;
}

long double ReadExponentNumber(LineSource& source) {
  const std::string_view rest = source.Rest();
  const std::size_t letter = rest.find_first_of("DE");
  if (source.Failed() || letter == std::string_view::npos) {
    source.Fail();
    return 0;
  }
  source.Advance(letter + 1);
  const std::string_view exponent = TakeExponent(source);
  if (exponent.empty()) {
    source.Fail();
    return 0;
  }
  return ScaledNumber(rest.substr(0, letter), exponent);
}

void WarnOfRecord(unsigned number) {
  std::ostringstream text;
  text << "RECORD OF SATELLITE " << std::setfill('0') << std::setw(2) << number
       << " NOT VALID IN NAVIGATION FILE " << InputInWork::Name() << " - NO POSITION FROM IT!";
  ProgramWarning("Zenta", text.str().c_str());
}

void WriteParameter(const char* name, long double value) {
  std::ostringstream out;
  out << name << std::scientific << std::setprecision(15) << value << "\n";
  std::cout << out.str();
}
