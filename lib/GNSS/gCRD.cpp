#include "GNSS/gCRD.h"

#include "GNSS/DateField.h"
#include "GNSS/TimeConverse.h"
#include "PROGINC/FileName.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/TextNumber.h"
#include "PROGINC/cfilef.h"

#include <cmath>
#include <iomanip>
#include <ostream>

namespace {

constexpr std::size_t kLineLimit = 511;

struct Field {
  std::size_t column; ///< from 0
  std::size_t width;
};

constexpr std::size_t kColIdEnd = 3; // last digit of the point number
constexpr Field kName{5, 20};
constexpr Field kNumber{26, 60};
constexpr Field kName2{87, 20}; // second station of a relative constraint
constexpr Field kNumber2{108, 60};
constexpr std::size_t kColXyz[] = {87, 102, 117};
constexpr std::size_t kColXyz2[] = {169, 184, 199};
constexpr std::size_t kWithVelocity = 160; // characters that a line with velocities exceeds
constexpr Field kVelocity[] = {{132, 9}, {142, 9}, {152, 9}};
constexpr std::size_t kWithEpoch = 182; // characters of a line with a reference epoch
constexpr Field kDate[] = {{163, 4}, {168, 2}, {171, 2}, {174, 2}, {177, 2}, {180, 2}};

// Widths that put the numbers right-aligned into the columns above.
constexpr unsigned short kWidthXyz = 15;
constexpr unsigned short kWidthVelocity = 10;
constexpr unsigned short kDecimals = 4;

constexpr const char* kHeader =
    "# ID MARKER_NAME          MARKER_NUMBER                                                      "
    "X [m]        Y [m]          Z [m]       VX[m/yr]  VY[m/yr]  VZ[m/yr]  YYYY-MM-DD HH:MM:SS\n"
    "#*** ******************** ************************************************************ "
    "*********.**** *********.**** *********.**** ****.**** ****.**** ****.****  "
    "****-**-** **:**:**\n";

std::string_view Cut(std::string_view line, Field field) {
  return Columns(line, field.column, field.width);
}

bool IsDataLine(std::string_view line) { return !line.empty() && Column(line, kColIdEnd) != ' '; }

/// Calls \p use(line) for the data lines in turn, until it returns true or the data end.
template <typename Use> void ForEachDataLine(LineSource& source, Use use) {
  std::string_view line;
  bool more = source.Next(line, kLineLimit);
  while (more && Column(line, 0) == '#') more = source.Next(line, kLineLimit);
  while (more && IsDataLine(line) && !use(line)) more = source.Next(line, kLineLimit);
}

/// Characters behind the end of the line are blank.
bool HasName(std::string_view line, std::string_view name) {
  for (std::size_t k = 0; k < name.size(); ++k)
    if (Column(line, kName.column + k) != name[k]) return false;
  return true;
}

bool HasNumber(std::string_view line, std::string_view number) {
  const std::string_view listed = Trimmed(Cut(line, kNumber));
  return listed.empty() || listed == number;
}

CRDSite ParseSite(std::string_view line, Field name, Field number) {
  return {std::string(Trimmed(Cut(line, name))), std::string(Trimmed(Cut(line, number)))};
}

CRDSite ParseSite(std::string_view line) { return ParseSite(line, kName, kNumber); }

xyz ParseXyz(std::string_view line, const std::size_t (&columns)[3]) {
  return {ToDouble(Columns(line, columns[0])), ToDouble(Columns(line, columns[1])),
          ToDouble(Columns(line, columns[2]))};
}

xyz ParseVelocity(std::string_view line) {
  if (line.size() <= kWithVelocity) return {};
  return {ToDouble(Cut(line, kVelocity[0])), ToDouble(Cut(line, kVelocity[1])),
          ToDouble(Cut(line, kVelocity[2]))};
}

ymdhms ParseReferenceEpoch(std::string_view line) {
  if (line.size() < kWithEpoch) return {2005, 1, 1, 0, 0, 0.0L};
  return {DateField(Cut(line, kDate[0])), DateField(Cut(line, kDate[1])),
          DateField(Cut(line, kDate[2])), DateField(Cut(line, kDate[3])),
          DateField(Cut(line, kDate[4])), ToDouble(Cut(line, kDate[5]))};
}

CRDPoint ParsePoint(std::string_view line) {
  return {ParseSite(line), ParseXyz(line, kColXyz), ParseVelocity(line),
          ymdhms2mjd(ParseReferenceEpoch(line))};
}

ABSConst ParseAbsolute(std::string_view line) { return {ParseSite(line), ParseXyz(line, kColXyz)}; }

RELConst ParseRelative(std::string_view line) {
  return {ParseSite(line), ParseSite(line, kName2, kNumber2), ParseXyz(line, kColXyz2)};
}

/// Position at \p epoch of a point that moves evenly.
xyz Propagated(const CRDPoint& point, const mjd& epoch) {
  const long double years = mjd2ymdhms(epoch).GetYearDec() - mjd2ymdhms(point.epoch).GetYearDec();
  return point.position + point.velocity * years;
}

/// Counts the data lines of \p file, sizes the table and fills it.
template <typename Row>
void ReadTable(const char* file, matrix<Row>& table, Row (*parse)(std::string_view)) {
  if (file[0] == '\0') ProgramError("Zenta", "COORDINATE FILE IS NOT SET!");
  LineSource source = LineSource::FromFile(file);
  long n = 0;
  ForEachDataLine(source, [&](std::string_view) {
    ++n;
    return false;
  });
  table.Resize(n);
  source.Rewind();
  long i = 0;
  ForEachDataLine(source, [&](std::string_view line) {
    table(i++) = parse(line);
    return false;
  });
}

/// The layout of the numbers and dates of a coordinate file, while it lives; the print
/// settings of the process are put back at its end.
class FileLayout {
public:
  FileLayout()
      : nDec_(xyzns::NDec), width_(xyzns::Width), unit_(xyzns::Unit),
        printType_(ymdhmsns::PrintType), printFormat_(ymdhmsns::PrintFormat),
        nDecSecond_(ymdhmsns::NDecSecond) {
    xyzns::NDec = kDecimals;
    xyzns::Unit = 1.0L;
    ymdhmsns::PrintType = 2;
    ymdhmsns::PrintFormat = 0;
    ymdhmsns::NDecSecond = 0;
  }
  ~FileLayout() {
    xyzns::NDec = nDec_;
    xyzns::Width = width_;
    xyzns::Unit = unit_;
    ymdhmsns::PrintType = printType_;
    ymdhmsns::PrintFormat = printFormat_;
    ymdhmsns::NDecSecond = nDecSecond_;
  }
  FileLayout(const FileLayout&) = delete;
  FileLayout& operator=(const FileLayout&) = delete;

private:
  const unsigned short nDec_;
  const unsigned short width_;
  const long double unit_;
  const unsigned short printType_;
  const unsigned short printFormat_;
  const unsigned short nDecSecond_;
};

/// The nearest whole second. Rounded here, as 59.7 s printed without decimals would be 60.
mjd WholeSecond(const mjd& t) {
  mjd rounded = t;
  rounded += 0.5L;
  return {rounded.GetMJDay(), std::floor(rounded.GetSecond())};
}

} // namespace

void gCRD::SetFile(const char* name) {
  CopyFileName(name, file);
  if (!FileExists(file)) ProgramError("Zenta", "COORDINATE FILE DOES NOT EXIST!");
}

bool gCRD::Find(std::string_view name, const char* number, CRDPoint& found) {
  LineSource source = LineSource::FromFile(file);
  if (!source.IsOpen()) return false;
  IsSiteB = false;
  ForEachDataLine(source, [&](std::string_view line) {
    if (!HasName(line, name) || (number != nullptr && !HasNumber(line, number))) return false;
    found = ParsePoint(line);
    IsSiteB = true;
    return true;
  });
  return IsSiteB;
}

xyz gCRD::GetCRD(const char* name, const char* number, const mjd& epoch) {
  xyz velocity;
  return GetCRD(name, number, epoch, velocity);
}

xyz gCRD::GetCRD(const char* name, const char* number, const mjd& epoch, xyz& velocity) {
  CRDPoint point;
  const bool found = Find(name, number, point);
  velocity = point.velocity;
  return found ? Propagated(point, epoch) : xyz();
}

xyz gCRD::GetCRD(const char* name) {
  CRDPoint point;
  Find(name, nullptr, point);
  return point.position;
}

void gCRD::ReadCRDs(matrix<CRDPoint>& points) const { ReadTable(file, points, ParsePoint); }

void gCRD::ReadABSConst(matrix<ABSConst>& constraints) const {
  ReadTable(file, constraints, ParseAbsolute);
}

void gCRD::ReadRELConst(matrix<RELConst>& constraints) const {
  ReadTable(file, constraints, ParseRelative);
}

void gCRD::ReadFixedStat(matrix<CRDSite>& sites) const {
  ReadTable<CRDSite>(file, sites, ParseSite);
}

void gCRD::OpenOutputFile(const char* name) {
  CRDOutput = std::ofstream(name);
  CRDOutput << kHeader;
  icrd = 0;
}

void gCRD::PrintGPoint(const char* name, const char* number, const xyz& position,
                       const xyz& velocity, const mjd& epoch) {
  const FileLayout layout;
  ++icrd;
  CRDOutput << std::setw(4) << icrd << ' ' << std::left << std::setw(kName.width)
            << std::string_view(name).substr(0, kName.width) << ' ' << std::setw(kNumber.width)
            << std::string_view(number).substr(0, kNumber.width) << std::right;
  xyzns::Width = kWidthXyz;
  CRDOutput << position;
  xyzns::Width = kWidthVelocity;
  CRDOutput << velocity << ' ' << mjd2ymdhms(WholeSecond(epoch)) << '\n';
}

void gCRD::CloseOutputFile() { CRDOutput.close(); }
