#ifndef SRC_SATPOSITION_H
#define SRC_SATPOSITION_H

#include "GNSS/mjd.h"
#include "GNSS/xyz.h"

#include <vector>

class KorvanC;

/// The satellite's system is processed in this run. Numbers from 200 on belong to none.
bool IsProcessed(const KorvanC& ctx, short sat);

/// Where satellite \p sat of a processed system was when it sent what the receiver's antenna
/// got at \p t: [m], Earth-fixed at emission. Broadcast orbits come before precise ones.
/// \returns false when no orbit gives a position, or one with something that is no number.
bool EmissionPosition(KorvanC& ctx, short sat, const mjd& t, xyzt& position);

/// Emission positions by observation record, for the stages that ask for the same ones: the
/// first computes them, the others take what was kept.
///
/// A position depends on satellite, epoch, receiver and orbits alone, which stay as they are from
/// the first of these stages to the last. One that could not be computed without a warning is not
/// kept, so that warnings come as often, and in the same places, as from stages that keep nothing.
class RecordPositions {
public:
  /// Keeps positions of \p records records from now on; none is known yet.
  void Keep(long records);
  /// Keeps nothing any more and gives the memory back.
  void Clear();
  /// EmissionPosition of record \p k at the epoch \p t of the record.
  bool Locate(KorvanC& ctx, long k, const mjd& t, xyz& position);

private:
  enum class State : unsigned char { kUnknown, kNone, kKnown };

  std::vector<State> states_;
  std::vector<xyz> positions_; ///< [m]
};

#endif
