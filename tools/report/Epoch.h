#ifndef ZENTA_REPORT_EPOCH_H
#define ZENTA_REPORT_EPOCH_H

#include <compare>
#include <string>

namespace report {

/// An instant in the time scale of the observation file (GPS time in a GPS or mixed file).
struct Epoch {
  int day = 0;       ///< Modified Julian Day
  double second = 0; ///< [s] of that day; 86400 where a report rounds up to midnight

  auto operator<=>(const Epoch&) const = default;
};

/// \returns a - b [s]
double operator-(const Epoch& a, const Epoch& b);

/// Day and fraction in one number; it resolves a microsecond.
double DecimalDay(const Epoch& t);

/// ISO 8601, for example 2011-10-10T00:00:30.5: no zone, since GPS time has none, and as many
/// decimals of a second (7 at most) as it takes.
std::string Iso(const Epoch& t);

/// Year, day of year and second of day as SINEX writes them: 2011:283:00030.
std::string SinexTime(const Epoch& t);

/// \p year-\p month-\p day at \p second of day; \p month 1 to 12. \p day and \p second may lie
/// beyond the end of the month or day and are carried on.
Epoch FromCalendar(int year, int month, int day, double second);

} // namespace report

#endif
