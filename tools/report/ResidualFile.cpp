#include "ResidualFile.h"

#include "ByteReader.h"

#include <algorithm>
#include <cmath>

namespace report {

namespace {

constexpr std::size_t kRecordSize = 16;

Epoch ReadEpoch(ByteReader& bytes) {
  constexpr long kLastDay = 199999;
  constexpr long double kDay = 86400;
  const long day = bytes.Uint32("a Modified Julian Day");
  if (day > kLastDay) bytes.RefuseLast(4, "a Modified Julian Day");
  const long double second = bytes.Extended("a second of day");
  if (!(second >= 0 && second < kDay)) bytes.RefuseLast(kExtendedSize, "a second of day");
  return {static_cast<int>(day), static_cast<double>(second)};
}

Observable ReadObservable(ByteReader& bytes) {
  switch (bytes.Int16("a residual type")) {
  case 1:
    return Observable::P1C1;
  case 2:
    return Observable::P2C1;
  case 5:
    return Observable::L4;
  default:
    bytes.RefuseLast(2, "a residual type: 1, 2 or 5");
  }
}

class Reader {
public:
  Reader(const std::string& name, std::string_view bytes) : bytes_(name, bytes) {}

  ResidualFile Read() {
    const int n = bytes_.Int16("a number of satellites");
    if (n < 0) bytes_.RefuseLast(2, "a number of satellites");
    for (int j = 0; j < n; ++j) file_.satellites.push_back(bytes_.Int16("a satellite"));
    while (!bytes_.AtEnd()) ReadBlock();
    return std::move(file_);
  }

private:
  void ReadBlock() {
    ResidualBlock block;
    block.epoch = ReadEpoch(bytes_);
    const long m = bytes_.Int32("a number of residuals");
    if (m < 1) bytes_.RefuseLast(4, "at least one residual");
    // The count is believed only as far as there are bytes for it.
    block.residuals.reserve(std::min(static_cast<std::size_t>(m), bytes_.Left() / kRecordSize));
    for (long j = 0; j < m; ++j) block.residuals.push_back(ReadResidual());
    file_.blocks.push_back(std::move(block));
  }

  Residual ReadResidual() {
    Residual r;
    r.satellite = bytes_.Int16("a satellite");
    if (std::find(file_.satellites.begin(), file_.satellites.end(), r.satellite) ==
        file_.satellites.end())
      bytes_.RefuseLast(2, "a satellite of the list at the start of the file");
    r.observable = ReadObservable(bytes_);
    r.value = static_cast<double>(bytes_.Extended("a residual"));
    return r;
  }

  ByteReader bytes_;
  ResidualFile file_;
};

} // namespace

long ResidualFile::Count() const {
  std::size_t n = 0;
  for (const ResidualBlock& b : blocks) n += b.residuals.size();
  return static_cast<long>(n);
}

ResidualFile ReadResidualFile(const std::string& name, std::string_view bytes) {
  return Reader(name, bytes).Read();
}

} // namespace report
