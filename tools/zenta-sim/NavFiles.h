#ifndef ZENTA_SIM_NAVFILES_H
#define ZENTA_SIM_NAVFILES_H

#include "Constellation.h"
#include <string>

namespace sim {

/// Text of a GPS navigation file (RINEX 2.11, tables A3 and A4).
std::string GpsNavigationText(const std::vector<GpsRecord>& records, int leapSeconds);
/// Text of a GLONASS navigation file (RINEX 2.11, tables A10 and A11); the correction to system
/// time is 0.
std::string GlonassNavigationText(const std::vector<GlonassRecord>& records, int leapSeconds);

} // namespace sim

#endif
