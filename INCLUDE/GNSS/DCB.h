#ifndef GNSS_DCB_H
#define GNSS_DCB_H

#include "GNSS/mjd.h"
#include "matrix/matrix.h"

#include <string_view>

class LineSource;

/// Differential code biases of the satellites from one monthly CODE file (P1-P2, P1-C1 or
/// P2-C2).
///
/// Life: SetFile, ReadFile (counts the satellite lines, sizes the tables, fills them), then
/// look-ups. Satellites are numbered: GPS PRN n is n, GLONASS slot n is 100 + n. Station lines
/// of the file are passed over.
///
/// The lines up to the one with "PRN / STATION NAME" are the header; without such a line there
/// is no bias. A satellite line has, counted from 1, the system (G or R) in column 1, two
/// digits in 2-3, white space in 4, the bias [ns] from column 27 on and its RMS [ns] from
/// column 39 on; a text without a number there is 0. A line of more than 511 characters ends
/// the reading. A file that can't be opened has no satellites.
///
/// The biases answer for every epoch: the month that the file name tells is kept, but no
/// look-up asks for it.
class DCB {
public:
  DCB() = default;

  /// Takes the file name; one of more than 255 characters ends the program.
  void SetFile(const char* name);
  /// Reads the file; what an earlier reading gave is forgotten. A name whose month is above 12
  /// ends the program with the report of ymdhms.
  void ReadFile();

  /// Bias \p val and its formal error \p rms of satellite \p sat [s], of its first line when it
  /// has several. For a satellite that is not listed both are 0, and a warning names it.
  void GetDCB(short sat, long double& val, long double& rms) const;
  /// Formal error [s] alone, in the same way.
  long double GetDCBRMS(short sat) const;
  /// Bias [s] alone, in the same way.
  long double GetDCBVAL(short sat) const;

private:
  friend struct DCBPeer;

  void CheckData(LineSource& source);
  void ReadData(LineSource& source);
  static bool IsSatelliteLine(std::string_view line);
  /// Satellite number of a line: a blank in column 2 counts as 0; E is Galileo, 200 + n; any
  /// other system leaves the two digits as they are.
  static short ParseSatelliteNum(std::string_view line);
  /// The month of a name such as P1C10801.DCB (January 2008) or P1P20812_ALL.DCB; years 79 to
  /// 99 are of the last century. The second digit of the month is not looked at when the name
  /// is judged. Other names are valid from MJD 44250 to 85000.
  void ParseValidDate();
  /// Row of the first line of \p sat, -1 without one.
  long Find(short sat) const;

  char file[256] = "";
  short nsat = 0;          ///< satellite lines
  matrix<short> sat;       ///< satellite of each line, in the order of the file
  matrix<long double> VAL; ///< bias [s]
  matrix<long double> RMS; ///< formal error [s]
  mjd StartEpoch;          ///< first instant of the month
  mjd EndEpoch;            ///< last instant of the month, 1 ms before the next
};

#endif
