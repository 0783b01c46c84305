#include "Harness.h"

#include "teqc/CompactTEQC.h"

#include <cmath>

FUZZ_TARGET(CompactTEQC) {
  CompactTEQC plot;
  plot.SetFile(WriteInput(input));
  plot.ReadFile();
  long values = 0;
  for (long e = 0; e < plot.NEph(); ++e) values += plot.GetNSat(e);
  FUZZ_CHECK(values == plot.NObs());
  for (long k = 0; k < plot.NObs(); ++k) {
    FUZZ_CHECK(std::isfinite(plot.GetObs(k)));
    FUZZ_CHECK(plot.GetSat(k) < 300);
  }
}
