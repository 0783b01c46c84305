#ifndef SRC_INTERVALLIST_H
#define SRC_INTERVALLIST_H

#include <cstdint>
#include <utility>
#include <vector>

/// The ionosphere intervals while they are cut: pairs of epoch indices, held as a file of
/// 32-bit numbers would hold them.
///
/// A short rest is joined by going back two numbers and overwriting one; what is appended next
/// follows right behind that number, so that the pairs from there on are shifted by one number.
/// Joining before anything was appended spoils the file: nothing is kept from then on.
class IntervalList {
public:
  /// Appends the interval of epochs \p first to \p last.
  void Append(long first, long last) {
    Put(first);
    Put(last);
  }
  /// Writes \p last over the number two places back.
  void JoinRest(long last) {
    if (at_ < 2) {
      spoilt_ = true;
      return;
    }
    at_ -= 2;
    Put(last);
  }
  /// The \p k-th pair from the start, 0 for what is not there.
  std::pair<long, long> Get(std::size_t k) const { return {Number(2 * k), Number(2 * k + 1)}; }

private:
  long Number(std::size_t i) const { return i < numbers_.size() ? numbers_[i] : 0; }
  void Put(long number) {
    if (spoilt_) return;
    if (at_ == numbers_.size()) numbers_.push_back(0);
    numbers_[at_++] = static_cast<std::int32_t>(number);
  }

  std::vector<std::int32_t> numbers_;
  std::size_t at_ = 0; ///< where the next number goes
  bool spoilt_ = false;
};

#endif
