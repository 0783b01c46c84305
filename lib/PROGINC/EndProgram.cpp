#include "PROGINC/EndProgram.h"

#include "PROGINC/RunGuards.h"

#include <cstdlib>

void EndProgram() {
  FlushStandardOutput(); // reports of the classes go there: without this their loss would be silent
  std::exit(EXIT_FAILURE);
}
