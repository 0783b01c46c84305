#ifndef ZENTA_SIM_OBSFILE_H
#define ZENTA_SIM_OBSFILE_H

#include "Epochs.h"
#include "Scenario.h"
#include "Vec3.h"
#include <fstream>
#include <string>
#include <vector>

namespace sim {

/// One field of an observation line; a value of 0 is missing.
struct ObsField {
  double value = 0;   ///< [m], [cycles], [Hz], [dBHz]
  int lossOfLock = 0; ///< digit behind the value, blank for 0
  int strength = 0;   ///< likewise
};

/// A satellite's fields, in the order of the header's types.
struct ObsLine {
  short sat = 0;
  std::vector<ObsField> fields;
};

/// What the header tells besides the scenario.
struct ObsHeader {
  Vec3 position;                      ///< [m] approximate position of the marker
  double up = 0, east = 0, north = 0; ///< [m] antenna over marker
  std::string receiver;               ///< receiver type
  int leapSeconds = 0;
};

/// Writes a RINEX 2.11 observation file, epoch by epoch. A file that can't be written ends the
/// process.
class ObsWriter {
public:
  ObsWriter(const std::string& name, const Scenario& scenario);
  void Header(const ObsHeader& header, const mjd& first);
  void AddEpoch(const Epoch& epoch, const std::vector<ObsLine>& lines);
  /// An event that changes nothing: flag 4 and two comment lines.
  void AddEvent(const std::string& comment);
  void Close();

private:
  void AddFields(const std::vector<ObsField>& fields);
  void Flush(std::size_t atLeast);

  std::string name_;
  const Scenario& scenario_;
  std::ofstream out_;
  std::string buffer_;
};

} // namespace sim

#endif
