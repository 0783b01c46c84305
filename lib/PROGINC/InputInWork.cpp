#include "PROGINC/InputInWork.h"

#include "ProgramMessage.h"

#include <string>

void InputInWork::Report() {
  if (name_ == nullptr) return;
  WriteProgramError("Zenta", ("INPUT FILE NOT VALID: " + std::string(name_) + "!").c_str());
}
