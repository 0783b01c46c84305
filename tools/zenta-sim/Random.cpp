#include "Random.h"
#include "Vec3.h"
#include <bit>
#include <cmath>

namespace sim {

static std::uint64_t SplitMix64(std::uint64_t& state) {
  std::uint64_t z = (state += 0x9e3779b97f4a7c15U);
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
  return z ^ (z >> 31);
}

/// FNV-1a.
static std::uint64_t Hash(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  return hash;
}

Random::Random(std::uint64_t seed, std::string_view purpose, std::uint64_t index) {
  std::uint64_t mix = seed;
  mix = SplitMix64(mix) ^ Hash(purpose);
  mix = SplitMix64(mix) ^ index;
  for (std::uint64_t& word : state_) word = SplitMix64(mix);
}

std::uint64_t Random::Bits() {
  const std::uint64_t result = std::rotl(state_[0] + state_[3], 23) + state_[0];
  const std::uint64_t t = state_[1] << 17;
  state_[2] ^= state_[0];
  state_[3] ^= state_[1];
  state_[1] ^= state_[2];
  state_[0] ^= state_[3];
  state_[2] ^= t;
  state_[3] = std::rotl(state_[3], 45);
  return result;
}

double Random::Uniform() { return static_cast<double>(Bits() >> 11) * 0x1p-53; }

std::int64_t Random::Whole(std::int64_t low, std::int64_t high) {
  const std::uint64_t span = static_cast<std::uint64_t>(high - low) + 1;
  if (span == 0) return static_cast<std::int64_t>(Bits()); // the whole range of 64 bits
  // Values behind the last full multiple of the span would favour the small ones.
  const std::uint64_t limit = span * (UINT64_MAX / span);
  std::uint64_t bits = Bits();
  while (bits >= limit) bits = Bits();
  return low + static_cast<std::int64_t>(bits % span);
}

double Random::Normal() {
  if (hasSpare_) {
    hasSpare_ = false;
    return spare_;
  }
  const double radius = std::sqrt(-2 * std::log(1 - Uniform())); // 1 - u is never 0
  const double angle = 2 * kPi * Uniform();
  spare_ = radius * std::sin(angle);
  hasSpare_ = true;
  return radius * std::cos(angle);
}

} // namespace sim
