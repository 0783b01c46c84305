#ifndef ZENTA_EXPORT_RESULTS_H
#define ZENTA_EXPORT_RESULTS_H

#include "inputs/RunInputs.h"
#include "report/ArcFile.h"
#include "report/Report.h"
#include "report/ResidualFile.h"

#include <optional>
#include <string>
#include <vector>

namespace exports {

/// All that goes into the files of an export.
struct Results {
  report::Report report;
  std::optional<report::ResidualFile> residuals;
  std::optional<std::vector<report::Arc>> arcs;
};

/// Metres, and rounded to a millionth of the unit: TEC units and nanoseconds.
double RoundedTECU(double metres);
double RoundedNanoseconds(double metres);

} // namespace exports

#endif
