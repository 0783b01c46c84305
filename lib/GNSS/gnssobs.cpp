#include "GNSS/gnssobs.h"

#include "PROGINC/LineSource.h"
#include "PROGINC/TextNumber.h"

#include <cmath>
#include <cstring>
#include <iomanip>
#include <ostream>

namespace {

// One observation field of RINEX 2: F14.3, I1, I1.
constexpr std::size_t kFieldWidth = 16;
constexpr std::size_t kValueWidth = 14;
constexpr std::size_t kColLli = 14;
constexpr std::size_t kColSs = 15;

constexpr double kPrintedAbove = 0.00001; // [m] or [cycles]; below, a gnssobs prints as missing

std::string_view Field(const char* text) { return {text, strnlen(text, kFieldWidth)}; }

unsigned short FlagDigit(char c) { return static_cast<unsigned short>(c == ' ' ? 0 : c - '0'); }

} // namespace

gnssobs& gnssobs::operator>>(const char* field) { return *this >> Field(field); }

gnssobs& gnssobs::operator>>(std::string_view field) {
  obs = ToDouble(Columns(field, 0, kValueWidth));
  lli = FlagDigit(Column(field, kColLli));
  ss = FlagDigit(Column(field, kColSs));
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
  obs = ToDouble(Columns(field, 0, kValueWidth));
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
