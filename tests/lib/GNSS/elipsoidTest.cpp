#include "GNSS/elipsoid.h"

#include "support/Ends.h"
#include "support/Near.h"

namespace {

elipsoid WithCode(int code) {
  elipsoid ell;
  ell.Set(code);
  return ell;
}

TEST(elipsoid, StartsAtZero) {
  EXPECT_EQ(elipsoid().GetA(), 0);
  EXPECT_EQ(elipsoid().GetF(), 0);
}

TEST(elipsoid, Grs80ConstantsOfItsPublication) {
  // Moritz, Geodetic Reference System 1980: b, e2, e'2, f.
  const elipsoid ell = WithCode(0);
  EXPECT_EQ(ell.GetA(), 6378137);
  EXPECT_TRUE(Near(ell.GetF(), 0.00335281068118L, 5e-15L));
  EXPECT_TRUE(Near(ell.GetB(), 6356752.3141L, 5e-5L));
  EXPECT_TRUE(Near(ell.GetESQR(), 0.00669438002290L, 5e-15L));
  EXPECT_TRUE(Near(ell.GetE() * ell.GetE(), 0.00669438002290L, 5e-15L));
  EXPECT_TRUE(Near(ell.GetE2() * ell.GetE2(), 0.00673949677548L, 5e-15L));
  EXPECT_TRUE(Near(ell.GetF2(), (6378137 - ell.GetB()) / ell.GetB(), 1e-17L));
}

TEST(elipsoid, Wgs84IsNotGrs80) {
  // NIMA TR8350.2: b = 6356752.3142 m, e2 = 6.69437999014e-3.
  const elipsoid ell = WithCode(1);
  EXPECT_TRUE(Near(ell.GetB(), 6356752.3142L, 5e-5L));
  EXPECT_TRUE(Near(ell.GetESQR(), 6.69437999014e-3L, 5e-15L));
  EXPECT_TRUE(Near(ell.GetB() - WithCode(0).GetB(), 0.000105L, 1e-6L));
}

TEST(elipsoid, OtherFigures) {
  EXPECT_EQ(WithCode(2).GetA(), 6378136);
  EXPECT_TRUE(Near(1 / WithCode(2).GetF(), 298.257839303L, 1e-10L));
  EXPECT_TRUE(Near(WithCode(3).GetA(), 6377397.155L, 1e-9L));
  EXPECT_TRUE(Near(WithCode(3).GetB(), 6356078.963L, 5e-4L)); // Bessel 1841
  EXPECT_EQ(WithCode(4).GetA(), 6371000);
  EXPECT_EQ(WithCode(4).GetB(), 6371000);
  EXPECT_EQ(WithCode(4).GetE(), 0);
}

TEST(elipsoid, FlatteningIsADouble) {
  for (int code = 0; code <= 4; ++code) {
    const long double f = WithCode(code).GetF();
    EXPECT_EQ(f, static_cast<double>(f)) << code;
  }
}

TEST(elipsoidDeathTest, UnknownCodeEndsTheProgram) {
  EXPECT_ENDS(WithCode(5), "\\*\\*\\*\\* Zenta: Error -> Improper ELLIPSOID setting! \\*\\*\\*\\*");
  EXPECT_ENDS(WithCode(-1), "Improper ELLIPSOID setting!");
}

} // namespace
