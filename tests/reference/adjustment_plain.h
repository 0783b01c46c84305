#ifndef REFERENCE_ADJUSTMENT_PLAIN_H
#define REFERENCE_ADJUSTMENT_PLAIN_H

#include "GNSS/GNSSLinCombs.h"
#include "KorvanC.h"
#include "SetUnknowns.h"
#include "inv_plain.h"

#include <cmath>
#include <iomanip>
#include <iostream>
#include <vector>

/// The adjustment as it is told: every pass looks up and computes all of each record anew, adds to
/// the whole of N with checked access, and every solution inverts.
class PlainAdjustment {
public:
  explicit PlainAdjustment(KorvanC& ctx) : ctx_(ctx) {}

  void Run() {
    std::cout << "ESTIMATION OF IONOSPHERIC DELAY:\n--------------------------------\n\n"
              << "PROCESSING DATA:\n";
    int niter = 1;
    do {
      Iterate();
      ++niter;
    } while (!(dcorr_ < ctx_.IterThres) && niter <= ctx_.MaxIter);
    ctx_.IterDone = niter - 1;
    ctx_.IterThresFin = static_cast<double>(dcorr_);
    Summary();
    if (!ctx_.isThresBlunder && !ctx_.isThresBlunderL4) return;
    ctx_.NObsOutl = 0;
    std::cout << "PROCESSING DATA - OUTLIER DETECTION:\n";
    Pass(false);
    Solve();
    Summary();
  }

private:
  struct Term {
    long unknown;
    long double a;
  };
  struct Equation {
    std::vector<Term> terms;
    long double f = 0;
    void Add(long unknown, long double a) {
      if (unknown >= 0) terms.push_back({unknown, a});
    }
  };

  void Iterate() {
    for (long i = 0; i < ctx_.NUnk; ++i) {
      ctx_.tall(i) = 0;
      for (long j = 0; j < ctx_.NUnk; ++j) ctx_.Nall(i, j) = 0;
    }
    ctx_.vtPv = 0;
    ctx_.NObsOutl = 0;
    ctx_.ObsPerUnk.Resize(ctx_.NUnk, 1, 0);
    const long n = ctx_.rnxd.nsatall;
    if (ctx_.ifCodeObs && ctx_.rnxh.iPC1) ctx_.ifOP1C1.Resize(n, 1, false);
    if (ctx_.ifCodeObs && ctx_.rnxh.iPC4) ctx_.ifOP2C1.Resize(n, 1, false);
    if (ctx_.ifPhaseObs && ctx_.rnxh.iL4) ctx_.ifOL4.Resize(n, 1, false);
    Pass(true);
    for (long a = 0; a < ctx_.NUnk; ++a)
      if (ctx_.ObsPerUnk(a) == 0) ctx_.Nall(a, a) = 1;
    Solve();
  }

  /// Over all records: adds to the normal equations, or takes outliers out of them.
  void Pass(bool adds) {
    ctx_.iIono = 0;
    long k = 0;
    for (long i = 0; i < ctx_.rnxd.nepochall; ++i) {
      if (ctx_.ifEstION && ctx_.IonoEstInd(ctx_.iIono, 1) < i) ++ctx_.iIono;
      for (const long end = k + ctx_.rnxd.nsat(i); k < end; ++k) Visit(i, k, adds);
    }
  }

  void Visit(long i, long k, bool adds) {
    const RINEXData& store = ctx_.rnxd;
    const long double pi = 3.141592653589793;
    if (!(ctx_.ELV(k) > pi * ctx_.MinElevation / 180)) return;
    const short s = store.sat(k);
    const bool gps = s <= 99;
    if (gps ? !ctx_.isGPS : !(s <= 199 && ctx_.isGLN)) return;

    long ixP1C1 = -1;
    long ixP2C1 = -1;
    long row = 0;
    GetIndexSatDCB(s, store.satList, ctx_.ixbSAT, store.satList.Length(), ixP1C1, ixP2C1, row);
    const long double alpha1 = gps ? 1 : GLONASSc::alphaG(s - 101, 0);
    const long double alpha2 =
        gps ? (77.0L / 60.0L) * (77.0L / 60.0L) : GLONASSc::alphaG(s - 101, 1);

    Equation ion; // what P2-C1 and L4 have in common
    if (ctx_.ifEstION) {
      const long double z = std::asin(6371.0L / (6371.0L + 450.0L) * std::cos(1.0L * ctx_.ELV(k)));
      const long double a = -(alpha2 - alpha1) / std::cos(z);
      const long double east = a * std::sin(ctx_.AZM(k)) * std::tan(z);
      const long double north = a * std::cos(ctx_.AZM(k)) * std::tan(z);
      const long q = ctx_.iIono;
      const long double dt = (store.epoch(i) - store.epoch(ctx_.IonoEstInd(q, 0))) / 3600;
      const long u = ctx_.NUnkDCB + ctx_.nAmb + ctx_.NIonUnkT * q;
      ion.f = -a * (ctx_.xION(q, 0) + dt * ctx_.xION(q, 1));
      ion.Add(u, a);
      ion.Add(u + 1, dt * a);
      if (ctx_.ifEstIGrad) {
        ion.f = ion.f - (east * ctx_.xIGRAD(q, 0) + north * ctx_.xIGRAD(q, 1));
        ion.Add(u + 2, east);
        ion.Add(u + 3, north);
      }
    }

    const bool hasP1C1 = ctx_.ifCodeObs && ctx_.rnxh.iPC1 && !store.PC1(k).IsNull();
    const bool hasP2C1 = ctx_.ifCodeObs && ctx_.rnxh.iPC4 && !store.PC4(k).IsNull();
    long arc = -1;
    long searched = 0;
    GetAmbIndex(s, i, ctx_.AmbIndex, ctx_.AmbSat, ctx_.nAmb, arc, searched);
    const bool hasL4 = ctx_.ifPhaseObs && ctx_.rnxh.iL4 && !store.L4(k).IsNull() && arc >= 0;

    Equation e1;
    if (hasP1C1) {
      AddBiases(gps, ctx_.ixP1C1, ctx_.xP1C1, ixP1C1, row, 0, e1);
      e1.f -= store.PC1(k).GetObs();
    }
    Equation e2;
    if (hasP2C1) {
      AddBiases(gps, ctx_.ixP2C1, ctx_.xP2C1, ixP2C1, row, 1, e2);
      e2.terms.insert(e2.terms.end(), ion.terms.begin(), ion.terms.end());
      e2.f += ion.f;
      e2.f -= store.P2(k).GetObs() - store.C1(k).GetObs();
    }
    Equation e4;
    if (hasL4) {
      e4.Add(ctx_.ixAmb(arc), -1);
      e4.terms.insert(e4.terms.end(), ion.terms.begin(), ion.terms.end());
      e4.f = ctx_.xAmb(arc) - store.L4(k).GetObs();
      e4.f += ion.f;
    }

    const long double w = ctx_.WGHT(k);
    const long double pCode = 2.0L / 3.0L * w;
    const long double pCross = -1.0L / 3.0L * w;
    const long double pL4 = w * ctx_.WPh2Code;
    if (adds) {
      if (hasP1C1) {
        if (ctx_.isMaxfDiff && std::fabs(e1.f) > ctx_.MaxfDiffP1C1)
          return Outlier(i, s, "  OUTLIER P1-C1 (F): ", e1.f, 3);
        Use(e1, pCode, ctx_.ifOP1C1(k));
      }
      if (hasP2C1) {
        if (ctx_.isMaxfDiff && std::fabs(e2.f) > ctx_.MaxfDiff)
          return Outlier(i, s, "  OUTLIER P2-C1 (F): ", e2.f, 3);
        Use(e2, pCode, ctx_.ifOP2C1(k));
      }
      if (hasP1C1 && hasP2C1) AddPair(e1, e2, pCross);
      if (hasL4) Use(e4, pL4, ctx_.ifOL4(k));
      return;
    }
    const auto takeOut = [&](const Equation& e, long double p, matrix<bool>& flags,
                             const char* label, int decimals) {
      flags(k) = false;
      --ctx_.NObs;
      Outlier(i, s, label, e.f, decimals);
      Add(e, -p);
    };
    if (ctx_.isThresBlunder) {
      const bool out1 = hasP1C1 && std::fabs(e1.f) > ctx_.ThresBlunder;
      const bool out2 = hasP2C1 && std::fabs(e2.f) > ctx_.ThresBlunder;
      if (out1) takeOut(e1, pCode, ctx_.ifOP1C1, "  OUTLIER P1-C1 (V): ", 3);
      if (out2) takeOut(e2, pCode, ctx_.ifOP2C1, "  OUTLIER P2-C1 (V): ", 3);
      if (hasP1C1 && hasP2C1 && (out1 || out2)) AddPair(e1, e2, -pCross);
    }
    if (ctx_.isThresBlunderL4 && hasL4 && std::fabs(e4.f) > ctx_.ThresBlunderL4)
      takeOut(e4, pL4, ctx_.ifOL4, "  OUTLIER L1-L2 (V): ", 4);
  }

  void AddBiases(bool gps, long ixReceiver, long double receiver, long ixSatellite, long row,
                 long column, Equation& e) const {
    if (gps && ixReceiver >= 0) {
      e.Add(ixReceiver, -1);
      e.f += receiver;
    }
    if (ixSatellite >= 0) {
      e.Add(ixSatellite, -1);
      e.f += ctx_.xbSAT(row, column);
    }
  }

  void Outlier(long i, short s, const char* label, long double f, int decimals) {
    ++ctx_.NObsOutl;
    std::cout << "  EPH: " << std::setw(7) << i << "  " << ctx_.rnxd.epoch(i)
              << "   PRN: " << std::setw(4) << s << label << std::setprecision(decimals)
              << std::setw(10) << f << '\n';
  }

  void Use(const Equation& e, long double p, bool& flag) {
    flag = true;
    ++ctx_.NObs;
    Add(e, p);
    for (const Term& t : e.terms) ++ctx_.ObsPerUnk(t.unknown);
  }

  void Add(const Equation& e, long double p) {
    for (const Term& row : e.terms) {
      for (const Term& column : e.terms)
        ctx_.Nall(row.unknown, column.unknown) += row.a * column.a * p;
      ctx_.tall(row.unknown) += e.f * row.a * p;
    }
    ctx_.vtPv += p * (e.f * e.f);
  }

  void AddPair(const Equation& e1, const Equation& e2, long double p) {
    for (const Term& t1 : e1.terms)
      for (const Term& t2 : e2.terms) {
        ctx_.Nall(t1.unknown, t2.unknown) += t1.a * t2.a * p;
        ctx_.Nall(t2.unknown, t1.unknown) += t1.a * t2.a * p;
      }
    for (const Term& t1 : e1.terms) ctx_.tall(t1.unknown) += e2.f * t1.a * p;
    for (const Term& t2 : e2.terms) ctx_.tall(t2.unknown) += e1.f * t2.a * p;
    ctx_.vtPv += 2 * p * e1.f * e2.f;
  }

  void Solve() {
    ctx_.QxxAll = inv_plain(ctx_.Nall);
    const long n = ctx_.Nall.NRow();
    ctx_.xAll.Resize(n, 1);
    for (long i = 0; i < n; ++i) {
      long double sum = 0;
      for (long j = 0; j < n; ++j) sum += ctx_.QxxAll(i, j) * ctx_.tall(j);
      ctx_.xAll(i) = sum;
    }
    long double square = 0;
    for (long i = 0; i < ctx_.NUnk; ++i) square += ctx_.xAll(i) * ctx_.xAll(i);
    dcorr_ = std::sqrt(square);
    ctx_.NRed = static_cast<long double>(ctx_.nIonoConst + (ctx_.NObs - ctx_.NUnk));
    ctx_.s0apost = ctx_.NRed == 0 ? 0 : ctx_.vtPv / ctx_.NRed;
    if (ctx_.ixP1C1 >= 0) ctx_.xP1C1 += ctx_.xAll(ctx_.ixP1C1);
    if (ctx_.ixP2C1 >= 0) ctx_.xP2C1 += ctx_.xAll(ctx_.ixP2C1);
    for (long j = 0; j < ctx_.ixbSAT.Length(); ++j)
      if (ctx_.ixbSAT(j) >= 0) ctx_.xbSAT(j) += ctx_.xAll(ctx_.ixbSAT(j));
    if (ctx_.ifPhaseObs)
      for (long j = 0; j < ctx_.nAmb; ++j) ctx_.xAmb(j) += ctx_.xAll(ctx_.ixAmb(j));
    if (!ctx_.ifEstION) return;
    for (long q = 0; q < ctx_.nIono; ++q) {
      const long u = ctx_.NUnkDCB + ctx_.nAmb + ctx_.NIonUnkT * q;
      for (long c = 0; c < 2; ++c) {
        ctx_.xION(q, c) += ctx_.xAll(u + c);
        if (ctx_.ifEstIGrad) ctx_.xIGRAD(q, c) += ctx_.xAll(u + 2 + c);
      }
    }
  }

  void Summary() const {
    std::cout << "  DONE!        #OBS: " << std::setw(10) << ctx_.NObs
              << "     #UNK: " << std::setw(10) << ctx_.NUnk << "     #OUT: " << std::setw(10)
              << ctx_.NObsOutl << "      REF. VAR. APOSTERORI: " << std::setprecision(4)
              << std::setw(10) << ctx_.s0apost << "    [SQRT]: " << std::setprecision(3)
              << std::setw(10) << std::sqrt(ctx_.s0apost) << "\n\n";
  }

  KorvanC& ctx_;
  long double dcorr_ = 0;
};

#endif
