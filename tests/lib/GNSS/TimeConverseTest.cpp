#include "GNSS/TimeConverse.h"

#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace {

constexpr long double kNan = std::numeric_limits<long double>::quiet_NaN();

testing::AssertionResult Is(const ymdhms& t, int year, int month, int day, int hour, int minute,
                            long double second, long double tolerance = 0) {
  if (t.GetYear() == year && t.GetMonth() == month && t.GetDay() == day && t.GetHour() == hour &&
      t.GetMinute() == minute)
    return Near(t.GetSecond(), second, tolerance);
  return testing::AssertionFailure() << t;
}

testing::AssertionResult Is(const mjd& t, unsigned int day, long double second,
                            long double tolerance = 0) {
  if (t.GetMJDay() == day) return Near(t.GetSecond(), second, tolerance);
  return testing::AssertionFailure() << t;
}

testing::AssertionResult Is(const GPSws& t, int week, long double second,
                            long double tolerance = 0) {
  if (t.GetWeek() == week) return Near(t.GetSecond(), second, tolerance);
  return testing::AssertionFailure() << t;
}

ymdhms Midnight(int year, int month, int day) {
  return ymdhms(static_cast<unsigned short>(year), static_cast<unsigned short>(month),
                static_cast<unsigned short>(day), 0, 0, 0);
}

/// Modified Julian Day of a Gregorian date.
/// Source: Fliegel and Van Flandern, Comm. ACM 11 (1968), 657.
unsigned int FliegelVanFlandern(int y, int m, int d) {
  const int jd = d - 32075 + 1461 * (y + 4800 + (m - 14) / 12) / 4 +
                 367 * (m - 2 - (m - 14) / 12 * 12) / 12 -
                 3 * ((y + 4900 + (m - 14) / 12) / 100) / 4;
  return static_cast<unsigned int>(jd - 2400001);
}

/// Calls \p check(year, month, day, days from 1901-01-01) for each day of the years.
template <class Check> void EachDay(int firstYear, int lastYear, Check check) {
  for (int year = firstYear; year <= lastYear; ++year) {
    const bool leap = ymdhms::LeapYear(static_cast<unsigned short>(year));
    const int length[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month)
      for (int day = 1; day <= length[month - 1]; ++day) {
        check(year, month, day);
        if (testing::Test::HasFatalFailure()) return;
      }
  }
}

TEST(LeapYear, GregorianRuleFromYearOne) {
  EXPECT_EQ(LeapYear(2012), 1);
  EXPECT_EQ(LeapYear(2000), 1);
  EXPECT_EQ(LeapYear(1900), 0);
  EXPECT_EQ(LeapYear(2011), 0);
  EXPECT_EQ(LeapYear(4), 1);
  EXPECT_EQ(LeapYear(0), 0);
  EXPECT_EQ(LeapYear(-4), 0);
}

TEST(LeapSecond, DatesOfBulletinC) {
  // TAI - UTC [s] from 0 h UTC of the date on; GPS time is TAI - 19 s.
  const struct {
    int year, month, tai;
  } steps[] = {{1972, 1, 10}, {1972, 7, 11}, {1973, 1, 12}, {1974, 1, 13}, {1975, 1, 14},
               {1976, 1, 15}, {1977, 1, 16}, {1978, 1, 17}, {1979, 1, 18}, {1980, 1, 19},
               {1981, 7, 20}, {1982, 7, 21}, {1983, 7, 22}, {1985, 7, 23}, {1988, 1, 24},
               {1990, 1, 25}, {1991, 1, 26}, {1992, 7, 27}, {1993, 7, 28}, {1994, 7, 29},
               {1996, 1, 30}, {1997, 7, 31}, {1999, 1, 32}, {2006, 1, 33}, {2009, 1, 34},
               {2012, 7, 35}};
  for (const auto& step : steps) {
    const unsigned int day = FliegelVanFlandern(step.year, step.month, 1);
    EXPECT_EQ(LeapSecond(mjd(day, 0)), step.tai - 19) << step.year << '-' << step.month;
    // Before the first row there is none to step from.
    const int before = step.tai == 10 ? step.tai : step.tai - 1;
    EXPECT_EQ(LeapSecond(mjd(day - 1, 86399.999L)), before - 19) << step.year << '-' << step.month;
  }
}

TEST(LeapSecond, HoldsItsLimitsOutsideTheTable) {
  EXPECT_EQ(LeapSecond(mjd(56109, 0)), 16);
  EXPECT_EQ(LeapSecond(mjd(41316, 0)), -9);
  EXPECT_EQ(LeapSecond(mjd(60000, 0)), 16);
  EXPECT_EQ(LeapSecond(mjd(0, 0)), -9);
  EXPECT_EQ(LeapSecond(mjd(199999, 0)), 16);
}

TEST(ymdhms2mjd, PublishedJulianDates) {
  // Meeus, Astronomical Algorithms, chapter 7: JD - 2400000.5.
  EXPECT_TRUE(Is(ymdhms2mjd(ymdhms(2000, 1, 1, 12, 0, 0)), 51544, 43200));
  EXPECT_TRUE(Is(ymdhms2mjd(Midnight(1999, 1, 1)), 51179, 0));
  EXPECT_TRUE(Is(ymdhms2mjd(Midnight(1987, 1, 27)), 46822, 0));
  EXPECT_TRUE(Is(ymdhms2mjd(ymdhms(1987, 6, 19, 12, 0, 0)), 46965, 43200));
  EXPECT_TRUE(Is(ymdhms2mjd(Midnight(1988, 1, 27)), 47187, 0));
  EXPECT_TRUE(Is(ymdhms2mjd(ymdhms(1988, 6, 19, 12, 0, 0)), 47331, 43200));
  EXPECT_TRUE(Is(ymdhms2mjd(Midnight(1957, 10, 4)), 36115, 0));
}

TEST(ymdhms2mjd, StartOfTheCalendarAndOfGPSTime) {
  EXPECT_TRUE(Is(ymdhms2mjd(Midnight(1901, 1, 1)), 15385, 0));
  EXPECT_TRUE(Is(ymdhms2mjd(Midnight(1980, 1, 6)), 44244, 0));
}

TEST(ymdhms2mjd, SecondsThatFillTheDayGiveTheNextDay) {
  EXPECT_TRUE(Is(ymdhms2mjd(ymdhms(2011, 12, 31, 23, 59, 60 - 0.9e-10L)), 55927, 0));
  EXPECT_TRUE(
      Is(ymdhms2mjd(ymdhms(2011, 12, 31, 23, 59, 60 - 1.1e-10L)), 55926, 86400 - 1.1e-10L, 1e-14L));
  EXPECT_TRUE(Is(ymdhms2mjd(ymdhms(2011, 12, 31, 24, 0, 0)), 55927, 0));
  EXPECT_TRUE(Is(ymdhms2mjd(ymdhms(2011, 12, 31, 24, 0, 0.9e-10L)), 55927, 0));
}

TEST(ymdhms2mjd, MonthZeroCountsFromTheStartOfTheYear) {
  EXPECT_TRUE(Is(ymdhms2mjd(Midnight(2011, 0, 5)), ymdhms2mjd(Midnight(2011, 1, 5)).GetMJDay(), 0));
}

TEST(ymdhms2mjd, EveryDayTo2100IsTheGregorianDayAndLaterOnesAreOneAhead) {
  EachDay(1901, 2199, [](int year, int month, int day) {
    const unsigned int ahead = year > 2100 ? 1 : 0;
    ASSERT_EQ(ymdhms2mjd(Midnight(year, month, day)).GetMJDay(),
              FliegelVanFlandern(year, month, day) + ahead)
        << year << '-' << month << '-' << day;
  });
}

TEST(mjd2ymdhms, EveryDayGoesThereAndBack) {
  EachDay(1901, 2199, [](int year, int month, int day) {
    const ymdhms back = mjd2ymdhms(
        ymdhms2mjd(ymdhms(static_cast<unsigned short>(year), static_cast<unsigned short>(month),
                          static_cast<unsigned short>(day), 13, 30, 30.25L)));
    ASSERT_TRUE(Is(back, year, month, day, 13, 30, 30.25L, 1e-14L));
  });
}

TEST(mjd2ymdhms, SecondsThatFillTheDayGiveHour24) {
  EXPECT_TRUE(Is(mjd2ymdhms(mjd(55926, 86400 - 0.9e-10L)), 2011, 12, 31, 24, 0, 0));
}

TEST(mjd2ymdhms, EverySecondOfTheDayComesBack) {
  for (int s = 0; s < 86400; ++s)
    ASSERT_TRUE(Is(mjd2ymdhms(mjd(55926, s)), 2011, 12, 31, s / 3600, s / 60 % 60, s % 60, 1e-13L))
        << s;
}

TEST(mjd2ymdhmsDeathTest, DaysOutsideTheCalendar) {
  EXPECT_ENDS(mjd2ymdhms(mjd(15384, 0)), "YEAR not valid");
  EXPECT_ENDS(mjd2ymdhms(mjd(15000, 0)), "YEAR not valid");
  EXPECT_ENDS(mjd2ymdhms(mjd(0, 0)), "YEAR not valid");
  EXPECT_ENDS(mjd2ymdhms(mjd(199999, 0)), "YEAR not valid");
  mjd wrapped(0, 0);
  wrapped -= 1L;
  EXPECT_ENDS(mjd2ymdhms(wrapped), "YEAR not valid");
  // 2199-12-31 is the last date: 299 years of 365 days, 74 leap days (one of them in 2100).
  const unsigned int last = 15385 + 299 * 365 + 74 - 1;
  EXPECT_TRUE(Is(mjd2ymdhms(mjd(last, 0)), 2199, 12, 31, 0, 0, 0));
  EXPECT_ENDS(mjd2ymdhms(mjd(last + 1, 0)), "YEAR not valid");
}

TEST(mjd2ymdhmsDeathTest, DayBehind2100HasNoDate) {
  EXPECT_TRUE(Is(mjd2ymdhms(mjd(88433, 0)), 2100, 12, 31, 0, 0, 0));
  EXPECT_TRUE(Is(mjd2ymdhms(mjd(88435, 0)), 2101, 1, 1, 0, 0, 0));
  EXPECT_ENDS(mjd2ymdhms(mjd(88434, 0)), "MONTH not valid");
}

TEST(ymdhms2mjdDeathTest, HourThirtyIsBeyondTheDay) {
  EXPECT_ENDS(ymdhms2mjd(ymdhms(2011, 1, 1, 30, 0, 0)), "mjd: Error -> SECOND not valid");
}

TEST(ymdhms2GPSws, WeekZeroAndTheRollOvers) {
  EXPECT_TRUE(Is(ymdhms2GPSws(Midnight(1980, 1, 6)), 0, 0));
  EXPECT_TRUE(Is(ymdhms2GPSws(Midnight(1999, 8, 22)), 1024, 0));
  EXPECT_TRUE(Is(ymdhms2GPSws(Midnight(2019, 4, 7)), 2048, 0));
  EXPECT_TRUE(Is(ymdhms2GPSws(Midnight(2038, 11, 21)), 3072, 0));
  // The last second before.
  EXPECT_TRUE(Is(ymdhms2GPSws(ymdhms(1999, 8, 21, 23, 59, 59)), 1023, 604799, 2e-10L));
}

TEST(ymdhms2GPSws, MonthZeroCountsFromTheStartOfTheYear) {
  EXPECT_TRUE(Is(ymdhms2GPSws(Midnight(2011, 0, 2)), 1617, 0)); // Sunday 2011-01-02
}

TEST(ymdhms2GPSws, SecondIsRoundedToDouble) {
  const ymdhms t(2011, 10, 10, 12, 34, 56.25L); // Monday
  // 1 + 45296.25 / 86400 days, rounded as the fraction of the day, the sum and the product are.
  const double fraction = static_cast<double>(45296.25L / 86400);
  EXPECT_TRUE(Is(ymdhms2GPSws(t), 1657, (1 + fraction) * 86400));
  EXPECT_TRUE(Is(ymdhms2GPSws(t), 1657, 131696.25L, 1e-10L));
}

TEST(ymdhms2GPSwsDeathTest, DatesBeforeGPSTime) {
  EXPECT_ENDS(ymdhms2GPSws(Midnight(1980, 1, 5)), "GPSws: Error -> SECOND not valid");
  EXPECT_ENDS(ymdhms2GPSws(Midnight(1979, 12, 23)), "GPSws: Error -> WEEK not valid");
  EXPECT_ENDS(ymdhms2GPSws(Midnight(1901, 1, 1)), "GPSws: Error -> WEEK not valid");
}

TEST(GPSws2mjd, WeeksAndDays) {
  EXPECT_TRUE(Is(GPSws2mjd(GPSws(0, 0)), 44244, 0));
  // 2011-10-10, Monday of week 1657, is day 55844.
  EXPECT_TRUE(Is(GPSws2mjd(GPSws(1657, 86400 + 45296.25L)), 55844, 45296.25L));
  EXPECT_TRUE(Is(GPSws2mjd(GPSws(11999, 604799)), 44244 + 11999 * 7 + 6, 86399));
}

TEST(GPSws2mjd, SecondIsRoundedToDouble) {
  // 0.1 of 80 bits; at a day's second of 2^16 double resolves 1.5e-11 s.
  EXPECT_TRUE(Is(GPSws2mjd(GPSws(1657, 70000.1L)), 55843, 70000.1));
  // What rounds up to a full day loses that day: the day is cut from the 80-bit second.
  EXPECT_TRUE(Is(GPSws2mjd(GPSws(1657, std::nextafter(86400.0L, 0.0L))), 55843, 0));
}

TEST(GPSws2mjd, SecondBehindTheWeekCountsOn) {
  GPSws t(1657, 604799);
  t += 2.0L;
  EXPECT_TRUE(Is(GPSws2mjd(t), 55850, 1));
}

TEST(GPSws2mjdDeathTest, ShiftedOutOfTheRange) {
  GPSws notANumber(1657, 0);
  notANumber += kNan;
  EXPECT_ENDS(GPSws2mjd(notANumber), "MJDAY not valid");
  GPSws huge(1657, 0);
  huge += 1e30L;
  EXPECT_ENDS(GPSws2mjd(huge), "MJDAY not valid");
  EXPECT_ENDS(GPSws2ymdhms(notANumber), "YEAR not valid");
  EXPECT_ENDS(GPSws2ymdhms(huge), "YEAR not valid");
}

TEST(mjd2GPSws, WeeksAndDays) {
  EXPECT_TRUE(Is(mjd2GPSws(mjd(44244, 0)), 0, 0));
  EXPECT_TRUE(Is(mjd2GPSws(mjd(55844, 45296.25L)), 1657, 131696.25L));
  EXPECT_TRUE(Is(mjd2GPSws(mjd(55849, 86399.75L)), 1657, 604799.75L));
}

TEST(mjd2GPSws, EveryDayOf16BitsGoesThereAndBack) {
  for (unsigned int day = 44244; day < 44244 + 65536; ++day) {
    const GPSws t = mjd2GPSws(mjd(day, 0.5L));
    ASSERT_EQ(t.GetWeek(), (day - 44244) / 7);
    ASSERT_TRUE(Is(GPSws2mjd(t), day, 0.5L));
  }
}

TEST(mjd2GPSwsDeathTest, DaysBeyond16Bits) {
  EXPECT_ENDS(mjd2GPSws(mjd(109780, 0)), "GPSws: Error -> SECOND not valid");
  EXPECT_ENDS(mjd2GPSws(mjd(199999, 0)), "GPSws: Error -> SECOND not valid");
  EXPECT_ENDS(mjd2GPSws(mjd(44243, 0)), "GPSws: Error -> SECOND not valid");
  EXPECT_ENDS(mjd2GPSws(mjd(0, 0)), "GPSws: Error -> SECOND not valid");
}

TEST(GPSws2ymdhms, WeekZeroAndTheRollOvers) {
  EXPECT_TRUE(Is(GPSws2ymdhms(GPSws(0, 0)), 1980, 1, 6, 0, 0, 0));
  EXPECT_TRUE(Is(GPSws2ymdhms(GPSws(1024, 0)), 1999, 8, 22, 0, 0, 0));
  EXPECT_TRUE(Is(GPSws2ymdhms(GPSws(2048, 0)), 2019, 4, 7, 0, 0, 0));
}

TEST(GPSws2ymdhms, EverySecondOfTheDayComesBack) {
  // Some, for example 1980 s, fall below a full minute by a rounding error of double.
  for (int s = 0; s < 86400; ++s)
    ASSERT_TRUE(Is(GPSws2ymdhms(GPSws(1657, 86400 + s)), 2011, 10, 10, s / 3600, s / 60 % 60,
                   s % 60, 2e-11L))
        << s;
}

TEST(GPSws2ymdhms, SecondsNearAFullMinuteGiveTheNextMinute) {
  EXPECT_TRUE(Is(GPSws2ymdhms(GPSws(1657, 60 - 0.9e-5L)), 2011, 10, 9, 0, 1, 0));
  EXPECT_TRUE(Is(GPSws2ymdhms(GPSws(1657, 60 - 1.1e-5L)), 2011, 10, 9, 0, 0, 60 - 1.1e-5L, 1e-13L));
  EXPECT_TRUE(Is(GPSws2ymdhms(GPSws(1657, 3600 - 0.9e-5L)), 2011, 10, 9, 1, 0, 0));
  // The day is not carried.
  EXPECT_TRUE(Is(GPSws2ymdhms(GPSws(1657, 86400 - 0.9e-5L)), 2011, 10, 9, 24, 0, 0));
}

TEST(GPSws2ymdhms, EveryDayOfGPSTimeGoesThereAndBack) {
  EachDay(1981, 2199, [](int year, int month, int day) {
    ASSERT_TRUE(Is(GPSws2ymdhms(ymdhms2GPSws(Midnight(year, month, day))), year, month, day, 0, 0,
                   0, 1e-9L));
  });
}

struct Split {
  unsigned short hour = 1;
  unsigned short minute = 1;
  long double second = 1;
  explicit Split(long double s) { Sec2HMS(s, hour, minute, second); }
};

TEST(Sec2HMS, EverySecondOfTheDay) {
  for (int s = 0; s < 86400; ++s) {
    const Split split(s);
    ASSERT_EQ(split.hour, s / 3600) << s;
    ASSERT_EQ(split.minute, s / 60 % 60) << s;
    ASSERT_TRUE(Near(split.second, s % 60, 1e-13L)) << s;
  }
}

TEST(Sec2HMS, SecondsNearAFullMinuteGiveTheNextMinute) {
  const Split minute(120 - 0.9e-10L);
  EXPECT_EQ(minute.minute, 2);
  EXPECT_EQ(minute.second, 0);
  const Split before(120 - 1.1e-10L);
  EXPECT_EQ(before.minute, 1);
  EXPECT_TRUE(Near(before.second, 60 - 1.1e-10L, 1e-15L));
  const Split hour(7200 - 0.9e-10L);
  EXPECT_EQ(hour.hour, 2);
  EXPECT_EQ(hour.minute, 0);
  EXPECT_EQ(hour.second, 0);
}

TEST(Sec2HMS, HourIsNotWrapped) {
  EXPECT_EQ(Split(86400).hour, 24);
  EXPECT_EQ(Split(86400 - 0.9e-10L).hour, 24);
  EXPECT_EQ(Split(100 * 3600).hour, 100);
}

TEST(Sec2HMS, WhatHasNoHourGetsTheGreatest) {
  EXPECT_EQ(Split(-1).hour, 65535);
  EXPECT_EQ(Split(65536 * 3600.0L).hour, 65535);
  EXPECT_EQ(Split(1e30L).hour, 65535);
  EXPECT_EQ(Split(kNan).hour, 65535);
  EXPECT_EQ(Split(std::numeric_limits<long double>::infinity()).hour, 65535);
}

TEST(Sec2HMS, JustBelowZeroIsZero) {
  const Split split(-1e-12L);
  EXPECT_EQ(split.hour, 0);
  EXPECT_EQ(split.minute, 0);
  EXPECT_EQ(split.second, 0);
}

/// Recorded SP3 files, whose first two lines give one epoch as date, GPS week and day.
class RecordedEpochs : public testing::TestWithParam<const char*> {};

TEST_P(RecordedEpochs, DateWeekAndDayAgree) {
  SKIP_WITHOUT(GetParam());
  std::ifstream file(RealData(GetParam()));
  std::string first, second;
  ASSERT_TRUE(std::getline(file, first) && std::getline(file, second));
  std::istringstream dateText(first.substr(3, 28));
  std::istringstream weekText(second.substr(3, 20));
  std::istringstream dayText(second.substr(39));
  ymdhms date;
  GPSws week;
  unsigned int day;
  long double fraction;
  ASSERT_TRUE(dateText >> date);
  ASSERT_TRUE(weekText >> week);
  ASSERT_TRUE(dayText >> day >> fraction);

  const long double daySecond = fraction * 86400;
  EXPECT_TRUE(Is(ymdhms2mjd(date), day, daySecond, 1e-8L));
  EXPECT_TRUE(Is(GPSws2mjd(week), day, daySecond, 1e-8L));
  EXPECT_TRUE(Is(ymdhms2GPSws(date), week.GetWeek(), week.GetSecond(), 1e-9L));
  EXPECT_TRUE(Is(mjd2GPSws(mjd(day, daySecond)), week.GetWeek(), week.GetSecond(), 1e-8L));
  EXPECT_TRUE(Is(GPSws2ymdhms(week), date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(),
                 date.GetMinute(), date.GetSecond(), 1e-10L));
}

INSTANTIATE_TEST_SUITE_P(Orbits, RecordedEpochs,
                         testing::Values("2008-148-acor-scoa-sfer-tlse/igs14812.sp3",
                                         "orbits-2009-091/igl15253.sp3",
                                         "2010-001-albh-gras/igs15645.sp3",
                                         "2011-283-cagz/igs16571.sp3", "2015-019-joze/igs18281.sp3",
                                         "sp3-formats/SP3a.sp3", "sp3-formats/SP3d.sp3"));

} // namespace
