#include "PROGINC/RunGuards.h"

#include "support/Ends.h"
#include "support/Files.h"
#include "support/Sanitized.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <sys/resource.h>
#include <unistd.h>

namespace {

/// Ends a child process with status 0 where \p held, else with 3.
[[noreturn]] void Tell(bool held) { std::_Exit(held ? 0 : 3); }

int OpenNew(const std::string& name) { return open(name.c_str(), O_WRONLY | O_CREAT, 0600); }

void PointStandardOutputAt(const char* name) { dup2(open(name, O_WRONLY), STDOUT_FILENO); }

void ForbidLongFiles() {
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_FSIZE, &none);
}

int PipeThatNobodyReads() {
  int ends[2] = {-1, -1};
  if (pipe(ends) != 0) return -1;
  close(ends[0]);
  return ends[1];
}

TEST(GuardRunDeathTest, NoFileGetsTheDescriptorOfAClosedStream) {
  const ScratchFolder folder;
  const std::string name = folder.Name("out");
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    EXPECT_EXIT(
        {
          close(stream);
          GuardRun();
          Tell(OpenNew(name) > STDERR_FILENO);
        },
        testing::ExitedWithCode(0), "");
}

TEST(GuardRunDeathTest, WritingToAClosedStreamFails) {
  EXPECT_EXIT(
      {
        close(STDOUT_FILENO);
        GuardRun();
        Tell(write(STDOUT_FILENO, "x", 1) < 0);
      },
      testing::ExitedWithCode(0), "");
}

TEST(GuardRunDeathTest, BrokenPipeIsAnErrorOfWriting) {
  EXPECT_EXIT(
      {
        GuardRun();
        Tell(write(PipeThatNobodyReads(), "x", 1) < 0 && errno == EPIPE);
      },
      testing::ExitedWithCode(0), "");
}

TEST(GuardRunDeathTest, LimitOfFileSizesIsAnErrorOfWriting) {
  const ScratchFolder folder;
  const std::string name = folder.Name("out");
  EXPECT_EXIT(
      {
        GuardRun();
        ForbidLongFiles();
        Tell(write(OpenNew(name), "x", 1) < 0 && errno == EFBIG);
      },
      testing::ExitedWithCode(0), "");
}

TEST(GuardRunDeathTest, MemoryThatCantBeHadEndsWithAMessage) {
  if (kSanitized) GTEST_SKIP() << "the sanitizer has an end of its own";
  EXPECT_EXIT(
      {
        GuardRun();
        volatile std::size_t bytes = std::size_t{1} << 62;
        Tell(::operator new(bytes) == nullptr);
      },
      testing::ExitedWithCode(1), "^\n\\*\\*\\*\\* Zenta: Error -> OUT OF MEMORY! \\*\\*\\*\\*\n");
}

TEST(FlushStandardOutputDeathTest, ReportsThatWereNotTakenAreWarnedOf) {
  EXPECT_EXIT(
      {
        PointStandardOutputAt("/dev/full");
        std::cout << "report\n";
        FlushStandardOutput();
        Tell(true);
      },
      testing::ExitedWithCode(0),
      "^\n#### Zenta: Warning -> STANDARD OUTPUT CAN NOT BE WRITTEN! ####\n"
      "     Continuing Zenta \\.\\.\\. \n\n$");
}

TEST(FlushStandardOutputDeathTest, ReportsThatWereTakenAreNot) {
  EXPECT_EXIT(
      {
        PointStandardOutputAt("/dev/null");
        std::cout << "report\n";
        FlushStandardOutput();
        Tell(true);
      },
      testing::ExitedWithCode(0), "^$");
}

} // namespace
