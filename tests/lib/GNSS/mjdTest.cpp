#include "GNSS/mjd.h"

#include "support/Ends.h"
#include "support/Near.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace {

constexpr long double kNan = std::numeric_limits<long double>::quiet_NaN();
constexpr long double kInfinity = std::numeric_limits<long double>::infinity();

/// Puts the process-wide layout back.
class mjdOutput : public testing::Test {
protected:
  ~mjdOutput() override {
    mjdns::PrintFormat = format_;
    mjdns::NDecSecond = decimals_;
  }
  static std::string Text(const mjd& t) {
    std::ostringstream out;
    out << t << '|';
    return out.str();
  }

private:
  unsigned short format_ = mjdns::PrintFormat;
  unsigned short decimals_ = mjdns::NDecSecond;
};

testing::AssertionResult Is(const mjd& t, unsigned int day, long double second,
                            long double tolerance = 0) {
  if (t.GetMJDay() == day) return Near(t.GetSecond(), second, tolerance);
  return testing::AssertionFailure() << t.GetMJDay() << ' ' << t.GetSecond();
}

mjd Shifted(mjd t, long double ds) {
  t += ds;
  return t;
}

TEST(mjd, DefaultIsDayZero) { EXPECT_TRUE(Is(mjd(), 0, 0)); }

TEST(mjd, LimitsAreAccepted) {
  const long double last = std::nextafter(86400.0L, 0.0L);
  EXPECT_TRUE(Is(mjd(199999, last), 199999, last));
  mjd t;
  t.Set(0, 0);
  EXPECT_TRUE(Is(t, 0, 0));
}

TEST(mjd, DayNumberWithFractionIsSplit) {
  mjd t;
  t = 50000.25L;
  EXPECT_TRUE(Is(t, 50000, 21600));
  EXPECT_EQ(t.GetMJDDec(), 50000.25L);
  t = 0.0L;
  EXPECT_TRUE(Is(t, 0, 0));
  // The whole part is cut towards zero, the fraction counted from below.
  t = -0.25L;
  EXPECT_TRUE(Is(t, 0, 64800));
}

TEST(mjd, ShiftGoesOverMidnightEitherWay) {
  EXPECT_TRUE(Is(Shifted(mjd(50000, 86399.5L), 1.0L), 50001, 0.5L));
  EXPECT_TRUE(Is(Shifted(mjd(50000, 0.25L), -86400.5L), 49998, 86399.75L));
  EXPECT_TRUE(Is(Shifted(mjd(50000, 0.25L), -0.25L), 50000, 0));
  EXPECT_TRUE(Is(Shifted(mjd(50000, 1), 10 * 86400.0L), 50010, 1));
  EXPECT_TRUE(Is(Shifted(mjd(50000, 1), -10 * 86400.0L), 49990, 1));
  EXPECT_TRUE(Is(Shifted(mjd(50000, 1), 0), 50000, 1));
}

TEST(mjd, ShiftToTheDaysEndIsTheNextMidnight) {
  EXPECT_TRUE(Is(Shifted(mjd(50000, 86399.5L), 0.5L), 50001, 0));
  EXPECT_TRUE(Is(Shifted(mjd(50000, 86399), 1 - 5e-13L), 50001, 0));
  EXPECT_TRUE(Is(Shifted(mjd(50000, 86399), 1 - 2e-12L), 50000, 86400 - 2e-12L, 1e-14L));
  // Just below midnight rounds up to the end of the day before, thus to midnight.
  EXPECT_TRUE(Is(Shifted(mjd(50000, 0), -1e-20L), 50000, 0));
}

TEST(mjd, ShiftOfBothSignsComesBack) {
  for (const long double ds : {0.1L, 59.9L, 43200.7L, 86400.3L, 1e6L, 1e9L + 0.25L})
    EXPECT_TRUE(Near(Shifted(Shifted(mjd(55000, 12345.678L), ds), -ds) - mjd(55000, 12345.678L), 0,
                     2e-14L * (1 + ds / 86400)))
        << ds;
}

TEST(mjd, ShiftByDays) {
  mjd t(50000, 12.5L);
  t += 40L;
  EXPECT_TRUE(Is(t, 50040, 12.5L));
  t += -41L;
  EXPECT_TRUE(Is(t, 49999, 12.5L));
  t -= -1L;
  EXPECT_TRUE(Is(t, 50000, 12.5L));
  t -= 50000L;
  EXPECT_TRUE(Is(t, 0, 12.5L));
}

TEST(mjd, EqualWithinATenthOfAPicosecond) {
  const mjd t(50000, 100);
  EXPECT_TRUE(t == mjd(50000, 100 + 0.9e-13L));
  EXPECT_TRUE(t == mjd(50000, 100 - 0.9e-13L));
  EXPECT_FALSE(t == mjd(50000, 100 + 1.1e-13L));
  EXPECT_FALSE(t == mjd(50001, 100));
  EXPECT_TRUE(t != mjd(50001, 100));
  // Neighbouring days are never equal, however close.
  EXPECT_FALSE(mjd(50000, std::nextafter(86400.0L, 0.0L)) == mjd(50001, 0));
}

TEST(mjd, StrictOrderHasNoTolerance) {
  const mjd t(50000, 100);
  const mjd later(50000, std::nextafter(100.0L, 200.0L));
  EXPECT_TRUE(later > t);
  EXPECT_TRUE(t < later);
  EXPECT_FALSE(t > later);
  EXPECT_FALSE(later < t);
  EXPECT_TRUE(mjd(50001, 0) > t);
  EXPECT_TRUE(mjd(49999, 200) < t);
  EXPECT_FALSE(mjd(49999, 200) > t);
}

TEST(mjd, LooseOrderToleratesTenFemtoseconds) {
  // Seconds near 1 are resolved to 1e-19.
  const mjd t(50000, 1);
  const mjd slightlyLater(50000, 1 + 0.9e-14L);
  const mjd later(50000, 1 + 1.1e-14L);
  EXPECT_TRUE(t >= slightlyLater);
  EXPECT_TRUE(slightlyLater <= t);
  EXPECT_FALSE(t >= later);
  EXPECT_FALSE(later <= t);
  EXPECT_TRUE(later >= t);
  EXPECT_TRUE(t <= later);
  EXPECT_TRUE(mjd(50001, 0) >= t);
  EXPECT_TRUE(mjd(49999, 5) <= t);
  EXPECT_FALSE(mjd(49999, 5) >= t);
  EXPECT_FALSE(mjd(50001, 0) <= t);
}

TEST(mjd, IsEqualToItselfWhateverItHolds) {
  mjd t(50000, 100);
  t += kNan;
  const mjd& same = t;
  EXPECT_TRUE(t == same);
  EXPECT_TRUE(t >= same);
  EXPECT_TRUE(t <= same);
  EXPECT_FALSE(t > same);
  EXPECT_FALSE(t < same);
}

TEST(mjd, DifferenceIsInSecondsOfEitherSign) {
  EXPECT_EQ(mjd(50001, 0.5L) - mjd(50000, 86399.5L), 1);
  EXPECT_EQ(mjd(50000, 86399.5L) - mjd(50001, 0.5L), -1);
  EXPECT_EQ(mjd(0, 0) - mjd(199999, 0), -199999 * 86400.0L);
  EXPECT_EQ(mjd(199999, 1) - mjd(0, 0), 199999 * 86400.0L + 1);
}

TEST(mjd, TimeOfDayIsSplit) {
  unsigned short hour, minute;
  long double second;
  mjd(50000, 45296.25L).Sec2HMS(hour, minute, second);
  EXPECT_EQ(hour, 12);
  EXPECT_EQ(minute, 34);
  EXPECT_TRUE(Near(second, 56.25L, 1e-14L));
}

TEST(mjd, DayAndSecondsAreRead) {
  mjd t;
  std::istringstream in(" 55844  43200.0000000001\n55845 0.5");
  in >> t;
  EXPECT_TRUE(Is(t, 55844, 43200.0000000001L));
  in >> t;
  EXPECT_TRUE(Is(t, 55845, 0.5L));
}

TEST(mjd, FailedReadLeavesTheValueAndFailsTheStream) {
  for (const char* text : {"", "x", "55844", "55844 x", "99999999999 0"}) {
    mjd t(50000, 7);
    std::istringstream in(text);
    in >> t;
    EXPECT_TRUE(in.fail()) << text;
    EXPECT_TRUE(Is(t, 50000, 7)) << text;
  }
}

TEST_F(mjdOutput, DefaultIsDayAndSecondsWithOneDecimal) {
  EXPECT_EQ(Text(mjd(55844, 43200.25L)), " 55844 43200.2|");
  EXPECT_EQ(Text(mjd(55844, 0)), " 55844     0.0|");
}

TEST_F(mjdOutput, OtherFormats) {
  // 3 h 4 min 5.25 s = 11045.25 s
  const mjd t(55844, 11045.25L);
  mjdns::NDecSecond = 2;
  mjdns::PrintFormat = 2;
  EXPECT_EQ(Text(t), " 55844  03:04: 5.25|");
  mjdns::PrintFormat = 3;
  EXPECT_EQ(Text(t), " 55844|");
  mjdns::PrintFormat = 4;
  EXPECT_EQ(Text(mjd(55844, 43200)), " 55844 0.5000000000000|");
  mjdns::PrintFormat = 5;
  EXPECT_EQ(Text(t), "|");
}

TEST_F(mjdOutput, DayWithFractionUsesTheStreamsNotation) {
  mjdns::PrintFormat = 1;
  mjdns::NDecSecond = 6;
  EXPECT_EQ(Text(mjd(55844, 43200)), "      55844.5|");
  std::ostringstream out;
  out << std::fixed << mjd(55844, 43200);
  EXPECT_EQ(out.str(), " 55844.500000");
}

TEST_F(mjdOutput, StreamKeepsFixedNotationDecimalsAndABlankFill) {
  mjdns::PrintFormat = 2;
  std::ostringstream out;
  out << std::left << mjd(55844, 11045.5L);
  EXPECT_EQ(out.str(), " 55844  03:04: 5.5");
  EXPECT_EQ(out.fill(), ' ');
  EXPECT_EQ(out.precision(), 1);
  EXPECT_EQ(out.flags() & std::ios_base::floatfield, std::ios_base::fixed);
  EXPECT_EQ(out.flags() & std::ios_base::adjustfield, std::ios_base::left);
}

TEST(mjdDeathTest, ReportIsFramed) {
  EXPECT_ENDS(mjd(200000, 0), "^\n\\*\\*\\*\\* mjd: Error -> MJDAY not valid \\*\\*\\*\\*\n"
                              "     Exiting class mjd \\.\\.\\. \n$");
}

TEST(mjdDeathTest, SecondsOutsideTheDay) {
  EXPECT_ENDS(mjd(50000, 86400), "SECOND not valid");
  EXPECT_ENDS(mjd(50000, -1e-18L), "SECOND not valid");
  EXPECT_ENDS(mjd(50000, kNan), "SECOND not valid");
  EXPECT_ENDS(mjd(200000, 86400), "> MJDAY not valid");
  mjd t;
  EXPECT_ENDS(t.Set(1, 86400), "SECOND not valid");
}

TEST(mjdDeathTest, DayNumbersWithFractionOutsideTheRange) {
  mjd t;
  EXPECT_ENDS(t = -1.0L, "MJDAY not valid");
  EXPECT_ENDS(t = 200000.0L, "MJDAY not valid");
  EXPECT_ENDS(t = 4294967296.0L + 50000, "MJDAY not valid");
  EXPECT_ENDS(t = kNan, "MJDAY not valid");
  EXPECT_ENDS(t = -kInfinity, "MJDAY not valid");
}

TEST(mjdDeathTest, ShiftOutOfTheRangeIsFoundByTheNextCopy) {
  mjd early(0, 1);
  early += -2.0L;
  EXPECT_ENDS(mjd{early}, "MJDAY not valid");
  mjd late(199999, 1);
  late += 1L;
  EXPECT_EQ(late.GetMJDay(), 200000u);
  mjd other;
  EXPECT_ENDS(other = late, "MJDAY not valid");
  for (const long double ds : {kNan, kInfinity, -kInfinity, 1e20L, -1e20L}) {
    mjd t(50000, 1);
    t += ds;
    EXPECT_ENDS(mjd{t}, "SECOND not valid") << ds;
  }
}

TEST(mjdDeathTest, FieldsReadAreTested) {
  mjd t;
  std::istringstream in("200000 0");
  EXPECT_ENDS(in >> t, "MJDAY not valid");
}

} // namespace
