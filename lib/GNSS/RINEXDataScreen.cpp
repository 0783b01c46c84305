#include "GNSS/RINEXData.h"

#include "GNSS/GNSSLinCombs.h"
#include "GNSS/Wavelengths.h"
#include "PROGINC/LittleEndian.h"
#include "PROGINC/OutputFile.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

using Arcs = std::vector<PhaseArc>;

// The arc file: one record of 18 bytes behind the other.
constexpr std::size_t kSatAt = 0; // 2 bytes, the others 4 each
constexpr std::size_t kFirstEpochAt = 2;
constexpr std::size_t kFirstRecordAt = 6;
constexpr std::size_t kLastEpochAt = 10;
constexpr std::size_t kNObsAt = 14;
constexpr std::size_t kArcSize = 18;

// Gaps longer than the sampling interval by these [s] end an arc.
constexpr double kGapDifference = 0.7;
constexpr double kGapLinear = 0.5;

// Scatter of a sound arc of n values on the wide lane: this times limit / sqrt(n - 1).
constexpr double kSoundScatter = 2.1;
// Spread that a piece of such an arc begins with [m], about half a wide-lane wavelength of GPS,
// and the number of spreads beyond which a value is an outlier.
constexpr double kFirstSpread = 0.4309592000445875;
constexpr int kOutlier = 6;
constexpr double kNoValue = 0.0001; // [m]

void WriteArcs(const char* name, const Arcs& arcs) {
  if (*name == '\0') return; // no file was asked for
  std::string bytes;
  bytes.reserve(arcs.size() * kArcSize);
  for (const PhaseArc& arc : arcs) {
    PutInt16(bytes, arc.sat);
    PutInt32(bytes, static_cast<std::int32_t>(arc.firstEpoch));
    PutInt32(bytes, static_cast<std::int32_t>(arc.firstRecord));
    PutInt32(bytes, static_cast<std::int32_t>(arc.lastEpoch));
    PutInt32(bytes, static_cast<std::int32_t>(arc.nObs));
  }
  OutputFile file;
  file.Open(name, std::ios::binary);
  file.Stream().write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// The first \p n arcs of the file; those that it does not hold whole are missing.
Arcs ReadArcs(const char* name, long n) {
  std::ifstream in(name, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(in), {});
  Arcs arcs;
  for (std::size_t at = 0; n > 0 && at + kArcSize <= bytes.size(); at += kArcSize, --n)
    arcs.push_back({GetInt16(bytes, at + kSatAt), GetInt32(bytes, at + kFirstEpochAt),
                    GetInt32(bytes, at + kFirstRecordAt), GetInt32(bytes, at + kLastEpochAt),
                    GetInt32(bytes, at + kNObsAt)});
  return arcs;
}

/// Keeps what a screening found: in the store, in its file, and the number for the caller.
void Keep(RINEXData& store, Arcs found, long& nArcs) {
  store.arcs = std::move(found);
  nArcs = static_cast<long>(store.arcs.size());
  WriteArcs(store.AmbFile, store.arcs);
}

// ---- Cutting where consecutive values differ --------------------------------------------------

/// A usable record of some satellite.
struct Sample {
  long epoch;
  long firstRecord; ///< of the epoch
  long record;
};
using Samples = std::vector<Sample>;

/// The usable records of every satellite in order of time: one walk over the store.
std::unordered_map<short, Samples> UsableBySatellite(const RINEXData& store,
                                                     const matrix<gnssobs>& values,
                                                     const matrix<long double>& elev,
                                                     long double cutoff) {
  std::unordered_map<short, Samples> usable;
  if (values.Length() == 0) return usable; // never formed: the file lacks its types
  long first = 0;
  for (long i = 0; i < store.nepochall; ++i) {
    const long end = first + store.nsat(i);
    for (long k = first; k < end; ++k)
      if (!values(k).IsNull() && elev(k) > cutoff) usable[store.sat(k)].push_back({i, first, k});
    first = end;
  }
  return usable;
}

/// Appends the arcs of one satellite, cut where isBreak(sample, next sample) holds.
template <typename IsBreak>
void CutArcs(short sat, const Samples& samples, long minLength, IsBreak isBreak, Arcs& arcs) {
  for (auto first = samples.begin(); first != samples.end();) {
    const auto last = std::adjacent_find(first, samples.end(), isBreak);
    const auto end = last == samples.end() ? last : std::next(last);
    const long length = end - first;
    if (length >= minLength)
      arcs.push_back({sat, first->epoch, first->firstRecord, std::prev(end)->epoch, length});
    first = end;
  }
}

/// Arcs of all satellites, in the order of satList, cut at gaps and where the value steps:
/// isStep(satellite, step, seconds between). Satellites for which isWanted(satellite) is false are
/// left out.
template <typename IsWanted, typename IsStep>
Arcs CutAtDifferences(const RINEXData& store, const matrix<gnssobs>& values,
                      const matrix<long double>& elev, long double cutoff, long minLength,
                      IsWanted isWanted, IsStep isStep) {
  const long double maxGap = static_cast<long double>(kGapDifference) + store.rhead.GetInterval();
  const auto usable = UsableBySatellite(store, values, elev, cutoff);
  Arcs arcs;
  for (long j = 0; j < store.satList.Length(); ++j) {
    const short sat = store.satList(j);
    const auto samples = usable.find(sat);
    if (samples == usable.end() || !isWanted(sat)) continue;
    const auto isBreak = [&](const Sample& a, const Sample& b) {
      const long double dt = store.epoch(b.epoch) - store.epoch(a.epoch);
      const long double step = values(b.record).GetObs() - values(a.record).GetObs();
      return dt > maxGap || isStep(sat, std::fabs(step), dt);
    };
    CutArcs(sat, samples->second, minLength, isBreak, arcs);
  }
  return arcs;
}

// ---- Following a line -------------------------------------------------------------------------

bool HasUsableL4(const RINEXData& store, short sat, long epoch, long firstRecord,
                 const matrix<long double>& elev, long double cutoff) {
  const long end = firstRecord + store.nsat(epoch);
  for (long k = firstRecord; k < end; ++k)
    if (store.sat(k) == sat && !store.L4(k).IsNull() && elev(k) > cutoff) return true;
  return false;
}

/// L4 of one satellite from epoch to epoch; one without a record keeps the value before.
class L4Walk {
public:
  L4Walk(const RINEXData& store, short sat, long epoch, long firstRecord)
      : store_(store), sat_(sat), epoch_(epoch), next_(firstRecord) {}

  /// Moves to the next epoch, the first call to the one it begins at. \returns its value.
  long double Next() {
    first_ = next_;
    next_ += store_.nsat(epoch_++);
    for (long k = first_; k < next_; ++k)
      if (store_.sat(k) == sat_) value_ = store_.L4(k).GetObs();
    return value_;
  }
  /// First record of the epoch that Next() went to.
  long FirstRecord() const { return first_; }

private:
  const RINEXData& store_;
  const short sat_;
  long epoch_; ///< the next one
  long next_;  ///< its first record
  long first_ = 0;
  long double value_ = 0; ///< [m]
};

/// Limits of the screening along a line [m].
struct LinearLimits {
  long double fit;
  long double step;
  long double prediction;
};

/// Appends the arcs of one satellite within a segment without gaps.
void CutSegment(const RINEXData& store, short sat, long epoch, long record, long lastEpoch,
                long minLength, const LinearLimits& limits, Arcs& arcs) {
  if (lastEpoch - epoch + 1 < minLength) return;
  while (store.FindContStart(sat, epoch, record, lastEpoch, limits.fit, limits.step)) {
    long endEpoch = 0;
    long endRecord = 0;
    const bool slip =
        store.FindCSlipL4(sat, epoch, record, lastEpoch, endEpoch, endRecord, limits.prediction);
    const long length = endEpoch - epoch + 1;
    if (length >= minLength) arcs.push_back({sat, epoch, record, endEpoch, length});
    if (!slip || endEpoch >= lastEpoch - minLength + 1) return;
    epoch = endEpoch + 1;
    record = endRecord + store.nsat(endEpoch);
  }
}

// ---- Splitting on the wide lane ---------------------------------------------------------------

/// A record of the satellite of an arc.
struct WideLane {
  long double value; ///< Melbourne-Wuebbena [m], 0: there is none
  long epoch;
  long firstRecord; ///< of the epoch
};

/// Calls use(record, epoch, first record of the epoch) for each record of the arc's satellite,
/// until it returns false.
template <typename Use> void ForEachRecord(const RINEXData& store, const PhaseArc& arc, Use use) {
  long first = arc.firstRecord;
  for (long i = arc.firstEpoch; i <= arc.lastEpoch; ++i) {
    const long end = first + store.nsat(i);
    for (long k = first; k < end; ++k)
      if (store.sat(k) == arc.sat && !use(k, i, first)) return;
    first = end;
  }
}

/// The standard deviation of the arc's values is within \p limit [m] for their number. Less
/// than two values have none.
bool IsSound(const RINEXData& store, const PhaseArc& arc, long double limit) {
  long double n = 0;
  long double reference = 0; // the first value: keeps the sums small
  long double S1 = 0;
  long double S2 = 0;
  ForEachRecord(store, arc, [&](long k, long, long) {
    const gnssobs& mw = store.MW(k);
    if (mw.IsNull()) return true;
    if (n == 0) reference = mw.GetObs();
    const long double d = mw.GetObs() - reference;
    n += 1;
    S1 += d;
    S2 += d * d;
    return true;
  });
  if (n < 2) return false;
  const long double sigma = std::sqrt((S2 - S1 * S1 / n) / (n - 1));
  return sigma <= kSoundScatter * limit / std::sqrt(n - 1);
}

/// As many of the arc's records as its length says.
std::vector<WideLane> Collect(const RINEXData& store, const PhaseArc& arc) {
  std::vector<WideLane> values;
  ForEachRecord(store, arc, [&](long k, long epoch, long firstRecord) {
    if (static_cast<long>(values.size()) >= arc.nObs) return false;
    values.push_back({store.MW(k).GetObs(), epoch, firstRecord});
    return true;
  });
  return values;
}

/// Cuts one arc where the wide lane jumps: running mean and spread of each piece.
class WideLaneSplitter {
public:
  WideLaneSplitter(short sat, const std::vector<WideLane>& values, long minLength, Arcs& arcs)
      : sat_(sat), values_(values), minLength_(minLength), arcs_(arcs) {}

  void Split() {
    if (values_.empty()) return;
    // The first piece takes its first value twice, so that its length counts all its values;
    // a later piece's length is one less than that.
    Begin(0);
    for (std::size_t k = 0; k < values_.size(); ++k) {
      if (std::fabs(values_[k].value) <= kNoValue) continue;
      if (std::fabs(values_[k].value - mean_) <= kOutlier * Spread()) {
        Accept(k);
        continue;
      }
      if (k + 1 == values_.size()) continue;
      const long double next = values_[k + 1].value;
      if (!(std::fabs(next - mean_) >= kOutlier * Spread())) continue;
      // Two in a row: a jump here when they agree, else at the second.
      if (!(std::fabs(values_[k].value - next) < GNSSc::lamWL)) ++k;
      Close();
      Begin(k);
    }
    Close();
  }

private:
  long double Spread() const { return std::sqrt(variance_); }

  void Begin(std::size_t k) {
    start_ = last_ = k;
    count_ = 1;
    mean_ = values_[k].value;
    variance_ = static_cast<long double>(kFirstSpread) * kFirstSpread;
  }
  void Accept(std::size_t k) {
    ++count_;
    const long double d = values_[k].value - mean_;
    const auto n = static_cast<long double>(count_);
    mean_ += d / n;
    variance_ += (d * d - variance_) / n;
    last_ = k;
  }
  void Close() {
    if (count_ - 1 < minLength_) return;
    const WideLane& start = values_[start_];
    arcs_.push_back({sat_, start.epoch, start.firstRecord, values_[last_].epoch, count_ - 1});
  }

  const short sat_;
  const std::vector<WideLane>& values_;
  const long minLength_;
  Arcs& arcs_;
  std::size_t start_ = 0; ///< index of the piece's first value
  std::size_t last_ = 0;  ///< index of the last value accepted
  long count_ = 0;
  long double mean_ = 0;     ///< [m]
  long double variance_ = 0; ///< [m2]
};

} // namespace

void RINEXData::ScreenCL1(const matrix<long double>& elev, long double cutoff, long minLength,
                          long double slipLimit, long& nArcs) {
  const auto isWanted = [](short s) { return std::fabs(WavelengthsOf(s).L1) >= kNoWavelength; };
  const auto isStep = [&](short s, long double step, long double) {
    return step > WavelengthsOf(s).L1 * slipLimit;
  };
  Keep(*this, CutAtDifferences(*this, CL1, elev, cutoff, minLength, isWanted, isStep), nArcs);
}

void RINEXData::ScreenL4(const matrix<long double>& elev, long double cutoff, long minLength,
                         long double a, long double b, long& nArcs) {
  const auto isWanted = [](short) { return true; };
  const auto isStep = [&](short, long double step, long double dt) {
    return step > a + b * std::sqrt(std::fabs(dt - 1));
  };
  Keep(*this, CutAtDifferences(*this, L4, elev, cutoff, minLength, isWanted, isStep), nArcs);
}

void RINEXData::ScreenL4Linear(const matrix<long double>& elev, long double cutoff, long minLength,
                               long double a, long double b, long& nArcs) {
  const long double maxGap = static_cast<long double>(kGapLinear) + rhead.GetInterval();
  const long double growth = b * std::sqrt(maxGap);
  const LinearLimits limits{a / 6 + growth / 2, a + growth, a / 3 + growth};
  Arcs found;
  for (long j = 0; j < satList.Length(); ++j) {
    const short s = satList(j);
    long first = 0;
    long record = 0;
    while (FirstSatObsL4(s, first, record, elev, cutoff) && first <= nepochall - minLength) {
      long last = 0;
      long lastRecord = 0;
      LastSatObsL4(s, first, record, last, lastRecord, elev, cutoff, maxGap);
      CutSegment(*this, s, first, record, last, minLength, limits, found);
      first = last + 1;
      record = lastRecord + nsat(last);
    }
  }
  Keep(*this, std::move(found), nArcs);
}

void RINEXData::ScreenMW(long double limit, long minLength, long& nArcs) {
  Arcs screened;
  for (const PhaseArc& arc : ReadArcs(AmbFile, nArcs)) {
    if (IsSound(*this, arc, limit))
      screened.push_back(arc);
    else
      WideLaneSplitter(arc.sat, Collect(*this, arc), minLength, screened).Split();
  }
  Keep(*this, std::move(screened), nArcs);
}

bool RINEXData::FirstSatObsL4(const short& s, long& first, long& rec,
                              const matrix<long double>& elev, const long double& cutoff) const {
  for (; first < nepochall; rec += nsat(first++))
    if (HasUsableL4(*this, s, first, rec, elev, cutoff)) return true;
  return false;
}

void RINEXData::LastSatObsL4(const short& s, const long& first, const long& rec, long& last,
                             long& lastRec, const matrix<long double>& elev,
                             const long double& cutoff, const long double& maxGap) const {
  last = first;
  lastRec = rec;
  while (last + 1 < nepochall && epoch(last + 1) - epoch(last) <= maxGap) {
    const long nextRec = lastRec + nsat(last);
    if (!HasUsableL4(*this, s, last + 1, nextRec, elev, cutoff)) return;
    lastRec = nextRec;
    ++last;
  }
}

bool RINEXData::FindContStart(const short& s, long& first, long& rec, const long& last,
                              const long double& fitLimit, const long double& stepLimit) const {
  if (first + 2 > last) return false;
  L4Walk walk(*this, s, first, rec);
  long double y0 = walk.Next();
  long rec0 = walk.FirstRecord();
  long double y1 = walk.Next();
  long rec1 = walk.FirstRecord();
  for (long j = first + 2; j <= last; ++j) {
    const long double y2 = walk.Next();
    const long double P = y0 - y1;
    const long double Q = y2 - y1;
    const long double slope = (Q - P) / 2;
    const long double level = (P + Q) / 3;
    const bool fits = std::fabs(P + level + slope) <= fitLimit && std::fabs(level) <= fitLimit &&
                      std::fabs(slope - level - Q) <= fitLimit;
    if (fits && std::fabs(P) <= stepLimit && std::fabs(Q) <= stepLimit) {
      first = j - 2;
      rec = rec0;
      return true;
    }
    y0 = std::exchange(y1, y2);
    rec0 = std::exchange(rec1, walk.FirstRecord());
  }
  return false;
}

bool RINEXData::FindCSlipL4(const short& s, const long& first, const long& rec, const long& last,
                            long& endEpoch, long& endRec, const long double& predLimit) const {
  endEpoch = first;
  endRec = rec;
  if (first > last) return false;
  L4Walk walk(*this, s, first, rec);
  long double before = 0;
  long double latest = walk.Next();
  for (long j = first + 1; j <= last; ++j) {
    const long double value = walk.Next();
    const bool predicted = j >= first + 2;
    if (predicted && std::fabs(value - (2 * latest - before)) > predLimit) return true;
    before = std::exchange(latest, value);
    endEpoch = j;
    endRec = walk.FirstRecord();
  }
  return false;
}
