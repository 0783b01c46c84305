#include "GNSS/antexNew.h"

#include "GNSS/DateField.h"
#include "GNSS/SatelliteNumber.h"
#include "GNSS/TimeConverse.h"
#include "PROGINC/FileName.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/TextNumber.h"
#include "PROGINC/cfilef.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

namespace {

constexpr std::size_t kLineLimit = 511;

// Columns from 0, ANTEX 1.4. A number is read from its column on.
constexpr std::size_t kColVersion = 0;
constexpr std::size_t kWidthVersion = 9;
constexpr std::size_t kColSystem = 20;
constexpr std::size_t kColPcvType = 0;
constexpr std::size_t kColName = 0;
constexpr std::size_t kWidthName = 20;
constexpr std::size_t kColSatellite = 20; // letter, tens digit, units digit
constexpr std::size_t kColDazi = 2;
constexpr std::size_t kColZen1 = 2;
constexpr std::size_t kColZen2 = 8;
constexpr std::size_t kColDzen = 14;
constexpr std::size_t kColFrequencies = 0;
constexpr std::size_t kColYear = 0;
constexpr std::size_t kColMonth = 6;
constexpr std::size_t kColDay = 12;
constexpr std::size_t kColHour = 18;
constexpr std::size_t kColMinute = 24;
constexpr std::size_t kColSecond = 30;
constexpr std::size_t kColFreqSystem = 3;
constexpr std::size_t kColFreqDigit = 5;
constexpr std::size_t kColNorth = 0;
constexpr std::size_t kColEast = 10;
constexpr std::size_t kColUp = 20;
constexpr std::size_t kColFirstNode = 8;
constexpr std::size_t kWidthNode = 8;

// Nodes that begin on a line of the longest length.
constexpr int kMostZenithNodes = (kLineLimit - kColFirstNode + kWidthNode - 1) / kWidthNode;

constexpr short kReceiver = 0;
constexpr short kBlockIIR = 4;
constexpr short kBlockIIRM = 7;
constexpr short kLastGPS = 8;
constexpr short kLastGLONASS = 12;

// The antenna class is 1 + the index. One name may begin another: blanks tell them apart.
constexpr std::string_view kClasses[] = {
    "BLOCK I    ", "BLOCK II   ", "BLOCK IIA  ", "BLOCK IIR  ", "BLOCK IIR-A", "BLOCK IIR-B",
    "BLOCK IIR-M", "BLOCK IIF  ", "GLONASS    ", "GLONASS-M  ", "GLONASS-K  ", "GLONASS-K1 ",
};
static_assert(std::size(kClasses) == kLastGLONASS);

short AntennaClass(std::string_view line) {
  for (std::size_t i = 0; i < std::size(kClasses); ++i)
    if (Contains(line, kClasses[i])) return static_cast<short>(i + 1);
  return kReceiver;
}

double Number(std::string_view line, std::size_t column) { return ToDouble(Columns(line, column)); }

// [m] from a field in millimetres
double Metres(std::string_view line, std::size_t column) { return Number(line, column) / 1000; }

unsigned short DateAt(std::string_view line, std::size_t column) {
  return DateField(Columns(line, column));
}

void ReadNodes(std::string_view line, int nodes, matrix<double>& table, long row) {
  for (int k = 0; k < nodes; ++k)
    table(row * nodes + k) = Metres(line, kColFirstNode + kWidthNode * static_cast<std::size_t>(k));
}

bool HasLines(std::string_view text, int n) {
  for (; n > 0; --n) {
    if (text.empty()) return false;
    const std::size_t end = text.find('\n');
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return true;
}

// Nodes of a grid that spans so many steps; 0 where they are not a number or more than most.
int Nodes(double steps, int most) {
  return steps > -1 && steps < most ? static_cast<int>(steps) + 1 : 0;
}

void Warn(const char* format, auto value) {
  char text[200];
  std::snprintf(text, sizeof text, format, value);
  ProgramWarning("Zenta", text);
}

// Between node and node + 1, at the fraction q of the way.
struct GridPlace {
  int node = 0;
  double q = 0;
};

GridPlace PlaceOf(double zen, const AntennaPCV& a) {
  if (zen <= a.zen1) return {0, 0};
  if (zen >= a.zen2) return {a.nZen - 1, 0};
  const double steps = (zen - a.zen1) / a.dzen;
  const int node = steps > 0 && steps < kMostZenithNodes ? static_cast<int>(steps) : 0;
  return {node, (zen - node * a.dzen) / a.dzen};
}

// A frequency without a table has no variations, nor has a grid that can't be interpolated; the
// last node goes on beyond the table.
double Value(const matrix<double>& table, const GridPlace& place) {
  const long last = table.Length() - 1;
  if (last < 0) return 0;
  const double below = table(std::clamp<long>(place.node, 0, last));
  const double above = table(std::clamp<long>(place.node + 1L, 0, last));
  return FiniteOrZero(below + (above - below) * place.q);
}

} // namespace

void AntennaPCV::ReadFile(LineSource& source) {
  std::string_view line;
  while (source.Next(line, kLineLimit) && !Contains(line, "END OF ANTENNA")) {
    if (Contains(line, "TYPE / SERIAL NO")) {
      ParseSerialType(line);
    } else if (Contains(line, "DAZI")) {
      dazi = Number(line, kColDazi);
    } else if (Contains(line, "ZEN1 / ZEN2 / DZEN")) {
      zen1 = Number(line, kColZen1);
      zen2 = Number(line, kColZen2);
      dzen = Number(line, kColDzen);
    } else if (Contains(line, "# OF FREQUENCIES")) {
      nFreq = ToInt(Columns(line, kColFrequencies));
    } else if (Contains(line, "VALID FROM")) {
      ParseValid(line, ValidFrom);
    } else if (Contains(line, "VALID UNTIL")) {
      ParseValid(line, ValidTo);
    } else if (Contains(line, "SINEX CODE") || Contains(line, "COMMENT")) {
      continue;
    } else if (Contains(line, "START OF FREQUENCY")) {
      ReadFrequency(line, source);
    }
  }
  CompleteFrequencies();
  if (PCVType < kReceiver || PCVType > kLastGLONASS)
    ProgramWarning("Zenta", "TYPE OF ANTENNA SENSOR NOT DEFINED [RECEIVER|GPS|GLONASS]!");
}

void AntennaPCV::ParseSerialType(std::string_view line) {
  PCVType = AntennaClass(line);
  CopyText(Columns(line, kColName, kWidthName), AntennaName);
  const char letter = Column(line, kColSatellite);
  if (letter == ' ')
    SatID = 0;
  else if (letter == 'G' || letter == 'R' || letter == 'E')
    SatID = SatelliteNumber(line, kColSatellite);
  else
    Warn("UNEXPECTED SATELLITE TYPE IN ANTEX FILE: %c! ", letter);
}

void AntennaPCV::ParseValid(std::string_view line, mjd& t) const {
  t = ymdhms2mjd(ymdhms(DateAt(line, kColYear), DateAt(line, kColMonth), DateAt(line, kColDay),
                        DateAt(line, kColHour), DateAt(line, kColMinute),
                        Number(line, kColSecond)));
}

void AntennaPCV::ReadFrequency(std::string_view line, LineSource& source) {
  const char code[] = {Column(line, kColFreqSystem), Column(line, kColFreqDigit), '\0'};
  const std::string_view frequency(code);
  if (frequency == "G1") return ReadPCVData(source, PC_G01, PVZEN_G01, PVAZI_G01);
  if (frequency == "G2") return ReadPCVData(source, PC_G02, PVZEN_G02, PVAZI_G02);
  if (frequency == "R1") return ReadPCVData(source, PC_R01, PVZEN_R01, PVAZI_R01);
  if (frequency == "R2") return ReadPCVData(source, PC_R02, PVZEN_R02, PVAZI_R02);
  ProgramWarning("Zenta", "READING ANTENNA PHASE CENTER VARIATIONS - UNEXPECTED FREQUENCY!!");
}

void AntennaPCV::ReadPCVData(LineSource& source, neu& off, matrix<double>& zen,
                             matrix<double>& azi) {
  std::string_view line;
  if (!source.Next(line, kLineLimit)) return;
  off.Set(Metres(line, kColNorth), Metres(line, kColEast), Metres(line, kColUp));

  // Rows of a grid that can't be are left to the label loop.
  constexpr const char* noGrid = "ANTENNA GRID NOT VALID IN ANTEX FILE!";
  nZen = Nodes((zen2 - zen1) / dzen, kMostZenithNodes);
  if (nZen == 0) return ProgramWarning("Zenta", noGrid);
  zen.Resize(nZen);
  if (!source.Next(line, kLineLimit)) return;
  ReadNodes(line, nZen, zen, 0);

  if (!(std::fabs(dazi) > 0.0001)) return;
  nAzi = Nodes(360 / dazi, std::numeric_limits<int>::max() - 1);
  if (nAzi == 0 || !HasLines(source.Rest(), nAzi)) {
    nAzi = 0;
    return ProgramWarning("Zenta", noGrid);
  }
  azi.Resize(nAzi, nZen);
  for (long row = 0; row < nAzi && source.Next(line, kLineLimit); ++row)
    ReadNodes(line, nZen, azi, row);
}

void AntennaPCV::CompleteFrequencies() {
  if (PCVType != kReceiver) return;
  if (nFreq != 1 && nFreq != 2) return;
  if (nFreq == 1) {
    PC_G02 = PC_G01;
    PVZEN_G02 = PVZEN_G01;
  }
  PC_R01 = PC_G01;
  PVZEN_R01 = PVZEN_G01;
  PC_R02 = PC_G02;
  PVZEN_R02 = PVZEN_G02;
}

void antex::SetFile(const char* name) {
  CopyFileName(name, antfile);
  if (!FileExists(antfile)) ProgramError("Zenta", "ANTEX FILE DOES NOT EXISTS!");
}

void antex::ReadFile() {
  LineSource source = LineSource::FromFile(antfile);
  ReadHeader(source);
  CheckData(source);
  AT_PCV.Resize(nAntenna);
  IxAnt = -1;
  source.Rewind();
  ReadHeader(source);
  ReadData(source);
}

void antex::ReadHeader(LineSource& source) {
  std::string_view line;
  while (source.Next(line, kLineLimit) && !Contains(line, "END OF HEADER")) {
    if (Contains(line, "ANTEX VERSION / SYST")) ParseRVersionType(line);
    if (Contains(line, "PCV TYPE / REFANT")) pvctype = Column(line, kColPcvType);
  }
}

void antex::ParseRVersionType(std::string_view line) {
  version = ToFloat(Columns(line, kColVersion, kWidthVersion));
  satsystem = Column(line, kColSystem);
}

void antex::CheckData(LineSource& source) {
  nAntenna = nGPSSat = nGLNSat = nRec = 0;
  std::string_view line;
  while (source.Next(line, kLineLimit)) {
    if (!Contains(line, "TYPE / SERIAL NO")) continue;
    ++nAntenna;
    if (Contains(line, "BLOCK"))
      ++nGPSSat;
    else if (Contains(line, "GLONASS"))
      ++nGLNSat;
    else
      ++nRec;
  }
}

void antex::ReadData(LineSource& source) {
  int read = 0;
  while (read < nAntenna && !source.Find("START OF ANTENNA", kLineLimit).empty())
    AT_PCV(read++).ReadFile(source);
  if (read == nAntenna) return;

  // Records that are counted but not there must not be found.
  matrix<AntennaPCV> there(read, 1);
  for (int i = 0; i < read; ++i) there(i) = std::move(AT_PCV(i));
  AT_PCV = std::move(there);
  nAntenna = read;
}

void antex::SetAntenna(const char* name) {
  IxAnt = -1;
  const std::string_view wanted(name);
  if (wanted.size() != kWidthName) ProgramError("Zenta", "ANTENNA NAME MUST HAVE 20 CHARACTERS!");
  for (int i = 0; i < nAntenna; ++i) {
    const std::string_view held = AT_PCV(i).AntennaName;
    if (held.empty() || !Contains(wanted, held)) continue;
    IxAnt = i;
    return;
  }
  Warn("ANTENNA: %s NOT FOUND IN ANTEX FILE - SETING ALL CALIBRATION PARAMETERS TO ZERO!", name);
}

void antex::SetSatellite(const short& sat, const mjd& t) {
  IxAnt = -1;
  for (int i = 0; i < nAntenna; ++i) {
    const AntennaPCV& held = AT_PCV(i);
    if (held.SatID != sat || !(held.ValidFrom <= t) || !(t <= held.ValidTo)) continue;
    IxAnt = i;
    return;
  }
  Warn("SATELLITE: %d NOT FOUND IN ANTEX FILE - SETING ALL CALIBRATION PARAMETERS TO ZERO!", sat);
}

bool antex::IsBlockIIR() const {
  if (IxAnt < 0) return false;
  const short type = AT_PCV(IxAnt).PCVType;
  return type >= kBlockIIR && type <= kBlockIIRM;
}

void antex::GetAntennaOffset(neu& off, short freq) const {
  off = neu();
  if (IxAnt < 0) return;
  const AntennaPCV& a = AT_PCV(IxAnt);
  const neu* const offsets[] = {&a.PC_G01, &a.PC_G02, &a.PC_R01, &a.PC_R02};
  if (freq < 0 || freq >= static_cast<short>(std::size(offsets)))
    return ProgramWarning("Zenta", "FREQUENCY TYPE NOT PROPER (GETTING ANTENNA OFFSET)!");
  off = *offsets[freq];
}

void antex::GetAntennaPCV(const double& zen, const double& azi, double& g1, double& g2, double& r1,
                          double& r2) const {
  static_cast<void>(azi);
  g1 = g2 = r1 = r2 = 0;
  if (IxAnt < 0) return;
  const AntennaPCV& a = AT_PCV(IxAnt);
  const GridPlace place = PlaceOf(zen, a);
  if (a.PCVType >= kReceiver && a.PCVType <= kLastGPS) {
    g1 = Value(a.PVZEN_G01, place);
    g2 = Value(a.PVZEN_G02, place);
  }
  if (a.PCVType == kReceiver || (a.PCVType > kLastGPS && a.PCVType <= kLastGLONASS)) {
    r1 = Value(a.PVZEN_R01, place);
    r2 = Value(a.PVZEN_R02, place);
  }
}
