#ifndef SUPPORT_COMMAND_H
#define SUPPORT_COMMAND_H

#include "support/Files.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <signal.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

/// What a run of a command left.
struct Outcome {
  std::string out;       ///< standard output
  std::string err;       ///< standard error
  int status = -1;       ///< exit status; -1 when it did not exit by itself
  int signal = 0;        ///< that ended it
  bool timedOut = false; ///< killed, as it took too long
  long peak = 0;         ///< [KiB] of memory, at the most
};

/// Readable in a failed test.
inline std::ostream& operator<<(std::ostream& os, const Outcome& o) {
  const auto tail = [](const std::string& text) {
    return text.substr(text.size() - std::min<std::size_t>(text.size(), 600));
  };
  return os << "status " << o.status << ", signal " << o.signal
            << (o.timedOut ? ", took too long" : "") << "\n---- standard output ends:\n"
            << tail(o.out) << "\n---- standard error ends:\n"
            << tail(o.err);
}

/// How a command is started.
struct Start {
  std::string program = ZENTA_PROGRAM;
  std::string name = "zenta"; ///< its argument 0
  std::string folder = ".";   ///< its working directory
  int seconds = 60;           ///< it is killed after this time
  /// Called in the child when its streams and folder are in place.
  std::function<void()> prepare = [] {};
};

/// Runs a command to its end.
inline Outcome RunCommand(const Start& start, const std::vector<std::string>& arguments) {
  const ScratchFolder streams;
  const std::string outName = streams.Name("out");
  const std::string errName = streams.Name("err");
  std::vector<char*> argv = {const_cast<char*>(start.name.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  const pid_t child = fork();
  if (child == 0) {
    const int out = open(outName.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int err = open(errName.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (dup2(out, STDOUT_FILENO) < 0 || dup2(err, STDERR_FILENO) < 0) _exit(126);
    if (chdir(start.folder.c_str()) != 0) _exit(126);
    start.prepare();
    execv(start.program.c_str(), argv.data());
    _exit(127);
  }
  Outcome outcome;
  int state = 0;
  rusage usage = {};
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(start.seconds);
  while (wait4(child, &state, WNOHANG, &usage) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      outcome.timedOut = true;
      kill(child, SIGKILL);
      wait4(child, &state, 0, &usage);
      break;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(300));
  }
  if (WIFEXITED(state)) outcome.status = WEXITSTATUS(state);
  if (WIFSIGNALED(state)) outcome.signal = WTERMSIG(state);
  outcome.peak = usage.ru_maxrss;
  outcome.out = ReadWhole(outName);
  outcome.err = ReadWhole(errName);
  return outcome;
}

#endif
