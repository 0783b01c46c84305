#ifndef ZENTA_REPORT_ARCFILE_H
#define ZENTA_REPORT_ARCFILE_H

#include "Report.h"

#include <string>
#include <string_view>
#include <vector>

namespace report {

/// A phase arc: its indices into the observation file.
struct Arc {
  Satellite satellite = 0;
  long firstEpoch = 0;
  long firstRecord = 0; ///< of that epoch
  long lastEpoch = 0;
  long observations = 0;
};

/// The file "Ambiq.b" of zenta, from its bytes: records of 18 bytes. A cut or foreign file is
/// refused with the byte and what was expected there.
std::vector<Arc> ReadArcFile(const std::string& name, std::string_view bytes);

/// Refuses arcs that are not those of the report's ambiguities, one by one.
void ExpectArcsOf(const Report& r, const std::string& name, const std::vector<Arc>& arcs);

} // namespace report

#endif
