#ifndef ZENTA_SIM_SIMULATION_H
#define ZENTA_SIM_SIMULATION_H

#include "Scenario.h"
#include <string>

namespace sim {

/// Writes the whole set of files of a scenario into its folder, which is made if need be, and
/// the truth into truth.json there. A scenario that can't be made, or a file that can't be
/// written, ends the process with a message.
void MakeFiles(const Scenario& scenario);

} // namespace sim

#endif
