#include "SatelliteTable.h"

#include "KorvanC.h"
#include "SetUnknowns.h"

#include <algorithm>
#include <limits>

SatelliteTable::Entry& SatelliteTable::EntryOf(short sat) {
  const auto [entry, isNew] = entries_.try_emplace(sat);
  if (isNew) {
    Satellite& s = entry->second.satellite;
    s = {sat, sat <= 99, 0, -1, -1};
    const matrix<short>& list = ctx_.rnxd.satList;
    GetIndexSatDCB(sat, list, ctx_.ixbSAT, list.Length(), s.ixP1C1, s.ixP2C1, s.row);
  }
  return entry->second;
}

long SatelliteTable::ArcAt(short sat, long epoch) {
  Entry& e = EntryOf(sat);
  if (epoch <= e.lastEpoch) return e.arc;
  long searched = 0;
  GetAmbIndex(sat, epoch, ctx_.AmbIndex, ctx_.AmbSat, ctx_.nAmb, e.arc, searched);
  e.lastEpoch = e.arc >= 0 ? ctx_.AmbIndex(e.arc, 2) : std::numeric_limits<long>::max();
  // an arc further up in the list is found first as soon as it begins
  for (long j = 0; j < searched; ++j)
    if (ctx_.AmbSat(j) == sat && ctx_.AmbIndex(j, 0) > epoch)
      e.lastEpoch = std::min(e.lastEpoch, ctx_.AmbIndex(j, 0) - 1);
  return e.arc;
}
