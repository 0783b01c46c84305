#include "GNSS/flh.h"

#include "GNSS/CoordinateField.h"
#include "GNSS/ValueError.h"
#include "funkcije/KotnePretvorbe.h"

#include <istream>
#include <ostream>

namespace {

enum AngleUnit : unsigned short { kRadians = 0, kDegrees = 1, kPacked = 2, kSeparate = 3 };

// Degrees in the checks: a value that is not a number is outside of every range.
bool IsWithin(long double value, long double bound) { return value >= -bound && value <= bound; }

void WriteAngle(std::ostream& out, long double angle, unsigned short unit, int width,
                int decimals) {
  switch (unit) {
  case kRadians:
    return WriteField(out, angle, width, decimals);
  case kDegrees:
    return WriteField(out, rad2deg(angle), width, decimals);
  case kPacked:
    return WriteField(out, rad2dms(angle), width, decimals);
  case kSeparate:
    out << dms2dms(rad2dms(angle), decimals);
    return;
  default:
    return;
  }
}

long double ReadSeparateAngle(std::istream& in) {
  int d = 0, m = 0;
  double s = 0;
  in >> d >> m >> s;
  return deg2rad(static_cast<long double>(s) / 3600 + static_cast<long double>(m) / 60 + d);
}

long double ReadAngle(std::istream& in, unsigned short unit) {
  if (unit == kSeparate) return ReadSeparateAngle(in);
  if (unit > kSeparate) return 0;
  long double angle = 0;
  in >> angle;
  if (unit == kDegrees) return deg2rad(angle);
  if (unit == kPacked) return dms2rad(angle);
  return angle;
}

} // namespace

flh::flh(long double f_, long double l_, long double h_) : f(f_), l(l_), h(h_) { TestPos(); }

flh::flh(const flh& p) : f(p.f), l(p.l), h(p.h) { TestPos(); }

flh& flh::operator=(const flh& p) {
  Set(p.f, p.l, p.h);
  TestPos();
  return *this;
}

flh& flh::operator+=(const flh& p) {
  f += p.f;
  l += p.l;
  h += p.h;
  TestPos();
  return *this;
}

flh& flh::operator-=(const flh& p) {
  f -= p.f;
  l -= p.l;
  h -= p.h;
  TestPos();
  return *this;
}

bool flh::operator==(const flh& p) const {
  return this == &p || (SameComponent(f, p.f) && SameComponent(l, p.l) && SameComponent(h, p.h));
}

bool flh::TestFi() const { return IsWithin(f, 90); }
bool flh::TestLa() const { return IsWithin(f, 180); }

void flh::TestPos() const {
  if (!TestFi()) Error("LATITUDE not valid");
  if (!TestLa()) Error("LONGITUDE not valid");
}

void flh::Error(const char* msg) const { ValueError("flh", msg); }

flht::flht(long double f_, long double l_, long double h_, long double dt_)
    : f(f_), l(l_), h(h_), dt(dt_) {
  TestPos();
}

flht::flht(const flht& p) : f(p.f), l(p.l), h(p.h), dt(p.dt) { TestPos(); }

flht& flht::operator=(const flht& p) {
  Set(p.f, p.l, p.h, p.dt);
  TestPos();
  return *this;
}

flht& flht::operator+=(const flht& p) {
  f += p.f;
  l += p.l;
  h += p.h;
  dt += p.dt;
  TestPos();
  return *this;
}

flht& flht::operator-=(const flht& p) {
  f -= p.f;
  l -= p.l;
  h -= p.h;
  dt -= p.dt;
  TestPos();
  return *this;
}

bool flht::operator==(const flht& p) const {
  return this == &p || (SameComponent(f, p.f) && SameComponent(l, p.l) && SameComponent(h, p.h) &&
                        SameComponent(dt, p.dt));
}

bool flht::TestFi() const { return IsWithin(f, 90); }
bool flht::TestLa() const { return IsWithin(f, 180); }

void flht::TestPos() const {
  if (!TestFi()) Error("LATITUDE not valid");
  if (!TestLa()) Error("LONGITUDE not valid");
}

void flht::Error(const char* msg) const { ValueError("flht", msg); }

flh operator+(const flh& a, const flh& b) {
  flh sum = a;
  sum += b;
  return sum;
}

flh operator-(const flh& a, const flh& b) {
  flh difference = a;
  difference -= b;
  return difference;
}

flht operator+(const flht& a, const flht& b) {
  flht sum = a;
  sum += b;
  return sum;
}

flht operator-(const flht& a, const flht& b) {
  flht difference = a;
  difference -= b;
  return difference;
}

std::ostream& operator<<(std::ostream& out, const flh& p) {
  out << std::fixed;
  WriteAngle(out, p.GetF(), flhns::Unit, flhns::WidthFL, flhns::NDecFL);
  WriteAngle(out, p.GetL(), flhns::Unit, flhns::WidthFL, flhns::NDecFL);
  WriteField(out, p.GetH(), flhns::WidthH, flhns::NDecH);
  return out;
}

std::ostream& operator<<(std::ostream& out, const flht& p) {
  out << std::fixed;
  WriteAngle(out, p.GetF(), flhtns::Unit, flhtns::WidthFL, flhtns::NDecFL);
  WriteAngle(out, p.GetL(), flhtns::Unit, flhtns::WidthFL, flhtns::NDecFL);
  WriteField(out, p.GetH(), flhtns::WidthH, flhtns::NDecH);
  WriteField(out, flhtns::UnitT * p.GetT(), flhtns::WidthT, flhtns::NDecT);
  return out;
}

std::istream& operator>>(std::istream& in, flh& p) {
  const long double f = ReadAngle(in, flhns::Unit);
  const long double l = ReadAngle(in, flhns::Unit);
  long double h = 0;
  if (in >> h) p.Set(f, l, h);
  return in;
}

std::istream& operator>>(std::istream& in, flht& p) {
  const long double f = ReadAngle(in, flhtns::Unit);
  const long double l = ReadAngle(in, flhtns::Unit);
  long double h = 0, dt = 0;
  if (in >> h >> dt) p.Set(f, l, h, dt);
  return in;
}
