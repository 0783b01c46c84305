#include "GNSS/GPSws.h"

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
class GPSwsOutput : public testing::Test {
protected:
  ~GPSwsOutput() override {
    gpswsns::PrintFormat = format_;
    gpswsns::NDecSecond = decimals_;
  }
  static std::string Text(const GPSws& t) {
    std::ostringstream out;
    out << t << '|';
    return out.str();
  }

private:
  unsigned short format_ = gpswsns::PrintFormat;
  unsigned short decimals_ = gpswsns::NDecSecond;
};

testing::AssertionResult Is(const GPSws& t, int week, long double second) {
  if (t.GetWeek() == week) return Near(t.GetSecond(), second, 0);
  return testing::AssertionFailure() << t.GetWeek() << ' ' << t.GetSecond();
}

TEST(GPSws, DefaultIsTheStartOfGPSTime) { EXPECT_TRUE(Is(GPSws(), 0, 0)); }

TEST(GPSws, LimitsAreAccepted) {
  const long double last = std::nextafter(604800.0L, 0.0L);
  EXPECT_TRUE(Is(GPSws(11999, last), 11999, last));
  GPSws t;
  t.Set(11999, 0);
  const GPSws copy(t);
  GPSws assigned;
  assigned = copy;
  EXPECT_TRUE(Is(assigned, 11999, 0));
}

TEST(GPSws, ShiftForwardIsNotBroughtBackIntoTheWeek) {
  GPSws t(1000, 600000);
  t += 604000.0L;
  EXPECT_TRUE(Is(t, 1000, 1204000));
  GPSws whole(1000, 600000);
  whole += 604800.0L;
  EXPECT_TRUE(Is(whole, 1001, 600000));
  GPSws end(1000, 604799);
  end += 1.0L;
  EXPECT_TRUE(Is(end, 1000, 604800));
}

TEST(GPSws, ShiftBackwardGoesOverTheWeeksStart) {
  GPSws t(1000, 10);
  t += -11.0L;
  EXPECT_TRUE(Is(t, 999, 604799));
  t += -2 * 604800.0L;
  EXPECT_TRUE(Is(t, 997, 604799));
  t += -604799.0L;
  EXPECT_TRUE(Is(t, 997, 0));
}

TEST(GPSws, ShiftByWeeks) {
  GPSws t(1000, 10);
  t += static_cast<unsigned short>(24);
  EXPECT_TRUE(Is(t, 1024, 10));
}

TEST(GPSws, WeekdayAndSecondOfTheDay) {
  EXPECT_EQ(GPSws(1657, 0).GetWeekDay(), 0);
  EXPECT_EQ(GPSws(1657, std::nextafter(86400.0L, 0.0L)).GetWeekDay(), 0);
  EXPECT_EQ(GPSws(1657, 86400).GetWeekDay(), 1);
  EXPECT_EQ(GPSws(1657, 604799.5L).GetWeekDay(), 6);
  EXPECT_EQ(GPSws(1657, 604799.5L).GetDaySecond(), 86399.5L);
  unsigned short hour, minute;
  long double second;
  GPSws(1657, 2 * 86400 + 45296.25L).Sec2HMS(hour, minute, second);
  EXPECT_EQ(hour, 12);
  EXPECT_EQ(minute, 34);
  EXPECT_TRUE(Near(second, 56.25L, 1e-14L));
}

TEST(GPSws, WeekAndSecondsAreRead) {
  GPSws t;
  std::istringstream in("1657 86400.5");
  in >> t;
  EXPECT_TRUE(Is(t, 1657, 86400.5L));
}

TEST(GPSws, FailedReadLeavesTheValueAndFailsTheStream) {
  for (const char* text : {"", "x", "1657", "1657 x", "70000 0"}) {
    GPSws t(1000, 7);
    std::istringstream in(text);
    in >> t;
    EXPECT_TRUE(in.fail()) << text;
    EXPECT_TRUE(Is(t, 1000, 7)) << text;
  }
}

TEST_F(GPSwsOutput, Formats) {
  // Tuesday, 3 h 4 min 5.25 s = 11045.25 s
  const GPSws t(1657, 2 * 86400 + 11045.25L);
  EXPECT_EQ(Text(t), " 1657 183845.2|");
  gpswsns::NDecSecond = 2;
  EXPECT_EQ(Text(t), " 1657 183845.25|");
  gpswsns::PrintFormat = 1;
  EXPECT_EQ(Text(t), " 1657 2 11045.25|");
  gpswsns::PrintFormat = 2;
  EXPECT_EQ(Text(t), " 1657 2  03:04: 5.25|");
  gpswsns::PrintFormat = 3;
  EXPECT_EQ(Text(t), " 1657 2|");
  gpswsns::PrintFormat = 4;
  EXPECT_EQ(Text(t), " 1657 183845.25000000|");
  gpswsns::PrintFormat = 5;
  EXPECT_EQ(Text(t), "|");
}

TEST(GPSwsDeathTest, ReportIsFramed) {
  EXPECT_ENDS(GPSws(12000, 0), "^\n\\*\\*\\*\\* GPSws: Error -> WEEK not valid \\*\\*\\*\\*\n"
                               "     Exiting class GPSws \\.\\.\\. \n$");
}

TEST(GPSwsDeathTest, SecondsOutsideTheWeek) {
  EXPECT_ENDS(GPSws(1000, 604800), "SECOND not valid");
  EXPECT_ENDS(GPSws(1000, -1e-18L), "SECOND not valid");
  EXPECT_ENDS(GPSws(1000, kNan), "SECOND not valid");
  EXPECT_ENDS(GPSws(12000, kNan), "> WEEK not valid");
  GPSws t;
  EXPECT_ENDS(t.Set(1, 604800), "SECOND not valid");
}

TEST(GPSwsDeathTest, ShiftOutOfTheRangeIsFoundByTheNextCopy) {
  GPSws early(0, 1);
  early += -2.0L;
  EXPECT_EQ(early.GetWeek(), 65535);
  EXPECT_ENDS(GPSws{early}, "WEEK not valid");
  for (const long double ds : {kNan, kInfinity, -kInfinity, 1e20L, -1e20L}) {
    GPSws t(1000, 1);
    t += ds;
    GPSws other;
    EXPECT_ENDS(other = t, "SECOND not valid") << ds;
  }
}

TEST(GPSwsDeathTest, FieldsReadAreTested) {
  GPSws t;
  std::istringstream in("1000 604800");
  EXPECT_ENDS(in >> t, "SECOND not valid");
}

} // namespace
