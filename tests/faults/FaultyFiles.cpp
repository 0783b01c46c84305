#include "FaultyFiles.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <random>
#include <set>

namespace {

constexpr unsigned kSeed = 20111010;

bool IsDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size())
    text.replace(at, what.size(), with);
  return text;
}

std::string Noise(std::size_t n) {
  std::mt19937 random(kSeed);
  std::string text;
  for (std::size_t k = 0; k < n; ++k) text += static_cast<char>(random() & 0xFF);
  return text;
}

/// With their ends.
std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    lines.push_back(text.substr(at, end - at));
    at = end;
  }
  return lines;
}

std::string EachTwice(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + line;
  return text;
}

std::string EveryOther(const std::vector<std::string>& lines) {
  std::string text;
  for (std::size_t k = 0; k < lines.size(); k += 2) text += lines[k];
  return text;
}

std::string Backwards(std::vector<std::string> lines) {
  std::reverse(lines.begin(), lines.end());
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

/// Whole numbers, which are counts, dates and satellites, with nines for digits.
std::string HugeCounts(std::string text) {
  for (std::size_t at = 0; at < text.size();) {
    if (!IsDigit(text[at])) {
      ++at;
      continue;
    }
    std::size_t end = at;
    while (end < text.size() && IsDigit(text[end])) ++end;
    const bool whole = (at == 0 || text[at - 1] == ' ') && (end == text.size() || text[end] <= ' ');
    if (whole) std::fill_n(text.begin() + static_cast<std::ptrdiff_t>(at), end - at, '9');
    at = end;
  }
  return text;
}

/// Every hundredth byte one that is no character of a text; line ends stay.
std::string Sprinkled(std::string text, char byte) {
  for (std::size_t k = 50; k < text.size(); k += 100)
    if (text[k] != '\n') text[k] = byte;
  return text;
}

/// A number of a line: its columns, from 0.
struct Number {
  std::size_t first;
  std::size_t width; ///< with the blanks before it
  bool exponent;     ///< in D notation
};

std::vector<Number> NumbersOf(const std::string& line) {
  std::vector<Number> numbers;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const std::size_t blanks = at;
    while (at < line.size() && line[at] == ' ') ++at;
    const std::size_t sign = at;
    if (at < line.size() && (line[at] == '-' || line[at] == '+')) ++at;
    const std::size_t digits = at;
    while (at < line.size() && (IsDigit(line[at]) || line[at] == '.')) ++at;
    if (at == digits) {
      at = std::max(blanks, sign);
      continue;
    }
    bool exponent = false;
    if (at + 3 < line.size() && line[at] == 'D') {
      at += 4;
      exponent = true;
    }
    numbers.push_back({blanks, at - blanks, exponent});
    --at;
  }
  return numbers;
}

/// Digits told apart from other characters: lines of one kind of record have one shape.
std::string ShapeOf(std::string line) {
  for (char& c : line)
    if (IsDigit(c) || c == '-' || c == '+') c = ' ';
  line.erase(std::remove(line.begin(), line.end(), ' '), line.end());
  return line;
}

constexpr const char* kWrong[] = {"nan", "inf", "-inf",  "1e300", "-1e300", "1e-320",    "-0.0",
                                  "0",   "-1",  "99999", "1e999", "x",      "9999999999"};
constexpr const char* kWrongExponent[] = {"nanD+00",  "infD+00", "9.9D+99",  "-9.9D+99", "9.9D-99",
                                          "-0.0D+00", "0.0D+00", "-1.0D+00", "1.0D+07",  "x"};

} // namespace

std::vector<Fault> DamagedFiles(const std::string& text) {
  const std::vector<std::string> lines = Lines(text);
  return {
      {"empty", ""},
      {"one line end", "\n"},
      {"binary noise", Noise(5000)},
      {"NUL bytes alone", std::string(5000, '\0')},
      {"letters alone", std::string(5000, 'x')},
      {"numbers alone", Replaced(std::string(500, '9'), "9", "99999999 -1 ")},
      {"NUL bytes within", Sprinkled(text, '\0')},
      {"bytes beyond ASCII within", Sprinkled(text, '\xE9')},
      {"byte order mark", "\xEF\xBB\xBF" + text},
      {"CR LF", Replaced(text, "\n", "\r\n")},
      {"CR alone", Replaced(text, "\n", "\r")},
      {"tabs", Replaced(text, "  ", "\t")},
      {"decimal commas", Replaced(text, ".", ",")},
      {"no last line end", text.substr(0, text.size() - 1)},
      {"every line twice", EachTwice(lines)},
      {"the file twice", text + text},
      {"every other line", EveryOther(lines)},
      {"last line first", Backwards(lines)},
      {"lines of 600 blanks more", Replaced(text, "\n", std::string(600, ' ') + "\n")},
      {"all in one line", Replaced(text, "\n", " ")},
      {"header without its end", Replaced(text, "END OF HEADER", "END OF         ")},
      {"huge counts", HugeCounts(text)},
      {"words for numbers", Replaced(Replaced(text, "0.", "nan"), "1.", "inf")},
      {"ten digits more", Replaced(text, "0.", "9999999999.")},
      {"nines", Replaced(Replaced(Replaced(text, "0", "9"), "1", "9"), "2", "9")},
      {"minus signs", Replaced(text, " 1", "-1")},
  };
}

std::vector<Fault> CutBehindLines(const std::string& text) {
  std::vector<Fault> faults;
  std::string start;
  for (const std::string& line : Lines(text)) {
    if (!faults.empty() || !start.empty())
      faults.push_back({"cut behind line " + std::to_string(faults.size() + 1), start});
    start += line;
  }
  return faults;
}

std::vector<Fault> CutAtRandomBytes(const std::string& text, std::size_t n) {
  std::mt19937 random(kSeed);
  std::multiset<std::size_t> bytes;
  for (std::size_t k = 0; k < n; ++k) bytes.insert(random() % text.size());
  std::vector<Fault> faults;
  for (const std::size_t byte : bytes)
    faults.push_back({"cut at byte " + std::to_string(byte), text.substr(0, byte)});
  return faults;
}

std::vector<Fault> WrongNumbers(const std::string& text, std::size_t sameLines) {
  std::vector<Fault> faults;
  std::map<std::string, std::size_t> seen;
  std::size_t start = 0;
  int row = 0;
  for (const std::string& line : Lines(text)) {
    ++row;
    const bool taken = seen[ShapeOf(line)]++ < sameLines;
    for (const Number& number : taken ? NumbersOf(line) : std::vector<Number>()) {
      const auto add = [&](std::string wrong) {
        const std::string name = "line " + std::to_string(row) + " column " +
                                 std::to_string(number.first + 1) + ": " + wrong;
        if (wrong.size() < number.width) wrong.insert(0, number.width - wrong.size(), ' ');
        std::string faulty = text;
        // What is wider than its field reaches into the blanks or the number behind it.
        faulty.replace(start + number.first, std::min(wrong.size(), line.size() - number.first - 1),
                       wrong);
        faults.push_back({name, faulty});
      };
      if (number.exponent)
        for (const char* wrong : kWrongExponent) add(wrong);
      else
        for (const char* wrong : kWrong) add(wrong);
    }
    start += line.size();
  }
  return faults;
}
