#include "GNSS/neu.h"

#include "support/Near.h"

#include <limits>
#include <sstream>

namespace {

testing::AssertionResult Is(const neu& v, long double n, long double e, long double u) {
  if (!Near(v.GetN(), n, 0)) return Near(v.GetN(), n, 0) << " in n";
  if (!Near(v.GetE(), e, 0)) return Near(v.GetE(), e, 0) << " in e";
  return Near(v.GetU(), u, 0) << " in u";
}

testing::AssertionResult Is(const neut& v, long double n, long double e, long double u,
                            long double dt) {
  const auto space = Is(neu(v.GetN(), v.GetE(), v.GetU()), n, e, u);
  return space ? Near(v.GetT(), dt, 0) << " in dt" : space;
}

// Puts the process-wide settings back.
class neuPrint : public testing::Test {
protected:
  void TearDown() override {
    neuns::NDecNE = 4;
    neuns::NDecU = 4;
    neuns::WidthNE = 12;
    neuns::WidthU = 10;
    neuns::Unit = 1;
    neuns::PrintType = 1;
    neutns::NDecNE = 4;
    neutns::NDecU = 4;
    neutns::NDecT = 6;
    neutns::WidthNE = 12;
    neutns::WidthU = 10;
    neutns::WidthT = 10;
    neutns::UnitT = 1;
  }
  template <typename V> static std::string Text(const V& v) {
    std::ostringstream out;
    out << v;
    return out.str();
  }
  static neu Read(const std::string& text) {
    std::istringstream in(text);
    neu v;
    in >> v;
    return v;
  }
};

TEST(neu, StartsAtZeroAndTakesItsComponents) {
  EXPECT_TRUE(Is(neu(), 0, 0, 0));
  EXPECT_TRUE(Is(neut(), 0, 0, 0, 0));
  neu v;
  v.SetN(1);
  v.SetE(2);
  v.SetU(3);
  EXPECT_TRUE(Is(v, 1, 2, 3));
  v.Set(4, 5, 6);
  EXPECT_TRUE(Is(v, 4, 5, 6));
  neut w;
  w.SetN(1);
  w.SetE(2);
  w.SetU(3);
  w.SetT(4);
  EXPECT_TRUE(Is(w, 1, 2, 3, 4));
  w.Set(5, 6, 7, 8);
  EXPECT_TRUE(Is(w, 5, 6, 7, 8));
}

TEST(neu, LengthLeavesTimeOut) {
  EXPECT_TRUE(Near(neu(1, 4, 8).GetLength(), 9, 0));
  EXPECT_TRUE(Near(neut(1, 4, 8, 100).GetLength(), 9, 0));
}

TEST(neu, Arithmetic) {
  neu v(1, 2, 3);
  v += neu(10, 20, 30);
  EXPECT_TRUE(Is(v, 11, 22, 33));
  v -= neu(1, 2, 3);
  EXPECT_TRUE(Is(v, 10, 20, 30));
  v /= 4;
  EXPECT_TRUE(Is(v, 2.5L, 5, 7.5L));
  EXPECT_TRUE(Is(neu(1, 2, 3) + neu(4, 5, 6), 5, 7, 9));
  EXPECT_TRUE(Is(neu(1, 2, 3) - neu(4, 5, 7), -3, -3, -4));
  EXPECT_TRUE(Is(neu(1, 2, 3) * 3, 3, 6, 9));
  EXPECT_TRUE(Is(3 * neu(1, 2, 3), 3, 6, 9));
  EXPECT_TRUE(Is(ElementP(neu(1, 2, 3), neu(4, 5, 6)), 4, 10, 18));
  EXPECT_TRUE(Is(sqrt(neu(4, 9, 16)), 2, 3, 4));
}

TEST(neut, SumsIncludeTime) {
  neut v(1, 2, 3, 4);
  v += neut(10, 20, 30, 40);
  EXPECT_TRUE(Is(v, 11, 22, 33, 44));
  v -= neut(1, 1, 1, 1);
  EXPECT_TRUE(Is(v, 10, 21, 32, 43));
  EXPECT_TRUE(Is(neut(1, 2, 3, 4) + neut(5, 6, 7, 8), 6, 8, 10, 12));
  EXPECT_TRUE(Is(neut(1, 2, 3, 4) - neut(5, 6, 7, 9), -4, -4, -4, -5));
}

TEST(neu, EqualWithinTenToTheMinusFourteen) {
  EXPECT_TRUE(neu(1, 2, 3) == neu(1, 2 + 9e-15L, 3));
  EXPECT_FALSE(neu(1, 2, 3) == neu(1, 2 + 1.1e-14L, 3));
  EXPECT_TRUE(neut(1, 2, 3, 4) == neut(1, 2, 3, 4 + 9e-15L));
  EXPECT_FALSE(neut(1, 2, 3, 4) == neut(1, 2, 3, 4 + 1.1e-14L));
  const neu none(std::numeric_limits<long double>::quiet_NaN(), 0, 0);
  EXPECT_TRUE(none == none);
  EXPECT_FALSE(none == neu(none));
}

TEST_F(neuPrint, NorthEastUpByTheSettings) {
  EXPECT_EQ(Text(neu(1, -2, 3.25L)), "      1.0000     -2.0000    3.2500");
  neuns::WidthNE = 7;
  neuns::NDecNE = 1;
  neuns::WidthU = 8;
  neuns::NDecU = 2;
  EXPECT_EQ(Text(neu(1, -2, 3.25L)), "    1.0   -2.0    3.25");
}

TEST_F(neuPrint, ScaleMultipliesByHundredOrThousandAndDividesOtherwise) {
  neuns::WidthNE = neuns::WidthU = 8;
  neuns::NDecNE = neuns::NDecU = 1;
  neuns::Unit = 100;
  EXPECT_EQ(Text(neu(1, 2, 3)), "   100.0   200.0   300.0");
  neuns::Unit = 1000;
  EXPECT_EQ(Text(neu(1, 2, 3)), "  1000.0  2000.0  3000.0");
  neuns::Unit = 10;
  EXPECT_EQ(Text(neu(1, 2, 3)), "     0.1     0.2     0.3");
}

TEST_F(neuPrint, ShortFormIsUpEastNorthUnscaled) {
  neuns::PrintType = 0;
  neuns::Unit = 1000;
  EXPECT_EQ(Text(neu(1, -2, 3.25L)), "        3.2500       -2.0000        1.0000");
}

TEST_F(neuPrint, TimeIsScaledByItsUnit) {
  neutns::UnitT = 10;
  EXPECT_EQ(Text(neut(1, -2, 3.25L, 0.5L)), "      1.0000     -2.0000    3.2500  5.000000");
}

TEST_F(neuPrint, ReadingDividesByHundredOrThousandAndMultipliesOtherwise) {
  EXPECT_TRUE(Is(Read("1 2 3"), 1, 2, 3));
  neuns::Unit = 1000;
  EXPECT_TRUE(Is(Read("1000 2000 3000"), 1, 2, 3));
  neuns::Unit = 100;
  EXPECT_TRUE(Is(Read("100 200 300"), 1, 2, 3));
  neuns::Unit = 10;
  EXPECT_TRUE(Is(Read("1 2 3"), 10, 20, 30));
}

TEST_F(neuPrint, ReadingWithTimeTakesTheNumbersAsTheyStand) {
  neutns::UnitT = 10;
  std::istringstream in("1 2 3 4");
  neut v;
  in >> v;
  EXPECT_TRUE(Is(v, 1, 2, 3, 4));
}

} // namespace
