#include "matrix/matrix.h"

matrix<long double> operator*(const matrix<long double>& a, const matrix<long double>& b) {
  if (a.NCol() != b.NRow())
    Error("Function:   matrix operator *\nMatrix dimensions do not fit!", a.NRow(), a.NCol(),
          b.NRow(), b.NCol());
  matrix<long double> product(a.NRow(), b.NCol());
  for (long i = 0; i < a.NRow(); ++i) {
    for (long j = 0; j < b.NCol(); ++j) {
      long double sum = 0.0L;
      for (long k = 0; k < a.NCol(); ++k) sum += a(i, k) * b(k, j);
      product(i, j) = sum;
    }
  }
  return product;
}
