#ifndef GNSS_TIMECONVERSE_H
#define GNSS_TIMECONVERSE_H

#include "GNSS/GPSws.h"
#include "GNSS/mjd.h"
#include "GNSS/ymdhms.h"

/// Conversions between calendar time, Modified Julian Day and GPS week. None changes the time
/// scale; LeapSecond tells what to add. A result out of its class's range is reported by that
/// class and ends the program.
///
/// The calendar is counted in cycles of four years from 1901, in which 2100 has a 29 February
/// although the calendar has none: day numbers from 2101-01-01 on are ahead by one, the same in
/// both directions, and the day number 88434 behind 2100-12-31 has no date.

/// 1 in a leap year of the Gregorian calendar, else 0; 0 for years before 1.
int LeapYear(long year);

/// GPS time minus UTC [s] at the UTC day of \p t: -9 before 1972-07-01, 16 from 2012-07-01 on.
///
/// Leap seconds after 2012-07-01 are not in the table.
/// Source: IERS Bulletin C; TAI - UTC less 19 s.
int LeapSecond(const mjd& t);

/// A second of day within 1e-10 s of 86400 is the next day's midnight.
mjd ymdhms2mjd(const ymdhms& t);
/// A second of day within 1e-10 s of 86400 gives hour 24.
ymdhms mjd2ymdhms(const mjd& t);

/// In double precision: the second of week is good to 1e-10 s.
GPSws ymdhms2GPSws(const ymdhms& t);
/// In double precision, so that the second is good to about 1e-11 s; a second within 1e-5 s of
/// 60 is the next minute, one that rounding left below 0 is 0. The last 1e-5 s of a day give
/// hour 24.
ymdhms GPSws2ymdhms(const GPSws& t);

/// The second of day is rounded to double precision.
mjd GPSws2mjd(const GPSws& t);
/// Weeks are counted in 16 bits of days: from day 109780 (the year 2159) on, and before
/// 1980-01-06, the second is out of its range.
GPSws mjd2GPSws(const mjd& t);

/// Splits \p s [s] of the day. A second within 1e-10 s of 60 is the next minute; the hour is
/// not brought back to 0 at 24. Less than 0, 65536 hours and more, and what is not a number,
/// give hour 65535.
void Sec2HMS(long double s, unsigned short& hour, unsigned short& minute, long double& second);

#endif
