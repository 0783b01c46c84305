#ifndef E2E_PROCESS_H
#define E2E_PROCESS_H

#include <string>
#include <vector>

/// How a program ended and what it wrote.
struct Outcome {
  int status = -1; ///< exit status; 128 + the signal that ended it
  std::string out, err;
};

/// Runs \p program with \p arguments in the folder \p folder, whose files stdout.txt and
/// stderr.txt take its output.
Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const std::string& folder);

#endif
