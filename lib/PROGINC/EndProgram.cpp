#include "PROGINC/EndProgram.h"

#include <cstdlib>

void EndProgram() { std::exit(EXIT_FAILURE); }
