#include "Text.h"
#include "Scenario.h"
#include <cmath>
#include <cstdint>
#include <fmt/format.h>
#include <fstream>

namespace sim {

std::string Exponential(double value) {
  std::string text = fmt::format("{:19.12E}", value);
  text[text.find('E')] = 'D';
  return text;
}

std::string ShortExponential(double value) {
  std::string text = fmt::format("{:12.4E}", value);
  text[text.find('E')] = 'D';
  return text;
}

std::string HeaderLine(std::string_view text, std::string_view label) {
  return fmt::format("{:<60}{:<20}\n", text, label);
}

void AppendThousandths(std::string& out, double value, int width) {
  const std::int64_t thousandths = std::llround(value * 1000);
  std::uint64_t left = static_cast<std::uint64_t>(std::abs(thousandths));
  char digits[24];
  int at = sizeof digits;
  for (int k = 0; k < 4 || left != 0; ++k) {
    if (k == 3) digits[--at] = '.';
    digits[--at] = static_cast<char>('0' + left % 10);
    left /= 10;
  }
  if (thousandths < 0) digits[--at] = '-';
  const int length = static_cast<int>(sizeof digits) - at;
  if (length < width) out.append(static_cast<std::size_t>(width - length), ' ');
  out.append(digits + at, static_cast<std::size_t>(length));
}

double Rounded(double value, int decimals) {
  const double scale = std::pow(10.0, decimals);
  return std::round(value * scale) / scale;
}

void WriteFile(const std::string& name, const std::string& text) {
  std::ofstream out(name, std::ios::binary);
  out << text;
  if (!out.flush()) Fail("can't write " + name);
}

} // namespace sim
