#ifndef GNSS_OBSFIELD_H
#define GNSS_OBSFIELD_H

#include "GNSS/gnssobs.h"
#include "PROGINC/FixedPoint.h"

#include <cstddef>
#include <cstring>

/// One observation field of RINEX 2: F14.3, I1, I1.
inline constexpr std::size_t kObsFieldWidth = 16;

/// The value of a field.
inline double ObsValue(const char* field) { return ReadF14_3(field); }

/// A flag: its character less '0' whatever it is, 0 for a blank.
inline unsigned short ObsFlag(char c) {
  return static_cast<unsigned short>(c == ' ' ? 0 : c - '0');
}

/// Value and flags of the 16 characters at \p field.
inline void ReadObsField(const char* field, gnssobs& obs) {
  obs.obs = ObsValue(field);
  const bool hasFlags = std::memcmp(field + 14, "  ", 2) != 0; // most have none
  obs.lli = hasFlags ? ObsFlag(field[14]) : 0;
  obs.ss = hasFlags ? ObsFlag(field[15]) : 0;
}

#endif
