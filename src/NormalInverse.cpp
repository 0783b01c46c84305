#include "NormalInverse.h"

#include "matrix/ExtendedBits.h"
#include "matrix/inv.h"

#include <algorithm>

bool NormalInverse::Update(const matrix<long double>& N) {
  if (IsOf(N)) {
    invns::IsSingular = false;
    return false;
  }
  inverted_ = {};
  inverse_ = {}; // its memory is free while the new one is made
  inverse_ = inv(N);
  // inv does not tell whether a 1 x 1 matrix is singular, and warns of some that are: both each
  // time
  if (N.Length() > 1 && !invns::IsSingular) inverted_ = N;
  return true;
}

/// Equal bits, that is: -0 is not 0, and a non-number is itself.
bool NormalInverse::IsOf(const matrix<long double>& N) const {
  const long n = N.Length();
  return n > 0 && n == inverted_.Length() &&
         std::equal(&N(0), &N(0) + n, &inverted_(0), SameNumber);
}
