#include "matrix/inv.h"

#include "matrix/BlockedInverse.h"
#include "matrix/I.h"
#include "matrix/matrixUtil.h"

#include <cmath>

namespace invns {
long double thres = 1e-14; // the double: the last digits of the literal are not 80-bit ones
bool IsSingular = false;
} // namespace invns

namespace {

// Below this size the plain loop is over before the blocked one has set up its tables.
constexpr long kSmallestBlocked = 8;

matrix<long double> LeadingBlock(const matrix<long double>& A, long n) {
  if (A.NRow() < n || A.NCol() < n)
    invError("Function:   inv\nDimension of submatrix inproper: ", A.NRow() - n, A.NCol() - n);
  matrix<long double> block(n, n);
  for (long i = 0; i < n; ++i)
    for (long j = 0; j < n; ++j) block(i, j) = A(i, j);
  return block;
}

long PivotRow(const matrix<long double>& a, long j) {
  long p = j;
  for (long i = j + 1; i < a.NRow(); ++i)
    if (std::fabs(a(i, j)) > std::fabs(a(p, j))) p = i;
  return p;
}

void ExchangeRows(matrix<long double>& m, long p, long q) {
  for (long k = 0; k < m.NCol(); ++k) SWAP(m(p, k), m(q, k));
}

void AddRow(matrix<long double>& m, long i, long double factor, long j) {
  for (long k = 0; k < m.NCol(); ++k) m(i, k) += factor * m(j, k);
}

void EliminateElement(matrix<long double>& a, matrix<long double>& b, long i, long j) {
  if (!(std::fabs(a(i, j)) > invns::thres)) return;
  const long double factor = -a(i, j) / a(j, j);
  AddRow(a, i, factor, j);
  AddRow(b, i, factor, j);
}

/// \returns whether every pivot reaches the threshold; stops at the first that does not.
bool Eliminate(matrix<long double>& a, matrix<long double>& b) {
  const long size = a.NRow();
  const long last = size - 1;
  for (long j = 0; j < last; ++j) {
    const long p = PivotRow(a, j);
    if (p != j) {
      ExchangeRows(a, p, j);
      ExchangeRows(b, p, j);
    }
    if (std::fabs(a(j, j)) < invns::thres) return false;
    for (long i = j + 1; i < size; ++i) EliminateElement(a, b, i, j);
  }
  if (std::fabs(a(last, last)) < invns::thres) {
    invWarning("Function:   inv\nMatrix is SINGULAR: ", a(last, last) / invns::thres, last);
    return false;
  }
  for (long j = last; j > 0; --j)
    for (long i = j - 1; i >= 0; --i) EliminateElement(a, b, i, j);
  return true;
}

/// The elimination as a textbook has it: for small matrices, and for those that
/// BlockedInverse declines, among them the singular ones with what is done of them.
matrix<long double> PlainInverse(matrix<long double> a) {
  const long size = a.NRow();
  matrix<long double> b = I(size, 1.0L);
  invns::IsSingular = !Eliminate(a, b);
  if (invns::IsSingular) return b;
  for (long i = 0; i < size; ++i)
    for (long k = 0; k < size; ++k) b(i, k) /= a(i, i);
  return b;
}

} // namespace

matrix<long double> inv(const matrix<long double>& A, long n) {
  if (n >= 0) return inv(LeadingBlock(A, n));

  const long size = A.NRow();
  if (size != A.NCol()) invError("Function:   inv\nMatrix is not square: ", size, A.NCol());
  if (size == 0) invError("Function:   inv\nMatrix is not defined: ", size, size);
  if (size == 1) return matrix<long double>(1, 1, 1.0L / A(0, 0));

  matrix<long double> inverse;
  if (size < kSmallestBlocked || !BlockedInverse(A, invns::thres, inverse)) return PlainInverse(A);
  invns::IsSingular = false;
  return inverse;
}
