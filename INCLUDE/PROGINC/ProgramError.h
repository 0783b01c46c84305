#ifndef PROGINC_PROGRAMERROR_H
#define PROGINC_PROGRAMERROR_H

/// Reports on standard error, after an empty line,
///
///     **** Zenta: Error -> NO RINEX (OBSERVATION) FILE SET! ****
///          Exiting Zenta ...
///
/// with a trailing blank and an empty line, and ends the process with status 1.
/// \param prog  name of the program
/// \param text  what went wrong, in capitals with "!" at the end
[[noreturn]] void ProgramError(const char* prog, const char* text);

/// Reports on standard error, after an empty line,
///
///     #### Zenta: Warning -> TEXT! ####
///          Continuing Zenta ...
///
/// with a trailing blank and an empty line, and returns.
void ProgramWarning(const char* prog, const char* text);

#endif
