#include "GNSS/g_lg.h"

#include "GNSS/xyz_flh.h"

#include <cmath>

namespace {

// Rotation from the global to the local frame at a latitude and longitude.
class LocalFrame {
public:
  LocalFrame(long double f, long double l)
      : sinf(std::sin(f)), cosf(std::cos(f)), sinl(std::sin(l)), cosl(std::cos(l)) {}

  neu ToLocal(long double x, long double y, long double z) const {
    return {-sinf * cosl * x - sinf * sinl * y + cosf * z, -sinl * x + cosl * y,
            cosf * cosl * x + cosf * sinl * y + sinf * z};
  }

  xyz ToGlobal(long double n, long double e, long double u) const {
    return {-sinf * cosl * n - sinl * e + cosf * cosl * u,
            -sinf * sinl * n + cosl * e + cosf * sinl * u, cosf * n + sinf * u};
  }

  void Propagate(const matrix<long double>& Cg, matrix<long double>& Cl) const {
    const long double R[3][3] = {
        {-sinf * cosl, -sinf * sinl, cosf}, {-sinl, cosl, 0}, {cosf * cosl, cosf * sinl, sinf}};
    long double RC[3][3] = {};
    for (long i = 0; i < 3; ++i)
      for (long j = 0; j < 3; ++j)
        for (long k = 0; k < 3; ++k) RC[i][j] += R[i][k] * Cg(k, j);
    for (long i = 0; i < 3; ++i)
      for (long j = 0; j < 3; ++j) {
        Cl(i, j) = 0;
        for (long k = 0; k < 3; ++k) Cl(i, j) += RC[i][k] * R[j][k];
      }
  }

private:
  long double sinf;
  long double cosf;
  long double sinl;
  long double cosl;
};

LocalFrame FrameAt(const flh& p) { return {p.GetF(), p.GetL()}; }
LocalFrame FrameAt(const flht& p) { return {p.GetF(), p.GetL()}; }

neut ToLocal(const LocalFrame& frame, const xyzt& d) {
  const neu v = frame.ToLocal(d.GetX(), d.GetY(), d.GetZ());
  return {v.GetN(), v.GetE(), v.GetU(), d.GetT()};
}

} // namespace

neu g2lg(const xyz& d, const flh& p) { return FrameAt(p).ToLocal(d.GetX(), d.GetY(), d.GetZ()); }

neu g2lg(const xyz& d, const xyz& p, const elipsoid& ell) { return g2lg(d, xyz2flh(p, ell)); }

void g2lg(const matrix<long double>& Cg, const flh& p, matrix<long double>& Cl) {
  FrameAt(p).Propagate(Cg, Cl);
}

void g2lg(const matrix<long double>& Cg, const flht& p, matrix<long double>& Cl) {
  FrameAt(p).Propagate(Cg, Cl);
}

xyz lg2g(const neu& v, const flh& p) { return FrameAt(p).ToGlobal(v.GetN(), v.GetE(), v.GetU()); }

xyz lg2g(const neu& v, const xyz& p, const elipsoid& ell) { return lg2g(v, xyz2flh(p, ell)); }

neut gt2lgt(const xyzt& d, const flht& p) { return ToLocal(FrameAt(p), d); }
neut gt2lgt(const xyzt& d, const flh& p) { return ToLocal(FrameAt(p), d); }

neut gt2lgt(const xyzt& d, const xyzt& p, const elipsoid& ell) {
  return gt2lgt(d, xyzt2flht(p, ell));
}

xyzt lgt2gt(const neut& v, const flht& p) {
  const xyz d = FrameAt(p).ToGlobal(v.GetN(), v.GetE(), v.GetU());
  return {d.GetX(), d.GetY(), d.GetZ(), v.GetT()};
}

xyzt lgt2gt(const neut& v, const xyzt& p, const elipsoid& ell) {
  return lgt2gt(v, xyzt2flht(p, ell));
}
