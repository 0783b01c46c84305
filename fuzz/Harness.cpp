#include "Harness.h"

#include "GNSS/mjd.h"
#include "GNSS/neu.h"
#include "GNSS/ymdhms.h"
#include "PROGINC/EndProgram.h"
#include "matrix/inv.h"
#include "support/Captured.h"
#include "support/ObsStore.h"

#include <fstream>
#include <iostream>

void EndProgram() { throw ProgramEnd(); }

std::vector<FuzzTarget>& FuzzTargets() {
  static std::vector<FuzzTarget> targets;
  return targets;
}

namespace {

/// Puts a variable back at its end.
template <typename T> class Kept {
public:
  explicit Kept(T& variable) : variable_(variable), before_(variable) {}
  ~Kept() { variable_ = before_; }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;

private:
  T& variable_;
  const T before_;
};

/// Puts back what readers, stages and writers set for the whole process.
struct KeptProcess {
  RestoredCoefficients coefficients;
  Kept<bool> singular{invns::IsSingular};
  Kept<unsigned short> mjdDecimals{mjdns::NDecSecond};
  Kept<unsigned short> dateType{ymdhmsns::PrintType};
  Kept<unsigned short> dateFormat{ymdhmsns::PrintFormat};
  Kept<unsigned short> dateDecimals{ymdhmsns::NDecSecond};
  Kept<unsigned short> obsType{gnssobsns::PrintType};
  Kept<unsigned short> shortType{gnssobsshortns::PrintType};
  Kept<unsigned short> xyzDecimals{xyzns::NDec};
  Kept<unsigned short> xyzWidth{xyzns::Width};
  Kept<long double> xyzUnit{xyzns::Unit};
  Kept<unsigned short> neuType{neuns::PrintType};
};

} // namespace

void RunTarget(const FuzzTarget& target, std::string_view input) {
  const KeptProcess process;
  const Captured out(std::cout);
  const Captured err(std::cerr);
  Ends([&] { target.run(input); });
}

const char* WriteInput(std::string_view text, const char* name) {
  std::ofstream(name, std::ios::binary)
      .write(text.data(), static_cast<std::streamsize>(text.size()));
  return name;
}
