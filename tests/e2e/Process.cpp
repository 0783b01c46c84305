#include "Process.h"
#include "support/Files.h"
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

/// In the child: standard output and error go to files, then the program takes over.
[[noreturn]] static void Become(const std::string& program,
                                const std::vector<std::string>& arguments,
                                const std::string& folder) {
  std::vector<char*> argv = {const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  if (chdir(folder.c_str()) != 0) _exit(126);
  const int out = open("stdout.txt", O_WRONLY | O_CREAT | O_TRUNC, 0644);
  const int err = open("stderr.txt", O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (out < 0 || err < 0 || dup2(out, STDOUT_FILENO) < 0 || dup2(err, STDERR_FILENO) < 0)
    _exit(126);
  execv(program.c_str(), argv.data());
  _exit(127);
}

Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const std::string& folder) {
  Outcome outcome;
  const pid_t child = fork();
  if (child < 0) return outcome;
  if (child == 0) Become(program, arguments, folder);
  int status = 0;
  if (waitpid(child, &status, 0) != child) return outcome;
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  outcome.out = ReadWhole(folder + "/stdout.txt");
  outcome.err = ReadWhole(folder + "/stderr.txt");
  return outcome;
}
