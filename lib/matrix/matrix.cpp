#include "matrix/matrix.h"

matrix<long double> operator*(const matrix<long double>& a, const matrix<long double>& b) {
  if (a.NCol() != b.NRow())
    Error("Function:   matrix operator *\nMatrix dimensions do not fit!", a.NRow(), a.NCol(),
          b.NRow(), b.NCol());
  matrix<long double> product(a.NRow(), b.NCol());
  if (a.Length() == 0 || b.Length() == 0) return product;
  const long n = a.NCol();
  const long step = b.NCol();
  for (long i = 0; i < a.NRow(); ++i) {
    const long double* const row = &a(i, 0);
    for (long j = 0; j < step; ++j) {
      const long double* const column = &b(0, j);
      long double sum = 0.0L;
      for (long k = 0; k < n; ++k) sum += row[k] * column[k * step];
      product(i, j) = sum;
    }
  }
  return product;
}
