#include "GNSS/xyz_flh.h"

#include "funkcije/PolmeriUkrivljenosti.h"
#include "support/Ends.h"
#include "support/Near.h"

#include <limits>
#include <vector>

namespace {

constexpr long double kPi = 3.141592653589793; // the double value
constexpr long double kNan = std::numeric_limits<long double>::quiet_NaN();
constexpr long double kInf = std::numeric_limits<long double>::infinity();

elipsoid WithCode(int code) {
  elipsoid ell;
  ell.Set(code);
  return ell;
}

const elipsoid kGrs80 = WithCode(0);

long double Radians(int d, int m, long double s) { return (d + m / 60.0L + s / 3600) * kPi / 180; }

// The passes of Hofmann-Wellenhof and Moritz, 5.6, as they are written there.
struct Textbook {
  long double f, h;
  bool settled;
};
Textbook Settle(const xyz& v, const elipsoid& ell, bool withHeight, long most) {
  const long double e = ell.GetE(), z = v.GetZ();
  const long double p = std::sqrt(v.GetX() * v.GetX() + v.GetY() * v.GetY());
  long double f = std::atan(z / ((1 + e) * p * (1 - e)));
  long double h = p / std::cos(f) - PolmerN(f, ell.GetA(), e);
  for (long pass = 0; pass < most; ++pass) {
    const long double N = PolmerN(f, ell.GetA(), e);
    const long double hNew = p / std::cos(f) - N;
    const long double fNew = std::atan(z / (p * (1 - N * e * e / (N + hNew))));
    const long double move = std::fabs(fNew - f) + (withHeight ? std::fabs(hNew - h) : 0);
    f = fNew;
    h = hNew;
    if (!(move > 1e-14)) return {f, h, true};
  }
  return {f, h, false};
}

// Points from 11 km below to 20200 km above the ellipsoid.
std::vector<xyz> Points() {
  std::vector<xyz> points;
  for (int f = -89; f <= 89; f += 2)
    for (int l = -179; l < 180; l += 23)
      for (long double h : {-11000.0L, 0.0L, 123.456L, 8848.0L, 450e3L, 20200e3L}) {
        flh p;
        p.Set(f * kPi / 180, l * kPi / 180, h);
        points.push_back(flh2xyz(p, kGrs80));
      }
  return points;
}

TEST(flh2xyz, PublishedPoint) {
  // OGP guidance note 7-2, geographic/geocentric conversions, WGS84.
  const xyz v = flh2xyz(flh(Radians(53, 48, 33.820L), Radians(2, 7, 46.380L), 73.0L), WithCode(1));
  EXPECT_TRUE(Near(v.GetX(), 3771793.968L, 0.02L));
  EXPECT_TRUE(Near(v.GetY(), 140253.342L, 0.02L));
  EXPECT_TRUE(Near(v.GetZ(), 5124304.349L, 0.02L));
}

TEST(flh2xyz, PoleIsTheSemiMinorAxis) {
  const xyz v = flh2xyz(flh(kPi / 2, 0, 0), kGrs80);
  EXPECT_TRUE(Near(v.GetX(), 0, 1e-8L));
  EXPECT_TRUE(Near(v.GetZ(), 6356752.3141L, 5e-5L));
}

TEST(flh2xyz, OnASphereItIsPolarCoordinates) {
  const xyz v = flh2xyz(flh(kPi / 6, kPi / 3, 1000), WithCode(4));
  const long double r = 6372000, root3 = 1.73205080756887729353L;
  EXPECT_TRUE(Near(v.GetX(), r * root3 / 4, 1e-8L));
  EXPECT_TRUE(Near(v.GetY(), r * 3 / 4, 1e-8L));
  EXPECT_TRUE(Near(v.GetZ(), r / 2, 1e-8L));
}

TEST(flh2xyz, DoesNotCheckItsInput) {
  flh p;
  p.Set(1000, 0, 0);
  EXPECT_TRUE(std::isfinite(flh2xyz(p, kGrs80).GetX()));
  flht q;
  q.Set(kNan, 0, 0, 5);
  EXPECT_TRUE(std::isnan(flht2xyzt(q, kGrs80).GetX()));
}

TEST(flht2xyzt, CopiesTime) {
  const xyzt v = flht2xyzt(flht(0.5L, 1, 100, 42), kGrs80);
  const xyz w = flh2xyz(flh(0.5L, 1, 100), kGrs80);
  EXPECT_TRUE(v == xyzt(w.GetX(), w.GetY(), w.GetZ(), 42));
}

TEST(xyz2flh, PublishedPoint) {
  const flh p = xyz2flh(xyz(3771793.968L, 140253.342L, 5124304.349L), WithCode(1));
  EXPECT_TRUE(Near(p.GetF(), Radians(53, 48, 33.820L), 3e-9L)); // 1 cm
  EXPECT_TRUE(Near(p.GetL(), Radians(2, 7, 46.380L), 3e-9L));
  EXPECT_TRUE(Near(p.GetH(), 73.0L, 0.05L));
}

TEST(xyz2flh, PositiveXAxisIsTheOrigin) {
  const flh p = xyz2flh(xyz(6378137, 0, 0), kGrs80);
  EXPECT_EQ(p.GetF(), 0);
  EXPECT_EQ(p.GetL(), 0);
  EXPECT_TRUE(Near(p.GetH(), 0, 1e-11L));
}

TEST(xyz2flh, NegativeXAxisHasLongitudeMinusPi) {
  EXPECT_EQ(xyz2flh(xyz(-6378137, 0, 0), kGrs80).GetL(), -kPi);
  EXPECT_EQ(xyz2flh(xyz(-6378137, -0.0L, 0), kGrs80).GetL(), -kPi);
}

TEST(xyz2flh, LongitudeLiesInTheQuadrantOfThePoint) {
  EXPECT_TRUE(Near(xyz2flh(xyz(4e6L, 4e6L, 1e6L), kGrs80).GetL(), kPi / 4, 1e-15L));
  EXPECT_TRUE(Near(xyz2flh(xyz(-4e6L, 4e6L, 1e6L), kGrs80).GetL(), 3 * kPi / 4, 1e-15L));
  EXPECT_TRUE(Near(xyz2flh(xyz(-4e6L, -4e6L, 1e6L), kGrs80).GetL(), -3 * kPi / 4, 1e-15L));
  EXPECT_TRUE(Near(xyz2flh(xyz(4e6L, -4e6L, 1e6L), kGrs80).GetL(), -kPi / 4, 1e-15L));
  EXPECT_TRUE(Near(xyz2flh(xyz(0, 6e6L, 1e6L), kGrs80).GetL(), kPi / 2, 1e-15L));
  EXPECT_TRUE(Near(xyz2flh(xyz(0, -6e6L, 1e6L), kGrs80).GetL(), -kPi / 2, 1e-15L));
}

TEST(xyz2flh, ThereAndBackFarBelowAMillimetre) {
  for (const xyz& v : Points()) {
    EXPECT_LT((flh2xyz(xyz2flh(v, kGrs80), kGrs80) - v).GetLength(), 1e-6L);
    const xyzt t(v.GetX(), v.GetY(), v.GetZ(), 7);
    const xyzt back = flht2xyzt(xyzt2flht(t, kGrs80), kGrs80);
    EXPECT_LT((back - t).GetLength(), 1e-8L);
    EXPECT_EQ(back.GetT(), 7);
  }
}

TEST(xyz2flh, BothFunctionsAreTheTextbookPassesToTheBit) {
  for (const xyz& v : Points()) {
    const Textbook byLatitude = Settle(v, kGrs80, false, 100);
    ASSERT_TRUE(byLatitude.settled);
    const flh p = xyz2flh(v, kGrs80);
    EXPECT_EQ(p.GetF(), byLatitude.f);
    EXPECT_EQ(p.GetH(), byLatitude.h);
    const Textbook byBoth = Settle(v, kGrs80, true, 100);
    if (!byBoth.settled) continue;
    const flht q = xyzt2flht(xyzt(v.GetX(), v.GetY(), v.GetZ(), 0), kGrs80);
    EXPECT_EQ(q.GetF(), byBoth.f);
    EXPECT_EQ(q.GetH(), byBoth.h);
  }
}

TEST(xyzt2flht, StopsOnLatitudeAndHeightWhereTheOtherStopsOnLatitudeAlone) {
  long double most = 0;
  for (const xyz& v : Points()) {
    const flh p = xyz2flh(v, kGrs80);
    const flht q = xyzt2flht(xyzt(v.GetX(), v.GetY(), v.GetZ(), 0), kGrs80);
    most = std::max(most, std::fabs(p.GetH() - q.GetH()));
  }
  // The height of the last move but one, at most 1e-14 rad short of the latitude.
  EXPECT_GT(most, 1e-10L);
  EXPECT_LT(most, 1e-5L);
}

TEST(xyzt2flht, HeightThatMovesByItsLastBitForEverStillEnds) {
  int never = 0;
  for (int i = 0; i < 4000; ++i) {
    const xyz v = xyz(4e6L + 311.7L * i, 9e5L + 97.3L * i, 4.8e6L - 401.9L * i);
    if (Settle(v, kGrs80, true, 1000).settled) continue;
    ++never;
    const xyzt t(v.GetX(), v.GetY(), v.GetZ(), 1);
    EXPECT_LT((flht2xyzt(xyzt2flht(t, kGrs80), kGrs80) - t).GetLength(), 1e-9L);
  }
  EXPECT_GT(never, 0);
}

TEST(xyz2flh, CentreAndPolarAxisAreNotNumbers) {
  for (const xyz& v : {xyz(), xyz(0, 0, 6356752), xyz(0, 0, -6356752)}) {
    const flh p = xyz2flh(v, kGrs80);
    EXPECT_TRUE(std::isnan(p.GetF()));
    EXPECT_TRUE(std::isnan(p.GetL()));
  }
  EXPECT_TRUE(std::isnan(xyz2flh(xyz(), kGrs80).GetH()));
  EXPECT_TRUE(std::isnan(xyzt2flht(xyzt(), kGrs80).GetF()));
}

TEST(xyz2flh, EndsOnAnyInput) {
  const long double odd[] = {0, 1, -1, 1e-30L, 4e4L, 6378137, 1e4000L, kInf, -kInf, kNan};
  for (const long double x : odd)
    for (const long double y : odd)
      for (const long double z : odd) {
        xyz2flh(xyz(x, y, z), kGrs80);
        xyzt2flht(xyzt(x, y, z, 0), kGrs80);
      }
  EXPECT_TRUE(std::isnan(xyz2flh(xyz(kNan, 1, 1), kGrs80).GetF()));
  EXPECT_TRUE(std::isnan(xyz2flh(xyz(kInf, 0, kInf), kGrs80).GetF()));
  EXPECT_TRUE(std::isnan(xyz2flh(xyz(1, 1, 1), elipsoid()).GetF()) ||
              std::isfinite(xyz2flh(xyz(1, 1, 1), elipsoid()).GetF()));
}

TEST(xyz2flh, LatitudeThatNeverSettlesIsNotANumber) {
  int never = 0;
  for (int degree = 5; degree < 90; degree += 10) {
    const long double a = degree * kPi / 180;
    const xyz v(40e3L * std::cos(a), 0, 40e3L * std::sin(a));
    const Textbook t = Settle(v, kGrs80, false, 100000);
    const flh p = xyz2flh(v, kGrs80);
    if (t.settled) {
      EXPECT_EQ(p.GetF(), t.f) << degree;
      continue;
    }
    ++never;
    EXPECT_TRUE(std::isnan(p.GetF()) && std::isnan(p.GetH())) << degree;
    EXPECT_EQ(p.GetL(), 0) << degree;
  }
  EXPECT_GT(never, 0);
}

TEST(xyz2flhDeathTest, CopyOfAPositionThatIsNoneEndsTheProgram) {
  flh p;
  EXPECT_ENDS(p = xyz2flh(xyz(), kGrs80), "LATITUDE not valid");
  flht q;
  EXPECT_ENDS(q = xyzt2flht(xyzt(), kGrs80), "LATITUDE not valid");
}

} // namespace
