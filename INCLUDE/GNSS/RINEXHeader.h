#ifndef GNSS_RINEXHEADER_H
#define GNSS_RINEXHEADER_H

#include "GNSS/mjd.h"
#include "GNSS/neu.h"
#include "GNSS/xyz.h"
#include "matrix/matrix.h"

#include <iosfwd>

/// Header of a RINEX 2 observation file (RINEX 2.10, table A1).
///
/// Texts are terminated, without leading and trailing blanks, and cut to their arrays. An
/// observation type is a code, its place in this list: C1 P1 P2 L1 L2 C2 S1 S2 D1 D2 C5 L5 D5
/// S5 C6 L6 D6 S6 C7 L7 D7 S7 C8 L8 D8 S8 (0 to 25).
class RINEXHeader {
public:
  /// Code of an observation type that is not in the list; no table and no flag goes with it.
  static constexpr unsigned short kUnknownType = 65535;

  float version;              ///< format version
  char type;                  ///< file type, 'O' for observations
  char satsystems;            ///< satellite system, 'M' for mixed
  char pgm[21];               ///< program that wrote the file
  char runby[21];             ///< who ran it
  char date[20];              ///< date of the file
  char mname[61];             ///< marker name
  char mnumber[21];           ///< marker number
  char observer[21];          ///< observer
  char agency[41];            ///< agency
  char recnumb[21];           ///< receiver number
  char rectype[21];           ///< receiver type
  char recversion[21];        ///< receiver version
  char antnumb[21];           ///< antenna number
  char anttype[21];           ///< antenna type
  xyz X0;                     ///< approximate marker position [m], Earth-fixed
  bool xyz0read;              ///< the header had a position
  neu Dp;                     ///< antenna reference point from the marker [m]
  bool neuread;               ///< the header had antenna offsets
  unsigned short nobs;        ///< number of observation types
  matrix<unsigned short> obs; ///< code of each type, in the order of the file (nobs x 1)
  bool isobs;                 ///< true; a second list of types replaces the first without a warning
  char wavelengthDefL1;       ///< wavelength factor of L1: '1' full cycles, '2' half cycles
  char wavelengthDefL2;       ///< wavelength factor of L2; '0' for a single-frequency receiver
  float interval;             ///< [s] between epochs; -1 where unknown
  mjd obsfirst;               ///< first epoch, in the time system obsfirstts
  mjd obslast;                ///< last epoch, in the time system obslastts
  char obsfirstts[4];         ///< time system, GPS or GLO, as its three columns have it
  char obslastts[4];          ///< time system of the last epoch
  bool iC1, iP1, iP2, iL1, iL2, iC2, iS1, iS2, iD1, iD2; ///< the file has this type,
  bool iC5, iL5, iD5, iS5, iC6, iL6, iD6, iS6;           ///< in the order of the codes
  bool iC7, iL7, iD7, iS7, iC8, iL8, iD8, iS8;
  /// The store has this combination (set by RINEXData::SetLC_...).
  bool iPC1, iPC3, iPP3, iL3, iL4, iMW, iPC4, iPP4, iCL1, iCLI;

  RINEXHeader();
  /// Forgets everything but X0, Dp, obs, obsfirst and obslast, which stay as they are.
  void RINEXHeaderReset();

  unsigned short GetNObs() const { return nobs; }
  float GetInterval() const { return interval; }
  void SetInterval(float seconds) { interval = seconds; }
  /// Writes the two letters of the type \p code and a terminator to \p out (three
  /// characters). Leaves \p out alone for a code above 25.
  void GetObsString(unsigned short code, char* out) const;

  /// Prints a warning to standard output.
  void RINEXHeaderWarning(const char* text) const;
  /// As above with the number of the header line (from 1; lines that continue the list of
  /// types are not counted).
  void RINEXHeaderWarning(const char* text, unsigned long line) const;
};

/// Reads a header, up to and including its END OF HEADER line, or to the end of the stream
/// or the first line longer than 99 characters.
///
/// A label counts wherever it stands in the line, a comment included. A label met again is
/// warned of, and its line replaces the earlier one. TIME OF LAST OBS replaces the first
/// epoch; obslast is set by the reader of the data. A number that can't be read is 0; a date
/// that is none ends the program with the report of ymdhms.
std::istream& operator>>(std::istream& in, RINEXHeader& header);

/// Writes a header with the current date.
///
/// Both epochs must be dates that ymdhms takes: obsfirst and obslast as RINEX::ReadFile sets
/// them. A type that is not in the list is left blank. Leaves behind xyzns::Width = 14, NDec =
/// 4 and Unit = 1, neuns::PrintType = 0, ymdhmsns::PrintType = 0, and the stream in
/// fixed-point notation with 3 decimals.
std::ostream& operator<<(std::ostream& out, const RINEXHeader& header);

#endif
