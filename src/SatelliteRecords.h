#ifndef SRC_SATELLITERECORDS_H
#define SRC_SATELLITERECORDS_H

#include "GNSS/RINEXData.h"

#include <span>
#include <unordered_map>
#include <vector>

/// The records of each satellite in the order of the store: for stages that go from satellite to
/// satellite, or from arc to arc, without looking at all other satellites' records each time.
class SatelliteRecords {
public:
  struct Record {
    long epoch; ///< index of the epoch
    long k;     ///< record of the store
  };

  /// One walk over the store, whose satellites must not change as long as this is used.
  explicit SatelliteRecords(const RINEXData& store);

  /// All records of satellite \p sat.
  std::span<const Record> Of(short sat) const;
  /// Those of the epochs \p first to \p last.
  std::span<const Record> Of(short sat, long first, long last) const;

private:
  std::unordered_map<short, std::vector<Record>> records_;
};

#endif
