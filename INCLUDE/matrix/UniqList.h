#ifndef MATRIX_UNIQLIST_H
#define MATRIX_UNIQLIST_H

#include "matrix/matrix.h"

/// The distinct values of the column \p a, in the order of sort().
///
/// A column without rows has no first value: the report of the container ends the program.
matrix<short> UniqList(const matrix<short>& a);
matrix<unsigned short> UniqList(const matrix<unsigned short>& a);

#endif
