#include "Quiet.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace inputs {

namespace {

constexpr std::size_t kKept = 2000; // bytes of the last messages

struct Kept {
  std::ostringstream text;
  std::streambuf* out = nullptr; // of standard output, null while nothing is kept back
  std::streambuf* err = nullptr;
  std::ios format{nullptr};
};

Kept& State() {
  // never destroyed: it has to outlive the end of the process that it reports on
  static Kept& state = *new Kept;
  return state;
}

void Restore() {
  Kept& s = State();
  std::cout.rdbuf(s.out);
  std::cerr.rdbuf(s.err);
  std::cout.copyfmt(s.format);
  s.out = nullptr;
}

void TellAtEnd() {
  Kept& s = State();
  if (s.out == nullptr) return;
  Restore();
  const std::string text = s.text.str();
  const std::size_t start = text.size() - std::min(text.size(), kKept);
  std::fputs(text.c_str() + start, stderr);
}

} // namespace

Quiet::Quiet() {
  static const int registered = std::atexit(TellAtEnd);
  static_cast<void>(registered);
  Kept& s = State();
  s.text.str({});
  s.format.copyfmt(std::cout);
  s.out = std::cout.rdbuf(s.text.rdbuf());
  s.err = std::cerr.rdbuf(s.text.rdbuf());
}

Quiet::~Quiet() { Restore(); }

} // namespace inputs
