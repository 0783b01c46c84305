#include "matrix/sort.h"

#include "support/Ends.h"

#include <initializer_list>
#include <vector>

namespace {

/// Puts the sort direction back.
class sort : public testing::Test {
protected:
  ~sort() override { sortns::sort = 0; }
};

template <typename T> matrix<T> Column(std::initializer_list<T> values) {
  matrix<T> column(static_cast<long>(values.size()), 1);
  long k = 0;
  for (const T value : values) column(k++) = value;
  return column;
}

template <typename T> std::vector<T> Values(const matrix<T>& column) {
  std::vector<T> values;
  for (long k = 0; k < column.NRow(); ++k) values.push_back(column(k));
  return values;
}

TEST_F(sort, AscendsUnlessToldOtherwise) {
  EXPECT_EQ(sortns::sort, 0);
  const matrix<short> a = Column<short>({5, -3, 5, 101, 0});
  EXPECT_EQ(Values(::sort(a)), (std::vector<short>{-3, 0, 5, 5, 101}));
  EXPECT_EQ(a(0), 5) << "the argument is left as it was";
}

TEST_F(sort, NonZeroDirectionDescends) {
  for (const short direction : {short{1}, short{-1}}) {
    sortns::sort = direction;
    EXPECT_EQ(Values(::sort(Column<short>({5, -3, 5, 101, 0}))),
              (std::vector<short>{101, 5, 5, 0, -3}));
  }
}

TEST_F(sort, UnsignedNumbersSortByTheirSize) {
  EXPECT_EQ(Values(::sort(Column<unsigned short>({40000, 3, 65535}))),
            (std::vector<unsigned short>{3, 40000, 65535}));
}

TEST_F(sort, ColumnOfNoneOrOneStaysAsItIs) {
  EXPECT_EQ(::sort(matrix<short>()).NRow(), 0);
  EXPECT_EQ(::sort(matrix<short>(0, 1)).NCol(), 1);
  EXPECT_EQ(Values(::sort(Column<short>({7}))), (std::vector<short>{7}));
}

} // namespace
