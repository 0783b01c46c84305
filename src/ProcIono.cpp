#include "ProcIono.h"

#include "KorvanC.h"
#include "NormalInverse.h"
#include "ObsEquation.h"
#include "PROGINC/ProgramError.h"
#include "Progress.h"
#include "SatPosition.h"
#include "SetUnknowns.h"
#include "SlantDelay.h"
#include "matrix/inv.h"

#include <cmath>
#include <iomanip>
#include <iostream>
#include <vector>

namespace {

constexpr long double kPi = 3.141592653589793;

/// A record that the cut-off and the choice of systems leave in, with all that does not change
/// from iteration to iteration.
struct UsedRecord {
  long epoch;
  long k;         ///< record of the store
  long satRow;    ///< row of the satellite in the bias tables
  long ixSatP1C1; ///< bias unknowns of the satellite, -1 where none
  long ixSatP2C1;
  long ambiguity; ///< arc that covers the epoch, -1 where none
  IonoCoefficients a;
};

/// The equations of one record, each where it is observed and asked for.
struct RecordEquations {
  bool hasP1C1 = false;
  bool hasP2C1 = false;
  bool hasL4 = false;
  ObsEquation p1c1;
  ObsEquation p2c1;
  ObsEquation l4;
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
        usesP2C1_(ctx.ifCodeObs && ctx.rnxh.iPC4),
        usesL4_(ctx.ifPhaseObs && ctx.rnxh.iL4), normal_{ctx.Nall, ctx.tall, ctx.vtPv},
        inverse_(ctx.QxxAll) {}

  /// Once, before the first iteration.
  void SelectRecords() {
    const long double cutoff = kPi * ctx_.MinElevation / 180;
    long k = 0;
    for (long i = 0; i < ctx_.rnxd.nepochall; ++i)
      for (const long end = k + ctx_.rnxd.nsat(i); k < end; ++k)
        if (ctx_.ELV(k) > cutoff && IsProcessed(ctx_, ctx_.rnxd.sat(k)))
          records_.push_back(Describe(i, k));
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
    ForEachRecord([this](const UsedRecord& r, const RecordEquations& eq) { TakeOut(r, eq); },
                  [](long) {});
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
  UsedRecord Describe(long epoch, long k) const {
    const short sat = ctx_.rnxd.sat(k);
    UsedRecord r{epoch, k, 0, -1, -1, -1, CoefficientsOf(sat, ctx_.ELV(k), ctx_.AZM(k))};
    GetIndexSatDCB(sat, ctx_.rnxd.satList, ctx_.ixbSAT, ctx_.rnxd.satList.Length(), r.ixSatP1C1,
                   r.ixSatP2C1, r.satRow);
    long searched = 0;
    if (usesL4_)
      GetAmbIndex(sat, epoch, ctx_.AmbIndex, ctx_.AmbSat, ctx_.nAmb, r.ambiguity, searched);
    return r;
  }

  RecordWeights WeightsOf(long k) const {
    const long double w = ctx_.WGHT(k);
    return {2.0L / 3.0L * w, -1.0L / 3.0L * w, w * ctx_.WPh2Code};
  }

  /// Calls \p atEpoch for every epoch, and \p atRecord with the equations of each used record.
  template <typename AtRecord, typename AtEpoch>
  void ForEachRecord(AtRecord atRecord, AtEpoch atEpoch) {
    auto r = records_.begin();
    for (long i = 0; i < ctx_.rnxd.nepochall; ++i) {
      atEpoch(i);
      const IonoState state = StateAt(ctx_, i);
      for (; r != records_.end() && r->epoch == i; ++r) atRecord(*r, EquationsOf(*r, state));
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
    ForEachRecord([this](const UsedRecord& r, const RecordEquations& eq) { Use(r, eq); },
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

  RecordEquations EquationsOf(const UsedRecord& r, const IonoState& state) const {
    const RINEXData& store = ctx_.rnxd;
    RecordEquations eq;
    eq.hasP1C1 = usesP1C1_ && !store.PC1(r.k).IsNull();
    eq.hasP2C1 = usesP2C1_ && !store.PC4(r.k).IsNull();
    eq.hasL4 = usesL4_ && r.ambiguity >= 0 && !store.L4(r.k).IsNull();
    if (eq.hasP1C1) FormP1C1(r, eq.p1c1);
    if (eq.hasP2C1) FormP2C1(r, state, eq.p2c1);
    if (eq.hasL4) FormL4(r, state, eq.l4);
    return eq;
  }

  bool IsGPSRecord(const UsedRecord& r) const { return ctx_.rnxd.sat(r.k) <= 99; }

  /// One bias of receiver or satellite: its unknown and its share of the model.
  static void AddBias(ObsEquation& eq, long index, long double value) {
    if (index < 0) return;
    eq.Add(index, -1);
    eq.f += value;
  }

  void AddBiases(const UsedRecord& r, long ixReceiver, long double receiver, long ixSatellite,
                 int column, ObsEquation& eq) const {
    if (IsGPSRecord(r)) AddBias(eq, ixReceiver, receiver); // receiver biases are those of GPS
    if (ixSatellite >= 0) AddBias(eq, ixSatellite, ctx_.xbSAT(r.satRow, column));
  }

  void AddIonosphere(const UsedRecord& r, const IonoState& state, ObsEquation& eq) const {
    if (!ctx_.ifEstION) return;
    eq.f += SlantDelay(r.a, state);
    const long u = ctx_.NUnkDCB + ctx_.nAmb + ctx_.NIonUnkT * ctx_.iIono;
    eq.Add(u, r.a.delay);
    eq.Add(u + 1, state.hours * r.a.delay);
    if (!ctx_.ifEstIGrad) return;
    eq.Add(u + 2, r.a.east);
    eq.Add(u + 3, r.a.north);
  }

  void FormP1C1(const UsedRecord& r, ObsEquation& eq) const {
    AddBiases(r, ctx_.ixP1C1, ctx_.xP1C1, r.ixSatP1C1, 0, eq);
    eq.f -= ctx_.rnxd.PC1(r.k).GetObs();
  }

  void FormP2C1(const UsedRecord& r, const IonoState& state, ObsEquation& eq) const {
    AddBiases(r, ctx_.ixP2C1, ctx_.xP2C1, r.ixSatP2C1, 1, eq);
    AddIonosphere(r, state, eq);
    eq.f -= ctx_.rnxd.P2(r.k).GetObs() - ctx_.rnxd.C1(r.k).GetObs();
  }

  void FormL4(const UsedRecord& r, const IonoState& state, ObsEquation& eq) const {
    eq.Add(ctx_.ixAmb(r.ambiguity), -1);
    eq.f = ctx_.xAmb(r.ambiguity) - ctx_.rnxd.L4(r.k).GetObs();
    AddIonosphere(r, state, eq);
  }

  // ---- Iterations ----------------------------------------------------------------------------

  void Use(const UsedRecord& r, const RecordEquations& eq) {
    const RecordWeights w = WeightsOf(r.k);
    if (eq.hasP1C1) {
      if (IsMisclosureOutlier(r, eq.p1c1.f, ctx_.MaxfDiffP1C1, "  OUTLIER P1-C1 (F): ")) return;
      Take(eq.p1c1, w.code, ctx_.ifOP1C1(r.k));
    }
    if (eq.hasP2C1) {
      if (IsMisclosureOutlier(r, eq.p2c1.f, ctx_.MaxfDiff, "  OUTLIER P2-C1 (F): ")) return;
      Take(eq.p2c1, w.code, ctx_.ifOP2C1(r.k));
    }
    if (eq.hasP1C1 && eq.hasP2C1) normal_.AddCross(eq.p1c1, eq.p2c1, w.cross);
    if (eq.hasL4) Take(eq.l4, w.phase, ctx_.ifOL4(r.k));
  }

  /// The whole record is left out of the iteration from here on, L4 included.
  bool IsMisclosureOutlier(const UsedRecord& r, long double f, long double limit,
                           const char* label) {
    if (!ctx_.isMaxfDiff || !(std::fabs(f) > limit)) return false;
    ++ctx_.NObsOutl;
    WriteOutlier(r, label, f, 3);
    return true;
  }

  void Take(const ObsEquation& eq, long double weight, bool& used) {
    used = true;
    ++ctx_.NObs;
    normal_.Add(eq, weight);
    for (long i = 0; i < eq.n; ++i) ++ctx_.ObsPerUnk(eq.ix[i]);
  }

  void WriteOutlier(const UsedRecord& r, const char* label, long double value, int decimals) const {
    std::cout << "  EPH: " << std::setw(7) << r.epoch << "  " << ctx_.rnxd.epoch(r.epoch)
              << "   PRN: " << std::setw(4) << ctx_.rnxd.sat(r.k) << label
              << std::setprecision(decimals) << std::setw(10) << value << '\n';
  }

  // ---- Elimination ---------------------------------------------------------------------------

  void TakeOut(const UsedRecord& r, const RecordEquations& eq) {
    const RecordWeights w = WeightsOf(r.k);
    if (ctx_.isThresBlunder) {
      const bool p1c1 = eq.hasP1C1 && TakeOutlier(r, eq.p1c1, w.code, ctx_.ThresBlunder,
                                                  ctx_.ifOP1C1, "  OUTLIER P1-C1 (V): ", 3);
      const bool p2c1 = eq.hasP2C1 && TakeOutlier(r, eq.p2c1, w.code, ctx_.ThresBlunder,
                                                  ctx_.ifOP2C1, "  OUTLIER P2-C1 (V): ", 3);
      if (eq.hasP1C1 && eq.hasP2C1 && (p1c1 || p2c1)) normal_.AddCross(eq.p1c1, eq.p2c1, -w.cross);
    }
    if (ctx_.isThresBlunderL4 && eq.hasL4)
      TakeOutlier(r, eq.l4, w.phase, ctx_.ThresBlunderL4, ctx_.ifOL4, "  OUTLIER L1-L2 (V): ", 4);
  }

  /// A residual beyond \p limit: its share leaves the normal equations. Values that took no part
  /// in the last iteration are tested, and subtracted, like the others.
  bool TakeOutlier(const UsedRecord& r, const ObsEquation& eq, long double weight,
                   long double limit, matrix<bool>& flags, const char* label, int decimals) {
    if (!(std::fabs(eq.f) > limit)) return false;
    ++ctx_.NObsOutl;
    --ctx_.NObs;
    flags(r.k) = false;
    WriteOutlier(r, label, eq.f, decimals);
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
  NormalEquations normal_;
  NormalInverse inverse_;
  std::vector<UsedRecord> records_;
  long double dcorr_ = 0; ///< norm of the last correction
  long lastPercent_ = -1;
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
  for (long i = 0; i < n; ++i) {
    t(i) = 0;
    for (long j = 0; j < n; ++j) N(i, j) = 0;
  }
}

long double PartNorm(const matrix<long double>& x, const long& n) {
  long double sum = 0;
  for (long i = 0; i < n; ++i) sum += x(i) * x(i);
  return std::sqrt(sum);
}
