#include "PROGINC/LittleEndian.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

std::string Extended(long double value) {
  std::string bytes;
  PutExtended(bytes, value);
  return bytes;
}

using namespace std::string_literals;

TEST(LittleEndian, LeastSignificantByteComesFirst) {
  std::string bytes;
  PutInt16(bytes, 0x0102);
  PutInt32(bytes, 0x03040506);
  PutUint32(bytes, 0xfffefdfcU);
  EXPECT_EQ(bytes, "\x02\x01\x06\x05\x04\x03\xfc\xfd\xfe\xff"s);
}

TEST(LittleEndian, NegativeNumbersAreTwosComplement) {
  std::string bytes;
  PutInt16(bytes, -2);
  PutInt32(bytes, -2);
  EXPECT_EQ(bytes, "\xfe\xff\xfe\xff\xff\xff"s);
}

TEST(LittleEndian, IntegersComeBackAtTheirLimits) {
  std::string bytes;
  PutInt16(bytes, std::numeric_limits<std::int16_t>::min());
  PutInt32(bytes, std::numeric_limits<std::int32_t>::min());
  PutUint32(bytes, std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(GetInt16(bytes, 0), std::numeric_limits<std::int16_t>::min());
  EXPECT_EQ(GetInt32(bytes, 2), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(GetUint32(bytes, 6), std::numeric_limits<std::uint32_t>::max());
}

TEST(LittleEndian, BytesBehindTheEndCountAsZero) {
  EXPECT_EQ(GetInt32("\x01\x02", 0), 0x0201);
  EXPECT_EQ(GetInt32("\x01\x02", 2), 0);
  EXPECT_EQ(GetInt16("", std::string::npos), 0);
}

// 1 is 2^0: biased exponent 16383 = 3fff, significand 1.000...
TEST(LittleEndian, OneHasBiasedExponent3fff) {
  EXPECT_EQ(Extended(1.0L), "\0\0\0\0\0\0\0\x80\xff\x3f\0\0"s);
}

// -2.5 = -1.01b * 2^1: sign, exponent 4000, significand 1010 0000...
TEST(LittleEndian, SignAndFractionOfMinusTwoAndAHalf) {
  EXPECT_EQ(Extended(-2.5L), "\0\0\0\0\0\0\0\xa0\0\xc0\0\0"s);
}

TEST(LittleEndian, ZeroIsAllZeroAndKeepsItsSign) {
  EXPECT_EQ(Extended(0.0L), std::string(12, '\0'));
  EXPECT_EQ(Extended(-0.0L), "\0\0\0\0\0\0\0\0\0\x80\0\0"s);
  EXPECT_TRUE(std::signbit(GetExtended(Extended(-0.0L), 0)));
}

TEST(LittleEndian, EveryBitOfAnExtendedNumberComesBack) {
  using Limits = std::numeric_limits<long double>;
  for (const long double value :
       {86399.123456789012345L, 0.1L, -1e-3L, 1.0L + Limits::epsilon(), Limits::max(),
        Limits::min(), Limits::min() / 8 * 3, Limits::denorm_min(), -Limits::denorm_min(),
        Limits::infinity(), -Limits::infinity()})
    EXPECT_EQ(GetExtended(Extended(value), 0), value) << value;
  EXPECT_TRUE(std::isnan(GetExtended(Extended(Limits::quiet_NaN()), 0)));
}

#if defined(__x86_64__)
TEST(LittleEndian, ExtendedIsTheFormatOfTheProcessor) {
  using Limits = std::numeric_limits<long double>;
  for (const long double value : {1.0L / 3, -1e300L, 43200.5L, Limits::min() / 2}) {
    const auto* memory = reinterpret_cast<const char*>(&value);
    EXPECT_EQ(Extended(value).substr(0, 10), std::string(memory, 10)) << value;
  }
}
#endif

} // namespace
