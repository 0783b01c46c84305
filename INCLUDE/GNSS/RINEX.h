#ifndef GNSS_RINEX_H
#define GNSS_RINEX_H

#include "GNSS/RINEXData.h"
#include "GNSS/RINEXHeader.h"

class LineSource;

/// A RINEX 2 observation file: its name, its header and its data.
///
/// Life: SetFile, then ReadFile once, which reads the file into memory, counts epochs and
/// records, sizes the store and fills it.
class RINEX {
public:
  char rinexfile[256];    ///< file name
  RINEXHeader& rhead;     ///< its header
  RINEXData& rdata;       ///< its observations
  unsigned long nepoch;   ///< epochs counted
  unsigned long nobsall;  ///< records counted
  unsigned long nwfepoch; ///< 0
  unsigned long nwfsat;   ///< 0
  bool IsTimeCorr;        ///< the first epoch line carries a receiver clock offset

  RINEX(RINEXHeader& header, RINEXData& data);
  /// Names the file. One that does not open is an error that ends the program.
  void SetFile(const char* name);
  /// Counts the epochs and the records of the file.
  ///
  /// A text that ends within a satellite's lines ends the program with status 1 and no
  /// message.
  void CountRec();
  /// Reads the file; the counts are those of CountRec().
  ///
  /// The header's first and last epoch become those of the data, and a time system that it
  /// does not give becomes GPS. A file without epochs, or without records, is an error that
  /// ends the program.
  void ReadFile();
  /// Writes header and data to standard output.
  void PrintFile() const;
  /// Writes header and data to the file \p name; one that does not open is an error that ends
  /// the program.
  void PrintFile(const char* name) const;

  /// Prints a warning to standard output.
  void RINEXWarning(const char* text) const;
  /// Prints an error to standard output and ends the program with status 1.
  [[noreturn]] void RINEXError(const char* text) const;

private:
  void CountRec(LineSource& text);
};

#endif
