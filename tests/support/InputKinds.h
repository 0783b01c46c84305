#ifndef SUPPORT_INPUTKINDS_H
#define SUPPORT_INPUTKINDS_H

#include "support/Program.h"

#include <string_view>

/// A kind of input file of a run.
struct InputKind {
  const char* name;
  const char* option;
  const char* file; ///< the sound one, of TinyInputs
  bool precise;     ///< run on precise orbits, else on broadcast ones
};

inline constexpr InputKind kObservations = {"observations", "-r", "obs", true};
inline constexpr InputKind kGpsNavigation = {"GPS_navigation", "-eg", "gnav", false};
inline constexpr InputKind kGlonassNavigation = {"GLONASS_navigation", "-er", "rnav", false};
inline constexpr InputKind kGpsPrecise = {"GPS_SP3", "-es", "sp3", true};
inline constexpr InputKind kGlonassPrecise = {"GLONASS_SP3", "-el", "sp3", true};
inline constexpr InputKind kChannels = {"channels", "-gf", "channels", true};
inline constexpr InputKind kP1P2 = {"biases_P1P2", "-cb1", "p1p2", true};
inline constexpr InputKind kP1C1 = {"biases_P1C1", "-cb2", "p1c1", true};
inline constexpr InputKind kP2C2 = {"biases_P2C2", "-cb3", "p2c2", true};
inline constexpr InputKind kClock = {"clock", "-cf", "clock", true};
inline constexpr InputKind kMultipath1 = {"multipath_C1P1", "-mp1", "mp1", true};
inline constexpr InputKind kMultipath2 = {"multipath_P2", "-mp2", "mp2", true};
inline constexpr InputKind kReceivers = {"code_tracking", "-ct", "receivers", true};
inline constexpr InputKind kCoordinates = {"coordinates", "-ac", "coordinates", true};

inline constexpr InputKind kInputKinds[] = {kObservations, kGpsNavigation,  kGlonassNavigation,
                                            kGpsPrecise,   kGlonassPrecise, kChannels,
                                            kP1P2,         kP1C1,           kP2C2,
                                            kClock,        kMultipath1,     kMultipath2,
                                            kReceivers,    kCoordinates};

/// A run with every kind of input, \p name in place of the sound file of \p kind.
inline Arguments WithInput(const InputKind& kind, const std::string& name) {
  Arguments arguments;
  for (const InputKind& other : kInputKinds) {
    const bool broadcast =
        other.option == kGpsNavigation.option || other.option == kGlonassNavigation.option;
    const bool orbits =
        broadcast || other.option == kGpsPrecise.option || other.option == kGlonassPrecise.option;
    if (orbits && broadcast == kind.precise) continue;
    const bool same = std::string_view(other.option) == kind.option;
    arguments.push_back(std::string(other.option) + (same ? name : other.file));
  }
  return arguments;
}

#endif
