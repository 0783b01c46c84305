#include "GNSS/gnssobs.h"

#include "support/Near.h"

#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <string>

namespace {

class gnssobsPrint : public testing::Test {
protected:
  ~gnssobsPrint() override {
    gnssobsns::PrintType = type_;
    gnssobsns::Width = width_;
    gnssobsshortns::PrintType = shortType_;
    gnssobsshortns::Width = shortWidth_;
  }
  template <typename T> static std::string Print(const T& value) {
    std::ostringstream out;
    out << value;
    return out.str();
  }

private:
  unsigned short type_ = gnssobsns::PrintType;
  unsigned short width_ = gnssobsns::Width;
  unsigned short shortType_ = gnssobsshortns::PrintType;
  unsigned short shortWidth_ = gnssobsshortns::Width;
};
class gnssobsshortPrint : public gnssobsPrint {};

gnssobs Parsed(const char* field) {
  gnssobs g{7.0L, 7, 7};
  g >> field;
  return g;
}

} // namespace

TEST(gnssobs, DefaultIsMissing) {
  const gnssobs g;
  EXPECT_EQ(g.GetObs(), 0.0L);
  EXPECT_EQ(g.GetLli(), 0);
  EXPECT_EQ(g.GetSs(), 0);
  EXPECT_TRUE(g.IsNull());
}

TEST(gnssobs, FieldWithSignalStrength) {
  const gnssobs g = Parsed("  21234567.123 5");
  EXPECT_EQ(g.obs, static_cast<long double>(21234567.123));
  EXPECT_EQ(g.lli, 0);
  EXPECT_EQ(g.ss, 5);
}

TEST(gnssobs, FieldWithBothFlags) {
  const gnssobs g = Parsed("  21234567.12317");
  EXPECT_EQ(g.obs, static_cast<long double>(21234567.123));
  EXPECT_EQ(g.lli, 1);
  EXPECT_EQ(g.ss, 7);
}

TEST(gnssobs, BlankFieldIsMissing) {
  const gnssobs g = Parsed("                ");
  EXPECT_EQ(g.obs, 0.0L);
  EXPECT_EQ(g.lli, 0);
  EXPECT_EQ(g.ss, 0);
}

TEST(gnssobs, FieldEndsBehindItsSixteenCharacters) {
  const gnssobs g = Parsed(" 123456789.1231 987654321.00099");
  EXPECT_EQ(g.obs, static_cast<long double>(123456789.123));
  EXPECT_EQ(g.lli, 1);
  EXPECT_EQ(g.ss, 0);
}

TEST(gnssobs, ShortFieldIsBlankBehindItsEnd) {
  EXPECT_EQ(Parsed("").obs, 0.0L);
  const gnssobs g = Parsed("  -1234567.123");
  EXPECT_EQ(g.obs, static_cast<long double>(-1234567.123));
  EXPECT_EQ(g.lli, 0);
  EXPECT_EQ(g.ss, 0);
}

TEST(gnssobs, FieldFullOfDigitsKeepsTheFlagsApart) {
  const gnssobs g = Parsed("1234567890.12345");
  EXPECT_EQ(g.obs, static_cast<long double>(1234567890.123));
  EXPECT_EQ(g.lli, 4);
  EXPECT_EQ(g.ss, 5);
}

TEST(gnssobs, FlagIsItsCharacterLessZero) {
  const gnssobs g = Parsed("  21234567.123A/");
  EXPECT_EQ(g.lli, 'A' - '0');
  EXPECT_EQ(g.ss, 65535); // '/' is one below '0'
}

TEST(gnssobs, AssignedNumberClearsTheFlags) {
  gnssobs g{1.0L, 2, 3};
  g = 5.0L;
  EXPECT_EQ(g.obs, 5.0L);
  EXPECT_EQ(g.lli, 0);
  EXPECT_EQ(g.ss, 0);
}

TEST(gnssobs, AddedNumberKeepsTheFlags) {
  gnssobs g{1.0L, 2, 3};
  g += 5.0L;
  EXPECT_EQ(g.obs, 6.0L);
  EXPECT_EQ(g.lli, 2);
  EXPECT_EQ(g.ss, 3);
}

TEST(gnssobs, CopyTakesAllFields) {
  const gnssobs g{1.0L, 2, 3};
  gnssobs copy = g;
  const gnssobs& self = copy;
  copy = self;
  EXPECT_EQ(copy.obs, 1.0L);
  EXPECT_EQ(copy.lli, 2);
  EXPECT_EQ(copy.ss, 3);
}

TEST(gnssobs, SettersSetOneFieldEach) {
  gnssobs g;
  g.SetObs(1.5L);
  g.SetLli(4);
  g.SetSs(9);
  EXPECT_EQ(g.GetObs(), 1.5L);
  EXPECT_EQ(g.GetLli(), 4);
  EXPECT_EQ(g.GetSs(), 9);
}

TEST(gnssobs, MissingBelowATenthOfAMillimetre) {
  for (const long double sign : {1.0L, -1.0L}) {
    EXPECT_TRUE((gnssobs{sign * 0.00009999L, 0, 0}.IsNull()));
    EXPECT_FALSE((gnssobs{sign * 0.0001, 0, 0}.IsNull()));
    EXPECT_FALSE((gnssobs{sign * 0.0001001L, 0, 0}.IsNull()));
  }
  EXPECT_FALSE((gnssobs{std::numeric_limits<long double>::quiet_NaN(), 0, 0}.IsNull()));
}

TEST(gnssobs, ScalingKeepsTheFlags) {
  const gnssobs g{3.0L, 1, 7};
  for (const gnssobs& scaled : {2.0L * g, g * 2.0L}) {
    EXPECT_EQ(scaled.obs, 6.0L);
    EXPECT_EQ(scaled.lli, 1);
    EXPECT_EQ(scaled.ss, 7);
  }
}

TEST(gnssobs, SumAndDifferenceClearTheFlags) {
  const gnssobs a{5.0L, 1, 7};
  const gnssobs b{3.0L, 2, 8};
  EXPECT_EQ((a - b).obs, 2.0L);
  EXPECT_EQ((a + b).obs, 8.0L);
  EXPECT_EQ((a - b).lli, 0);
  EXPECT_EQ((a - b).ss, 0);
  EXPECT_EQ((a + b).lli, 0);
  EXPECT_EQ((a + b).ss, 0);
}

TEST(gnssobs, SumAndDifferenceWithAMissingOperandAreZero) {
  const gnssobs a{5.0L, 1, 7};
  const gnssobs missing{0.00005L, 2, 8};
  EXPECT_EQ((a - missing).obs, 0.0L);
  EXPECT_EQ((missing - a).obs, 0.0L);
  EXPECT_EQ((a + missing).obs, 0.0L);
  EXPECT_EQ((missing + a).obs, 0.0L);
  EXPECT_EQ((missing + a).lli, 0);
}

TEST_F(gnssobsPrint, RinexField) {
  gnssobsns::PrintType = 0;
  EXPECT_EQ(Print(gnssobs{21234567.1234L, 1, 7}), "  21234567.12317");
  EXPECT_EQ(Print(gnssobs{-0.5L, 0, 0}), "        -0.50000");
  EXPECT_EQ(Print(gnssobs{0.0L, 1, 7}), "         0.000  ");
}

TEST_F(gnssobsPrint, TableColumn) {
  EXPECT_EQ(Print(gnssobs{21234567.1234L, 1, 7}), "  21234567.123 1 7");
  EXPECT_EQ(Print(gnssobs{}), "         *.*** * *");
}

TEST_F(gnssobsPrint, ValueAloneInItsWidth) {
  gnssobsns::PrintType = 2;
  gnssobsns::Width = 10;
  EXPECT_EQ(Print(gnssobs{1234.5678L, 1, 7}), "  1234.568");
  EXPECT_EQ(Print(gnssobs{}), "     *.***");
}

TEST_F(gnssobsPrint, UnknownTypeWritesNothing) {
  gnssobsns::PrintType = 3;
  gnssobsshortns::PrintType = 3;
  EXPECT_EQ(Print(gnssobs{1.0L, 0, 0}), "");
  EXPECT_EQ(Print(gnssobsshort{1.0L}), "");
}

TEST_F(gnssobsPrint, ValueThatIsMissingButAboveTheThresholdOfOutputIsWritten) {
  const gnssobs g{0.00005L, 0, 0};
  EXPECT_TRUE(g.IsNull());
  EXPECT_EQ(Print(g), "         0.000 0 0");
  EXPECT_EQ(Print(gnssobs{0.000009L, 0, 0}), "         *.*** * *");
}

TEST_F(gnssobsPrint, FieldIsReadBack) {
  gnssobsns::PrintType = 0;
  const gnssobs g{109876543.219, 4, 9};
  gnssobs back;
  back >> Print(g).c_str();
  EXPECT_EQ(back.obs, g.obs);
  EXPECT_EQ(back.lli, g.lli);
  EXPECT_EQ(back.ss, g.ss);
}

TEST(gnssobsshort, FieldFlagsArePassedOver) {
  gnssobsshort g;
  g >> "     -1234.56789";
  EXPECT_EQ(g.GetObs(), static_cast<long double>(-1234.567));
  g >> "";
  EXPECT_EQ(g.GetObs(), 0.0L);
}

TEST(gnssobsshort, MissingBelowAHundredThousandth) {
  gnssobsshort g;
  EXPECT_TRUE(g.IsNull());
  for (const long double sign : {1.0L, -1.0L}) {
    g = sign * 0.000009L;
    EXPECT_TRUE(g.IsNull());
    g = sign * 0.00001;
    EXPECT_FALSE(g.IsNull());
    g.SetObs(sign * 0.00005L);
    EXPECT_FALSE(g.IsNull());
  }
}

TEST_F(gnssobsshortPrint, RinexField) {
  gnssobsshortns::PrintType = 0;
  EXPECT_EQ(Print(gnssobsshort{45.25L}), "        45.250  ");
}

TEST_F(gnssobsshortPrint, MissingRinexFieldHasTheDecimalsOfTheStream) {
  gnssobsshortns::PrintType = 0;
  std::ostringstream out;
  out.precision(2);
  out << gnssobsshort{};
  EXPECT_EQ(out.str(), "          0.00  ");
}

TEST_F(gnssobsshortPrint, TableColumn) {
  EXPECT_EQ(Print(gnssobsshort{45.25L}), "    45.250 0 0");
  EXPECT_EQ(Print(gnssobsshort{}), "     *.*** * *");
}

TEST_F(gnssobsshortPrint, ValueAloneInItsWidth) {
  gnssobsshortns::PrintType = 2;
  gnssobsshortns::Width = 8;
  EXPECT_EQ(Print(gnssobsshort{45.25L}), "  45.250");
  EXPECT_EQ(Print(gnssobsshort{}), "   *.***");
}
