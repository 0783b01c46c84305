#include "matrix/MError.h"

#include "support/Captured.h"
#include "support/Ends.h"

namespace {

const std::string kFrame(60, '*');

TEST(MErrorDeathTest, IndexReportIsFramedAndEndsTheProgram) {
  EXPECT_ENDS(Error("Operator:   ()\nRow index not in range: ", 7L, 4L),
              "^\n\\*{60}\nMATRIX::ERROR:\n\n\tOperator:   \\(\\)\n"
              "Row index not in range:     7 -> \\[    0,    4\\]\n\n"
              "\\*{60}\nExiting program\\.\\.\\.\n\n$");
}

TEST(MErrorDeathTest, FrameOfQrgivErrorFollowsTheText) {
  EXPECT_ENDS(qrgivError("text"), "^\n\\*{60}\nMATRIX::ERROR:\n\n\ttext\n\n\\*{60}\n"
                                  "Exiting program\\.\\.\\.\n\n$");
}

TEST(MErrorDeathTest, OtherReportsEndTheProgram) {
  EXPECT_ENDS(invError("text", 2L, 3L), "\ttext \\[    2,    3\\]\n\n\\*{60}\nExiting");
  EXPECT_ENDS(UError("text", 9L), "\ttext \\[    9\\]\n\n\\*{60}\nExiting");
  EXPECT_ENDS(invError("text", 0.5L, 3L), "\ttext       0.5 10\\*\\*-15     3\n\n\\*{60}\nExiting");
  EXPECT_ENDS(subnormError("text", 4L, 1L, 2L),
              "\ttext \\[    1,    2\\] -> n = 4\n\n\\*{60}\nExi");
}

TEST(MError, WarningsReturn) {
  Captured out(std::cout);
  invWarning("text", 0.25L, 12L);
  EXPECT_EQ(out.Text(), "\n" + kFrame + "\nMATRIX::WARNING:\n\n\ttext      0.25 10**-15    12\n\n" +
                            kFrame + "\n");
  Captured again(std::cout);
  normWarning("text");
  EXPECT_EQ(again.Text(), "\n" + kFrame + "\nMATRIX::WARNING:\n\n\ttext\n\n" + kFrame +
                              "\nContinuing program...\n\n");
}

} // namespace
