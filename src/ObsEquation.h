#ifndef SRC_OBSEQUATION_H
#define SRC_OBSEQUATION_H

#include "matrix/matrix.h"

/// One linearised observation equation: coefficient a[k] for unknown ix[k].
struct ObsEquation {
  long n = 0;        ///< unknowns it touches
  long ix[6];        ///< their indices
  long double a[6];  ///< minus the derivative of the model
  long double f = 0; ///< misclosure, model minus observation [m]

  /// Another unknown; \p index -1 is none.
  void Add(long index, long double coefficient) {
    if (index < 0) return;
    ix[n] = index;
    a[n] = coefficient;
    ++n;
  }
  /// Another part of the model, with its unknowns.
  void Append(const ObsEquation& part) {
    for (long i = 0; i < part.n; ++i) Add(part.ix[i], part.a[i]);
    f += part.f;
  }
  void Clear() {
    n = 0;
    f = 0;
  }
};

/// Normal equations N x = t under construction, with the weighted sum of squares vtPv.
///
/// A negative weight takes a contribution out again: rounding is symmetric in sign, so adding
/// -p and subtracting p are the same to the last bit. N is symmetric, to the last bit too: only its
/// upper triangle is added to, till Complete() is called. Indices of unknowns are not checked.
class NormalEquations {
public:
  /// \p N and \p t keep their shapes while this is in use; \p vtPv is in [m^2].
  NormalEquations(matrix<long double>& N, matrix<long double>& t, long double& vtPv);

  /// N += p a aT, t += p f a, vtPv += p f^2.
  void Add(const ObsEquation& eq, long double p);
  /// What the off-diagonal weight \p p between two equations without a common unknown adds.
  void AddCross(const ObsEquation& e1, const ObsEquation& e2, long double p);
  /// Copies the upper triangle of the leading \p n rows and columns to the lower one.
  void Complete(long n);

private:
  long double& Element(long i, long j) { return i < j ? N_[i * width_ + j] : N_[j * width_ + i]; }

  const long width_;
  long double* const N_;
  long double* const t_;
  long double& vtPv_;
};

#endif
