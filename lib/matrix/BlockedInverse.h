#ifndef MATRIX_BLOCKEDINVERSE_H
#define MATRIX_BLOCKEDINVERSE_H

#include "matrix/matrix.h"

/// Inverse by Gauss-Jordan elimination with row pivoting, several times faster than the plain
/// loop over rows and equal to it in every bit.
///
/// \param A          square matrix, 2 x 2 or larger
/// \param threshold  magnitudes up to it are not eliminated; a pivot below it is none
/// \param inverse    the result
/// \returns false where equality can't be promised or there is no inverse: a pivot is below the
///   threshold, an element of \p A is -0 or not finite, a number overflows on the way, a factor
///   is outside 1e-304..1e308, or the threshold isn't positive. \p inverse is then as it was.
bool BlockedInverse(const matrix<long double>& A, long double threshold,
                    matrix<long double>& inverse);

#endif
