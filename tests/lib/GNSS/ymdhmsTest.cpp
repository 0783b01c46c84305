#include "GNSS/ymdhms.h"

#include "support/Ends.h"
#include "support/Near.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace {

/// Puts the process-wide layout back.
class ymdhmsOutput : public testing::Test {
protected:
  ~ymdhmsOutput() override {
    ymdhmsns::PrintType = type_;
    ymdhmsns::PrintFormat = format_;
    ymdhmsns::NDecSecond = decimals_;
  }
  static std::string Text(const ymdhms& t) {
    std::ostringstream out;
    out << t << '|';
    return out.str();
  }

private:
  unsigned short type_ = ymdhmsns::PrintType;
  unsigned short format_ = ymdhmsns::PrintFormat;
  unsigned short decimals_ = ymdhmsns::NDecSecond;
};

testing::AssertionResult Is(const ymdhms& t, int year, int month, int day, int hour, int minute,
                            long double second, long double tolerance = 0) {
  if (t.GetYear() == year && t.GetMonth() == month && t.GetDay() == day && t.GetHour() == hour &&
      t.GetMinute() == minute)
    return Near(t.GetSecond(), second, tolerance);
  return testing::AssertionFailure() << t;
}

TEST(ymdhms, DefaultIsTheFirstOfJanuary1980) { EXPECT_TRUE(Is(ymdhms(), 1980, 1, 1, 0, 0, 0)); }

TEST(ymdhms, LimitsAreAccepted) {
  EXPECT_TRUE(Is(ymdhms(1901, 1, 1, 0, 0, 0), 1901, 1, 1, 0, 0, 0));
  const long double last = std::nextafter(60.0L, 0.0L);
  EXPECT_TRUE(Is(ymdhms(2199, 12, 31, 23, 59, last), 2199, 12, 31, 23, 59, last));
}

TEST(ymdhms, MonthZeroPassesAndHasNoDaysBeforeIt) {
  const ymdhms t(2010, 0, 31, 0, 0, 0);
  EXPECT_EQ(t.GetMonth(), 0);
  EXPECT_EQ(t.GetDayOfYear(), 31);
}

TEST(ymdhms, HourThirtyPasses) {
  EXPECT_EQ(ymdhms(2010, 1, 1, 30, 0, 0).GetHour(), 30);
  EXPECT_EQ(ymdhms(2010, 1, 1, 59, 0, 0).GetHour(), 59);
}

TEST(ymdhms, LastDayOfEachMonthByLeapYear) {
  const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (unsigned short month = 1; month <= 12; ++month) {
    const auto last = static_cast<unsigned short>(days[month - 1]);
    EXPECT_EQ(ymdhms(2011, month, last, 0, 0, 0).GetDay(), last);
  }
  EXPECT_EQ(ymdhms(2012, 2, 29, 0, 0, 0).GetDayOfYear(), 60);
  EXPECT_EQ(ymdhms(2000, 12, 31, 0, 0, 0).GetDayOfYear(), 366);
}

TEST(ymdhms, LeapYearsOfTheGregorianCalendar) {
  EXPECT_TRUE(ymdhms::LeapYear(2012));
  EXPECT_TRUE(ymdhms::LeapYear(2000));
  EXPECT_FALSE(ymdhms::LeapYear(2100));
  EXPECT_FALSE(ymdhms::LeapYear(2011));
}

TEST(ymdhms, SettersStoreTheirFieldAlone) {
  ymdhms t;
  t.SetYear(2012);
  t.SetMonth(2);
  t.SetDay(29);
  t.SetHMS(12, 34, 56.5L);
  EXPECT_TRUE(Is(t, 2012, 2, 29, 12, 34, 56.5L));
  // The day is not looked at again.
  t.SetYear(2011);
  EXPECT_EQ(t.GetDay(), 29);
  t.Set(2009, 3, 4, 5, 6, 7);
  EXPECT_TRUE(Is(t, 2009, 3, 4, 5, 6, 7));
  const ymdhms copy(t);
  ymdhms assigned;
  assigned = copy;
  EXPECT_TRUE(Is(assigned, 2009, 3, 4, 5, 6, 7));
}

TEST(ymdhms, DayOfYearGoesThereAndBack) {
  for (const int year : {2011, 2012}) {
    for (unsigned short doy = 1; doy <= (year == 2012 ? 366 : 365); ++doy) {
      ymdhms t(2000, 5, 5, 5, 5, 5);
      t.SetDayOfYear(static_cast<unsigned short>(year), doy);
      ASSERT_EQ(t.GetDayOfYear(), doy);
      ASSERT_EQ(t.GetDaySecond(), 0);
    }
  }
  ymdhms t;
  t.SetDayOfYear(2011, 283); // 2011-10-10: 273 days to the end of September
  EXPECT_TRUE(Is(t, 2011, 10, 10, 0, 0, 0));
  t.SetDayOfYear(2012, 60);
  EXPECT_TRUE(Is(t, 2012, 2, 29, 0, 0, 0));
}

TEST(ymdhms, DecimalYear) {
  // 2011-07-02 12:00 is 182.5 of 365 days.
  EXPECT_TRUE(Near(ymdhms(2011, 7, 2, 12, 0, 0).GetYearDec(), 2011.5L, 1e-15L));
  // 2012-07-02 00:00 is 183 of 366 days.
  EXPECT_TRUE(Near(ymdhms(2012, 7, 2, 0, 0, 0).GetYearDec(), 2012.5L, 1e-15L));
  ymdhms t;
  t.SetYDec(2011.5);
  EXPECT_TRUE(Is(t, 2011, 7, 2, 12, 0, 0));
  t.SetYDec(2012.5);
  EXPECT_TRUE(Is(t, 2012, 7, 2, 0, 0, 0));
  t.SetYDec(2010.0);
  EXPECT_TRUE(Is(t, 2010, 1, 1, 0, 0, 0));
}

TEST(ymdhms, DecimalYearGoesThereAndBackWithinTenMicroseconds) {
  for (unsigned short month = 1; month <= 12; ++month) {
    const ymdhms there(2199, month, 15, 7, 31, 30);
    ymdhms back;
    back.SetYDec(static_cast<double>(there.GetYearDec()));
    // Half a step of double at 2199 is 2.3e-13 years.
    EXPECT_TRUE(Is(back, 2199, month, 15, 7, 31, 30, 1e-5L));
  }
}

TEST(ymdhms, SecondOfTheDay) {
  ymdhms t(2011, 10, 10, 0, 0, 0);
  t.SetDaySecond(45296.25L); // 12 h 34 min 56.25 s
  EXPECT_TRUE(Is(t, 2011, 10, 10, 12, 34, 56.25L, 1e-14L));
  EXPECT_TRUE(Near(t.GetDaySecond(), 45296.25L, 1e-14L));
  t.SetDaySecond(86400);
  EXPECT_TRUE(Is(t, 2011, 10, 10, 24, 0, 0));
}

TEST(ymdhms, YearsOfTwoDigitsAreReadFrom1980To2079) {
  ymdhms t;
  std::istringstream in("99 12 31 23 59 59.5  05 1 1 0 0 0  80 1 1 0 0 0 79 1 1 0 0 0"
                        "\n2011 10 10 1 2 3.25");
  in >> t;
  EXPECT_TRUE(Is(t, 1999, 12, 31, 23, 59, 59.5L));
  in >> t;
  EXPECT_TRUE(Is(t, 2005, 1, 1, 0, 0, 0));
  in >> t;
  EXPECT_EQ(t.GetYear(), 1980);
  in >> t;
  EXPECT_EQ(t.GetYear(), 2079);
  EXPECT_TRUE(in >> t);
  EXPECT_TRUE(Is(t, 2011, 10, 10, 1, 2, 3.25L));
  EXPECT_FALSE(in >> t);
}

TEST(ymdhms, FailedReadLeavesTheValueAndFailsTheStream) {
  for (const char* text :
       {"", "x", "2011 10", "2011 10 10 1 2", "2011 10 10 1 2 x", "99999 1 1", "2011 . 10 1 2 3"}) {
    ymdhms t(2009, 3, 4, 5, 6, 7);
    std::istringstream in(text);
    in >> t;
    EXPECT_TRUE(in.fail()) << text;
    EXPECT_TRUE(Is(t, 2009, 3, 4, 5, 6, 7)) << text;
  }
}

TEST_F(ymdhmsOutput, DefaultIsDateAndTimeWithOneDecimal) {
  EXPECT_EQ(Text(ymdhms(2011, 1, 2, 3, 4, 5.25L)), " 2011-01-02 03:04:05.2|");
  EXPECT_EQ(Text(ymdhms(2011, 10, 20, 23, 59, 50)), " 2011-10-20 23:59:50.0|");
}

TEST_F(ymdhmsOutput, RecordColumns) {
  const ymdhms t(2011, 1, 2, 3, 4, 5.25L);
  ymdhmsns::PrintType = 0;
  EXPECT_EQ(Text(t), "  2011     1     2     3     4    5.2500000|");
  ymdhmsns::PrintType = 1;
  EXPECT_EQ(Text(t), " 11  1  2  3  4  5.2500000|");
  ymdhmsns::PrintType = 3;
  EXPECT_EQ(Text(t), "2011  1  2  3  4  5.25000000|");
}

TEST_F(ymdhmsOutput, TwoDigitYearOf2000IsHundred) {
  ymdhmsns::PrintType = 1;
  EXPECT_EQ(Text(ymdhms(1999, 12, 31, 0, 0, 0)).substr(0, 3), " 99");
  EXPECT_EQ(Text(ymdhms(2000, 12, 31, 0, 0, 0)).substr(0, 3), "100");
  EXPECT_EQ(Text(ymdhms(2001, 12, 31, 0, 0, 0)).substr(0, 3), "  1");
}

TEST_F(ymdhmsOutput, FormatsOfAllOtherTypes) {
  const ymdhms t(2011, 2, 3, 4, 5, 6.75L);
  ymdhmsns::PrintType = 77;
  ymdhmsns::NDecSecond = 3;
  // 4 h 5 min 6.75 s = 14706.75 s
  const struct {
    unsigned short format;
    const char* text;
  } lines[] = {{0, " 2011-02-03 04:05:06.750|"},
               {1, " 2011-034 04:05:06.750|"},
               {2, " 2011-034  14706.750|"},
               {3, " 2011-02-03|"},
               {5, " 2011-034|"}};
  for (const auto& line : lines) {
    ymdhmsns::PrintFormat = line.format;
    EXPECT_EQ(Text(t), line.text);
  }
  ymdhmsns::PrintFormat = 6;
  EXPECT_EQ(Text(t), "|");
}

TEST_F(ymdhmsOutput, DecimalYearHasFourMoreDecimals) {
  ymdhmsns::PrintFormat = 4;
  ymdhmsns::NDecSecond = 1;
  EXPECT_EQ(Text(ymdhms(2011, 7, 2, 12, 0, 0)), " 2011.50000|");
}

TEST_F(ymdhmsOutput, SecondsWithoutDecimalsAreRounded) {
  ymdhmsns::NDecSecond = 0;
  EXPECT_EQ(Text(ymdhms(2011, 7, 2, 12, 0, 5)), " 2011-07-02 12:00:05|");
  EXPECT_EQ(Text(ymdhms(2011, 7, 2, 12, 0, 59.75L)), " 2011-07-02 12:00:60|");
  ymdhmsns::PrintFormat = 1;
  EXPECT_EQ(Text(ymdhms(2011, 7, 2, 12, 0, 5)), " 2011-183 12:00:005|");
}

TEST_F(ymdhmsOutput, StreamKeepsFixedNotationDecimalsAndABlankFill) {
  std::ostringstream out;
  out << std::left << ymdhms(2011, 1, 2, 3, 4, 5);
  EXPECT_EQ(out.str(), " 2011-01-02 03:04:05.0");
  EXPECT_EQ(out.fill(), ' ');
  EXPECT_EQ(out.precision(), 1);
  EXPECT_EQ(out.flags() & std::ios_base::floatfield, std::ios_base::fixed);
  EXPECT_EQ(out.flags() & std::ios_base::adjustfield, std::ios_base::left);
}

TEST(ymdhmsDeathTest, ReportIsFramed) {
  EXPECT_ENDS(ymdhms(1900, 1, 1, 0, 0, 0),
              "^\n\\*\\*\\*\\* ymdhms: Error -> YEAR not valid \\*\\*\\*\\*\n"
              "     Exiting class ymdhms \\.\\.\\. \n$");
}

TEST(ymdhmsDeathTest, EachFieldOneBeyondItsLimit) {
  EXPECT_ENDS(ymdhms(2200, 1, 1, 0, 0, 0), "YEAR not valid");
  EXPECT_ENDS(ymdhms(2011, 13, 1, 0, 0, 0), "MONTH not valid");
  EXPECT_ENDS(ymdhms(2011, 1, 0, 0, 0, 0), "DAY not valid");
  EXPECT_ENDS(ymdhms(2011, 0, 0, 0, 0, 0), "DAY not valid");
  EXPECT_ENDS(ymdhms(2011, 0, 32, 0, 0, 0), "DAY not valid");
  EXPECT_ENDS(ymdhms(2011, 1, 32, 0, 0, 0), "DAY not valid");
  EXPECT_ENDS(ymdhms(2011, 2, 29, 0, 0, 0), "DAY not valid");
  EXPECT_ENDS(ymdhms(2100, 2, 29, 0, 0, 0), "DAY not valid");
  EXPECT_ENDS(ymdhms(2012, 4, 31, 0, 0, 0), "DAY not valid");
  EXPECT_ENDS(ymdhms(2011, 1, 1, 60, 0, 0), "HOUR not valid");
  EXPECT_ENDS(ymdhms(2011, 1, 1, 0, 60, 0), "MINUTE not valid");
  EXPECT_ENDS(ymdhms(2011, 1, 1, 0, 0, 60), "SECOND not valid");
  EXPECT_ENDS(ymdhms(2011, 1, 1, 0, 0, -1e-18L), "SECOND not valid");
  EXPECT_ENDS(ymdhms(2011, 1, 1, 0, 0, std::numeric_limits<long double>::quiet_NaN()),
              "SECOND not valid");
}

TEST(ymdhmsDeathTest, FirstFaultOfSeveralIsReported) {
  EXPECT_ENDS(ymdhms(2011, 13, 40, 60, 60, 60), "> MONTH not valid");
}

TEST(ymdhmsDeathTest, SettersTestTheirField) {
  ymdhms t;
  EXPECT_ENDS(t.SetYear(2200), "YEAR not valid");
  EXPECT_ENDS(t.SetMonth(13), "MONTH not valid");
  EXPECT_ENDS(t.SetDay(32), "DAY not valid");
  EXPECT_ENDS(t.SetHour(60), "HOUR not valid");
  EXPECT_ENDS(t.SetMinute(60), "MINUTE not valid");
  EXPECT_ENDS(t.SetSecond(60), "SECOND not valid");
  EXPECT_ENDS(t.SetHMS(0, 60, 60), "MINUTE not valid");
  EXPECT_ENDS(t.Set(2011, 1, 0, 0, 0, 0), "DAY not valid");
}

TEST(ymdhmsDeathTest, DayOfYearBeyondTheYear) {
  ymdhms t;
  EXPECT_ENDS(t.SetDayOfYear(1900, 1), "YEAR not valid");
  EXPECT_ENDS(t.SetDayOfYear(2011, 0), "DAY not valid");
  EXPECT_ENDS(t.SetDayOfYear(2011, 366), "MONTH not valid");
  EXPECT_ENDS(t.SetDayOfYear(2012, 367), "MONTH not valid");
  EXPECT_ENDS(t.SetDayOfYear(2012, 65535), "MONTH not valid");
}

TEST(ymdhmsDeathTest, DecimalYearBeyondTheYears) {
  ymdhms t;
  EXPECT_ENDS(t.SetYDec(-2011.5), "YEAR not valid");
  EXPECT_ENDS(t.SetYDec(2200), "YEAR not valid");
  EXPECT_ENDS(t.SetYDec(1e300), "YEAR not valid");
  EXPECT_ENDS(t.SetYDec(std::numeric_limits<double>::quiet_NaN()), "YEAR not valid");
}

TEST(ymdhmsDeathTest, SecondOfTheDayBeyondSixtyHours) {
  ymdhms t;
  EXPECT_ENDS(t.SetDaySecond(-1), "HOUR not valid");
  EXPECT_ENDS(t.SetDaySecond(216000), "HOUR not valid");
  EXPECT_ENDS(t.SetDaySecond(1e30L), "HOUR not valid");
  EXPECT_ENDS(t.SetDaySecond(std::numeric_limits<long double>::infinity()), "HOUR not valid");
}

TEST(ymdhmsDeathTest, FieldsReadAreTested) {
  ymdhms t;
  std::istringstream in("2011 2 30 0 0 0");
  EXPECT_ENDS(in >> t, "DAY not valid");
}

TEST(ymdhmsDeathTest, CopyOfAnImpossibleDayIsTested) {
  ymdhms t(2012, 2, 29, 0, 0, 0);
  t.SetYear(2011);
  EXPECT_ENDS(ymdhms{t}, "DAY not valid");
  ymdhms other;
  EXPECT_ENDS(other = t, "DAY not valid");
}

} // namespace
