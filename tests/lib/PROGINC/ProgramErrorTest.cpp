#include "PROGINC/ProgramError.h"

#include "support/Captured.h"
#include "support/Ends.h"

namespace {

TEST(ProgramErrorDeathTest, ReportIsFramedAndEndsTheProgram) {
  EXPECT_ENDS(ProgramError("Zenta", "NO RINEX (OBSERVATION) FILE SET!"),
              "^\n\\*\\*\\*\\* Zenta: Error -> NO RINEX \\(OBSERVATION\\) FILE SET! \\*\\*\\*\\*\n"
              "     Exiting Zenta \\.\\.\\. \n\n$");
}

TEST(ProgramErrorDeathTest, NothingGoesToStandardOutput) {
  // Standard output is left where it is here, so that only standard error is matched.
  EXPECT_EXIT(
      ProgramError("Zenta", "TEXT!"), testing::ExitedWithCode(1),
      "^\n\\*\\*\\*\\* Zenta: Error -> TEXT! \\*\\*\\*\\*\n     Exiting Zenta \\.\\.\\. \n\n$");
}

TEST(ProgramWarning, ReportIsFramedAndReturns) {
  const Captured error(std::cerr);
  const Captured output(std::cout);
  ProgramWarning("Zenta", "STATION NOT FOUND!");
  EXPECT_EQ(error.Text(), "\n#### Zenta: Warning -> STATION NOT FOUND! ####\n"
                          "     Continuing Zenta ... \n\n");
  EXPECT_EQ(output.Text(), "");
}

} // namespace
