#include "PROGINC/cstringf.h"

#include <algorithm>
#include <cstring>

namespace {

/// Copies \p n characters of \p s at most, without looking at what lies behind its terminator.
void CopyPart(const char* s, int start, std::size_t n, char* out) {
  std::size_t length = 0;
  if (start >= 0 &&
      strnlen(s, static_cast<std::size_t>(start)) == static_cast<std::size_t>(start)) {
    s += start;
    length = strnlen(s, n);
  }
  std::memmove(out, s, length);
  out[length] = '\0';
}

} // namespace

void substr(const char* s, int start, int n, char* out) {
  CopyPart(s, start, static_cast<std::size_t>(std::max(n, 0)), out);
}

void substr(const char* s, int start, char* out) { CopyPart(s, start, std::strlen(s), out); }

void trimr(char* s) {
  std::size_t length = std::strlen(s);
  while (length > 0 && s[length - 1] == ' ') --length;
  s[length] = '\0';
}

void triml(char* s) {
  const std::size_t blanks = std::strspn(s, " ");
  std::memmove(s, s + blanks, std::strlen(s + blanks) + 1);
}

void trim(char* s) {
  trimr(s);
  triml(s);
}

int indexLast(const char* s, char c) {
  const char* last = std::strrchr(s, c);
  return last == nullptr ? -1 : static_cast<int>(last - s);
}

void strcopy(char* s, char c, int n) { strng(s, c, n); }

void strng(char* s, char c, long n) {
  const std::size_t length = static_cast<std::size_t>(std::max(n, 0L));
  std::memset(s, c, length);
  s[length] = '\0';
}
