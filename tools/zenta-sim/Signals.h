#ifndef ZENTA_SIM_SIGNALS_H
#define ZENTA_SIM_SIGNALS_H

namespace sim {

/// Carriers of one satellite.
struct Carriers {
  double f1 = 0, f2 = 0;           ///< [Hz]
  double lambda1 = 0, lambda2 = 0; ///< [m]
  double alpha1 = 0, alpha2 = 0;   ///< ionospheric delay over that on GPS L1
};

/// GPS L1, L2, or GLONASS G1, G2 of the satellite's channel.
Carriers CarriersOf(short sat);

inline constexpr double kGpsL1 = 1575.42e6, kGpsL2 = 1227.60e6, kGpsL5 = 1176.45e6; ///< [Hz]
/// [m] by which the L4 of one cycle of wind-up is off, lambda1 - lambda2 of GPS. The program takes
/// it off GLONASS phases, too.
double GpsWindUpPerCycle();

} // namespace sim

#endif
