#ifndef SRC_PROCIONOEPH_H
#define SRC_PROCIONOEPH_H

class KorvanC;

/// The vertical delay (and gradients) of every epoch by itself, with biases and ambiguities held
/// at the values of the main adjustment and only the values that took part in it. Changes
/// nothing in the context.
///
/// An epoch needs more observations than unknowns; one that has fewer gives no line, with
/// gradients too (it does not fall back to the delay alone). Neither does one whose observations
/// do not tell the unknowns apart, such as code and phase of two satellites with gradients.
/// Nothing happens unless ifEstIONEph is set. Prints in the fixed-point notation that the settings
/// report leaves on standard output, epochs with the decimals that PrintResults leaves.
void ProcIonoEph(KorvanC& ctx);

#endif
