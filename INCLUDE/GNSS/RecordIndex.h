#ifndef GNSS_RECORDINDEX_H
#define GNSS_RECORDINDEX_H

#include "matrix/matrix.h"

#include <unordered_map>
#include <vector>

/// The records of each satellite of a navigation file, in file order: so that the look-up of a
/// record goes through those of its satellite alone.
class RecordIndex {
public:
  /// The records of satellite \p number among the first \p n rows of \p sat. The first call goes
  /// through the table; until Clear() it must not change.
  template <typename Number>
  const std::vector<long>& Of(long number, const matrix<Number>& sat, long n) {
    if (!built_) {
      for (long k = 0; k < n; ++k) records_[sat(k)].push_back(k);
      built_ = true;
    }
    return records_[number];
  }
  /// Another table is coming.
  void Clear() { *this = RecordIndex(); }

private:
  std::unordered_map<long, std::vector<long>> records_;
  bool built_ = false;
};

#endif
