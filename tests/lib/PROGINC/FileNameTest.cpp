#include "PROGINC/FileName.h"

#include "support/Ends.h"

namespace {

TEST(CopyFileName, KeepsANameThatFillsTheField) {
  char out[8];
  CopyFileName("1234567", out);
  EXPECT_STREQ(out, "1234567");
}

TEST(CopyFileName, TakesAnEmptyName) {
  char out[8] = "x";
  CopyFileName("", out);
  EXPECT_STREQ(out, "");
}

TEST(CopyFileNameDeathTest, NameWithoutRoomForItsTerminatorEndsTheProgram) {
  char out[8];
  EXPECT_ENDS(CopyFileName("12345678", out), "Zenta: Error -> FILE NAME IS TOO LONG!");
}

} // namespace
