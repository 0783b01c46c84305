#ifndef TEQC_COMPACTTEQC_H
#define TEQC_COMPACTTEQC_H

#include "GNSS/mjd.h"
#include "matrix/matrix.h"

#include <string_view>

class LineSource;

/// One plot file of teqc in COMPACT2 layout: a value per satellite and epoch, here the code
/// multipath [m].
///
/// Life: SetFile, ReadFile once (counts, sizes, fills), then read-only. The text: a first line
/// with "COMPACT2", the sampling interval behind "T_SAMP", the start as a fractional MJD behind
/// "START_TIME_MJD"; then one epoch line per sampling step, which begins with a whole number n:
///   n >= 1  a list of n satellites of 4 characters each follows in the line, and a line of
///           values follows it;
///   n < 0   the last list is repeated (-1), a line of values follows;
///   n = 0   nothing was observed; no line of values follows.
/// A value takes 10 characters; one behind the end of its line reads as 0. Epochs are not
/// written: epoch line j, counted from 0 and with the n = 0 lines, is at start + j intervals.
/// Lines have up to 255 characters; the data end at the first epoch line that does not begin
/// with a whole number.
///
/// A satellite is one number: GPS its PRN, GLONASS 100 + slot, Galileo 200 + PRN.
class CompactTEQC {
public:
  CompactTEQC() = default;
  CompactTEQC(const CompactTEQC&) = default;
  CompactTEQC& operator=(const CompactTEQC&) = default;
  ~CompactTEQC() = default;

  /// Takes the file name; a file that can't be opened ends the program with "TEQC COMPACT FILE
  /// DOES NOT EXISTS!".
  void SetFile(const char* name);
  /// Reads the file whole. A first line without "COMPACT2" ends the program, and so does a
  /// satellite list that is shorter than its count or has a number outside 0 to 299.
  void ReadFile();

  /// Values in the file.
  int NObs() const { return nobs; }
  /// Epochs with values.
  int NEph() const { return neph; }

  /// Sampling interval [s].
  float GetInterval() const { return interval; }
  /// Epoch \p e of those with values, from 0.
  const mjd& GetEpoch(long e) const { return eph(e); }
  /// Number of values of epoch \p e; the values lie epoch by epoch.
  unsigned short GetNSat(long e) const { return nsat(e); }
  /// Satellite of value \p k, from 0.
  unsigned short GetSat(long k) const { return sat(k); }
  /// Value \p k [m].
  double GetObs(long k) const { return obs(k); }
  /// The flag character of value \p k, the 9th of its field, is blank.
  bool GetSlip(long k) const { return slip(k); }
  /// Distinct satellites of the file, ascending.
  const matrix<unsigned short>& GetSatList() const { return satList; }

private:
  /// An epoch line with its line of values.
  struct EpochLines {
    int n = 0;               ///< leading number
    int count = 0;           ///< satellites of the list in force
    std::string_view list;   ///< the list in force
    std::string_view values; ///< line of values, empty for n = 0
  };

  void CheckData(LineSource& source);
  void SetData();
  void ReadData(LineSource& source);
  void ParseObsLine(std::string_view line, int n, long start);
  void ParseSat(std::string_view line, int n, long start, matrix<short>& seen);

  bool NextEpoch(LineSource& source, EpochLines& lines) const;
  [[noreturn]] void FileError(const char* what) const;

  char compfile[256] = "";        ///< file name
  int nobs = 0;                   ///< values in the file
  int neph = 0;                   ///< epochs with values
  short version = 0;              ///< 2 once the first line was recognised
  float interval = 0;             ///< [s] sampling interval
  matrix<unsigned short> sat;     ///< satellite of each value
  matrix<unsigned short> nsat;    ///< values of each epoch
  matrix<unsigned short> satList; ///< distinct satellites, ascending
  matrix<double> obs;             ///< [m] values
  matrix<bool> slip;              ///< the value's flag character is blank
  matrix<mjd> eph;                ///< epochs with values

  friend struct CompactTEQCPeer;
};

#endif
