#ifndef ZENTA_REPORT_QUANTITIES_H
#define ZENTA_REPORT_QUANTITIES_H

namespace report {

inline constexpr double kGPSL1 = 1575.42e6;                 ///< [Hz] carrier that delays refer to
inline constexpr double kMetresPerNanosecond = 0.299792458; ///< speed of light

/// One TEC unit, 1e16 electrons per square metre, delays a code on GPS L1 by this [m].
inline constexpr double kMetresPerTECU = 40.308193e16 / (kGPSL1 * kGPSL1);

/// Delay on GPS L1 in TEC units, and a bias in nanoseconds, from metres.
constexpr double ToTECU(double metres) { return metres / kMetresPerTECU; }
constexpr double ToNanoseconds(double metres) { return metres / kMetresPerNanosecond; }

} // namespace report

#endif
