#ifndef ZENTA_REPORT_BYTEREADER_H
#define ZENTA_REPORT_BYTEREADER_H

#include "PROGINC/LittleEndian.h"
#include "Refusal.h"

#include <fmt/format.h>
#include <string>
#include <string_view>

namespace report {

/// Little-endian numbers one behind the other; refuses to read behind the end.
class ByteReader {
public:
  ByteReader(std::string name, std::string_view bytes) : name_(std::move(name)), bytes_(bytes) {}

  bool AtEnd() const { return at_ == bytes_.size(); }
  std::size_t Left() const { return bytes_.size() - at_; }
  int Int16(std::string_view what) { return GetInt16(bytes_, Take(2, what)); }
  long Int32(std::string_view what) { return GetInt32(bytes_, Take(4, what)); }
  long Uint32(std::string_view what) { return GetUint32(bytes_, Take(4, what)); }
  long double Extended(std::string_view what) {
    return GetExtended(bytes_, Take(kExtendedSize, what));
  }
  /// Refuses the \p size bytes read last.
  [[noreturn]] void RefuseLast(std::size_t size, std::string_view expected) const {
    throw Refusal(fmt::format("{}: byte {}: expected {}", name_, at_ - size, expected));
  }

private:
  std::size_t Take(std::size_t size, std::string_view what) {
    if (Left() < size)
      throw Refusal(fmt::format("{}: byte {}: expected {} ({} bytes), found the end of the file; "
                                "it is cut",
                                name_, at_, what, size));
    at_ += size;
    return at_ - size;
  }

  std::string name_;
  std::string_view bytes_;
  std::size_t at_ = 0;
};

} // namespace report

#endif
