#ifndef MATRIX_EXTENDEDBITS_H
#define MATRIX_EXTENDEDBITS_H

#include <cstdint>
#include <cstring>
#include <limits>

/// Questions about an 80-bit number that its stored bits answer.
///
/// A load and a store of 80 bits take about ten cycles in the floating-point unit, two moves of
/// integers one. In memory: 64 bits of significand with an explicit leading one, then 16 bits
/// of sign and exponent, then padding.
static_assert(std::numeric_limits<long double>::digits == 64 && sizeof(long double) == 16,
              "numbers are 80-bit extended ones");

inline std::uint64_t Significand(const long double& x) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}
inline std::uint16_t SignAndExponent(const long double& x) {
  std::uint16_t bits;
  std::memcpy(&bits, reinterpret_cast<const char*>(&x) + sizeof(std::uint64_t), sizeof bits);
  return bits;
}

/// Zero of either sign.
inline bool IsZero(const long double& x) { return Significand(x) == 0; }
inline bool IsMinusZero(const long double& x) {
  return Significand(x) == 0 && SignAndExponent(x) != 0;
}
/// Neither infinite nor a non-number.
inline bool IsFinite(const long double& x) { return (SignAndExponent(x) & 0x7fff) != 0x7fff; }

/// The same number to the last bit: -0 is not 0, and a non-number equals one of its own bits.
inline bool SameNumber(const long double& x, const long double& y) {
  return Significand(x) == Significand(y) && SignAndExponent(x) == SignAndExponent(y);
}

/// to = from
inline void CopyNumber(long double& to, const long double& from) {
  std::memcpy(&to, &from, sizeof to);
}
inline void ExchangeNumbers(long double& x, long double& y) {
  char held[sizeof x];
  std::memcpy(held, &x, sizeof x);
  std::memcpy(&x, &y, sizeof x);
  std::memcpy(&y, held, sizeof x);
}

#endif
