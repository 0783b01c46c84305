#include "PROGINC/LittleEndian.h"

#include <cmath>
#include <limits>

namespace {

constexpr int kExponentBias = 16383;
constexpr std::uint32_t kExponentMax = 0x7fff; // infinity and what is not a number
constexpr std::uint32_t kSignBit = 0x8000;
constexpr std::uint64_t kLeadingOne = std::uint64_t{1} << 63;

/// Appends the \p n lowest bytes of \p bits.
void PutBytes(std::string& out, std::uint64_t bits, std::size_t n) {
  for (std::size_t k = 0; k < n; ++k) out.push_back(static_cast<char>(bits >> (8 * k) & 0xff));
}

std::uint64_t GetBytes(std::string_view bytes, std::size_t at, std::size_t n) {
  std::uint64_t bits = 0;
  for (std::size_t k = 0; k < n && at + k < bytes.size(); ++k)
    bits |= std::uint64_t{static_cast<unsigned char>(bytes[at + k])} << (8 * k);
  return bits;
}

} // namespace

void PutInt16(std::string& out, std::int16_t value) {
  PutBytes(out, static_cast<std::uint16_t>(value), 2);
}

void PutInt32(std::string& out, std::int32_t value) {
  PutBytes(out, static_cast<std::uint32_t>(value), 4);
}

void PutUint32(std::string& out, std::uint32_t value) { PutBytes(out, value, 4); }

void PutExtended(std::string& out, long double value) {
  std::uint64_t significand = 0;
  std::uint32_t head = std::signbit(value) ? kSignBit : 0;
  if (std::isnan(value)) {
    significand = kLeadingOne | kLeadingOne >> 1;
    head |= kExponentMax;
  } else if (std::isinf(value)) {
    significand = kLeadingOne;
    head |= kExponentMax;
  } else if (value != 0) {
    int exponent = 0;
    const long double fraction = std::frexp(std::fabs(value), &exponent); // 0.5 to 1
    const int biased = exponent - 1 + kExponentBias;
    // Below the smallest normal number the exponent stays, and the leading 1 moves down.
    const int shift = biased > 0 ? 64 : 63 + biased;
    significand = static_cast<std::uint64_t>(std::ldexp(fraction, shift));
    head |= static_cast<std::uint32_t>(biased > 0 ? biased : 0);
  }
  PutBytes(out, significand, 8);
  PutBytes(out, head, 2);
  PutBytes(out, 0, 2);
}

std::int16_t GetInt16(std::string_view bytes, std::size_t at) {
  return static_cast<std::int16_t>(GetBytes(bytes, at, 2));
}

std::int32_t GetInt32(std::string_view bytes, std::size_t at) {
  return static_cast<std::int32_t>(GetBytes(bytes, at, 4));
}

std::uint32_t GetUint32(std::string_view bytes, std::size_t at) {
  return static_cast<std::uint32_t>(GetBytes(bytes, at, 4));
}

long double GetExtended(std::string_view bytes, std::size_t at) {
  const std::uint64_t significand = GetBytes(bytes, at, 8);
  const auto head = static_cast<std::uint32_t>(GetBytes(bytes, at + 8, 2));
  const std::uint32_t biased = head & kExponentMax;
  long double size = 0;
  if (biased == kExponentMax)
    size = significand << 1 == 0 ? std::numeric_limits<long double>::infinity()
                                 : std::numeric_limits<long double>::quiet_NaN();
  else
    size = std::ldexp(static_cast<long double>(significand),
                      (biased > 0 ? static_cast<int>(biased) : 1) - kExponentBias - 63);
  return (head & kSignBit) != 0 ? -size : size;
}
