#include "Epochs.h"
#include "GNSS/TimeConverse.h"
#include "Text.h"
#include "Vec3.h"
#include <algorithm>
#include <cmath>

namespace sim {

long EpochTable::Nearest(double seconds) const {
  const auto after = std::lower_bound(epochs.begin(), epochs.end(), seconds,
                                      [](const Epoch& e, double t) { return e.seconds < t; });
  if (after == epochs.begin()) return 0;
  const long index = static_cast<long>(after - epochs.begin());
  if (after == epochs.end()) return index - 1;
  return seconds - std::prev(after)->seconds <= after->seconds - seconds ? index - 1 : index;
}

double ClockFileValue(const Epoch& epoch) { return Rounded(epoch.clock * 1e6, 6); }

static bool InGap(const Scenario& scenario, double seconds) {
  return std::any_of(scenario.gaps.begin(), scenario.gaps.end(),
                     [&](const TimeSpan& gap) { return seconds >= gap.from && seconds <= gap.to; });
}

/// \p seconds since midnight of \p day0, the second of the minute as a RINEX line holds it.
static mjd AsRead(unsigned int day0, double seconds) {
  const double days = std::floor(seconds / kSecondsPerDay);
  const double ofDay = seconds - days * kSecondsPerDay;
  mjd t(day0 + static_cast<unsigned int>(days), 0);
  const double minutes = std::floor(ofDay / 60);
  t += static_cast<long double>(minutes) * 60.0L;
  t += static_cast<long double>(Rounded(ofDay - 60 * minutes, 7));
  return t;
}

EpochTable MakeEpochs(const Scenario& scenario) {
  EpochTable table;
  table.day0 = ymdhms2mjd(ymdhms(scenario.year, scenario.month, scenario.day, 0, 0, 0)).GetMJDay();
  const long count = std::lround(std::ceil(scenario.duration / scenario.interval - 1e-9));
  double jumps = 0; // [s] so far
  bool missing = false;
  for (long k = 0; k < count; ++k) {
    const double offset = Rounded(static_cast<double>(k) * scenario.interval, 7);
    const double seconds = scenario.start + offset;
    if (InGap(scenario, seconds)) {
      missing = true;
      continue;
    }
    Epoch epoch;
    epoch.phaseClock = 1e-6 * (scenario.clockOffset + scenario.clockDrift * offset);
    // Whole milliseconds, as soon as the clock is off by more than half of one.
    const double wanted = scenario.clockJumps ? -1e-3 * std::round(epoch.phaseClock * 1e3) : 0;
    if (wanted != jumps && !table.epochs.empty())
      table.jumps.push_back({static_cast<long>(table.epochs.size()), wanted - jumps});
    jumps = wanted;
    epoch.clock = epoch.phaseClock + jumps;
    epoch.tag = AsRead(table.day0, seconds);
    epoch.used = epoch.tag;
    if (scenario.withClock) epoch.used += -static_cast<long double>(1e-6 * ClockFileValue(epoch));
    epoch.seconds = static_cast<double>(epoch.used - mjd(table.day0, 0));
    epoch.trueSeconds = seconds - epoch.clock;
    epoch.afterGap = missing;
    missing = false;
    table.epochs.push_back(epoch);
  }
  if (table.epochs.empty()) Fail("the gaps leave no epoch");
  return table;
}

} // namespace sim
