#ifndef GNSS_TIMEPARTS_H
#define GNSS_TIMEPARTS_H

#include <iomanip>
#include <limits>
#include <ostream>

inline constexpr unsigned int kDaySeconds = 86400;
inline constexpr unsigned int kWeekSeconds = 604800;

/// \p x without its fraction. What \p Int can't hold, and what is not a number, is the greatest
/// \p Int, which no range of a time field admits.
template <class Int> Int WholePart(long double x) {
  constexpr Int greatest = std::numeric_limits<Int>::max();
  if (!(x > -1.0L) || x >= static_cast<long double>(greatest)) return greatest;
  return static_cast<Int>(x);
}

/// A shift in seconds, split into \p whole periods and the \p rest, of one sign. A shift that is
/// beyond whole seconds of long, or not a number, is all rest.
struct Shift {
  long whole = 0;
  long double rest = 0;

  Shift(long double ds, unsigned int period) {
    const long sign = ds < 0 ? -1 : 1;
    const long double size = static_cast<long double>(sign) * ds;
    if (size < static_cast<long double>(period)) { // most are
      rest = ds;
      return;
    }
    if (size < 0x1p63L) whole = static_cast<long>(size) / static_cast<long>(period);
    rest = static_cast<long double>(sign) *
           (size - static_cast<long double>(whole) * static_cast<long double>(period));
    whole *= sign;
  }
};

/// Days of the year before \p month of 1 to 13, where 13 stands for the next year; none before
/// month 0, and a whole year before later ones.
constexpr unsigned short DaysBefore(int month, bool leap) {
  constexpr unsigned short common[] = {0,   0,   31,  59,  90,  120, 151,
                                       181, 212, 243, 273, 304, 334, 365};
  if (month < 0) month = 0;
  if (month > 13) month = 13;
  return static_cast<unsigned short>(common[month] + (leap && month > 2 ? 1 : 0));
}

/// Fields of \p out are right-aligned while this lives.
class RightAligned {
public:
  explicit RightAligned(std::ostream& out) : out_(out), before_(out.flags()) { out << std::right; }
  ~RightAligned() { out_.setf(before_, std::ios_base::adjustfield); }
  RightAligned(const RightAligned&) = delete;
  RightAligned& operator=(const RightAligned&) = delete;

private:
  std::ostream& out_;
  std::ios_base::fmtflags before_;
};

/// Writes \p value with leading zeros, and leaves the fill character blank.
template <class T> void WriteZeroFilled(std::ostream& out, int width, const T& value) {
  out << std::setfill('0') << std::setw(width) << value << std::setfill(' ');
}

/// Writes "hh:mm:", in front of the seconds.
inline void WriteHourMinute(std::ostream& out, unsigned short hour, unsigned short minute) {
  WriteZeroFilled(out, 2, hour);
  out << ':';
  WriteZeroFilled(out, 2, minute);
  out << ':';
}

#endif
