#include "SetUnknowns.h"

#include "IntervalList.h"
#include "KorvanC.h"
#include "Progress.h"

#include <array>
#include <cstddef>
#include <iomanip>
#include <limits>
#include <vector>

namespace {

constexpr long kMinReceiverValues = 11; // a receiver bias needs more than 10 values
constexpr long kMinSatelliteValues = 3;

constexpr int kP1C1 = 0; // columns of ixbSAT and xbSAT
constexpr int kP2C1 = 1;

bool IsGPSSatellite(short sat) { return sat <= 99; }
bool IsGLONASSSatellite(short sat) { return sat >= 100 && sat <= 199; }

void OpenLine(const KorvanC& ctx, const char* text) {
  if (ctx.verbose) std::cerr << "Zenta::SetUnknowns():         " << text;
}

bool HasGPSValues(const RINEXData& store, const matrix<gnssobs>& values) {
  long count = 0;
  for (long k = 0; k < store.nsatall; ++k) {
    if (!IsGPSSatellite(store.sat(k)) || values(k).IsNull()) continue;
    if (++count == kMinReceiverValues) return true;
  }
  return false;
}

/// Which satellites have enough of either kind of value: one walk over the store, which looks at
/// values only as long as some are wanting.
class ValueCounts {
public:
  explicit ValueCounts(const KorvanC& ctx)
      : counts_(std::size_t{std::numeric_limits<unsigned short>::max()} + 1) {
    const RINEXData& store = ctx.rnxd;
    for (long k = 0; k < store.nsatall; ++k) {
      Counts& counts = counts_[PlaceOf(store.sat(k))];
      if (ctx.rnxh.iPC1) Count(store.PC1, k, counts[kP1C1]);
      if (ctx.rnxh.iPC4) Count(store.PC4, k, counts[kP2C1]);
    }
  }
  bool AreEnough(short sat, int kind) const {
    return counts_[PlaceOf(sat)][static_cast<std::size_t>(kind)] == kMinSatelliteValues;
  }

private:
  using Counts = std::array<long, 2>;

  static std::size_t PlaceOf(short sat) { return static_cast<unsigned short>(sat); }
  static void Count(const matrix<gnssobs>& values, long k, long& count) {
    if (count < kMinSatelliteValues && !values(k).IsNull()) ++count;
  }

  std::vector<Counts> counts_; ///< of each number that a satellite can have
};

/// Gives an unknown to each satellite of a system that has the values. \returns how many.
long SetSatelliteBiases(KorvanC& ctx, bool (*isOfSystem)(short), const ValueCounts& values,
                        int column, long& ix) {
  long count = 0;
  for (long j = 0; j < ctx.rnxd.satList.Length(); ++j) {
    const short sat = ctx.rnxd.satList(j);
    if (!isOfSystem(sat) || !values.AreEnough(sat, column)) continue;
    ctx.ixbSAT(j, column) = ++ix;
    ++count;
  }
  return count;
}

/// Both kinds of one system, P1-C1 first, and the line that tells how many.
void SetSystemBiases(KorvanC& ctx, bool (*isOfSystem)(short), long& nP1C1, long& nP2C1, long& ix) {
  const ValueCounts values(ctx);
  if (ctx.rnxh.iPC1) nP1C1 = SetSatelliteBiases(ctx, isOfSystem, values, kP1C1, ix);
  if (ctx.rnxh.iPC4) nP2C1 = SetSatelliteBiases(ctx, isOfSystem, values, kP2C1, ix);
  std::cerr << "  #P1C1 " << std::setw(4) << nP1C1 << "    #P2C1 " << std::setw(4) << nP2C1 << '\n';
}

/// Cuts epochs into intervals: the records, and how many of them are counted.
class IntervalCutter {
public:
  IntervalCutter(const KorvanC& ctx)
      : epoch_(ctx.rnxd.epoch), n_(ctx.rnxd.nepochall), length_(ctx.IonoInterval),
        maxGap_(ctx.MaxIonGap) {}

  void CutAll() {
    long first = 0;
    for (long e = 1; e < n_ - 1; ++e) {
      if (Seconds(e - 1, e) <= maxGap_) continue;
      if (e - first - 1 > 2) CutBlock(first, e - 1, true);
      first = e;
    }
    if (n_ - 1 - first > 2) CutBlock(first, n_ - 1, false);
  }
  /// The rest of the last block is an interval too, but is counted with it alone.
  long Count() const { return counted_ + 1; }
  const IntervalList& List() const { return list_; }

private:
  long double Seconds(long from, long to) const { return epoch_(to) - epoch_(from); }

  void CutBlock(long first, long last, bool inner) {
    long start = first;
    for (long e = first + 1; e <= last; ++e) {
      if (!(Seconds(start, e) > length_)) continue;
      list_.Append(start, e - 1);
      ++counted_;
      start = e;
    }
    if (Seconds(start, last) >= 0.25L * length_) {
      list_.Append(start, last);
      if (inner) ++counted_;
    } else {
      list_.JoinRest(last);
      --counted_;
    }
  }

  const matrix<mjd>& epoch_;
  const long n_;
  const long double length_; ///< [s]
  const double maxGap_;      ///< [s]
  IntervalList list_;
  long counted_ = 0;
};

matrix<long> IntervalTable(const IntervalList& list, long n) {
  matrix<long> table(n, 2);
  for (long k = 0; k < n; ++k) {
    const auto [first, last] = list.Get(static_cast<std::size_t>(k));
    table(k, 0) = first;
    table(k, 1) = last;
  }
  return table;
}

/// Interval \p k follows the one before it without a gap.
bool IsContinuous(const KorvanC& ctx, const matrix<long>& intervals, long k) {
  const matrix<mjd>& epoch = ctx.rnxd.epoch;
  return epoch(intervals(k, 0)) - epoch(intervals(k - 1, 1)) < ctx.MaxIonGap;
}

void AddContinuityConstraint(KorvanC& ctx, long k) {
  const matrix<mjd>& epoch = ctx.rnxd.epoch;
  const long row = ctx.NUnk + ctx.nIonoConst;
  const long u = ctx.NUnkDCB + ctx.nAmb + ctx.NIonUnkT * (k - 1);
  const long double dT = epoch(ctx.IonoEstInd(k, 0)) - epoch(ctx.IonoEstInd(k - 1, 0));
  ctx.Nall(row, u) = ctx.Nall(u, row) = 1;
  ctx.Nall(row, u + 1) = ctx.Nall(u + 1, row) = dT / 3600;
  ctx.Nall(row, u + 2) = ctx.Nall(u + 2, row) = -1;
  ++ctx.nIonoConst;
}

void SetConstraints(KorvanC& ctx) {
  long count = 0;
  for (long k = 1; k < ctx.nIono; ++k)
    if (IsContinuous(ctx, ctx.IonoEstInd, k)) ++count;
  ctx.NUnk = ctx.NUnkDCB + ctx.nAmb + ctx.nIonoUnk;
  ctx.Nall.Resize(ctx.NUnk + count, ctx.NUnk + count, 0.0L);
  ctx.tall.Resize(ctx.NUnk + count, 1, 0.0L);
  for (long k = 1; k < ctx.nIono; ++k)
    if (IsContinuous(ctx, ctx.IonoEstInd, k)) AddContinuityConstraint(ctx, k);
}

void ReportLayout(const KorvanC& ctx) {
  if (!ctx.verbose) return;
  std::cerr << "Zenta::SetUnknowns():         FINAL:    xR_P1C1[" << ctx.isxP1C1 << "]  xR_P2C1["
            << ctx.isxP2C1 << "]  xG_P1C1[" << ctx.nP1C1g << "]  xG_P2C1[" << ctx.nP2C1g
            << "]  xR_P1C1[" << ctx.nP1C1r << "]  xR_P2C1[" << ctx.nP2C1r << "]  xAMB[" << ctx.nAmb
            << "]  xION[" << ctx.nIonoUnk << "]\n"
            << "Zenta::SetUnknowns():                   DCB[" << ctx.NUnkDCB << "]  AMB["
            << ctx.nAmb << "]  ION[" << ctx.nIonoUnk << "]  ->  #UNK: " << ctx.NUnk << '\n';
}

void ClearValues(KorvanC& ctx) {
  ctx.xP1C1 = ctx.xP2C1 = 0;
  ctx.xbSAT.Resize(ctx.rnxd.satList.Length(), 2, 0.0L);
  ctx.xION.Resize(ctx.nIono, 2, 0.0L);
  if (ctx.ifEstIGrad) ctx.xIGRAD.Resize(ctx.nIono, 2, 0.0L);
  if (!ctx.ifEstION) {
    ctx.Nall.Resize(ctx.NUnk, ctx.NUnk, 0.0L);
    ctx.tall.Resize(ctx.NUnk, 1, 0.0L);
  }
  ctx.ObsPerUnk.Resize(ctx.NUnk, 1, 0);
}

} // namespace

void SetUnknowns(KorvanC& ctx) {
  Progress(ctx, "SetUnknowns(): SETTING UNKNOWNS IN ESTIMATION!");
  SetUnknowns_RecGPSDCB(ctx);
  const long nReceiver = long{ctx.isxP1C1} + long{ctx.isxP2C1};
  long ix = nReceiver - 1;
  SetUnknowns_SatGPSDCB(ctx, ix);
  SetUnknowns_SatGLNDCB(ctx, ix);
  ctx.NUnkDCB = nReceiver + ctx.nP1C1g + ctx.nP2C1g + ctx.nP1C1r + ctx.nP2C1r;
  SetUnknowns_L4Amb(ctx, ix);
  SetIonoIntervals(ctx, ix);
  ctx.NUnk = ctx.NUnkDCB + ctx.nAmb + ctx.nIonoUnk;
  ReportLayout(ctx);
  ClearValues(ctx);
}

void SetUnknowns_RecGPSDCB(KorvanC& ctx) {
  if (!ctx.isGPS || !ctx.ifEstREC) return;
  OpenLine(ctx, "Receiver GPS differential code biases:");
  if (!ctx.rnxh.iPC1) {
    ctx.isxP1C1 = false;
  } else if (HasGPSValues(ctx.rnxd, ctx.rnxd.PC1)) {
    ctx.isxP1C1 = true;
    ctx.ixP1C1 = 0;
  }
  if (!ctx.rnxh.iPC4) {
    ctx.isxP2C1 = false;
  } else if (HasGPSValues(ctx.rnxd, ctx.rnxd.PC4)) {
    ctx.isxP2C1 = true;
    ctx.ixP2C1 = ctx.ixP1C1 + 1;
  }
  if (!ctx.verbose) return;
  if (ctx.isxP1C1) std::cerr << " P1C1-DCB [" << ctx.ixP1C1 << ']';
  if (ctx.isxP2C1) std::cerr << " P2C1-DCB [" << ctx.ixP2C1 << ']';
  std::cerr << '\n';
}

void SetUnknowns_SatGPSDCB(KorvanC& ctx, long& ix) {
  ctx.ixbSAT.Resize(ctx.rnxd.satList.Length(), 2, -1);
  ctx.nP1C1g = ctx.nP2C1g = 0;
  if (!ctx.isGPS || !ctx.ifEstGPS) return;
  ix = ctx.ixP2C1; // -1: biases of the receiver and of GPS satellites never come together
  OpenLine(ctx, "GPS satellite differential code biases:");
  SetSystemBiases(ctx, IsGPSSatellite, ctx.nP1C1g, ctx.nP2C1g, ix);
}

void SetUnknowns_SatGLNDCB(KorvanC& ctx, long& ix) {
  ctx.nP1C1r = ctx.nP2C1r = 0;
  if (!ctx.isGLN || !ctx.ifEstGLN) return;
  OpenLine(ctx, "GLONASS satellite differential code biases:");
  SetSystemBiases(ctx, IsGLONASSSatellite, ctx.nP1C1r, ctx.nP2C1r, ix);
}

void SetUnknowns_L4Amb(KorvanC& ctx, long& ix) {
  if (!ctx.ifPhaseObs) return;
  ctx.ixAmb.Resize(ctx.nAmb, 1, -1);
  for (long k = 0; k < ctx.nAmb; ++k) ctx.ixAmb(k) = ++ix;
}

void SetIonoIntervals(KorvanC& ctx, long& /*ix*/) {
  if (!ctx.ifEstION) return;
  OpenLine(ctx, "IONOSPHERE delay unknowns:");
  IntervalCutter cutter(ctx);
  cutter.CutAll();
  ctx.nIono = cutter.Count();
  ctx.nIonoUnk = ctx.NIonUnkT * ctx.nIono;
  if (ctx.verbose) std::cerr << "  #intervals: " << ctx.nIono << "  #unknowns: " << ctx.nIonoUnk;
  ctx.IonoEstInd = IntervalTable(cutter.List(), ctx.nIono);
  SetConstraints(ctx);
  if (ctx.verbose) std::cerr << "  #constraints: " << ctx.nIonoConst << '\n';
}

void GetIndexSatDCB(const short& prn, const matrix<short>& prnList, const matrix<long>& ixbSAT,
                    const long& nsat, long& ixp1c1, long& ixp2c1, long& k) {
  for (k = 0; k < nsat; ++k) {
    if (prnList(k) != prn) continue;
    ixp1c1 = ixbSAT(k, kP1C1);
    ixp2c1 = ixbSAT(k, kP2C1);
    return;
  }
}

void GetAmbIndex(const short& prn, const long& ieph, const matrix<long>& AI,
                 const matrix<short>& AP, const long& namb, long& iamb, long& k) {
  iamb = -1;
  for (k = 0; k < namb; ++k) {
    if (AP(k) != prn || AI(k, 0) > ieph || AI(k, 2) < ieph) continue;
    iamb = k;
    return;
  }
}
