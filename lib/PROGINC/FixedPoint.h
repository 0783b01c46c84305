#ifndef PROGINC_FIXEDPOINT_H
#define PROGINC_FIXEDPOINT_H

#include "PROGINC/TextNumber.h"

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

inline constexpr std::size_t kF14_3Width = 14;

#ifdef __SSE2__
/// The characters of a field, all looked at and converted at once. Bit or byte k is character k.
class FieldBytes {
public:
  /// Takes the 16 characters at \p text.
  explicit FieldBytes(const char* text)
      : text_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text))),
        lessZero_(_mm_sub_epi8(text_, _mm_set1_epi8('0'))),
        isDigit_(_mm_cmpeq_epi8(_mm_min_epu8(lessZero_, _mm_set1_epi8(9)), lessZero_)) {}

  unsigned Digits() const { return Bits(isDigit_); }
  unsigned Equal(char c) const { return Bits(_mm_cmpeq_epi8(text_, _mm_set1_epi8(c))); }

  /// The number that the digits of F14.3 make, without the point; other characters count as 0.
  std::int64_t Thousandths() const {
    // Two characters on, the flags behind the field are gone and the decimals in place; the whole
    // part goes over the point.
    const __m128i isDecimal = _mm_set_epi32(~0xff, 0, 0, 0);
    const __m128i shifted = _mm_slli_si128(_mm_and_si128(lessZero_, isDigit_), 2);
    const __m128i whole = _mm_slli_si128(_mm_andnot_si128(isDecimal, shifted), 1);
    const __m128i all = _mm_or_si128(whole, _mm_and_si128(isDecimal, shifted));
    // Two, four and eight digits to a number.
    const __m128i twos = _mm_srli_epi16(_mm_mullo_epi16(all, _mm_set1_epi16(10 * 256 + 1)), 8);
    const __m128i fours = _mm_madd_epi16(twos, _mm_set1_epi32(1 << 16 | 100));
    const __m128i eights =
        _mm_madd_epi16(_mm_packs_epi32(fours, fours), _mm_set1_epi32(1 << 16 | 10000));
    const auto both = static_cast<std::uint64_t>(_mm_cvtsi128_si64(eights));
    return static_cast<std::int64_t>((both & 0xffffffff) * 100000000 + (both >> 32));
  }

private:
  static unsigned Bits(__m128i bytes) {
    return static_cast<unsigned>(_mm_movemask_epi8(bytes)) & ((1U << kF14_3Width) - 1);
  }

  __m128i text_;
  __m128i lessZero_; ///< digits as numbers
  __m128i isDigit_;
};

/// Reads the number at \p text where it is written as F14.3 writes: blanks, a minus or none, digits
/// up to column 10, the point and three digits; or blanks alone. False for others.
///
/// Thirteen digits make a whole number that double holds, and its quotient by 1000 is rounded
/// once, as the text's own value is: the same double.
inline bool ReadPlainF14_3(const char* text, double& value) {
  constexpr unsigned kAll = (1U << kF14_3Width) - 1;
  constexpr unsigned kPoint = 1U << 10;
  const FieldBytes bytes(text);
  const unsigned blanks = bytes.Equal(' ');
  if (text[10] != '.' || (blanks & (blanks + 1)) != 0) {
    value = 0;
    return blanks == kAll;
  }
  const unsigned known = blanks | kPoint | bytes.Digits();
  bool isNegative = false;
  if (known != kAll) {
    const unsigned behindBlanks = blanks + 1;
    isNegative = (known | behindBlanks) == kAll && bytes.Equal('-') == behindBlanks;
    if (!isNegative) return false;
  }
  const double magnitude = static_cast<double>(bytes.Thousandths()) / 1000;
  value = isNegative ? -magnitude : magnitude;
  return true;
}
#else
inline bool ReadPlainF14_3(const char*, double&) { return false; }
#endif

/// ToDouble of the first 14 of the 16 characters at \p text.
inline double ReadF14_3(const char* text) {
  double value;
  if (ReadPlainF14_3(text, value)) return value;
  return ToDouble({text, kF14_3Width});
}

#endif
