#ifndef REFERENCE_ORBITS_PLAIN_H
#define REFERENCE_ORBITS_PLAIN_H

#include "GNSS/GLNbEph.h"
#include "GNSS/GNSSpEph.h"
#include "GNSS/TravelTime.h"
#include "PROGINC/ProgramError.h"

#include <array>
#include <cmath>
#include <vector>

/// Precise orbits, every node product multiplied out for every node, and velocity and clock in
/// every pass of the travel time.
class PreciseOrbit_plain {
public:
  /// \p interval [s] between the epochs of \p file
  PreciseOrbit_plain(const GNSSpEph& file, long double interval)
      : file_(file), interval_(interval) {}

  void CalcSatPosition(unsigned short satellite, const mjd& t, xyzt& pos, xyzt& vel) {
    Warn(t);
    at_ = t;
    PSisOK = DTisOK = false;
    long index = -1;
    for (long i = 0; i < file_.satList.NRow() && index < 0; ++i)
      if (file_.satList(i) == satellite) index = i;
    if (index < 0) return;
    PSisOK = DTisOK = true;
    p_ = v_ = xyzt();
    if (!AddPositions(index)) {
      PSisOK = DTisOK = false;
      return;
    }
    AddClocks(index);
    pos = p_;
    vel = v_;
  }

  long double CalcSatPosition(unsigned short satellite, const mjd& t, const xyz& rec, xyzt& pos,
                              xyzt& vel) {
    Warn(t);
    constexpr long double c = 299792458.0L;
    const long double omega = 7.2921151467e-5;
    long double tau = -0.075;
    long double change = 1;
    long double range = 0;
    int count = 0;
    while (change > 1e-5 && count <= 10) {
      mjd emission = t;
      emission += tau;
      CalcSatPosition(satellite, emission, pos, vel);
      if (!PSisOK) return -1;
      ps = rec.RotateZ(omega * -tau);
      range = (ps - pos).GetLength();
      change = std::fabs(range + c * tau);
      tau = -range / c;
      ++count;
    }
    if (count > 10) ProgramWarning("Zenta", "CalcSatPosition():      TO MANY ITERATIONS: > 10!!");
    Relativity = 2.0L * (pos.GetX() * (vel.GetX() / c) / c + pos.GetY() * (vel.GetY() / c) / c +
                         pos.GetZ() * (vel.GetZ() / c) / c);
    pos.SetT(pos.GetT() - Relativity);
    return range;
  }

  bool PSisOK = true;
  bool DTisOK = true;
  long double Relativity = 0;
  xyz ps;

private:
  struct Terms {
    long double product = 1;
    long double productOffNode = 1;
    long double sum = 0;
  };

  void Warn(const mjd& t) const {
    if (file_.epoch(0) - t > 900 || t - file_.epoch(file_.epoch.NRow() - 1) > 900)
      ProgramWarning("Zenta",
                     "CALCULATION EPOCH NOT IN EPOCH INTERVAL OF INPUT PRECISE ORBIT FILE!");
  }

  long First(int half) const {
    const long epochs = file_.epoch.NRow();
    const long at = static_cast<long>((at_ - file_.epoch(0)) / interval_);
    if (at - half + 1 < 0) return 0;
    return at + half > epochs - 1 ? epochs - 2 * half : at - half + 1;
  }

  Terms TermsOfNode(long first, long nodes, long k) const {
    Terms terms;
    bool onOther = false;
    for (long m = 0; m < nodes; ++m) {
      if (m == k) continue;
      const long double tau = (at_ - file_.epoch(first + m)) / 3600.0L;
      terms.product *= tau;
      if (!(std::fabs(tau) > 1e-10)) {
        onOther = true;
        continue;
      }
      terms.productOffNode *= tau;
      terms.sum += 1.0L / tau;
    }
    if (onOther) terms.sum = 1;
    return terms;
  }

  long double Denominator(long nodes, long k) const {
    long double d = 1;
    for (long j = 0; j < nodes; ++j)
      if (j != k) d *= interval_ * static_cast<long double>(k - j) / 3600.0L;
    return d;
  }

  bool AddPositions(long index) {
    constexpr long nodes = 14;
    const long first = First(nodes / 2);
    for (long k = 0; k < nodes; ++k) {
      const xyzt& node = file_.sPos(file_.satList.NRow() * (first + k) + index);
      if (std::fabs(node.GetX()) + std::fabs(node.GetY()) + std::fabs(node.GetZ()) < 1)
        return false;
      const Terms terms = TermsOfNode(first, nodes, k);
      const long double d = Denominator(nodes, k);
      const auto position = [&](long double x) { return terms.product * x / d; };
      const auto velocity = [&](long double x) {
        return terms.sum * terms.productOffNode * x / d / 3600.0L;
      };
      p_.SetX(p_.GetX() + position(node.GetX()));
      p_.SetY(p_.GetY() + position(node.GetY()));
      p_.SetZ(p_.GetZ() + position(node.GetZ()));
      v_.SetX(v_.GetX() + velocity(node.GetX()));
      v_.SetY(v_.GetY() + velocity(node.GetY()));
      v_.SetZ(v_.GetZ() + velocity(node.GetZ()));
    }
    return true;
  }

  void AddClocks(long index) {
    constexpr long nodes = 4;
    const long first = First(nodes / 2);
    for (long k = 0; k < nodes; ++k) {
      const long double clock = file_.sPos(file_.satList.NRow() * (first + k) + index).GetT();
      if (std::fabs(clock) > 0.9) {
        DTisOK = false;
        return;
      }
      p_.SetT(p_.GetT() + TermsOfNode(first, nodes, k).product * clock / Denominator(nodes, k));
    }
  }

  const GNSSpEph& file_;
  const long double interval_;
  mjd at_;
  xyzt p_;
  xyzt v_;
};

/// GLONASS broadcast orbits, integrated from the epoch of the record each time, and the record
/// looked for in the whole file.
class GlonassOrbit_plain {
public:
  explicit GlonassOrbit_plain(const GLNbEph& file) : file_(file) {}

  /// The record for \p tsel; the slot must have one.
  long GetDataIndex(short slot, const mjd& tsel) const {
    const GLNbEphData& d = file_.rdata;
    long previous = -1;
    for (long k = 0; k < d.nsatall; ++k) {
      if (d.sat(k) != slot) continue;
      if (previous < 0) {
        if (tsel < d.mjdo(k)) return k;
      } else if (tsel <= d.mjdo(k) && tsel > d.mjdo(previous)) {
        const long double days = tsel.GetMJDDec();
        return d.mjdo(k).GetMJDDec() - days < days - d.mjdo(previous).GetMJDDec() ? k : previous;
      }
      previous = k;
    }
    return previous;
  }

  void CalcSatPosition(short slot, const mjd& t, const mjd& tsel, xyzt& pos, xyzt& vel) {
    ++evaluations;
    const long k = GetDataIndex(slot, tsel);
    const auto metres = [this, k](long column) { return file_.rdata.data(k, column) * 1000.0L; };
    mjd te = file_.rdata.mjdo(k);
    te += file_.rhead.TauC;
    const long double dt = 86400.0L * (t.GetMJDDec() - te.GetMJDDec());
    const long double clock =
        file_.rdata.data(k, 0) - file_.rdata.data(k, 1) * dt + file_.rhead.TauC;
    State y = {metres(3), metres(7), metres(11), metres(4), metres(8), metres(12)};
    sun_ = {metres(5), metres(9), metres(13)};
    Integrate(y, te, t, dt < 0 ? -1 : 1);
    constexpr long double c = 299792458.0L;
    Relativity = 2.0L * (y[0] * y[3] + y[1] * y[4] + y[2] * y[5]) / (c * c);
    pos.Set(y[0], y[1], y[2], clock - Relativity);
    vel.Set(y[3], y[4], y[5], 0);
  }

  long double CalcSatPosition(short slot, const mjd& t, const mjd& tsel, const xyz& rec, xyzt& pos,
                              xyzt& vel) {
    mjd emission;
    return IterateTravelTime(t, rec, 7.292115e-5, 50, emission, ps,
                             [&]() -> const xyzt& {
                               CalcSatPosition(slot, emission, tsel, pos, vel);
                               return pos;
                             })
        .range;
  }

  long double Relativity = 0;
  xyz ps;
  unsigned long steps = 0;       ///< of Runge and Kutta
  unsigned long evaluations = 0; ///< at an epoch
  long double diffinterval = 30; ///< [s]

private:
  using State = std::array<long double, 6>;

  State Derivative(const State& y) const {
    const long double GM = 3.9860044e14;
    const long double omega = 7.292115e-5;
    const long double aE = 6378136.0;
    const long double C20 = -1.08263e-3;
    const long double r2 = y[0] * y[0] + y[1] * y[1] + y[2] * y[2];
    const long double r = std::sqrt(r2);
    const long double central = -GM / (r2 * r);
    const long double zonal = 1.5L * C20 * GM * aE * aE / (r2 * r2 * r);
    const long double z2 = 5.0L * y[2] * y[2] / r2;
    const long double inPlane = central + zonal * (1.0L - z2) + omega * omega;
    return {y[3],
            y[4],
            y[5],
            inPlane * y[0] + 2.0L * omega * y[4] + sun_[0],
            inPlane * y[1] - 2.0L * omega * y[3] + sun_[1],
            (central + zonal * (3.0L - z2)) * y[2] + sun_[2]};
  }

  void Integrate(State& y, mjd tc, const mjd& t, int direction) {
    long double h = static_cast<long double>(direction) * diffinterval;
    long double hd = h / 86400.0L;
    for (int count = 0; count < 501; ++count) {
      const long double left = t.GetMJDDec() - tc.GetMJDDec();
      if (std::fabs(left) < std::fabs(hd)) {
        hd = left;
        h = hd * 86400.0L;
      }
      if ((direction < 0 ? tc <= t : tc >= t) || std::fabs(h) < 1e-8) return;
      Step(y, h);
      tc += h;
    }
  }

  void Step(State& y, long double h) {
    ++steps;
    const auto along = [&y](const State& dy, long double by) {
      State moved;
      for (std::size_t i = 0; i < 6; ++i) moved[i] = y[i] + dy[i] * by;
      return moved;
    };
    const State k1 = Derivative(y);
    const State k2 = Derivative(along(k1, h / 2.0L));
    const State k3 = Derivative(along(k2, h / 2.0L));
    const State k4 = Derivative(along(k3, h));
    for (std::size_t i = 0; i < 6; ++i)
      y[i] += k1[i] * h / 6.0L + k2[i] * h / 3.0L + k3[i] * h / 3.0L + k4[i] * h / 6.0L;
  }

  const GLNbEph& file_;
  std::array<long double, 3> sun_{};
};

#endif
