// Zenta: ionospheric delay and differential code biases of one GNSS receiver.

#include "PROGINC/RunGuards.h"
#include "ParseArgumetns.h"
#include "RunObjects.h"
#include "Stages.h"

int main(int argc, const char** argv) {
  GuardRun();
  RunObjects objects;
  KorvanC& ctx = objects.ctx;
  ParseArgumetns(ctx, argc, argv);
  for (const Stage& stage : Stages()) stage.run(ctx);
  FlushStandardOutput();
  ctx.EndProg();
  return 0;
}
