#ifndef ZENTA_SIM_ARCS_H
#define ZENTA_SIM_ARCS_H

#include "Epochs.h"
#include <map>
#include <vector>

namespace sim {

/// An arc of phases with one ambiguity, as the report lists it.
struct Arc {
  short sat = 0;
  long first = 0, last = 0; ///< epochs
  long count = 0;           ///< observations
  double ambiguity = 0;     ///< [m] expected estimate
};

/// Finds the arcs that the screening of L4 cuts: at gaps of more than 0.7 s over the interval and
/// at steps above 0.03 m + 0.01 m sqrt|dt - 1 s|; arcs of less than 15 observations are dropped.
///
/// It goes by the steps that were put in, not by the phases, so that noise and the ionosphere's
/// own change don't count.
class ArcFinder {
public:
  explicit ArcFinder(double interval) : longestGap_(0.7 + interval) {}

  /// A usable phase of \p sat: above the cut-off, with both phases, not aligned with the Sun.
  /// \param level      [m] what was added to L4: slips, outliers, steps of the ionosphere
  /// \param ambiguity  [m] expected estimate if an arc begins here
  /// \returns whether an arc begins here
  bool Add(short sat, long epoch, const mjd& t, double level, double ambiguity);
  /// All arcs, satellite by satellite and in time. Ends the collection.
  std::vector<Arc> Finish();

  /// An observation \p dt seconds later and \p step [m] off belongs to the same arc.
  bool Continues(double dt, double step) const;
  /// Largest step [m] that the screening passes after \p dt seconds.
  static double LargestStep(double dt);

private:
  struct Open {
    Arc arc;
    mjd t;            ///< last observation
    double level = 0; ///< of the last observation
  };
  void Close(const Arc& arc);

  double longestGap_; ///< [s]
  std::map<short, Open> open_;
  std::map<short, std::vector<Arc>> arcs_;
};

} // namespace sim

#endif
