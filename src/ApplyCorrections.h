#ifndef SRC_APPLYCORRECTIONS_H
#define SRC_APPLYCORRECTIONS_H

class KorvanC;

/// Corrects the stored observations in place and finds where each satellite stands: the four
/// steps below in this order.
void ApplyCorrections(KorvanC& ctx);

/// With a receiver clock file, moves every epoch back by its clock correction. Lines and epochs
/// belong together by their order; another number of lines ends the program.
void CorrectRecClock(KorvanC& ctx);

/// Fills the frequency tables of GLONASSc for the file's GLONASS satellites: channels at the
/// first epoch from the channel list, or, without one, from the first broadcast record of each
/// slot. A satellite without a channel is warned about and gets channel 0.
void SetGlonassFrequency(KorvanC& ctx);

/// Takes the known biases of the satellites out of C1 and P2, so that what is left refers to
/// the ionosphere-free clock of P1 and P2.
///
/// With D the P1-P2 bias, E the P1-C1 bias and f the two frequencies (a nominal ratio of 9/7 for
/// GLONASS): C1 += f2^2/(f1^2-f2^2) c D and P2 += f1^2/(f1^2-f2^2) c D. Receivers that track C1
/// in place of P1 add c E to C1, cross-correlating ones to C1 and P2. Without a P1-P2 file, GPS
/// broadcast orbits give the group delay TGD: C1 -= c TGD and P2 -= (f1/f2)^2 c TGD.
void ApplyDCB(KorvanC& ctx);

/// Elevation, azimuth and weight of every record of a processed system. Where there is no
/// orbit, both angles are 0; the elevation cut-off of the estimation leaves such records out.
void CalculateAE(KorvanC& ctx);

#endif
