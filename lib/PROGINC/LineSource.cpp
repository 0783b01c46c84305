#include "PROGINC/LineSource.h"

#include "PROGINC/ProgramError.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <istream>
#include <limits>
#include <new>
#include <string>

namespace {

constexpr std::size_t kFirstCapacity = std::size_t{1} << 16; // where the length is not known

[[noreturn]] void EndTooLarge(const std::string& name) {
  ProgramError("Zenta", (name + " IS TOO LARGE TO BE READ!").c_str());
}

} // namespace

LineSource::LineSource(std::string_view text) : size_(text.size()) {
  if (!Reserve(size_)) throw std::bad_alloc();
  text.copy(text_.get(), size_);
}

LineSource LineSource::FromFile(const char* name, std::size_t longestStream) {
  std::ifstream in(name, std::ios::binary);
  LineSource source;
  source.open_ = in.is_open();
  std::error_code fault;
  const bool isFile = std::filesystem::is_regular_file(name, fault);
  const std::size_t length = isFile ? std::filesystem::file_size(name, fault) : 0;
  const std::size_t longest = isFile ? std::numeric_limits<std::size_t>::max() / 2 : longestStream;
  if (!source.TakeAll(in, fault ? 0 : length, longest)) EndTooLarge("FILE " + std::string(name));
  return source;
}

LineSource LineSource::FromStream(std::istream& in) {
  LineSource source;
  if (!source.TakeAll(in, 0, kLongestStream)) EndTooLarge("INPUT");
  return source;
}

// Memory that grows is moved by the system, page by page, and is set by no one but the reader.
bool LineSource::Reserve(std::size_t capacity) {
  void* const memory = std::realloc(text_.get(), std::max<std::size_t>(capacity, 1));
  if (memory == nullptr) return false;
  static_cast<void>(text_.release());
  text_.reset(static_cast<char*>(memory));
  UseLargePages(memory, capacity);
  return true;
}

// One character more than expected, so that the end is met without more memory.
bool LineSource::TakeAll(std::istream& in, std::size_t expected, std::size_t longest) {
  for (std::size_t capacity = std::max(expected + 1, kFirstCapacity);;
       capacity = std::min(2 * capacity, longest + 1)) {
    if (!Reserve(capacity)) return false;
    in.read(text_.get() + size_, static_cast<std::streamsize>(capacity - size_));
    size_ += static_cast<std::size_t>(in.gcount());
    if (size_ > longest) return false;
    if (!in) return true;
  }
}

std::string_view LineSource::Find(std::string_view label, std::size_t limit) {
  std::string_view line;
  while (Next(line, limit))
    if (Contains(line, label)) return line;
  return {};
}

void LineSource::Advance(std::size_t n) { at_ += std::min(n, size_ - at_); }

void LineSource::Rewind() {
  at_ = 0;
  failed_ = false;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool Contains(std::string_view line, std::string_view label) {
  return line.find(label) != std::string_view::npos;
}
