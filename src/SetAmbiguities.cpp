#include "SetAmbiguities.h"

#include "KorvanC.h"
#include "Progress.h"
#include "SatelliteRecords.h"

namespace {

constexpr const char* kArcFile = "Ambiq.b";

void StoreArcs(KorvanC& ctx) {
  ctx.xAmb.Resize(ctx.nAmb, 1, 0.0L);
  ctx.AmbIndex.Resize(ctx.nAmb, 4, 0);
  ctx.AmbSat.Resize(ctx.nAmb, 1, 0);
  for (long j = 0; j < ctx.nAmb; ++j) {
    const PhaseArc& arc = ctx.rnxd.arcs[static_cast<std::size_t>(j)];
    ctx.AmbSat(j) = arc.sat;
    ctx.AmbIndex(j, 0) = arc.firstEpoch;
    ctx.AmbIndex(j, 1) = arc.firstRecord;
    ctx.AmbIndex(j, 2) = arc.lastEpoch;
    ctx.AmbIndex(j, 3) = arc.nObs;
  }
}

/// Mean L4 [m] of the records, 0 when none is left there.
long double MeanL4(const RINEXData& store, std::span<const SatelliteRecords::Record> records) {
  long double sum = 0;
  long count = 0;
  for (const auto& r : records) {
    const gnssobs& L4 = store.L4(r.k);
    if (L4.IsNull()) continue;
    sum += L4.GetObs();
    ++count;
  }
  return count > 0 ? sum / static_cast<long double>(count) : sum;
}

} // namespace

void SetAmbiguities(KorvanC& ctx) {
  if (!ctx.ifPhaseObs) return;
  Progress(ctx, "SetAmbiguities(): SETTING AMBIGUITIES FOR PHASE OBSERVATIONS!");
  const double cutoff = ctx.MinElevation * 3.141592653589793 / 180.0;
  Progress(ctx, "SetAmbiguities():         Screening L4 linear combination!");
  ctx.rnxd.SetAmbFile(kArcFile);
  ctx.rnxd.ScreenL4(ctx.ELV, cutoff, ctx.MinObsAmb, ctx.ThresL40, ctx.dThresL4, ctx.nAmb);
  Progress(ctx, "SetAmbiguities():         Storing ambiguities!");
  StoreArcs(ctx);
  const SatelliteRecords records(ctx.rnxd);
  for (long j = 0; j < ctx.nAmb; ++j)
    ctx.xAmb(j) =
        MeanL4(ctx.rnxd, records.Of(ctx.AmbSat(j), ctx.AmbIndex(j, 0), ctx.AmbIndex(j, 2)));
  if (ctx.verbose)
    std::cerr << "Zenta::SetAmbiguities():         #of ambiguities: " << ctx.nAmb << '\n';
}
