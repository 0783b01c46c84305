#ifndef REFERENCE_PREPARATION_PLAIN_H
#define REFERENCE_PREPARATION_PLAIN_H

#include "Eclipsing.h"
#include "GNSS/GNSSLinCombs.h"
#include "GNSS/SatAzimuthZenit.h"
#include "GNSS/g_lg.h"
#include "KorvanC.h"
#include "SatPosition.h"

#include <cmath>
#include <optional>

/// The stages from elevations to wind-up as they are told: each evaluates the orbit of every
/// record it looks at, and goes through all records once for every satellite or arc.

inline void CalculateAE_plain(KorvanC& ctx) {
  RINEXData& store = ctx.rnxd;
  ctx.ELV.Resize(store.nsatall, 1, 0.0L);
  ctx.AZM.Resize(store.nsatall, 1, 0.0L);
  ctx.WGHT.Resize(store.nsatall, 1, 1.0L);
  long k = 0;
  for (long i = 0; i < store.nepochall; ++i)
    for (const long end = k + store.nsat(i); k < end; ++k) {
      const short sat = store.sat(k);
      xyzt position;
      if (!IsProcessed(ctx, sat) || !EmissionPosition(ctx, sat, store.epoch(i), position)) continue;
      SatelliteAzimuthElevation(ctx.RecPosFC, position, ctx.eGPS, &ctx.ELV(k), &ctx.AZM(k));
      if (ctx.obsP == 1) ctx.WGHT(k) = std::sin(ctx.ELV(k)) * std::sin(ctx.ELV(k));
    }
}

inline void GetEclipsing_plain(KorvanC& ctx) {
  RINEXData& store = ctx.rnxd;
  ctx.posSunUnit.Resize(store.nepochall, 1);
  ctx.SunMag.Resize(store.nepochall, 1);
  for (long i = 0; i < store.nepochall; ++i) {
    ctx.stide.SunPosition(store.epoch(i), ctx.posSunUnit(i), ctx.SunMag(i));
    ctx.SunMag(i) *= 1000;
  }
  for (long j = 0; j < store.satList.Length(); ++j) {
    const short sat = store.satList(j);
    if (!IsProcessed(ctx, sat)) continue;
    long count = 0;
    long k = 0;
    for (long i = 0; i < store.nepochall; ++i)
      for (const long end = k + store.nsat(i); k < end; ++k) {
        xyzt p;
        if (store.sat(k) != sat || !EmissionPosition(ctx, sat, store.epoch(i), p)) continue;
        const xyz position(p.GetX(), p.GetY(), p.GetZ());
        const xyz sun = ctx.SunMag(i) * ctx.posSunUnit(i);
        if (!(SunEarthAngle(position, sun) < ctx.satEclipsThres)) continue;
        store.L1(k) = store.L2(k) = store.L4(k) = gnssobs();
        ++count;
      }
    if (count == 0) continue;
    ctx.EclipsSat(ctx.NEclipsSat) = sat;
    ctx.EclipsNObs(ctx.NEclipsSat) = count;
    ++ctx.NEclipsSat;
  }
}

inline long double MeanL4_plain(const KorvanC& ctx, long j) {
  const RINEXData& store = ctx.rnxd;
  long double sum = 0;
  long count = 0;
  long k = ctx.AmbIndex(j, 1);
  for (long e = ctx.AmbIndex(j, 0); e <= ctx.AmbIndex(j, 2); ++e)
    for (const long end = k + store.nsat(e); k < end; ++k) {
      if (store.sat(k) != ctx.AmbSat(j) || store.L4(k).IsNull()) continue;
      sum += store.L4(k).GetObs();
      ++count;
    }
  return count > 0 ? sum / static_cast<long double>(count) : sum;
}

inline void PhaseWindUp_plain(KorvanC& ctx) {
  RINEXData& store = ctx.rnxd;
  const xyz north = lg2g(neu(1, 0, 0), ctx.RecPosFCG);
  const xyz west = lg2g(neu(0, -1, 0), ctx.RecPosFCG);
  for (long j = 0; j < ctx.nAmb; ++j) {
    const short sat = ctx.AmbSat(j);
    std::optional<long double> previous;
    long k = ctx.AmbIndex(j, 1);
    for (long e = ctx.AmbIndex(j, 0); e < ctx.AmbIndex(j, 2); ++e)
      for (const long end = k + store.nsat(e); k < end; ++k) {
        xyzt p;
        if (store.sat(k) != sat || !EmissionPosition(ctx, sat, store.epoch(e), p)) continue;
        const xyz position(p.GetX(), p.GetY(), p.GetZ());
        long double w =
            WindUp(position, ctx.SunMag(e) * ctx.posSunUnit(e), ctx.RecPosFC, north, west);
        if (previous) w = ContinuousCycles(w, *previous);
        if (!store.L4(k).IsNull()) store.L4(k) += -(GNSSc::lamb1 * w - GNSSc::lamb2 * w);
        previous = w;
      }
  }
}

#endif
