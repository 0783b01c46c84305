#include "GNSS/RINEXData.h"

#include "GNSS/RINEXReading.h"
#include "GNSS/RINEXf.h"
#include "GNSS/TimeConverse.h"
#include "ObsField.h"
#include "PROGINC/EndProgram.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/TextNumber.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <vector>

namespace {

// An epoch line, columns from 0 (RINEX 2.10, table A2). The clock offset stands behind twelve
// satellites; more satellites follow on lines of their own, in the same columns.
constexpr std::size_t kColFlag = 28;
constexpr std::size_t kColSatellites = 32;
constexpr std::size_t kSatelliteWidth = 3; // system letter and two digits
constexpr std::size_t kSatelliteListWidth = kSatelliteWidth * kSatellitesPerLine;
constexpr std::size_t kColTCorr = 68;
constexpr std::size_t kTCorrWidth = 12;
constexpr std::size_t kMaxSatellites = 99; // as ParseFirstObsLine counts them

constexpr long kSatelliteNumbers = 500;

// The first satellite number of each system.
struct SatelliteSystem {
  char letter;
  short base;
};
constexpr SatelliteSystem kSystems[] = {{'G', 0}, {'R', 100}, {'E', 200}, {'S', 300}, {'C', 400}};

// The tables of the observation types by code; types that have none are left out.
constexpr unsigned short kCodeS5 = 13;
constexpr matrix<gnssobs> RINEXData::*kObsTables[] = {
    &RINEXData::C1, &RINEXData::P1, &RINEXData::P2, &RINEXData::L1, &RINEXData::L2, &RINEXData::C2,
    nullptr,        nullptr,        nullptr,        nullptr,        &RINEXData::C5, &RINEXData::L5,
};
constexpr matrix<gnssobsshort> RINEXData::*kShortTables[] = {
    nullptr,        nullptr,        nullptr,        nullptr, nullptr, nullptr, &RINEXData::S1,
    &RINEXData::S2, &RINEXData::D1, &RINEXData::D2, nullptr, nullptr, nullptr, &RINEXData::S5,
};
static_assert(std::size(kShortTables) == kCodeS5 + 1);

template <typename Data, typename Table, std::size_t N>
auto FindTable(Data& data, Table (&tables)[N], unsigned short code)
    -> decltype(&(data.*tables[0])) {
  return code < N && tables[code] != nullptr ? &(data.*tables[code]) : nullptr;
}

// The lines of one satellite, each with blanks up to five fields.
class SatelliteLines {
public:
  explicit SatelliteLines(std::size_t types)
      : starts_((types + kFieldsPerLine - 1) / kFieldsPerLine), padded_(starts_.size()) {}

  // Returns false where the text ends before.
  bool Read(LineSource& text) {
    std::string_view line;
    for (std::size_t n = 0; n < starts_.size(); ++n) {
      if (!text.Next(line, kRINEXLineLimit)) return false;
      starts_[n] = line.size() < kWidth ? Pad(line, padded_[n]) : line.data();
    }
    return true;
  }
  // The characters of a line from a column on.
  const char* Field(std::size_t line, std::size_t column) const { return starts_[line] + column; }

private:
  static constexpr std::size_t kWidth = kFieldsPerLine * kObsFieldWidth;
  using Line = std::array<char, kWidth>;

  static const char* Pad(std::string_view line, Line& padded) {
    std::fill(std::copy(line.begin(), line.end(), padded.begin()), padded.end(), ' ');
    return padded.data();
  }

  std::vector<const char*> starts_;
  std::vector<Line> padded_; // those that the text has no five fields of
};

// Where the fields of one observation type are, and where their values go: a table that has a
// row for every record.
template <typename Value> struct Sink {
  std::size_t line;
  std::size_t column;
  Value* values;
};

// The tables that the types of the header fill.
class FieldSinks {
public:
  FieldSinks(RINEXData& data, const RINEXHeader& header) {
    for (std::size_t j = 0; j < header.nobs; ++j) {
      const unsigned short code = header.obs(static_cast<long>(j));
      const std::size_t line = j / kFieldsPerLine;
      const std::size_t column = j % kFieldsPerLine * kObsFieldWidth;
      if (auto* table = FindTable(data, kObsTables, code))
        obs_.push_back({line, column, &(*table)(0)});
      if (auto* table = FindTable(data, kShortTables, code))
        (code == kCodeS5 ? whole_ : short_).push_back({line, column, &(*table)(0)});
    }
  }
  [[gnu::noinline]] void Take(const SatelliteLines& lines, long record) const {
    for (const auto& sink : obs_)
      ReadObsField(lines.Field(sink.line, sink.column), sink.values[record]);
    for (const auto& sink : short_)
      sink.values[record] = ObsValue(lines.Field(sink.line, sink.column));
    for (const auto& sink : whole_)
      sink.values[record] = ToDouble({lines.Field(sink.line, sink.column), kObsFieldWidth});
  }

private:
  std::vector<Sink<gnssobs>> obs_;
  std::vector<Sink<gnssobsshort>> short_;
  std::vector<Sink<gnssobsshort>> whole_; // S5 has no flags: its digits may use the whole field
};

// The satellites of one epoch, three characters each, from as many lines as they take.
class SatelliteText {
public:
  // Takes the columns of the epoch line, up to twelve satellites.
  void TakeFirst(std::string_view columns, std::size_t satellites) {
    const std::size_t width = kSatelliteWidth * std::min(satellites, kSatellitesPerLine);
    std::fill_n(text_, width, ' ');
    columns.copy(text_, width);
    length_ = width;
  }
  // Appends a line that follows, without its trailing blanks.
  void TakeNext(std::string_view columns) {
    const std::size_t last = columns.find_last_not_of(' ');
    if (last == std::string_view::npos) return;
    length_ += columns.copy(text_ + length_, last + 1);
  }
  std::string_view Text() const { return {text_, length_}; }

private:
  static constexpr std::size_t kLines = (kMaxSatellites - 1) / kSatellitesPerLine + 1;
  char text_[kLines * kSatelliteListWidth];
  std::size_t length_ = 0;
};

// Number of satellite k in the list; \p unknown where its system letter means none. Digits
// are not checked: other characters give numbers outside every system.
short SatelliteNumber(std::string_view list, std::size_t k, short unknown) {
  const std::size_t at = k * kSatelliteWidth;
  const char letter = Column(list, at) == ' ' ? 'G' : Column(list, at);
  const char tens = Column(list, at + 1) == ' ' ? '0' : Column(list, at + 1);
  const char units = Column(list, at + 2);
  for (const SatelliteSystem& system : kSystems)
    if (letter == system.letter)
      return static_cast<short>(system.base + 10 * (tens - '0') + (units - '0'));
  return unknown;
}

// The filling pass over the text behind a header, into tables that have their size.
class DataReader {
public:
  DataReader(LineSource& text, RINEXData& data)
      : text_(text), data_(data), header_(data.rhead), marker_(kSatelliteNumbers, 1),
        lines_(header_.nobs), sinks_(data, header_) {
    data_.nComment = 0;
  }

  bool Read() {
    std::string_view line;
    while (text_.Next(line, kRINEXLineLimit)) {
      if (IsFirstObsLine(line))
        ReadEpoch(line);
      else
        ++data_.nComment;
    }
    Finish();
    return epoch_ == data_.nepochall && record_ == data_.nsatall;
  }

private:
  void ReadEpoch(std::string_view line) {
    const long i = epoch_++;
    unsigned short year, month, day, hour, minute;
    long double second;
    short nsat;
    ParseFirstObsLine(line, year, month, day, hour, minute, second, nsat);
    data_.epoch(i) = ymdhms2mjd(ymdhms(year, month, day, hour, minute, second));
    data_.nsat(i) = nsat;
    data_.flag(i) = Column(line, kColFlag);
    data_.obslast = data_.epoch(i);
    if (data_.IfTimeCorr) data_.TCorr(i) = ToDouble(Columns(line, kColTCorr, kTCorrWidth));
    if (i > 0) LowerInterval(data_.epoch(i - 1).GetSecond(), data_.epoch(i).GetSecond());

    const auto n = static_cast<std::size_t>(nsat);
    ReadSatelliteList(line, n);
    for (std::size_t k = 0; k < n; ++k) {
      ReadSatellite(k);
      if (text_.Failed()) return;
    }
  }

  // Only the seconds of the day are compared: the step over midnight comes out large and so
  // never lowers the interval.
  void LowerInterval(long double before, long double now) {
    const float step = std::fabs(static_cast<float>(now - before));
    if (header_.interval < 0 || step < header_.interval) header_.interval = step;
  }

  void ReadSatelliteList(std::string_view line, std::size_t n) {
    satellites_.TakeFirst(Columns(line, kColSatellites), n);
    for (std::size_t listed = kSatellitesPerLine; listed < n; listed += kSatellitesPerLine) {
      text_.Next(line, kRINEXLineLimit);
      satellites_.TakeNext(Columns(line, kColSatellites, kSatelliteListWidth));
    }
  }

  void ReadSatellite(std::size_t k) {
    if (!lines_.Read(text_)) EndProgram();
    const long r = record_++;
    short& sat = data_.sat(r); // beyond the counted records the container ends the program
    sat = SatelliteNumber(satellites_.Text(), k, sat);
    marker_(sat) = static_cast<unsigned short>(sat); // and so it does for a number of no system
    sinks_.Take(lines_, r);
  }

  void Finish() {
    SetSatelliteList();
    data_.satstart = 0;
    data_.istart = 0;
    data_.iend = data_.nepochall;
    if (!header_.iC1 && header_.iP1) {
      data_.C1 = data_.P1;
      header_.iC1 = true;
    }
  }

  void SetSatelliteList() {
    const unsigned short* numbers = &marker_(0);
    const unsigned short* end = numbers + marker_.Length();
    data_.satList.Resize(end - numbers - std::count(numbers, end, 0), 1);
    long k = 0;
    for (; numbers != end; ++numbers)
      if (*numbers != 0) data_.satList(k++) = static_cast<short>(*numbers);
  }

  LineSource& text_;
  RINEXData& data_;
  RINEXHeader& header_;
  matrix<unsigned short> marker_; // at each satellite number met, the number; else 0
  SatelliteLines lines_;
  FieldSinks sinks_;
  SatelliteText satellites_;
  long epoch_ = 0;
  long record_ = 0;
};

// At least a tenth of the records have a satellite that \p test takes.
template <typename Test> bool HasTenth(const RINEXData& data, Test test) {
  bool listed = false;
  for (long k = 0; k < data.satList.NRow() && !listed; ++k) listed = test(data.satList(k));
  if (!listed) return false;
  long n = 0;
  for (long r = 0; r < data.nsatall; ++r)
    if (test(data.sat(r))) ++n;
  return 10 * n >= data.nsatall;
}

void WriteSatellite(std::ostream& out, short sat) {
  for (const SatelliteSystem& system : kSystems)
    if (sat < system.base + 100) { // GPS takes whatever lies below
      out << system.letter << std::setw(2) << sat - system.base;
      return;
    }
}

void WriteEpoch(std::ostream& out, const RINEXData& data, long i, long firstRecord) {
  using std::setw;
  constexpr auto kPerLine = static_cast<long>(kSatellitesPerLine);
  const long n = data.nsat(i);
  out << mjd2ymdhms(data.epoch(i)) << setw(3) << data.flag(i) << setw(3) << n;
  for (long k = 0; k < n; ++k) {
    WriteSatellite(out, data.sat(firstRecord + k));
    if ((k + 1) % kPerLine != 0) continue;
    if (data.IfTimeCorr) out << std::setprecision(9) << setw(12) << data.TCorr(i);
    out << '\n';
    if (k + 1 < n) out << setw(kColSatellites) << "";
  }
  // An epoch without satellites ends its line as well, or the next one would follow in it.
  if (n % kPerLine != 0 || n == 0) out << '\n';
}

void WriteRecord(std::ostream& out, const RINEXData& data, long r) {
  constexpr auto kPerLine = static_cast<long>(kFieldsPerLine);
  const long n = data.rhead.nobs;
  for (long j = 0; j < n; ++j) {
    const unsigned short code = data.rhead.obs(j);
    if (const auto* table = FindTable(data, kObsTables, code)) out << (*table)(r);
    if (const auto* table = FindTable(data, kShortTables, code)) out << (*table)(r);
    if ((j + 1) % kPerLine == 0) out << '\n';
  }
  if (n % kPerLine != 0) out << '\n';
}

} // namespace

RINEXData::RINEXData(RINEXHeader& header) : rhead(header) { RINEXDataReset(); }

void RINEXData::RINEXDataReset() {
  nepochall = nsatall = 0;
  IfTimeCorr = false;
  istart = iend = satstart = nComment = 0;
  NBadEphSat = NBadEphObs = NOKEph = 0;
  AmbFile[0] = '\0';
  epoch.Resize(0, 0);
  flag.Resize(0, 0);
  for (matrix<short>* table : {&nsat, &sat, &satList, &IsEpochOK}) table->Resize(0, 0);
  TCorr.Resize(0, 0);
  for (matrix<gnssobs>* table : {&C1, &P1, &P2, &L1, &L2, &C5, &L5, &C2, &PC1, &PC3, &PP3, &L3, &L4,
                                 &MW, &PC4, &PP4, &CL1, &CLI})
    table->Resize(0, 0);
  for (matrix<gnssobsshort>* table : {&D1, &D2, &S1, &S2, &S5}) table->Resize(0, 0);
  arcs.clear();
}

void RINEXData::SetNRecords(unsigned long nepoch, unsigned long nobs) {
  nepochall = static_cast<long>(nepoch);
  nsatall = static_cast<long>(nobs);
}

void RINEXData::SetTimeCorr(bool timeCorr) { IfTimeCorr = timeCorr; }

void RINEXData::SetAmbFile(const char* name) { CopyText(name, AmbFile); }

void RINEXData::SetData() {
  if (nepochall == 0) RINEXDataError("NUMBER OF EPOCH IN RINEX FILE NOT DETERMINED!");
  epoch.Resize(nepochall, 1);
  flag.Resize(nepochall, 1);
  nsat.Resize(nepochall, 1);
  if (IfTimeCorr) TCorr.Resize(nepochall, 1);
  if (nsatall == 0) RINEXDataError("NUMBER OF OBSERVATIONS IN RINEX FILE NOT DETERMINED!");
  sat.Resize(nsatall, 1);
  for (long j = 0; j < rhead.nobs; ++j) {
    const unsigned short code = rhead.obs(j);
    if (auto* table = FindTable(*this, kObsTables, code)) table->Resize(nsatall, 1);
    if (auto* table = FindTable(*this, kShortTables, code)) table->Resize(nsatall, 1);
  }
}

bool RINEXData::HasGPSObs() const {
  return HasTenth(*this, [](short s) { return s <= 99; });
}

bool RINEXData::HasGLONASSObs() const {
  return HasTenth(*this, [](short s) { return 100 < s && s < 200; });
}

void RINEXData::RINEXDataWarning(const char* text) const {
  std::cout << "\n#### RINEXData: Warning -> " << text << " ####\n"
            << "     Continuing RINEXData ... " << std::endl;
}

void RINEXData::RINEXDataError(const char* text) const {
  std::cout << "\n#### RINEXData: Error -> " << text << " ####\n"
            << "     Exiting RINEXData ... " << std::endl;
  EndProgram();
}

bool ReadRINEXData(LineSource& text, RINEXData& data) {
  data.SetData();
  return DataReader(text, data).Read();
}

std::istream& operator>>(std::istream& in, RINEXData& data) {
  LineSource text = LineSource::FromStream(in);
  ReadRINEXData(text, data);
  return in;
}

std::ostream& operator<<(std::ostream& out, const RINEXData& data) {
  ymdhmsns::PrintType = 1;
  gnssobsns::PrintType = 0;
  gnssobsshortns::PrintType = 0;
  long record = data.satstart;
  for (long i = data.istart; i < data.iend; ++i) {
    WriteEpoch(out, data, i, record);
    for (const long end = record + data.nsat(i); record < end; ++record)
      WriteRecord(out, data, record);
  }
  return out;
}
