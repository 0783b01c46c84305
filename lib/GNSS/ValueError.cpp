#include "GNSS/ValueError.h"

#include "PROGINC/EndProgram.h"
#include "PROGINC/InputInWork.h"

#include <iostream>

void ValueError(const char* type, const char* text) {
  std::cout << "\n**** " << type << ": Error -> " << text << " ****\n     Exiting class " << type
            << " ... " << std::endl;
  InputInWork::Report();
  EndProgram();
}
