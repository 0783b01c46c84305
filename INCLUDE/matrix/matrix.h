#ifndef MATRIX_MATRIX_H
#define MATRIX_MATRIX_H

#include "matrix/LargeMemory.h"
#include "matrix/MError.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

/// The one container: a dense two-dimensional array of T, stored row after row.
///
/// Indices start at 0. A column vector is an n x 1 matrix, and the one-index access then
/// counts its rows; in general it counts elements along the rows. A matrix with no row or
/// no column is "not set" and may not be indexed. Every access is checked; a bad one is
/// reported on standard output (MError.h) and ends the program with status 1.
///
/// A matrix owns its elements: copies are deep, and a moved-from matrix is 0 x 0. New
/// elements have T's default value (numbers are 0).
template <typename T> class matrix {
public:
  matrix() = default;
  matrix(long rows, long cols) { Resize(rows, cols); }
  matrix(long rows, long cols, T value) { Resize(rows, cols, value); }
  matrix(const matrix& other) { *this = other; }
  matrix(matrix&& other) noexcept { *this = std::move(other); }
  ~matrix() = default;

  matrix& operator=(const matrix& other) {
    if (this != &other) {
      Resize(other.r, other.c);
      std::copy_n(other.v.get(), Length(), v.get());
    }
    return *this;
  }
  matrix& operator=(matrix&& other) noexcept {
    if (this != &other) {
      r = std::exchange(other.r, 0);
      c = std::exchange(other.c, 0);
      v = std::move(other.v);
    }
    return *this;
  }

  long NRow() const { return r; }
  long NCol() const { return c; }
  /// Number of elements, rows times columns.
  long Length() const { return r * c; }

  /// Gives the matrix a new shape. Old contents are not kept.
  void Resize(long rows, long cols) {
    CheckShape(rows, cols);
    v = nullptr; // not two tables at a time
    if (rows * cols > 0) v = MakeDefaulted<T>(static_cast<std::size_t>(rows * cols));
    r = rows;
    c = cols;
  }
  /// As above, every element set to \p value.
  void Resize(long rows, long cols, T value) {
    Resize(rows, cols);
    std::fill_n(v.get(), Length(), value);
  }
  /// Makes it a column of \p n elements.
  void Resize(long n) { Resize(n, 1); }

  T& operator()(long i, long j) { return v[Index(i, j)]; }
  const T& operator()(long i, long j) const { return v[Index(i, j)]; }
  T& operator()(long k) { return v[Index(k)]; }
  const T& operator()(long k) const { return v[Index(k)]; }

  /// Adds element by element; the shapes must agree.
  matrix& operator+=(const matrix& other) {
    if (r != other.r || c != other.c)
      Error("Operator:   +=\nMatrix dims do not agree: ", r, c, other.r, other.c);
    for (long k = 0; k < Length(); ++k)
      v[Offset(k)] = static_cast<T>(v[Offset(k)] + other.v[Offset(k)]);
    return *this;
  }
  /// Multiplies every element by \p f.
  matrix& operator*=(T f) {
    for (long k = 0; k < Length(); ++k) v[Offset(k)] = static_cast<T>(v[Offset(k)] * f);
    return *this;
  }

private:
  static std::size_t Offset(long k) { return static_cast<std::size_t>(k); }

  static void CheckShape(long rows, long cols) {
    const bool fits = rows >= 0 && cols >= 0 &&
                      (cols == 0 || rows <= std::numeric_limits<long>::max() / cols /
                                                static_cast<long>(sizeof(T)));
    if (!fits) [[unlikely]]
      invError("Function:   Resize\nMatrix dimensions inproper: ", rows, cols);
  }
  void CheckSet() const {
    if (r == 0 || c == 0) [[unlikely]]
      invError("Operator:   ()\nMatrix is not set: ", r, c);
  }
  std::size_t Index(long i, long j) const {
    CheckSet();
    if (i < 0 || i >= r) [[unlikely]]
      Error("Operator:   ()\nRow index not in range: ", i, r - 1);
    if (j < 0 || j >= c) [[unlikely]]
      Error("Operator:   ()\nColumn index not in range: ", j, c - 1);
    return Offset(i * c + j);
  }
  std::size_t Index(long k) const {
    CheckSet();
    if (k < 0 || k >= Length()) [[unlikely]]
      Error("Operator:   ()\nMatrix index not in range: ", k, Length() - 1);
    return Offset(k);
  }

  long r = 0;          ///< rows
  long c = 0;          ///< columns
  DefaultedArray<T> v; ///< r x c elements, row after row
};

/// Product; the columns of \p a must be as many as the rows of \p b, else the report
/// "Matrix dimensions do not fit!" ends the program. Each element is summed over
/// increasing k in extended precision.
matrix<long double> operator*(const matrix<long double>& a, const matrix<long double>& b);

#endif
