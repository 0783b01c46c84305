#include "GNSS/RINEXf.h"

#include "PROGINC/LineSource.h"
#include "PROGINC/TextNumber.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t kColLabel = 60;
constexpr std::size_t kFieldWidth = 16; // one observation

// The start of an epoch line, columns from 0: 'd' a digit, 'o' a digit or a blank, anything
// else itself.
constexpr std::string_view kEpochPattern = " od od od od od oo.ddddddd";
constexpr std::size_t kEpochLongerThan = 32; // the list of satellites begins there

constexpr std::size_t kColYear = 0;
constexpr std::size_t kColMonth = 4;
constexpr std::size_t kColDay = 7;
constexpr std::size_t kColHour = 10;
constexpr std::size_t kColMinute = 13;
constexpr std::size_t kColSecond = 16;
constexpr std::size_t kSecondWidth = 10;
constexpr std::size_t kColCount = 30;

// By hand: the functions of <cctype> ask the locale and do not take negative characters.
bool IsDigit(char c) { return '0' <= c && c <= '9'; }
bool IsLetter(char c) { return ('A' <= c && c <= 'Z') || ('a' <= c && c <= 'z'); }

bool Matches(char c, char pattern) {
  if (pattern == 'd') return IsDigit(c);
  if (pattern == 'o') return IsDigit(c) || c == ' ';
  return c == pattern;
}

// The whole number in two columns, which as a rule are a digit and a digit or blank before it.
int TwoColumns(std::string_view line, std::size_t column) {
  const char tens = Column(line, column);
  const char units = Column(line, column + 1);
  if (!IsDigit(units) || !(IsDigit(tens) || tens == ' ')) return ToInt(Columns(line, column, 2));
  return (tens == ' ' ? 0 : 10 * (tens - '0')) + (units - '0');
}

unsigned short TwoDigits(std::string_view line, std::size_t column) {
  return static_cast<unsigned short>(TwoColumns(line, column));
}

} // namespace

bool ishash(char c) { return c == '#'; }

bool isampersand(char c) { return c == '&'; }

bool iscomment(std::string_view line) {
  return line.size() > kColLabel && (IsLetter(line[kColLabel]) || ishash(line[kColLabel]));
}

bool IsFirstObsLine(std::string_view line) {
  if (line.size() <= kEpochLongerThan) return false;
  return std::equal(kEpochPattern.begin(), kEpochPattern.end(), line.begin(),
                    [](char pattern, char c) { return Matches(c, pattern); });
}

void ParseFirstObsLine(std::string_view line, unsigned short& year, unsigned short& month,
                       unsigned short& day, unsigned short& hour, unsigned short& minute,
                       long double& second, short& count) {
  const int yy = ToInt(Columns(line, kColYear, 3));
  year = static_cast<unsigned short>(yy + (yy > 79 ? 1900 : 2000));
  month = TwoDigits(line, kColMonth);
  day = TwoDigits(line, kColDay);
  hour = TwoDigits(line, kColHour);
  minute = TwoDigits(line, kColMinute);
  second = ToDouble(Columns(line, kColSecond, kSecondWidth));
  count = SatellitesOfFirstObsLine(line);
}

short SatellitesOfFirstObsLine(std::string_view line) {
  return static_cast<short>(std::max(0, TwoColumns(line, kColCount)));
}

void FillObsLine(char* line, unsigned short n) {
  const std::size_t width = n * kFieldWidth;
  const std::size_t length = strnlen(line, width);
  std::fill(line + length, line + width, ' ');
  line[width] = '\0';
}
