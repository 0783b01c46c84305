#ifndef GNSS_CLKERR_H
#define GNSS_CLKERR_H

#include "GNSS/mjd.h"
#include "matrix/matrix.h"

class LineSource;

/// Receiver clock corrections, one for each epoch of the observation file.
///
/// Life: SetFile, ReadFile (counts the lines, sizes the tables, fills them), then read-only.
/// Observations and corrections belong together by their index, not by their time.
///
/// The header ends with the line that contains END OF HEADER; without it there are no epochs.
/// Every line behind it is an epoch, an empty one too: Modified Julian Day, second of day,
/// correction [microseconds] and a fourth number that is not used, separated by white space.
/// What a line lacks it has from the line before (0 in the first). A line of more than 99
/// characters ends the reading; a file that can't be opened has no epochs.
class ClkErr {
public:
  ClkErr() = default;

  /// Takes the file name; one of more than 255 characters ends the program.
  void SetFile(const char* name);
  /// Reads the file; what an earlier reading gave is forgotten. A day or second out of range
  /// ends the program with the report of mjd.
  void ReadFile();

  /// Number of epochs.
  long GetNEpoch() const { return nepoch; }
  /// Correction [s] of epoch \p i, to be taken off the epoch of the observations.
  long double GetClkErr(long i) const { return CErr(i); }

private:
  friend struct ClkErrPeer;

  void ReadFileHeader(LineSource& source);
  void ReadFileData(LineSource& source);

  char clkfile[256] = "";
  long nepoch = 0;          ///< data lines
  long double gps_gln = 0;  ///< GPS - GLONASS offset as the header key GPS_GLONASS: gives it
  matrix<mjd> epoch;        ///< epoch of each line
  matrix<long double> CErr; ///< correction of each line [s]
};

#endif
