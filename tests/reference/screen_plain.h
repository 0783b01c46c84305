#ifndef REFERENCE_SCREEN_PLAIN_H
#define REFERENCE_SCREEN_PLAIN_H

#include "GNSS/GNSSLinCombs.h"
#include "GNSS/RINEXData.h"

#include <cmath>
#include <vector>

/// The screenings as they are told: all records once for every satellite, and the values of a
/// satellite or of an arc laid out one after the other.

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

// ---- Along a line -----------------------------------------------------------------------------

/// L4 of one satellite at an epoch.
struct EpochL4_plain {
  bool isUsable = false;
  long double value = 0; ///< [m] of its last record; without one that of the epoch before
  long firstRecord = 0;  ///< of the epoch
};

inline std::vector<EpochL4_plain> epochs_of_satellite_plain(const RINEXData& data, short s,
                                                            const matrix<long double>& elev,
                                                            long double cutoff) {
  std::vector<EpochL4_plain> epochs;
  EpochL4_plain at;
  long record = 0;
  for (long i = 0; i < data.nepochall; ++i) {
    at.isUsable = false;
    at.firstRecord = record;
    for (long j = 0; j < data.nsat(i); ++j, ++record) {
      if (data.sat(record) != s) continue;
      at.value = data.L4(record).GetObs();
      if (!data.L4(record).IsNull() && elev(record) > cutoff) at.isUsable = true;
    }
    epochs.push_back(at);
  }
  return epochs;
}

/// Limits [m] for gaps of up to G seconds.
struct LineLimits_plain {
  LineLimits_plain(long double a, long double b, long double G)
      : step(a + b * std::sqrt(G)), fit(a / 6 + b * std::sqrt(G) / 2),
        prediction(a / 3 + b * std::sqrt(G)) {}
  long double step;
  long double fit;
  long double prediction;
};

/// A line through three values, its slope taken at the middle one.
inline bool is_smooth_plain(long double y0, long double y1, long double y2,
                            const LineLimits_plain& limits) {
  const long double P = y0 - y1;
  const long double Q = y2 - y1;
  const long double b = (Q - P) / 2;
  const long double a = (P + Q) / 3;
  return std::fabs(-(P + a + b)) <= limits.fit && std::fabs(-a) <= limits.fit &&
         std::fabs(b - a - Q) <= limits.fit && std::fabs(P) <= limits.step &&
         std::fabs(Q) <= limits.step;
}

/// The arcs of a satellite in the epochs first to last, which have no gap.
inline void cut_segment_plain(short s, const std::vector<EpochL4_plain>& epochs, long first,
                              long last, long minLength, const LineLimits_plain& limits,
                              std::vector<PhaseArc>& arcs) {
  const auto y = [&](long j) { return epochs[static_cast<std::size_t>(j)].value; };
  if (last - first + 1 < minLength) return;
  long start = first;
  long end = 0;
  do {
    long j = start + 2;
    while (j <= last && !is_smooth_plain(y(j - 2), y(j - 1), y(j), limits)) ++j;
    if (j > last) return;
    start = j - 2;

    j = start + 2;
    while (j <= last && !(std::fabs(y(j) - (2 * y(j - 1) - y(j - 2))) > limits.prediction)) ++j;
    end = j - 1;
    if (end - start + 1 >= minLength)
      arcs.push_back(
          {s, start, epochs[static_cast<std::size_t>(start)].firstRecord, end, end - start + 1});
    if (j > last) return;
    start = end + 1;
  } while (end < last - minLength + 1);
}

inline std::vector<PhaseArc> screen_L4_linear_plain(const RINEXData& data,
                                                    const matrix<long double>& elev,
                                                    long double cutoff, long minLength,
                                                    long double a, long double b) {
  const long double G = 0.5 + static_cast<long double>(data.rhead.GetInterval());
  const LineLimits_plain limits(a, b, G);
  std::vector<PhaseArc> arcs;
  for (long k = 0; k < data.satList.Length(); ++k) {
    const short s = data.satList(k);
    const auto epochs = epochs_of_satellite_plain(data, s, elev, cutoff);
    const auto isUsable = [&](long i) { return epochs[static_cast<std::size_t>(i)].isUsable; };
    long first = 0;
    while (true) {
      while (first < data.nepochall && !isUsable(first)) ++first;
      if (first == data.nepochall || first > data.nepochall - minLength) break;
      long last = first;
      while (last + 1 < data.nepochall && data.epoch(last + 1) - data.epoch(last) <= G &&
             isUsable(last + 1))
        ++last;
      cut_segment_plain(s, epochs, first, last, minLength, limits, arcs);
      if (last == data.nepochall - 1) break;
      first = last + 1;
    }
  }
  return arcs;
}

// ---- Wide lane --------------------------------------------------------------------------------

/// Records of an arc's satellite in its epochs.
struct ArcRecords_plain {
  std::vector<long> record;
  std::vector<long> epoch;
  std::vector<long> firstRecord; ///< of the epoch
};

inline ArcRecords_plain records_of_arc_plain(const RINEXData& data, const PhaseArc& arc) {
  ArcRecords_plain found;
  long record = 0;
  for (long i = 0; i <= arc.lastEpoch; ++i) {
    const long firstRecord = record;
    for (long j = 0; j < data.nsat(i); ++j, ++record) {
      if (i < arc.firstEpoch || data.sat(record) != arc.sat) continue;
      found.record.push_back(record);
      found.epoch.push_back(i);
      found.firstRecord.push_back(firstRecord);
    }
  }
  return found;
}

/// Standard deviation [m] of the values that there are; not a number for less than two.
inline long double scatter_MW_plain(const RINEXData& data, const ArcRecords_plain& records) {
  std::vector<long double> values;
  for (const long r : records.record)
    if (!data.MW(r).IsNull()) values.push_back(data.MW(r).GetObs());
  const auto n = static_cast<long double>(values.size());
  long double S1 = 0;
  long double S2 = 0;
  for (const long double v : values) {
    S1 += v - values.front();
    S2 += (v - values.front()) * (v - values.front());
  }
  return std::sqrt((S2 - S1 * S1 / n) / (n - 1));
}

inline void split_MW_plain(const RINEXData& data, const PhaseArc& arc,
                           const ArcRecords_plain& records, long minLength,
                           std::vector<PhaseArc>& arcs) {
  const long double firstSigma = 0.4309592000445875; // [m]
  const long double wideLane = 0.8619184003220056;   // [m]
  std::vector<long double> v;
  for (const long r : records.record)
    if (static_cast<long>(v.size()) < arc.nObs) v.push_back(data.MW(r).GetObs());
  if (v.empty()) return;

  std::size_t start = 0;
  std::size_t last = 0;
  long c = 1;
  long double mu = v[0];
  long double variance = firstSigma * firstSigma;
  const auto isWithin = [&](long double value) {
    return std::fabs(value - mu) <= 6 * std::sqrt(variance);
  };
  const auto close = [&] {
    if (c - 1 >= minLength)
      arcs.push_back(
          {arc.sat, records.epoch[start], records.firstRecord[start], records.epoch[last], c - 1});
  };
  for (std::size_t k = 0; k < v.size(); ++k) {
    if (std::fabs(v[k]) <= 0.0001) continue;
    if (isWithin(v[k])) {
      c += 1;
      const long double d = v[k] - mu;
      mu += d / static_cast<long double>(c);
      variance += (d * d - variance) / static_cast<long double>(c);
      last = k;
    } else if (k + 1 < v.size() && std::fabs(v[k + 1] - mu) >= 6 * std::sqrt(variance)) {
      if (std::fabs(v[k] - v[k + 1]) >= wideLane) ++k;
      close();
      start = last = k;
      c = 1;
      mu = v[k];
      variance = firstSigma * firstSigma;
    }
  }
  close();
}

inline std::vector<PhaseArc> screen_MW_plain(const RINEXData& data,
                                             const std::vector<PhaseArc>& whole, long double limit,
                                             long minLength) {
  std::vector<PhaseArc> arcs;
  for (const PhaseArc& arc : whole) {
    const ArcRecords_plain records = records_of_arc_plain(data, arc);
    long double n = 0;
    for (const long r : records.record)
      if (!data.MW(r).IsNull()) n += 1;
    if (scatter_MW_plain(data, records) <= 2.1 * limit / std::sqrt(n - 1))
      arcs.push_back(arc);
    else
      split_MW_plain(data, arc, records, minLength, arcs);
  }
  return arcs;
}

#endif
