#ifndef SRC_SLANTDELAY_H
#define SRC_SLANTDELAY_H

#include "KorvanC.h"

/// The single-layer model: all free electrons in a thin shell above a spherical Earth.
///
/// A vertical delay v [m, GPS L1] at the receiver gives a satellite's P2-C1, and its L4, the
/// delay (alpha2 - alpha1) v / cos z, with z the zenith angle at the shell and alpha the squared
/// ratio of the GPS L1 frequency to each signal's own: the delay of a signal is as the inverse
/// square of its frequency. Source: Hofmann-Wellenhof et al., GNSS, 5.3.2.

/// The two factors alpha of a satellite.
struct IonoFactors {
  long double alpha1; ///< first frequency; 1 for GPS
  long double alpha2; ///< second frequency; (77/60)^2 for GPS
};
/// \p sat of a processed system; a GLONASS slot beyond the frequency tables ends the program.
IonoFactors FactorsOf(short sat);

/// Zenith angle [rad] at the shell, 450 km above a sphere of 6371 km, of a line of sight that
/// leaves the ground at \p elevation [rad].
long double ShellZenith(long double elevation);

/// Coefficients of a line of sight [rad]; the gradients' stay 0 unless \p gradients are estimated.
IonoCoefficients CoefficientsOf(const IonoFactors& f, long double elevation, long double azimuth,
                                bool gradients);

/// The piece-wise linear delay at one epoch: values of its interval and the time since its start.
struct IonoState {
  long double delay = 0;  ///< [m] at the first epoch of the interval
  long double rate = 0;   ///< [m/h]
  long double east = 0;   ///< [m]
  long double north = 0;  ///< [m]
  long double hours = 0;  ///< [h] since the first epoch of the interval
  bool gradients = false; ///< east and north are estimated
};
/// Moves ctx.iIono on when epoch \p i lies behind its interval (by one at most) and gives the
/// interval's current values. Without ionosphere unknowns all is 0.
IonoState StateAt(KorvanC& ctx, long i);

/// Slant term [m] of P2-C1 and L4 in the model.
long double SlantDelay(const IonoCoefficients& a, const IonoState& state);

#endif
