#ifndef PROGINC_PROGRAMMESSAGE_H
#define PROGINC_PROGRAMMESSAGE_H

/// The report of ProgramError, without the end of the program.
void WriteProgramError(const char* prog, const char* text);

#endif
