#include "Harness.h"

#include "GNSS/antexNew.h"

#include <cmath>

namespace {

void Ask(const antex& antennas) {
  for (short frequency = -1; frequency < 5; ++frequency) {
    neu offset;
    antennas.GetAntennaOffset(offset, frequency);
    FUZZ_CHECK(std::isfinite(offset.GetN() + offset.GetE() + offset.GetU()));
  }
  for (const double zenith : {-10.0, 0.0, 7.5, 89.9, 95.0, 1e300}) {
    double g1 = 1, g2 = 1, r1 = 1, r2 = 1;
    antennas.GetAntennaPCV(zenith, 45, g1, g2, r1, r2);
    FUZZ_CHECK(std::isfinite(g1) && std::isfinite(g2) && std::isfinite(r1) && std::isfinite(r2));
  }
  antennas.IsBlockIIR();
}

} // namespace

FUZZ_TARGET(antex) {
  antex antennas;
  antennas.SetFile(WriteInput(input));
  antennas.ReadFile();
  Ask(antennas);
  for (long i = 0; i < antennas.GetNAntenna(); ++i) {
    const AntennaPCV& held = antennas.AT_PCV(i);
    antennas.SetSatellite(held.SatID, mjd(55844, 0));
    Ask(antennas);
    std::string name = held.AntennaName;
    name.resize(20, ' ');
    if (name.find('\0') == std::string::npos) antennas.SetAntenna(name.c_str());
    Ask(antennas);
  }
}
