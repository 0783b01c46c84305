#ifndef ZENTA_VIEW_VIEWDATA_H
#define ZENTA_VIEW_VIEWDATA_H

#include "inputs/RunInputs.h"
#include "report/Report.h"
#include "report/ResidualFile.h"

#include <optional>
#include <string>
#include <vector>

namespace view {

/// A residual with the direction of its satellite.
struct LocatedResidual {
  report::Residual residual;
  double elevation = 0; ///< [degree]
  double azimuth = 0;   ///< [degree] from north over east
};

/// Epochs of one satellite without its phases, because it turned or was shadowed.
struct EclipseRun {
  report::Satellite satellite = 0;
  report::Epoch first, last;
};

/// Start of an arc that follows the one before it at the next epoch.
struct Slip {
  report::Satellite satellite = 0;
  report::Epoch epoch;
};

/// Outliers of one satellite and kind in epochs that follow each other.
struct OutlierRun {
  report::Satellite satellite = 0;
  report::Observable observable = report::Observable::P1C1;
  bool byMisclosure = false;
  report::Epoch first, last;
  long count = 0;
  double largest = 0; ///< [m] with its sign
};

/// All that the pictures and tables show.
struct ViewData {
  report::Report report;
  std::string reportName;
  std::optional<report::ResidualFile> residuals;
  std::string whyNoResiduals; ///< a sentence, where there are none
  std::optional<inputs::RunInputs> inputs;
  std::string whyNoInputs; ///< a sentence, where there are none
};

/// [s] between epochs: the smallest that the results show, 30 where they show none.
double SamplingOf(const ViewData& data);

/// Residuals whose directions are known.
std::vector<LocatedResidual> Locate(const ViewData& data);
std::vector<EclipseRun> EclipsesOf(const ViewData& data);
std::vector<Slip> SlipsOf(const report::Report& r, double sampling);
/// Misclosures are those of the last iteration.
std::vector<OutlierRun> OutlierRunsOf(const report::Report& r, double sampling);

} // namespace view

#endif
