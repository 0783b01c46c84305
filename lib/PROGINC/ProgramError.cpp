#include "PROGINC/ProgramError.h"

#include "PROGINC/EndProgram.h"
#include "PROGINC/WarningCount.h"
#include "ProgramMessage.h"

#include <iostream>

void WriteProgramError(const char* prog, const char* text) {
  std::cerr << "\n**** " << prog << ": Error -> " << text << " ****\n     Exiting " << prog
            << " ... \n\n";
}

void ProgramError(const char* prog, const char* text) {
  WriteProgramError(prog, text);
  EndProgram();
}

void ProgramWarning(const char* prog, const char* text) {
  ++WarningsIssued;
  std::cerr << "\n#### " << prog << ": Warning -> " << text << " ####\n     Continuing " << prog
            << " ... \n\n";
}
