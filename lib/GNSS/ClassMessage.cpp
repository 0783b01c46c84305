#include "ClassMessage.h"

#include "PROGINC/EndProgram.h"
#include "PROGINC/InputInWork.h"
#include "PROGINC/WarningCount.h"

#include <iostream>
#include <string>

void ClassWarning(const char* name, const char* text) {
  ++WarningsIssued;
  std::cout << "\n#### " << name << ": Warning -> " << text << " ####\n     Continuing " << name
            << " ... \n\n"
            << std::flush;
}

void ClassError(const char* name, char mark, const char* text) {
  const std::string frame(4, mark);
  std::cout << "\n"
            << frame << " " << name << ": Error -> " << text << " " << frame << "\n     Exiting "
            << name << " ... \n\n"
            << std::flush;
  InputInWork::Report();
  EndProgram();
}
