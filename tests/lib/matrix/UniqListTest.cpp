#include "matrix/UniqList.h"

#include "matrix/sort.h"
#include "support/Ends.h"

#include <initializer_list>
#include <vector>

namespace {

/// Puts the sort direction back.
class UniqList : public testing::Test {
protected:
  ~UniqList() override { sortns::sort = 0; }
};

template <typename T> std::vector<T> Distinct(std::initializer_list<T> values) {
  matrix<T> column(static_cast<long>(values.size()), 1);
  long k = 0;
  for (const T value : values) column(k++) = value;
  const matrix<T> list = ::UniqList(column);
  EXPECT_EQ(list.NCol(), 1);
  std::vector<T> distinct;
  for (long i = 0; i < list.NRow(); ++i) distinct.push_back(list(i));
  return distinct;
}

TEST_F(UniqList, DistinctValuesAscend) {
  EXPECT_EQ(Distinct<short>({3, 1, 3, 2}), (std::vector<short>{1, 2, 3}));
  EXPECT_EQ(Distinct<unsigned short>({9, 0, 9, 0, 65535}),
            (std::vector<unsigned short>{0, 9, 65535}));
}

TEST_F(UniqList, SingleValueIsItsList) {
  EXPECT_EQ(Distinct<short>({-4}), (std::vector<short>{-4}));
}

TEST_F(UniqList, EqualValuesGiveOne) {
  EXPECT_EQ(Distinct<short>({8, 8, 8}), (std::vector<short>{8}));
}

TEST_F(UniqList, FollowsTheSortDirection) {
  sortns::sort = 1;
  EXPECT_EQ(Distinct<short>({3, 1, 3, 2}), (std::vector<short>{3, 2, 1}));
}

TEST(UniqListDeathTest, ColumnWithoutRowsEndsTheProgram) {
  EXPECT_ENDS(::UniqList(matrix<short>(0, 1)), "Matrix is not set:  \\[    0,    1\\]");
}

} // namespace
