#include "matrix/I.h"

matrix<long double> I(long n, long double v) {
  matrix<long double> diagonal(n, n, 0.0L);
  for (long i = 0; i < n; ++i) diagonal(i, i) = v;
  return diagonal;
}
