#ifndef PROGINC_ENDPROGRAM_H
#define PROGINC_ENDPROGRAM_H

/// Ends the process with status 1. Every fatal report of the program ends here, so that a
/// harness can link another definition that throws instead; hence not noexcept.
[[noreturn]] void EndProgram();

#endif
