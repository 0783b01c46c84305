#ifndef SRC_SETAMBIGUITIES_H
#define SRC_SETAMBIGUITIES_H

class KorvanC;

/// Screens L4 into continuous arcs and makes each an ambiguity with the mean L4 of its arc as
/// first value. Nothing happens unless phase is used.
///
/// The arcs are also written to "Ambiq.b" in the working directory, a file that later programs
/// read: records of 18 bytes, little-endian, (satellite: 16 bits; first epoch, first record of
/// that epoch, last epoch, number of observations: 32 bits each), in the order of AmbSat. Where
/// the file can't be written the run is none the worse.
void SetAmbiguities(KorvanC& ctx);

#endif
