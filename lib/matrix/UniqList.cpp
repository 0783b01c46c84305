#include "matrix/UniqList.h"

#include "matrix/sort.h"

namespace {

template <typename T> matrix<T> Distinct(const matrix<T>& a) {
  const matrix<T> sorted = sort(a);
  const long rows = sorted.NRow();
  const auto isNew = [&sorted](long k) { return k == 0 || sorted(k) != sorted(k - 1); };

  long count = 1;
  for (long k = 1; k < rows; ++k) count += isNew(k);

  matrix<T> list(count, 1, sorted(0));
  long next = 1;
  for (long k = 1; k < rows; ++k)
    if (isNew(k)) list(next++) = sorted(k);
  return list;
}

} // namespace

matrix<short> UniqList(const matrix<short>& a) { return Distinct(a); }
matrix<unsigned short> UniqList(const matrix<unsigned short>& a) { return Distinct(a); }
