#ifndef MATRIX_SORT_H
#define MATRIX_SORT_H

#include "matrix/matrix.h"

namespace sortns {
extern short sort; ///< direction: 0 ascending (as it starts), anything else descending
} // namespace sortns

/// Sorted copy of the column \p a; its length is the number of rows.
matrix<short> sort(const matrix<short>& a);
matrix<unsigned short> sort(const matrix<unsigned short>& a);

#endif
