#ifndef ZENTA_SIM_COMPARE_H
#define ZENTA_SIM_COMPARE_H

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace sim {

/// An estimate with its formal error.
struct Estimate {
  double value = 0;
  double sigma = 0;
};

/// The results of one text report of the program. What the report lacks is empty.
struct Report {
  struct Node {
    double mjd = 0; ///< [d]
    Estimate delay, rate, eastGradient, northGradient;
    bool hasGradients = false;
  };
  struct Ambiguity {
    short sat = 0;
    double first = 0, last = 0; ///< [d] MJD, whole seconds
    Estimate value;
    long observations = 0;
  };
  bool complete = false;                    ///< the results block was found
  std::map<std::string, Estimate> receiver; ///< "P1-C1", "P2-C1" [m]
  std::map<short, std::map<std::string, Estimate>> satellites;
  std::vector<Node> nodes;
  std::vector<Ambiguity> ambiguities;
  long iterations = 0, observations = 0, outliers = 0;
  double variance = 0; ///< of unit weight
};

/// Reads the results block of a report.
Report ReadReport(const std::string& text);

/// How far one kind of estimates is from the truth.
struct Deviations {
  std::string what;
  std::string unit;
  std::vector<double> errors; ///< estimate less truth
  std::vector<double> sigmas; ///< formal errors

  double Mean() const;
  double Rms() const;
  double Largest() const;        ///< magnitude
  double MeanNormalised() const; ///< mean of error over formal error
  double RmsNormalised() const;
};

/// All deviations of \p report from \p truth: receiver and satellite DCBs, delays, rates,
/// gradients, ambiguities. Nodes and arcs are matched by their time; those of the report that
/// the truth has no match for are counted in \p unmatched.
std::vector<Deviations> CompareWithTruth(const Report& report, const nlohmann::json& truth,
                                         long& unmatched);

/// A table of deviations, a line per kind.
std::string DeviationTable(const std::vector<Deviations>& all, long unmatched);

} // namespace sim

#endif
