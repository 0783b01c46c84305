#include "PROGINC/EndProgram.h"

#include "ProgramMessage.h"

#include <cstdlib>
#include <iostream>

void EndProgram() {
  // Reports of the classes go there as well: without this line their loss would be silent.
  if (!std::cout.flush()) WriteProgramError("Zenta", "STANDARD OUTPUT CAN NOT BE WRITTEN!");
  std::exit(EXIT_FAILURE);
}
