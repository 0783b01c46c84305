#include "GNSS/TimeConverse.h"

#include "GNSS/TimeParts.h"

#include <cmath>

namespace {

/// 1900-12-31, the day before the first cycle of four years, and its four-year length [d].
constexpr long kDay0 = 15384;
constexpr long kYear0 = 1901;
constexpr long kCycleDays = 1461;
constexpr long kYearDays = 365;
/// 1980-01-06.
constexpr long kGPSDay0 = 44244;

// Tolerances [s] are the double values.
constexpr double kFullMinute = 1e-10;
constexpr double kFullMinuteGPS = 1e-5;

/// GPS - UTC [s] from 0 h UTC of a Modified Julian Day on.
struct LeapSecondRow {
  int offset;
  unsigned int mjday;
};
// Complete up to 2012-07-01. TAI - UTC of Bulletin C less 19 s.
constexpr LeapSecondRow kLeapSeconds[] = {
    {-9, 41317}, {-8, 41499}, {-7, 41683}, {-6, 42048}, {-5, 42413}, {-4, 42778}, {-3, 43144},
    {-2, 43509}, {-1, 43874}, {0, 44239},  {1, 44786},  {2, 45151},  {3, 45516},  {4, 46247},
    {5, 47161},  {6, 47892},  {7, 48257},  {8, 48804},  {9, 49169},  {10, 49534}, {11, 50083},
    {12, 50630}, {13, 51179}, {14, 53736}, {15, 54832}, {16, 56109}};

long DayNumber(const ymdhms& t) {
  const long years = t.GetYear() - kYear0;
  return years / 4 * kCycleDays + years % 4 * kYearDays + t.GetDayOfYear() + kDay0;
}

struct Date {
  unsigned short year;
  unsigned short month;
  unsigned short day;
};

Date DateOf(long mjday) {
  long days = mjday - kDay0 - 1;
  long cycle = days / kCycleDays;
  // Days before 1901 are counted down from there: their year is out of the range of ymdhms.
  if (days < cycle * kCycleDays) --cycle;
  days -= kCycleDays * cycle;
  // The last day of a cycle is the 366th of its fourth year.
  const long yearOfCycle = days / kYearDays - days / (kCycleDays - 1);
  const long year = kYear0 + 4 * cycle + yearOfCycle;
  const long doy = days - kYearDays * yearOfCycle + 1;

  const bool leap = LeapYear(year) != 0;
  // A first guess that is right or one month early; 0.032 is the double value.
  int month = static_cast<int>(static_cast<double>(doy) * 0.032) + 1;
  if (doy > DaysBefore(month + 1, leap)) ++month;
  return {WholePart<unsigned short>(static_cast<long double>(year)),
          static_cast<unsigned short>(month),
          static_cast<unsigned short>(doy - DaysBefore(month, leap))};
}

/// Day number of a GPS week and second, not limited to the range of mjd.
long double DayNumber(const GPSws& t) {
  return 7 * t.GetWeek() + std::trunc(t.GetSecond() / kDaySeconds) + kGPSDay0;
}

double DaySecond(const GPSws& t) {
  return std::fmod(static_cast<double>(t.GetSecond()), static_cast<double>(kDaySeconds));
}

} // namespace

int LeapYear(long year) {
  return year > 0 && year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 1 : 0;
}

int LeapSecond(const mjd& t) {
  int offset = kLeapSeconds[0].offset;
  for (const LeapSecondRow& row : kLeapSeconds) {
    if (t.GetMJDay() < row.mjday) break;
    offset = row.offset;
  }
  return offset;
}

mjd ymdhms2mjd(const ymdhms& t) {
  long day = DayNumber(t);
  long double second = t.GetDaySecond();
  if (std::fabs(second - kDaySeconds) < kFullMinute) {
    second = 0;
    ++day;
  }
  return mjd(static_cast<unsigned int>(day), second);
}

ymdhms mjd2ymdhms(const mjd& t) {
  const Date date = DateOf(t.GetMJDay());
  unsigned short hour, minute;
  long double second;
  t.Sec2HMS(hour, minute, second);
  return ymdhms(date.year, date.month, date.day, hour, minute, second);
}

GPSws ymdhms2GPSws(const ymdhms& t) {
  const long days = DayNumber(t) - kGPSDay0;
  const long week = days / 7;
  const double fraction =
      static_cast<double>(((t.GetSecond() / 60 + t.GetMinute()) / 60 + t.GetHour()) / 24);
  const double second = (static_cast<double>(days - 7 * week) + fraction) * kDaySeconds;
  return GPSws(WholePart<unsigned short>(static_cast<long double>(week)), second);
}

ymdhms GPSws2ymdhms(const GPSws& t) {
  const Date date = DateOf(WholePart<unsigned int>(DayNumber(t)));
  const double fraction = DaySecond(t) / kDaySeconds;
  int hour = WholePart<unsigned short>(24 * fraction);
  int minute = WholePart<unsigned short>(1440 * fraction - 60 * hour);
  double second = kDaySeconds * fraction - 3600 * hour - 60 * minute;
  // A product that was rounded up to a full minute leaves a rounding error below it.
  if (second < 0) second = 0;
  if (std::fabs(second - 60) < kFullMinuteGPS) {
    second = 0;
    ++minute;
  }
  if (minute == 60) {
    minute = 0;
    ++hour;
  }
  return ymdhms(date.year, date.month, date.day, static_cast<unsigned short>(hour),
                static_cast<unsigned short>(minute), second);
}

mjd GPSws2mjd(const GPSws& t) { return mjd(WholePart<unsigned int>(DayNumber(t)), DaySecond(t)); }

GPSws mjd2GPSws(const mjd& t) {
  const long days = static_cast<long>(t.GetMJDay()) - kGPSDay0;
  const unsigned short week = static_cast<unsigned short>(static_cast<unsigned short>(days) / 7);
  return GPSws(week, static_cast<long double>(days - 7L * week) * kDaySeconds + t.GetSecond());
}

void Sec2HMS(long double s, unsigned short& hour, unsigned short& minute, long double& second) {
  const long double hours = s / 3600;
  long double h = std::floor(hours);
  const long double minutes = (hours - h) * 60;
  long double m = std::floor(minutes);
  second = (minutes - m) * 60;
  if (std::fabs(second - 60) < kFullMinute) {
    second = 0;
    ++m;
  }
  if (m == 60) {
    m = 0;
    ++h;
  }
  hour = WholePart<unsigned short>(h);
  minute = WholePart<unsigned short>(m);
}
