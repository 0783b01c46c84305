#ifndef SRC_SATELLITETABLE_H
#define SRC_SATELLITETABLE_H

#include <unordered_map>

class KorvanC;

/// What GetIndexSatDCB and GetAmbIndex find, kept from record to record of each satellite: for
/// stages that go through the store, whose layout of unknowns and arcs stays as it is meanwhile.
class SatelliteTable {
public:
  struct Satellite {
    short number;
    bool isGPS;
    long row;    ///< in the tables of biases
    long ixP1C1; ///< bias unknowns, -1 where none
    long ixP2C1;
  };

  explicit SatelliteTable(const KorvanC& ctx) : ctx_(ctx) {}

  /// Stays where it is as long as the table.
  const Satellite& Of(short sat) { return EntryOf(sat).satellite; }
  /// Ambiguity of \p sat at \p epoch, -1 where no arc covers it. The epochs that are asked for of
  /// one satellite do not go back.
  long ArcAt(short sat, long epoch);

private:
  struct Entry {
    Satellite satellite;
    long arc = -1;
    long lastEpoch = -1; ///< for which it is known to be that arc
  };
  Entry& EntryOf(short sat);

  const KorvanC& ctx_;
  std::unordered_map<short, Entry> entries_;
};

#endif
