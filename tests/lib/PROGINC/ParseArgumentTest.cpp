#include "PROGINC/ParseArgument.h"

#include "GNSS/ymdhms.h"
#include "support/Captured.h"
#include "support/Ends.h"

#include <cmath>
#include <limits>

namespace {

TEST(ParseFileName, CopiesWhatStandsBehindTheOption) {
  char name[32] = "before";
  ParseFileName("-robs.11o", name, 2);
  EXPECT_STREQ(name, "obs.11o");
  ParseFileName("-r", name, 2);
  EXPECT_STREQ(name, "");
}

TEST(ParseFileName, SkipBehindTheEndGivesTheEmptyName) {
  char name[8] = "before";
  ParseFileName("-r", name, 300);
  EXPECT_STREQ(name, "");
  ParseFileName("", name, 1);
  EXPECT_STREQ(name, "");
  ParseFileName("-r", name, -1);
  EXPECT_STREQ(name, "-r");
}

TEST(GetFileName, SetsTheFlagAndIsSilentUnlessVerbose) {
  const Captured error(std::cerr);
  char name[32];
  bool flag = false;
  GetFileName("-robs.11o", name, flag, false, 2, "RINEX FILE: ");
  EXPECT_TRUE(flag);
  EXPECT_STREQ(name, "obs.11o");
  EXPECT_EQ(error.Text(), "");
  GetFileName("-robs.11o", name, flag, true, 2, "RINEX FILE: ");
  EXPECT_EQ(error.Text(), "RINEX FILE: obs.11o!\n");
}

TEST(GetFileName, EmptyNameSetsTheFlagToo) {
  char name[32];
  bool flag = false;
  GetFileName("-r", name, flag, false, 2, "");
  EXPECT_TRUE(flag);
  EXPECT_STREQ(name, "");
}

TEST(ParseNumbers, TextBehindTheOption) {
  EXPECT_EQ(ParseFloat("-c0.1", 2), 0.1F);
  EXPECT_EQ(ParseDouble("-c0.1", 2), 0.1);
  EXPECT_EQ(ParseDouble("-c-2.5e3m", 2), -2500);
  EXPECT_EQ(ParseInteger("-n42.9", 2), 42);
  EXPECT_EQ(ParseInteger("-n-3", 2), -3);
}

TEST(ParseNumbers, WhatIsNotANumberIsZero) {
  for (const char* text : {"-cx", "-c", "", "-c-", "-c."}) {
    EXPECT_EQ(ParseFloat(text, 2), 0) << text;
    EXPECT_EQ(ParseDouble(text, 2), 0) << text;
    EXPECT_EQ(ParseInteger(text, 2), 0) << text;
  }
  EXPECT_EQ(ParseDouble("123", 1000), 0);
  EXPECT_EQ(ParseInteger("123", std::numeric_limits<int>::max()), 0);
  EXPECT_EQ(ParseInteger("123", std::numeric_limits<int>::min()), 123);
}

TEST(ParseHMS, HoursMinutesAndSecondsWithFraction) {
  EXPECT_EQ(ParseHMS("00:00:30", 0), 30);
  EXPECT_EQ(ParseHMS("02:15:07.5", 0), 8107.5L); // 7200 + 900 + 7.5
  EXPECT_EQ(ParseHMS("-ii01:00:00", 3), 3600);
  EXPECT_EQ(ParseHMS("99:99:99", 0), 99 * 3661);
}

TEST(ParseHMS, SeparatorsAreNotExamined) { EXPECT_EQ(ParseHMS("02 15x07.5", 0), 8107.5L); }

TEST(ParseHMS, WhatIsMissingIsZero) {
  EXPECT_EQ(ParseHMS("", 0), 0);
  EXPECT_EQ(ParseHMS("1", 0), 3600);
  EXPECT_EQ(ParseHMS("01:30", 0), 5400);
  EXPECT_EQ(ParseHMS("01:30:", 0), 5400);
  EXPECT_EQ(ParseHMS("01:30:05", 9), 0);
}

TEST(ParseDate, AllFieldsAreSet) {
  ymdhms t;
  ParseDate("-t2011-10-09 23:58:57.25", t, 2);
  EXPECT_EQ(t.GetYear(), 2011);
  EXPECT_EQ(t.GetMonth(), 10);
  EXPECT_EQ(t.GetDay(), 9);
  EXPECT_EQ(t.GetHour(), 23);
  EXPECT_EQ(t.GetMinute(), 58);
  EXPECT_EQ(t.GetSecond(), 57.25L);
}

TEST(ParseDate, MissingTimeIsMidnight) {
  ymdhms t(1999, 1, 1, 11, 12, 13);
  ParseDate("2011/10/09", t, 0);
  EXPECT_EQ(t.GetDayOfYear(), 282);
  EXPECT_EQ(t.GetDaySecond(), 0);
}

TEST(ParseDateDeathTest, FieldsAreTestedOneByOne) {
  ymdhms t;
  EXPECT_ENDS(ParseDate("", t, 0), "YEAR not valid");
  EXPECT_ENDS(ParseDate("-201", t, 0), "YEAR not valid");
  EXPECT_ENDS(ParseDate("2011-13-09", t, 0), "MONTH not valid");
  EXPECT_ENDS(ParseDate("2011-02-29", t, 0), "DAY not valid");
  EXPECT_ENDS(ParseDate("2011-10-09 60:00:00", t, 0), "HOUR not valid");
  EXPECT_ENDS(ParseDate("2011-10-09 00:-1:00", t, 0), "MINUTE not valid");
  EXPECT_ENDS(ParseDate("2011-10-09 00:00:60", t, 0), "SECOND not valid");
}

} // namespace
