#include "GNSS/RINEXHeader.h"

#include "GNSS/DateField.h"
#include "GNSS/RINEXReading.h"
#include "GNSS/TimeConverse.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/TextNumber.h"
#include "funkcije/CppCas.h"

#include <algorithm>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <string>

namespace {

// Columns of the header lines, from 0, and widths.
constexpr std::size_t kColVersion = 0;
constexpr std::size_t kVersionWidth = 9;
constexpr std::size_t kColType = 20;
constexpr std::size_t kColSystem = 40;
constexpr std::size_t kText1 = 0; // three texts of 20 columns each
constexpr std::size_t kText2 = 20;
constexpr std::size_t kText3 = 40;
constexpr std::size_t kTextWidth = 20;
constexpr std::size_t kAgencyWidth = 40;
constexpr std::size_t kMarkerWidth = 60;
constexpr std::size_t kCoordinateWidth = 14; // three to a line
constexpr std::size_t kIntervalWidth = 10;
constexpr std::size_t kDateWidth = 6; // year, month, day, hour, minute
constexpr std::size_t kColSecond = 30;
constexpr std::size_t kSecondWidth = 13;
constexpr std::size_t kColTimeSystem = 48;
constexpr std::size_t kTimeSystemWidth = 3;
constexpr std::size_t kColFactorL1 = 5;
constexpr std::size_t kColFactorL2 = 11;
constexpr std::size_t kColFirstType = 10; // of nine in a line
constexpr std::size_t kTypeStep = 6;
constexpr std::size_t kTypeWidth = 2;
constexpr long kTypesPerLine = 9;

// The observation types in the order of their codes.
struct ObsType {
  char name[kTypeWidth + 1];
  bool RINEXHeader::*present;
};
constexpr ObsType kTypes[] = {
    {"C1", &RINEXHeader::iC1}, {"P1", &RINEXHeader::iP1}, {"P2", &RINEXHeader::iP2},
    {"L1", &RINEXHeader::iL1}, {"L2", &RINEXHeader::iL2}, {"C2", &RINEXHeader::iC2},
    {"S1", &RINEXHeader::iS1}, {"S2", &RINEXHeader::iS2}, {"D1", &RINEXHeader::iD1},
    {"D2", &RINEXHeader::iD2}, {"C5", &RINEXHeader::iC5}, {"L5", &RINEXHeader::iL5},
    {"D5", &RINEXHeader::iD5}, {"S5", &RINEXHeader::iS5}, {"C6", &RINEXHeader::iC6},
    {"L6", &RINEXHeader::iL6}, {"D6", &RINEXHeader::iD6}, {"S6", &RINEXHeader::iS6},
    {"C7", &RINEXHeader::iC7}, {"L7", &RINEXHeader::iL7}, {"D7", &RINEXHeader::iD7},
    {"S7", &RINEXHeader::iS7}, {"C8", &RINEXHeader::iC8}, {"L8", &RINEXHeader::iL8},
    {"D8", &RINEXHeader::iD8}, {"S8", &RINEXHeader::iS8},
};
constexpr unsigned short kNTypes = std::size(kTypes);

unsigned short TypeCode(std::string_view name) {
  for (unsigned short code = 0; code < kNTypes; ++code)
    if (name == kTypes[code].name) return code;
  return RINEXHeader::kUnknownType;
}

std::string_view TextColumns(std::string_view line, std::size_t first,
                             std::size_t width = kTextWidth) {
  return Trimmed(Columns(line, first, width));
}

// Number k of the three coordinates in a line.
long double Coordinate(std::string_view line, std::size_t k) {
  return ToDouble(Columns(line, k * kCoordinateWidth, kCoordinateWidth));
}

// Number k of the five calendar fields of a time line.
unsigned short DateNumber(std::string_view line, std::size_t k) {
  return DateField(Columns(line, k * kDateWidth, kDateWidth));
}

// Takes the lines of a header one by one.
class HeaderParser {
public:
  explicit HeaderParser(RINEXHeader& header) : header_(header) { header_.RINEXHeaderReset(); }

  // Takes the next line. Returns false at the end of the header.
  bool Take(std::string_view line) {
    // The lines that continue the list of types are known by their number, not their label.
    if (nextType_ < header_.nobs) {
      TakeNextTypes(line);
      return true;
    }
    ++lineNumber_;
    if (Contains(line, kEndOfHeader)) return false;
    for (const Label& label : kLabels) {
      if (!Contains(line, label.text)) continue;
      if (label.isRepeated(header_)) WarnOfRepeated(label.text);
      (this->*label.take)(line);
      break;
    }
    return true;
  }

private:
  struct Label {
    std::string_view text;
    bool (*isRepeated)(const RINEXHeader&);
    void (HeaderParser::*take)(std::string_view);
  };
  static const Label kLabels[14];

  void WarnOfRepeated(std::string_view label) const {
    const std::string text = "ADDITIONAL \"" + std::string(label) + "\" HEADER LINE";
    header_.RINEXHeaderWarning(text.c_str(), lineNumber_);
  }

  void TakeVersion(std::string_view line) {
    header_.version = ToFloat(Columns(line, kColVersion, kVersionWidth));
    header_.type = Column(line, kColType);
    header_.satsystems = Column(line, kColSystem);
  }
  void TakeProgram(std::string_view line) {
    CopyText(TextColumns(line, kText1), header_.pgm);
    CopyText(TextColumns(line, kText2), header_.runby);
    CopyText(TextColumns(line, kText3), header_.date);
  }
  void TakeMarkerName(std::string_view line) {
    CopyText(TextColumns(line, kText1, kMarkerWidth), header_.mname);
  }
  void TakeMarkerNumber(std::string_view line) {
    CopyText(TextColumns(line, kText1), header_.mnumber);
  }
  void TakeObserver(std::string_view line) {
    CopyText(TextColumns(line, kText1), header_.observer);
    CopyText(TextColumns(line, kText2, kAgencyWidth), header_.agency);
  }
  void TakePosition(std::string_view line) {
    header_.X0.Set(Coordinate(line, 0), Coordinate(line, 1), Coordinate(line, 2));
    header_.xyz0read = true;
  }
  void TakeAntennaOffsets(std::string_view line) {
    const long double up = Coordinate(line, 0);
    const long double east = Coordinate(line, 1);
    const long double north = Coordinate(line, 2);
    header_.Dp.Set(north, east, up);
    header_.neuread = true;
  }
  void TakeTypes(std::string_view line) {
    header_.nobs = ToWhole<unsigned short>(Columns(line, kColNTypes, kNTypesWidth));
    header_.obs.Resize(header_.nobs, 1, RINEXHeader::kUnknownType);
    nextType_ = 0;
    TakeNextTypes(line);
  }
  void TakeNextTypes(std::string_view line) {
    const long end = std::min<long>(nextType_ + kTypesPerLine, header_.nobs);
    for (std::size_t at = kColFirstType; nextType_ < end; ++nextType_, at += kTypeStep) {
      const unsigned short code = TypeCode(Columns(line, at, kTypeWidth));
      if (code == RINEXHeader::kUnknownType) continue;
      header_.obs(nextType_) = code;
      header_.*kTypes[code].present = true;
    }
  }
  void TakeReceiver(std::string_view line) {
    CopyText(TextColumns(line, kText1), header_.recnumb);
    CopyText(TextColumns(line, kText2), header_.rectype);
    CopyText(TextColumns(line, kText3), header_.recversion);
  }
  void TakeAntenna(std::string_view line) {
    CopyText(TextColumns(line, kText1), header_.antnumb);
    CopyText(TextColumns(line, kText2), header_.anttype);
  }
  void TakeInterval(std::string_view line) {
    header_.interval = ToFloat(Columns(line, 0, kIntervalWidth));
  }
  // The last epoch lands here too: of two time lines the later one counts as the first epoch.
  void TakeTime(std::string_view line) {
    const ymdhms time(DateNumber(line, 0), DateNumber(line, 1), DateNumber(line, 2),
                      DateNumber(line, 3), DateNumber(line, 4),
                      ToDouble(Columns(line, kColSecond, kSecondWidth)));
    header_.obsfirst = ymdhms2mjd(time);
    CopyText(Columns(line, kColTimeSystem, kTimeSystemWidth), header_.obsfirstts);
  }
  void TakeWavelengthFactors(std::string_view line) {
    header_.wavelengthDefL1 = Column(line, kColFactorL1);
    header_.wavelengthDefL2 = Column(line, kColFactorL2);
  }

  RINEXHeader& header_;
  unsigned long lineNumber_ = 0;
  long nextType_ = 0; // type that the next line of the list starts with, nobs when complete
};

bool Never(const RINEXHeader&) { return false; }
template <auto text> bool HasText(const RINEXHeader& h) { return (h.*text)[0] != '\0'; }
template <bool RINEXHeader::*read> bool HasRead(const RINEXHeader& h) { return h.*read; }

// In this order, each looked for in the whole line: a comment that holds one is taken for it.
const HeaderParser::Label HeaderParser::kLabels[] = {
    {"RINEX VERSION / TYPE", [](const RINEXHeader& h) { return h.type != 0; },
     &HeaderParser::TakeVersion},
    {"PGM / RUN BY / DATE", HasText<&RINEXHeader::pgm>, &HeaderParser::TakeProgram},
    {"MARKER NAME", HasText<&RINEXHeader::mname>, &HeaderParser::TakeMarkerName},
    {"MARKER NUMBER", HasText<&RINEXHeader::mnumber>, &HeaderParser::TakeMarkerNumber},
    {"OBSERVER / AGENCY", HasText<&RINEXHeader::observer>, &HeaderParser::TakeObserver},
    {"APPROX POSITION XYZ", HasRead<&RINEXHeader::xyz0read>, &HeaderParser::TakePosition},
    {"ANTENNA: DELTA H/E/N", HasRead<&RINEXHeader::neuread>, &HeaderParser::TakeAntennaOffsets},
    {kTypesOfObservations, Never, &HeaderParser::TakeTypes},
    {"REC # / TYPE / VERS", HasText<&RINEXHeader::rectype>, &HeaderParser::TakeReceiver},
    {"ANT # / TYPE", HasText<&RINEXHeader::anttype>, &HeaderParser::TakeAntenna},
    {"INTERVAL", [](const RINEXHeader& h) { return h.interval > 0; }, &HeaderParser::TakeInterval},
    {"TIME OF FIRST OBS", Never, &HeaderParser::TakeTime},
    {"TIME OF LAST OBS", Never, &HeaderParser::TakeTime},
    {"WAVELENGTH FACT L1/2", Never, &HeaderParser::TakeWavelengthFactors},
};

// The next line of a stream, under the rules of LineSource. \p buffer has room for a carriage
// return behind the longest line.
bool NextLine(std::istream& in, char (&buffer)[kRINEXLineLimit + 2], std::string_view& line) {
  if (!in.getline(buffer, sizeof buffer)) return false;
  // What was taken from the stream, less the line end, which the last line may lack.
  line = {buffer, static_cast<std::size_t>(in.gcount()) - (in.eof() ? 0 : 1)};
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (line.size() > kRINEXLineLimit) in.setstate(std::ios::failbit);
  return !in.fail();
}

// A blank text of n characters.
struct Blanks {
  int n;
};
std::ostream& operator<<(std::ostream& out, Blanks b) { return out << std::setw(b.n) << ""; }

void OpenWarning(const char* text) { std::cout << "\n#### RINEXHeader: Warning -> " << text; }
void CloseWarning() { std::cout << " ####\n     Continuing RINEXHeader ... \n" << std::endl; }

void WriteTypes(std::ostream& out, const RINEXHeader& header) {
  using std::setw;
  const int n = header.nobs;
  out << setw(6) << n;
  for (int k = 0; k < n; ++k) {
    char name[kTypeWidth + 1] = "";
    header.GetObsString(header.obs(k), name);
    out << setw(6) << name;
    if ((k + 1) % kTypesPerLine != 0) continue;
    out << kTypesOfObservations << '\n';
    if (k + 1 < n) out << Blanks{6};
  }
  const int left = static_cast<int>(n % kTypesPerLine);
  if (left != 0)
    out << Blanks{6 * (static_cast<int>(kTypesPerLine) - left)} << kTypesOfObservations;
  if (left != 0 || n == 0) out << '\n';
}

void WriteTime(std::ostream& out, const mjd& time, const char* system, const char* label) {
  out << mjd2ymdhms(time) << std::setw(8) << system << Blanks{9} << label << '\n';
}

} // namespace

RINEXHeader::RINEXHeader() { RINEXHeaderReset(); }

void RINEXHeader::RINEXHeaderReset() {
  version = 0;
  type = satsystems = 0;
  for (char* text : {pgm, runby, date, mname, mnumber, observer, agency, recnumb, rectype,
                     recversion, antnumb, anttype, obsfirstts, obslastts})
    text[0] = '\0';
  xyz0read = neuread = false;
  nobs = 0;
  isobs = true;
  wavelengthDefL1 = wavelengthDefL2 = '1';
  interval = -1.0F;
  for (const ObsType& t : kTypes) this->*t.present = false;
  for (bool* flag : {&iPC1, &iPC3, &iPP3, &iL3, &iL4, &iMW, &iPC4, &iPP4, &iCL1, &iCLI})
    *flag = false;
}

void RINEXHeader::GetObsString(unsigned short code, char* out) const {
  if (code >= kNTypes) return;
  const std::string_view name = kTypes[code].name;
  out[name.copy(out, kTypeWidth)] = '\0';
}

void RINEXHeader::RINEXHeaderWarning(const char* text) const {
  OpenWarning(text);
  CloseWarning();
}

void RINEXHeader::RINEXHeaderWarning(const char* text, unsigned long line) const {
  OpenWarning(text);
  std::cout << " -> line: " << line;
  CloseWarning();
}

void ReadRINEXHeader(LineSource& text, RINEXHeader& header) {
  HeaderParser parser(header);
  std::string_view line;
  while (text.Next(line, kRINEXLineLimit) && parser.Take(line)) {
  }
}

std::istream& operator>>(std::istream& in, RINEXHeader& header) {
  HeaderParser parser(header);
  char buffer[kRINEXLineLimit + 2];
  std::string_view line;
  while (NextLine(in, buffer, line) && parser.Take(line)) {
  }
  return in;
}

std::ostream& operator<<(std::ostream& out, const RINEXHeader& header) {
  using std::setw;
  xyzns::Width = 14;
  xyzns::NDec = 4;
  xyzns::Unit = 1;
  neuns::PrintType = 0;
  ymdhmsns::PrintType = 0;
  CppCas now;

  out << std::fixed << std::setprecision(2) << setw(9) << header.version << Blanks{11} << std::left
      << setw(20) << header.type << setw(20) << header.satsystems << "RINEX VERSION / TYPE\n"
      << setw(20) << "Zenta" << setw(20) << "OPERATOR LAB-GNSS1" << setw(20) << now.Ascii()
      << "PGM / RUN BY / DATE\n"
      << setw(60) << header.mname << "MARKER NAME\n"
      << setw(20) << header.mnumber << Blanks{40} << "MARKER NUMBER\n"
      << setw(20) << header.observer << setw(40) << header.agency << "OBSERVER / AGENCY\n"
      << setw(20) << header.recnumb << setw(20) << header.rectype << setw(20) << header.recversion
      << "REC # / TYPE / VERS\n"
      << setw(20) << header.antnumb << setw(20) << header.anttype << Blanks{20} << "ANT # / TYPE\n"
      << std::right << header.X0 << Blanks{18} << "APPROX POSITION XYZ\n"
      << header.Dp << Blanks{18} << "ANTENNA: DELTA H/E/N\n"
      << setw(6) << header.wavelengthDefL1 << setw(6) << header.wavelengthDefL2 << Blanks{48}
      << "WAVELENGTH FACT L1/2\n";
  WriteTypes(out, header);
  out << std::setprecision(3) << setw(10) << header.interval << Blanks{50} << "INTERVAL\n";
  WriteTime(out, header.obsfirst, header.obsfirstts, "TIME OF FIRST OBS");
  WriteTime(out, header.obslast, header.obslastts, "TIME OF LAST OBS");
  return out << Blanks{60} << "END OF HEADER\n" << std::setprecision(3);
}
