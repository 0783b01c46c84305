#include "PROGINC/LineSource.h"

#include <algorithm>
#include <fstream>
#include <istream>
#include <iterator>

LineSource::LineSource(std::string text) : text_(std::move(text)) {}

LineSource LineSource::FromFile(const char* name) {
  std::ifstream in(name, std::ios::binary);
  LineSource source = FromStream(in);
  source.open_ = in.is_open();
  return source;
}

LineSource LineSource::FromStream(std::istream& in) {
  // By blocks into one string: istreambuf_iterator would go character by character.
  std::string text;
  char block[1 << 16];
  while (in.read(block, sizeof block) || in.gcount() > 0)
    text.append(block, static_cast<std::size_t>(in.gcount()));
  return LineSource(std::move(text));
}

bool LineSource::Next(std::string_view& line, std::size_t limit) {
  line = {};
  if (failed_) return false;
  if (at_ >= text_.size()) {
    failed_ = true;
    return false;
  }
  const std::string_view rest = Rest();
  const std::size_t end = rest.find('\n');
  line = rest.substr(0, end);
  at_ += end == std::string_view::npos ? rest.size() : end + 1;
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  if (line.size() > limit) {
    line = line.substr(0, limit);
    failed_ = true;
    return false;
  }
  return true;
}

bool LineSource::Skip(std::size_t limit) {
  std::string_view ignored;
  return Next(ignored, limit);
}

std::string_view LineSource::Find(std::string_view label, std::size_t limit) {
  std::string_view line;
  while (Next(line, limit))
    if (Contains(line, label)) return line;
  return {};
}

void LineSource::Advance(std::size_t n) { at_ += std::min(n, text_.size() - at_); }

void LineSource::Rewind() {
  at_ = 0;
  failed_ = false;
}

std::string_view Columns(std::string_view line, std::size_t first, std::size_t n) {
  return first < line.size() ? line.substr(first, n) : std::string_view{};
}

char Column(std::string_view line, std::size_t column) {
  return column < line.size() ? line[column] : ' ';
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool Contains(std::string_view line, std::string_view label) {
  return line.find(label) != std::string_view::npos;
}
