#ifndef SRC_SLANTTABLE_H
#define SRC_SLANTTABLE_H

#include <cstddef>
#include <vector>

class KorvanC;

/// Derivatives of the model with respect to the ionosphere unknowns of one record, negative:
/// the sign in which they enter the design matrix.
struct IonoCoefficients {
  long double delay = 0; ///< of the vertical delay
  long double east = 0;  ///< of the east gradient
  long double north = 0; ///< of the north gradient
};

/// Ionosphere coefficients by observation record, for the stages that ask for the same ones: the
/// adjustment computes them, the others take what was kept.
class SlantTable {
public:
  /// Keeps those of \p records records from now on, gradients only where wanted.
  void Keep(long records, bool gradients);
  /// Those of record \p k, whose elevation and azimuth must not change any more: kept where
  /// Keep() made room.
  IonoCoefficients Of(const KorvanC& ctx, long k) {
    const auto at = static_cast<std::size_t>(k);
    if (at >= delays_.size() || delays_[at] == 0) return Compute(ctx, k);
    if (gradients_.empty()) return {delays_[at], 0, 0};
    return {delays_[at], gradients_[at].east, gradients_[at].north};
  }

private:
  struct Gradient {
    long double east;
    long double north;
  };

  IonoCoefficients Compute(const KorvanC& ctx, long k);

  std::vector<long double> delays_; ///< 0 where not known: no coefficient of a delay is 0
  std::vector<Gradient> gradients_;
};

#endif
