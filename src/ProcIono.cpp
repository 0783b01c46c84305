#include "ProcIono.h"

#include "KorvanC.h"
#include "NormalInverse.h"
#include "ObsEquation.h"
#include "PROGINC/ProgramError.h"
#include "Progress.h"
#include "SatPosition.h"
#include "SatelliteTable.h"
#include "SlantDelay.h"
#include "matrix/inv.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <vector>

namespace {

constexpr long double kPi = 3.141592653589793;

using Satellite = SatelliteTable::Satellite;

/// A record above the cut-off and of a processed system, with what no iteration changes.
struct Record {
  const Satellite* satellite;
  long k;           ///< index in the store
  std::int32_t arc; ///< that covers the epoch, -1 where none
  bool hasP1C1;     ///< observed and asked for
  bool hasP2C1;
  bool hasL4; ///< on an arc, too
};

/// An epoch during a pass: what its records share.
struct Epoch {
  long i;
  IonoState state;
  long ionosphere; ///< first unknown of its interval
};

/// Weights of one record's equations; the pair of code differences shares C1.
struct RecordWeights {
  long double code;
  long double cross;
  long double phase;
};

class Adjustment {
public:
  explicit Adjustment(KorvanC& ctx)
      : ctx_(ctx), usesP1C1_(ctx.ifCodeObs && ctx.rnxh.iPC1),
        usesP2C1_(ctx.ifCodeObs && ctx.rnxh.iPC4), usesL4_(ctx.ifPhaseObs && ctx.rnxh.iL4),
        satellites_(ctx), normal_(ctx.Nall, ctx.tall, ctx.vtPv), inverse_(ctx.QxxAll) {}

  /// Once, before the first iteration.
  void SelectRecords() {
    const RINEXData& store = ctx_.rnxd;
    const long double cutoff = kPi * ctx_.MinElevation / 180;
    ctx_.slants.Keep(store.nsatall, ctx_.ifEstIGrad);
    records_.reserve(static_cast<std::size_t>(store.nsatall));
    long k = 0;
    for (long i = 0; i < store.nepochall; ++i) {
      for (const long end = k + store.nsat(i); k < end; ++k)
        if (ctx_.ELV(k) > cutoff && IsProcessed(ctx_, store.sat(k)))
          records_.push_back(Describe(i, k));
      ends_.push_back(records_.size());
    }
  }

  void Iterate() {
    int niter = 1;
    do {
      StartIteration(niter);
      Accumulate();
      KeepRegular();
      Solve();
      ++niter;
    } while (!(dcorr_ < ctx_.IterThres) && niter <= ctx_.MaxIter);
    ctx_.IterDone = niter - 1;
    ctx_.IterThresFin = static_cast<double>(dcorr_);
  }

  void EliminateOutliers() {
    if (ctx_.verbose) std::cerr << "Zenta::ProcIono(): OUTLIER DETECTION AND ELIMINATION -> ";
    ctx_.iIono = 0;
    ctx_.NObsOutl = 0;
    std::cout << "PROCESSING DATA - OUTLIER DETECTION:\n";
    ForEachRecord([this](const Epoch& e, const Record& r) { TakeOut(e, r); }, [](long) {});
    if (ctx_.verbose) std::cerr << ctx_.NObsOutl << " OUTLIERS!\n";
    Solve();
  }

  void WriteSummary() const {
    if (ctx_.NObs == 0)
      ProgramWarning("Zenta", "NO OBSERVATIONS USED IN ESTIMATION!");
    else if (ctx_.NRed == 0)
      ProgramWarning("Zenta", "NO REDUNDANT OBSERVATIONS - REFERENCE VARIANCE SET TO 0!");
    std::cout << "  DONE!        #OBS: " << std::setw(10) << ctx_.NObs
              << "     #UNK: " << std::setw(10) << ctx_.NUnk << "     #OUT: " << std::setw(10)
              << ctx_.NObsOutl << "      REF. VAR. APOSTERORI: " << std::setprecision(4)
              << std::setw(10) << ctx_.s0apost << "    [SQRT]: " << std::setprecision(3)
              << std::setw(10) << std::sqrt(ctx_.s0apost) << "\n\n";
  }

private:
  Record Describe(long epoch, long k) {
    const RINEXData& store = ctx_.rnxd;
    const short sat = store.sat(k);
    ctx_.slants.Of(ctx_, k);
    const long arc = usesL4_ ? satellites_.ArcAt(sat, epoch) : -1;
    return {&satellites_.Of(sat),
            k,
            static_cast<std::int32_t>(arc),
            usesP1C1_ && !store.PC1(k).IsNull(),
            usesP2C1_ && !store.PC4(k).IsNull(),
            arc >= 0 && !store.L4(k).IsNull()};
  }

  RecordWeights WeightsOf(long k) const {
    const long double w = ctx_.WGHT(k);
    return {2.0L / 3.0L * w, -1.0L / 3.0L * w, w * ctx_.WPh2Code};
  }

  /// Calls \p atEpoch for every epoch, and \p atRecord for each of its records, whose equations are
  /// then formed.
  template <typename AtRecord, typename AtEpoch>
  void ForEachRecord(AtRecord atRecord, AtEpoch atEpoch) {
    std::size_t at = 0;
    for (long i = 0; i < ctx_.rnxd.nepochall; ++i) {
      atEpoch(i);
      Epoch e{i, StateAt(ctx_, i), 0};
      e.ionosphere = ctx_.NUnkDCB + ctx_.nAmb + ctx_.NIonUnkT * ctx_.iIono;
      for (; at < ends_[static_cast<std::size_t>(i)]; ++at) {
        FormEquations(e, records_[at]);
        atRecord(e, records_[at]);
      }
    }
  }

  void StartIteration(int niter) {
    ctx_.iIono = 0;
    ResetNS(ctx_.Nall, ctx_.tall, ctx_.NUnk);
    ctx_.vtPv = 0;
    if (ctx_.verbose)
      std::cerr << "Zenta::ProcIono():         " << std::setw(3) << niter << ":   Process:       ";
    ctx_.NObsOutl = 0;
    ctx_.ObsPerUnk.Resize(ctx_.NUnk, 1, 0);
    // NObs goes on counting: the redundancy rests on the sum over all iterations.
    ClearFlags();
  }

  void ClearFlags() {
    const long n = ctx_.rnxd.nsatall;
    if (usesP1C1_) ctx_.ifOP1C1.Resize(n, 1, false);
    if (usesP2C1_) ctx_.ifOP2C1.Resize(n, 1, false);
    if (usesL4_) ctx_.ifOL4.Resize(n, 1, false);
  }

  void Accumulate() {
    lastPercent_ = -1;
    ForEachRecord([this](const Epoch& e, const Record& r) { Use(e, r); },
                  [this](long i) { ReportPercent(i); });
    if (ctx_.verbose) WritePercent(100) << '\n';
  }

  std::ostream& WritePercent(long percent) const {
    return std::cerr << "\b\b\b\b\b\b" << std::setw(4) << percent << " %";
  }

  void ReportPercent(long i) {
    if (!ctx_.verbose) return;
    const long percent = 100 * i / ctx_.rnxd.nepochall;
    if (percent % 5 != 0 || percent == lastPercent_) return;
    WritePercent(percent);
    lastPercent_ = percent;
  }

  // ---- Equations of a record -----------------------------------------------------------------

  void FormEquations(const Epoch& e, const Record& r) {
    if (r.hasP2C1 || r.hasL4) FormIonosphere(e, r);
    if (r.hasP1C1) FormP1C1(r);
    if (r.hasP2C1) FormP2C1(r);
    if (r.hasL4) FormL4(r);
  }

  /// One bias of receiver or satellite: its unknown and its share of the model.
  static void AddBias(ObsEquation& eq, long index, long double value) {
    if (index < 0) return;
    eq.Add(index, -1);
    eq.f += value;
  }

  void FormP1C1(const Record& r) {
    const Satellite& s = *r.satellite;
    p1c1_.Clear();
    if (s.isGPS) AddBias(p1c1_, ctx_.ixP1C1, ctx_.xP1C1); // receiver biases are those of GPS
    if (s.ixP1C1 >= 0) AddBias(p1c1_, s.ixP1C1, ctx_.xbSAT(s.row, 0));
    p1c1_.f -= ctx_.rnxd.PC1(r.k).GetObs();
  }

  void FormP2C1(const Record& r) {
    const Satellite& s = *r.satellite;
    p2c1_.Clear();
    if (s.isGPS) AddBias(p2c1_, ctx_.ixP2C1, ctx_.xP2C1);
    if (s.ixP2C1 >= 0) AddBias(p2c1_, s.ixP2C1, ctx_.xbSAT(s.row, 1));
    p2c1_.Append(ionosphere_);
    p2c1_.f -= ctx_.rnxd.P2(r.k).GetObs() - ctx_.rnxd.C1(r.k).GetObs();
  }

  void FormL4(const Record& r) {
    l4_.Clear();
    l4_.Add(ctx_.ixAmb(r.arc), -1);
    l4_.f = ctx_.xAmb(r.arc) - ctx_.rnxd.L4(r.k).GetObs();
    l4_.Append(ionosphere_);
  }

  /// The part that P2-C1 and L4 of a record have in common.
  void FormIonosphere(const Epoch& e, const Record& r) {
    ionosphere_.Clear();
    if (!ctx_.ifEstION) return;
    const IonoCoefficients a = ctx_.slants.Of(ctx_, r.k);
    ionosphere_.f = SlantDelay(a, e.state);
    ionosphere_.Add(e.ionosphere, a.delay);
    ionosphere_.Add(e.ionosphere + 1, e.state.hours * a.delay);
    if (!ctx_.ifEstIGrad) return;
    ionosphere_.Add(e.ionosphere + 2, a.east);
    ionosphere_.Add(e.ionosphere + 3, a.north);
  }

  // ---- Iterations ----------------------------------------------------------------------------

  void Use(const Epoch& e, const Record& r) {
    const RecordWeights w = WeightsOf(r.k);
    if (r.hasP1C1) {
      if (IsMisclosureOutlier(e, r, p1c1_.f, ctx_.MaxfDiffP1C1, "  OUTLIER P1-C1 (F): ")) return;
      Take(p1c1_, w.code, ctx_.ifOP1C1(r.k));
    }
    if (r.hasP2C1) {
      if (IsMisclosureOutlier(e, r, p2c1_.f, ctx_.MaxfDiff, "  OUTLIER P2-C1 (F): ")) return;
      Take(p2c1_, w.code, ctx_.ifOP2C1(r.k));
    }
    if (r.hasP1C1 && r.hasP2C1) normal_.AddCross(p1c1_, p2c1_, w.cross);
    if (r.hasL4) Take(l4_, w.phase, ctx_.ifOL4(r.k));
  }

  /// The whole record is left out of the iteration from here on, L4 included.
  bool IsMisclosureOutlier(const Epoch& e, const Record& r, long double f, long double limit,
                           const char* label) {
    if (!ctx_.isMaxfDiff || !(std::fabs(f) > limit)) return false;
    ++ctx_.NObsOutl;
    WriteOutlier(e, r, label, f, 3);
    return true;
  }

  void Take(const ObsEquation& eq, long double weight, bool& used) {
    used = true;
    ++ctx_.NObs;
    normal_.Add(eq, weight);
    for (long i = 0; i < eq.n; ++i) ++ctx_.ObsPerUnk(eq.ix[i]);
  }

  void WriteOutlier(const Epoch& e, const Record& r, const char* label, long double value,
                    int decimals) const {
    std::cout << "  EPH: " << std::setw(7) << e.i << "  " << ctx_.rnxd.epoch(e.i)
              << "   PRN: " << std::setw(4) << r.satellite->number << label
              << std::setprecision(decimals) << std::setw(10) << value << '\n';
  }

  // ---- Elimination ---------------------------------------------------------------------------

  void TakeOut(const Epoch& e, const Record& r) {
    const RecordWeights w = WeightsOf(r.k);
    if (ctx_.isThresBlunder) {
      const bool p1c1 = r.hasP1C1 && TakeOutlier(e, r, p1c1_, w.code, ctx_.ThresBlunder,
                                                 ctx_.ifOP1C1, "  OUTLIER P1-C1 (V): ", 3);
      const bool p2c1 = r.hasP2C1 && TakeOutlier(e, r, p2c1_, w.code, ctx_.ThresBlunder,
                                                 ctx_.ifOP2C1, "  OUTLIER P2-C1 (V): ", 3);
      if (r.hasP1C1 && r.hasP2C1 && (p1c1 || p2c1)) normal_.AddCross(p1c1_, p2c1_, -w.cross);
    }
    if (ctx_.isThresBlunderL4 && r.hasL4)
      TakeOutlier(e, r, l4_, w.phase, ctx_.ThresBlunderL4, ctx_.ifOL4, "  OUTLIER L1-L2 (V): ", 4);
  }

  /// A residual beyond \p limit: its share leaves the normal equations. Values that took no part
  /// in the last iteration are tested, and subtracted, like the others.
  bool TakeOutlier(const Epoch& e, const Record& r, const ObsEquation& eq, long double weight,
                   long double limit, matrix<bool>& flags, const char* label, int decimals) {
    if (!(std::fabs(eq.f) > limit)) return false;
    ++ctx_.NObsOutl;
    --ctx_.NObs;
    flags(r.k) = false;
    WriteOutlier(e, r, label, eq.f, decimals);
    normal_.Add(eq, -weight);
    return true;
  }

  // ---- Solution ------------------------------------------------------------------------------

  /// Unknowns without an observation keep their values.
  void KeepRegular() {
    for (long a = 0; a < ctx_.NUnk; ++a)
      if (ctx_.ObsPerUnk(a) == 0) ctx_.Nall(a, a) = 1;
  }

  /// Of the last inverse; inv looks at no pivot of a 1 x 1 matrix.
  bool IsSingular() const {
    const matrix<long double>& N = ctx_.Nall;
    return N.Length() == 1 ? std::fabs(N(0)) < invns::thres : invns::IsSingular;
  }

  void Solve() {
    normal_.Complete(ctx_.NUnk);
    if (inverse_.Update(ctx_.Nall)) ++ctx_.NInv;
    ctx_.xAll = ctx_.QxxAll * ctx_.tall;
    dcorr_ = PartNorm(ctx_.xAll, ctx_.NUnk);
    if (IsSingular() || !std::isfinite(dcorr_))
      ProgramError("Zenta", "PROBLEMS INVERTING MATRIX N - SINGULARITY POSSIBILITY!!!");
    ctx_.NRed = static_cast<long double>(ctx_.nIonoConst + (ctx_.NObs - ctx_.NUnk));
    ctx_.s0apost = ctx_.NRed == 0 ? 0 : ctx_.vtPv / ctx_.NRed;
    Update();
  }

  void Update() {
    if (ctx_.ifEstREC) {
      if (ctx_.isxP1C1) ctx_.xP1C1 += ctx_.xAll(ctx_.ixP1C1);
      if (ctx_.isxP2C1) ctx_.xP2C1 += ctx_.xAll(ctx_.ixP2C1);
    }
    if (ctx_.ifEstGPS || ctx_.ifEstGLN)
      for (long j = 0; j < ctx_.ixbSAT.Length(); ++j)
        if (ctx_.ixbSAT(j) >= 0) ctx_.xbSAT(j) += ctx_.xAll(ctx_.ixbSAT(j));
    if (ctx_.ifPhaseObs)
      for (long j = 0; j < ctx_.nAmb; ++j) ctx_.xAmb(j) += ctx_.xAll(ctx_.ixAmb(j));
    if (ctx_.ifEstION)
      for (long k = 0; k < ctx_.nIono; ++k) UpdateInterval(k);
  }

  void UpdateInterval(long k) {
    const long base = ctx_.NUnkDCB + ctx_.nAmb + ctx_.NIonUnkT * k;
    for (long c = 0; c < 2; ++c) {
      ctx_.xION(k, c) += ctx_.xAll(base + c);
      if (ctx_.ifEstIGrad) ctx_.xIGRAD(k, c) += ctx_.xAll(base + 2 + c);
    }
  }

  KorvanC& ctx_;
  const bool usesP1C1_;
  const bool usesP2C1_;
  const bool usesL4_;
  SatelliteTable satellites_;
  std::vector<Record> records_;
  std::vector<std::size_t> ends_; ///< of each epoch: one past its last record
  NormalEquations normal_;
  NormalInverse inverse_;
  long double dcorr_ = 0; ///< norm of the last correction
  long lastPercent_ = -1;

  // Of the record at hand, each where the record has the value; kept to be filled again.
  ObsEquation p1c1_;
  ObsEquation p2c1_;
  ObsEquation l4_;
  ObsEquation ionosphere_;
};

} // namespace

void ProcIono(KorvanC& ctx) {
  std::cout << "ESTIMATION OF IONOSPHERIC DELAY:\n--------------------------------\n\n";
  Progress(ctx, "ProcIono(): DETERMINING IONO DELAY AND DCB VALUES!");
  std::cout << "PROCESSING DATA:\n";
  Adjustment adjustment(ctx);
  adjustment.SelectRecords();
  adjustment.Iterate();
  adjustment.WriteSummary();
  if (!ctx.isThresBlunder && !ctx.isThresBlunderL4) return;
  adjustment.EliminateOutliers();
  adjustment.WriteSummary();
}

void ResetNS(matrix<long double>& N, matrix<long double>& t, const long& n) {
  if (n == 0) return;
  std::fill_n(&t(0), n, 0.0L);
  for (long i = 0; i < n; ++i) std::fill_n(&N(i, 0), n, 0.0L);
}

long double PartNorm(const matrix<long double>& x, const long& n) {
  long double sum = 0;
  for (long i = 0; i < n; ++i) sum += x(i) * x(i);
  return std::sqrt(sum);
}
