#ifndef TESTS_TOOLS_REPORT_SHELL_H
#define TESTS_TOOLS_REPORT_SHELL_H

#include "support/Files.h"

#include <cstdlib>
#include <string>
#include <sys/wait.h>

struct Outcome {
  int status; ///< exit status
  std::string out;
  std::string err;
};

/// Runs \p program with \p arguments in a shell.
inline Outcome RunProgram(const std::string& program, const std::string& arguments) {
  const ScratchFolder folder;
  const std::string command =
      "'" + program + "' " + arguments + " >" + folder.Name("out") + " 2>" + folder.Name("err");
  const int status = std::system(command.c_str());
  return {WEXITSTATUS(status), ReadWhole(folder.Name("out")), ReadWhole(folder.Name("err"))};
}

#endif
