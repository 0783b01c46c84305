#include "ObsEquation.h"

#include "support/Near.h"
#include "support/SameBits.h"

namespace {

struct Normals {
  matrix<long double> N{3, 3, 0.0L};
  matrix<long double> t{3, 1, 0.0L};
  long double vtPv = 0;
  NormalEquations equations{N, t, vtPv};
};

ObsEquation Equation(std::initializer_list<std::pair<long, long double>> terms, long double f) {
  ObsEquation eq;
  for (const auto& [index, coefficient] : terms) eq.Add(index, coefficient);
  eq.f = f;
  return eq;
}

TEST(ObsEquation, AbsentUnknownsAreLeftOut) {
  const ObsEquation eq = Equation({{-1, 5}, {2, -1}}, 0);
  ASSERT_EQ(eq.n, 1);
  EXPECT_EQ(eq.ix[0], 2);
  EXPECT_EQ(eq.a[0], -1);
}

TEST(NormalEquations, OneEquationAddsItsDyadicProduct) {
  // a = (0, -1, 3), f = 2, p = 10: N = p a aT, t = p f a, vtPv = p f^2
  Normals n;
  n.equations.Add(Equation({{1, -1}, {2, 3}}, 2), 10);
  n.equations.Complete(3);
  const long double expected[3][3] = {{0, 0, 0}, {0, 10, -30}, {0, -30, 90}};
  for (long i = 0; i < 3; ++i)
    for (long j = 0; j < 3; ++j) EXPECT_EQ(n.N(i, j), expected[i][j]) << i << ' ' << j;
  EXPECT_EQ(n.t(0), 0);
  EXPECT_EQ(n.t(1), -20);
  EXPECT_EQ(n.t(2), 60);
  EXPECT_EQ(n.vtPv, 40);
}

TEST(NormalEquations, PairWithCrossWeightEqualsTheFullQuadraticForm) {
  // A = [-1 0 0; 0 -1 -2], f = (3, 5), P = w [[2/3, -1/3], [-1/3, 2/3]] with w = 6:
  // P = [4 -2; -2 4]; AT P A, AT P f and fT P f by hand:
  // N = [4, -2, -4; -2, 4, 8; -4, 8, 16], t = -( 2, 14, 28), fT P f = 36 - 60 + 100 = 76
  Normals n;
  const ObsEquation e1 = Equation({{0, -1}}, 3);
  const ObsEquation e2 = Equation({{1, -1}, {2, -2}}, 5);
  n.equations.Add(e1, 4);
  n.equations.Add(e2, 4);
  n.equations.AddCross(e1, e2, -2);
  n.equations.Complete(3);
  const long double N[3][3] = {{4, -2, -4}, {-2, 4, 8}, {-4, 8, 16}};
  const long double t[3] = {-2, -14, -28};
  for (long i = 0; i < 3; ++i) {
    EXPECT_EQ(n.t(i), t[i]) << i;
    for (long j = 0; j < 3; ++j) EXPECT_EQ(n.N(i, j), N[i][j]) << i << ' ' << j;
  }
  EXPECT_EQ(n.vtPv, 76);
}

TEST(NormalEquations, NegativeWeightTakesTheContributionOutAgain) {
  Normals n;
  n.equations.Add(Equation({{0, -1}, {1, 0.1L}}, 0.3L), 0.7L);
  const matrix<long double> before = n.N;
  const ObsEquation e1 = Equation({{0, -1}}, 0.2L);
  const ObsEquation e2 = Equation({{1, -1}, {2, 0.37L}}, -0.9L);
  n.equations.AddCross(e1, e2, 0.25L);
  n.equations.AddCross(e1, e2, -0.25L);
  for (long k = 0; k < before.Length(); ++k) EXPECT_TRUE(Near(n.N(k), before(k), 1e-18L)) << k;
}

TEST(NormalEquations, OrderOfTheUnknownsDoesNotMatter) {
  Normals up;
  up.equations.Add(Equation({{0, -1}, {2, 0.3L}}, 2), 0.1L);
  up.equations.AddCross(Equation({{0, -1}}, 3), Equation({{2, 0.7L}}, 5), 0.3L);
  Normals down;
  down.equations.Add(Equation({{2, 0.3L}, {0, -1}}, 2), 0.1L);
  down.equations.AddCross(Equation({{2, 0.7L}}, 5), Equation({{0, -1}}, 3), 0.3L);
  up.equations.Complete(3);
  down.equations.Complete(3);
  EXPECT_TRUE(SameBits(up.N, down.N));
  EXPECT_TRUE(SameBits(up.t, down.t));
}

TEST(NormalEquations, CompletesTheLeadingBlockAlone) {
  constexpr long kSize = 40; // more than the blocks that are copied at a time
  constexpr long kLeading = 37;
  matrix<long double> N(kSize, kSize);
  matrix<long double> t(kSize, 1);
  long double vtPv = 0;
  for (long k = 0; k < N.Length(); ++k) N(k) = static_cast<long double>(k);
  const matrix<long double> before = N;
  NormalEquations(N, t, vtPv).Complete(kLeading);
  for (long i = 0; i < kSize; ++i)
    for (long j = 0; j < kSize; ++j)
      EXPECT_EQ(N(i, j), i > j && i < kLeading ? before(j, i) : before(i, j)) << i << ' ' << j;
}

} // namespace
