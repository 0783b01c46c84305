#ifndef SRC_ECLIPSING_H
#define SRC_ECLIPSING_H

#include "GNSS/xyz.h"

class KorvanC;

/// Removes the phases of satellites that turn or are shadowed.
///
/// A satellite whose directions to the Sun and to the Earth's centre are aligned within
/// satEclipsThres, on either side, loses the L1, L2 and L4 of that record. Also finds the Sun
/// for every epoch, which PhaseWindUp uses, and counts the removed records per satellite. Comes
/// before the screening of L4, so that arcs end at eclipses. Switches standard output to
/// fixed-point notation, as the settings report does later in any case. Nothing happens unless
/// phase is used.
void GetEclipsing(KorvanC& ctx);

/// Takes the phase wind-up out of L4 along every arc.
///
/// The wind-up in cycles, continuous from the first record of the arc on, times the difference
/// of the GPS wavelengths, for GLONASS too. The last epoch of an arc is not corrected. Source:
/// Wu et al. (1993), Effects of antenna orientation on GPS carrier phase.
void PhaseWindUp(KorvanC& ctx);

/// Table of the removed records on standard output.
void PrintEclipsingSatellite(KorvanC& ctx);

/// 1, -1 or 0 with the sign of \p x.
long double sign(long double x);

/// Angle [rad], 0 to pi/2, between the line to the Sun and the line to the Earth's centre, seen
/// from a satellite. Both positions [m], Earth-fixed.
long double SunEarthAngle(const xyz& satellite, const xyz& sun);

/// Wind-up [cycle], -1/2 to 1/2, of the signal of a satellite at \p satellite that keeps its
/// panels to the Sun at \p sun, for an antenna at \p receiver with its dipoles along \p north and
/// \p west (unit vectors). Positions [m], Earth-fixed.
long double WindUp(const xyz& satellite, const xyz& sun, const xyz& receiver, const xyz& north,
                   const xyz& west);

/// \p w moved by whole cycles to within half a cycle of \p previous; halves go away from zero.
long double ContinuousCycles(long double w, long double previous);

#endif
