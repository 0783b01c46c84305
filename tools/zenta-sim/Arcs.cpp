#include "Arcs.h"
#include <cmath>

namespace sim {

static constexpr long kShortestArc = 15;

double ArcFinder::LargestStep(double dt) { return 0.03 + 0.01 * std::sqrt(std::abs(dt - 1)); }

void ArcFinder::Close(const Arc& arc) {
  if (arc.count >= kShortestArc) arcs_[arc.sat].push_back(arc);
}

bool ArcFinder::Continues(double dt, double step) const {
  return dt <= longestGap_ && std::abs(step) <= LargestStep(dt);
}

bool ArcFinder::Add(short sat, long epoch, const mjd& t, double level, double ambiguity) {
  const auto found = open_.find(sat);
  if (found != open_.end()) {
    Open& open = found->second;
    if (Continues(static_cast<double>(t - open.t), level - open.level)) {
      open.arc.last = epoch;
      ++open.arc.count;
      open.t = t;
      open.level = level;
      return false;
    }
    Close(open.arc);
  }
  open_[sat] = {{sat, epoch, epoch, 1, ambiguity}, t, level};
  return true;
}

std::vector<Arc> ArcFinder::Finish() {
  for (const auto& [sat, open] : open_) Close(open.arc);
  open_.clear();
  std::vector<Arc> all;
  for (const auto& [sat, arcs] : arcs_) all.insert(all.end(), arcs.begin(), arcs.end());
  return all;
}

} // namespace sim
