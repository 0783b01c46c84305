#ifndef SRC_OBSEQUATION_H
#define SRC_OBSEQUATION_H

#include "matrix/matrix.h"

/// One linearised observation equation: coefficient a[k] for unknown ix[k].
struct ObsEquation {
  long n = 0;            ///< unknowns it touches
  long ix[6] = {};       ///< their indices
  long double a[6] = {}; ///< minus the derivative of the model
  long double f = 0;     ///< misclosure, model minus observation [m]

  /// Another unknown; \p index -1 is none.
  void Add(long index, long double coefficient) {
    if (index < 0) return;
    ix[n] = index;
    a[n] = coefficient;
    ++n;
  }
};

/// Normal equations N x = t under construction, with the weighted sum of squares vtPv.
///
/// A negative weight takes a contribution out again: rounding is symmetric in sign, so adding
/// -p and subtracting p are the same to the last bit.
struct NormalEquations {
  matrix<long double>& N;
  matrix<long double>& t;
  long double& vtPv; ///< [m^2]

  /// N += p a aT, t += p f a, vtPv += p f^2.
  void Add(const ObsEquation& eq, long double p);
  /// What the off-diagonal weight \p p between two equations without a common unknown adds.
  void AddCross(const ObsEquation& e1, const ObsEquation& e2, long double p);
};

#endif
