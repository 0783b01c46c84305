#include "PrintResults.h"

#include "GNSS/mjd.h"
#include "GNSS/ymdhms.h"
#include "support/Captured.h"
#include "support/TinyRun.h"

#include <gtest/gtest.h>
#include <iomanip>

namespace {

/// Puts the decimals of seconds back, which the report sets.
class PrintResultsTest : public testing::Test {
protected:
  ~PrintResultsTest() override {
    mjdns::NDecSecond = mjdDecimals_;
    ymdhmsns::NDecSecond = ymdhmsDecimals_;
  }

private:
  const unsigned short mjdDecimals_ = mjdns::NDecSecond;
  const unsigned short ymdhmsDecimals_ = ymdhmsns::NDecSecond;
};

TEST_F(PrintResultsTest, StatisticsStandLetterByLetter) {
  TinyRun run;
  Fill(run, {{mjd(55844, 0), {TinyRecord{}}}});
  run.ctx.ifPhaseObs = false;
  run.ctx.IterDone = 3;
  run.ctx.IterThresFin = 0.0004;
  run.ctx.NObs = 230078;
  run.ctx.NObsOutl = 6406;
  run.ctx.s0apost = 6.25L;
  Captured out(std::cout);
  std::cout << std::fixed;
  PrintResults(run.ctx);
  EXPECT_EQ(out.Text(), "RECEIVER/SATELLITE DCB VALUES AND IONOSPHERE DELAY - RESULTS:\n"
                        "-------------------------------------------------------------\n"
                        "\n"
                        "  #ITERATIONS:          3       THRESHOLD:      0.000\n"
                        "  #EPOCHS    :          1\n"
                        "  #OBS       :     230078    G:        0    R:        0\n"
                        "  #OUTLIERS  :       6406    G:        0    R:        0\n"
                        "\n"
                        "  REF. STD. APRIORI                              :            1.00\n"
                        "  REF. STD. APOSTERIORI                          :            2.50\n"
                        "  REFERENCE VARIANCE OF UNIT WEIGHT [GLOBAL TEST]:            6.25        "
                        " [SQRT]      2.50\n"
                        "\n");
}

} // namespace
