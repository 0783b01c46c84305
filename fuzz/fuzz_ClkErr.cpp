#include "Harness.h"

#include "GNSS/ClkErr.h"

#include <cmath>

FUZZ_TARGET(ClkErr) {
  ClkErr clock;
  clock.SetFile(WriteInput(input));
  clock.ReadFile();
  for (long i = 0; i < clock.GetNEpoch(); ++i) FUZZ_CHECK(std::isfinite(clock.GetClkErr(i)));
}
