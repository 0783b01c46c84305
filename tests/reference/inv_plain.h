#ifndef REFERENCE_INV_PLAIN_H
#define REFERENCE_INV_PLAIN_H

#include "matrix/I.h"
#include "matrix/inv.h"
#include "matrix/matrixUtil.h"

#include <cmath>

/// Plain twin of inv() for a whole square matrix: Gauss-Jordan elimination on full rows of the
/// matrix and of the identity beside it, with checked access, one element after the other.
inline matrix<long double> inv_plain(const matrix<long double>& A) {
  const long n = A.NRow();
  if (n == 1) return matrix<long double>(1, 1, 1.0L / A(0, 0));

  matrix<long double> a = A;
  matrix<long double> b = I(n, 1.0L);
  invns::IsSingular = false;

  for (long j = 0; j < n - 1; ++j) {
    long p = j;
    for (long i = j + 1; i < n; ++i)
      if (std::fabs(a(i, j)) > std::fabs(a(p, j))) p = i;
    if (p != j) {
      for (long k = 0; k < n; ++k) {
        SWAP(a(p, k), a(j, k));
        SWAP(b(p, k), b(j, k));
      }
    }
    for (long i = j + 1; i < n; ++i) {
      if (std::fabs(a(i, j)) > invns::thres) {
        const long double factor = -a(i, j) / a(j, j);
        for (long k = 0; k < n; ++k) {
          a(i, k) += factor * a(j, k);
          b(i, k) += factor * b(j, k);
        }
      }
      if (std::fabs(a(j, j)) < invns::thres) {
        invns::IsSingular = true;
        return b;
      }
    }
  }

  const long double last = a(n - 1, n - 1);
  if (std::fabs(last) < invns::thres) {
    invWarning("Function:   inv\nMatrix is SINGULAR: ", last / invns::thres, n - 1);
    invns::IsSingular = true;
    return b;
  }

  for (long j = n - 1; j >= 1; --j) {
    for (long i = j - 1; i >= 0; --i) {
      if (!(std::fabs(a(i, j)) > invns::thres)) continue;
      const long double factor = -a(i, j) / a(j, j);
      for (long k = 0; k < n; ++k) {
        a(i, k) += factor * a(j, k);
        b(i, k) += factor * b(j, k);
      }
    }
  }
  for (long i = 0; i < n; ++i) {
    const long double pivot = a(i, i);
    for (long k = 0; k < n; ++k) b(i, k) = b(i, k) / pivot;
  }
  return b;
}

#endif
