#ifndef GNSS_GLNSAT_H
#define GNSS_GLNSAT_H

#include "GNSS/mjd.h"
#include "GNSS/ymdhms.h"
#include "matrix/matrix.h"

#include <cstddef>
#include <string_view>

class LineSource;

/// Frequency channels of the GLONASS slots by periods of time.
///
/// Life: SetFile, ReadFile (counts the data lines, sizes the tables, fills them), then
/// look-ups. Times are in whatever scale the file has, and are compared as they stand.
///
/// One line per slot and period; a line that is empty or begins with "#" or a blank is a
/// comment. Columns from 0: 0 the system letter, 1 slot, 10 start as year, month (15), day (18),
/// hour (21), minute (24) and second (27), 31 end in the same order (36, 39, 42, 45, 48) or
/// blank for an open end, 51 channel. Each number reads on from its first column; a text that
/// is none reads as 0. A date that is none ends the program with the report of ymdhms. A line
/// of more than 511 characters ends the reading.
class GLNSat {
public:
  GLNSat() = default;

  /// Takes the file name. One of more than 255 characters, or of a file that does not exist,
  /// ends the program.
  void SetFile(const char* name);
  /// Reads the file; what an earlier reading gave is forgotten. A file that can't be opened
  /// ends the program.
  void ReadFile();

  /// Channel of satellite \p sat (100 + slot) at \p t: that of the first line whose period
  /// holds \p t, both ends included. Without such a line it is 0, which is a channel too:
  /// GetIsGLNSat() tells them apart.
  long double GetFreqNum(short sat, const mjd& t);
  /// The last look-up found a line.
  bool GetIsGLNSat() const { return IsGLNSat; }

private:
  friend struct GLNSatPeer;

  void CountGNSSats(LineSource& source);
  void ReadGLNFreqChan(LineSource& source);
  mjd ParseEpoch(std::string_view line, const std::size_t (&columns)[6]);

  char file[256] = "";
  bool IsGLNSat = false;           ///< the last look-up found a line
  long nsat = 0;                   ///< data lines
  matrix<short> sat;               ///< satellite of each line
  matrix<mjd> eph;                 ///< first and last instant of each line
  matrix<long double> FreqChannel; ///< channel of each line
  ymdhms dm;                       ///< date being read
  mjd lastEph{88068, 86399.0L};    ///< end of an open period
};

#endif
