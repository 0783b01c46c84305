#ifndef GNSS_GPSBEPH_H
#define GNSS_GPSBEPH_H

#include "GNSS/RecordIndex.h"
#include "GNSS/mjd.h"
#include "GNSS/xyz.h"
#include "matrix/matrix.h"

#include <iosfwd>
#include <string_view>
#include <vector>

class LineSource;
class gnssobs;

/// Header of a GPS navigation file (RINEX 2.11, table A3).
///
/// A label is looked for anywhere in its line; a line of no known label is warned of on standard
/// output. Lines that the file does not have leave their fields as they are, 0 or empty in a new
/// object. Numbers with a D exponent are cut into mantissa and exponent at their columns.
class GPSbEphHeader {
public:
  /// Reads lines up to and including END OF HEADER.
  /// \returns false when the text ends before it or a line is longer than 99 characters.
  bool Read(LineSource& source);

  float version = 0;        ///< RINEX version
  char type[20] = "";       ///< file type, trimmed
  char pgm[21] = "";        ///< program, trimmed
  char runby[21] = "";      ///< agency, trimmed
  char date[21] = "";       ///< creation date, trimmed
  long double a0 = 0;       ///< [s] GPS time less UTC at T, constant term
  long double a1 = 0;       ///< [s/s] and its rate
  int T = 0;                ///< [s of week] reference time of a0, a1
  int W = 0;                ///< GPS week of T
  short leaps = 0;          ///< [s] leap seconds since 1980-01-06
  long double alfa[4] = {}; ///< ionosphere amplitude, [s], per semicircle, its square, cube
  long double beta[4] = {}; ///< ionosphere period, units as for alfa

private:
  void ParseLine(std::string_view line);
  void ParseRVersionType(std::string_view line);
  void ParsePgmRunByDate(std::string_view line);
  static void ParseIon(std::string_view line, long double (&coefficient)[4]);
  void ParseDeltaUTC(std::string_view line);
  void ParseLeapS(std::string_view line);
  /// Named as that of the GLONASS header; the text names this class.
  static void GLNbEphHeaderWarning(const char* text);
};

/// Reads a header up to its end; the stream is left at the first record, and failed where
/// GPSbEphHeader::Read is false.
std::istream& operator>>(std::istream& in, GPSbEphHeader& header);

/// Records of a GPS navigation file (RINEX 2.11, table A4), in file order.
///
/// Columns of data:
///
///     0 af0 [s]         7 Cuc [rad]       14 Cis [rad]           21 GPS week
///     1 af1 [s/s]       8 e               15 i0 [rad]            22 L2 P data flag
///     2 af2 [s/s2]      9 Cus [rad]       16 Crc [m]             23 accuracy [m]
///     3 IODE           10 sqrt(A) [m^1/2] 17 omega [rad]         24 health
///     4 Crs [m]        11 Toe [s of week] 18 OMEGA DOT [rad/s]   25 TGD [s]
///     5 delta n [rad/s] 12 Cic [rad]      19 IDOT [rad/s]        26 IODC
///     6 M0 [rad]       13 OMEGA0 [rad]    20 codes on L2         27 transmission [s of week]
///
/// The fit interval is not kept.
class GPSbEphData {
public:
  /// Sizes the tables for \p n records; what they held is lost.
  void SetNRecords(unsigned int n);
  /// Reads the records that the tables were sized for.
  ///
  /// With none to read the error "NUMBER OF RECORDS not set!" ends the program; an epoch that is
  /// no date ends it with the report of ymdhms. Where the text ends, or has something other than
  /// a number, reading stops and the tables are cut to the records that were read completely.
  /// \returns whether all records were read.
  bool Read(LineSource& source);
  /// The records of one PRN, in file order. From the first call on the PRNs must stay as they
  /// are.
  const std::vector<long>& RecordsOf(unsigned short prn) const;

  static constexpr long NValues = 28; ///< columns of data

  unsigned int nsatall = 0;       ///< records
  matrix<mjd> mjdo;               ///< clock reference time of each record, GPS time
  matrix<unsigned short> sat;     ///< PRN of each record
  matrix<unsigned short> satList; ///< sorted distinct PRNs
  matrix<long double> data;       ///< values of each record, a row of NValues

private:
  static long double ReadParameter(LineSource& source);
  static void GPSbEphDataWarning(const char* text);
  [[noreturn]] static void GPSbEphDataError(const char* text);

  mutable RecordIndex index;

  friend struct GPSbEphDataPeer;
};

/// Reads the records from the rest of the stream, whatever follows them; failed where
/// GPSbEphData::Read is false.
std::istream& operator>>(std::istream& in, GPSbEphData& data);

/// GPS broadcast orbits from a RINEX 2 navigation file.
///
/// Life: SetFile, ReadFile once (counts the records, sizes the tables, fills them), then
/// read-only but for the working members that each evaluation overwrites; one object must not be
/// evaluated from two threads. Positions [m] are in the Earth-fixed frame (WGS 84) of the
/// emission epoch, clock offsets [s] in dt, epochs in GPS time.
///
/// A record is eight lines. A file that can't be opened is not told from one without records:
/// both end the program with "NUMBER OF RECORDS not set!".
///
/// Clock and orbit are referred to the epoch of the record's first line (RINEX: Toc); Toe enters
/// the longitude of the node alone. In broadcast data both are the same instant.
///
/// Source: IS-GPS-200, 20.3.3.4.3 and table 20-IV.
class GPSbEph {
public:
  /// Takes the file name, cut to 255 characters.
  void SetFile(const char* name);
  /// Reads the file whole. The header is read in both passes, so its warnings appear twice.
  void ReadFile();

  /// Number of records, not of satellites.
  unsigned int GetNSat() const { return nsatall; }
  /// Sorted distinct PRNs.
  const matrix<unsigned short>& GetSatList() const { return gdata.satList; }
  /// Epoch of record \p record.
  const mjd& GetMJD(long record) const { return gdata.mjdo(record); }

  /// Position and clock at epoch \p t.
  ///
  /// \param prn   PRN; one without records ends the program
  /// \param tsel  epoch that chooses the record: the first of the satellite, in file order, that
  ///   is later than tsel, else its last. Of two records around tsel the later one is taken,
  ///   however near the earlier is.
  /// \param pos   Earth-fixed position [m] at t in the frame of t; in dt the satellite clock offset
  ///   [s] with the relativistic term, without the group delay
  /// \param tgd   receives the group delay TGD [s] of the record
  /// \param warn  other than 0: an epoch more than 7200 s from the record is warned of on standard
  ///   output. More than 8000 s are warned of on standard error in any case.
  /// \param spare without effect
  ///
  /// Elements that are no ellipse give components that are not numbers, or, where Kepler's
  /// equation does not converge, end the program with "TO MANY ITERATIONS (E)". Sets Relativity.
  void CalcSatPosition(unsigned short prn, const mjd& t, const mjd& tsel, xyzt& pos,
                       long double* tgd, unsigned short warn, unsigned short spare);

  /// Position at the emission of the signal that \p rec receives at \p t.
  ///
  /// \param rec  Earth-fixed position of the receiver [m] in the frame of t
  /// \param pos  satellite [m] in the Earth-fixed frame of the emission epoch, clock as above
  /// \returns geometric range [m]
  ///
  /// The travel time is iterated from 75 ms until the range moves by no more than 1e-5 m; 11
  /// passes are warned of on standard output, and so is a travel time beyond a day, which only
  /// spoilt elements give. The last values stand then. Sets ps and Relativity.
  long double CalcSatPosition(unsigned short prn, const mjd& t, const mjd& tsel, const xyz& rec,
                              xyzt& pos, long double* tgd, unsigned short warn,
                              unsigned short spare);

  /// As above with the travel time taken from the observed range \p obs [m]: one evaluation.
  /// \returns geometric range [m]; -1, without an evaluation, for an observation that is not a
  ///   number or beyond a day of travel.
  long double CalcSatPosition(unsigned short prn, const mjd& t, const mjd& tsel, const xyz& rec,
                              xyzt& pos, const gnssobs& obs, long double* tgd, unsigned short warn,
                              unsigned short spare);

  GPSbEphHeader ghead;        ///< header of the file
  GPSbEphData gdata;          ///< records of the file
  long double Relativity = 0; ///< [s] last F e sqrt(A) sin E, IS-GPS-200 20.3.3.3.3.1
  unsigned int nsatall = 0;   ///< records
  xyz ps;                     ///< [m] receiver in the Earth-fixed frame of the last emission epoch

private:
  void CountNav(LineSource& source);
  void ReadNav(LineSource& source);
  long GetDataIndex(unsigned short prn, const mjd& tsel) const;
  void Evaluate(long k, const mjd& t, xyzt& pos, long double* tgd, unsigned short warn);
  void WarnOfAge(unsigned short prn, const mjd& t, long double tk) const;
  static long double EccentricAnomaly(long double M, long double e);
  static void PrintParameter(const char* name, long double value);
  [[noreturn]] static void GPSbEphError(const char* text);
  static void GPSbEphWarning(const char* text);

  char navig[256] = ""; ///< file name
  // Constants of IS-GPS-200 as double precision holds them.
  long double GMz = 3.986005e14;        ///< [m3/s2] gravitational constant of the Earth
  long double OMEGAz = 7.2921151467e-5; ///< [rad/s] Earth rotation
  long double RelK = -4.442807633e-10;  ///< [s/m^1/2] F, relativistic clock constant
  xyzt p0;                              ///< [m], [s] satellite of the last evaluation
  xyzt v0;                              ///< velocity; broadcast elements are not differentiated
  mjd ephr;                             ///< epoch of the last evaluation

  friend struct GPSbEphPeer;
};

#endif
