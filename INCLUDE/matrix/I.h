#ifndef MATRIX_I_H
#define MATRIX_I_H

#include "matrix/matrix.h"

/// Matrix of \p n x \p n elements with \p v on the diagonal and 0 elsewhere.
matrix<long double> I(long n, long double v);

#endif
