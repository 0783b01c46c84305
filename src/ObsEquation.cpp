#include "ObsEquation.h"

void NormalEquations::Add(const ObsEquation& eq, long double p) {
  for (long i = 0; i < eq.n; ++i) {
    for (long j = 0; j < eq.n; ++j) N(eq.ix[i], eq.ix[j]) += eq.a[i] * eq.a[j] * p;
    t(eq.ix[i]) += eq.f * eq.a[i] * p;
  }
  vtPv += p * (eq.f * eq.f);
}

void NormalEquations::AddCross(const ObsEquation& e1, const ObsEquation& e2, long double p) {
  for (long i = 0; i < e1.n; ++i)
    for (long j = 0; j < e2.n; ++j) {
      const long double share = e1.a[i] * e2.a[j] * p;
      N(e1.ix[i], e2.ix[j]) += share;
      N(e2.ix[j], e1.ix[i]) += share;
    }
  for (long i = 0; i < e1.n; ++i) t(e1.ix[i]) += e2.f * e1.a[i] * p;
  for (long j = 0; j < e2.n; ++j) t(e2.ix[j]) += e1.f * e2.a[j] * p;
  vtPv += 2 * p * e1.f * e2.f;
}
