// A run of zenta with its arguments, stage by stage as the program has them, that tells on standard
// error what processor time each took:
//
//     stage NAME SECONDS PERCENT
//
// ProcIono is told apart into accumulation and inversions: its last normal matrix is inverted once
// more, and that time is taken for each inversion that it counted.

#include "ParseArgumetns.h"
#include "RunObjects.h"
#include "Stages.h"
#include "matrix/inv.h"

#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

namespace {

/// [s] that the processor worked for this process.
double ProcessorTime() {
  timespec t{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

struct Timed {
  std::string name;
  double seconds;
};

double InversionTime(const KorvanC& ctx) {
  if (ctx.NInv == 0) return 0;
  const double start = ProcessorTime();
  inv(ctx.Nall);
  return static_cast<double>(ctx.NInv) * (ProcessorTime() - start);
}

} // namespace

int main(int argc, const char** argv) {
  RunObjects objects;
  KorvanC& ctx = objects.ctx;
  std::vector<Timed> stages;
  double total = 0;
  ParseArgumetns(ctx, argc, argv);
  for (const Stage& stage : Stages()) {
    const double start = ProcessorTime();
    stage.run(ctx);
    const double seconds = ProcessorTime() - start;
    total += seconds;
    if (std::strcmp(stage.name, "ProcIono") == 0) {
      const double inversions = InversionTime(ctx);
      stages.push_back({"inversions", inversions});
      stages.push_back({"accumulation", seconds - inversions});
      continue;
    }
    stages.push_back({stage.name, seconds});
  }
  std::fprintf(stderr, "unknowns %ld, inversions %ld\n", ctx.NUnk, ctx.NInv);
  for (const Timed& stage : stages)
    std::fprintf(stderr, "stage %-26s %8.4f %6.2f\n", stage.name.c_str(), stage.seconds,
                 100 * stage.seconds / total);
  std::fprintf(stderr, "stage %-26s %8.4f %6.2f\n", "total", total, 100.0);
}
