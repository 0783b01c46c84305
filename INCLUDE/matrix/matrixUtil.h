#ifndef MATRIX_MATRIXUTIL_H
#define MATRIX_MATRIXUTIL_H

/// Exchanges two values through a temporary.
template <typename T> void SWAP(T& a, T& b) {
  T held = a;
  a = b;
  b = held;
}

#endif
