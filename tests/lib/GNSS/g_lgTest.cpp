#include "GNSS/g_lg.h"

#include "GNSS/xyz_flh.h"
#include "support/Near.h"

namespace {

elipsoid Grs80() {
  elipsoid ell;
  ell.Set(0);
  return ell;
}

const elipsoid kGrs80 = Grs80();
const flh kPlace(0.8L, -2.1L, 350);
const xyz kVector(1200, -3400, 560);

testing::AssertionResult Is(const neu& v, long double n, long double e, long double u,
                            long double tolerance) {
  if (!Near(v.GetN(), n, tolerance)) return Near(v.GetN(), n, tolerance) << " in n";
  if (!Near(v.GetE(), e, tolerance)) return Near(v.GetE(), e, tolerance) << " in e";
  return Near(v.GetU(), u, tolerance) << " in u";
}

// Direction in which a position moves with one geodetic coordinate, by central differences.
xyz Towards(const flh& step) {
  return (flh2xyz(kPlace + step, kGrs80) - flh2xyz(kPlace - step, kGrs80)).GetUnitVector(1);
}

TEST(g2lg, AxesAtTheOrigin) {
  const flh origin;
  EXPECT_TRUE(Is(g2lg(xyz(1, 2, 3), origin), 3, 2, 1, 0));
}

TEST(g2lg, AxesAtThePole) {
  const flh pole(3.14159265358979323846L / 2, 0, 0);
  EXPECT_TRUE(Is(g2lg(xyz(1, 2, 3), pole), -1, 2, 3, 1e-18L));
}

TEST(g2lg, RowsAreTheDirectionsOfTheGeodeticCoordinates) {
  const xyz north = Towards(flh(1e-6L, 0, 0));
  const xyz east = Towards(flh(0, 1e-6L, 0));
  const xyz up = Towards(flh(0, 0, 10));
  EXPECT_TRUE(Is(g2lg(kVector, kPlace), kVector * north, kVector * east, kVector * up, 1e-8L));
}

TEST(g2lg, CartesianPlaceIsConvertedFirst) {
  const xyz place = flh2xyz(kPlace, kGrs80);
  const neu v = g2lg(kVector, kPlace);
  EXPECT_TRUE(Is(g2lg(kVector, place, kGrs80), v.GetN(), v.GetE(), v.GetU(), 1e-10L));
}

TEST(lg2g, UndoesG2lg) {
  EXPECT_LT((lg2g(g2lg(kVector, kPlace), kPlace) - kVector).GetLength(), 1e-15L);
  const xyz place = flh2xyz(kPlace, kGrs80);
  EXPECT_LT((lg2g(g2lg(kVector, place, kGrs80), place, kGrs80) - kVector).GetLength(), 1e-15L);
}

TEST(lg2g, AxesAtTheOrigin) {
  const xyz v = lg2g(neu(1, 2, 3), flh());
  EXPECT_TRUE(v == xyz(3, 2, 1));
}

TEST(gt2lgt, TurnsAsG2lgAndCopiesTime) {
  const xyzt d(kVector.GetX(), kVector.GetY(), kVector.GetZ(), 42);
  const neu v = g2lg(kVector, kPlace);
  const neut expected(v.GetN(), v.GetE(), v.GetU(), 42);
  const flht place(kPlace.GetF(), kPlace.GetL(), kPlace.GetH(), 7);
  EXPECT_TRUE(gt2lgt(d, kPlace) == expected);
  EXPECT_TRUE(gt2lgt(d, place) == expected);
  const neut w = gt2lgt(d, flht2xyzt(place, kGrs80), kGrs80);
  EXPECT_TRUE(Is(neu(w.GetN(), w.GetE(), w.GetU()), v.GetN(), v.GetE(), v.GetU(), 1e-10L));
  EXPECT_EQ(w.GetT(), 42);
}

TEST(lgt2gt, UndoesGt2lgt) {
  const xyzt d(kVector.GetX(), kVector.GetY(), kVector.GetZ(), 42);
  const flht place(kPlace.GetF(), kPlace.GetL(), kPlace.GetH(), 7);
  EXPECT_LT((lgt2gt(gt2lgt(d, place), place) - d).GetLength(), 1e-15L);
  EXPECT_EQ(lgt2gt(gt2lgt(d, place), place).GetT(), 42);
  const xyzt at = flht2xyzt(place, kGrs80);
  const xyzt back = lgt2gt(gt2lgt(d, at, kGrs80), at, kGrs80);
  EXPECT_LT((back - d).GetLength(), 1e-15L);
  EXPECT_EQ(back.GetT(), 42);
}

// Covariances

matrix<long double> Covariance(const xyz& a, const xyz& b) {
  const long double x[3] = {a.GetX(), a.GetY(), a.GetZ()};
  const long double y[3] = {b.GetX(), b.GetY(), b.GetZ()};
  matrix<long double> C(3, 3);
  for (long i = 0; i < 3; ++i)
    for (long j = 0; j < 3; ++j) C(i, j) = x[i] * x[j] + y[i] * y[j];
  return C;
}

TEST(g2lg, CovarianceOfVectorsIsTheCovarianceOfTheTurnedVectors) {
  // Cg = a aT + b bT propagates to (R a)(R a)T + (R b)(R b)T.
  const xyz a(1, -2, 3), b(0.5L, 4, -1);
  const neu an = g2lg(a, kPlace), bn = g2lg(b, kPlace);
  const matrix<long double> expected =
      Covariance(xyz(an.GetN(), an.GetE(), an.GetU()), xyz(bn.GetN(), bn.GetE(), bn.GetU()));
  const matrix<long double> Cg = Covariance(a, b);
  matrix<long double> Cl(3, 3), ClT(3, 3);
  g2lg(Cg, kPlace, Cl);
  g2lg(Cg, flht(kPlace.GetF(), kPlace.GetL(), kPlace.GetH(), 0), ClT);
  for (long i = 0; i < 3; ++i)
    for (long j = 0; j < 3; ++j) {
      EXPECT_TRUE(Near(Cl(i, j), expected(i, j), 1e-17L)) << i << j;
      EXPECT_EQ(ClT(i, j), Cl(i, j)) << i << j;
    }
}

TEST(g2lg, CovarianceLeavesWhatLiesBeyondThreeByThree) {
  matrix<long double> Cg(4, 4, 5.0L), Cl(5, 4, 9.0L);
  g2lg(Cg, flh(), Cl);
  EXPECT_EQ(Cl(3, 3), 9);
  EXPECT_EQ(Cl(0, 3), 9);
  EXPECT_EQ(Cl(2, 2), 5);
}

TEST(g2lg, CovarianceMayBeTurnedInPlace) {
  matrix<long double> C = Covariance(xyz(1, -2, 3), xyz(0.5L, 4, -1));
  matrix<long double> Cl(3, 3);
  g2lg(C, kPlace, Cl);
  g2lg(C, kPlace, C);
  for (long k = 0; k < 9; ++k) EXPECT_EQ(C(k), Cl(k)) << k;
}

} // namespace
