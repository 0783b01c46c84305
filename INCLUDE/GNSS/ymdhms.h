#ifndef GNSS_YMDHMS_H
#define GNSS_YMDHMS_H

#include <iosfwd>

/// Layout of calendar times on a stream, for the whole process.
namespace ymdhmsns {
/// 0, 1 and 3 choose the columns of RINEX records, whatever else leaves it to PrintFormat.
///   0  year, month, day, hour, minute in 6 columns each, second in 13 with 7 decimals
///   1  year of two digits (2000 prints as 100), month, day, hour, minute in 3 columns each,
///      second in 11 with 7 decimals
///   3  year in 4 columns, month, day, hour, minute in 3 each, second in 12 with 8 decimals
inline unsigned short PrintType = 2;
/// With N = NDecSecond:
///   0  " 2011-10-09 23:59:59.5"; without decimals " 2011-10-09 23:59:59"
///   1  " 2011-282 23:59:59.5" (day of year)
///   2  " 2011-282  86399.5" (day of year and seconds of day in N + 7 columns)
///   3  " 2011-10-09"
///   4  decimal year in N + 10 columns with N + 4 decimals
///   5  " 2011-282"
/// Any other number prints nothing.
inline unsigned short PrintFormat = 0;
/// Decimals of the seconds.
inline unsigned short NDecSecond = 1;
} // namespace ymdhmsns

/// A calendar date of the Gregorian calendar and a time of day.
///
/// The time scale is that of the data; nothing here converts it. Whatever stores a field
/// tests it: a field out of its range is reported on standard output and ends the program.
/// A second that is not a number is out of range.
class ymdhms {
public:
  /// 1980-01-01 00:00:00.
  ymdhms() = default;
  /// \param year    1901 to 2199, four digits
  /// \param month   1 to 12; 0 is admitted and counts as a month without days before it
  /// \param day     1 to the length of the month (31 in month 0)
  /// \param hour    0 to 59, the bound of the minutes: 24:00:00 is midnight at the day's end
  /// \param minute  0 to 59
  /// \param second  [s] 0 <= second < 60
  ymdhms(unsigned short year, unsigned short month, unsigned short day, unsigned short hour,
         unsigned short minute, long double second);
  /// Copies and tests.
  ymdhms(const ymdhms& other);
  ymdhms& operator=(const ymdhms& other);
  ~ymdhms() = default;

  /// As the constructor of the same arguments.
  void Set(unsigned short year, unsigned short month, unsigned short day, unsigned short hour,
           unsigned short minute, long double second);
  /// One field stored, then tested by itself: the day against the month and year that are
  /// stored at the time, which a later SetMonth or SetYear does not look at again.
  void SetYear(unsigned short year);
  void SetMonth(unsigned short month);
  void SetDay(unsigned short day);
  void SetHour(unsigned short hour);
  void SetMinute(unsigned short minute);
  void SetSecond(long double second);
  void SetHMS(unsigned short hour, unsigned short minute, long double second);
  /// Midnight of a day of the year.
  /// \param doy  1 to 365, or 366 in a leap year. 0 is reported as "DAY not valid", a day
  ///   behind the end of the year as "MONTH not valid".
  void SetDayOfYear(unsigned short year, unsigned short doy);
  /// Inverse of GetYearDec; double resolves 7 microseconds there.
  /// \param y  decimal year, 1901 <= y < 2200; others are reported as "YEAR not valid"
  void SetYDec(double y);
  /// \param s  [s] of the day, 0 <= s < 216000 (60 hours); others are reported as "HOUR not valid"
  void SetDaySecond(long double s);

  unsigned short GetYear() const { return year_; }
  unsigned short GetMonth() const { return month_; }
  unsigned short GetDay() const { return day_; }
  unsigned short GetHour() const { return hour_; }
  unsigned short GetMinute() const { return minute_; }
  long double GetSecond() const { return second_; }
  /// [s] since midnight.
  long double GetDaySecond() const;
  /// 1 on the first of January.
  unsigned short GetDayOfYear() const;
  /// Year and the part of it that has passed.
  long double GetYearDec() const;

  /// Gregorian rule: every fourth year, of the full centuries every fourth.
  static bool LeapYear(unsigned short year);

  /// Reports the first field, in the order of the constructor, that is out of its range, and
  /// ends the program.
  void TestDatum() const;

private:
  void TestYear() const;
  void TestMonth() const;
  void TestDay() const;
  void TestHour() const;
  void TestMinute() const;
  void TestSecond() const;

  unsigned short year_ = 1980;
  unsigned short month_ = 1;
  unsigned short day_ = 1;
  unsigned short hour_ = 0;
  unsigned short minute_ = 0;
  long double second_ = 0;
};

/// Writes \p t in the layout of ymdhmsns. The stream is left in fixed-point notation with the
/// decimals that were used, its fill character blank.
std::ostream& operator<<(std::ostream& out, const ymdhms& t);
/// Reads year, month, day, hour, minute and second, separated by white space. A year below 80
/// is of this century, one from 80 to 99 of the last. A read that fails leaves \p t as it was.
/// What was read is tested, see ymdhms.
std::istream& operator>>(std::istream& in, ymdhms& t);

#endif
