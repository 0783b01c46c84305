#ifndef GNSS_NEU_H
#define GNSS_NEU_H

#include <iosfwd>

/// Print and read settings of neu, process-wide.
namespace neuns {
inline unsigned short NDecNE = 4;   ///< decimals of n and e
inline unsigned short NDecU = 4;    ///< decimals of u
inline unsigned short WidthNE = 12; ///< field width of n and e
inline unsigned short WidthU = 10;  ///< field width of u
/// Scale: 1000 and 100 multiply on output and divide on input, anything else the reverse.
inline unsigned short Unit = 1;
/// 0 prints u, e, n in fields of 14 with 4 decimals, unscaled; anything else n, e, u as set here.
inline unsigned short PrintType = 1;
} // namespace neuns

/// Print settings of neut, process-wide.
namespace neutns {
inline unsigned short NDecNE = 4;   ///< decimals of n and e
inline unsigned short NDecU = 4;    ///< decimals of u
inline unsigned short NDecT = 6;    ///< decimals of dt
inline unsigned short WidthNE = 12; ///< field width of n and e
inline unsigned short WidthU = 10;  ///< field width of u
inline unsigned short WidthT = 10;  ///< field width of dt
inline unsigned short UnitT = 1;    ///< dt is printed multiplied by this
} // namespace neutns

/// A vector in the local frame of a point: north, east and up along the ellipsoid normal, in
/// metres. Zero when default-constructed.
class neu {
public:
  neu() = default;
  neu(long double n_, long double e_, long double u_) : n(n_), e(e_), u(u_) {}

  long double GetN() const { return n; }
  long double GetE() const { return e; }
  long double GetU() const { return u; }
  void SetN(long double v) { n = v; }
  void SetE(long double v) { e = v; }
  void SetU(long double v) { u = v; }
  void Set(long double n_, long double e_, long double u_) { *this = neu(n_, e_, u_); }

  /// \returns sqrt(n2 + e2 + u2)
  long double GetLength() const;

  neu& operator+=(const neu& v);
  neu& operator-=(const neu& v);
  neu& operator/=(long double s);

  /// The same object, or every component closer than 1e-14.
  bool operator==(const neu& v) const;

private:
  long double n = 0; ///< [m] north
  long double e = 0; ///< [m] east
  long double u = 0; ///< [m] up
};

/// A vector in the local frame with a clock or time component in the user's unit.
class neut {
public:
  neut() = default;
  neut(long double n_, long double e_, long double u_, long double dt_)
      : n(n_), e(e_), u(u_), dt(dt_) {}

  long double GetN() const { return n; }
  long double GetE() const { return e; }
  long double GetU() const { return u; }
  long double GetT() const { return dt; }
  void SetN(long double v) { n = v; }
  void SetE(long double v) { e = v; }
  void SetU(long double v) { u = v; }
  void SetT(long double v) { dt = v; }
  void Set(long double n_, long double e_, long double u_, long double dt_) {
    *this = neut(n_, e_, u_, dt_);
  }

  /// \returns sqrt(n2 + e2 + u2); dt does not enter
  long double GetLength() const;

  /// All four components.
  neut& operator+=(const neut& v);
  neut& operator-=(const neut& v);

  /// The same object, or every component, dt included, closer than 1e-14.
  bool operator==(const neut& v) const;

private:
  long double n = 0;  ///< [m] north
  long double e = 0;  ///< [m] east
  long double u = 0;  ///< [m] up
  long double dt = 0; ///< unit of the user's choice
};

neu operator+(const neu& a, const neu& b);
neu operator-(const neu& a, const neu& b);
/// All four components.
neut operator+(const neut& a, const neut& b);
neut operator-(const neut& a, const neut& b);
neu operator*(const neu& v, long double s);
neu operator*(long double s, const neu& v);
/// Component-wise product.
neu ElementP(const neu& a, const neu& b);
/// Component-wise square root.
neu sqrt(const neu& v);

/// Fixed-point fields without separators, laid out by neuns and neutns; the stream stays in
/// fixed notation.
std::ostream& operator<<(std::ostream& out, const neu& v);
std::ostream& operator<<(std::ostream& out, const neut& v);
/// Reads n, e, u, separated by white space and scaled by neuns::Unit.
std::istream& operator>>(std::istream& in, neu& v);
/// Reads n, e, u, dt as they stand.
std::istream& operator>>(std::istream& in, neut& v);

#endif
