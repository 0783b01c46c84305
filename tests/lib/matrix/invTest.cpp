#include "matrix/inv.h"

#include "matrix/I.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Near.h"

#include <cmath>
#include <initializer_list>
#include <string>

namespace {

using Square = matrix<long double>;

/// Square matrix from its rows.
Square Rows(std::initializer_list<long double> values) {
  const long size = std::lround(std::sqrt(static_cast<double>(values.size())));
  Square m(size, size);
  long k = 0;
  for (const long double value : values) m(k++) = value;
  return m;
}

void ExpectNear(const Square& m, const Square& truth, long double tolerance) {
  ASSERT_EQ(m.NRow(), truth.NRow());
  ASSERT_EQ(m.NCol(), truth.NCol());
  for (long i = 0; i < m.NRow(); ++i)
    for (long j = 0; j < m.NCol(); ++j)
      EXPECT_TRUE(Near(m(i, j), truth(i, j), tolerance)) << i << ", " << j;
}

/// Puts threshold and flag back.
class inv : public testing::Test {
protected:
  ~inv() override {
    invns::thres = 1e-14;
    invns::IsSingular = false;
  }
};
using invDeathTest = inv;

TEST_F(inv, ThresholdIsTheDoubleAndTheFlagStartsClear) {
  EXPECT_EQ(invns::thres, static_cast<long double>(1e-14));
  EXPECT_NE(invns::thres, 1e-14L);
  EXPECT_FALSE(invns::IsSingular);
}

TEST_F(inv, TwoByTwoHasItsClosedForm) {
  // det = 4 * 6 - 7 * 2 = 10
  const Square m = Rows({4, 7, 2, 6});
  ExpectNear(::inv(m), Rows({0.6L, -0.7L, -0.2L, 0.4L}), 1e-18L);
  EXPECT_FALSE(invns::IsSingular);
}

TEST_F(inv, HilbertMatrixHasAnInverseOfWholeNumbers) {
  // (i + j - 1)^-1 for i, j = 1..3; the inverse is well known. Condition number 524.
  const Square hilbert =
      Rows({1, 1 / 2.0L, 1 / 3.0L, 1 / 2.0L, 1 / 3.0L, 1 / 4.0L, 1 / 3.0L, 1 / 4.0L, 1 / 5.0L});
  ExpectNear(::inv(hilbert), Rows({9, -36, 30, -36, 192, -180, 30, -180, 180}), 1e-14L);
}

TEST_F(inv, ExchangedRowsGiveExchangedColumns) {
  const Square cycle = Rows({0, 1, 0, 0, 0, 1, 1, 0, 0});
  ExpectNear(::inv(cycle), Rows({0, 0, 1, 1, 0, 0, 0, 1, 0}), 0.0L);
}

TEST_F(inv, LeadingBlockAloneIsInverted) {
  const Square m = Rows({2, 0, 99, 0, 4, 99, 99, 99, 99});
  ExpectNear(::inv(m, 2), Rows({0.5L, 0, 0, 0.25L}), 0.0L);
  ExpectNear(::inv(m, 1), Rows({0.5L}), 0.0L);
  ExpectNear(::inv(m, 3), ::inv(m, -1), 0.0L);
}

TEST_F(inv, LeadingBlockOfARectangleIsInverted) {
  matrix<long double> wide(2, 3, 0.0L);
  wide(0, 0) = 8;
  wide(1, 1) = 2;
  ExpectNear(::inv(wide, 2), Rows({0.125L, 0, 0, 0.5L}), 0.0L);
}

TEST_F(inv, OneByOneZeroIsInfiniteAndLeavesTheFlagAlone) {
  const Square zero = Rows({0});
  for (const bool flag : {false, true}) {
    invns::IsSingular = flag;
    const Square inverse = ::inv(zero);
    EXPECT_TRUE(std::isinf(inverse(0, 0)));
    EXPECT_GT(inverse(0, 0), 0.0L);
    EXPECT_EQ(invns::IsSingular, flag);
  }
}

TEST_F(inv, ZeroFirstColumnIsSingularWithoutAWord) {
  const Square m = Rows({0, 1, 2, 0, 3, 4, 0, 5, 7});
  Captured out(std::cout);
  const Square left = ::inv(m);
  EXPECT_TRUE(invns::IsSingular);
  EXPECT_EQ(out.Text(), "");
  ExpectNear(left, I(3, 1.0L), 0.0L);
}

TEST_F(inv, SingularResultHoldsTheRowOperationsDoneSoFar) {
  // The pivot 4 comes up from the second row; row 0 - 2/4 of it is done, row 2 has nothing
  // to eliminate. Column 1 is then zero below the first row.
  const Square m = Rows({2, 4, 1, 4, 8, 3, 0, 0, 5});
  Captured out(std::cout);
  const Square left = ::inv(m);
  EXPECT_TRUE(invns::IsSingular);
  EXPECT_EQ(out.Text(), "");
  ExpectNear(left, Rows({0, 1, 0, 1, -0.5L, 0, 0, 0, 1}), 0.0L);
}

TEST_F(inv, SingularLastPivotIsToldInUnitsOfTheThreshold) {
  // The second row less the first leaves 2^-48 = 3.5527e-15 on the diagonal.
  const Square m = Rows({1, 1, 1, 1 + std::ldexp(1.0L, -48)});
  Captured out(std::cout);
  const Square left = ::inv(m);
  EXPECT_TRUE(invns::IsSingular);
  EXPECT_EQ(out.Text(), "\n" + std::string(60, '*') +
                            "\nMATRIX::WARNING:\n\n\tFunction:   inv\nMatrix is SINGULAR:   "
                            "0.355271 10**-15     1\n\n" +
                            std::string(60, '*') + "\n");
  ExpectNear(left, Rows({1, 0, -1, 1}), 0.0L);
}

TEST_F(inv, FlagIsClearedByTheNextRegularMatrix) {
  ::inv(Rows({0, 0, 0, 0}));
  EXPECT_TRUE(invns::IsSingular);
  ::inv(Rows({1, 0, 0, 1}));
  EXPECT_FALSE(invns::IsSingular);
}

TEST_F(inv, ElementAtTheThresholdIsNeitherZeroPivotNorEliminated) {
  const long double t = invns::thres;
  // Both pivots are exactly the threshold: not below it, so the matrix is regular; the
  // element beside the diagonal is not above it, so it stays and is not seen.
  const Square inverse = ::inv(Rows({t, 0, t, t}));
  EXPECT_FALSE(invns::IsSingular);
  ExpectNear(inverse, Rows({1 / t, 0, 0, 1 / t}), 0.0L);
}

TEST_F(inv, BorderedMatrixInvertsThanksToThePivoting) {
  // Two unknowns of weight 2 and 4 whose difference is held at zero: both are the weighted
  // mean, so each cofactor is 1/(2 + 4); multiplier 2 * 4/(2 + 4).
  //   [ 2  0  1]^-1      [1/6  1/6   2/3]
  //   [ 0  4 -1]      =  [1/6  1/6  -1/3]
  //   [ 1 -1  0]         [2/3 -1/3  -4/3]
  const Square bordered = Rows({2, 0, 1, 0, 4, -1, 1, -1, 0});
  const Square truth = Rows({1 / 6.0L, 1 / 6.0L, 2 / 3.0L, 1 / 6.0L, 1 / 6.0L, -1 / 3.0L, 2 / 3.0L,
                             -1 / 3.0L, -4 / 3.0L});
  ExpectNear(::inv(bordered), truth, 1e-18L);
  EXPECT_FALSE(invns::IsSingular);
}

TEST_F(inv, RegularBlockWithSeveralConstraintsInverts) {
  // N regular but far from diagonal, C of full rank: the product with the inverse is I.
  const long unknowns = 12;
  const long constraints = 4;
  const long size = unknowns + constraints;
  Square bordered(size, size, 0.0L);
  for (long i = 0; i < unknowns; ++i)
    for (long j = 0; j < unknowns; ++j)
      bordered(i, j) = (i == j ? 8.0L : 0.0L) + 1.0L / static_cast<long double>(1 + i + j);
  for (long k = 0; k < constraints; ++k) {
    bordered(unknowns + k, 3 * k) = bordered(3 * k, unknowns + k) = 1.0L;
    bordered(unknowns + k, 3 * k + 1) = bordered(3 * k + 1, unknowns + k) = -1.0L;
  }
  const Square inverse = ::inv(bordered);
  EXPECT_FALSE(invns::IsSingular);
  ExpectNear(bordered * inverse, I(size, 1.0L), 1e-16L);
  ExpectNear(inverse * bordered, I(size, 1.0L), 1e-16L);
}

TEST_F(inv, ArgumentStaysAsItWas) {
  const Square m = Rows({0, 2, 3, 1});
  ::inv(m);
  ExpectNear(m, Rows({0, 2, 3, 1}), 0.0L);
}

TEST_F(invDeathTest, BlockLargerThanTheMatrixReportsWhatIsMissing) {
  const matrix<long double> m(3, 5, 1.0L);
  EXPECT_ENDS(::inv(m, 4), "\tFunction:   inv\nDimension of submatrix inproper:  "
                           "\\[   -1,    1\\]\n");
}

TEST_F(invDeathTest, RectangleIsReported) {
  const matrix<long double> m(3, 5, 1.0L);
  EXPECT_ENDS(::inv(m, -1), "\tFunction:   inv\nMatrix is not square:  \\[    3,    5\\]\n");
}

TEST_F(invDeathTest, MatrixWithoutElementsIsReported) {
  EXPECT_ENDS(::inv(Square()), "\tFunction:   inv\nMatrix is not defined:  \\[    0,    0\\]\n");
  EXPECT_ENDS(::inv(I(3, 1.0L), 0), "Matrix is not defined:  \\[    0,    0\\]");
}

TEST(I, HasTheValueOnTheDiagonalAndZeroElsewhere) {
  const Square m = I(3, 2.5L);
  ExpectNear(m, Rows({2.5L, 0, 0, 0, 2.5L, 0, 0, 0, 2.5L}), 0.0L);
  EXPECT_EQ(I(0, 1.0L).Length(), 0);
}

} // namespace
