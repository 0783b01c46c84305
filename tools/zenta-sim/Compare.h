#ifndef ZENTA_SIM_COMPARE_H
#define ZENTA_SIM_COMPARE_H

#include "report/Report.h"
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace sim {

/// How far one kind of estimates is from the truth.
struct Deviations {
  std::string what;
  std::string unit;
  std::vector<double> errors; ///< estimate less truth
  std::vector<double> sigmas; ///< formal errors

  double Mean() const;
  double Rms() const;
  double Largest() const; ///< magnitude
  /// Root mean square of errors over formal errors; not finite where a formal error is printed
  /// as 0.
  double RmsNormalised() const;
};

/// All deviations of \p report from \p truth: receiver and satellite DCBs, delays, rates,
/// gradients, ambiguities. Intervals and arcs are matched by their time; those of the report that
/// the truth has no match for are counted in \p unmatched.
std::vector<Deviations> CompareWithTruth(const report::Report& report, const nlohmann::json& truth,
                                         long& unmatched);

/// A table of deviations, a line per kind.
std::string DeviationTable(const std::vector<Deviations>& all, long unmatched);

} // namespace sim

#endif
