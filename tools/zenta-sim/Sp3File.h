#ifndef ZENTA_SIM_SP3FILE_H
#define ZENTA_SIM_SP3FILE_H

#include "GNSS/mjd.h"
#include "Scenario.h"
#include "Vec3.h"
#include <functional>
#include <string>
#include <vector>

namespace sim {

/// Regular epochs of a file.
struct EpochGrid {
  mjd first;
  double interval = 900; ///< [s]
  long count = 0;
};

/// A satellite at one epoch: Earth-fixed position [m] and clock offset without the periodic
/// relativistic term [s].
struct OrbitPoint {
  Vec3 position;
  double clock = 0;
};

/// What the file lacks: positions of 0 and clocks of 999999.999999; times as in Scenario.
struct Sp3Faults {
  std::vector<SatelliteSpan> missing;
  std::vector<SatelliteSpan> badClocks;
  unsigned int day0 = 0; ///< day whose midnight the spans are counted from
};

/// Text of an SP3-c file of \p satellites (at most 85, in this order in every block).
std::string Sp3Text(const EpochGrid& grid, const std::vector<short>& satellites,
                    const std::function<OrbitPoint(short, const mjd&)>& orbit,
                    const Sp3Faults& faults);

/// \p t in seconds since midnight of day \p day0.
double SecondsSince(unsigned int day0, const mjd& t);
/// Some span names \p sat and contains \p t [s].
bool Covers(const std::vector<SatelliteSpan>& spans, short sat, double t);

} // namespace sim

#endif
