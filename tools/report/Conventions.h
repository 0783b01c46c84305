#ifndef ZENTA_REPORT_CONVENTIONS_H
#define ZENTA_REPORT_CONVENTIONS_H

#include "Report.h"

#include <string>
#include <vector>

namespace report {

inline constexpr double kEarthRadius = 6371; ///< [km]
inline constexpr double kShellHeight = 450;  ///< [km]

/// What the formal errors of a run rest on.
extern const std::string kFormalErrors;

/// What the numbers of a result mean, one statement under each key.
struct Convention {
  std::string key;
  std::string text;
};

/// Those that hold for \p r: the datum of its biases depends on the run.
std::vector<Convention> ConventionsOf(const Report& r);

/// Satellite biases that were known and held fixed; a sentence.
std::string DatumOf(const Report& r);

} // namespace report

#endif
