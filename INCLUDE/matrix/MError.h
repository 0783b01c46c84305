#ifndef MATRIX_MERROR_H
#define MATRIX_MERROR_H

/// Framed fault reports of the container and of the linear algebra on it.
///
/// Everything goes to standard output. A report opens with an empty line, a frame of 60
/// asterisks, "MATRIX::ERROR:" (or "MATRIX::WARNING:"), an empty line, a tab and the
/// caller's text \p name. Those marked [[noreturn]] close with the frame and
/// "Exiting program..." and end the process with status 1.

/// Index \p a is outside 0..\p b.
[[noreturn]] void Error(const char* name, long a, long b);
/// Shape \p r1 x \p c1 does not go with \p r2 x \p c2.
[[noreturn]] void Error(const char* name, long r1, long c1, long r2, long c2);
/// Shape \p r x \p c is of no use to the operation.
[[noreturn]] void invError(const char* name, long r, long c);
/// Number \p a is of no use to the operation.
[[noreturn]] void UError(const char* name, long a);
/// Element \p n has the value \p x, in units of the threshold, where that is fatal.
[[noreturn]] void invError(const char* name, long double x, long n);
/// As above where it is not fatal: prints and returns.
void invWarning(const char* name, long double x, long n);
/// Prints the text and "Continuing program..." and returns.
void normWarning(const char* name);
/// The text alone says what is wrong.
[[noreturn]] void qrgivError(const char* name);
/// Element (\p a, \p b) is of no use to a step of order \p n.
[[noreturn]] void subnormError(const char* name, long n, long a, long b);

#endif
