#ifndef SRC_PRINTSET_H
#define SRC_PRINTSET_H

class KorvanC;

/// The settings report on standard output: program, input files, settings.
///
/// Switches standard output to fixed-point notation. That, and the number of decimals it leaves,
/// stay in force for the reports that follow.
void PrintSet(KorvanC& ctx);

#endif
