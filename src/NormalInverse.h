#ifndef SRC_NORMALINVERSE_H
#define SRC_NORMALINVERSE_H

#include "matrix/matrix.h"

/// The inverse of the normal matrix, computed anew only where the matrix has changed.
///
/// Where no misclosure limit bites, the design does not depend on the unknowns: all iterations then
/// have the same normal matrix to the last bit, and so has an elimination that finds no outlier.
class NormalInverse {
public:
  /// \p inverse receives the results; between the calls nobody else changes it.
  explicit NormalInverse(matrix<long double>& inverse) : inverse_(inverse) {}

  /// Makes the inverse that of \p N, and invns::IsSingular what inv would leave there.
  /// \returns whether that took an inversion.
  bool Update(const matrix<long double>& N);

private:
  bool IsOf(const matrix<long double>& N) const;

  matrix<long double>& inverse_;
  matrix<long double> inverted_; ///< whose inverse it is, if regular; otherwise not set
};

#endif
