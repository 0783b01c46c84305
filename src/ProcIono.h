#ifndef SRC_PROCIONO_H
#define SRC_PROCIONO_H

#include "matrix/matrix.h"

class KorvanC;

/// The joint adjustment of biases, ambiguities and ionosphere.
///
/// Observations of a record, each where it is observed and asked for: P1-C1, P2-C1 (with the
/// weight matrix w [[2/3, -1/3], [-1/3, 2/3]] of two differences that share C1) and L4 (with w
/// times WPh2Code). Model: P1-C1 = receiver + satellite bias; P2-C1 = receiver + satellite bias +
/// slant ionosphere; L4 = ambiguity + slant ionosphere; receiver biases for GPS alone. A
/// misclosure is model minus observation, a design coefficient the negative derivative of the
/// model, so that the solution is the correction to add.
///
/// Iterates until the norm of the correction is below IterThres or MaxIter is reached. With
/// "-ft", code values with larger misclosures are left out of an iteration. With "-bt" or "-bl",
/// one pass afterwards subtracts every value with a larger residual from the last normal
/// equations and solves once more. NObs counts on over the iterations, and the redundancy, hence
/// the reference variance, rests on this running count: with n iterations the variance is about
/// 1/n of that of one. A redundancy of 0 is warned about, and the variance is then 0; a negative
/// one gives a negative variance. An estimation without any observation is warned about. A singular
/// normal matrix ends the program.
///
/// Reports outliers and a summary on standard output, in the fixed-point notation that the settings
/// report leaves there.
void ProcIono(KorvanC& ctx);

/// Sets the leading \p n rows and columns to 0; the border of constraints stays.
void ResetNS(matrix<long double>& N, matrix<long double>& t, const long& n);

/// Euclidean norm of the leading \p n elements.
long double PartNorm(const matrix<long double>& x, const long& n);

#endif
