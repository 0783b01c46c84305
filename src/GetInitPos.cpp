#include "GetInitPos.h"

#include "GNSS/g_lg.h"
#include "GNSS/xyz_flh.h"
#include "KorvanC.h"
#include "PROGINC/DecimalComma.h"
#include "PROGINC/InputInWork.h"
#include "PROGINC/ProgramError.h"
#include "Progress.h"

namespace {

// Radii [m] between which every receiver on the ground, at sea or in the air is.
constexpr long double kLowest = 6.3e6L;
constexpr long double kHighest = 6.5e6L;

xyz MarkerPosition(KorvanC& ctx) {
  if (!ctx.isAprCrd) return ctx.rnxh.X0;
  mjd middle = ctx.rnxd.epoch(ctx.rnxd.nepochall / 2);
  RefuseDecimalCommas(ctx.aprcrdfile);
  const InputInWork file(ctx.aprcrdfile);
  const xyz marker = ctx.acrd.GetCRD(ctx.rnxh.mname, ctx.rnxh.mnumber, middle);
  if (ctx.acrd.IsSite()) return marker;
  ProgramWarning("Zenta", "SITE NAME NOT LISTED IN APRIORI COORDINATE FILE - USING RINEX VALUES!");
  return ctx.rnxh.X0;
}

// Such as one coordinate that could not be read leaves.
void WarnOffTheEarth(const xyz& marker) {
  const long double radius = marker.GetLength();
  if (radius > kLowest && radius < kHighest) return;
  ProgramWarning("Zenta", "RECEIVER POSITION IS NOT NEAR THE SURFACE OF THE EARTH!");
}

} // namespace

void GetReceiverProperties(KorvanC& ctx) {
  Progress(ctx, "GetReceiverProperties(): RECEIVER POSITION PARAMETERS!!");
  Progress(ctx, "GetReceiverProperties():         Receiver code tracking type!");
  ctx.RecCodeTrackType = ctx.isRCodTrc ? ctx.rctrack.GetRecCodeTrack(ctx.rnxh.rectype) : short{0};

  Progress(ctx, "GetReceiverProperties():         Setting a-priori coordinates!");
  ctx.RecPos0 = MarkerPosition(ctx);
  WarnOffTheEarth(ctx.RecPos0);
  ctx.RecPosFC = ctx.RecPos0;
  ctx.RecPosEccLG = neu();

  Progress(ctx, "GetReceiverProperties():         RINEX eccentricity Delta H/E/N!");
  ctx.RecPosEccLG += ctx.rnxh.Dp;
  ctx.RecPosFC += lg2g(ctx.RecPosEccLG, ctx.RecPos0, ctx.eGPS);
  ctx.RecPosFCG = xyz2flh(ctx.RecPosFC, ctx.eGPS);
  ctx.RecPos0G = xyz2flh(ctx.RecPos0, ctx.eGPS);
}
