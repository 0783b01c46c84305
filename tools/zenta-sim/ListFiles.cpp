#include "ListFiles.h"
#include "Constellation.h"
#include "GNSS/TimeConverse.h"
#include <array>
#include <fmt/format.h>

namespace sim {

static double BiasOf(BiasKind kind, const SatelliteBias& bias) {
  switch (kind) {
  case BiasKind::kP1P2:
    return bias.p1p2;
  case BiasKind::kP1C1:
    return bias.p1c1;
  case BiasKind::kP2C2:
    return bias.p2c2;
  }
  return 0;
}

std::string BiasFileText(BiasKind kind, const Scenario& scenario,
                         const std::map<short, SatelliteBias>& biases) {
  static constexpr std::array<const char*, 3> names = {"P1-P2", "P1-C1", "P2-C2"};
  const char* name = names[static_cast<std::size_t>(kind)];
  std::string text = fmt::format("SIMULATED MONTHLY GNSS {} DCB SOLUTION, YEAR-MONTH {:02}-{:02}\n",
                                 name, scenario.year % 100, scenario.month);
  text += std::string(80, '-') + "\n\n";
  text += fmt::format("DIFFERENTIAL ({}) CODE BIASES FOR SATELLITES AND RECEIVERS:\n\n", name);
  text += "PRN / STATION NAME        VALUE (NS)  RMS (NS)\n"
          "***   ****************    *****.***   *****.***\n";
  const auto line = [&](const std::string& id, const std::string& station, double value) {
    text += fmt::format("{:<3}   {:<20}{:9.3f}   {:9.3f}\n", id, station, value, 0.01);
  };
  for (const auto& [sat, bias] : biases) line(SatelliteName(sat), "", BiasOf(kind, bias));
  line("G", scenario.marker + " " + scenario.markerNumber, 1.234);
  return text;
}

std::string ReceiverName(Tracking tracking) {
  static constexpr std::array<const char*, 3> names = {"SIM PP RECEIVER", "SIM CP RECEIVER",
                                                       "SIM CX RECEIVER"};
  return names[static_cast<std::size_t>(tracking)];
}

std::string ReceiverListText() {
  std::string text = "RECEIVER INFORMATION FILE, SIMULATED\n" + std::string(80, '-') + "\n\n" +
                     "RECEIVER TYPE        #FREQ  CODE  FREQ  WAVE.F.  SYST\n"
                     "********************   *     **    L*:     *     ****\n";
  const auto entry = [&](const std::string& name, const char* first, const char* second) {
    text += fmt::format("\n{:<20}   2     {}    L1:     1     GR\n", name, first);
    text += fmt::format("{:<20}         {}    L2:     1\n", "", second);
  };
  entry("ANOTHER RECEIVER", "C1", "P2");
  entry(ReceiverName(Tracking::kC1P2), "C1", "P2");
  entry(ReceiverName(Tracking::kC1X2), "C1", "X2");
  entry(ReceiverName(Tracking::kP1P2), "P1", "P2");
  return text;
}

std::string ChannelListText() {
  std::string text = "# GLONASS frequency channels by slot and period\n"
                     "# SLOT    START                END                 CH\n";
  for (short slot = 1; slot <= kGlonassSatellites; ++slot) {
    const int channel = GlonassChannel(slot);
    text += fmt::format("R{:02}       1996 01 01 00 00 00  1999 12 31 23 59 59 {:3}\n", slot,
                        channel + 1);
    text +=
        fmt::format("R{:02}       2000 01 01 00 00 00                      {:3}\n", slot, channel);
  }
  return text;
}

std::string ClockFileText(const std::vector<Epoch>& epochs) {
  std::string text = "RECEIVER CLOCK CORRECTIONS: MJD, SECONDS, CORRECTION [MICROSECONDS]\n"
                     "GPS_GLONASS:          0.0\n"
                     "END OF HEADER\n";
  for (const Epoch& epoch : epochs)
    text += fmt::format("{:6} {:15.7f} {:16.6f} {:8.3f}\n", epoch.tag.GetMJDay(),
                        static_cast<double>(epoch.tag.GetSecond()), ClockFileValue(epoch), 0.0);
  return text;
}

static std::string CoordinateLine(int id, const std::string& name, const std::string& number,
                                  const StationMotion& station) {
  const ymdhms t = mjd2ymdhms(station.epoch);
  return fmt::format("{:4} {:<20} {:<60} {:14.4f} {:14.4f} {:14.4f} {:9.4f} {:9.4f} {:9.4f}  "
                     "{:4}-{:02}-{:02} {:02}:{:02}:{:02}\n",
                     id, name, number, station.position.x, station.position.y, station.position.z,
                     station.velocity.x, station.velocity.y, station.velocity.z, t.GetYear(),
                     t.GetMonth(), t.GetDay(), t.GetHour(), t.GetMinute(),
                     static_cast<int>(t.GetSecond()));
}

std::string CoordinateFileText(const Scenario& scenario, const StationMotion& station) {
  std::string text = fmt::format("# ID {:<20} {:<60} {:>14} {:>14} {:>14} {:>9} {:>9} {:>9}  {}\n",
                                 "MARKER_NAME", "MARKER_NUMBER", "X [m]", "Y [m]", "Z [m]",
                                 "VX[m/yr]", "VY[m/yr]", "VZ[m/yr]", "YYYY-MM-DD HH:MM:SS");
  StationMotion other = station;
  other.position = station.position + Vec3{1000, -2000, 500};
  text += CoordinateLine(1, "OTHR", "10002M001", other);
  text += CoordinateLine(2, scenario.marker, scenario.markerNumber, station);
  text += CoordinateLine(3, "LAST", "10003M001", other);
  return text;
}

} // namespace sim
