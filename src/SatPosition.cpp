#include "SatPosition.h"

#include "KorvanC.h"
#include "PROGINC/WarningCount.h"

#include <cmath>

bool IsProcessed(const KorvanC& ctx, short sat) {
  if (sat <= 99) return ctx.isGPS;
  return sat <= 199 && ctx.isGLN;
}

namespace {

bool PrecisePosition(GNSSpEph& orbits, short sat, const mjd& t, const xyz& receiver,
                     xyzt& position) {
  xyzt velocity;
  orbits.CalcSatPosition(static_cast<unsigned short>(sat), t, receiver, position, velocity);
  return orbits.PSisOK;
}

bool FromOrbits(KorvanC& ctx, short sat, const mjd& t, xyzt& position) {
  const xyz& receiver = ctx.RecPosFC;
  if (sat <= 99) {
    if (ctx.isGPSnav) {
      long double groupDelay = 0;
      ctx.gpsnav.CalcSatPosition(static_cast<unsigned short>(sat), t, t, receiver, position,
                                 &groupDelay, 0, 0);
      return true;
    }
    return ctx.isGpEph && PrecisePosition(ctx.pephG, sat, t, receiver, position);
  }
  if (ctx.isGLNnav) {
    xyzt velocity;
    ctx.glnnav.CalcSatPosition(static_cast<short>(sat - 100), t, t, receiver, position, velocity,
                               0);
    return true;
  }
  return ctx.isRpEph && PrecisePosition(ctx.pephR, sat, t, receiver, position);
}

// A record whose numbers make no orbit, such as one without a major axis.
bool IsFinite(const xyzt& p) {
  return std::isfinite(p.GetX()) && std::isfinite(p.GetY()) && std::isfinite(p.GetZ()) &&
         std::isfinite(p.GetT());
}

} // namespace

bool EmissionPosition(KorvanC& ctx, short sat, const mjd& t, xyzt& position) {
  position = xyzt();
  return FromOrbits(ctx, sat, t, position) && IsFinite(position);
}

void RecordPositions::Keep(long records) {
  const auto n = static_cast<std::size_t>(records);
  states_.assign(n, State::kUnknown);
  positions_.resize(n);
}

void RecordPositions::Clear() { *this = RecordPositions(); }

bool RecordPositions::Locate(KorvanC& ctx, long record, const mjd& t, xyz& position) {
  const auto k = static_cast<std::size_t>(record);
  if (k < states_.size() && states_[k] != State::kUnknown) {
    position = positions_[k];
    return states_[k] == State::kKnown;
  }
  const unsigned long warnings = WarningsIssued;
  xyzt found;
  const bool located = EmissionPosition(ctx, ctx.rnxd.sat(record), t, found);
  position = xyz(found.GetX(), found.GetY(), found.GetZ());
  if (k < states_.size() && WarningsIssued == warnings) {
    states_[k] = located ? State::kKnown : State::kNone;
    positions_[k] = position;
  }
  return located;
}
