#ifndef GNSS_GNSSOBS_H
#define GNSS_GNSSOBS_H

#include "matrix/LargeMemory.h"

#include <iosfwd>
#include <string_view>

/// How a gnssobs is written (process-wide).
namespace gnssobsns {
/// 0: the field of a RINEX 2 observation line (F14.3, I1, I1); a missing value is 0.000
/// 1: table column: value (14.3), loss of lock (2), signal strength (2); missing: *.*** * *
/// 2: value alone, Width wide, 3 decimals; missing: *.***
/// Any other type writes nothing.
inline unsigned short PrintType = 1;
inline unsigned short Width = 14; ///< characters of type 2
} // namespace gnssobsns

/// How a gnssobsshort is written (process-wide).
namespace gnssobsshortns {
/// 0: the field of a RINEX 2 observation line without its flags; a missing value is 0
/// 1: table column: value (10.3) and " 0 0"; missing: *.*** * *
/// 2: value alone, Width wide, 3 decimals; missing: *.***
/// Any other type writes nothing.
inline unsigned short PrintType = 1;
inline unsigned short Width = 14; ///< characters of type 2
} // namespace gnssobsshortns

/// One observation with the two flag digits of its RINEX field (RINEX 2.10, table A2).
///
/// Zero means that there is no observation, as in a RINEX file, where a missing one is blank
/// or 0.0. Assigning a number clears the flags, adding one keeps them.
class gnssobs {
public:
  long double obs = 0;    ///< code [m], phase [cycles], combination [m]
  unsigned short lli = 0; ///< loss-of-lock indicator, 0 where blank
  unsigned short ss = 0;  ///< signal strength, 1 weak to 9 strong, 0 where blank

  /// Takes \p v with both flags 0.
  gnssobs& operator=(long double v) {
    obs = v;
    lli = ss = 0;
    return *this;
  }
  gnssobs& operator+=(long double v) {
    obs += v;
    return *this;
  }
  /// Reads one observation field: characters 0 to 13 the value, 14 the loss of lock, 15 the
  /// signal strength.
  ///
  /// Characters that the field is too short for are blank. A flag is its character less '0'
  /// whatever the character is, so a letter there gives an odd number.
  gnssobs& operator>>(const char* field);
  /// As above from the at most 16 characters of \p field.
  gnssobs& operator>>(std::string_view field);

  void SetObs(long double v) { obs = v; }
  void SetLli(unsigned short v) { lli = v; }
  void SetSs(unsigned short v) { ss = v; }
  long double GetObs() const { return obs; }
  unsigned short GetLli() const { return lli; }
  unsigned short GetSs() const { return ss; }

  /// There is no observation: |obs| is below 1e-4.
  bool IsNull() const {
    const double v = static_cast<double>(obs);
    return -0.0001 < v && v < 0.0001;
  }
};

template <> inline constexpr bool kIsZeroByDefault<gnssobs> = true;

/// \p g with its value scaled and its flags kept.
inline gnssobs operator*(long double k, const gnssobs& g) {
  gnssobs scaled = g;
  scaled.obs *= k;
  return scaled;
}
inline gnssobs operator*(const gnssobs& g, long double k) { return k * g; }

/// a - b without flags; 0 where either is missing.
inline gnssobs operator-(const gnssobs& a, const gnssobs& b) {
  gnssobs difference;
  if (!a.IsNull() && !b.IsNull()) difference.obs = a.obs - b.obs;
  return difference;
}
/// a + b without flags; 0 where either is missing.
inline gnssobs operator+(const gnssobs& a, const gnssobs& b) {
  gnssobs sum;
  if (!a.IsNull() && !b.IsNull()) sum.obs = a.obs + b.obs;
  return sum;
}

/// Writes in the layout gnssobsns::PrintType. Here a value counts as present above 1e-5, so
/// that 0.00005 is written as a number although IsNull() holds. Leaves the stream in
/// fixed-point notation.
std::ostream& operator<<(std::ostream& out, const gnssobs& g);

/// One value without flags: Doppler [Hz] or signal strength [receiver's unit].
class gnssobsshort {
public:
  long double obs = 0; ///< 0: there is none

  gnssobsshort& operator=(long double v) {
    obs = v;
    return *this;
  }
  /// Reads characters 0 to 13 of an observation field; the flags behind are passed over.
  gnssobsshort& operator>>(const char* field);
  gnssobsshort& operator>>(std::string_view field);

  void SetObs(long double v) { obs = v; }
  long double GetObs() const { return obs; }

  /// There is no value: |obs| is below 1e-5, a tenth of the threshold of gnssobs.
  bool IsNull() const {
    const double v = static_cast<double>(obs);
    return -0.00001 < v && v < 0.00001;
  }
};

template <> inline constexpr bool kIsZeroByDefault<gnssobsshort> = true;

/// Writes in the layout gnssobsshortns::PrintType; a missing value in layout 0 takes the
/// decimals that the stream has at that time. Leaves the stream in fixed-point notation.
std::ostream& operator<<(std::ostream& out, const gnssobsshort& g);

#endif
