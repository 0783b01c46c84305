#include "PROGINC/RunGuards.h"

#include "PROGINC/ProgramError.h"

#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <new>
#include <unistd.h>

namespace {

// Opened for reading alone: what is written to standard output is then missed, not swallowed.
void OpenStandardStreams() {
  int descriptor = 0;
  do descriptor = open("/dev/null", O_RDONLY);
  while (descriptor >= STDIN_FILENO && descriptor <= STDERR_FILENO);
  if (descriptor > STDERR_FILENO) close(descriptor);
}

} // namespace

void GuardRun() {
  OpenStandardStreams();
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  std::set_new_handler([] { ProgramError("Zenta", "OUT OF MEMORY!"); });
}

void FlushStandardOutput() {
  if (!std::cout.flush()) ProgramWarning("Zenta", "STANDARD OUTPUT CAN NOT BE WRITTEN!");
}
