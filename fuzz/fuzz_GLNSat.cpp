#include "Harness.h"

#include "GNSS/GLNSat.h"

#include <cmath>

FUZZ_TARGET(GLNSat) {
  GLNSat channels;
  channels.SetFile(WriteInput(input));
  channels.ReadFile();
  for (const unsigned day : {0U, 44250U, 55844U, 88068U, 199999U})
    for (short sat = 100; sat < 126; ++sat) {
      const long double k = channels.GetFreqNum(sat, mjd(day, 3600));
      FUZZ_CHECK(std::isfinite(k));
      FUZZ_CHECK(channels.GetIsGLNSat() || k == 0);
    }
}
