#ifndef GNSS_GNSSPEPH_H
#define GNSS_GNSSPEPH_H

#include "GNSS/mjd.h"
#include "GNSS/xyz.h"
#include "matrix/matrix.h"

#include <string_view>

class LineSource;
class antex;
class gnssobs;

/// Precise orbits and clocks of one SP3 file (version c layout, positions and clocks).
///
/// Life: SetFile, ReadFile once (reads the header, sizes the tables, fills them, computes the
/// Lagrange denominators), then read-only but for the working members that each evaluation
/// overwrites; one object must not be evaluated from two threads. Positions [m] are in the
/// Earth-fixed frame of the file, clock offsets [s] in dt, epochs in the time scale of the file
/// (GPS time).
///
/// The reader knows one layout: 22 header lines (5 of satellites, so 85 at most, 5 of
/// accuracies, 4 of comments) and epoch blocks of one epoch line and exactly as many lines as
/// the header lists satellites, in the order of that list, regularly spaced and without gaps.
/// Another layout (SP3-d with more header lines, velocity or correlation records between the
/// positions) is misread without notice. A file that can't be opened reads as one of 0 epochs; a
/// file that ends early leaves the rest of its tables 0, and a position of 0 is no position;
/// neither is one with a coordinate that is no number.
///
/// A satellite is one number: GPS its PRN, GLONASS 100 + slot, Galileo 200 + PRN; another system
/// letter leaves the bare number. Source: Hilla, The Extended Standard Product 3 Orbit Format
/// (SP3-c), NGS.
class GNSSpEph {
public:
  GNSSpEph() = default;
  GNSSpEph(const GNSSpEph&) = default;
  GNSSpEph& operator=(const GNSSpEph&) = default;
  ~GNSSpEph() = default;

  /// Takes the file name of at most 255 characters; a longer one ends the program.
  void SetFile(const char* name);
  /// Reads the file whole. Counts that no file of this length could hold (a negative count, far
  /// more records than the text has room for) are reported on standard output with the name of
  /// the file and end the program.
  void ReadFile();

  /// Position, clock and velocity at epoch \p t, by Lagrange interpolation over 2 nPtsPos nodes
  /// (clock: 2 nPtsTime nodes). Near the ends of the file the first or last nodes serve, and
  /// beyond them the polynomials are extrapolated; more than 900 s beyond with a warning.
  ///
  /// \param satellite  number as in the class comment
  /// \param pos  Earth-fixed position [m] and clock offset [s]
  /// \param vel  time derivative of the position [m/s], in the same rotating frame; its dt is 0
  ///
  /// PSisOK and DTisOK tell what is of use. Both are false, and \p pos and \p vel are left as
  /// they were, for a satellite that the header does not list, where a node has no position
  /// (|x| + |y| + |z| < 1 m), and with an interval of 0. DTisOK alone is false where a clock node
  /// exceeds 0.9 s; pos.dt is then no clock. A file of fewer than 2 nPtsPos epochs ends the
  /// program through the range check of the container.
  void CalcSatPosition(unsigned short satellite, const mjd& t, xyzt& pos, xyzt& vel);

  /// Position at the emission of the signal that \p rec receives at \p t.
  ///
  /// \param rec  Earth-fixed position of the receiver [m] in the frame of epoch t
  /// \param pos  satellite [m] in the Earth-fixed frame of the emission epoch; its clock offset
  ///   [s] with the relativistic correction subtracted
  /// \param vel  velocity [m/s]
  /// \returns geometric range [m], -1 when the satellite has no valid position (PSisOK is false).
  ///
  /// The travel time is iterated from 75 ms until the range moves by no more than 1e-5 m; more
  /// than ten passes are warned of and the last one stands. Sets ps and Relativity.
  long double CalcSatPosition(unsigned short satellite, const mjd& t, const xyz& rec, xyzt& pos,
                              xyzt& vel);

  /// As above, with the travel time taken from the observed range \p obs [m]: one evaluation, no
  /// relativistic correction, and the flags are left to the caller. A range that takes longer
  /// than a day is none: both flags are cleared and the result is -1.
  /// \returns geometric range [m].
  long double CalcSatPosition(unsigned short satellite, const mjd& t, const xyz& rec, xyzt& pos,
                              xyzt& vel, const gnssobs& obs);

  /// Moves every stored GPS and GLONASS position from the centre of mass to the antenna phase
  /// centre on L1, by the satellite offsets of \p atx. A satellite without offsets is warned of and
  /// stays; one of another system, and a record without a position, stay silently. Of an offset
  /// with x or y (1 mm and more together) the part across the direction to the Earth is scaled by
  /// the sine of the angle at the satellite between Earth and Sun.
  ///
  /// A verbose run prints each epoch on standard output. Selects satellites in \p atx.
  void ApplyAntennaOffset(antex& atx, bool verbose);

  /// Epochs of the header.
  int GetNEpoch() const { return nepoch; }
  /// The file has every line of every epoch that its header announces.
  bool IsWhole() const { return isWhole; }
  /// It has the epochs that an interpolation needs.
  bool HasNodes() const { return nepoch >= 2 * nPtsPos; }
  /// Satellites of the header.
  short GetNSat() const { return nsat; }
  /// Length of the list of satellites.
  long GetNSatList() const { return satList.NRow(); }
  /// Satellite number of record \p record.
  short GetSat(long record) const { return sat(record); }
  /// Satellite number \p i of the header, from 0.
  short GetSatList(long i) const { return satList(i); }
  const matrix<short>& GetSatList() const { return satList; }
  /// Position [m] and clock [s] of record \p record.
  const xyzt& GetSatPos(long record) const { return sPos(record); }
  /// Standard deviations of position [m] and clock [s] of record \p record.
  const xyzt& GetSatPosSig(long record) const { return sPosSig(record); }
  /// Base of the accuracy exponents of the positions.
  long double GetPositionBase() const { return posBase; }
  /// Base of the accuracy exponents of the clocks.
  long double GetClockBase() const { return clkBase; }
  /// Epoch of block \p k.
  const mjd& GetMJD(long k) const { return epoch(k); }
  /// Interpolates positions over 2 \p n nodes from now on; n is 1 to 100, anything else is
  /// reported on standard output and ends the program.
  void SetNInterpPoints(int n);

  // Tables. Record nsat k + i is the i-th line of epoch block k.
  matrix<short> satList;    ///< satellite numbers, in header order
  matrix<short> satListSig; ///< accuracy exponents of the header, same order
  matrix<short> sat;        ///< satellite number of each record
  matrix<mjd> epoch;        ///< epoch of each block
  matrix<xyzt> sPos;        ///< position [m] and clock [s] of each record
  matrix<xyzt> sPosSig;     ///< their standard deviations [m], [s]; 0 where the file has none

  // Results of the last evaluation.
  long double Relativity = 0; ///< [s] 2 (r v)/c2 of the last travel-time computation
  xyz ps;                     ///< [m] receiver in the Earth-fixed frame of the emission epoch
  bool DTisOK = true;         ///< the clock is valid
  bool PSisOK = true;         ///< the position is valid

private:
  /// Nodes first to last of an interpolation.
  struct Span {
    long first;
    long last;
  };

  void ReadFileHeader(LineSource& source);
  void ReadFileData(LineSource& source);
  void SetLfact();

  void CheckCounts(long satellites, long characters) const;
  void ReadRecord(std::string_view line, long record);
  void WarnOutsideFile(const mjd& t) const;
  long FindSatellite(unsigned short satellite) const;
  Span NodeSpan(int half) const;
  void HoursFromNodes(Span span, long double* tau) const;
  bool AddPositions(long index);
  void AddVelocities(long index);
  void AddClocks(long index);
  void Complete(long index, xyzt& pos, xyzt& vel);
  void LeaveAt(const mjd& t, long index, xyzt& pos, xyzt& vel);
  [[noreturn]] static void GNSSpEphError(const char* text);

  char sp3file[256] = "";               ///< file name
  char version = 0;                     ///< version letter of the file
  char flag = 0;                        ///< P: positions, V: velocities too; not tested
  int nepoch = 0;                       ///< epochs of the header
  short nsat = 0;                       ///< satellites of the header
  mjd StartEpoch;                       ///< first epoch; once read, the epoch behind the last
  long double interval = 0;             ///< [s] between epochs
  long double posBase = 0;              ///< base of the position exponents
  long double clkBase = 0;              ///< base of the clock exponents
  bool isWhole = false;                 ///< no line was missing
  int nPtsPos = 7;                      ///< half the nodes of a position
  int nPtsTime = 2;                     ///< half the nodes of a clock
  matrix<long double> Lfact;            ///< Lagrange denominators of the positions, in hours
  matrix<long double> LfactDT;          ///< Lagrange denominators of the clocks, in hours
  long double OMEGAz = 7.2921151467e-5; ///< [rad/s] Earth rotation, IS-GPS-200; the double
  xyzt p0;                              ///< position under way
  xyzt v0;                              ///< velocity under way
  mjd ephr;                             ///< epoch of the last evaluation

  friend struct GNSSpEphPeer;
};

#endif
