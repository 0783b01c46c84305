#ifndef GNSS_GLNTRACK_H
#define GNSS_GLNTRACK_H

#include "GNSS/mjd.h"

#include <array>
#include <vector>

/// The motion of one GLONASS satellite away from the epoch of a broadcast record, by the classical
/// Runge-Kutta method of fourth order.
///
/// Source: GLONASS ICD 5.1, appendix 3 (equations of motion).
///
/// States after whole steps depend on the start alone, so they are kept and serve all epochs
/// behind them: what is left is the one shortened step to the epoch asked for. The steps taken,
/// and so every bit of the result, are those of an integration from the start.
class GLNTrack {
public:
  /// Position [m] and velocity [m/s], Earth-fixed.
  using State = std::array<long double, 6>;

  /// Constants of the equations of motion.
  struct Forces {
    long double GM;         ///< [m3/s2] gravitational constant of the Earth
    long double omega;      ///< [rad/s] rotation of the Earth
    long double aE;         ///< [m] equatorial radius of the Earth
    long double C20;        ///< second zonal harmonic, negative
    long double ax, ay, az; ///< [m/s2] accelerations by Sun and Moon, constant
  };

  /// What an integration begins with.
  struct Start {
    State state;
    Forces forces;
    mjd epoch;        ///< of the state
    int direction;    ///< 1 to later epochs, -1 to earlier ones
    long double step; ///< [s] length of a whole step; the sign is that of the direction
  };

  /// Time derivative \p dy of the state \p y, six numbers each.
  static void Derivative(const long double* y, const Forces& forces, long double* dy);

  /// Integrates from \p start from now on. What is known is kept where that is the same, bit by
  /// bit, as before.
  void Begin(const Start& start);
  /// The position at \p t, in decimal days \p days, which must lie in the direction of the start.
  /// At most 501 steps are made: what lies further away gets the state reached.
  /// \param y  state (out); its velocity is that of \p t once CompleteVelocity was called
  void PositionAt(const mjd& t, long double days, State& y);
  /// Completes the state that the last PositionAt gave.
  void CompleteVelocity(State& y) { CloseStep(y); }

  /// Runge-Kutta steps made so far, over all starts.
  unsigned long Steps() const { return steps_; }

private:
  /// The state after some whole steps.
  struct Node {
    State state;
    mjd epoch;
    long double days; ///< the same in decimal days
  };

  /// A step whose velocity is still to come.
  struct Step {
    State k1, k2, k3;  ///< derivatives
    State end;         ///< where the fourth one is taken
    long double h = 0; ///< [s] length; 0: nothing is to come
  };

  /// An epoch, and the same in decimal days.
  struct Instant {
    const mjd& epoch;
    long double days;
  };

  bool IsKept() const;
  void OpenStep(State& y, long double h);
  void CloseStep(State& y);
  long FirstDoubtful(const Instant& end) const;
  bool TakesWholeStep(const Node& node, const Instant& end) const;
  bool HasArrived(const mjd& epoch, const mjd& t) const;
  void RunOut(const Node& from, const Instant& end, int stepsDone, State& y);

  Start start_ = {{}, {}, mjd(), 0, 0};
  long double stepDays_ = 0; ///< length of a whole step in decimal days
  Step open_ = {};
  std::vector<Node> nodes_; ///< after 0, 1, 2 ... whole steps
  unsigned long steps_ = 0;
};

#endif
