#ifndef ZENTA_REPORT_RESIDUALFILE_H
#define ZENTA_REPORT_RESIDUALFILE_H

#include "Report.h"

#include <string>
#include <string_view>
#include <vector>

namespace report {

struct Residual {
  Satellite satellite = 0;
  Observable observable = Observable::P1C1;
  double value = 0; ///< [m] model minus observation
};

/// Residuals of one epoch; there is at least one.
struct ResidualBlock {
  Epoch epoch;
  std::vector<Residual> residuals;
};

struct ResidualFile {
  std::vector<Satellite> satellites; ///< of the observation file
  std::vector<ResidualBlock> blocks; ///< epochs in their order

  long Count() const;
};

/// A residual file of zenta, from its bytes. A file that is cut, or holds what the program does
/// not write, is refused with the byte and what was expected there.
ResidualFile ReadResidualFile(const std::string& name, std::string_view bytes);

} // namespace report

#endif
