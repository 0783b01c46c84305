#ifndef PROGINC_VARCOUT_H
#define PROGINC_VARCOUT_H

/// Writes a line of \p n copies of \p c, at least one, to standard output. The stream's fill
/// character is blank afterwards.
void PrintChar(char c, int n);
/// As PrintChar, without ending the line.
void PrintCharNoEndl(char c, int n);

#endif
