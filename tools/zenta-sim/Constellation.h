#ifndef ZENTA_SIM_CONSTELLATION_H
#define ZENTA_SIM_CONSTELLATION_H

#include "GNSS/mjd.h"
#include <array>
#include <vector>

namespace sim {

inline constexpr short kGpsSatellites = 32;
inline constexpr short kGlonassSatellites = 24;

/// One record of a broadcast navigation file: its epoch in the time scale of the file (GPS time;
/// UTC for GLONASS) and its values in file order.
template <std::size_t N> struct NavRecord {
  short number = 0; ///< PRN or slot
  mjd epoch;
  std::array<double, N> values{};
};
using GpsRecord = NavRecord<29>;     ///< RINEX 2.11, table A4, fit interval included
using GlonassRecord = NavRecord<15>; ///< RINEX 2.11, table A11

/// The GPS satellites' elements at every two hours from \p first to \p last, time by time.
///
/// 32 satellites in six planes. The elements of all records of a satellite describe one motion
/// (constant mean motion, eccentricity, perigee and harmonic terms, nodes and inclination that
/// drift), so that the orbit is the same whichever record is evaluated; the sky repeats after a
/// sidereal day, whatever the date.
/// \param groupDelays  TGD [s] of PRN 1 to 32
std::vector<GpsRecord> GpsRecords(const mjd& first, const mjd& last,
                                  const std::array<double, kGpsSatellites>& groupDelays);

/// The GLONASS satellites' state vectors at 15 and 45 minutes past each UTC hour from before
/// \p first to behind \p last (GPS time), time by time.
///
/// 24 satellites in three planes, integrated once over the whole span by the broadcast equations
/// of motion with the pull of Sun and Moon of the nearest record, so that neighbouring records
/// agree half-way between them.
std::vector<GlonassRecord> GlonassRecords(const mjd& first, const mjd& last);

/// Frequency channel of GLONASS slot 1 to 24; antipodal satellites share one.
int GlonassChannel(short slot);

} // namespace sim

#endif
