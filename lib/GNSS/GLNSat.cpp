#include "GNSS/GLNSat.h"

#include "GNSS/DateField.h"
#include "GNSS/TimeConverse.h"
#include "PROGINC/FileName.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/TextNumber.h"
#include "PROGINC/cfilef.h"

#include <algorithm>

namespace {

constexpr std::size_t kLineLimit = 511;

// Columns of a data line, from 0.
constexpr std::size_t kColSlot = 1;
constexpr std::size_t kColStart[] = {10, 15, 18, 21, 24, 27}; // year to second
constexpr std::size_t kColEnd[] = {31, 36, 39, 42, 45, 48};
constexpr std::size_t kColChannel = 51;

constexpr int kFirstGlonass = 100; // slot n is satellite 100 + n
constexpr int kNoSlot = 10000;     // from here on no satellite that could be asked for

bool IsDataLine(std::string_view line) {
  const char first = Column(line, 0);
  return first != '#' && first != ' ';
}

/// Moves on to the next data line.
bool NextDataLine(LineSource& source, std::string_view& line) {
  while (source.Next(line, kLineLimit))
    if (IsDataLine(line)) return true;
  return false;
}

} // namespace

void GLNSat::SetFile(const char* name) {
  CopyFileName(name, file);
  if (!FileExists(file)) ProgramError("Zenta", "GLONASS FREQUENCY CHANNEL FILE DOES NOT EXIST!");
}

void GLNSat::ReadFile() {
  LineSource source = LineSource::FromFile(file);
  if (!source.IsOpen()) ProgramError("Zenta", "GLONASS FREQUENCY CHANNEL FILE CAN NOT BE OPENED!");
  CountGNSSats(source);
  source.Rewind();
  ReadGLNFreqChan(source);
}

void GLNSat::CountGNSSats(LineSource& source) {
  nsat = 0;
  std::string_view line;
  while (NextDataLine(source, line)) ++nsat;
  sat.Resize(nsat);
  eph.Resize(nsat, 2);
  FreqChannel.Resize(nsat);
}

void GLNSat::ReadGLNFreqChan(LineSource& source) {
  std::string_view line;
  for (long i = 0; i < nsat && NextDataLine(source, line); ++i) {
    const int slot = std::clamp(ToInt(Columns(line, kColSlot)), 0, kNoSlot);
    sat(i) = static_cast<short>(kFirstGlonass + slot);
    eph(i, 0) = ParseEpoch(line, kColStart);
    eph(i, 1) = Column(line, kColEnd[0]) == ' ' ? lastEph : ParseEpoch(line, kColEnd);
    FreqChannel(i) = ToDouble(Columns(line, kColChannel));
  }
}

mjd GLNSat::ParseEpoch(std::string_view line, const std::size_t (&columns)[6]) {
  dm.Set(DateField(Columns(line, columns[0])), DateField(Columns(line, columns[1])),
         DateField(Columns(line, columns[2])), DateField(Columns(line, columns[3])),
         DateField(Columns(line, columns[4])), ToDouble(Columns(line, columns[5])));
  return ymdhms2mjd(dm);
}

long double GLNSat::GetFreqNum(short wanted, const mjd& t) {
  IsGLNSat = false;
  for (long i = 0; i < nsat; ++i) {
    if (sat(i) != wanted || !(eph(i, 0) <= t) || !(t <= eph(i, 1))) continue;
    IsGLNSat = true;
    return FreqChannel(i);
  }
  return 0;
}
