#include "GNSS/xyz.h"

#include "GNSS/CoordinateField.h"

#include <cmath>
#include <istream>
#include <ostream>

namespace {

// Squares of components are taken in these units, far from the ends of the exponent range.
constexpr long double kScale = 1e-6;

long double Norm(long double x, long double y, long double z) {
  return std::sqrt(x * x + y * y + z * z);
}

struct Pair {
  long double a;
  long double b;
};

// The pair (a, b) of components, turned counter-clockwise by angle.
Pair Turned(long double angle, long double a, long double b) {
  const long double s = std::sin(angle);
  const long double c = std::cos(angle);
  return {a * c - b * s, a * s + b * c};
}

xyz WithoutTime(const xyzt& v) { return {v.GetX(), v.GetY(), v.GetZ()}; }

bool IsCentiOrMilli(long double unit) { return unit == 100 || unit == 1000; }

} // namespace

long double xyz::GetLength() const { return Norm(x, y, z); }

xyz xyz::GetUnitVector(long double L) const {
  const long double s = Norm(kScale * x, kScale * y, kScale * z);
  return {kScale * L * x / s, kScale * L * y / s, kScale * L * z / s};
}

xyz xyz::RotateX(long double a) const {
  const Pair yz = Turned(a, y, z);
  return {x, yz.a, yz.b};
}

xyz xyz::RotateY(long double a) const {
  const Pair zx = Turned(a, z, x);
  return {zx.b, y, zx.a};
}

xyz xyz::RotateZ(long double a) const {
  const Pair xy = Turned(a, x, y);
  return {xy.a, xy.b, z};
}

xyz& xyz::operator+=(const xyz& v) {
  x += v.x;
  y += v.y;
  z += v.z;
  return *this;
}

xyz& xyz::operator-=(const xyz& v) {
  x -= v.x;
  y -= v.y;
  z -= v.z;
  return *this;
}

xyz& xyz::operator+=(const xyzt& v) { return *this += WithoutTime(v); }
xyz& xyz::operator-=(const xyzt& v) { return *this -= WithoutTime(v); }

xyz& xyz::operator*=(long double s) {
  x *= s;
  y *= s;
  z *= s;
  return *this;
}

xyz& xyz::operator/=(long double s) {
  x /= s;
  y /= s;
  z /= s;
  return *this;
}

bool xyz::operator==(const xyz& v) const {
  return this == &v || (SameComponent(x, v.x) && SameComponent(y, v.y) && SameComponent(z, v.z));
}

long double xyzt::GetLength() const { return Norm(x, y, z); }

xyzt xyzt::GetUnitVector(long double L) const {
  const xyz unit = WithoutTime(*this).GetUnitVector(L);
  return {unit.GetX(), unit.GetY(), unit.GetZ(), 0};
}

xyzt xyzt::RotateX(long double a) const {
  const Pair yz = Turned(a, y, z);
  return {x, yz.a, yz.b, dt};
}

xyzt xyzt::RotateY(long double a) const {
  const Pair zx = Turned(a, z, x);
  return {zx.b, y, zx.a, dt};
}

xyzt xyzt::RotateZ(long double a) const {
  const Pair xy = Turned(a, x, y);
  return {xy.a, xy.b, z, dt};
}

xyzt& xyzt::operator+=(const xyzt& v) {
  x += v.x;
  y += v.y;
  z += v.z;
  dt += v.dt;
  return *this;
}

xyzt& xyzt::operator-=(const xyzt& v) {
  x -= v.x;
  y -= v.y;
  z -= v.z;
  dt -= v.dt;
  return *this;
}

xyzt& xyzt::operator*=(long double s) {
  x *= s;
  y *= s;
  z *= s;
  return *this;
}

xyzt& xyzt::operator/=(long double s) {
  x /= s;
  y /= s;
  z /= s;
  return *this;
}

bool xyzt::operator==(const xyzt& v) const {
  return this == &v || (SameComponent(x, v.x) && SameComponent(y, v.y) && SameComponent(z, v.z) &&
                        SameComponent(dt, v.dt));
}

xyz operator+(const xyz& a, const xyz& b) { return xyz(a) += b; }
xyz operator-(const xyz& a, const xyz& b) {
  return {a.GetX() - b.GetX(), a.GetY() - b.GetY(), a.GetZ() - b.GetZ()};
}
xyz operator+(const xyz& a, const xyzt& b) { return xyz(a) += b; }
xyz operator-(const xyz& a, const xyzt& b) {
  return {a.GetX() - b.GetX(), a.GetY() - b.GetY(), a.GetZ() - b.GetZ()};
}
xyz operator+(const xyzt& a, const xyz& b) { return WithoutTime(a) += b; }
xyz operator-(const xyzt& a, const xyz& b) { return WithoutTime(a) -= b; }
xyzt operator+(const xyzt& a, const xyzt& b) { return xyzt(a) += b; }
xyzt operator-(const xyzt& a, const xyzt& b) { return xyzt(a) -= b; }
xyz operator*(const xyz& v, long double s) { return {v.GetX() * s, v.GetY() * s, v.GetZ() * s}; }
xyz operator*(long double s, const xyz& v) { return v * s; }

long double operator*(const xyz& a, const xyz& b) {
  return a.GetX() * b.GetX() + a.GetY() * b.GetY() + a.GetZ() * b.GetZ();
}

long double operator*(const xyz& a, const xyzt& b) { return a * WithoutTime(b); }

xyz CrossP(const xyz& a, const xyz& b) {
  return {a.GetY() * b.GetZ() - a.GetZ() * b.GetY(), a.GetZ() * b.GetX() - a.GetX() * b.GetZ(),
          a.GetX() * b.GetY() - a.GetY() * b.GetX()};
}

xyz ElementP(const xyz& a, const xyz& b) {
  return {a.GetX() * b.GetX(), a.GetY() * b.GetY(), a.GetZ() * b.GetZ()};
}

xyz sqrt(const xyz& v) { return {std::sqrt(v.GetX()), std::sqrt(v.GetY()), std::sqrt(v.GetZ())}; }

std::ostream& operator<<(std::ostream& out, const xyz& v) {
  out << std::fixed;
  for (const long double c : {v.GetX(), v.GetY(), v.GetZ()})
    WriteField(out, IsCentiOrMilli(xyzns::Unit) ? c * xyzns::Unit : c / xyzns::Unit, xyzns::Width,
               xyzns::NDec);
  return out;
}

std::ostream& operator<<(std::ostream& out, const xyzt& v) {
  out << std::fixed;
  for (const long double c : {v.GetX(), v.GetY(), v.GetZ()})
    WriteField(out, xyztns::Unit == 100 ? c * xyztns::Unit : c / xyztns::Unit, xyztns::Width,
               xyztns::NDec);
  if (xyztns::PrintTime == 1)
    WriteField(out, xyztns::UnitT * v.GetT(), xyztns::WidthT, xyztns::NDecT);
  return out;
}

std::istream& operator>>(std::istream& in, xyz& v) {
  long double x = 0, y = 0, z = 0;
  if (!(in >> x >> y >> z)) return in;
  v.Set(x, y, z);
  if (xyzns::Unit == 100)
    v /= xyzns::Unit;
  else
    v *= xyzns::Unit;
  return in;
}

std::istream& operator>>(std::istream& in, xyzt& v) {
  long double x = 0, y = 0, z = 0, dt = 0;
  if (in >> x >> y >> z >> dt) v.Set(x, y, z, dt);
  return in;
}
