#include "PROGINC/ParseArgument.h"

#include "GNSS/ymdhms.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/TextNumber.h"
#include "PROGINC/cstringf.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <string_view>

namespace {

std::string_view Value(const char* arg, int skip) {
  return Columns(arg, static_cast<std::size_t>(std::max(skip, 0)));
}

// Positions in "yyyy-mm-dd hh:mm:ss.s"; "hh:mm:ss.s" has those of its own time of day.
constexpr std::size_t kYear = 0;
constexpr std::size_t kMonth = 5;
constexpr std::size_t kDay = 8;
constexpr std::size_t kTimeOfDay = 11;
constexpr std::size_t kHour = 0;
constexpr std::size_t kMinute = 3;
constexpr std::size_t kSecond = 6;

/// Whole number in \p n columns. One below 0 is greater than any field of a date admits.
unsigned short Field(std::string_view text, std::size_t first, std::size_t n) {
  const int value = ToInt(Columns(text, first, n));
  return value < 0 ? std::numeric_limits<unsigned short>::max()
                   : static_cast<unsigned short>(value);
}

} // namespace

void ParseFileName(const char* arg, char* out, int skip) { substr(arg, std::max(skip, 0), out); }

void GetFileName(const char* arg, char* out, bool& flag, const bool& verbose, short skip,
                 const char* message) {
  ParseFileName(arg, out, skip);
  flag = true;
  if (verbose) std::cerr << message << out << '!' << std::endl;
}

float ParseFloat(const char* arg, int skip) { return ToFloat(Value(arg, skip)); }

double ParseDouble(const char* arg, int skip) { return ToDouble(Value(arg, skip)); }

int ParseInteger(const char* arg, int skip) { return ToInt(Value(arg, skip)); }

long double ParseHMS(const char* arg, int skip) {
  const std::string_view text = Value(arg, skip);
  return ToInt(Columns(text, kHour, 2)) * 3600 + ToInt(Columns(text, kMinute, 2)) * 60 +
         static_cast<long double>(ToDouble(Columns(text, kSecond)));
}

void ParseDate(const char* arg, ymdhms& t, int skip) {
  const std::string_view date = Value(arg, skip);
  const std::string_view time = Columns(date, kTimeOfDay);
  t.SetYear(Field(date, kYear, 4));
  t.SetMonth(Field(date, kMonth, 2));
  t.SetDay(Field(date, kDay, 2));
  t.SetHour(Field(time, kHour, 2));
  t.SetMinute(Field(time, kMinute, 2));
  t.SetSecond(ToDouble(Columns(time, kSecond)));
}
