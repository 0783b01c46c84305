#ifndef SRC_GETINITPOS_H
#define SRC_GETINITPOS_H

class KorvanC;

/// Fixes the receiver's code-tracking class and its positions.
///
/// The marker comes from the coordinate file, at the middle epoch of the observations; a site
/// that is not listed there is warned about, and then, as without a file, the header's
/// approximate position serves. The header's antenna offset leads from the marker to the
/// antenna reference point. A header without a position ends the program through the
/// latitude check of flh.
void GetReceiverProperties(KorvanC& ctx);

#endif
