#include "GNSS/gnssobs.h"

#include "ObsField.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iomanip>
#include <iterator>
#include <ostream>

namespace {

constexpr double kPrintedAbove = 0.00001; // [m] or [cycles]; below, a gnssobs prints as missing

// A field with the blanks that it is too short for.
struct Padded {
  char text[kObsFieldWidth];
  explicit Padded(std::string_view field) {
    std::fill(std::begin(text), std::end(text), ' ');
    field.copy(text, kObsFieldWidth);
  }
};

std::string_view Field(const char* text) { return {text, strnlen(text, kObsFieldWidth)}; }

} // namespace

gnssobs& gnssobs::operator>>(const char* field) { return *this >> Field(field); }

gnssobs& gnssobs::operator>>(std::string_view field) {
  ReadObsField(Padded(field).text, *this);
  return *this;
}

std::ostream& operator<<(std::ostream& out, const gnssobs& g) {
  using std::setw;
  const bool present = std::fabs(g.obs) > kPrintedAbove;
  out << std::fixed;
  switch (gnssobsns::PrintType) {
  case 0:
    if (!present)
      return out << setw(14) << "0.000"
                 << "  ";
    return out << std::setprecision(3) << setw(14) << g.obs << setw(1) << g.lli << setw(1) << g.ss;
  case 1:
    if (!present)
      return out << setw(14) << "*.***"
                 << " * *";
    return out << std::setprecision(3) << setw(14) << g.obs << setw(2) << g.lli << setw(2) << g.ss;
  case 2:
    if (!present) return out << setw(gnssobsns::Width) << "*.***";
    return out << std::setprecision(3) << setw(gnssobsns::Width) << g.obs;
  default:
    return out;
  }
}

gnssobsshort& gnssobsshort::operator>>(const char* field) { return *this >> Field(field); }

gnssobsshort& gnssobsshort::operator>>(std::string_view field) {
  obs = ObsValue(Padded(field).text);
  return *this;
}

std::ostream& operator<<(std::ostream& out, const gnssobsshort& g) {
  using std::setw;
  out << std::fixed;
  switch (gnssobsshortns::PrintType) {
  case 0:
    if (g.IsNull()) return out << setw(14) << 0.0L << "  ";
    return out << std::setprecision(3) << setw(14) << g.obs << "  ";
  case 1:
    if (g.IsNull())
      return out << setw(10) << "*.***"
                 << " * *";
    return out << std::setprecision(3) << setw(10) << g.obs << " 0 0";
  case 2:
    if (g.IsNull()) return out << setw(gnssobsshortns::Width) << "*.***";
    return out << std::setprecision(3) << setw(gnssobsshortns::Width) << g.obs;
  default:
    return out;
  }
}
