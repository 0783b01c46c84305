#ifndef REFERENCE_SCREEN_PLAIN_H
#define REFERENCE_SCREEN_PLAIN_H

#include "GNSS/GNSSLinCombs.h"
#include "GNSS/RINEXData.h"

#include <cmath>
#include <vector>

/// The difference screenings as they are told: all records once for every satellite.

/// isBreak(dt, dv): the arc ends between two usable values, dt [s] and dv [m] apart.
template <typename IsBreak>
void screen_satellite_plain(const RINEXData& data, short s, const matrix<gnssobs>& values,
                            const matrix<long double>& elev, long double cutoff, long minLength,
                            IsBreak isBreak, std::vector<PhaseArc>& arcs) {
  PhaseArc arc;
  long lastEpoch = 0;
  long lastRecord = 0;
  long record = 0;
  for (long i = 0; i < data.nepochall; ++i) {
    const long firstRecord = record;
    for (long j = 0; j < data.nsat(i); ++j, ++record) {
      if (data.sat(record) != s || values(record).IsNull() || !(elev(record) > cutoff)) continue;
      bool opens = arc.nObs == 0;
      if (!opens && isBreak(data.epoch(i) - data.epoch(lastEpoch),
                            values(record).GetObs() - values(lastRecord).GetObs())) {
        arc.lastEpoch = lastEpoch;
        if (arc.nObs >= minLength) arcs.push_back(arc);
        opens = true;
      }
      if (opens) {
        arc.sat = s;
        arc.firstEpoch = i;
        arc.firstRecord = firstRecord;
        arc.nObs = 1;
      } else {
        ++arc.nObs;
      }
      lastEpoch = i;
      lastRecord = record;
    }
  }
  if (arc.nObs == 0) return;
  arc.lastEpoch = lastEpoch;
  if (arc.nObs >= minLength) arcs.push_back(arc);
}

inline std::vector<PhaseArc> screen_L4_plain(const RINEXData& data, const matrix<long double>& elev,
                                             long double cutoff, long minLength, long double a,
                                             long double b) {
  const long double G = 0.7 + static_cast<long double>(data.rhead.GetInterval());
  std::vector<PhaseArc> arcs;
  for (long k = 0; k < data.satList.Length(); ++k)
    screen_satellite_plain(
        data, data.satList(k), data.L4, elev, cutoff, minLength,
        [&](long double dt, long double dv) {
          return dt > G || std::fabs(dv) > a + b * std::sqrt(std::fabs(dt - 1));
        },
        arcs);
  return arcs;
}

inline std::vector<PhaseArc> screen_CL1_plain(const RINEXData& data,
                                              const matrix<long double>& elev, long double cutoff,
                                              long minLength, long double slipLimit) {
  const long double G = 0.7 + static_cast<long double>(data.rhead.GetInterval());
  std::vector<PhaseArc> arcs;
  for (long k = 0; k < data.satList.Length(); ++k) {
    const short s = data.satList(k);
    long double lambda = 0;
    if (s < 100) lambda = GNSSc::lamb1;
    if (s >= 100 && s < 200) lambda = GLONASSc::lamb(s - 101, 0);
    if (std::fabs(lambda) < 0.01L) continue;
    screen_satellite_plain(
        data, s, data.CL1, elev, cutoff, minLength,
        [&](long double dt, long double dv) {
          return dt > G || std::fabs(dv) > lambda * slipLimit;
        },
        arcs);
  }
  return arcs;
}

#endif
