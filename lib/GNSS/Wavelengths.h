#ifndef GNSS_WAVELENGTHS_H
#define GNSS_WAVELENGTHS_H

#include "GNSS/GNSSLinCombs.h"

/// Carrier wavelengths of one satellite [m].
struct Wavelengths {
  long double L1 = 0;
  long double L2 = 0;
};

/// A wavelength below this [m] is that of no carrier: a GLONASS slot without a channel, or a
/// satellite of another system.
inline constexpr double kNoWavelength = 0.01;

/// Satellites whose wavelengths are known: GPS below 100 and GLONASS from 100 on.
inline bool HasWavelengths(short sat) { return sat < 200; }

/// Wavelengths of satellite \p sat, 0 where HasWavelengths() is false. A GLONASS number
/// without a row in the tables ends the program with the container's report.
inline Wavelengths WavelengthsOf(short sat) {
  if (!HasWavelengths(sat)) return {};
  if (sat < 100) return {GNSSc::lamb1, GNSSc::lamb2};
  return {GLONASSc::lamb(sat - 101, 0), GLONASSc::lamb(sat - 101, 1)};
}

#endif
