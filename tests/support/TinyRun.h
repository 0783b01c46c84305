#ifndef SUPPORT_TINYRUN_H
#define SUPPORT_TINYRUN_H

#include "RunObjects.h"

#include <set>
#include <vector>

/// A run whose store and settings are made up.
struct TinyRun : RunObjects {};

/// One satellite at one epoch: codes [m], L4 [m], direction [rad], weight. 0 is missing.
struct TinyRecord {
  short sat = 1;
  long double C1 = 0;
  long double P1 = 0;
  long double P2 = 0;
  long double L4 = 0;
  long double elevation = 1.5707963267948966L;
  long double azimuth = 0;
  long double weight = 1;
};

struct TinyEpoch {
  mjd time;
  std::vector<TinyRecord> records;
};

/// Puts \p epochs into the store of \p run as if they had been read, corrected and combined:
/// types C1, P1, P2 with PC1 = P1 - C1 and PC4 = P2 - C1, and L4; header flags set; GPS and
/// GLONASS processed; code and phase used.
inline void Fill(TinyRun& run, const std::vector<TinyEpoch>& epochs) {
  RINEXData& store = run.data;
  KorvanC& ctx = run.ctx;
  long records = 0;
  std::set<short> sats;
  for (const TinyEpoch& e : epochs)
    for (const TinyRecord& r : e.records) {
      sats.insert(r.sat);
      ++records;
    }
  store.nepochall = static_cast<long>(epochs.size());
  store.nsatall = records;
  store.epoch.Resize(store.nepochall, 1);
  store.flag.Resize(store.nepochall, 1, '0');
  store.nsat.Resize(store.nepochall, 1);
  store.sat.Resize(records, 1);
  for (matrix<gnssobs>* table :
       {&store.C1, &store.P1, &store.P2, &store.L1, &store.L2, &store.PC1, &store.PC4, &store.L4})
    table->Resize(records, 1);
  for (matrix<long double>* table : {&ctx.ELV, &ctx.AZM, &ctx.WGHT}) table->Resize(records, 1);

  long k = 0;
  for (long i = 0; i < store.nepochall; ++i) {
    const TinyEpoch& e = epochs[static_cast<std::size_t>(i)];
    store.epoch(i) = e.time;
    store.nsat(i) = static_cast<short>(e.records.size());
    for (const TinyRecord& r : e.records) {
      store.sat(k) = r.sat;
      store.C1(k) = r.C1;
      store.P1(k) = r.P1;
      store.P2(k) = r.P2;
      store.L4(k) = r.L4;
      store.PC1(k) = store.P1(k) - store.C1(k);
      store.PC4(k) = store.P2(k) - store.C1(k);
      ctx.ELV(k) = r.elevation;
      ctx.AZM(k) = r.azimuth;
      ctx.WGHT(k) = r.weight;
      ++k;
    }
  }
  store.satList.Resize(static_cast<long>(sats.size()), 1);
  long j = 0;
  for (const short sat : sats) store.satList(j++) = sat;
  RINEXHeader& h = run.header;
  h.iC1 = h.iP1 = h.iP2 = h.iL1 = h.iL2 = h.iPC1 = h.iPC4 = h.iL4 = true;
  ctx.isGPS = ctx.isGLN = ctx.ifCodeObs = ctx.ifPhaseObs = true;
}

/// One arc for \p sat over all epochs of the store, with the first value \p ambiguity [m].
inline void AddArc(TinyRun& run, short sat, long first, long last, long double ambiguity = 0) {
  KorvanC& ctx = run.ctx;
  const long n = ctx.nAmb;
  const matrix<short> sats = ctx.AmbSat;
  const matrix<long> index = ctx.AmbIndex;
  const matrix<long double> values = ctx.xAmb;
  ctx.AmbSat.Resize(n + 1, 1);
  ctx.AmbIndex.Resize(n + 1, 4);
  ctx.xAmb.Resize(n + 1, 1);
  for (long j = 0; j < n; ++j) {
    ctx.AmbSat(j) = sats(j);
    ctx.xAmb(j) = values(j);
    for (long c = 0; c < 4; ++c) ctx.AmbIndex(j, c) = index(j, c);
  }
  long record = 0;
  for (long i = 0; i < first; ++i) record += run.data.nsat(i);
  ctx.AmbSat(n) = sat;
  ctx.xAmb(n) = ambiguity;
  ctx.AmbIndex(n, 0) = first;
  ctx.AmbIndex(n, 1) = record;
  ctx.AmbIndex(n, 2) = last;
  ctx.AmbIndex(n, 3) = last - first + 1;
  ctx.nAmb = n + 1;
}

#endif
