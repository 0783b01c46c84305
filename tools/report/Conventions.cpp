#include "Conventions.h"

#include "Quantities.h"

#include <fmt/format.h>

namespace report {

namespace {

std::string FixedBiases(const Files& files) {
  std::string text;
  if (!files.dcbP1P2.empty()) text += fmt::format(" P1-P2 of {}", files.dcbP1P2);
  if (!files.dcbP1C1.empty())
    text += fmt::format("{} P1-C1 of {} (where the receiver tracks C1 in place of P1, or "
                        "cross-correlates)",
                        text.empty() ? "" : " and", files.dcbP1C1);
  return text;
}

std::string HeldFixed(const Report& r) {
  const Files& files = r.settings.files;
  switch (r.settings.biases) {
  case BiasSource::broadcast:
    return fmt::format("GPS satellite biases are held fixed at the group delays (TGD) of {}; those "
                       "of GLONASS are taken as 0.",
                       files.gpsNavigation);
  case BiasSource::code: {
    const std::string fixed = FixedBiases(files);
    if (fixed.empty()) return "No satellite biases are held fixed: P2-C2 biases are not applied.";
    return fmt::format("Satellite biases are held fixed at{}; a satellite that is not listed has "
                       "0.",
                       fixed);
  }
  case BiasSource::none:
    break;
  }
  return "No satellite biases were known: none is held fixed.";
}

} // namespace

const std::string kFormalErrors =
    "One sigma, scaled by the reference deviation. The observation count runs on over the "
    "iterations (n iterations of m observations count n*m), and redundancy, reference variance and "
    "formal errors rest on it. To get the usual a-posteriori variance, multiply by (n m - u) / "
    "(m - u), u the number of unknowns; multiply formal errors by the root of that.";

std::string DatumOf(const Report& r) {
  std::string text = HeldFixed(r);
  const Settings& s = r.settings;
  if (s.estimatesReceiver)
    text +=
        " Receiver biases contain the mean of the GPS satellite biases that are not held fixed.";
  if (s.estimatesGPS || s.estimatesGLONASS)
    text += " Estimated satellite biases contain the receiver bias of their system and come on top "
            "of those held fixed.";
  if (s.biases != BiasSource::none)
    text += " What is held fixed of P1-P2 has moved C1 too (GPS: by 1.5457 P1-P2), but not P1, so "
            "estimated P1-C1 contain the opposite of that.";
  return text;
}

std::vector<Convention> ConventionsOf(const Report& r) {
  return {
      {"delay", fmt::format("Vertical ionospheric group delay in metres on GPS L1 ({} MHz), for "
                            "GPS and GLONASS alike; TECU = metres / {:.8f}, from 40.308193e16 / "
                            "f^2 metres per TECU.",
                            kGPSL1 / 1e6, kMetresPerTECU)},
      {"interval", "From its first epoch on, the delay is delay + rate * hours since then, up to "
                   "the next interval or a gap of the data."},
      {"mapping", fmt::format("Slant delay on L1 = M * (delay + tan z * (east gradient * sin A + "
                              "north gradient * cos A)) with M = 1 / cos z, sin z = {} / {} * cos "
                              "E, elevation E and azimuth A of the satellite.",
                              kEarthRadius, kEarthRadius + kShellHeight)},
      {"shell",
       fmt::format("Single layer at {} km above a sphere of {} km.", kShellHeight, kEarthRadius)},
      {"gradient", "Metres on GPS L1 per unit of tan z, towards east and north; divided by the "
                   "height of the shell it is about the change per horizontal distance."},
      {"dcb", "P1-C1 and P2-C1 are code minus code: positive means that the first code is measured "
              "longer. Nanoseconds = metres / 0.299792458. The report's columns headed msec are "
              "microseconds."},
      {"datum", DatumOf(r)},
      {"ambiguity", "Of L4 = L1 - L2 in metres, one per continuous arc; wind-up is corrected with "
                    "the GPS wavelengths for both systems."},
      {"residual", "Model minus observation, in metres. In the residual file the receiver P1-C1 "
                   "bias enters the P1-C1 of both systems, although the adjustment has it in GPS "
                   "alone."},
      {"formal_errors", kFormalErrors},
      {"time", "Time scale of the observation file: GPS time in GPS and mixed files. MJD is given "
               "as day and fraction, and as day and second."},
      {"satellites", "G and PRN, or R and slot."},
  };
}

} // namespace report
