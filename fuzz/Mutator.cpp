// Mutations that know of lines, columns and numbers. The input files have fixed columns: a byte
// put in or taken out moves the rest of its line out of place, and little behind it is reached.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

constexpr const char* kNumbers[] = {
    "0",     "-1",     "1",        "99",         "100",       "255",    "256",    "500",
    "32767", "32768",  "65535",    "65536",      "99999",     "999999", "-99",    "nan",
    "inf",   "-inf",   "1e308",    "9e307",      "1e39",      "-1e300", "1e-300", "0.0",
    "1D999", "0.0D99", "-0.9D+99", "2848",       "86400",     "199999", "200000", "13",
    "31",    "60",     "24",       "2147483647", "4294967296"};

class TextMutation {
public:
  TextMutation(std::string text, unsigned seed) : text_(std::move(text)), random_(seed) {}

  std::string Mutated() {
    for (std::size_t n = 1 + Below(4); n > 0; --n) Once();
    return text_;
  }

private:
  struct Span {
    std::size_t at = 0;
    std::size_t size = 0;
  };

  std::size_t Below(std::size_t n) { return n == 0 ? 0 : random_() % n; }

  void Once() {
    const Span line = Line();
    switch (Below(8)) {
    case 0: // a line twice
      text_.insert(line.at, text_.substr(line.at, line.size));
      return;
    case 1: // without the line
      text_.erase(line.at, line.size);
      return;
    case 2: // the line in place of another
      Overwrite(Line(), text_.substr(line.at, line.size));
      return;
    case 3: // the line somewhere else too
      text_.insert(Line().at, text_.substr(line.at, line.size));
      return;
    case 4: // cut
      if (Below(16) == 0) text_.resize(Below(text_.size() + 1));
      return;
    case 5: // other characters in the same columns
      for (std::size_t n = 1 + Below(3); n > 0 && line.size > 1; --n)
        text_[line.at + Below(line.size - 1)] = " 0123456789-+.eEDGRSC*P#"[Below(24)];
      return;
    default:
      ReplaceNumber(line);
    }
  }

  /// A line with its end.
  Span Line() {
    if (text_.empty()) return {};
    std::size_t at = Below(text_.size());
    at = text_.rfind('\n', at == 0 ? 0 : at - 1);
    at = at == std::string::npos ? 0 : at + 1;
    const std::size_t end = text_.find('\n', at);
    return {at, (end == std::string::npos ? text_.size() : end + 1) - at};
  }

  void Overwrite(Span span, const std::string& with) { text_.replace(span.at, span.size, with); }

  /// Another number, right-aligned where one stood. Blanks in front of it belong to its field.
  void ReplaceNumber(Span line) {
    const std::string_view view = std::string_view(text_).substr(line.at, line.size);
    const std::size_t digit = view.find_first_of("0123456789", Below(view.size()));
    if (digit == std::string_view::npos) return;
    const std::size_t end = std::min(view.find_first_of(" \n", digit), view.size());
    std::size_t first = digit;
    while (first > 0 && view[first - 1] != ' ') --first;
    const std::size_t token = first;
    while (first > 0 && view[first - 1] == ' ') --first;
    std::string number = kNumbers[Below(std::size(kNumbers))];
    number.resize(std::min(number.size(), end - first));
    number.insert(0, number.size() < end - token ? end - token - number.size() : 0, ' ');
    text_.replace(line.at + end - number.size(), number.size(), number);
  }

  std::string text_;
  std::minstd_rand random_;
};

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
  if (seed % 3 == 0) return LLVMFuzzerMutate(data, size, most);
  const std::string mutated =
      TextMutation({reinterpret_cast<const char*>(data), size}, seed).Mutated();
  const std::size_t kept = std::min(mutated.size(), most);
  std::memcpy(data, mutated.data(), kept);
  return kept;
}
