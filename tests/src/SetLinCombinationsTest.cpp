#include "SetLinCombinations.h"

#include "GNSS/GNSSLinCombs.h"
#include "support/Captured.h"
#include "support/Near.h"
#include "support/TinyRun.h"

namespace {

/// One record with C1, P1, P2, L1, L2, and no combination yet.
struct Combinations : TinyRun {
  Captured errors{std::cerr};
  Combinations() {
    TinyRecord r;
    r.C1 = 100;
    r.P1 = 101;
    r.P2 = 105;
    Fill(*this, {{mjd(55844, 0), {r}}});
    data.L1(0) = 1000.0L;
    data.L2(0) = 500.0L;
    for (matrix<gnssobs>* table : {&data.PC1, &data.PC4, &data.L4}) table->Resize(0, 0);
    header.iPC1 = header.iPC4 = header.iL4 = false;
    ctx.ifCodeObs = ctx.ifPhaseObs = false;
  }
};

TEST(SetLinearCombinations, CodeAloneFormsTheTwoCodeDifferences) {
  Combinations run;
  run.ctx.ifCodeObs = true;
  SetLinearCombinations(run.ctx);
  EXPECT_TRUE(run.header.iPC1 && run.header.iPC4);
  EXPECT_FALSE(run.header.iL4);
  EXPECT_EQ(run.data.PC1(0).GetObs(), 1); // P1 - C1
  EXPECT_EQ(run.data.PC4(0).GetObs(), 5); // P2 - C1
}

TEST(SetLinearCombinations, PhaseAloneFormsL4) {
  Combinations run;
  run.ctx.ifPhaseObs = true;
  SetLinearCombinations(run.ctx);
  EXPECT_FALSE(run.header.iPC1 || run.header.iPC4);
  EXPECT_TRUE(run.header.iL4);
  EXPECT_TRUE(
      Near(run.data.L4(0).GetObs(), 299792458.0L * (1000 / 1575.42e6L - 500 / 1227.60e6L), 1e-14L));
}

TEST(SetLinearCombinations, NeitherFormsNothing) {
  Combinations run;
  SetLinearCombinations(run.ctx);
  EXPECT_FALSE(run.header.iPC1 || run.header.iPC4 || run.header.iL4);
}

TEST(SetLinearCombinations, TypesThatTheFileLacksGiveNoCombination) {
  Combinations run;
  run.ctx.ifCodeObs = run.ctx.ifPhaseObs = true;
  run.header.iP2 = run.header.iL2 = false;
  SetLinearCombinations(run.ctx);
  EXPECT_TRUE(run.header.iPC1);
  EXPECT_FALSE(run.header.iPC4 || run.header.iL4);
}

TEST(SetLinearCombinations, VerboseTellsWhatIsFormed) {
  Combinations run;
  run.ctx.verbose = run.ctx.ifCodeObs = run.ctx.ifPhaseObs = true;
  SetLinearCombinations(run.ctx);
  EXPECT_EQ(run.errors.Text(),
            "Zenta::SetLinearCombinations(): SETTING LINEAR COMBINATIONS OF OBSERVATIONS!\n"
            "Zenta::SetLinearCombinations():         P1-C1 Linear combination!\n"
            "Zenta::SetLinearCombinations():         P4[C1,P2] Linear combination!\n"
            "Zenta::SetLinearCombinations():         L4[L1,L2] Linear combination!\n");
}

} // namespace
