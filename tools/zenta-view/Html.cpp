#include "Html.h"

namespace view {

namespace {

constexpr const char* kReplacement = "\xef\xbf\xbd"; // U+FFFD

/// Length of the UTF-8 sequence that \p text starts with, 0 where it is none.
std::size_t SequenceLength(std::string_view text) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t n = first >= 0xc2 && first <= 0xdf   ? 2
                        : first >= 0xe0 && first <= 0xef ? 3
                        : first >= 0xf0 && first <= 0xf4 ? 4
                                                         : 0;
  if (n == 0 || text.size() < n) return 0;
  for (std::size_t i = 1; i < n; ++i)
    if ((byte(i) & 0xc0) != 0x80) return 0;
  return n;
}

std::string EscapedCharacter(char c) {
  switch (c) {
  case '&':
    return "&amp;";
  case '<':
    return "&lt;";
  case '>':
    return "&gt;";
  case '"':
    return "&quot;";
  case '\'':
    return "&#39;";
  case '\n':
    return "\n";
  default:
    return static_cast<unsigned char>(c) < ' ' ? kReplacement : std::string(1, c);
  }
}

} // namespace

std::string Escaped(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const std::size_t n = SequenceLength(text);
    if (n == 0)
      out += kReplacement;
    else
      out += n == 1 ? EscapedCharacter(text[0]) : std::string(text.substr(0, n));
    text.remove_prefix(n == 0 ? 1 : n);
  }
  return out;
}

std::string ReplacedAll(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
  return text;
}

} // namespace view
