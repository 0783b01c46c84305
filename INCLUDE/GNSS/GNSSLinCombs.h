#ifndef GNSS_GNSSLINCOMBS_H
#define GNSS_GNSSLINCOMBS_H

#include "GNSS/gnssobs.h"
#include "matrix/matrix.h"

/// GPS signals (IS-GPS-200, 3.3.1.1) and the coefficients of their combinations.
struct GNSSc {
  static constexpr long double c = 299792458.0L;            ///< speed of light [m/s]
  static constexpr long double freq0 = 10230000.0L;         ///< fundamental frequency [Hz]
  static constexpr long double freq1 = 1575420000.0L;       ///< L1 [Hz]
  static constexpr long double freq2 = 1227600000.0L;       ///< L2 [Hz]
  static constexpr long double lamb0 = c / freq0;           ///< [m]
  static constexpr long double lamb1 = c / freq1;           ///< [m]
  static constexpr long double lamb2 = c / freq2;           ///< [m]
  static constexpr long double lamWL = c / (freq1 - freq2); ///< wide lane [m]
  static constexpr long double lamNL = c / (freq1 + freq2); ///< narrow lane [m]
  /// Ionosphere-free: f1^2 and f2^2 over their difference.
  static constexpr long double LCion1 = freq1 * freq1 / (freq1 * freq1 - freq2 * freq2);
  static constexpr long double LCion2 = freq2 * freq2 / (freq1 * freq1 - freq2 * freq2);
  static constexpr long double LCwl1 = freq1 / (freq1 - freq2); ///< wide lane
  static constexpr long double LCwl2 = freq2 / (freq1 - freq2);
  static constexpr long double LCnl1 = freq1 / (freq1 + freq2); ///< narrow lane
  static constexpr long double LCnl2 = freq2 / (freq1 + freq2);
  static constexpr long double alpha = freq1 * freq1 / (freq2 * freq2); ///< delay on L2 over L1
  static constexpr long double h0 = 0.0L;     ///< standard atmosphere: height [m]
  static constexpr long double p0 = 1013.25L; ///< pressure [hPa]
  static constexpr long double T0 = 18.0L;    ///< temperature [deg C]
  static constexpr long double H0 = 50.0L;    ///< humidity [%]
  static constexpr long double e0 = 8.5L;     ///< vapour pressure [hPa]
};

/// GLONASS signals (GLONASS ICD 5.1, 3.3.1.1): carriers in frequency division, and tables of
/// the carriers per orbital slot.
///
/// The coefficients hold for every channel, as f1/f2 = 9/7 on all of them. The tables have
/// one row per slot (row = slot - 1) and are 0 until SetFrequency() has filled the row; they
/// are there before main starts and before any object that is defined behind this header.
struct GLONASSc {
  static constexpr long double c = 299792458.0L;       ///< speed of light [m/s]
  static constexpr long double freq0 = 178000000.0L;   ///< fundamental frequency [Hz]
  static constexpr long double freq10 = 1602000000.0L; ///< L1 of channel 0 [Hz]
  static constexpr long double freq20 = 1246000000.0L; ///< L2 of channel 0 [Hz]
  static constexpr long double dfreq10 = 562500.0L;    ///< L1 step per channel [Hz]
  static constexpr long double dfreq20 = 437500.0L;    ///< L2 step per channel [Hz]
  static constexpr long double lamb10 = c / freq10;    ///< L1 of channel 0 [m]
  static constexpr long double lamb20 = c / freq20;    ///< L2 of channel 0 [m]
  static constexpr long double LCion1 = 2.53125L;      ///< ionosphere-free, 81/32
  static constexpr long double LCion2 = 1.53125L;      ///< 49/32
  static constexpr long double LCwl1 = 4.5L;           ///< wide lane
  static constexpr long double LCwl2 = 3.5L;
  static constexpr long double LCnl1 = 0.5625L; ///< narrow lane
  static constexpr long double LCnl2 = 0.4375L;
  static constexpr long double alpha = freq10 * freq10 / (freq20 * freq20); ///< 81/49
  static constexpr long double h0 = 0.0L;     ///< standard atmosphere: height [m]
  static constexpr long double p0 = 1013.25L; ///< pressure [hPa]
  static constexpr long double T0 = 18.0L;    ///< temperature [deg C]
  static constexpr long double H0 = 50.0L;    ///< humidity [%]
  static constexpr long double e0 = 8.5L;     ///< vapour pressure [hPa]

  static constexpr long kSlots = 24; ///< rows of the tables

  inline static matrix<long double> freq{kSlots, 2};   ///< L1, L2 [Hz]
  inline static matrix<long double> lamb{kSlots, 2};   ///< L1, L2 [m]
  inline static matrix<long double> lambWL{kSlots, 1}; ///< wide lane [m]
  inline static matrix<long double> lambNL{kSlots, 1}; ///< narrow lane [m]
  /// Ionospheric delay on GLONASS L1, L2 over that on GPS L1: (1575.42 MHz / f)^2.
  inline static matrix<long double> alphaG{kSlots, 2};

  /// Fills row \p i of the tables for the channel \p k (-7 to 6, as a number).
  /// A row outside the tables ends the program with the container's report.
  static void SetFrequency(long double k, short i);
};

/// The coefficients that the combinations below read when they are called.
///
/// They start with the GPS values. Who forms combinations of GLONASS satellites sets them for
/// the satellite first; they stay so until set again.
struct GLC {
  inline static long double LCion1 = GNSSc::LCion1;
  inline static long double LCion2 = GNSSc::LCion2;
  inline static long double LCwl1 = GNSSc::LCwl1;
  inline static long double LCwl2 = GNSSc::LCwl2;
  inline static long double LCnl1 = GNSSc::LCnl1;
  inline static long double LCnl2 = GNSSc::LCnl2;
  inline static long double lamb1 = GNSSc::lamb1; ///< [m]
  inline static long double lamb2 = GNSSc::lamb2; ///< [m]
  inline static long double alpha = GNSSc::alpha;
};

/// Linear combinations of the observations at two frequencies, after Hofmann-Wellenhof,
/// Lichtenegger and Wasle, GNSS, 5.2. Phases L1, L2 in cycles, codes C1, P1, P2 in metres;
/// every result in metres.
///
/// The forms on numbers know no missing values: their callers ask IsNull() first. Those on
/// gnssobs give 0 where an operand is missing, and clear the flags.

/// Ionosphere-free phase.
long double GNSS_L3(const long double& L1, const long double& L2);
gnssobs GNSS_L3(const gnssobs& L1, const gnssobs& L2);
/// Ionosphere-free code.
long double GNSS_P3(const long double& P1, const long double& P2);
gnssobs GNSS_P3(const gnssobs& P1, const gnssobs& P2);
/// Ionosphere-free code of GLONASS, whatever the working coefficients are.
long double GNSS_P3R(const long double& P1, const long double& P2);
/// Geometry-free phase, L1 - L2.
long double GNSS_L4(const long double& L1, const long double& L2);
gnssobs GNSS_L4(const gnssobs& L1, const gnssobs& L2);
/// Geometry-free code, P2 - P1: the order opposite to that of the phase, so that the
/// ionospheric delay enters both with the same sign.
long double GNSS_P4(const long double& P1, const long double& P2);
gnssobs GNSS_P4(const gnssobs& P1, const gnssobs& P2);
/// Wide-lane phase.
long double GNSS_L5(const long double& L1, const long double& L2);
gnssobs GNSS_L5(const gnssobs& L1, const gnssobs& L2);
/// Narrow-lane phase.
long double GNSS_NLL(const long double& L1, const long double& L2);
gnssobs GNSS_NLL(const gnssobs& L1, const gnssobs& L2);
/// Narrow-lane code.
long double GNSS_NLP(const long double& P1, const long double& P2);
gnssobs GNSS_NLP(const gnssobs& P1, const gnssobs& P2);
/// Melbourne-Wuebbena: wide-lane phase less narrow-lane code.
long double GNSS_MW(const long double& L1, const long double& L2, const long double& P1,
                    const long double& P2);
gnssobs GNSS_MW(const gnssobs& L1, const gnssobs& L2, const gnssobs& P1, const gnssobs& P2);
/// Code less phase on L1: twice the ionospheric delay, and the ambiguity.
long double GNSS_CL1(const long double& C1, const long double& L1);
/// Half sum of code and phase on L1: free of the ionosphere.
long double GNSS_CLI(const long double& C1, const long double& L1);

#endif
