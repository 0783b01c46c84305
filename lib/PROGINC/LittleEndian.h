#ifndef PROGINC_LITTLEENDIAN_H
#define PROGINC_LITTLEENDIAN_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Numbers of the binary files: least significant byte first, one field behind the other
/// without padding, of the same size on every platform.

/// Size of an extended-precision field: the 10 bytes of the x87 format and 2 of zero.
inline constexpr std::size_t kExtendedSize = 12;

/// Append a number to \p out.
void PutInt16(std::string& out, std::int16_t value);
void PutInt32(std::string& out, std::int32_t value);
void PutUint32(std::string& out, std::uint32_t value);
/// Sign, 15 bits of exponent and 64 bits of significand, its leading 1 included (Intel SDM
/// volume 1, 4.2.2), then two zero bytes.
void PutExtended(std::string& out, long double value);

/// The number at byte \p at of \p bytes; bytes behind the end count as 0.
std::int16_t GetInt16(std::string_view bytes, std::size_t at);
std::int32_t GetInt32(std::string_view bytes, std::size_t at);
std::uint32_t GetUint32(std::string_view bytes, std::size_t at);
long double GetExtended(std::string_view bytes, std::size_t at);

#endif
