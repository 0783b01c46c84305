#ifndef ZENTA_SIM_RANDOM_H
#define ZENTA_SIM_RANDOM_H

#include <cstdint>
#include <string_view>

namespace sim {

/// Numbers that look random and depend on nothing but their seed, purpose and index.
///
/// Every purpose ("noise", "slips", ...) and every satellite draws from a stream of its own, so
/// that switching one disturbance on leaves the others as they were. The generator and the
/// distributions are written out here because those of the standard library may differ from one
/// implementation to the next.
/// Source: Blackman and Vigna, Scrambled Linear Pseudorandom Number Generators (xoshiro256++),
/// seeded by splitmix64.
class Random {
public:
  explicit Random(std::uint64_t seed, std::string_view purpose = {}, std::uint64_t index = 0);

  /// 64 evenly distributed bits.
  std::uint64_t Bits();
  /// 0 <= u < 1, a multiple of 2^-53.
  double Uniform();
  /// \p low <= u < \p high
  double Uniform(double low, double high) { return low + (high - low) * Uniform(); }
  /// A whole number from \p low to \p high, both included, each equally likely.
  std::int64_t Whole(std::int64_t low, std::int64_t high);
  /// Mean 0, standard deviation 1 (Box and Muller).
  double Normal();

private:
  std::uint64_t state_[4];
  double spare_ = 0; ///< second number of the last Box-Muller pair
  bool hasSpare_ = false;
};

} // namespace sim

#endif
