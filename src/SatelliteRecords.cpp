#include "SatelliteRecords.h"

#include <algorithm>

SatelliteRecords::SatelliteRecords(const RINEXData& store) {
  long k = 0;
  for (long i = 0; i < store.nepochall; ++i)
    for (const long end = k + store.nsat(i); k < end; ++k) records_[store.sat(k)].push_back({i, k});
}

std::span<const SatelliteRecords::Record> SatelliteRecords::Of(short sat) const {
  const auto found = records_.find(sat);
  if (found == records_.end()) return {};
  return found->second;
}

std::span<const SatelliteRecords::Record> SatelliteRecords::Of(short sat, long first,
                                                               long last) const {
  const std::span<const Record> all = Of(sat);
  const auto begin = std::partition_point(all.begin(), all.end(),
                                          [=](const Record& r) { return r.epoch < first; });
  const auto end =
      std::partition_point(begin, all.end(), [=](const Record& r) { return r.epoch <= last; });
  return {begin, end};
}
