#include "SlantDelay.h"

#include "GNSS/GNSSLinCombs.h"
#include "support/Near.h"
#include "support/TinyRun.h"

namespace {

constexpr long double kHalfPi = 1.57079632679489661923L;

TEST(ShellZenith, OverheadIsZeroAndTheHorizonFollowsTheSineLaw) {
  EXPECT_TRUE(Near(ShellZenith(kHalfPi), 0, 1e-18L));
  // sin z = R/(R+H) = 6371/6821 at the horizon
  EXPECT_TRUE(Near(std::sin(ShellZenith(0)), 6371.0L / 6821.0L, 1e-18L));
}

TEST(FactorsOf, GpsRefersToItsOwnL1) {
  const IonoFactors f = FactorsOf(12);
  EXPECT_EQ(f.alpha1, 1);
  EXPECT_TRUE(Near(f.alpha2, 1.6469444444444444444L, 1e-18L)); // (77/60)^2 = 5929/3600
}

TEST(FactorsOf, GlonassTakesItsChannel) {
  GLONASSc::SetFrequency(1, 4); // slot 5, channel 1: 1602.5625 and 1246.4375 MHz
  const IonoFactors f = FactorsOf(105);
  EXPECT_TRUE(Near(f.alpha1, std::pow(1575.42L / 1602.5625L, 2), 1e-17L));
  EXPECT_TRUE(Near(f.alpha2, std::pow(1575.42L / 1246.4375L, 2), 1e-17L));
}

TEST(CoefficientsOf, AreMinusTheDerivativesOfTheSlantDelay) {
  const IonoCoefficients a = CoefficientsOf(FactorsOf(7), 0.6L, 2.1L, true);
  const auto model = [&](long double delay, long double rate, long double east, long double north) {
    IonoState s;
    s.delay = delay;
    s.rate = rate;
    s.east = east;
    s.north = north;
    s.hours = 0.4L;
    s.gradients = true;
    return SlantDelay(a, s);
  };
  // the model is linear: one step of 1 is exact
  const long double at = model(2, 0.3L, 0.1L, -0.2L);
  EXPECT_TRUE(Near(-a.delay, model(3, 0.3L, 0.1L, -0.2L) - at, 1e-17L));
  EXPECT_TRUE(Near(-a.delay * 0.4L, model(2, 1.3L, 0.1L, -0.2L) - at, 1e-17L));
  EXPECT_TRUE(Near(-a.east, model(2, 0.3L, 1.1L, -0.2L) - at, 1e-17L));
  EXPECT_TRUE(Near(-a.north, model(2, 0.3L, 0.1L, 0.8L) - at, 1e-17L));
}

TEST(SlantDelay, FollowsTheWrittenOutModel) {
  // (alpha2 - alpha1) / cos z (delay + rate dt + tan z (east sin A + north cos A))
  const long double elevation = 0.5L;
  const long double azimuth = 1.2L;
  const long double z = std::asin(6371.0L / 6821.0L * std::cos(elevation));
  IonoState s;
  s.delay = 3;
  s.rate = -0.5L;
  s.hours = 0.25L;
  s.east = 0.02L;
  s.north = -0.07L;
  s.gradients = true;
  const long double expected =
      (5929.0L / 3600.0L - 1) / std::cos(z) *
      (3 - 0.125L + std::tan(z) * (0.02L * std::sin(azimuth) - 0.07L * std::cos(azimuth)));
  EXPECT_TRUE(Near(SlantDelay(CoefficientsOf(FactorsOf(3), elevation, azimuth, true), s), expected,
                   1e-17L));
}

TEST(StateAt, MovesOnByOneIntervalAtMost) {
  TinyRun run;
  Fill(run, {{mjd(55000, 0), {}}, {mjd(55000, 1800), {}}, {mjd(55000, 3600), {}}});
  KorvanC& ctx = run.ctx;
  ctx.ifEstION = true;
  ctx.IonoEstInd.Resize(3, 2, 0);
  ctx.IonoEstInd(1, 0) = 1;
  ctx.IonoEstInd(1, 1) = 1;
  ctx.IonoEstInd(2, 0) = 2;
  ctx.IonoEstInd(2, 1) = 2;
  ctx.xION.Resize(3, 2, 0.0L);
  ctx.xION(1, 0) = 4;
  EXPECT_EQ(StateAt(ctx, 0).hours, 0);
  EXPECT_EQ(ctx.iIono, 0);
  const IonoState s = StateAt(ctx, 2); // interval 1 ends at epoch 1, but one step is all
  EXPECT_EQ(ctx.iIono, 1);
  EXPECT_EQ(s.delay, 4);
  EXPECT_EQ(s.hours, 0.5L);
}

TEST(StateAt, WithoutIonosphereAllIsZero) {
  TinyRun run;
  Fill(run, {{mjd(55000, 0), {}}});
  EXPECT_EQ(StateAt(run.ctx, 0).delay, 0);
}

} // namespace
