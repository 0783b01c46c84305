#ifndef GNSS_XYZ_H
#define GNSS_XYZ_H

#include <iosfwd>

/// Print and read settings of xyz, process-wide.
namespace xyzns {
inline unsigned short NDec = 4;    ///< decimals of x, y, z
inline unsigned short Width = 14;  ///< field width of x, y, z
inline unsigned short NDecT = 6;   ///< decimals of a time component; xyz has none
inline unsigned short WidthT = 12; ///< field width of a time component; xyz has none
/// Scale of x, y, z: 100 and 1000 multiply on output, anything else divides; 100 divides on
/// input, anything else (1000 too) multiplies.
inline long double Unit = 1.0L;
inline long double UnitT = 1.0L; ///< scale of a time component; xyz has none
} // namespace xyzns

/// Print settings of xyzt, process-wide.
namespace xyztns {
inline unsigned short NDec = 4;      ///< decimals of x, y, z
inline unsigned short Width = 14;    ///< field width of x, y, z
inline unsigned short NDecT = 6;     ///< decimals of dt
inline unsigned short WidthT = 12;   ///< field width of dt
inline unsigned short PrintTime = 1; ///< dt is printed only when this is 1
/// Scale of x, y, z on output: 100 multiplies, anything else divides (1000 too, where xyz
/// multiplies). Input is not scaled.
inline long double Unit = 1.0L;
inline long double UnitT = 1.0L; ///< dt is printed multiplied by this
} // namespace xyztns

class xyzt;

/// A Cartesian vector in metres: a position in an Earth-centred frame, a difference of two, or
/// a unit vector. Zero when default-constructed.
class xyz {
public:
  xyz() = default;
  xyz(long double x_, long double y_, long double z_) : x(x_), y(y_), z(z_) {}

  long double GetX() const { return x; }
  long double GetY() const { return y; }
  long double GetZ() const { return z; }
  void SetX(long double v) { x = v; }
  void SetY(long double v) { y = v; }
  void SetZ(long double v) { z = v; }
  void Set(long double x_, long double y_, long double z_) { *this = xyz(x_, y_, z_); }

  /// \returns sqrt(x2 + y2 + z2)
  long double GetLength() const;
  /// The vector of length \p L along this one; of a zero vector, components that are not
  /// numbers. Squares are taken of the components times 1e-6, which keeps them in range.
  xyz GetUnitVector(long double L) const;
  /// The vector turned by \p a [rad] about the first, second or third axis; positive turns
  /// counter-clockwise, seen from the positive end of the axis.
  xyz RotateX(long double a) const;
  xyz RotateY(long double a) const;
  xyz RotateZ(long double a) const;

  xyz& operator+=(const xyz& v);
  xyz& operator-=(const xyz& v);
  /// The dt of \p v stays out.
  xyz& operator+=(const xyzt& v);
  xyz& operator-=(const xyzt& v);
  xyz& operator*=(long double s);
  xyz& operator/=(long double s);

  /// The same object, or every component closer than 1e-14.
  bool operator==(const xyz& v) const;
  bool operator!=(const xyz& v) const { return !(*this == v); }

private:
  long double x = 0; ///< [m]
  long double y = 0; ///< [m]
  long double z = 0; ///< [m]
};

/// A Cartesian vector in metres with a clock or time component in whatever unit its user
/// chooses (satellite clock offset in seconds in the orbit classes).
class xyzt {
public:
  xyzt() = default;
  xyzt(long double x_, long double y_, long double z_, long double dt_)
      : x(x_), y(y_), z(z_), dt(dt_) {}

  long double GetX() const { return x; }
  long double GetY() const { return y; }
  long double GetZ() const { return z; }
  long double GetT() const { return dt; }
  void SetX(long double v) { x = v; }
  void SetY(long double v) { y = v; }
  void SetZ(long double v) { z = v; }
  void SetT(long double v) { dt = v; }
  void Set(long double x_, long double y_, long double z_, long double dt_) {
    *this = xyzt(x_, y_, z_, dt_);
  }

  /// \returns sqrt(x2 + y2 + z2); dt does not enter
  long double GetLength() const;
  /// As xyz::GetUnitVector; dt of the result is 0.
  xyzt GetUnitVector(long double L) const;
  /// As for xyz; dt is copied.
  xyzt RotateX(long double a) const;
  xyzt RotateY(long double a) const;
  xyzt RotateZ(long double a) const;

  /// All four components.
  xyzt& operator+=(const xyzt& v);
  xyzt& operator-=(const xyzt& v);
  /// x, y, z only: a clock offset does not scale with the vector, so dt stays, unlike in a sum.
  xyzt& operator*=(long double s);
  xyzt& operator/=(long double s);

  /// The same object, or every component, dt included, closer than 1e-14.
  bool operator==(const xyzt& v) const;
  bool operator!=(const xyzt& v) const { return !(*this == v); }

private:
  long double x = 0;  ///< [m]
  long double y = 0;  ///< [m]
  long double z = 0;  ///< [m]
  long double dt = 0; ///< unit of the user's choice
};

xyz operator+(const xyz& a, const xyz& b);
xyz operator-(const xyz& a, const xyz& b);
/// Where one side has no time component, neither has the result.
xyz operator+(const xyz& a, const xyzt& b);
xyz operator-(const xyz& a, const xyzt& b);
xyz operator+(const xyzt& a, const xyz& b);
xyz operator-(const xyzt& a, const xyz& b);
/// All four components.
xyzt operator+(const xyzt& a, const xyzt& b);
xyzt operator-(const xyzt& a, const xyzt& b);
xyz operator*(const xyz& v, long double s);
xyz operator*(long double s, const xyz& v);
/// Dot product of x, y, z.
long double operator*(const xyz& a, const xyz& b);
long double operator*(const xyz& a, const xyzt& b);
/// Vector product \p a x \p b.
xyz CrossP(const xyz& a, const xyz& b);
/// Component-wise product.
xyz ElementP(const xyz& a, const xyz& b);
/// Component-wise square root.
xyz sqrt(const xyz& v);

/// Fixed-point fields without separators, laid out by xyzns and xyztns; the stream stays in
/// fixed notation.
std::ostream& operator<<(std::ostream& out, const xyz& v);
std::ostream& operator<<(std::ostream& out, const xyzt& v);
/// Reads x, y, z, separated by white space and scaled by xyzns::Unit.
std::istream& operator>>(std::istream& in, xyz& v);
/// Reads x, y, z, dt as they stand.
std::istream& operator>>(std::istream& in, xyzt& v);

#endif
