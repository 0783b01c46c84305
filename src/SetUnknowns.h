#ifndef SRC_SETUNKNOWNS_H
#define SRC_SETUNKNOWNS_H

#include "matrix/matrix.h"

class KorvanC;

/// Decides which unknowns exist and gives each its index; sizes and clears what the adjustment
/// fills. The order: receiver biases P1-C1, P2-C1; satellite biases, GPS P1-C1, GPS P2-C1,
/// GLONASS P1-C1, GLONASS P2-C1; ambiguities; per ionosphere interval the delay, its rate and,
/// where asked for, the east and north gradients. Behind them come the rows of the continuity
/// constraints.
void SetUnknowns(KorvanC& ctx);

// ---- The steps of SetUnknowns, in its order. \p ix is the index given out last. --------------

/// Receiver biases (GPS): an unknown where more than 10 records of the file have the value.
void SetUnknowns_RecGPSDCB(KorvanC& ctx);
/// Biases of GPS satellites: an unknown where at least 3 records of the satellite have the value.
void SetUnknowns_SatGPSDCB(KorvanC& ctx, long& ix);
/// The same for GLONASS satellites.
void SetUnknowns_SatGLNDCB(KorvanC& ctx, long& ix);
/// One unknown for each ambiguity.
void SetUnknowns_L4Amb(KorvanC& ctx, long& ix);

/// Cuts the epochs into ionosphere intervals and writes the continuity constraints into the
/// border of the normal matrix.
///
/// A gap of more than MaxIonGap breaks the chain of intervals (the gap before the very last
/// epoch is not looked at); a block of 3 epochs or fewer between two gaps gets none. A rest
/// shorter than a quarter of the interval is joined to the interval before it by overwriting
/// that record's first epoch with the last one of the block. The intervals are then no longer
/// in order, and the estimation ends the program with the container's range report: choose an
/// interval that leaves no short rest.
///
/// The constraint between intervals k-1 and k reads: delay + rate * dT/3600 - delay of k = 0.
/// Its third coefficient stands two columns behind the first; with gradients that is the east
/// gradient of interval k-1 and not the delay of k.
void SetIonoIntervals(KorvanC& ctx, long& ix);

// ---- Look-ups
// ------------------------------------------------------------------------------------

/// Bias unknowns of satellite \p prn: its first row k of \p prnList and the indices found there in
/// \p ixbSAT. A satellite that is not listed leaves k at \p nsat and the indices as they were.
void GetIndexSatDCB(const short& prn, const matrix<short>& prnList, const matrix<long>& ixbSAT,
                    const long& nsat, long& ixp1c1, long& ixp2c1, long& k);

/// Ambiguity \p iamb of satellite \p prn at epoch \p ieph: the first of the \p namb arcs that
/// covers it, -1 when none does. \p AI holds the arcs (first epoch in column 0, last epoch in
/// column 2), \p AP their satellites; \p k is where the search ended.
void GetAmbIndex(const short& prn, const long& ieph, const matrix<long>& AI,
                 const matrix<short>& AP, const long& namb, long& iamb, long& k);

#endif
