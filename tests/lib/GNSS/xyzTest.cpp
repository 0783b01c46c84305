#include "GNSS/xyz.h"

#include "support/Near.h"

#include <iomanip>
#include <limits>
#include <sstream>
#include <type_traits>

namespace {

constexpr long double kHalfTurn = 3.14159265358979323846L;
constexpr long double kNan = std::numeric_limits<long double>::quiet_NaN();

static_assert(std::is_trivially_destructible_v<xyz> && std::is_trivially_copyable_v<xyz>);
static_assert(std::is_trivially_destructible_v<xyzt> && std::is_trivially_copyable_v<xyzt>);

testing::AssertionResult Is(const xyz& v, long double x, long double y, long double z,
                            long double tolerance = 0) {
  if (!Near(v.GetX(), x, tolerance)) return Near(v.GetX(), x, tolerance) << " in x";
  if (!Near(v.GetY(), y, tolerance)) return Near(v.GetY(), y, tolerance) << " in y";
  return Near(v.GetZ(), z, tolerance) << " in z";
}

testing::AssertionResult Is(const xyzt& v, long double x, long double y, long double z,
                            long double dt, long double tolerance = 0) {
  const auto space = Is(xyz(v.GetX(), v.GetY(), v.GetZ()), x, y, z, tolerance);
  return space ? Near(v.GetT(), dt, tolerance) << " in dt" : space;
}

// Puts the process-wide settings back.
class xyzPrint : public testing::Test {
protected:
  void TearDown() override {
    xyzns::NDec = 4;
    xyzns::Width = 14;
    xyzns::Unit = 1;
    xyztns::NDec = 4;
    xyztns::Width = 14;
    xyztns::NDecT = 6;
    xyztns::WidthT = 12;
    xyztns::PrintTime = 1;
    xyztns::Unit = 1;
    xyztns::UnitT = 1;
  }
  template <typename V> static std::string Text(const V& v) {
    std::ostringstream out;
    out << v;
    return out.str();
  }
  static xyz Read(const std::string& text) {
    std::istringstream in(text);
    xyz v;
    in >> v;
    return v;
  }
};

TEST(xyz, StartsAtZero) {
  EXPECT_TRUE(Is(xyz(), 0, 0, 0));
  EXPECT_TRUE(Is(xyzt(), 0, 0, 0, 0));
}

TEST(xyz, SettersAndGetters) {
  xyz v;
  v.SetX(1);
  v.SetY(2);
  v.SetZ(3);
  EXPECT_TRUE(Is(v, 1, 2, 3));
  v.Set(4, 5, 6);
  EXPECT_TRUE(Is(v, 4, 5, 6));
  xyzt w;
  w.SetX(1);
  w.SetY(2);
  w.SetZ(3);
  w.SetT(4);
  EXPECT_TRUE(Is(w, 1, 2, 3, 4));
  w.Set(5, 6, 7, 8);
  EXPECT_TRUE(Is(w, 5, 6, 7, 8));
}

TEST(xyz, LengthLeavesTimeOut) {
  EXPECT_TRUE(Near(xyz(2, 3, 6).GetLength(), 7, 0));
  EXPECT_TRUE(Near(xyzt(2, 3, 6, 1000).GetLength(), 7, 0));
}

TEST(xyz, UnitVectorHasTheGivenLength) {
  EXPECT_TRUE(Is(xyz(2, -3, 6).GetUnitVector(14), 4, -6, 12, 1e-17L));
  EXPECT_TRUE(Is(xyzt(2, -3, 6, 99).GetUnitVector(14), 4, -6, 12, 0, 1e-17L));
}

TEST(xyz, UnitVectorOfZeroIsNotANumber) {
  EXPECT_TRUE(std::isnan(xyz().GetUnitVector(1).GetX()));
  EXPECT_TRUE(std::isnan(xyzt().GetUnitVector(1).GetZ()));
}

TEST(xyz, UnitVectorReachesWhereSquaresWouldOverflow) {
  const long double big = std::ldexp(1.0L, 8200); // its square is beyond the exponent range
  EXPECT_TRUE(Is(xyz(0, big, 0).GetUnitVector(1), 0, 1, 0, 1e-18L));
}

TEST(xyz, RotationIsCounterClockwise) {
  const long double quarter = kHalfTurn / 2;
  EXPECT_TRUE(Is(xyz(1, 2, 3).RotateX(quarter), 1, -3, 2, 1e-18L));
  EXPECT_TRUE(Is(xyz(1, 2, 3).RotateY(quarter), 3, 2, -1, 1e-18L));
  EXPECT_TRUE(Is(xyz(1, 2, 3).RotateZ(quarter), -2, 1, 3, 1e-18L));
  EXPECT_TRUE(Is(xyzt(1, 2, 3, 4).RotateX(quarter), 1, -3, 2, 4, 1e-18L));
  EXPECT_TRUE(Is(xyzt(1, 2, 3, 4).RotateY(quarter), 3, 2, -1, 4, 1e-18L));
  EXPECT_TRUE(Is(xyzt(1, 2, 3, 4).RotateZ(quarter), -2, 1, 3, 4, 1e-18L));
}

TEST(xyz, RotationByThirtyDegrees) {
  // cos 30 = sqrt(3)/2, sin 30 = 1/2: (2, 0) turns to (sqrt(3), 1).
  const long double root3 = 1.73205080756887729353L;
  EXPECT_TRUE(Is(xyz(0, 2, 0).RotateX(kHalfTurn / 6), 0, root3, 1, 1e-18L));
  EXPECT_TRUE(Is(xyz(0, 0, 2).RotateY(kHalfTurn / 6), 1, 0, root3, 1e-18L));
  EXPECT_TRUE(Is(xyz(2, 0, 0).RotateZ(kHalfTurn / 6), root3, 1, 0, 1e-18L));
}

TEST(xyz, SumsAndDifferences) {
  const xyz a(1, 2, 3), b(10, 20, 30);
  const xyzt c(100, 200, 300, 400), d(1, 1, 1, 1);
  EXPECT_TRUE(Is(a + b, 11, 22, 33));
  EXPECT_TRUE(Is(a - b, -9, -18, -27));
  static_assert(std::is_same_v<decltype(a + c), xyz> && std::is_same_v<decltype(c - a), xyz>);
  EXPECT_TRUE(Is(a + c, 101, 202, 303));
  EXPECT_TRUE(Is(a - c, -99, -198, -297));
  EXPECT_TRUE(Is(c + a, 101, 202, 303));
  EXPECT_TRUE(Is(c - a, 99, 198, 297));
  EXPECT_TRUE(Is(c + d, 101, 201, 301, 401));
  EXPECT_TRUE(Is(c - d, 99, 199, 299, 399));
  xyz s = a;
  s += c;
  EXPECT_TRUE(Is(s, 101, 202, 303));
  s -= c;
  EXPECT_TRUE(Is(s, 1, 2, 3));
}

TEST(xyzt, ScalingLeavesTimeAndAddingAddsIt) {
  xyzt v(1, 2, 3, 4);
  v *= 2;
  EXPECT_TRUE(Is(v, 2, 4, 6, 4));
  v += v;
  EXPECT_TRUE(Is(v, 4, 8, 12, 8));
  v /= 4;
  EXPECT_TRUE(Is(v, 1, 2, 3, 8));
  v -= xyzt(1, 1, 1, 1);
  EXPECT_TRUE(Is(v, 0, 1, 2, 7));
}

TEST(xyz, Products) {
  const xyz a(1, 2, 3), b(-4, 5, 6);
  EXPECT_TRUE(Is(a * 2, 2, 4, 6));
  EXPECT_TRUE(Is(2 * a, 2, 4, 6));
  EXPECT_TRUE(Near(a * b, 24, 0)); // -4 + 10 + 18
  EXPECT_TRUE(Near(a * xyzt(-4, 5, 6, 1000), 24, 0));
  EXPECT_TRUE(Is(CrossP(a, b), -3, -18, 13)); // 12-15, -12-6, 5+8
  EXPECT_TRUE(Is(CrossP(xyz(1, 0, 0), xyz(0, 1, 0)), 0, 0, 1));
  EXPECT_TRUE(Is(ElementP(a, b), -4, 10, 18));
  EXPECT_TRUE(Is(sqrt(xyz(4, 9, 2.25L)), 2, 3, 1.5L));
  xyz c = b;
  c /= 2;
  EXPECT_TRUE(Is(c, -2, 2.5L, 3));
}

TEST(xyz, EqualWithinTenToTheMinusFourteen) {
  const xyz a(1, 2, 3);
  EXPECT_TRUE(a == xyz(1 + 9e-15L, 2 - 9e-15L, 3));
  EXPECT_FALSE(a == xyz(1, 2, 3 + 1.1e-14L));
  EXPECT_TRUE(a != xyz(1, 2 + 1.1e-14L, 3));
  const xyzt b(1, 2, 3, 4);
  EXPECT_TRUE(b == xyzt(1, 2, 3, 4 + 9e-15L));
  EXPECT_TRUE(b != xyzt(1, 2, 3, 4 + 1.1e-14L));
}

TEST(xyz, ObjectEqualsItselfEvenWhenNotANumber) {
  const xyz a(kNan, 0, 0);
  const xyzt b(0, 0, 0, kNan);
  EXPECT_TRUE(a == a);
  EXPECT_TRUE(b == b);
  EXPECT_FALSE(a == xyz(a));
  EXPECT_FALSE(b == xyzt(b));
}

TEST_F(xyzPrint, FieldsOfFourteenWithFourDecimals) {
  EXPECT_EQ(Text(xyz(6378137, -1.5L, 0)), "  6378137.0000       -1.5000        0.0000");
  EXPECT_EQ(Text(xyzt(6378137, -1.5L, 0, 0.25L)),
            "  6378137.0000       -1.5000        0.0000    0.250000");
}

TEST_F(xyzPrint, StreamStaysFixed) {
  std::ostringstream out;
  out << xyz() << std::setprecision(2) << 1e10;
  EXPECT_EQ(out.str(), "        0.0000        0.0000        0.000010000000000.00");
}

TEST_F(xyzPrint, HundredAndThousandMultiplyAnythingElseDivides) {
  xyzns::Width = 8;
  xyzns::NDec = 1;
  xyzns::Unit = 100;
  EXPECT_EQ(Text(xyz(1, 2, 3)), "   100.0   200.0   300.0");
  xyzns::Unit = 1000;
  EXPECT_EQ(Text(xyz(1, 2, 3)), "  1000.0  2000.0  3000.0");
  xyzns::Unit = 10;
  EXPECT_EQ(Text(xyz(1, 2, 3)), "     0.1     0.2     0.3");
}

TEST_F(xyzPrint, WithTimeAThousandDivides) {
  xyztns::Width = 8;
  xyztns::NDec = 3;
  xyztns::PrintTime = 0;
  xyztns::Unit = 100;
  EXPECT_EQ(Text(xyzt(1, 2, 3, 4)), " 100.000 200.000 300.000");
  xyztns::Unit = 1000;
  EXPECT_EQ(Text(xyzt(1, 2, 3, 4)), "   0.001   0.002   0.003");
}

TEST_F(xyzPrint, TimeOnlyWhenSwitchIsOne) {
  xyztns::Width = 4;
  xyztns::NDec = 0;
  xyztns::WidthT = 6;
  xyztns::NDecT = 1;
  xyztns::UnitT = 1000;
  EXPECT_EQ(Text(xyzt(1, 2, 3, 0.5L)), "   1   2   3 500.0");
  xyztns::PrintTime = 2;
  EXPECT_EQ(Text(xyzt(1, 2, 3, 0.5L)), "   1   2   3");
}

TEST_F(xyzPrint, ReadingDividesByAHundredAndMultipliesByAnythingElse) {
  EXPECT_TRUE(Is(Read(" 1.5 -2\n3e3"), 1.5L, -2, 3000));
  xyzns::Unit = 100;
  EXPECT_TRUE(Is(Read("100 200 300"), 1, 2, 3));
  xyzns::Unit = 1000;
  EXPECT_TRUE(Is(Read("1 2 3"), 1000, 2000, 3000));
}

TEST_F(xyzPrint, ReadingWithTimeTakesTheNumbersAsTheyStand) {
  xyztns::Unit = 100;
  xyztns::UnitT = 100;
  std::istringstream in("1 2 3 4");
  xyzt v;
  in >> v;
  EXPECT_TRUE(Is(v, 1, 2, 3, 4));
}

TEST_F(xyzPrint, FailedReadingLeavesTheVector) {
  std::istringstream in("1 2 x");
  xyz v(7, 8, 9);
  in >> v;
  EXPECT_TRUE(in.fail());
  EXPECT_TRUE(Is(v, 7, 8, 9));
}

} // namespace
