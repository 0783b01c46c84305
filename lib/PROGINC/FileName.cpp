#include "PROGINC/FileName.h"

#include "PROGINC/ProgramError.h"

#include <cstring>

void CopyFileName(const char* name, char* out, std::size_t size) {
  const std::size_t length = std::strlen(name);
  if (length >= size) ProgramError("Zenta", "FILE NAME IS TOO LONG!");
  std::memmove(out, name, length + 1);
}
