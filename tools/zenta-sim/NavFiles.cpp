#include "NavFiles.h"
#include "GNSS/TimeConverse.h"
#include "Text.h"
#include <fmt/format.h>

namespace sim {

/// Number and epoch, the first 22 columns of a record.
static std::string RecordHead(short number, const mjd& epoch) {
  const ymdhms t = mjd2ymdhms(epoch);
  return fmt::format("{:2} {:02} {:2} {:2} {:2} {:2}{:5.1f}", number, t.GetYear() % 100,
                     t.GetMonth(), t.GetDay(), t.GetHour(), t.GetMinute(),
                     static_cast<double>(t.GetSecond()));
}

/// The record's lines: three values behind the head, then four a line.
template <std::size_t N> static std::string RecordText(const NavRecord<N>& record) {
  std::string text = RecordHead(record.number, record.epoch);
  for (std::size_t k = 0; k < N; ++k) {
    if (k >= 3 && k % 4 == 3) text += "\n   ";
    text += Exponential(record.values[k]);
  }
  return text + "\n";
}

static std::string Program() {
  return HeaderLine(fmt::format("{:<20}{:<20}{:<20}", "zenta-sim", "", ""), "PGM / RUN BY / DATE");
}

std::string GpsNavigationText(const std::vector<GpsRecord>& records, int leapSeconds) {
  std::string text = HeaderLine("     2.11           N: GPS NAV DATA", "RINEX VERSION / TYPE");
  text += Program();
  text += HeaderLine("  " + ShortExponential(1.118e-8) + ShortExponential(-7.451e-9) +
                         ShortExponential(-5.96e-8) + ShortExponential(1.192e-7),
                     "ION ALPHA");
  text += HeaderLine("  " + ShortExponential(1.167e5) + ShortExponential(-2.294e5) +
                         ShortExponential(-1.311e5) + ShortExponential(1.049e6),
                     "ION BETA");
  text += HeaderLine(fmt::format("{:6}", leapSeconds), "LEAP SECONDS");
  text += HeaderLine("", "END OF HEADER");
  for (const GpsRecord& record : records) text += RecordText(record);
  return text;
}

std::string GlonassNavigationText(const std::vector<GlonassRecord>& records, int leapSeconds) {
  std::string text = HeaderLine("     2.11           GLONASS NAV DATA", "RINEX VERSION / TYPE");
  text += Program();
  if (!records.empty()) {
    const ymdhms t = mjd2ymdhms(records.front().epoch);
    text += HeaderLine(
        fmt::format("{:6}{:6}{:6}   {}", t.GetYear(), t.GetMonth(), t.GetDay(), Exponential(0)),
        "CORR TO SYSTEM TIME");
  }
  text += HeaderLine(fmt::format("{:6}", leapSeconds), "LEAP SECONDS");
  text += HeaderLine("", "END OF HEADER");
  for (const GlonassRecord& record : records) text += RecordText(record);
  return text;
}

} // namespace sim
