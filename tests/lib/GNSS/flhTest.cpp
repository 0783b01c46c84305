#include "GNSS/flh.h"

#include "support/Ends.h"
#include "support/Near.h"

#include <limits>
#include <sstream>
#include <type_traits>

struct flhPeer {
  static bool TestFi(const flh& p) { return p.TestFi(); }
  static bool TestLa(const flh& p) { return p.TestLa(); }
  static void Error(const flh& p, const char* msg) { p.Error(msg); }
};

namespace {

constexpr long double kNan = std::numeric_limits<long double>::quiet_NaN();
constexpr long double kInf = std::numeric_limits<long double>::infinity();
constexpr long double kDeg = 3.14159265358979323846L / 180;

static_assert(std::is_trivially_destructible_v<flh> && std::is_trivially_destructible_v<flht>);

testing::AssertionResult Is(const flh& p, long double f, long double l, long double h,
                            long double tolerance = 0) {
  if (!Near(p.GetF(), f, tolerance)) return Near(p.GetF(), f, tolerance) << " in f";
  if (!Near(p.GetL(), l, tolerance)) return Near(p.GetL(), l, tolerance) << " in l";
  return Near(p.GetH(), h, tolerance) << " in h";
}

flh AtLatitude(long double f) {
  flh p;
  p.SetF(f);
  return p;
}

// Puts the process-wide settings back.
class flhPrint : public testing::Test {
protected:
  void TearDown() override {
    flhns::NDecFL = 8;
    flhns::NDecH = 4;
    flhns::WidthFL = 12;
    flhns::WidthH = 10;
    flhns::Unit = 0;
    flhtns::NDecFL = 8;
    flhtns::NDecH = 4;
    flhtns::NDecT = 6;
    flhtns::WidthFL = 12;
    flhtns::WidthH = 10;
    flhtns::WidthT = 12;
    flhtns::Unit = 0;
    flhtns::UnitT = 1;
  }
  template <typename V> static std::string Text(const V& v) {
    std::ostringstream out;
    out << v;
    return out.str();
  }
  static flh Read(const std::string& text) {
    std::istringstream in(text);
    flh p;
    in >> p;
    return p;
  }
};

TEST(flh, StartsAtZeroAndTakesItsComponents) {
  EXPECT_TRUE(Is(flh(), 0, 0, 0));
  flh p;
  p.SetF(1);
  p.SetL(2);
  p.SetH(3);
  EXPECT_TRUE(Is(p, 1, 2, 3));
  p.Set(4, 5, 6);
  EXPECT_TRUE(Is(p, 4, 5, 6));
  flht q;
  q.SetF(1);
  q.SetL(2);
  q.SetH(3);
  q.SetT(4);
  EXPECT_EQ(q.GetF() + 10 * q.GetL() + 100 * q.GetH() + 1000 * q.GetT(), 4321);
  q.Set(5, 6, 7, 8);
  EXPECT_EQ(q.GetF() + 10 * q.GetL() + 100 * q.GetH() + 1000 * q.GetT(), 8765);
}

TEST(flh, LongitudeIsNeverChecked) {
  const flh p(1.0L, 500, 0);
  EXPECT_TRUE(Is(flh(p), 1, 500, 0));
  EXPECT_TRUE(std::isnan(flh(1.0L, kNan, 0).GetL()));
}

TEST(flh, BoundsAreNinetyAndAHundredAndEightyOnTheLatitude) {
  EXPECT_TRUE(flhPeer::TestFi(AtLatitude(90)));
  EXPECT_TRUE(flhPeer::TestFi(AtLatitude(-90)));
  EXPECT_FALSE(flhPeer::TestFi(AtLatitude(90.000001L)));
  EXPECT_FALSE(flhPeer::TestFi(AtLatitude(-90.000001L)));
  EXPECT_FALSE(flhPeer::TestFi(AtLatitude(kNan)));
  EXPECT_TRUE(flhPeer::TestLa(AtLatitude(180)));
  EXPECT_FALSE(flhPeer::TestLa(AtLatitude(-180.000001L)));
  EXPECT_FALSE(flhPeer::TestLa(AtLatitude(kNan)));
  flh farEast;
  farEast.SetL(500);
  EXPECT_TRUE(flhPeer::TestLa(farEast));
}

TEST(flh, SettersDoNotCheck) {
  flh p;
  p.Set(1000, 0, 0);
  EXPECT_EQ(p.GetF(), 1000);
  p.SetF(-1000);
  EXPECT_EQ(p.GetF(), -1000);
}

TEST(flhDeathTest, LatitudeOfAHundredEndsTheProgram) {
  EXPECT_ENDS(flh(100, 0, 0), "^\n\\*\\*\\*\\* flh: Error -> LATITUDE not valid \\*\\*\\*\\*\n"
                              "     Exiting class flh \\.\\.\\. \n$");
  EXPECT_ENDS(flht(100, 0, 0, 0), "^\n\\*\\*\\*\\* flht: Error -> LATITUDE not valid \\*\\*\\*\\*\n"
                                  "     Exiting class flht \\.\\.\\. \n$");
}

TEST(flhDeathTest, LatitudeThatIsNotANumberEndsTheProgram) {
  EXPECT_ENDS(flh(kNan, 0, 0), "LATITUDE not valid");
  EXPECT_ENDS(flht(kNan, 0, 0, 0), "LATITUDE not valid");
  EXPECT_ENDS(flh(kInf, 0, 0), "LATITUDE not valid");
}

TEST(flhDeathTest, CopyAssignmentAndSumsCheck) {
  const flh bad = AtLatitude(kNan);
  flh p;
  EXPECT_ENDS(flh copy(bad), "LATITUDE not valid");
  EXPECT_ENDS(p = bad, "LATITUDE not valid");
  EXPECT_ENDS(p = AtLatitude(100), "LATITUDE not valid");
  EXPECT_ENDS(p += bad, "LATITUDE not valid");
  EXPECT_ENDS(p -= bad, "LATITUDE not valid");
  EXPECT_ENDS(flh(60, 0, 0) + flh(60, 0, 0), "LATITUDE not valid");
  EXPECT_ENDS(flh(60, 0, 0) - flh(-60, 0, 0), "LATITUDE not valid");
  flht badT, q;
  badT.SetF(-100);
  EXPECT_ENDS(flht copy(badT), "flht: Error -> LATITUDE not valid");
  EXPECT_ENDS(q = badT, "flht: Error -> LATITUDE not valid");
  EXPECT_ENDS(q += badT, "flht: Error -> LATITUDE not valid");
  EXPECT_ENDS(q -= badT, "flht: Error -> LATITUDE not valid");
}

TEST(flhDeathTest, LongitudeReportNamesTheClass) {
  EXPECT_ENDS(flhPeer::Error(flh(), "LONGITUDE not valid"),
              "\n\\*\\*\\*\\* flh: Error -> LONGITUDE not valid \\*\\*\\*\\*\n");
}

TEST(flh, Arithmetic) {
  flh p(0.5L, 1, 100);
  p += flh(0.25L, 2, 10);
  EXPECT_TRUE(Is(p, 0.75L, 3, 110));
  p -= flh(0.5L, 1, 100);
  EXPECT_TRUE(Is(p, 0.25L, 2, 10));
  EXPECT_TRUE(Is(flh(0.5L, 1, 100) + flh(0.25L, 2, 10), 0.75L, 3, 110));
  EXPECT_TRUE(Is(flh(0.5L, 1, 100) - flh(0.25L, 2, 10), 0.25L, -1, 90));
  const flht sum = flht(0.5L, 1, 100, 7) + flht(0.25L, 2, 10, 3);
  EXPECT_TRUE(sum == flht(0.75L, 3, 110, 10));
  EXPECT_TRUE(sum - flht(0.25L, 2, 10, 3) == flht(0.5L, 1, 100, 7));
}

TEST(flh, EqualWithinTenToTheMinusFourteen) {
  EXPECT_TRUE(flh(1, 2, 3) == flh(1, 2, 3 + 9e-15L));
  EXPECT_FALSE(flh(1, 2, 3) == flh(1, 2, 3 + 1.1e-14L));
  EXPECT_FALSE(flht(1, 2, 3, 4) == flht(1, 2, 3, 4 + 1.1e-14L));
  const flh none(1, kNan, 3);
  EXPECT_TRUE(none == none);
  EXPECT_FALSE(none == flh(none));
}

TEST_F(flhPrint, RadiansByDefault) {
  EXPECT_EQ(Text(flh(0.5L, -1.25L, 123.4L)), "  0.50000000 -1.25000000  123.4000");
  EXPECT_EQ(Text(flht(0.5L, -1.25L, 123.4L, 2)), "  0.50000000 -1.25000000  123.4000    2.000000");
}

TEST_F(flhPrint, DegreesPackedAndSeparate) {
  // 46 05 24.0 north, 14 30 36.0 west.
  const flh p(46.09L * kDeg, -14.51L * kDeg, 300);
  flhns::Unit = 1;
  EXPECT_EQ(Text(p), " 46.09000000-14.51000000  300.0000");
  flhns::Unit = 2;
  EXPECT_EQ(Text(p), " 46.05240000-14.30360000  300.0000");
  flhns::Unit = 3;
  flhns::NDecFL = 2;
  EXPECT_EQ(Text(p), " 46  5 24.00-14 30 36.00  300.0000");
  flhns::Unit = 4;
  EXPECT_EQ(Text(p), "  300.0000");
}

TEST_F(flhPrint, TimeIsScaledByItsUnit) {
  flhtns::Unit = 1;
  flhtns::UnitT = 100;
  EXPECT_EQ(Text(flht(46.09L * kDeg, -14.51L * kDeg, 300, 0.5L)),
            " 46.09000000-14.51000000  300.0000   50.000000");
}

TEST_F(flhPrint, ReadsEachUnit) {
  const long double f = 46.09L * kDeg, l = -14.51L * kDeg;
  EXPECT_TRUE(Is(Read("0.5 -1.25 123.5"), 0.5L, -1.25L, 123.5L));
  flhns::Unit = 1;
  EXPECT_TRUE(Is(Read("46.09 -14.51 300"), f, l, 300, 1e-15L));
  flhns::Unit = 2;
  EXPECT_TRUE(Is(Read("46.0524 -14.3036 300"), f, l, 300, 1e-15L));
  flhns::Unit = 3;
  EXPECT_TRUE(Is(Read("46 5 24.0 14 30 36.0 300"), f, -l, 300, 1e-15L));
}

TEST_F(flhPrint, NegativeDegreesDoNotCarryToTheMinutes) {
  flhns::Unit = 3;
  EXPECT_TRUE(Is(Read("-45 30 0 -10 15 0 0"), -44.5L * kDeg, -9.75L * kDeg, 0, 1e-15L));
}

TEST_F(flhPrint, ReadsTimeAsItStands) {
  flhtns::Unit = 1;
  flhtns::UnitT = 100;
  std::istringstream in("90 45 10 7");
  flht p;
  in >> p;
  EXPECT_TRUE(Near(p.GetF(), 90 * kDeg, 1e-15L));
  EXPECT_TRUE(Near(p.GetL(), 45 * kDeg, 1e-15L));
  EXPECT_EQ(p.GetH(), 10);
  EXPECT_EQ(p.GetT(), 7);
}

} // namespace
