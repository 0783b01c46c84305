#ifndef MATRIX_INV_H
#define MATRIX_INV_H

#include "matrix/matrix.h"

namespace invns {
extern long double thres; ///< smallest magnitude that counts as non-zero; 1e-14 (the double)
extern bool IsSingular;   ///< what the last inverse of size 2 or more met; test it after each call
} // namespace invns

/// Inverse by Gauss-Jordan elimination with row pivoting, in extended precision.
///
/// \param A  square matrix, of any symmetry; a zero on the diagonal is no obstacle
/// \param n  size of the leading block to invert; negative: the whole matrix
///
/// The pivot of a column is its largest element on or below the diagonal (the upper one of
/// equals). Elements of magnitude invns::thres or less are not eliminated. A pivot below
/// the threshold sets invns::IsSingular, and the result is then the identity with the row
/// operations done so far, not an inverse; only where it is the last pivot, a warning is
/// printed. A 1 x 1 matrix gives 1 / A(0, 0) without any test, and leaves the flag alone.
///
/// A block larger than the matrix, a matrix that is not square and one without elements
/// are reported on standard output and end the program.
matrix<long double> inv(const matrix<long double>& A, long n = -1);

#endif
