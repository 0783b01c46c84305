#ifndef ZENTA_EXPORT_BIASSINEX_H
#define ZENTA_EXPORT_BIASSINEX_H

#include "Results.h"

#include <string>

namespace exports {

struct SinexHead {
  std::string agency;  ///< three characters
  std::string station; ///< up to nine
  std::string created; ///< year, day of year, second of day
};

/// Differential biases of receiver and satellites as Bias-SINEX 1.00 (Schaer 2016): DSB lines,
/// bias(OBS1) - bias(OBS2) in ns, with OBS1 always C1C.
///
/// An observed P1-C1 holds bias(P1) - bias(C1), which is what the run estimates. So C1C-C1W
/// (GLONASS C1C-C1P) is minus the estimate of P1-C1, and C1C-C2W (C1C-C2P) minus that of P2-C1.
/// Lines with a station and "G" as satellite are receiver biases. Satellite biases of a run hold
/// the receiver's as well, and their lines therefore name both the satellite and the station.
/// \p inputs tells what known biases the run took out of the codes before it estimated
/// satellite biases on top; they are put back. It may be null where the report has none.
std::string ToBiasSinex(const report::Report& r, const SinexHead& head,
                        const inputs::RunInputs* inputs);

/// Whether satellite biases were estimated on top of known ones, so that ToBiasSinex needs them.
bool NeedsInputs(const report::Report& r);

} // namespace exports

#endif
