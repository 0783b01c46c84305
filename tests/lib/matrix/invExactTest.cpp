// inv() against its plain twin, bit by bit: elements, flag and what is printed.

#include "matrix/inv.h"

#include "matrix/BlockedInverse.h"
#include "reference/inv_plain.h"
#include "support/Captured.h"
#include "support/NormalMatrices.h"
#include "support/SameBits.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <iomanip>
#include <limits>
#include <random>
#include <string>

namespace {

using Square = matrix<long double>;

constexpr long double kInfinity = std::numeric_limits<long double>::infinity();
constexpr long double kNotANumber = std::numeric_limits<long double>::quiet_NaN();

testing::AssertionResult IsTheSame(const Square& A) {
  Captured plainOut(std::cout);
  const Square plain = inv_plain(A);
  const bool plainFlag = invns::IsSingular;
  const std::string plainText = plainOut.Text();

  if (A.NRow() > 1) invns::IsSingular = !plainFlag;
  Captured out(std::cout);
  const Square inverse = inv(A);
  if (invns::IsSingular != plainFlag) return testing::AssertionFailure() << "flag differs";
  if (out.Text() != plainText) return testing::AssertionFailure() << "output: " << out.Text();
  const long k = FirstDifference(inverse, plain);
  if (k == -1) return testing::AssertionSuccess();
  if (k == -2) return testing::AssertionFailure() << "shape differs";
  return testing::AssertionFailure() << std::setprecision(21) << "element " << k << " of size "
                                     << A.NRow() << ": " << inverse(k) << " is not " << plain(k);
}

bool IsBlocked(const Square& A) {
  Square inverse;
  return BlockedInverse(A, invns::thres, inverse);
}

/// Random matrices, the same in each run of the program.
class Random {
public:
  explicit Random(unsigned seed) : engine_(seed) {}

  long Whole(long from, long to) { return std::uniform_int_distribution<long>(from, to)(engine_); }
  bool Chance(double probability) { return std::bernoulli_distribution(probability)(engine_); }
  /// All 64 bits random, -1 to 1.
  long double Number() {
    const auto bits = static_cast<long double>(std::uniform_int_distribution<long>()(engine_));
    return (Chance(0.5) ? bits : -bits) / 9223372036854775808.0L;
  }
  /// Magnitude from 2^-range to 2^range.
  long double Wide(int range) {
    return std::ldexp(Number(), static_cast<int>(Whole(-range, range)));
  }
  /// 1 to 130, the lesser the likelier; now and then one that just fills panels.
  long Size() {
    static constexpr long kBorderline[] = {63, 64, 65, 127, 128, 129};
    if (Chance(0.1)) return kBorderline[Whole(0, 5)];
    return std::min({Whole(1, 130), Whole(1, 130), Whole(1, 130)});
  }

  Square Dense(long n) {
    Square m(n, n);
    for (long k = 0; k < m.Length(); ++k) m(k) = Number();
    return m;
  }
  Square DiagonallyDominant(long n) {
    Square m = Dense(n);
    for (long i = 0; i < n; ++i) m(i, i) += static_cast<long double>(n);
    return m;
  }
  Square Symmetric(long n) {
    Square m = Dense(n);
    for (long i = 0; i < n; ++i)
      for (long j = 0; j < i; ++j) m(i, j) = m(j, i);
    return m;
  }
  /// About \p density of the elements, and the diagonal.
  Square Sparse(long n, double density) {
    Square m(n, n, 0.0L);
    for (long k = 0; k < m.Length(); ++k)
      if (Chance(density)) m(k) = Number();
    for (long i = 0; i < n; ++i) m(i, i) = 1 + Number() / 2;
    return m;
  }
  Square RowsShuffled(Square m) {
    for (long i = m.NRow() - 1; i > 0; --i) {
      const long p = Whole(0, i);
      for (long k = 0; k < m.NCol(); ++k) std::swap(m(i, k), m(p, k));
    }
    return m;
  }
  /// [[N, C^T], [C, 0]] with a sparse symmetric N.
  Square Bordered(long unknowns, long constraints) {
    const Square sparse = Sparse(unknowns, 0.1);
    Square m(unknowns + constraints, unknowns + constraints, 0.0L);
    for (long i = 0; i < unknowns; ++i)
      for (long j = 0; j < unknowns; ++j) m(i, j) = sparse(std::min(i, j), std::max(i, j));
    for (long c = unknowns; c < unknowns + constraints; ++c) {
      for (int k = 0; k < 3; ++k) {
        const long u = Whole(0, unknowns - 1);
        m(c, u) = m(u, c) = k == 2 ? -1 : Number();
      }
    }
    return m;
  }

private:
  std::mt19937_64 engine_;
};

/// Puts threshold and flag back.
class invExact : public testing::Test {
protected:
  ~invExact() override {
    invns::thres = 1e-14;
    invns::IsSingular = false;
  }
};

TEST_F(invExact, RandomDenseMatrices) {
  Random random(1);
  for (int k = 0; k < 120; ++k) ASSERT_TRUE(IsTheSame(random.Dense(random.Size())));
  for (int k = 0; k < 60; ++k) ASSERT_TRUE(IsTheSame(random.Symmetric(random.Size())));
  for (int k = 0; k < 60; ++k) ASSERT_TRUE(IsTheSame(random.DiagonallyDominant(random.Size())));
}

TEST_F(invExact, EverySizeUpToOnePastTheSecondPanel) {
  Random random(2);
  for (long n = 1; n <= 129; ++n) ASSERT_TRUE(IsTheSame(random.Sparse(n, 0.3)));
}

TEST_F(invExact, RandomSparseMatrices) {
  Random random(3);
  for (int k = 0; k < 160; ++k)
    ASSERT_TRUE(IsTheSame(random.Sparse(random.Size(), k % 2 == 0 ? 0.02 : 0.15)));
}

TEST_F(invExact, PermutedMatrices) {
  Random random(4);
  for (int k = 0; k < 60; ++k)
    ASSERT_TRUE(IsTheSame(random.RowsShuffled(random.DiagonallyDominant(random.Size()))));
  for (int k = 0; k < 60; ++k)
    ASSERT_TRUE(IsTheSame(random.RowsShuffled(random.Sparse(random.Size(), 0.05))));
  for (int k = 0; k < 30; ++k)
    ASSERT_TRUE(IsTheSame(random.RowsShuffled(I(random.Size(), random.Number()))));
}

TEST_F(invExact, BorderedMatrices) {
  Random random(5);
  for (int k = 0; k < 120; ++k) {
    const long unknowns = random.Size() + 2;
    ASSERT_TRUE(IsTheSame(random.Bordered(unknowns, random.Whole(1, 1 + unknowns / 4))));
  }
}

TEST_F(invExact, SmallWholeNumbersWithEqualPivotCandidates) {
  Random random(6);
  for (int k = 0; k < 120; ++k) {
    const long n = random.Size();
    Square m(n, n);
    for (long e = 0; e < m.Length(); ++e) m(e) = static_cast<long double>(random.Whole(-2, 2));
    ASSERT_TRUE(IsTheSame(m));
  }
}

TEST_F(invExact, ElementsOfAWideRange) {
  Random random(7);
  for (const int range : {30, 60, 300, 1100, 7000, 16300}) {
    for (int k = 0; k < 25; ++k) {
      Square m = random.Sparse(random.Size(), 0.3);
      for (long e = 0; e < m.Length(); ++e)
        if (m(e) != 0) m(e) = random.Wide(range);
      ASSERT_TRUE(IsTheSame(m)) << range;
    }
  }
}

TEST_F(invExact, ElementsAboutTheThreshold) {
  Random random(8);
  for (int k = 0; k < 60; ++k) {
    Square m = random.DiagonallyDominant(random.Size());
    for (long e = 0; e < m.Length(); ++e)
      if (random.Chance(0.6)) m(e) = invns::thres * static_cast<long double>(random.Whole(-2, 2));
    ASSERT_TRUE(IsTheSame(m));
  }
}

TEST_F(invExact, SingularMatricesAtVariousPlaces) {
  Random random(9);
  for (int k = 0; k < 150; ++k) {
    const long n = random.Size() + 1;
    Square m = k % 2 == 0 ? random.DiagonallyDominant(n) : random.Sparse(n, 0.1);
    const long at = k % 10 == 0 ? n - 1 : random.Whole(0, n - 1);
    const long twin = random.Whole(0, n - 1);
    for (long i = 0; i < n; ++i) {
      if (k % 3 == 0) m(i, at) = 0;
      if (k % 3 == 1) m(at, i) = 0;
      if (k % 3 == 2) m(at, i) = 2 * m(twin, i);
    }
    ASSERT_TRUE(IsTheSame(m));
  }
}

TEST_F(invExact, ZerosWithASign) {
  Random random(10);
  for (int k = 0; k < 80; ++k) {
    Square m = random.Sparse(random.Size(), 0.1);
    for (long e = 0; e < m.Length(); ++e)
      if (m(e) == 0 && random.Chance(0.2)) m(e) = -0.0L;
    ASSERT_TRUE(IsTheSame(m));
  }
}

TEST_F(invExact, InfinitiesAndNonNumbers) {
  Random random(11);
  for (int k = 0; k < 120; ++k) {
    Square m = k % 2 == 0 ? random.Dense(random.Size()) : random.Sparse(random.Size(), 0.1);
    for (long count = random.Whole(1, 3); count > 0; --count) {
      const long e = random.Whole(0, m.Length() - 1);
      m(e) = random.Chance(0.3) ? kNotANumber : random.Chance(0.5) ? kInfinity : -kInfinity;
    }
    ASSERT_TRUE(IsTheSame(m));
  }
}

TEST_F(invExact, NumbersThatOverflowOnTheWay) {
  Random random(12);
  for (int k = 0; k < 60; ++k) {
    Square m = random.Dense(random.Size());
    for (long e = 0; e < m.Length(); ++e)
      if (random.Chance(0.2)) m(e) = std::ldexp(random.Number(), 16384);
    ASSERT_TRUE(IsTheSame(m));
  }
}

TEST_F(invExact, RightHandSideThatOverflowsOnTheWay) {
  // Small pivots under a sparse upper triangle: factors of 1e110, then of 1e220, ...
  Random random(15);
  for (int k = 0; k < 30; ++k) {
    const long n = random.Whole(60, 110);
    Square m(n, n, 0.0L);
    for (long i = 0; i < n; ++i) {
      m(i, i) = 1e-13L;
      for (long j = i + 1; j < n; ++j)
        if (j == i + 1 || random.Chance(0.05)) m(i, j) = 1e97L * random.Number();
    }
    ASSERT_TRUE(IsTheSame(m));
    EXPECT_FALSE(IsBlocked(m));
  }
}

TEST_F(invExact, OtherThresholds) {
  Random random(13);
  for (const long double threshold : {0.0L, -1.0L, 1e-3L, 0.2L, kNotANumber}) {
    invns::thres = threshold;
    for (int k = 0; k < 12; ++k) {
      ASSERT_TRUE(IsTheSame(random.Sparse(random.Size(), 0.2)));
      ASSERT_TRUE(IsTheSame(random.Dense(random.Size())));
    }
  }
}

TEST_F(invExact, LargerMatrices) {
  Random random(14);
  ASSERT_TRUE(IsTheSame(random.Symmetric(257)));
  ASSERT_TRUE(IsTheSame(random.Sparse(300, 0.01)));
  ASSERT_TRUE(IsTheSame(random.Bordered(230, 41)));
}

TEST_F(invExact, NormalMatricesOfADay) {
  NormalMatrixModel model;
  model.step = 300;
  for (const bool satelliteBiases : {false, true}) {
    for (const long satellitesGLN : {0L, 24L}) {
      for (const long double interval : {7200.0L, 1800.0L}) {
        model.satelliteBiases = satelliteBiases;
        model.satellitesGLN = satellitesGLN;
        model.interval = interval;
        const Square N = model.Make();
        ASSERT_TRUE(IsTheSame(N)) << N.NRow();
        EXPECT_TRUE(IsBlocked(N)) << N.NRow();
        EXPECT_FALSE(invns::IsSingular);
      }
    }
  }
}

TEST(BlockedInverse, TakesRegularMatricesOfAnyKind) {
  Random random(21);
  for (const long n : {2L, 3L, 9L, 64L, 65L, 130L}) {
    EXPECT_TRUE(IsBlocked(random.DiagonallyDominant(n)));
    EXPECT_TRUE(IsBlocked(random.RowsShuffled(random.DiagonallyDominant(n))));
    EXPECT_TRUE(IsBlocked(random.Sparse(n, 0.05)));
    EXPECT_TRUE(IsBlocked(I(n, -3.0L)));
  }
}

TEST(BlockedInverse, TakesElementsBeyondTheRangeOfADouble) {
  // The inverse of this chain fades by 1e-9 from link to link, to 1e-1000 and less.
  const long n = 120;
  Square chain = I(n, 1.0L);
  for (long i = 1; i < n; ++i) chain(i, i - 1) = chain(i - 1, i) = 1e-9L;
  Square inverse;
  ASSERT_TRUE(BlockedInverse(chain, invns::thres, inverse));
  EXPECT_LT(std::fabs(inverse(n - 1, 0)), 1e-1000L);
  EXPECT_GT(std::fabs(inverse(n - 1, 0)), 0.0L);
  EXPECT_TRUE(SameBits(inverse, inv_plain(chain)));
}

TEST(BlockedInverse, DeclinesWhatOnlyThePlainLoopGetsRight) {
  Random random(22);
  const Square regular = random.DiagonallyDominant(70);
  const auto with = [&regular](long i, long j, long double x) {
    Square m = regular;
    m(i, j) = x;
    return m;
  };
  ASSERT_TRUE(IsBlocked(regular));
  EXPECT_FALSE(IsBlocked(with(69, 3, -0.0L)));
  EXPECT_FALSE(IsBlocked(with(0, 69, kInfinity)));
  EXPECT_FALSE(IsBlocked(with(66, 66, kNotANumber)));

  Square singular = regular;
  for (long i = 0; i < 70; ++i) singular(i, 67) = 0;
  EXPECT_FALSE(IsBlocked(singular));
  Square overflowing = regular;
  for (long i = 0; i < 70; ++i) overflowing(i, i) = std::ldexp(1.0L, 16383);
  overflowing(0, 1) = overflowing(1, 0) = std::ldexp(1.0L, 16383) * 1.5L;
  EXPECT_FALSE(IsBlocked(overflowing));

  Square untouched(1, 1, 5.0L);
  EXPECT_FALSE(BlockedInverse(singular, invns::thres, untouched));
  EXPECT_EQ(untouched.NRow(), 1);
  EXPECT_EQ(untouched(0), 5.0L);
  EXPECT_FALSE(BlockedInverse(regular, 0.0L, untouched));
}

} // namespace
