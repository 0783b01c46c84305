#ifndef SRC_SATPOSITION_H
#define SRC_SATPOSITION_H

#include "GNSS/mjd.h"
#include "GNSS/xyz.h"

class KorvanC;

/// The satellite's system is processed in this run. Numbers from 200 on belong to none.
bool IsProcessed(const KorvanC& ctx, short sat);

/// Where satellite \p sat of a processed system was when it sent what the receiver's antenna
/// got at \p t: [m], Earth-fixed at emission. Broadcast orbits come before precise ones.
/// \returns false when no orbit gives a position.
bool EmissionPosition(KorvanC& ctx, short sat, const mjd& t, xyzt& position);

#endif
