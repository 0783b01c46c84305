#ifndef ZENTA_SIM_SUN_H
#define ZENTA_SIM_SUN_H

#include "GNSS/mjd.h"
#include "Vec3.h"

namespace sim {

/// Position of the Sun [m] in the Earth-fixed frame at \p t (GPS time), good to 0.01 degrees.
/// Source: Vallado, Fundamentals of Astrodynamics and Applications, algorithm 29.
Vec3 SunPosition(const mjd& t);
/// Position of the Moon [m] in the Earth-fixed frame at \p t (GPS time), by its mean motion and
/// the equation of the centre: good to some degrees, enough for its pull on a satellite.
Vec3 MoonPosition(const mjd& t);

} // namespace sim

#endif
