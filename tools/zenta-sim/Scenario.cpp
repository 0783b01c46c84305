#include "Scenario.h"
#include "report/Refusal.h"
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fmt/format.h>

namespace sim {

double Scenario::PhaseNoise() const {
  // L1 - L2 of two independent phases has sqrt(2) times the noise of one.
  return phaseNoise.value_or(codeNoise / 10 / std::sqrt(2.0));
}

void Fail(const std::string& text) { throw report::Refusal(text); }

static bool IsKnownType(const std::string& type) {
  static const std::array<const char*, 13> known = {"C1", "P1", "P2", "L1", "L2", "C2", "S1",
                                                    "S2", "D1", "D2", "C5", "L5", "S5"};
  return std::any_of(known.begin(), known.end(), [&](const char* k) { return type == k; });
}

static void CheckNumbers(const Scenario& s) {
  if (!(s.interval >= 0.05)) Fail("--interval must be at least 0.05 s");
  if (!(s.duration >= s.interval)) Fail("--duration is shorter than one interval");
  if (s.duration / s.interval > 1e7) Fail("more than ten million epochs");
  if (!(s.start >= 0 && s.start < 86400)) Fail("--start must lie within the day");
  if (!(std::abs(s.latitude) < 90)) Fail("--lat must lie between -90 and 90, without the poles");
  if (!(s.ionoInterval > 0)) Fail("--ion-interval must be positive");
  if (!(s.sp3Interval > 0)) Fail("--sp3-interval must be positive");
  if (!(s.mask >= 0 && s.mask < 90)) Fail("--mask must lie between 0 and 90 degrees");
  if (!(s.codeNoise >= 0 && s.PhaseNoise() >= 0)) Fail("noise must not be negative");
}

void Check(const Scenario& s) {
  CheckNumbers(s);
  if (!s.gps && !s.glonass) Fail("--systems names no system");
  if (!s.gps && s.precise) Fail("a run on GLONASS SP3 files alone finds no ephemeris file");
  if (s.types.empty()) Fail("--types names no observation");
  for (const std::string& type : s.types)
    if (!IsKnownType(type)) Fail("--types: unknown type " + type);
  if (s.gradients != Gradients::kNone && s.law == IonoLaw::kBulge)
    Fail("--gradients belong to --ionosphere model");
  if (s.windUp == WindUp::kExact && s.interval < 10)
    Fail("--wind-up exact needs an interval of at least 10 s");
  if (s.headerError != 0 && !s.withCoordinates)
    Fail("--header-error needs the coordinate file (--with coordinates)");
}

std::string SatelliteName(short sat) {
  return fmt::format("{}{:02}", IsGlonass(sat) ? 'R' : 'G', sat % 100);
}

static double ParseNumber(const std::string& text, const std::string& whole) {
  double value = 0;
  const char* first = text.data() + (text.starts_with('+') ? 1 : 0);
  const auto [end, error] = std::from_chars(first, text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
    Fail("no number in " + whole);
  return value;
}

/// \p text cut at the first \p separator, which must be there.
static std::pair<std::string, std::string> Cut(const std::string& text, char separator) {
  const std::size_t at = text.find(separator);
  if (at == std::string::npos) Fail(fmt::format("'{}' is missing in {}", separator, text));
  return {text.substr(0, at), text.substr(at + 1)};
}

short ParseSatellite(const std::string& text) {
  if (text.size() != 3 || (text[0] != 'G' && text[0] != 'R')) Fail("no satellite: " + text);
  const short number = static_cast<short>(ParseNumber(text.substr(1), text));
  const short last = text[0] == 'G' ? 32 : 24;
  if (number < 1 || number > last) Fail("no satellite: " + text);
  return static_cast<short>(text[0] == 'G' ? number : 100 + number);
}

double ParseTime(const std::string& text) {
  const auto [hours, rest] = Cut(text, ':');
  const auto [minutes, seconds] = Cut(rest, ':');
  return 3600 * ParseNumber(hours, text) + 60 * ParseNumber(minutes, text) +
         ParseNumber(seconds, text);
}

TimeSpan ParseSpan(const std::string& text) {
  const auto [from, to] = Cut(text, '-');
  const TimeSpan span{ParseTime(from), ParseTime(to)};
  if (span.to < span.from) Fail("ends before it begins: " + text);
  return span;
}

SatelliteSpan ParseSatelliteSpan(const std::string& text) {
  const auto [sat, span] = Cut(text, '@');
  return {ParseSatellite(sat), ParseSpan(span)};
}

Slip ParseSlip(const std::string& text) {
  const auto [sat, rest] = Cut(text, '@');
  const auto [time, cycles] = Cut(rest, '=');
  const auto [n1, n2] = Cut(cycles, '/');
  return {ParseSatellite(sat), ParseTime(time), std::lround(ParseNumber(n1, text)),
          std::lround(ParseNumber(n2, text))};
}

Outlier ParseOutlier(const std::string& text) {
  const auto [sat, rest] = Cut(text, '@');
  const auto [time, what] = Cut(rest, '=');
  const auto [type, size] = Cut(what, ':');
  if (type != "C1" && type != "P1" && type != "P2" && type != "L1" && type != "L2")
    Fail("no type for an outlier: " + text);
  return {ParseSatellite(sat), ParseTime(time), type, ParseNumber(size, text)};
}

} // namespace sim
