#include "GNSS/ymdhms.h"

#include "GNSS/TimeConverse.h"
#include "GNSS/TimeParts.h"
#include "GNSS/ValueError.h"

#include <cmath>
#include <istream>

namespace {

constexpr int kDecemberPast = 13;

[[noreturn]] void Error(const char* text) { ValueError("ymdhms", text); }

int YearDays(unsigned short year) { return ymdhms::LeapYear(year) ? 366 : 365; }

int MonthDays(unsigned short month, bool leap) {
  if (month == 0) return 31;
  return DaysBefore(month + 1, leap) - DaysBefore(month, leap);
}

} // namespace

ymdhms::ymdhms(unsigned short year, unsigned short month, unsigned short day, unsigned short hour,
               unsigned short minute, long double second)
    : year_(year), month_(month), day_(day), hour_(hour), minute_(minute), second_(second) {
  TestDatum();
}

ymdhms::ymdhms(const ymdhms& other)
    : year_(other.year_), month_(other.month_), day_(other.day_), hour_(other.hour_),
      minute_(other.minute_), second_(other.second_) {
  TestDatum();
}

ymdhms& ymdhms::operator=(const ymdhms& other) {
  Set(other.year_, other.month_, other.day_, other.hour_, other.minute_, other.second_);
  return *this;
}

void ymdhms::Set(unsigned short year, unsigned short month, unsigned short day, unsigned short hour,
                 unsigned short minute, long double second) {
  year_ = year;
  month_ = month;
  day_ = day;
  hour_ = hour;
  minute_ = minute;
  second_ = second;
  TestDatum();
}

void ymdhms::SetYear(unsigned short year) {
  year_ = year;
  TestYear();
}

void ymdhms::SetMonth(unsigned short month) {
  month_ = month;
  TestMonth();
}

void ymdhms::SetDay(unsigned short day) {
  day_ = day;
  TestDay();
}

void ymdhms::SetHour(unsigned short hour) {
  hour_ = hour;
  TestHour();
}

void ymdhms::SetMinute(unsigned short minute) {
  minute_ = minute;
  TestMinute();
}

void ymdhms::SetSecond(long double second) {
  second_ = second;
  TestSecond();
}

void ymdhms::SetHMS(unsigned short hour, unsigned short minute, long double second) {
  SetHour(hour);
  SetMinute(minute);
  SetSecond(second);
}

void ymdhms::SetDayOfYear(unsigned short year, unsigned short doy) {
  SetYear(year);
  SetHMS(0, 0, 0);
  const bool leap = LeapYear(year);
  unsigned short month = 1;
  while (month < kDecemberPast && DaysBefore(month + 1, leap) < doy) ++month;
  SetMonth(month);
  SetDay(static_cast<unsigned short>(doy - DaysBefore(month, leap)));
}

void ymdhms::SetYDec(double y) {
  const unsigned short year = WholePart<unsigned short>(y);
  SetYear(year);
  const long double d = 1 + YearDays(year) * static_cast<long double>(std::fmod(y, 1));
  const unsigned short doy = WholePart<unsigned short>(d);
  SetDayOfYear(year, doy);
  SetDaySecond((d - doy) * kDaySeconds);
}

void ymdhms::SetDaySecond(long double s) {
  unsigned short hour, minute;
  long double second;
  Sec2HMS(s, hour, minute, second);
  SetHMS(hour, minute, second);
}

long double ymdhms::GetDaySecond() const { return hour_ * 3600 + minute_ * 60 + second_; }

unsigned short ymdhms::GetDayOfYear() const {
  return static_cast<unsigned short>(DaysBefore(month_, LeapYear(year_)) + day_);
}

long double ymdhms::GetYearDec() const {
  return year_ + ((GetDayOfYear() - 1) + GetDaySecond() / kDaySeconds) / YearDays(year_);
}

bool ymdhms::LeapYear(unsigned short year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

void ymdhms::TestDatum() const {
  TestYear();
  TestMonth();
  TestDay();
  TestHour();
  TestMinute();
  TestSecond();
}

void ymdhms::TestYear() const {
  if (year_ < 1901 || year_ > 2199) Error("YEAR not valid");
}

void ymdhms::TestMonth() const {
  if (month_ > 12) Error("MONTH not valid");
}

void ymdhms::TestDay() const {
  if (day_ < 1 || day_ > MonthDays(month_, LeapYear(year_))) Error("DAY not valid");
}

void ymdhms::TestHour() const {
  if (hour_ > 59) Error("HOUR not valid");
}

void ymdhms::TestMinute() const {
  if (minute_ > 59) Error("MINUTE not valid");
}

void ymdhms::TestSecond() const {
  if (!(second_ >= 0 && second_ < 60)) Error("SECOND not valid");
}

namespace {

/// Year, month, day, hour and minute in \p width columns each (the year in \p yearWidth), then
/// the seconds.
void WriteColumns(std::ostream& out, const ymdhms& t, int year, int yearWidth, int width,
                  int secondWidth, int decimals) {
  out << std::setw(yearWidth) << year;
  for (const int field : {t.GetMonth(), t.GetDay(), t.GetHour(), t.GetMinute()})
    out << std::setw(width) << field;
  out << std::setprecision(decimals) << std::setw(secondWidth) << t.GetSecond();
}

void WriteYear(std::ostream& out, const ymdhms& t) { out << std::setw(5) << t.GetYear() << '-'; }

void WriteDate(std::ostream& out, const ymdhms& t) {
  WriteYear(out, t);
  WriteZeroFilled(out, 2, t.GetMonth());
  out << '-';
  WriteZeroFilled(out, 2, t.GetDay());
}

void WriteYearAndDay(std::ostream& out, const ymdhms& t) {
  WriteYear(out, t);
  WriteZeroFilled(out, 3, t.GetDayOfYear());
}

void WriteTime(std::ostream& out, const ymdhms& t, int secondWidth) {
  out << ' ';
  WriteHourMinute(out, t.GetHour(), t.GetMinute());
  out << std::setprecision(ymdhmsns::NDecSecond);
  WriteZeroFilled(out, secondWidth, t.GetSecond());
}

void WriteByFormat(std::ostream& out, const ymdhms& t) {
  const int decimals = ymdhmsns::NDecSecond;
  switch (ymdhmsns::PrintFormat) {
  case 0:
    WriteDate(out, t);
    WriteTime(out, t, decimals == 0 ? 2 : decimals + 3);
    break;
  case 1:
    WriteYearAndDay(out, t);
    WriteTime(out, t, decimals + 3);
    break;
  case 2:
    WriteYearAndDay(out, t);
    out << ' ' << std::setprecision(decimals) << std::setw(decimals + 7) << t.GetDaySecond();
    break;
  case 3:
    WriteDate(out, t);
    break;
  case 4:
    out << std::setprecision(decimals + 4) << std::setw(decimals + 10) << t.GetYearDec();
    break;
  case 5:
    WriteYearAndDay(out, t);
    break;
  }
}

} // namespace

std::ostream& operator<<(std::ostream& out, const ymdhms& t) {
  const RightAligned aligned(out);
  out << std::fixed;
  const int year = t.GetYear();
  switch (ymdhmsns::PrintType) {
  case 0:
    WriteColumns(out, t, year, 6, 6, 13, 7);
    break;
  case 1:
    WriteColumns(out, t, year < 2001 ? year - 1900 : year - 2000, 3, 3, 11, 7);
    break;
  case 3:
    WriteColumns(out, t, year, 4, 3, 12, 8);
    break;
  default:
    WriteByFormat(out, t);
  }
  return out;
}

std::istream& operator>>(std::istream& in, ymdhms& t) {
  unsigned short year, month, day, hour, minute;
  long double second;
  if (!(in >> year >> month >> day >> hour >> minute >> second)) return in;
  if (year < 100) year = static_cast<unsigned short>(year + (year < 80 ? 2000 : 1900));
  t.Set(year, month, day, hour, minute, second);
  return in;
}
