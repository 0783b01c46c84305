#ifndef PROGINC_FILENAME_H
#define PROGINC_FILENAME_H

#include <cstddef>

/// Copies the file name \p name to \p out, which has room for \p size characters and ends with
/// a terminator. A name that does not fit is the program error "FILE NAME IS TOO LONG!".
void CopyFileName(const char* name, char* out, std::size_t size);
template <std::size_t N> void CopyFileName(const char* name, char (&out)[N]) {
  CopyFileName(name, out, N);
}

#endif
