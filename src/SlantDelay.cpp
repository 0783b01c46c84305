#include "SlantDelay.h"

#include "GNSS/GNSSLinCombs.h"

#include <cmath>

namespace {

constexpr long double BaseR = 6371;  // [km] radius of the Earth
constexpr long double BaseH = 450;   // [km] height of the shell
constexpr long double BetaPar = 1.0; // scale of the elevation in the mapping

} // namespace

IonoFactors FactorsOf(short sat) {
  if (sat <= 99) return {1, (77.0L / 60.0L) * (77.0L / 60.0L)};
  const long row = sat - 101;
  return {GLONASSc::alphaG(row, 0), GLONASSc::alphaG(row, 1)};
}

long double ShellZenith(long double elevation) {
  return std::asin(BaseR / (BaseR + BaseH) * std::cos(BetaPar * elevation));
}

IonoCoefficients CoefficientsOf(const IonoFactors& f, long double elevation, long double azimuth,
                                bool gradients) {
  const long double z = ShellZenith(elevation);
  IonoCoefficients a;
  a.delay = -(f.alpha2 - f.alpha1) / std::cos(z);
  if (!gradients) return a;
  const long double slope = std::tan(z);
  a.east = a.delay * std::sin(azimuth) * slope;
  a.north = a.delay * std::cos(azimuth) * slope;
  return a;
}

IonoState StateAt(KorvanC& ctx, long i) {
  IonoState state;
  if (!ctx.ifEstION) return state;
  if (ctx.IonoEstInd(ctx.iIono, 1) < i) ++ctx.iIono;
  const long k = ctx.iIono;
  state.hours = (ctx.rnxd.epoch(i) - ctx.rnxd.epoch(ctx.IonoEstInd(k, 0))) / 3600;
  state.delay = ctx.xION(k, 0);
  state.rate = ctx.xION(k, 1);
  state.gradients = ctx.ifEstIGrad;
  if (state.gradients) {
    state.east = ctx.xIGRAD(k, 0);
    state.north = ctx.xIGRAD(k, 1);
  }
  return state;
}

long double SlantDelay(const IonoCoefficients& a, const IonoState& state) {
  const long double delay = -a.delay * (state.delay + state.hours * state.rate);
  return state.gradients ? delay - (a.east * state.east + a.north * state.north) : delay;
}
