#include "ObsEquation.h"

#include "matrix/ExtendedBits.h"

#include <algorithm>

namespace {

long double* Elements(matrix<long double>& m) { return m.Length() > 0 ? &m(0) : nullptr; }

} // namespace

NormalEquations::NormalEquations(matrix<long double>& N, matrix<long double>& t, long double& vtPv)
    : width_(N.NCol()), N_(Elements(N)), t_(Elements(t)), vtPv_(vtPv) {}

void NormalEquations::Add(const ObsEquation& eq, long double p) {
  for (long i = 0; i < eq.n; ++i) {
    for (long j = i; j < eq.n; ++j) Element(eq.ix[i], eq.ix[j]) += eq.a[i] * eq.a[j] * p;
    t_[eq.ix[i]] += eq.f * eq.a[i] * p;
  }
  vtPv_ += p * (eq.f * eq.f);
}

void NormalEquations::AddCross(const ObsEquation& e1, const ObsEquation& e2, long double p) {
  for (long i = 0; i < e1.n; ++i)
    for (long j = 0; j < e2.n; ++j) Element(e1.ix[i], e2.ix[j]) += e1.a[i] * e2.a[j] * p;
  for (long i = 0; i < e1.n; ++i) t_[e1.ix[i]] += e2.f * e1.a[i] * p;
  for (long j = 0; j < e2.n; ++j) t_[e2.ix[j]] += e1.f * e2.a[j] * p;
  vtPv_ += 2 * p * e1.f * e2.f;
}

void NormalEquations::Complete(long n) {
  constexpr long kBlock = 16; // rows and columns that stay in the cache
  for (long top = 0; top < n; top += kBlock)
    for (long left = 0; left <= top; left += kBlock)
      for (long i = top; i < std::min(top + kBlock, n); ++i)
        for (long j = left; j < std::min(left + kBlock, i); ++j)
          CopyNumber(N_[i * width_ + j], N_[j * width_ + i]);
}
