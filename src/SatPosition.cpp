#include "SatPosition.h"

#include "KorvanC.h"

bool IsProcessed(const KorvanC& ctx, short sat) {
  if (sat <= 99) return ctx.isGPS;
  return sat <= 199 && ctx.isGLN;
}

namespace {

bool PrecisePosition(GNSSpEph& orbits, short sat, const mjd& t, const xyz& receiver,
                     xyzt& position) {
  xyzt velocity;
  orbits.CalcSatPosition(static_cast<unsigned short>(sat), t, receiver, position, velocity);
  return orbits.PSisOK;
}

} // namespace

bool EmissionPosition(KorvanC& ctx, short sat, const mjd& t, xyzt& position) {
  const xyz& receiver = ctx.RecPosFC;
  position = xyzt();
  if (sat <= 99) {
    if (ctx.isGPSnav) {
      long double groupDelay = 0;
      ctx.gpsnav.CalcSatPosition(static_cast<unsigned short>(sat), t, t, receiver, position,
                                 &groupDelay, 0, 0);
      return true;
    }
    return ctx.isGpEph && PrecisePosition(ctx.pephG, sat, t, receiver, position);
  }
  if (ctx.isGLNnav) {
    xyzt velocity;
    ctx.glnnav.CalcSatPosition(static_cast<short>(sat - 100), t, t, receiver, position, velocity,
                               0);
    return true;
  }
  return ctx.isRpEph && PrecisePosition(ctx.pephR, sat, t, receiver, position);
}
