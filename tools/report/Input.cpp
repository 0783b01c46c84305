#include "Input.h"

#include "Refusal.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <memory>

namespace report {

namespace {

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, Closer>;

[[noreturn]] void RefuseFile(const std::string& name, const char* what) {
  throw Refusal(fmt::format("{}: {}: {}", name, what, std::strerror(errno)));
}

} // namespace

std::string InputName(const std::string& name) { return name == "-" ? "standard input" : name; }

std::string ReadInput(const std::string& name) {
  FilePtr file;
  if (name != "-") {
    file.reset(std::fopen(name.c_str(), "rb"));
    if (!file) RefuseFile(name, "can't be opened");
  }
  std::FILE* in = file ? file.get() : stdin;
  std::string bytes;
  char block[1 << 16];
  while (const std::size_t n = std::fread(block, 1, sizeof block, in)) bytes.append(block, n);
  if (std::ferror(in)) RefuseFile(InputName(name), "can't be read");
  return bytes;
}

std::string ReadStart(const std::string& name, std::size_t most) {
  const FilePtr file(std::fopen(name.c_str(), "rb"));
  if (!file) return {};
  std::string bytes(most, '\0');
  bytes.resize(std::fread(bytes.data(), 1, most, file.get()));
  return bytes;
}

void WriteOutput(const std::string& name, const std::string& text) {
  FilePtr file;
  if (name != "-") {
    file.reset(std::fopen(name.c_str(), "wb"));
    if (!file) RefuseFile(name, "can't be opened for writing");
  }
  std::FILE* out = file ? file.get() : stdout;
  const std::string shown = name == "-" ? "standard output" : name;
  if (std::fwrite(text.data(), 1, text.size(), out) != text.size() || std::fflush(out) != 0)
    RefuseFile(shown, "can't be written");
}

} // namespace report
