#include "GNSS/neu.h"

#include "GNSS/CoordinateField.h"

#include <cmath>
#include <istream>
#include <ostream>

namespace {

long double Norm(long double n, long double e, long double u) {
  return std::sqrt(n * n + e * e + u * u);
}

bool IsCentiOrMilli(unsigned short unit) { return unit == 100 || unit == 1000; }

long double Printed(long double c) {
  return IsCentiOrMilli(neuns::Unit) ? c * neuns::Unit : c / neuns::Unit;
}

long double Read(long double c) {
  return IsCentiOrMilli(neuns::Unit) ? c / neuns::Unit : c * neuns::Unit;
}

} // namespace

long double neu::GetLength() const { return Norm(n, e, u); }

neu& neu::operator+=(const neu& v) {
  n += v.n;
  e += v.e;
  u += v.u;
  return *this;
}

neu& neu::operator-=(const neu& v) {
  n -= v.n;
  e -= v.e;
  u -= v.u;
  return *this;
}

neu& neu::operator/=(long double s) {
  n /= s;
  e /= s;
  u /= s;
  return *this;
}

bool neu::operator==(const neu& v) const {
  return this == &v || (SameComponent(n, v.n) && SameComponent(e, v.e) && SameComponent(u, v.u));
}

long double neut::GetLength() const { return Norm(n, e, u); }

neut& neut::operator+=(const neut& v) {
  n += v.n;
  e += v.e;
  u += v.u;
  dt += v.dt;
  return *this;
}

neut& neut::operator-=(const neut& v) {
  n -= v.n;
  e -= v.e;
  u -= v.u;
  dt -= v.dt;
  return *this;
}

bool neut::operator==(const neut& v) const {
  return this == &v || (SameComponent(n, v.n) && SameComponent(e, v.e) && SameComponent(u, v.u) &&
                        SameComponent(dt, v.dt));
}

neu operator+(const neu& a, const neu& b) { return neu(a) += b; }
neu operator-(const neu& a, const neu& b) { return neu(a) -= b; }
neut operator+(const neut& a, const neut& b) { return neut(a) += b; }
neut operator-(const neut& a, const neut& b) { return neut(a) -= b; }
neu operator*(const neu& v, long double s) { return {v.GetN() * s, v.GetE() * s, v.GetU() * s}; }
neu operator*(long double s, const neu& v) { return v * s; }

neu ElementP(const neu& a, const neu& b) {
  return {a.GetN() * b.GetN(), a.GetE() * b.GetE(), a.GetU() * b.GetU()};
}

neu sqrt(const neu& v) { return {std::sqrt(v.GetN()), std::sqrt(v.GetE()), std::sqrt(v.GetU())}; }

std::ostream& operator<<(std::ostream& out, const neu& v) {
  out << std::fixed;
  if (neuns::PrintType == 0) {
    for (const long double c : {v.GetU(), v.GetE(), v.GetN()}) WriteField(out, c, 14, 4);
    return out;
  }
  WriteField(out, Printed(v.GetN()), neuns::WidthNE, neuns::NDecNE);
  WriteField(out, Printed(v.GetE()), neuns::WidthNE, neuns::NDecNE);
  WriteField(out, Printed(v.GetU()), neuns::WidthU, neuns::NDecU);
  return out;
}

std::ostream& operator<<(std::ostream& out, const neut& v) {
  out << std::fixed;
  WriteField(out, v.GetN(), neutns::WidthNE, neutns::NDecNE);
  WriteField(out, v.GetE(), neutns::WidthNE, neutns::NDecNE);
  WriteField(out, v.GetU(), neutns::WidthU, neutns::NDecU);
  WriteField(out, neutns::UnitT * v.GetT(), neutns::WidthT, neutns::NDecT);
  return out;
}

std::istream& operator>>(std::istream& in, neu& v) {
  long double n = 0, e = 0, u = 0;
  if (in >> n >> e >> u) v.Set(Read(n), Read(e), Read(u));
  return in;
}

std::istream& operator>>(std::istream& in, neut& v) {
  long double n = 0, e = 0, u = 0, dt = 0;
  if (in >> n >> e >> u >> dt) v.Set(n, e, u, dt);
  return in;
}
