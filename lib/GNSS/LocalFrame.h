#ifndef GNSS_LOCALFRAME_H
#define GNSS_LOCALFRAME_H

#include "GNSS/flh.h"
#include "GNSS/neu.h"
#include "GNSS/xyz.h"
#include "matrix/matrix.h"

#include <cmath>

/// The rotation between the Earth-fixed frame and north, east, up at one place: its sines and
/// cosines, taken once for however many vectors are turned.
class LocalFrame {
public:
  /// \param f  geodetic latitude [rad]
  /// \param l  longitude [rad]
  LocalFrame(long double f, long double l)
      : sinf(std::sin(f)), cosf(std::cos(f)), sinl(std::sin(l)), cosl(std::cos(l)) {}
  explicit LocalFrame(const flh& p) : LocalFrame(p.GetF(), p.GetL()) {}
  explicit LocalFrame(const flht& p) : LocalFrame(p.GetF(), p.GetL()) {}

  neu ToLocal(long double x, long double y, long double z) const {
    return {-sinf * cosl * x - sinf * sinl * y + cosf * z, -sinl * x + cosl * y,
            cosf * cosl * x + cosf * sinl * y + sinf * z};
  }

  xyz ToGlobal(long double n, long double e, long double u) const {
    return {-sinf * cosl * n - sinl * e + cosf * cosl * u,
            -sinf * sinl * n + cosl * e + cosf * sinl * u, cosf * n + sinf * u};
  }

  /// \p Cl = R \p Cg RT, with R the rotation to the local frame.
  void Propagate(const matrix<long double>& Cg, matrix<long double>& Cl) const;

private:
  long double sinf;
  long double cosf;
  long double sinl;
  long double cosl;
};

#endif
