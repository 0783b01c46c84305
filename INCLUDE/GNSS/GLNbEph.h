#ifndef GNSS_GLNBEPH_H
#define GNSS_GLNBEPH_H

#include "GNSS/GLNTrack.h"
#include "GNSS/RecordIndex.h"
#include "GNSS/mjd.h"
#include "GNSS/xyz.h"
#include "GNSS/ymdhms.h"
#include "matrix/matrix.h"

#include <array>
#include <iosfwd>
#include <string_view>
#include <vector>

class LineSource;
class gnssobs;

/// Header of a GLONASS navigation file (RINEX 2.11, table A10).
///
/// A label is looked for anywhere in its line; a line of no known label is warned of on standard
/// output. Lines that the file does not have leave their fields as they are, 0 or empty in a new
/// object.
class GLNbEphHeader {
public:
  /// Reads lines up to and including END OF HEADER.
  /// \returns false when the text ends before it or a line is longer than 99 characters.
  bool Read(LineSource& source);

  float version = 0;    ///< RINEX version
  char type[20] = "";   ///< file type, trimmed
  char pgm[21] = "";    ///< program, trimmed
  char runby[21] = "";  ///< agency, trimmed
  char date[21] = "";   ///< creation date, trimmed
  long double TauC = 0; ///< [s] correction of the system time to UTC(SU)
  ymdhms RefTimeCorr;   ///< reference date of TauC; one that is no date ends the program
  short leaps = 0;      ///< [s] leap seconds since 1980-01-06

private:
  void ParseLine(std::string_view line);
  void ParseRVersionType(std::string_view line);
  void ParsePgmRunByDate(std::string_view line);
  void ParseCorrSystemTime(std::string_view line);
  void ParseLeapS(std::string_view line);
  static void GLNbEphHeaderWarning(const char* text);
};

/// Reads a header up to its end; the stream is left at the first record, and failed where
/// GLNbEphHeader::Read is false.
std::istream& operator>>(std::istream& in, GLNbEphHeader& header);

/// Records of a GLONASS navigation file (RINEX 2.11, table A11), in file order.
///
/// Columns of data; positions and their derivatives are in PZ-90:
///
///     0 clock bias -TauN [s]       5 X acceleration [km/s2]  10 frequency channel
///     1 frequency bias +GammaN     6 health                  11 Z [km]
///     2 message frame time [s]     7 Y [km]                  12 Z velocity [km/s]
///     3 X [km]                     8 Y velocity [km/s]       13 Z acceleration [km/s2]
///     4 X velocity [km/s]          9 Y acceleration [km/s2]  14 age of information [d]
///
/// The accelerations are those of Sun and Moon alone.
class GLNbEphData {
public:
  /// Sizes the tables for \p n records; what they held is lost.
  void SetNRecords(int n);
  /// Reads the records that the tables were sized for, as GPSbEphData::Read does.
  /// \returns whether all records were read.
  bool Read(LineSource& source);
  /// The records of one slot, in file order. From the first call on the slots must stay as they
  /// are.
  const std::vector<long>& RecordsOf(short slot) const;

  static constexpr long NValues = 15; ///< columns of data

  int nsatall = 0;          ///< records
  matrix<mjd> mjdo;         ///< epoch of each record, from UTC in the file to GPS time
  matrix<short> sat;        ///< slot of each record
  matrix<short> satList;    ///< sorted distinct slots
  matrix<long double> data; ///< values of each record, a row of NValues

private:
  static long double ReadParameter(LineSource& source);
  static void GLNbEphDataWarning(const char* text);
  [[noreturn]] static void GLNbEphDataError(const char* text);

  mutable RecordIndex index;

  friend struct GLNbEphDataPeer;
};

/// Reads the records from the rest of the stream, whatever follows them; failed where
/// GLNbEphData::Read is false.
std::istream& operator>>(std::istream& in, GLNbEphData& data);

/// GLONASS broadcast orbits from a RINEX 2 navigation file.
///
/// Life: SetFile, ReadFile once (counts the records, sizes the tables, fills them), then
/// read-only but for the working members that each evaluation overwrites; one object must not be
/// evaluated from two threads. Positions [m] and velocities [m/s] are in the Earth-fixed frame
/// (PZ-90) of the emission epoch, clock offsets [s] in dt, epochs in GPS time.
///
/// A record is four lines. A file that can't be opened is not told from one without records:
/// both end the program with "NUMBER OF RECORDS not set!".
///
/// The state of the record is carried to the epoch by the classical Runge-Kutta method of fourth
/// order (GLNTrack). Source: GLONASS ICD 5.1, appendix 3 (equations of motion and constants).
class GLNbEph {
public:
  /// Takes the file name, cut to 255 characters.
  void SetFile(const char* name);
  /// Reads the file whole. The header is read in both passes, so its warnings appear twice.
  void ReadFile();

  /// Number of records, not of satellites.
  int GetNSat() const { return nsatall; }
  /// Epoch of record \p record, GPS time.
  const mjd& GetMJD(long record) const { return rdata.mjdo(record); }
  /// Integrates with steps of \p seconds from now on (30 s at first); the sign is that of the
  /// direction. At most 501 steps are made, so a short step falls short of a far epoch without
  /// notice.
  void SetIntegrationStep(long double seconds) { diffinterval = seconds; }

  /// Runge-Kutta steps made so far, by all evaluations.
  unsigned long GetSteps() const;

  /// Position, clock and velocity at epoch \p t.
  ///
  /// \param slot  slot number, 1 to 24; one without records ends the program
  /// \param tsel  epoch that chooses the record: the nearer of the two around it, the earlier of
  ///   two equally near; before the first record the first, behind the last the last. An epoch
  ///   that is exactly that of the slot's first record takes the slot's last record.
  /// \param pos   Earth-fixed position [m] at t in the frame of t; in dt the clock offset [s],
  ///   -TauN - GammaN dt + TauC less Relativity, dt counted from the epoch of the record + TauC
  /// \param vel   velocity [m/s] in the same rotating frame; its dt is 0
  /// \param warn  other than 0: an epoch more than 16 minutes from the record is warned of on
  ///   standard output
  void CalcSatPosition(short slot, const mjd& t, const mjd& tsel, xyzt& pos, xyzt& vel, short warn);

  /// Position at the emission of the signal that \p rec receives at \p t.
  ///
  /// \param rec  Earth-fixed position of the receiver [m] in the frame of t
  /// \param pos  satellite [m] in the Earth-fixed frame of the emission epoch, clock as above
  /// \returns geometric range [m]
  ///
  /// The travel time is iterated from 75 ms until the range moves by no more than 1e-5 m; 51
  /// passes are warned of on standard output, and so is a travel time beyond a day, which only a
  /// spoilt state gives. The last values stand then. Sets ps and Relativity.
  long double CalcSatPosition(short slot, const mjd& t, const mjd& tsel, const xyz& rec, xyzt& pos,
                              xyzt& vel, short warn);

  /// As above with the travel time taken from the observed range \p obs [m]: one evaluation, after
  /// which the satellite, not the receiver, is turned by the Earth's rotation during the travel
  /// time, and in the opposite sense to that of the receiver above; ps stays as it is.
  ///
  /// \param pos  satellite [m], turned; \p vel is not
  /// \returns distance of the turned satellite from \p rec [m]; -1, without an evaluation, for an
  ///   observation that is not a number or beyond a day of travel.
  long double CalcSatPosition(short slot, const mjd& t, const mjd& tsel, const xyz& rec, xyzt& pos,
                              xyzt& vel, const gnssobs& obs, short warn);

  GLNbEphHeader rhead;        ///< header of the file
  GLNbEphData rdata;          ///< records of the file
  int nsatall = 0;            ///< records
  long double Relativity = 0; ///< [s] last 2 (r v)/c2
  xyz ps;                     ///< [m] receiver in the Earth-fixed frame of the last emission epoch

private:
  /// A record and the epoch of its state, for the passes of one evaluation.
  struct Orbit {
    long k;             ///< record
    mjd epoch;          ///< of the state
    long double days;   ///< the same in decimal days
    int direction = 0;  ///< of the integration begun; 0: none
    long double dt = 0; ///< [s] from the epoch of the state to the last one evaluated
  };

  void CountNav(LineSource& source);
  void ReadNav(LineSource& source);
  long GetDataIndex(short slot, const mjd& tsel) const;
  Orbit OrbitOf(long k) const;
  void FindPosition(const mjd& t, Orbit& orbit, short warn, GLNTrack::State& y);
  GLNTrack& TrackOf(short slot);
  GLNTrack::Start StartOf(const Orbit& orbit) const;
  void Complete(const Orbit& orbit, GLNTrack::State& y, xyzt& pos, xyzt& vel);
  static void DiffEqTwoBody(const matrix<long double>& y, long double GM, long double omega,
                            long double aE, long double C20, long double ax, long double ay,
                            long double az, matrix<long double>& dy);
  void WarnOfAge(short slot, const mjd& t, long double dt) const;
  static void PrintParameter(const char* name, long double value);
  [[noreturn]] static void GLNbEphError(const char* text);
  static void GLNbEphWarning(const char* text);

  char navig[256] = "";          ///< file name
  long double diffinterval = 30; ///< [s] integration step
  // Constants of PZ-90 as double precision holds them.
  long double GMz = 3.9860044e14;   ///< [m3/s2] gravitational constant of the Earth
  long double OMEGAz = 7.292115e-5; ///< [rad/s] Earth rotation
  long double aE = 6378136.0;       ///< [m] equatorial radius of the Earth
  long double C20 = -1.08263e-3;    ///< second zonal harmonic, negative
  xyzt p0;                          ///< [m], [s] satellite of the last evaluation
  xyzt v0;                          ///< [m/s] its velocity
  mjd ephr;                         ///< epoch of the last evaluation
  std::array<GLNTrack, 32> tracks;  ///< last orbits, by slot

  friend struct GLNbEphPeer;
};

#endif
