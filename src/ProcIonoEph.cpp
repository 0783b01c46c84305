#include "ProcIonoEph.h"

#include "KorvanC.h"
#include "PROGINC/OutputFile.h"
#include "Progress.h"
#include "SatPosition.h"
#include "SatelliteTable.h"
#include "SlantDelay.h"
#include "matrix/inv.h"

#include <cmath>
#include <iomanip>
#include <iostream>

namespace {

/// Normal equations of one epoch: delay, east gradient, north gradient, or the delay alone.
class EpochSolution {
public:
  explicit EpochSolution(bool gradients)
      : n_(gradients ? 3 : 1), N_(n_, n_, 0.0L), t_(n_, 1, 0.0L) {}

  /// Observation \p y [m], its reduced sign as in a misclosure, with weight \p p.
  void Add(const IonoCoefficients& c, long double y, long double p) {
    const long double a[3] = {c.delay, c.east, c.north};
    for (long i = 0; i < n_; ++i) {
      for (long j = 0; j < n_; ++j) N_(i, j) += p * a[i] * a[j];
      t_(i) += p * y * a[i];
    }
    vtpv_ += p * y * y;
    ++nobs_;
  }

  bool IsOverdetermined() const { return nobs_ > n_; }

  /// \returns false when the observations do not determine the unknowns.
  bool Solve() {
    if (n_ == 1) {
      if (N_(0) == 0) return false;
      x_[0] = t_(0) / N_(0);
      const long double s0 = (vtpv_ - x_[0] * t_(0)) / static_cast<long double>(nobs_ - 1);
      sigma_[0] = std::sqrt(s0 / N_(0));
      return true;
    }
    const matrix<long double> Q = inv(N_);
    if (invns::IsSingular) return false;
    const matrix<long double> x = Q * t_;
    long double explained = 0;
    for (long i = 0; i < n_; ++i) explained += t_(i) * x(i);
    const long double s0 = (vtpv_ - explained) / static_cast<long double>(nobs_ - n_);
    for (long i = 0; i < n_; ++i) {
      x_[i] = x(i);
      sigma_[i] = std::sqrt(s0 * Q(i, i));
    }
    return true;
  }

  void Write(const mjd& epoch, std::ostream& out) const {
    out << ' ' << epoch << std::setprecision(4);
    for (long i = 0; i < n_; ++i)
      out << std::setw(12) << x_[i] << " +-" << std::setw(8) << sigma_[i];
    out << '\n';
  }

private:
  const long n_;
  matrix<long double> N_;
  matrix<long double> t_;
  long double vtpv_ = 0;
  long nobs_ = 0;
  long double x_[3] = {};
  long double sigma_[3] = {};
};

/// Adds what record \p k of epoch \p i says of the ionosphere.
void AddRecord(KorvanC& ctx, long i, long k, SatelliteTable& satellites, EpochSolution& solution) {
  const RINEXData& store = ctx.rnxd;
  const short sat = store.sat(k);
  if (!IsProcessed(ctx, sat)) return;
  const bool code = ctx.ifCodeObs && ctx.rnxh.iPC4 && ctx.ifOP2C1(k);
  const bool phase = ctx.ifPhaseObs && ctx.rnxh.iL4 && ctx.ifOL4(k);
  if (!code && !phase) return;

  const IonoCoefficients a = ctx.slants.Of(ctx, k);
  if (code) {
    const SatelliteTable::Satellite& s = satellites.Of(sat);
    long double y = -store.PC4(k).GetObs();
    if (s.isGPS && ctx.ixP2C1 != -1) y += ctx.xP2C1;
    if (s.ixP2C1 != -1) y += ctx.xbSAT(s.row, 1);
    solution.Add(a, y, ctx.WGHT(k));
  }
  if (phase) {
    const long arc = satellites.ArcAt(sat, i);
    if (arc >= 0)
      solution.Add(a, -store.L4(k).GetObs() + ctx.xAmb(arc), ctx.WPh2Code * ctx.WGHT(k));
  }
}

} // namespace

void ProcIonoEph(KorvanC& ctx) {
  if (!ctx.ifEstIONEph) return;
  std::cout << "ESTIMATION OF EPOCH TO EPOCH IONOSPHERIC DELAY:\n"
               "-----------------------------------------------\n\n";
  OutputFile file;
  if (ctx.isGNUPlotIonEph) {
    file.Open(ctx.gnuplotIonEph);
    file.Stream() << std::fixed << "#ION_TYPE: EPOCH BY EPOCH\n"
                  << "#    EPOCH[MJD]           ION_DELAY[m]\n";
  }
  Progress(ctx, "ProcIonoEph(): EPOCH TO EPOCH ESTIMATION OF IONOSPHERIC DELAY!");
  const bool gradients = ctx.ifEstIGrad;
  const std::string rule =
      ' ' + std::string(37, '-') + (gradients ? std::string(46, '-') : "") + '\n';
  std::cout << "  EPOCH[MJD]              ION DELAY[m]"
            << (gradients ? "         ION GRAD E               ION GRAD N" : "") << '\n'
            << rule;
  SatelliteTable satellites(ctx);
  long estimated = 0;
  long k = 0;
  for (long i = 0; i < ctx.rnxd.nepochall; ++i) {
    EpochSolution solution(gradients);
    for (const long end = k + ctx.rnxd.nsat(i); k < end; ++k)
      AddRecord(ctx, i, k, satellites, solution);
    if (!solution.IsOverdetermined() || !solution.Solve()) continue;
    solution.Write(ctx.rnxd.epoch(i), std::cout);
    if (file.IsInUse()) solution.Write(ctx.rnxd.epoch(i), file.Stream());
    ++estimated;
  }
  std::cout << rule << "  #of estimated Iono delays: " << estimated << "\n\n";
  file.Close();
}
