#ifndef GNSS_FLH_H
#define GNSS_FLH_H

#include <iosfwd>

/// Print and read settings of flh, process-wide.
namespace flhns {
inline unsigned short NDecFL = 8;   ///< decimals of latitude and longitude
inline unsigned short NDecH = 4;    ///< decimals of height
inline unsigned short WidthFL = 12; ///< field width of latitude and longitude
inline unsigned short WidthH = 10;  ///< field width of height
/// Angles as 0 radians, 1 degrees, 2 packed D.MMSS, 3 separate degrees, minutes and seconds.
/// Any other value leaves the angles out; they then read as 0.
inline unsigned short Unit = 0;
} // namespace flhns

/// Print and read settings of flht, process-wide.
namespace flhtns {
inline unsigned short NDecFL = 8;   ///< decimals of latitude and longitude
inline unsigned short NDecH = 4;    ///< decimals of height
inline unsigned short NDecT = 6;    ///< decimals of dt
inline unsigned short WidthFL = 12; ///< field width of latitude and longitude
inline unsigned short WidthH = 10;  ///< field width of height
inline unsigned short WidthT = 12;  ///< field width of dt
inline unsigned short Unit = 0;     ///< as flhns::Unit
inline unsigned short UnitT = 1;    ///< dt is printed multiplied by this
} // namespace flhtns

/// Geodetic coordinates: latitude f and longitude l [rad], ellipsoidal height h [m]. Zero when
/// default-constructed.
///
/// Construction from values or from another position, assignment, += and -= check the
/// position: a latitude outside -90 to 90, or one that is not a number, is reported on
/// standard output ("LATITUDE not valid") and ends the program with status 1. The bounds are
/// those of degrees while the value is in radians, so only absurd values and non-numbers are
/// caught; the longitude is not looked at. Set, the setters and moving (a function's
/// result) do not check: a conversion may hand out a position that is not a number, and it is
/// the first copy or assignment that ends the program.
class flh {
public:
  flh() = default;
  flh(long double f_, long double l_, long double h_);
  flh(const flh& p);
  flh(flh&& p) noexcept = default;
  flh& operator=(const flh& p);
  ~flh() = default;

  long double GetF() const { return f; }
  long double GetL() const { return l; }
  long double GetH() const { return h; }
  void SetF(long double v) { f = v; }
  void SetL(long double v) { l = v; }
  void SetH(long double v) { h = v; }
  void Set(long double f_, long double l_, long double h_) {
    f = f_;
    l = l_;
    h = h_;
  }

  flh& operator+=(const flh& p);
  flh& operator-=(const flh& p);

  /// The same object, or every component closer than 1e-14 (radians and metres alike).
  bool operator==(const flh& p) const;

private:
  friend struct flhPeer;

  bool TestFi() const; ///< latitude in -90 to 90; false when it is not a number
  bool TestLa() const; ///< latitude (not longitude) in -180 to 180
  void TestPos() const;
  [[noreturn]] void Error(const char* msg) const;

  long double f = 0; ///< [rad] latitude, positive north
  long double l = 0; ///< [rad] longitude, positive east
  long double h = 0; ///< [m] height above the ellipsoid
};

/// Geodetic coordinates with a clock or time component in the user's unit; checked as flh.
class flht {
public:
  flht() = default;
  flht(long double f_, long double l_, long double h_, long double dt_);
  flht(const flht& p);
  flht(flht&& p) noexcept = default;
  flht& operator=(const flht& p);
  ~flht() = default;

  long double GetF() const { return f; }
  long double GetL() const { return l; }
  long double GetH() const { return h; }
  long double GetT() const { return dt; }
  void SetF(long double v) { f = v; }
  void SetL(long double v) { l = v; }
  void SetH(long double v) { h = v; }
  void SetT(long double v) { dt = v; }
  void Set(long double f_, long double l_, long double h_, long double dt_) {
    f = f_;
    l = l_;
    h = h_;
    dt = dt_;
  }

  /// All four components.
  flht& operator+=(const flht& p);
  flht& operator-=(const flht& p);

  /// The same object, or every component, dt included, closer than 1e-14.
  bool operator==(const flht& p) const;

private:
  friend struct flhtPeer;

  bool TestFi() const; ///< latitude in -90 to 90; false when it is not a number
  bool TestLa() const; ///< latitude (not longitude) in -180 to 180
  void TestPos() const;
  [[noreturn]] void Error(const char* msg) const;

  long double f = 0;  ///< [rad] latitude, positive north
  long double l = 0;  ///< [rad] longitude, positive east
  long double h = 0;  ///< [m] height above the ellipsoid
  long double dt = 0; ///< unit of the user's choice
};

flh operator+(const flh& a, const flh& b);
flh operator-(const flh& a, const flh& b);
/// All four components.
flht operator+(const flht& a, const flht& b);
flht operator-(const flht& a, const flht& b);

/// Fixed-point fields without separators, laid out by flhns and flhtns; the stream stays in
/// fixed notation.
std::ostream& operator<<(std::ostream& out, const flh& p);
std::ostream& operator<<(std::ostream& out, const flht& p);
/// Reads latitude, longitude and height, separated by white space, angles in flhns::Unit.
/// Separate degrees, minutes and seconds are added as they are: -45 30 0 reads as -44.5
/// degrees.
std::istream& operator>>(std::istream& in, flh& p);
/// As above with flhtns, then dt as it stands.
std::istream& operator>>(std::istream& in, flht& p);

#endif
