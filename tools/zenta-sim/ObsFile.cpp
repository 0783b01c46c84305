#include "ObsFile.h"
#include "GNSS/TimeConverse.h"
#include "Text.h"
#include <fmt/format.h>

namespace sim {

static constexpr std::size_t kSatellitesPerLine = 12;
static constexpr std::size_t kFieldsPerLine = 5;

ObsWriter::ObsWriter(const std::string& name, const Scenario& scenario)
    : name_(name), scenario_(scenario), out_(name, std::ios::binary) {
  if (!out_) Fail("can't write " + name);
}

static std::string TypeLines(const std::vector<std::string>& types) {
  std::string text;
  for (std::size_t k = 0; k < types.size(); k += 9) {
    std::string line = k == 0 ? fmt::format("{:6}", types.size()) : std::string(6, ' ');
    for (std::size_t j = k; j < std::min(k + 9, types.size()); ++j)
      line += fmt::format("{:>6}", types[j]);
    text += HeaderLine(line, "# / TYPES OF OBSERV");
  }
  return text;
}

void ObsWriter::Header(const ObsHeader& header, const mjd& first) {
  const char system = !scenario_.glonass ? 'G' : scenario_.gps ? 'M' : 'R';
  const ymdhms t = mjd2ymdhms(first);
  buffer_ +=
      HeaderLine(fmt::format("{:9.2f}{:11}{:<20}{:<20}", 2.11, "", "OBSERVATION DATA", system),
                 "RINEX VERSION / TYPE");
  buffer_ += HeaderLine(fmt::format("{:<20}{:<20}", "zenta-sim", ""), "PGM / RUN BY / DATE");
  buffer_ += HeaderLine("SIMULATED OBSERVATIONS", "COMMENT");
  buffer_ += HeaderLine(scenario_.marker, "MARKER NAME");
  buffer_ += HeaderLine(scenario_.markerNumber, "MARKER NUMBER");
  buffer_ += HeaderLine(fmt::format("{:<20}{}", "SIMULATION", "ZENTA"), "OBSERVER / AGENCY");
  buffer_ += HeaderLine(fmt::format("{:<20}{:<20}{:<20}", "1", header.receiver, "1.0"),
                        "REC # / TYPE / VERS");
  buffer_ += HeaderLine(fmt::format("{:<20}{:<20}", "1", "SIMULATED       NONE"), "ANT # / TYPE");
  buffer_ += HeaderLine(fmt::format("{:14.4f}{:14.4f}{:14.4f}", header.position.x,
                                    header.position.y, header.position.z),
                        "APPROX POSITION XYZ");
  buffer_ +=
      HeaderLine(fmt::format("{:14.4f}{:14.4f}{:14.4f}", header.up, header.east, header.north),
                 "ANTENNA: DELTA H/E/N");
  buffer_ += HeaderLine("     1     1", "WAVELENGTH FACT L1/2");
  buffer_ += TypeLines(scenario_.types);
  buffer_ += HeaderLine(fmt::format("{:10.3f}", scenario_.interval), "INTERVAL");
  buffer_ += HeaderLine(fmt::format("{:6}", header.leapSeconds), "LEAP SECONDS");
  buffer_ += HeaderLine(fmt::format("{:6}{:6}{:6}{:6}{:6}{:13.7f}     GPS", t.GetYear(),
                                    t.GetMonth(), t.GetDay(), t.GetHour(), t.GetMinute(),
                                    static_cast<double>(t.GetSecond())),
                        "TIME OF FIRST OBS");
  buffer_ += HeaderLine("", "END OF HEADER");
}

void ObsWriter::AddEvent(const std::string& comment) {
  buffer_ += fmt::format("{:28}4{:3}\n", "", 2);
  buffer_ += HeaderLine(comment, "COMMENT");
  buffer_ += HeaderLine("OBSERVATIONS CONTINUE BELOW", "COMMENT");
}

void ObsWriter::AddEpoch(const Epoch& epoch, const std::vector<ObsLine>& lines) {
  const ymdhms t = mjd2ymdhms(epoch.tag);
  std::string head =
      fmt::format(" {:02} {:2} {:2} {:2} {:2}{:11.7f}  {}{:3}", t.GetYear() % 100, t.GetMonth(),
                  t.GetDay(), t.GetHour(), t.GetMinute(), static_cast<double>(t.GetSecond()),
                  epoch.afterGap ? 1 : 0, lines.size());
  for (std::size_t k = 0; k < lines.size() || k == 0; k += kSatellitesPerLine) {
    for (std::size_t j = k; j < std::min(k + kSatellitesPerLine, lines.size()); ++j)
      head += SatelliteName(lines[j].sat);
    if (k == 0 && scenario_.clockOnLines) head = fmt::format("{:<68}{:12.9f}", head, epoch.clock);
    buffer_ += head;
    buffer_ += '\n';
    head.assign(32, ' ');
  }
  for (const ObsLine& line : lines) AddFields(line.fields);
  Flush(1U << 20);
}

void ObsWriter::AddFields(const std::vector<ObsField>& fields) {
  for (std::size_t k = 0; k < fields.size(); ++k) {
    const ObsField& field = fields[k];
    if (field.value == 0) {
      buffer_.append(16, ' ');
    } else {
      AppendThousandths(buffer_, field.value, 14);
      buffer_ += field.lossOfLock == 0 ? ' ' : static_cast<char>('0' + field.lossOfLock);
      buffer_ += field.strength == 0 ? ' ' : static_cast<char>('0' + field.strength);
    }
    if (k % kFieldsPerLine == kFieldsPerLine - 1 || k + 1 == fields.size()) {
      buffer_.resize(buffer_.find_last_not_of(' ') + 1);
      buffer_ += '\n';
    }
  }
}

void ObsWriter::Flush(std::size_t atLeast) {
  if (buffer_.size() < atLeast) return;
  out_ << buffer_;
  buffer_.clear();
}

void ObsWriter::Close() {
  Flush(0);
  if (!out_.flush()) Fail("can't write " + name_);
}

} // namespace sim
