#ifndef GNSS_MJD_H
#define GNSS_MJD_H

#include <iosfwd>

/// Layout of Modified Julian Days on a stream, for the whole process.
namespace mjdns {
/// With N = NDecSecond:
///   0  day in 6 columns, seconds of day in N + 7 with N decimals
///   1  day with fraction in N + 7 columns with precision N, in the stream's own notation
///   2  " 55843  23:59: 9.5" (seconds in N + 3 columns, blank-filled)
///   3  day in 6 columns
///   4  day in 6 columns, fraction of the day in 16 with 13 decimals
/// Any other number prints nothing.
inline unsigned short PrintFormat = 0;
/// Decimals of the seconds.
inline unsigned short NDecSecond = 1;
} // namespace mjdns

/// An instant: a whole Modified Julian Day and the seconds since it began.
///
/// The time scale is that of the data (GPS time in a GPS observation file, UTC in GLONASS
/// navigation); nothing here converts it. Day and seconds are kept apart because 80 bits then
/// resolve 7e-15 s; one fractional day number would resolve 3e-10 s, ten centimetres of light.
///
/// Construction, copy, assignment and Set test the fields: one out of its range is reported on
/// standard output and ends the program. A second that is not a number is out of range. The
/// shifts do not test: what they move out of the range is found by the next copy.
class mjd {
public:
  /// Day 0, second 0: 1858-11-17.
  mjd() = default;
  /// \param mjday   whole day, 0 to 199999
  /// \param second  [s] of that day, 0 <= second < 86400
  mjd(unsigned int mjday, long double second);
  mjd(const mjd& other) : mjday_(other.mjday_), second_(other.second_) { TestDatum(); }
  mjd& operator=(const mjd& other) {
    mjday_ = other.mjday_;
    second_ = other.second_;
    TestDatum();
    return *this;
  }
  /// Day and second of a fractional day number \p x [d], 0 <= x < 200000. The day is cut towards
  /// zero and the fraction counted from below: -0.25 is day 0, second 64800.
  mjd& operator=(long double x);
  ~mjd() = default;

  void Set(unsigned int mjday, long double second);

  /// Moves the instant by \p ds [s] of either sign, over midnight if need be; a result within
  /// 1e-12 s of the day's end is the next midnight. Shifts of 2^63 s and more are not split
  /// into days, so that the second leaves its range. Seconds are shifted by floating-point numbers,
  /// days by long: a plain 1 would be ambiguous.
  mjd& operator+=(long double ds);
  mjd& operator+=(double ds) { return *this += static_cast<long double>(ds); }
  /// Moves the instant by \p n days.
  mjd& operator+=(long n);
  mjd& operator-=(long n);

  /// Same day, and seconds that differ by less than 1e-13 s.
  bool operator==(const mjd& other) const;
  /// Strictly later, without tolerance: of two equal instants one may be later.
  bool operator>(const mjd& other) const;
  bool operator<(const mjd& other) const;
  /// Later, or less than 1e-14 s earlier on the same day.
  bool operator>=(const mjd& other) const {
    if (this == &other) return true;
    return mjday_ > other.mjday_ || (mjday_ == other.mjday_ && second_ - other.second_ > -kOrdered);
  }
  /// Earlier, or less than 1e-14 s later on the same day.
  bool operator<=(const mjd& other) const {
    if (this == &other) return true;
    return mjday_ < other.mjday_ || (mjday_ == other.mjday_ && second_ - other.second_ < kOrdered);
  }

  unsigned int GetMJDay() const { return mjday_; }
  /// [s] of the day.
  long double GetSecond() const { return second_; }
  /// [d] day with its fraction.
  long double GetMJDDec() const { return mjday_ + second_ / kSecondsOfDay; }
  /// Time of day, see the free Sec2HMS.
  void Sec2HMS(unsigned short& hour, unsigned short& minute, long double& second) const;

  /// Reports the first field that is out of its range, day before second, and ends the program.
  void TestDatum() const {
    if (!(mjday_ <= kLastDay && second_ >= 0 && second_ < kSecondsOfDay)) [[unlikely]]
      ReportDatum();
  }

private:
  static constexpr unsigned int kLastDay = 199999;
  static constexpr unsigned int kSecondsOfDay = 86400;
  static constexpr double kOrdered = 1e-14; ///< [s] tolerance; the double

  [[noreturn]] void ReportDatum() const;

  unsigned int mjday_ = 0;
  long double second_ = 0;
};

/// \returns a - b [s]; the unsigned day numbers never wrap.
long double operator-(const mjd& a, const mjd& b);

/// Writes \p t in the layout of mjdns. All layouts but 1 leave the stream in fixed-point
/// notation; all leave it with the decimals that were used and its fill character blank.
std::ostream& operator<<(std::ostream& out, const mjd& t);
/// Reads day and seconds, separated by white space, and tests them. A read that fails leaves
/// \p t as it was.
std::istream& operator>>(std::istream& in, mjd& t);

#endif
