#include "Sp3File.h"
#include "GNSS/TimeConverse.h"
#include <algorithm>
#include <fmt/format.h>

namespace sim {

double SecondsSince(unsigned int day0, const mjd& t) {
  return static_cast<double>(t - mjd(day0, 0));
}

bool Covers(const std::vector<SatelliteSpan>& spans, short sat, double t) {
  return std::any_of(spans.begin(), spans.end(), [&](const SatelliteSpan& s) {
    return s.sat == sat && t >= s.span.from && t <= s.span.to;
  });
}

static std::string Calendar(const mjd& epoch) {
  const ymdhms t = mjd2ymdhms(epoch);
  return fmt::format("{:4} {:2} {:2} {:2} {:2} {:11.8f}", t.GetYear(), t.GetMonth(), t.GetDay(),
                     t.GetHour(), t.GetMinute(), static_cast<double>(t.GetSecond()));
}

/// Five lines of 17 places of three columns: \p first begins the first line, the others begin
/// with its first two characters; places behind the last entry hold 0.
static std::string Table(const std::string& first, const std::vector<std::string>& entries) {
  std::string text;
  for (std::size_t k = 0; k < 85; ++k) {
    if (k % 17 == 0) text += k == 0 ? first : fmt::format("\n{:<9}", first.substr(0, 2));
    text += k < entries.size() ? entries[k] : "  0";
  }
  return text + "\n";
}

static std::string Header(const EpochGrid& grid, const std::vector<short>& satellites) {
  const GPSws week = mjd2GPSws(grid.first);
  const double fraction = static_cast<double>(grid.first.GetSecond() / 86400.0L);
  std::string text =
      fmt::format("#cP{} {:7} ORBIT IGS08 SIM SIMU\n", Calendar(grid.first), grid.count);
  text += fmt::format("## {:4} {:15.8f} {:14.8f} {:5} {:15.13f}\n", week.GetWeek(),
                      static_cast<double>(week.GetSecond()), grid.interval, grid.first.GetMJDay(),
                      fraction);
  std::vector<std::string> names, accuracies;
  for (const short sat : satellites) {
    names.push_back(SatelliteName(sat));
    accuracies.emplace_back("  4");
  }
  text += Table(fmt::format("+  {:3}   ", satellites.size()), names);
  text += Table("++       ", accuracies);
  const bool both = IsGlonass(satellites.back()) != IsGlonass(satellites.front());
  const char system = both ? 'M' : IsGlonass(satellites.front()) ? 'R' : 'G';
  text += fmt::format("%c {}  cc GPS ccc cccc cccc cccc cccc ccccc ccccc ccccc ccccc\n", system);
  text += "%c cc cc ccc ccc cccc cccc cccc cccc ccccc ccccc ccccc ccccc\n"
          "%f  1.2500000  1.025000000  0.00000000000  0.000000000000000\n"
          "%f  0.0000000  0.000000000  0.00000000000  0.000000000000000\n"
          "%i    0    0    0    0      0      0      0      0         0\n"
          "%i    0    0    0    0      0      0      0      0         0\n";
  for (int k = 0; k < 4; ++k) text += "/* SIMULATED ORBITS\n";
  return text;
}

static std::string Position(short sat, const OrbitPoint& point, bool missing, bool badClock) {
  const Vec3 km = missing ? Vec3{} : 1e-3 * point.position;
  const double clock = badClock || missing ? 999999.999999 : 1e6 * point.clock;
  return fmt::format("P{}{:14.6f}{:14.6f}{:14.6f}{:14.6f}{:>20}\n", SatelliteName(sat), km.x, km.y,
                     km.z, clock, badClock || missing ? "" : " 12 12 12 125       ");
}

std::string Sp3Text(const EpochGrid& grid, const std::vector<short>& satellites,
                    const std::function<OrbitPoint(short, const mjd&)>& orbit,
                    const Sp3Faults& faults) {
  std::string text = Header(grid, satellites);
  mjd t = grid.first;
  for (long k = 0; k < grid.count; ++k, t += static_cast<long double>(grid.interval)) {
    text += fmt::format("*  {}\n", Calendar(t));
    const double seconds = SecondsSince(faults.day0, t);
    for (const short sat : satellites)
      text += Position(sat, orbit(sat, t), Covers(faults.missing, sat, seconds),
                       Covers(faults.badClocks, sat, seconds));
  }
  return text + "EOF\n";
}

} // namespace sim
