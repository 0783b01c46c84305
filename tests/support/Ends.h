#ifndef SUPPORT_ENDS_H
#define SUPPORT_ENDS_H

#include <gtest/gtest.h>
#include <iostream>
#include <unistd.h>

/// The statement prints a report that matches \p pattern (on standard output or standard
/// error) and ends the process with status 1. Suites that use it are named ...DeathTest.
///
/// EXPECT_EXIT reads standard error only, so standard output is first pointed there.
#define EXPECT_ENDS(statement, pattern)                                                            \
  EXPECT_EXIT(                                                                                     \
      {                                                                                            \
        std::cout.flush();                                                                         \
        dup2(STDERR_FILENO, STDOUT_FILENO);                                                        \
        statement;                                                                                 \
      },                                                                                           \
      testing::ExitedWithCode(1), pattern)

#endif
