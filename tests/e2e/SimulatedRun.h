#ifndef E2E_SIMULATEDRUN_H
#define E2E_SIMULATEDRUN_H

#include "Compare.h"
#include "Process.h"
#include "Scenario.h"
#include "support/Files.h"
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// A simulated set and a run of the program on it, in a folder of their own.
class SimulatedRun {
public:
  /// \param estimation  arguments behind those that name the files; empty: those of the set
  explicit SimulatedRun(sim::Scenario scenario, const std::vector<std::string>& estimation = {});

  const Outcome& Result() const { return outcome_; }
  /// The report of a run that ended well, empty otherwise.
  const report::Report& Report() const { return report_; }
  const nlohmann::json& Truth() const { return truth_; }
  /// Deviations of all estimates from the truth, by kind.
  const std::map<std::string, sim::Deviations>& Errors() const { return errors_; }
  /// Estimates that the truth does not know.
  long Unmatched() const { return unmatched_; }

private:
  ScratchFolder folder_;
  nlohmann::json truth_;
  Outcome outcome_;
  report::Report report_;
  std::map<std::string, sim::Deviations> errors_;
  long unmatched_ = 0;
};

/// A day every minute without noise, in the model's class: the set with which estimates
/// equal truth. A piece of the ionosphere has sixty epochs.
sim::Scenario ExactDay();

/// The arguments of an estimation with the set's interval and cut-off and weights by elevation.
/// \param unknowns      as behind -x
/// \param observations  as behind -l
/// \param further       arguments to add
std::vector<std::string> Estimation(const sim::Scenario& scenario, const std::string& unknowns,
                                    const std::string& observations,
                                    const std::vector<std::string>& further = {});

/// The run ended well, and every estimate of the kinds that the report has is within \p limit
/// [m], [m/h] of the truth. \p kinds: the least number of kinds there must be.
void ExpectTruth(const SimulatedRun& run, std::size_t kinds, double limit = 1e-3);

#endif
