#include "matrix/matrix.h"

#include "matrix/matrixUtil.h"
#include "support/Ends.h"

#include <limits>
#include <string>
#include <type_traits>

namespace {

/// Its default is not 0.
struct Counted {
  long value = 7;
};

/// Two rows, three columns: 1 2 3 | 4 5 6.
matrix<long double> Counting() {
  matrix<long double> m(2, 3);
  for (long k = 0; k < 6; ++k) m(k) = static_cast<long double>(k + 1);
  return m;
}

TEST(matrixDeathTest, IndexingAnUnsetMatrixReportsItsShapeWhateverTheIndex) {
  matrix<long double> none;
  EXPECT_ENDS(none(0), "Operator:   \\(\\)\nMatrix is not set:  \\[    0,    0\\]\n");
  EXPECT_ENDS(none(-1, 7), "Matrix is not set:  \\[    0,    0\\]");
  matrix<long double> noRows(0, 4);
  EXPECT_ENDS(noRows(0, 9), "Matrix is not set:  \\[    0,    4\\]");
  matrix<long double> noColumns(3, 0);
  EXPECT_ENDS(noColumns(-5), "Matrix is not set:  \\[    3,    0\\]");
}

TEST(matrixDeathTest, NegativeSingleIndexIsReportedAgainstTheLastElement) {
  matrix<short> column(3, 1);
  EXPECT_ENDS(column(-1),
              "Operator:   \\(\\)\nMatrix index not in range:    -1 -> \\[    0,    2\\]");
}

TEST(matrixDeathTest, SingleIndexOnePastTheEndIsReported) {
  matrix<short> m(2, 3);
  EXPECT_ENDS(m(6), "Matrix index not in range:     6 -> \\[    0,    5\\]");
}

TEST(matrixDeathTest, RowIsReportedBeforeColumn) {
  matrix<double> m(2, 5);
  EXPECT_ENDS(m(2, 5), "Operator:   \\(\\)\nRow index not in range:     2 -> \\[    0,    1\\]");
  EXPECT_ENDS(m(-1, -1), "Row index not in range:    -1 -> \\[    0,    1\\]");
}

TEST(matrixDeathTest, ColumnOutOfRangeIsReported) {
  matrix<double> m(2, 5);
  EXPECT_ENDS(m(1, 5), "Operator:   \\(\\)\nColumn index not in range:     5 -> \\[    0,    4\\]");
  EXPECT_ENDS(m(0, -1), "Column index not in range:    -1 -> \\[    0,    4\\]");
}

TEST(matrixDeathTest, ConstantMatrixIsCheckedToo) {
  const matrix<long> m(5, 2, 0);
  EXPECT_ENDS(m(7, 0), "Row index not in range:     7 -> \\[    0,    4\\]");
  EXPECT_ENDS(m(10), "Matrix index not in range:    10 -> \\[    0,    9\\]");
}

TEST(matrixDeathTest, AddingAnotherShapeEndsTheProgram) {
  matrix<long double> column(3, 1, 1.0L);
  const matrix<long double> row(1, 3, 1.0L);
  EXPECT_ENDS(column += row, "Operator:   \\+=\nMatrix dims do not agree:   "
                             "\\[    3,    1\\] -> \\[    1,    3\\]\n\n\\*{60}\nExiting");
}

TEST(matrixDeathTest, ShapeThatNoMemoryCanHoldEndsTheProgram) {
  EXPECT_ENDS(matrix<long double>(-1, 2), "\\[   -1,    2\\]");
  EXPECT_ENDS(matrix<long double>(std::numeric_limits<long>::max() / 16, 2), "inproper");
}

TEST(matrix, DefaultIsEmpty) {
  const matrix<std::string> none;
  EXPECT_EQ(none.NRow(), 0);
  EXPECT_EQ(none.NCol(), 0);
  EXPECT_EQ(none.Length(), 0);
}

TEST(matrix, ElementsLieRowAfterRow) {
  const matrix<long double> m = Counting();
  EXPECT_EQ(m.Length(), 6);
  for (long i = 0; i < 2; ++i)
    for (long j = 0; j < 3; ++j) EXPECT_EQ(&m(i, j), &m(0) + (i * 3 + j));
}

TEST(matrix, FillFormSetsEveryElement) {
  const matrix<unsigned short> m(2, 3, 7);
  for (long k = 0; k < 6; ++k) EXPECT_EQ(m(k), 7);
}

TEST(matrix, ClassElementsAreDefaultConstructed) {
  matrix<std::string> names(4, 1);
  EXPECT_EQ(names(3), "");
  names(3) = "zimm";
  EXPECT_EQ(names(3, 0), "zimm");
}

TEST(matrix, ResizeWithOneNumberGivesAColumn) {
  matrix<long> m(4, 3);
  m.Resize(5);
  EXPECT_EQ(m.NRow(), 5);
  EXPECT_EQ(m.NCol(), 1);
  EXPECT_EQ(m.Length(), 5);
}

TEST(matrix, ResizeTakesShapeAndFill) {
  matrix<long> m(4, 3, 9);
  m.Resize(2, 5, -1);
  EXPECT_EQ(m.NRow(), 2);
  EXPECT_EQ(m.NCol(), 5);
  for (long k = 0; k < m.Length(); ++k) EXPECT_EQ(m(k), -1);
  m.Resize(0, 5);
  EXPECT_EQ(m.NRow(), 0);
  EXPECT_EQ(m.NCol(), 5);
}

TEST(matrix, CopyOwnsItsElements) {
  matrix<long double> original = Counting();
  matrix<long double> constructed(original);
  matrix<long double> assigned(1, 1, 0.0L);
  assigned = original;
  original(0) = 100.0L;
  EXPECT_EQ(constructed(0), 1.0L);
  EXPECT_EQ(assigned(0), 1.0L);
  EXPECT_EQ(assigned.NRow(), 2);
  EXPECT_EQ(assigned(1, 2), 6.0L);
}

TEST(matrix, AssignmentReturnsTheMatrixItself) {
  matrix<long double> m;
  EXPECT_EQ(&(m = Counting()), &m);
  EXPECT_EQ(&(m += Counting()), &m);
  EXPECT_EQ(&(m *= 2.0L), &m);
  EXPECT_EQ(m(1, 2), 24.0L);
}

TEST(matrix, SelfAssignmentChangesNothing) {
  matrix<long double> m = Counting();
  const long double* const first = &m(0);
  const matrix<long double>& itself = m;
  m = itself;
  EXPECT_EQ(&m(0), first);
  EXPECT_EQ(m.NRow(), 2);
  EXPECT_EQ(m.NCol(), 3);
  for (long k = 0; k < 6; ++k) EXPECT_EQ(m(k), static_cast<long double>(k + 1));
}

TEST(matrix, MovedFromMatrixIsEmpty) {
  matrix<long double> from = Counting();
  const matrix<long double> to(std::move(from));
  EXPECT_EQ(to(1, 2), 6.0L);
  EXPECT_EQ(from.NRow(), 0); // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(from.NCol(), 0);
}

TEST(matrix, AddsAndScalesElementByElement) {
  matrix<long double> m = Counting();
  m += Counting();
  m *= 0.5L;
  for (long k = 0; k < 6; ++k) EXPECT_EQ(m(k), static_cast<long double>(k + 1));
  matrix<long> whole(2, 1, 3);
  whole *= -2L;
  EXPECT_EQ(whole(1), -6);
}

TEST(matrix, ProductOfRectangularMatrices) {
  // 1 2 3     1 0
  // 4 5 6  x  0 1  =  4  5
  //           1 1    10 11
  matrix<long double> b(3, 2, 0.0L);
  b(0, 0) = b(1, 1) = b(2, 0) = b(2, 1) = 1.0L;
  const matrix<long double> product = Counting() * b;
  ASSERT_EQ(product.NRow(), 2);
  ASSERT_EQ(product.NCol(), 2);
  EXPECT_EQ(product(0, 0), 4.0L);
  EXPECT_EQ(product(0, 1), 5.0L);
  EXPECT_EQ(product(1, 0), 10.0L);
  EXPECT_EQ(product(1, 1), 11.0L);
}

TEST(matrix, ProductSumsInIncreasingOrderInEightyBits) {
  // A half is lost beside 2^63 (64 bits, ties to even), twice. From the other end the two
  // halves make 1, which is not. A 53-bit sum would lose it, too.
  const long double big = 9223372036854775808.0L;
  matrix<long double> ones(1, 3, 1.0L);
  matrix<long double> column(3, 1, 0.5L);
  column(0) = big;
  EXPECT_EQ((ones * column)(0), big);
  column(0) = 0.5L;
  column(2) = big;
  EXPECT_EQ((ones * column)(0), big + 1.0L);
  EXPECT_NE((ones * column)(0), big);
}

TEST(matrixDeathTest, ProductOfShapesThatDoNotFitEndsTheProgram) {
  const matrix<long double> m = Counting();
  EXPECT_ENDS(m * m, "\tFunction:   matrix operator \\*\nMatrix dimensions do not fit!  "
                     "\\[    2,    3\\] -> \\[    2,    3\\]");
}

TEST(matrix, LongTablesBeginWithZerosToo) {
  // Of several large pages, in memory that was used before.
  for (int i = 0; i < 3; ++i) {
    matrix<long double> numbers(500000, 1);
    matrix<Counted> objects(300000, 1);
    for (long k = 0; k < numbers.Length(); ++k) {
      ASSERT_EQ(numbers(k), 0.0L);
      numbers(k) = -1;
    }
    for (long k = 0; k < objects.Length(); ++k) ASSERT_EQ(objects(k).value, 7);
  }
}

TEST(SWAP, ExchangesTwoValues) {
  long double a = 1.0L;
  long double b = -2.0L;
  SWAP(a, b);
  EXPECT_EQ(a, -2.0L);
  EXPECT_EQ(b, 1.0L);
  unsigned short low = 0;
  unsigned short high = 65535;
  SWAP(low, high);
  EXPECT_EQ(low, 65535);
  EXPECT_EQ(high, 0);
}

} // namespace
