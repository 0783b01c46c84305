#include "GNSS/g_lg.h"

#include "GNSS/xyz_flh.h"
#include "LocalFrame.h"

void LocalFrame::Propagate(const matrix<long double>& Cg, matrix<long double>& Cl) const {
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

namespace {

neut ToLocal(const LocalFrame& frame, const xyzt& d) {
  const neu v = frame.ToLocal(d.GetX(), d.GetY(), d.GetZ());
  return {v.GetN(), v.GetE(), v.GetU(), d.GetT()};
}

} // namespace

neu g2lg(const xyz& d, const flh& p) { return LocalFrame(p).ToLocal(d.GetX(), d.GetY(), d.GetZ()); }

neu g2lg(const xyz& d, const xyz& p, const elipsoid& ell) { return g2lg(d, xyz2flh(p, ell)); }

void g2lg(const matrix<long double>& Cg, const flh& p, matrix<long double>& Cl) {
  LocalFrame(p).Propagate(Cg, Cl);
}

void g2lg(const matrix<long double>& Cg, const flht& p, matrix<long double>& Cl) {
  LocalFrame(p).Propagate(Cg, Cl);
}

xyz lg2g(const neu& v, const flh& p) {
  return LocalFrame(p).ToGlobal(v.GetN(), v.GetE(), v.GetU());
}

xyz lg2g(const neu& v, const xyz& p, const elipsoid& ell) { return lg2g(v, xyz2flh(p, ell)); }

neut gt2lgt(const xyzt& d, const flht& p) { return ToLocal(LocalFrame(p), d); }
neut gt2lgt(const xyzt& d, const flh& p) { return ToLocal(LocalFrame(p), d); }

neut gt2lgt(const xyzt& d, const xyzt& p, const elipsoid& ell) {
  return gt2lgt(d, xyzt2flht(p, ell));
}

xyzt lgt2gt(const neut& v, const flht& p) {
  const xyz d = LocalFrame(p).ToGlobal(v.GetN(), v.GetE(), v.GetU());
  return {d.GetX(), d.GetY(), d.GetZ(), v.GetT()};
}

xyzt lgt2gt(const neut& v, const xyzt& p, const elipsoid& ell) {
  return lgt2gt(v, xyzt2flht(p, ell));
}
