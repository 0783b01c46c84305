#include "matrix/sort.h"

#include <algorithm>
#include <functional>

namespace sortns {
short sort = 0;
} // namespace sortns

namespace {

template <typename T> matrix<T> SortedCopy(matrix<T> a) {
  const long rows = a.NRow();
  if (rows < 2) return a;
  T* const first = &a(0);
  // Equal numbers cannot be told apart, so any sorting gives this one result.
  if (sortns::sort == 0)
    std::sort(first, first + rows);
  else
    std::sort(first, first + rows, std::greater<>());
  return a;
}

} // namespace

matrix<short> sort(const matrix<short>& a) { return SortedCopy(a); }
matrix<unsigned short> sort(const matrix<unsigned short>& a) { return SortedCopy(a); }
