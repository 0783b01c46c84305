#ifndef ZENTA_SIM_TRUTH_H
#define ZENTA_SIM_TRUTH_H

#include "Arcs.h"
#include "Biases.h"
#include "Ionosphere.h"
#include "Scenario.h"
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace sim {

/// A slip as it was put in.
struct PlacedSlip {
  Slip slip;
  long epoch = 0;
  double step = 0;    ///< [m] of L4
  bool found = false; ///< larger than the screening passes at the nominal interval
};

/// An outlier as it was put in.
struct PlacedOutlier {
  Outlier outlier;
  long epoch = 0;
  double elevation = 0; ///< [rad]
};

/// Values above the cut-off with an orbit, as one iteration of the estimation counts them.
struct ValueCounts {
  long p1c1 = 0, p2c1 = 0, l4 = 0;
};

/// Everything that the truth file tells.
struct Truth {
  const Scenario* scenario = nullptr;
  const EpochTable* epochs = nullptr;
  const Ionosphere* ionosphere = nullptr;
  const std::map<short, SatelliteBias>* biases = nullptr;
  std::vector<short> satellites; ///< in the observation file
  std::vector<Arc> arcs;
  std::vector<PlacedSlip> slips;
  std::vector<PlacedOutlier> outliers;
  ValueCounts counts;
  std::vector<std::pair<std::string, std::string>> files; ///< kind, name
  std::vector<std::string> inputs;     ///< arguments of the program that name the files
  std::vector<std::string> estimation; ///< arguments that estimate what is known here
};

nlohmann::json TruthJson(const Truth& truth);

} // namespace sim

#endif
