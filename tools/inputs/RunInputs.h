#ifndef ZENTA_INPUTS_RUNINPUTS_H
#define ZENTA_INPUTS_RUNINPUTS_H

#include "report/Report.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// What a report does not hold, once more from the input files that it names: the program's own
/// readers and stages, up to the directions of the satellites.
namespace inputs {

/// One observation record.
struct Direction {
  report::Epoch epoch;
  report::Satellite satellite = 0;
  double elevation = 0;  ///< [rad]
  double azimuth = 0;    ///< [rad] from north over east
  bool eclipsed = false; ///< its phases were left out
};

/// What a run adds to the two codes of a satellite, for its known biases [m].
struct CodeCorrection {
  double C1 = 0;
  double P2 = 0;
};

enum class Tracking { P1P2 = 0, C1P2 = 1, C1X2 = 2 };

struct RunInputs {
  std::string marker;
  std::string receiver;
  Tracking tracking = Tracking::P1P2;
  double latitude = 0;  ///< [rad]
  double longitude = 0; ///< [rad]
  double height = 0;    ///< [m] above the ellipsoid
  report::Epoch first, last;
  std::vector<Direction> directions; ///< in the order of the file, of processed systems
  std::map<report::Satellite, CodeCorrection> corrections;
};

/// Where the input files of a report may lie: as named (from the working folder), in \p beside,
/// the folder of the report, and by their last name in \p folder, if it is not empty.
struct Places {
  std::string beside;
  std::string folder;
};

/// Reads the files again. Where one is missing, or the observation file has another number of
/// epochs than the run, \returns nothing, and \p whyNot says what. A file that the readers
/// refuse ends the process as it ends a run: with their message and status 1.
std::optional<RunInputs> ReadInputs(const report::Report& r, const Places& places,
                                    std::string& whyNot);

/// The file that \p name means in \p places; empty where there is none.
std::string Find(const std::string& name, const Places& places);

} // namespace inputs

#endif
