#include "PROGINC/InputInWork.h"

#include "GNSS/ClassMessage.h"
#include "GNSS/mjd.h"
#include "matrix/matrix.h"
#include "support/Captured.h"
#include "support/Ends.h"

namespace {

const std::string kReport = "\n**** Zenta: Error -> INPUT FILE NOT VALID: day.clk! ****\n"
                            "     Exiting Zenta ... \n\n";

TEST(InputInWork, IsToldWhileItLives) {
  const Captured errors(std::cerr);
  {
    const InputInWork file("day.clk");
    InputInWork::Report();
  }
  InputInWork::Report();
  EXPECT_EQ(errors.Text(), kReport);
}

TEST(InputInWorkDeathTest, FatalReportsFromBelowTheReadersNameIt) {
  const char* const pattern = "INPUT FILE NOT VALID: day.clk! ";
  const InputInWork file("day.clk");
  EXPECT_ENDS(mjd(55844, 86400), pattern);
  EXPECT_ENDS(matrix<int>(2, 2)(2, 0), pattern);
  EXPECT_ENDS(ClassError("GPSbEphData", '#', "NUMBER OF RECORDS not set!"), pattern);
}

} // namespace
