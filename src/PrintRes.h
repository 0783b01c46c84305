#ifndef SRC_PRINTRES_H
#define SRC_PRINTRES_H

class KorvanC;

/// Writes every residual of the final adjustment to the binary file for plotting programs.
///
/// Little-endian, nothing between the fields. Head: number n of satellites (int16), their n
/// numbers (int16 each, as in the satellite list). Then per epoch with at least one residual:
/// its MJD (uint32), its seconds of day (80-bit extended, 10 bytes and 2 zero bytes), the number
/// m of residuals (int32), and m records of satellite (int16), type (int16: 1 P1-C1, 2 P2-C1,
/// 5 L4) and residual v, model minus observation, in metres (80-bit extended as above).
void PrintRes(KorvanC& ctx);

#endif
