#include "SetLinCombinations.h"

#include "KorvanC.h"
#include "Progress.h"

void SetLinearCombinations(KorvanC& ctx) {
  Progress(ctx, "SetLinearCombinations(): SETTING LINEAR COMBINATIONS OF OBSERVATIONS!");
  if (ctx.ifCodeObs) {
    Progress(ctx, "SetLinearCombinations():         P1-C1 Linear combination!");
    ctx.rnxd.SetLC_PC1();
    Progress(ctx, "SetLinearCombinations():         P4[C1,P2] Linear combination!");
    ctx.rnxd.SetLC_PC4();
  }
  if (ctx.ifPhaseObs) {
    Progress(ctx, "SetLinearCombinations():         L4[L1,L2] Linear combination!");
    ctx.rnxd.SetLC_L4();
  }
}
