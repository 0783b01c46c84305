#include "Harness.h"

#include "GNSS/DCB.h"

#include <cmath>

namespace {

/// Letters and digits of the first line, as a file name that may tell a month.
std::string NameFrom(std::string_view line) {
  std::string name;
  for (const char c : line.substr(0, 40))
    if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.') name += c;
  return name.empty() || name[0] == '.' ? "DCB" + name : name;
}

} // namespace

FUZZ_TARGET(DCB) {
  const std::string name = NameFrom(input.substr(0, input.find('\n')));
  DCB biases;
  biases.SetFile(WriteInput(input, name.c_str()));
  const bool ended = Ends([&] { biases.ReadFile(); });
  std::remove(name.c_str());
  if (ended) return;
  for (short sat = 0; sat < 300; sat = static_cast<short>(sat + 7)) {
    long double value = 1;
    long double rms = 1;
    biases.GetDCB(sat, value, rms);
    FUZZ_CHECK(std::isfinite(value) && std::isfinite(rms));
    FUZZ_CHECK(biases.GetDCBVAL(sat) == value && biases.GetDCBRMS(sat) == rms);
  }
}
