#include "SlantTable.h"

#include "KorvanC.h"
#include "SlantDelay.h"

void SlantTable::Keep(long records, bool gradients) {
  const auto n = static_cast<std::size_t>(records);
  delays_.assign(n, 0);
  gradients_.assign(gradients ? n : 0, Gradient{});
}

IonoCoefficients SlantTable::Compute(const KorvanC& ctx, long k) {
  const IonoCoefficients a =
      CoefficientsOf(FactorsOf(ctx.rnxd.sat(k)), ctx.ELV(k), ctx.AZM(k), ctx.ifEstIGrad);
  const auto at = static_cast<std::size_t>(k);
  if (at < delays_.size()) delays_[at] = a.delay;
  if (at < gradients_.size()) gradients_[at] = {a.east, a.north};
  return a;
}
