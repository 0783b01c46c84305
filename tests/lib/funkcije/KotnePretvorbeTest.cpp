#include "funkcije/KotnePretvorbe.h"

#include "support/Near.h"

#include <limits>

namespace {

TEST(KotnePretvorbe, DegreesAndRadians) {
  EXPECT_EQ(deg2rad(180.0L), 3.141592653589793);
  EXPECT_EQ(deg2rad(180.0), 3.141592653589793);
  EXPECT_EQ(rad2deg(3.141592653589793), 180.0);
  EXPECT_TRUE(Near(rad2deg(deg2rad(12.3456789L)), 12.3456789L, 1e-17L));
  static_assert(std::is_same_v<decltype(deg2rad(1.0)), double>);
  static_assert(std::is_same_v<decltype(rad2dms(1.0L)), long double>);
}

TEST(KotnePretvorbe, PackedAngleOf45DegreesHalfAndTwelveSeconds) {
  // 45 30 12 = 45 + 30/60 + 12/3600 = 45.503333...
  const long double rad = dms2rad(45.3012L);
  EXPECT_TRUE(Near(rad2deg(rad), 45 + 30 / 60.0L + 12 / 3600.0L, 1e-15L));
  EXPECT_TRUE(Near(rad2dms(rad), 45.3012L, 1e-15L));
  EXPECT_TRUE(Near(dms2rad(-45.3012L), -rad, 0));
  EXPECT_TRUE(Near(rad2dms(-rad), -45.3012L, 1e-15L));
}

TEST(KotnePretvorbe, PackedAngleInDoublePrecision) {
  EXPECT_TRUE(Near(rad2deg(dms2rad(45.3012)), 45.503333333333333L, 1e-11L));
}

TEST(KotnePretvorbe, AnglesBelowOneDegreeKeepTheirSign) {
  EXPECT_TRUE(Near(rad2deg(dms2rad(-0.3L)), -0.5L, 1e-17L));
  EXPECT_TRUE(Near(rad2dms(deg2rad(-0.51L)), -0.3036L, 1e-17L));
}

TEST(KotnePretvorbe, ThereAndBack) {
  for (int d = -359; d < 360; d += 7)
    for (int s = 1; s < 3600; s += 101) {
      const long double rad = deg2rad(d + (s + 0.25L) / 3600);
      EXPECT_TRUE(Near(dms2rad(rad2dms(rad)), rad, 1e-17L)) << d << ' ' << s;
    }
}

TEST(KotnePretvorbe, TextHasThreePlacesAndTheSeconds) {
  EXPECT_EQ(dms2dms(46.052425L, 2), " 46  5 24.25");
  EXPECT_EQ(dms2dms(46.052425L, 8), " 46  5 24.25000000");
  EXPECT_EQ(dms2dms(-123.595950L, 1), "-123 59 59.5");
  EXPECT_EQ(dms2dms(1.0L, 0), "  1  0   0");
}

TEST(KotnePretvorbe, TextBetweenMinusOneAndZeroDegreesLosesItsSign) {
  // Half a unit in the last place of 0.3 is enough to make 29 minutes 60 seconds of it.
  EXPECT_EQ(dms2dms(-0.3012345L, 4), "  0 30 12.3450");
  EXPECT_EQ(dms2dms(-0.3, 8).substr(0, 3), "  0");
  EXPECT_EQ(dms2dms(-0.3, 8).size(), 18U);
}

TEST(KotnePretvorbe, OddValuesAreDefined) {
  EXPECT_TRUE(std::isnan(dms2rad(std::numeric_limits<long double>::quiet_NaN())));
  EXPECT_TRUE(std::isnan(rad2dms(std::numeric_limits<double>::quiet_NaN())));
  EXPECT_FALSE(dms2dms(1e300L, 8).empty());
  EXPECT_FALSE(dms2dms(-std::numeric_limits<long double>::infinity(), 8).empty());
  EXPECT_EQ(dms2dms(1.0L, -5), dms2dms(1.0L, 0));
}

} // namespace
