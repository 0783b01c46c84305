#include "GNSS/RecCodeTrack.h"

#include "PROGINC/FileName.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/cfilef.h"

#include <string>

namespace {

constexpr std::size_t kLineLimit = 511;

// Columns of an entry, from 0.
constexpr std::size_t kColCodeLines = 23;
constexpr std::size_t kColCode = 29;

enum TrackingClass : short { kUndetermined = -1, kP1P2 = 0, kC1P2 = 1, kC1X2 = 2 };

std::string_view Code(std::string_view line) { return Columns(line, kColCode, 2); }

/// Class of the entry that begins with \p line and goes on in \p source.
TrackingClass ClassOf(std::string_view line, LineSource& source) {
  const bool c1 = Code(line) == "C1";
  const bool p1 = Code(line) == "P1";
  if (Column(line, kColCodeLines) != '2') return kUndetermined;
  source.Next(line, kLineLimit);
  const bool p2 = Code(line) == "P2";
  const bool x2 = Code(line) == "X2";
  if (c1 && x2) return kC1X2;
  if (p1 && p2) return kP1P2;
  if (c1 && p2) return kC1P2;
  return kUndetermined;
}

void Warn(const char* receiverType, const char* what) {
  const std::string text = std::string("RECEIVER: ") + receiverType + what;
  ProgramWarning("Zenta", text.c_str());
}

} // namespace

void RecCodeTrack::SetFile(const char* name) {
  CopyFileName(name, file);
  if (!FileExists(file))
    ProgramError("Zenta", "RECEIVER LIST FILE CAN NOT BE OPENED (CODE TRACKING TECHNIQUE)!");
}

short RecCodeTrack::GetRecCodeTrack(const char* receiverType) const {
  LineSource source = LineSource::FromFile(file);
  if (!source.IsOpen()) return kP1P2;
  const std::string_view entry = source.Find(receiverType, kLineLimit);
  if (!source.Failed()) {
    const TrackingClass found = ClassOf(entry, source);
    if (found != kUndetermined) return found;
    Warn(receiverType, " DETERMINATION OF CODE TRACKING NOT SUCCESFUL - SETTING TO P1P2 VALUE!");
  }
  Warn(receiverType, " NOT LISTED IN RECEIVER TYPES LIST - SETTING CODE TRACKING TO P1P2 VALUE!");
  return kP1P2;
}

bool RecCodeTrack::CheckRecName(const char* receiverType) const {
  LineSource source = LineSource::FromFile(file);
  source.Find(receiverType, kLineLimit);
  return !source.Failed();
}

bool RecCodeTrack::GetRecType(const char* receiverType) const { return CheckRecName(receiverType); }
