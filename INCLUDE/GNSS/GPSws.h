#ifndef GNSS_GPSWS_H
#define GNSS_GPSWS_H

#include <iosfwd>

/// Layout of GPS weeks on a stream, for the whole process.
namespace gpswsns {
/// With N = NDecSecond:
///   0  week in 5 columns, seconds of week in N + 8 with N decimals
///   1  week in 5 columns, weekday in 2, seconds of day in N + 7 with N decimals
///   2  " 1657 0  23:59: 9.5" (seconds in N + 3 columns, blank-filled)
///   3  week in 5 columns, weekday in 2
///   4  week in 5 columns, seconds of week in 16 with 8 decimals
/// Any other number prints nothing.
inline unsigned short PrintFormat = 0;
/// Decimals of the seconds.
inline unsigned short NDecSecond = 1;
} // namespace gpswsns

/// An instant of GPS time: week since 1980-01-06, without roll-over, and seconds of the week.
///
/// Construction, copy, assignment and Set test the fields: one out of its range is reported on
/// standard output and ends the program. A second that is not a number is out of range. The
/// shifts do not test.
class GPSws {
public:
  /// Week 0, second 0: 1980-01-06 00:00:00 GPS time.
  GPSws() = default;
  /// \param week    0 to 11999
  /// \param second  [s] of the week, 0 <= second < 604800
  GPSws(unsigned short week, long double second);
  GPSws(const GPSws& other);
  GPSws& operator=(const GPSws& other);
  ~GPSws() = default;

  void Set(unsigned short week, long double second);

  /// Moves the instant by \p ds [s] of either sign. Whole weeks of \p ds go to the week and the
  /// rest to the second, which is brought back into the week when it falls below 0, but not
  /// when it reaches 604800: 604000 s added to second 600000 leave week and second 1204000.
  GPSws& operator+=(long double ds);
  GPSws& operator+=(double ds) { return *this += static_cast<long double>(ds); }
  /// Moves the instant by \p n weeks.
  GPSws& operator+=(unsigned short n);

  unsigned short GetWeek() const { return week_; }
  /// [s] of the week.
  long double GetSecond() const { return second_; }
  /// 0 on Sunday.
  unsigned short GetWeekDay() const;
  /// [s] since the midnight that began the weekday.
  long double GetDaySecond() const;
  /// Time of day, see the free Sec2HMS.
  void Sec2HMS(unsigned short& hour, unsigned short& minute, long double& second) const;

  /// Reports the first field that is out of its range, week before second, and ends the program.
  void TestDatum() const;

private:
  unsigned short week_ = 0;
  long double second_ = 0;
};

/// Writes \p t in the layout of gpswsns. All layouts but 3 leave the stream in fixed-point
/// notation with the decimals that were used; the fill character is left blank.
std::ostream& operator<<(std::ostream& out, const GPSws& t);
/// Reads week and seconds, separated by white space, and tests them. A read that fails leaves
/// \p t as it was.
std::istream& operator>>(std::istream& in, GPSws& t);

#endif
