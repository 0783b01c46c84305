#include "LineReader.h"

#include "Refusal.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <limits>

namespace report {

namespace {

constexpr std::size_t kShownLength = 60;

/// Quoted for a message: control and further bytes as their codes, long texts cut.
std::string Shown(std::string_view text) {
  std::string out = "\"";
  for (const char c : text.substr(0, kShownLength)) {
    if (const auto byte = static_cast<unsigned char>(c); byte >= ' ' && byte < 127)
      out += c;
    else
      out += fmt::format("\\x{:02x}", byte);
  }
  return out + (text.size() > kShownLength ? "...\"" : "\"");
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t CountDigits(std::string_view text) {
  std::size_t n = 0;
  while (n < text.size() && IsDigit(text[n])) ++n;
  return n;
}

std::size_t SignLength(std::string_view text) { return text.starts_with('-') ? 1 : 0; }

/// Length of the number without a value that \p text starts with, 0 where there is none.
std::size_t OddNumberLength(std::string_view text) {
  const std::size_t sign = SignLength(text);
  const std::string_view name = text.substr(sign, 3);
  return name == "nan" || name == "inf" ? sign + 3 : 0;
}

std::size_t WholeLength(std::string_view text) {
  const std::size_t sign = SignLength(text);
  const std::size_t digits = CountDigits(text.substr(sign));
  return digits == 0 ? 0 : sign + digits;
}

std::size_t RealLength(std::string_view text, int decimals) {
  const std::size_t whole = WholeLength(text);
  const auto n = static_cast<std::size_t>(decimals);
  if (whole == 0) return OddNumberLength(text);
  if (text.substr(whole, 1) != ".") return 0;
  if (CountDigits(text.substr(whole + 1)) < n) return 0;
  return whole + 1 + n;
}

} // namespace

LineReader::LineReader(std::string name, std::string_view text) : name_(std::move(name)) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) {
      const std::size_t number = lines_.size() + 1;
      throw Refusal(fmt::format("{}:{}: expected the end of the line, found the end of the "
                                "text behind {}; the report is cut",
                                name_, number, Shown(text)));
    }
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines_.push_back(line);
    text.remove_prefix(end + 1);
  }
}

std::string_view LineReader::Take(std::string_view expected) {
  if (AtEnd()) Refuse(expected);
  return lines_[at_++];
}

void LineReader::Expect(std::string_view line) {
  if (Peek() != line || AtEnd()) Refuse(Shown(line));
  ++at_;
}

bool LineReader::Skip(std::string_view line) {
  if (!NextIs(line)) return false;
  ++at_;
  return true;
}

void LineReader::Refuse(std::string_view expected) const { RefuseLine(at_ + 1, expected); }

void LineReader::RefuseLine(std::size_t number, std::string_view expected) const {
  const std::string found =
      number > lines_.size() ? "the end of the text; the report is cut" : Shown(lines_[number - 1]);
  throw Refusal(fmt::format("{}:{}: expected {}, found {}", name_, number, expected, found));
}

void LineReader::ExpectEnd() const {
  if (!AtEnd()) Refuse("the end of the report");
}

FieldReader::FieldReader(LineReader& lines, std::string_view what)
    : lines_(lines), line_(lines.Take(what)) {}

void FieldReader::Refuse(std::string_view expected) const {
  lines_.RefuseLine(lines_.Number(), fmt::format("{} from column {} on", expected, at_ + 1));
}

void FieldReader::Literal(std::string_view text) {
  if (!Optional(text)) Refuse(Shown(text));
}

bool FieldReader::Optional(std::string_view text) {
  if (!line_.substr(at_).starts_with(text)) return false;
  at_ += text.size();
  return true;
}

std::string_view FieldReader::Token(std::size_t width, std::string_view what,
                                    std::size_t length) const {
  const std::string_view rest = line_.substr(at_);
  const std::size_t blanks = std::min(rest.find_first_not_of(' '), rest.size());
  const bool fits = blanks + length == width || (blanks == 0 && length > width);
  if (length == 0 || !fits) Refuse(what);
  return rest.substr(0, blanks + length);
}

double FieldReader::Real(std::size_t width, int decimals, std::string_view what) {
  const std::string_view rest = line_.substr(at_);
  const std::size_t blanks = std::min(rest.find_first_not_of(' '), rest.size());
  const std::string expected = fmt::format("{} with {} decimals", what, decimals);
  const std::string_view field = Token(width, expected, RealLength(rest.substr(blanks), decimals));
  const std::string_view number = field.substr(blanks);
  at_ += field.size();
  if (number.ends_with("nan")) return std::numeric_limits<double>::quiet_NaN();
  double value = 0;
  std::from_chars(number.data(), number.data() + number.size(), value); // takes "inf" too
  return value;
}

long FieldReader::Whole(std::size_t width, std::string_view what) {
  const std::string_view rest = line_.substr(at_);
  const std::size_t blanks = std::min(rest.find_first_not_of(' '), rest.size());
  const std::string expected = fmt::format("{}, a whole number,", what);
  const std::string_view field = Token(width, expected, WholeLength(rest.substr(blanks)));
  long value = 0;
  const auto read = std::from_chars(field.data() + blanks, field.data() + field.size(), value);
  if (read.ec != std::errc()) Refuse(expected);
  at_ += field.size();
  return value;
}

FieldReader::DayAndSecond FieldReader::Instant() {
  constexpr long kLastDay = 199999;
  constexpr double kDay = 86400;
  const std::size_t start = at_;
  const long day = Whole(6, "a Modified Julian Day");
  const double second = Real(8, 1, "a second of day");
  if (day < 0 || day > kLastDay || !(second >= 0 && second <= kDay)) {
    at_ = start;
    Refuse("an epoch");
  }
  return {static_cast<int>(day), second};
}

std::string_view FieldReader::Rest() {
  const std::string_view rest = line_.substr(at_);
  at_ = line_.size();
  return rest;
}

void FieldReader::ExpectEnd() const {
  if (!AtEnd()) Refuse("the end of the line");
}

} // namespace report
