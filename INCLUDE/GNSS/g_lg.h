#ifndef GNSS_G_LG_H
#define GNSS_G_LG_H

#include "GNSS/elipsoid.h"
#include "GNSS/flh.h"
#include "GNSS/neu.h"
#include "GNSS/xyz.h"
#include "matrix/matrix.h"

/// Rotations between the global frame (Earth-centred, Earth-fixed) and the local frame of a
/// point: north and east in the horizon, up along the ellipsoid normal. With latitude f and
/// longitude l of the point the rows of the rotation R are
///
///     n = (-sin f cos l, -sin f sin l, cos f)
///     e = (-sin l, cos l, 0)
///     u = (cos f cos l, cos f sin l, sin f)
///
/// Vectors are turned only: they are differences, not positions. A point given by Cartesian
/// coordinates is converted first (xyz2flh, or xyzt2flht for xyzt).

/// R d: the global vector \p d in the local frame at \p p.
neu g2lg(const xyz& d, const flh& p);
neu g2lg(const xyz& d, const xyz& p, const elipsoid& ell);
/// R Cg RT: the covariance matrix of the global components, in the local frame at \p p.
/// \param Cg  its first 3 rows and columns are read
/// \param Cl  its first 3 rows and columns are written; it must have them. It may be Cg.
void g2lg(const matrix<long double>& Cg, const flh& p, matrix<long double>& Cl);
void g2lg(const matrix<long double>& Cg, const flht& p, matrix<long double>& Cl);

/// RT v: the local vector \p v at \p p in the global frame.
xyz lg2g(const neu& v, const flh& p);
xyz lg2g(const neu& v, const xyz& p, const elipsoid& ell);

/// As g2lg; dt of \p d is copied.
neut gt2lgt(const xyzt& d, const flht& p);
neut gt2lgt(const xyzt& d, const flh& p);
neut gt2lgt(const xyzt& d, const xyzt& p, const elipsoid& ell);

/// As lg2g; dt of \p v is copied.
xyzt lgt2gt(const neut& v, const flht& p);
xyzt lgt2gt(const neut& v, const xyzt& p, const elipsoid& ell);

#endif
