#include "NormalInverse.h"

#include "matrix/I.h"
#include "matrix/inv.h"
#include "support/NormalMatrices.h"
#include "support/SameBits.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

namespace {

using Square = matrix<long double>;

struct Kept {
  Square inverse;
  NormalInverse update{inverse};
};

Square Day() {
  NormalMatrixModel gps;
  gps.interval = 14400;
  gps.step = 300;
  return gps.Make();
}

TEST(NormalInverse, IsTheInverse) {
  const Square N = Day();
  Kept kept;
  EXPECT_TRUE(kept.update.Update(N));
  EXPECT_TRUE(SameBits(kept.inverse, inv(N)));
}

TEST(NormalInverse, EqualMatrixIsNotInvertedAgain) {
  const Square N = Day();
  const Square copy = N;
  Kept kept;
  kept.update.Update(N);
  const Square first = kept.inverse;
  EXPECT_FALSE(kept.update.Update(copy));
  EXPECT_TRUE(SameBits(kept.inverse, first));
}

TEST(NormalInverse, OneBitAnywhereMakesAnotherMatrix) {
  const Square N = Day();
  const long last = N.Length() - 1;
  for (const long k : {0L, 7L, N.NCol() + 3, last - 1, last}) {
    Kept kept;
    kept.update.Update(N);
    Square other = N;
    other(k) = std::nextafter(N(k), 2.0L);
    ASSERT_TRUE(kept.update.Update(other)) << k;
    EXPECT_TRUE(SameBits(kept.inverse, inv(other))) << k;
  }
}

TEST(NormalInverse, ZeroOfTheOtherSignMakesAnotherMatrix) {
  Square N = I(2, 1.0L);
  Kept kept;
  kept.update.Update(N);
  N(0, 1) = -0.0L;
  EXPECT_TRUE(kept.update.Update(N));
}

TEST(NormalInverse, BytesBehindTheEightyBitsDoNotCount) {
  const Square N = Day();
  Square padded = N;
  for (long k = 0; k < padded.Length(); ++k)
    std::memset(reinterpret_cast<char*>(&padded(k)) + 10, 0x55, sizeof(long double) - 10);
  Kept kept;
  kept.update.Update(N);
  EXPECT_FALSE(kept.update.Update(padded));
}

TEST(NormalInverse, TakesMatricesOfAnotherSizeForOthers) {
  Kept kept;
  kept.update.Update(I(2, 1.0L));
  EXPECT_TRUE(kept.update.Update(Day()));
  EXPECT_EQ(kept.inverse.NRow(), Day().NRow());
}

TEST(NormalInverse, OnlyTheLastMatrixIsKept) {
  const Square N = Day();
  Square other = N;
  other(0, 0) *= 2;
  Kept kept;
  kept.update.Update(N);
  kept.update.Update(other);
  EXPECT_TRUE(kept.update.Update(N));
  EXPECT_TRUE(SameBits(kept.inverse, inv(N)));
}

TEST(NormalInverse, SingularMatrixIsFoundSingularEachTime) {
  const Square zeros(3, 3, 0.0L);
  Kept kept;
  for (int time = 0; time < 2; ++time) {
    invns::IsSingular = false;
    EXPECT_TRUE(kept.update.Update(zeros));
    EXPECT_TRUE(invns::IsSingular);
  }
}

TEST(NormalInverse, TellsThatTheMatrixIsRegularWhateverWasInvertedBetween) {
  const Square N = Day();
  Kept kept;
  kept.update.Update(N);
  inv(Square(3, 3, 0.0L));
  ASSERT_TRUE(invns::IsSingular);
  kept.update.Update(N);
  EXPECT_FALSE(invns::IsSingular);
}

TEST(NormalInverse, OneElementLeavesTheFlagAlone) {
  const Square four(1, 1, 4.0L);
  Kept kept;
  for (const bool flag : {true, false}) {
    invns::IsSingular = flag;
    kept.update.Update(four);
    EXPECT_EQ(invns::IsSingular, flag);
    EXPECT_EQ(kept.inverse(0), 0.25L);
  }
}

} // namespace
