#include "PROGINC/TextNumber.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <system_error>

namespace {

bool IsSpace(char c) { return c == ' ' || ('\t' <= c && c <= '\r'); }

/// \p text behind white space and a plus sign, which from_chars does not pass over. Empty where
/// the plus sign is followed by another sign, which is no number.
std::string_view FromNumber(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  if (text.empty()) return {};
  if (text.front() != '+') return text;
  text.remove_prefix(1);
  return text.empty() || text.front() == '-' ? std::string_view{} : text;
}

} // namespace

double ToDouble(std::string_view text) {
  const std::string_view number = FromNumber(text);
  const char* const end = number.data() + number.size();
  double value = 0;
  const auto [stop, fault] = std::from_chars(number.data(), end, value);
  if (fault == std::errc::invalid_argument) return 0;
  // Left to strtod: too small, too large and hexadecimal numbers.
  if (fault != std::errc{} || (stop != end && (*stop == 'x' || *stop == 'X')))
    value = std::strtod(std::string(number).c_str(), nullptr);
  return std::isfinite(value) ? value : 0.0;
}

int ToInt(std::string_view text) {
  const std::string_view number = FromNumber(text);
  int value = 0;
  const auto [stop, fault] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (fault != std::errc::result_out_of_range) return value;
  return number.front() == '-' ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
}
