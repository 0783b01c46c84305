#include "PROGINC/VarCout.h"

#include "support/Captured.h"

#include <gtest/gtest.h>

namespace {

TEST(PrintChar, WritesALineOfOneCharacter) {
  const Captured output(std::cout);
  PrintChar('=', 5);
  EXPECT_EQ(output.Text(), "=====\n");
}

TEST(PrintChar, WritesTheCharacterOnceForNoneAndLess) {
  const Captured output(std::cout);
  PrintChar('-', 0);
  PrintChar('+', -3);
  PrintChar('*', 1);
  EXPECT_EQ(output.Text(), "-\n+\n*\n");
}

TEST(PrintChar, FillIsBlankAfterwards) {
  const Captured output(std::cout);
  PrintChar('=', 2);
  EXPECT_EQ(std::cout.fill(), ' ');
}

TEST(PrintCharNoEndl, LeavesTheLineOpen) {
  const Captured output(std::cout);
  PrintCharNoEndl('=', 3);
  PrintCharNoEndl('-', 0);
  EXPECT_EQ(output.Text(), "===-");
  EXPECT_EQ(std::cout.fill(), ' ');
}

} // namespace
