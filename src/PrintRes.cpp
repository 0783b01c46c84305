#include "PrintRes.h"

#include "KorvanC.h"
#include "PROGINC/LittleEndian.h"
#include "PROGINC/OutputFile.h"
#include "Progress.h"
#include "SatPosition.h"
#include "SatelliteTable.h"
#include "SlantDelay.h"

#include <iostream>
#include <string>

namespace {

enum ResidualType : std::int16_t { kP1C1 = 1, kP2C1 = 2, kL4 = 5 };

/// Forms the residuals of one record after the other and packs them as the file holds them.
class ResidualPacker {
public:
  explicit ResidualPacker(KorvanC& ctx)
      : ctx_(ctx), usesP1C1_(ctx.ifCodeObs && ctx.rnxh.iPC1),
        usesP2C1_(ctx.ifCodeObs && ctx.rnxh.iPC4), usesL4_(ctx.ifPhaseObs && ctx.rnxh.iL4),
        satellites_(ctx) {}

  bool HasP1C1(long k) const { return usesP1C1_ && ctx_.ifOP1C1(k); }
  bool HasP2C1(long k) const { return usesP2C1_ && ctx_.ifOP2C1(k); }
  bool HasL4(long k) const { return usesL4_ && ctx_.ifOL4(k); }

  /// Residuals of record \p k.
  long Count(long k) const {
    if (!IsProcessed(ctx_, ctx_.rnxd.sat(k))) return 0;
    return long{HasP1C1(k)} + long{HasP2C1(k)} + long{HasL4(k)};
  }

  void Pack(long i, long k, const IonoState& state, std::string& out) {
    if (Count(k) == 0) return;
    const short sat = ctx_.rnxd.sat(k);
    const SatelliteTable::Satellite& s = satellites_.Of(sat);
    const long double ion = ctx_.ifEstION ? SlantDelay(ctx_.slants.Of(ctx_, k), state) : 0;
    const long double satP1C1 = s.ixP1C1 >= 0 ? ctx_.xbSAT(s.row, 0) : 0;
    const long double satP2C1 = s.ixP2C1 >= 0 ? ctx_.xbSAT(s.row, 1) : 0;
    // The receiver's P1-C1 enters for both systems, its P2-C1 for GPS alone.
    const long double recP1C1 = ctx_.ixP1C1 >= 0 ? ctx_.xP1C1 : 0;
    const long double recP2C1 = ctx_.ixP2C1 >= 0 && s.isGPS ? ctx_.xP2C1 : 0;
    if (HasP1C1(k)) PackOne(sat, kP1C1, recP1C1 + satP1C1 - ctx_.rnxd.PC1(k).GetObs(), out);
    if (HasP2C1(k)) PackOne(sat, kP2C1, recP2C1 + satP2C1 - ctx_.rnxd.PC4(k).GetObs() + ion, out);
    if (HasL4(k)) PackOne(sat, kL4, -ctx_.rnxd.L4(k).GetObs() + ion + Ambiguity(sat, i), out);
  }

private:
  long double Ambiguity(short sat, long i) {
    const long arc = satellites_.ArcAt(sat, i);
    return arc >= 0 ? ctx_.xAmb(arc) : 0;
  }

  static void PackOne(short sat, ResidualType type, long double v, std::string& out) {
    PutInt16(out, sat);
    PutInt16(out, type);
    PutExtended(out, v);
  }

  KorvanC& ctx_;
  const bool usesP1C1_;
  const bool usesP2C1_;
  const bool usesL4_;
  SatelliteTable satellites_;
};

void PackHead(const matrix<short>& satList, std::string& out) {
  PutInt16(out, static_cast<std::int16_t>(satList.Length()));
  for (long j = 0; j < satList.Length(); ++j) PutInt16(out, satList(j));
}

/// Appends the block of epoch \p i, whose records are \p first to \p end - 1. \returns the number
/// of its residuals; without any there is no block, and the interval is not moved on.
long PackEpoch(KorvanC& ctx, ResidualPacker& packer, long i, long first, long end,
               std::string& out) {
  long count = 0;
  for (long k = first; k < end; ++k) count += packer.Count(k);
  if (count == 0) return 0;
  PutUint32(out, ctx.rnxd.epoch(i).GetMJDay());
  PutExtended(out, ctx.rnxd.epoch(i).GetSecond());
  PutInt32(out, static_cast<std::int32_t>(count));
  const IonoState state = StateAt(ctx, i);
  for (long k = first; k < end; ++k) packer.Pack(i, k, state, out);
  return count;
}

} // namespace

void PrintRes(KorvanC& ctx) {
  if (!ctx.ifPrintRes) return;
  std::cout << "PRINTING OF RESIDUALS:\n----------------------\n\n  Output residual file : "
            << ctx.resfile << '\n';
  OutputFile file;
  file.Open(ctx.resfile, std::ios::binary);
  Progress(ctx, "PrintRes(): WRITING RESIDUALS IN BINARY PLOT FILE!");
  std::string block;
  PackHead(ctx.rnxd.satList, block);
  ResidualPacker packer(ctx);
  ctx.iIono = 0;
  long total = 0;
  long k = 0;
  for (long i = 0; i < ctx.rnxd.nepochall; ++i) {
    const long end = k + ctx.rnxd.nsat(i);
    total += PackEpoch(ctx, packer, i, k, end, block);
    k = end;
    file.Stream().write(block.data(), static_cast<std::streamsize>(block.size()));
    block.clear();
  }
  file.Close();
  std::cout << "  #of printed residuals: " << total << "\n\n";
}
