#include "GNSS/GLNTrack.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr long kMostSteps = 501;
constexpr long double kSecondsPerDay = 86400.0L;
constexpr double kShortestStep = 1e-8; // [s]
// Steps whose states are kept: longer than decimal days resolve, by far, and within what an epoch
// can be shifted by.
constexpr long double kShortestKept = 1;    // [s]
constexpr long double kLongestKept = 86400; // [s]

// Into \p moved, element by element: a copy of what was just written in 80 bits would wait for it.
void Along(const GLNTrack::State& y, const GLNTrack::State& dy, long double h,
           GLNTrack::State& moved) {
#pragma GCC unroll 6
  for (std::size_t i = 0; i < y.size(); ++i) moved[i] = y[i] + dy[i] * h;
}

/// The ten bytes that a number of 80 bits has.
bool SameBytes(const long double* a, const long double* b, std::size_t n) {
  constexpr std::size_t bytes = 10;
  for (std::size_t i = 0; i < n; ++i)
    if (std::memcmp(a + i, b + i, bytes) != 0) return false;
  return true;
}

bool SameForces(const GLNTrack::Forces& a, const GLNTrack::Forces& b) {
  const long double x[] = {a.GM, a.omega, a.aE, a.C20, a.ax, a.ay, a.az};
  const long double y[] = {b.GM, b.omega, b.aE, b.C20, b.ax, b.ay, b.az};
  return SameBytes(x, y, std::size(x));
}

bool SameStart(const GLNTrack::Start& a, const GLNTrack::Start& b) {
  return a.direction == b.direction && a.step == b.step &&
         a.epoch.GetMJDay() == b.epoch.GetMJDay() && a.epoch.GetSecond() == b.epoch.GetSecond() &&
         SameBytes(a.state.data(), b.state.data(), a.state.size()) &&
         SameForces(a.forces, b.forces);
}

// C20 is negative: its term has the sign of -1.5 J2. Inline, as most of an evaluation is spent
// here.
[[gnu::always_inline]] inline void DerivativeOf(const long double* y, const GLNTrack::Forces& f,
                                                long double* dy) {
  const long double r2 = y[0] * y[0] + y[1] * y[1] + y[2] * y[2];
  const long double r = std::sqrt(r2);
  const long double central = -f.GM / (r2 * r);
  const long double zonal = 1.5L * f.C20 * f.GM * f.aE * f.aE / (r2 * r2 * r);
  const long double z2 = 5.0L * y[2] * y[2] / r2;
  const long double inPlane = central + zonal * (1.0L - z2) + f.omega * f.omega;
  const long double alongAxis = central + zonal * (3.0L - z2);
  dy[0] = y[3];
  dy[1] = y[4];
  dy[2] = y[5];
  dy[3] = inPlane * y[0] + 2.0L * f.omega * y[4] + f.ax;
  dy[4] = inPlane * y[1] - 2.0L * f.omega * y[3] + f.ay;
  dy[5] = alongAxis * y[2] + f.az;
}

} // namespace

void GLNTrack::Derivative(const long double* y, const Forces& f, long double* dy) {
  DerivativeOf(y, f, dy);
}

void GLNTrack::Begin(const Start& start) {
  if (!nodes_.empty() && SameStart(start_, start)) return;
  start_ = start;
  stepDays_ = start.step / kSecondsPerDay;
  nodes_.clear();
  nodes_.push_back({start.state, start.epoch, start.epoch.GetMJDDec()});
}

// One classical Runge-Kutta step of h [s], but for the velocity at its end, which takes the fourth
// derivative: who asks for a position alone does without.
void GLNTrack::OpenStep(State& y, long double h) {
  ++steps_;
  State& k1 = open_.k1;
  State& k2 = open_.k2;
  State& k3 = open_.k3;
  State& end = open_.end;
  DerivativeOf(y.data(), start_.forces, k1.data());
  Along(y, k1, h / 2.0L, end);
  DerivativeOf(end.data(), start_.forces, k2.data());
  Along(y, k2, h / 2.0L, end);
  DerivativeOf(end.data(), start_.forces, k3.data());
  Along(y, k3, h, end);
  open_.h = h;
#pragma GCC unroll 3
  for (std::size_t i = 0; i < 3; ++i)
    y[i] += k1[i] * h / 6.0L + k2[i] * h / 3.0L + k3[i] * h / 3.0L + end[i + 3] * h / 6.0L;
}

void GLNTrack::CloseStep(State& y) {
  if (open_.h == 0) return;
  const auto& [k1, k2, k3, end, h] = open_;
  State k4;
  DerivativeOf(end.data(), start_.forces, k4.data());
#pragma GCC unroll 3
  for (std::size_t i = 3; i < y.size(); ++i)
    y[i] += k1[i] * h / 6.0L + k2[i] * h / 3.0L + k3[i] * h / 3.0L + k4[i] * h / 6.0L;
  open_.h = 0;
}

void GLNTrack::PositionAt(const mjd& t, long double days, State& y) {
  const Instant end{t, days};
  if (!IsKept()) return RunOut(nodes_[0], end, 0, y);
  const long double h = static_cast<long double>(start_.direction) * start_.step;
  auto m = static_cast<std::size_t>(FirstDoubtful(end));
  for (; m < kMostSteps && TakesWholeStep(nodes_[m], end); ++m) {
    if (m + 1 < nodes_.size()) continue;
    Node next = nodes_[m];
    OpenStep(next.state, h);
    CloseStep(next.state);
    next.epoch += h;
    next.days = next.epoch.GetMJDDec();
    nodes_.push_back(next);
  }
  RunOut(nodes_[m], end, static_cast<int>(m), y);
}

// Other steps could move the epoch out of its range, where no node can be kept.
bool GLNTrack::IsKept() const {
  return start_.step >= kShortestKept && start_.step <= kLongestKept;
}

// Up to two steps before the end a whole step is taken for certain: what is left is then longer
// than one by a whole step, against which the rounding of decimal days is nothing.
long GLNTrack::FirstDoubtful(const Instant& end) const {
  const long double steps = std::fabs(end.days - nodes_[0].days) * kSecondsPerDay / start_.step;
  const long known = static_cast<long>(nodes_.size()) - 1;
  return std::clamp(static_cast<long>(steps) - 1, 0L, known);
}

bool GLNTrack::TakesWholeStep(const Node& node, const Instant& end) const {
  const long double left = end.days - node.days; // [d]
  return !(std::fabs(left) < stepDays_) && !HasArrived(node.epoch, end.epoch);
}

bool GLNTrack::HasArrived(const mjd& epoch, const mjd& t) const {
  return start_.direction < 0 ? epoch <= t : epoch >= t;
}

// The rest of an integration; the last step is shortened to what is left. What is left is taken
// from decimal days, which resolve 0.3 ns: a whole step more or less hangs on it.
void GLNTrack::RunOut(const Node& from, const Instant& end, int stepsDone, State& y) {
  y = from.state;
  open_.h = 0;
  mjd epoch = from.epoch;
  long double left = end.days - from.days;                                  // [d]
  long double h = static_cast<long double>(start_.direction) * start_.step; // [s]
  long double hd = static_cast<long double>(start_.direction) * stepDays_;  // [d]
  for (int count = stepsDone; count < kMostSteps; ++count) {
    if (std::fabs(left) < std::fabs(hd)) {
      hd = left;
      h = hd * kSecondsPerDay;
    }
    if (HasArrived(epoch, end.epoch) || std::fabs(h) < kShortestStep) break;
    CloseStep(y);
    OpenStep(y, h);
    epoch += h;
    left = end.days - epoch.GetMJDDec();
  }
}
