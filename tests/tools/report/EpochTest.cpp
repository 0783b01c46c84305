#include "report/Epoch.h"

#include <gtest/gtest.h>

namespace {

using namespace report;

TEST(Epoch, IsoOfPublishedDays) {
  EXPECT_EQ(Iso({51544, 43200}), "2000-01-01T12:00:00"); // J2000.0 is MJD 51544.5
  EXPECT_EQ(Iso({40587, 0}), "1970-01-01T00:00:00");
  EXPECT_EQ(Iso({44244, 0}), "1980-01-06T00:00:00"); // start of GPS time
  EXPECT_EQ(Iso({0, 0}), "1858-11-17T00:00:00");
}

TEST(Epoch, IsoHasAsManyDecimalsAsItTakes) {
  EXPECT_EQ(Iso({55844, 30}), "2011-10-10T00:00:30");
  EXPECT_EQ(Iso({55844, 30.5}), "2011-10-10T00:00:30.5");
  EXPECT_EQ(Iso({55844, 29.9996}), "2011-10-10T00:00:29.9996");
  EXPECT_EQ(Iso({55844, 0.0000001}), "2011-10-10T00:00:00.0000001");
}

TEST(Epoch, IsoOfMidnightFromBelowIsTheNextDay) {
  EXPECT_EQ(Iso({55844, 86400}), "2011-10-11T00:00:00");
  EXPECT_EQ(Iso({55844, 86399.99999999}), "2011-10-11T00:00:00");
}

TEST(Epoch, SinexCountsDaysOfTheYearFromOne) {
  EXPECT_EQ(SinexTime({55844, 43185.7}), "2011:283:43185");
  EXPECT_EQ(SinexTime(FromCalendar(2012, 12, 31, 0)), "2012:366:00000");
  EXPECT_EQ(SinexTime(FromCalendar(2012, 1, 1, 86400)), "2012:002:00000");
}

TEST(Epoch, CalendarCarriesOverMonthAndDay) {
  EXPECT_EQ(FromCalendar(2000, 1, 1, 43200), (Epoch{51544, 43200}));
  EXPECT_EQ(FromCalendar(2011, 9, 40, 86460), (Epoch{55845, 60})); // 40 September, a minute after
  EXPECT_EQ(FromCalendar(2012, 2, 30, 0), FromCalendar(2012, 3, 1, 0)); // leap year
}

TEST(Epoch, DifferenceCrossesMidnight) {
  EXPECT_DOUBLE_EQ((Epoch{55845, 10} - Epoch{55844, 86390}), 20);
  EXPECT_DOUBLE_EQ(DecimalDay({55844, 21600}), 55844.25);
}

} // namespace
