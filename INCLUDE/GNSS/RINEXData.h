#ifndef GNSS_RINEXDATA_H
#define GNSS_RINEXDATA_H

#include "GNSS/RINEXHeader.h"
#include "GNSS/gnssobs.h"
#include "GNSS/mjd.h"
#include "matrix/matrix.h"

#include <iosfwd>
#include <vector>

/// A stretch of one satellite's phase observations without a cycle slip.
struct PhaseArc {
  short sat = 0;        ///< satellite number
  long firstEpoch = 0;  ///< index of the first epoch
  long firstRecord = 0; ///< index of the first record of that epoch (of any satellite)
  long lastEpoch = 0;   ///< index of the last epoch
  long nObs = 0;        ///< length: observations, or epochs, as the screening counts them
};

/// All observations of one RINEX 2 observation file.
///
/// A record is one satellite at one epoch. The records follow each other in the order of the
/// file, those of epoch i being the nsat(i) ones behind those of epoch i - 1; every table of
/// observations is indexed by the record. A missing observation is 0 (gnssobs::IsNull).
///
/// Satellites are numbered: GPS PRN n is n, GLONASS slot n is 100 + n, Galileo 200 + n, SBAS
/// 300 + n, Compass 400 + n.
class RINEXData {
public:
  long nepochall;            ///< epochs
  long nsatall;              ///< records
  matrix<mjd> epoch;         ///< time of each epoch, in the time system of the header
  matrix<char> flag;         ///< flag of each epoch: '0' fine, '1' power failure before it
  matrix<short> nsat;        ///< satellites of each epoch
  matrix<short> sat;         ///< satellite number of each record
  matrix<short> satList;     ///< numbers of all satellites in the file, ascending
  char AmbFile[512];         ///< arc file of the screening
  matrix<long double> TCorr; ///< receiver clock offset of each epoch [s], with IfTimeCorr
  bool IfTimeCorr;           ///< the epoch lines carry a receiver clock offset

  /// Observations of each record: C and P [m], L [cycles]. Tables of types that the header
  /// does not list are 0 x 0; C1 is a copy of P1 where the file has P1 alone.
  matrix<gnssobs> C1, P1, P2, L1, L2, C5, L5, C2;
  /// Doppler [Hz] and signal strength [receiver's unit].
  matrix<gnssobsshort> D1, D2, S1, S2, S5;
  /// Combinations of each record [m], 0 x 0 until formed.
  matrix<gnssobs> PC1, PC3, PP3, L3, L4, MW, PC4, PP4, CL1, CLI;

  matrix<short> IsEpochOK; ///< status of each record
  long NBadEphSat;         ///< satellites without a usable orbit
  long NBadEphObs;         ///< records without a usable orbit
  long NOKEph;             ///< records with an orbit
  RINEXHeader& rhead;      ///< header of the same file
  mjd obslast;             ///< last epoch read
  long istart;             ///< first epoch that the output writes
  long iend;               ///< epoch behind the last one that the output writes
  long satstart;           ///< first record of epoch istart
  long nComment;           ///< lines between the epochs that open none

  /// What the last screening wrote to the arc file, in the same order: the arcs in memory,
  /// for who follows the screening in the same run. Empty after a reset.
  std::vector<PhaseArc> arcs;

  explicit RINEXData(RINEXHeader& header);
  /// Empties the store.
  void RINEXDataReset();

  /// Announces the numbers of epochs and records, which SetData() sizes the tables for.
  void SetNRecords(unsigned long nepoch, unsigned long nobs);
  /// Announces the receiver clock offsets.
  void SetTimeCorr(bool timeCorr);
  /// Names the arc file; a name of more than 511 characters is cut.
  void SetAmbFile(const char* name);
  /// Sizes the tables for what was announced and the types that the header lists. No epoch,
  /// or no record, is an error that ends the program.
  void SetData();

  long GetNEpoch() const { return nepochall; }
  long GetNObs() const { return nsatall; }
  long GetNSat() const { return satList.NRow(); }         ///< distinct satellites
  short GetSat(long record) const { return sat(record); } ///< satellite number of a record
  mjd GetMJD(long i) const { return epoch(i); }           ///< time of epoch i
  /// At least a tenth of the records are of satellites up to 99.
  bool HasGPSObs() const;
  /// At least a tenth of the records are of satellites 101 to 199.
  bool HasGLONASSObs() const;

  /// Prints a warning to standard output.
  void RINEXDataWarning(const char* text) const;
  /// Prints an error to standard output and ends the program with status 1.
  [[noreturn]] void RINEXDataError(const char* text) const;

  /// Formation of combinations (RINEXDataLC.cpp).
  ///
  /// Each forms one table from those named, when the header lists their types, and sets the
  /// header's flag; otherwise it does nothing. A record that misses an input gets 0. They set
  /// the wavelengths (SetLC_L3 the ionosphere-free coefficients too) of GLC satellite by
  /// satellite: GPS below 100, GLONASS 100 to 199; further satellites are formed with what
  /// the record before left there.
  void SetLC_CLI(); ///< (C1 + L1) / 2
  void SetLC_CL1(); ///< C1 - L1
  void SetLC_PC1(); ///< P1 - C1
  void SetLC_PP3(); ///< ionosphere-free P1, P2; GPS with the coefficients that GLC holds
  void SetLC_PC3(); ///< the same of C1, P2
  void SetLC_L3();  ///< ionosphere-free L1, L2
  void SetLC_PC4(); ///< P2 - C1
  void SetLC_PP4(); ///< P2 - P1
  void SetLC_L4();  ///< L1 - L2
  /// Melbourne-Wuebbena of L1, L2, P2 and C1 (\p useC1) or P1. Clears the header's flag where
  /// a type is missing. The lane coefficients are those of GPS for every satellite.
  void SetLC_MW(bool useC1);

  /// Moves the epochs onto the grid of the header's interval, and C1, P1, P2 and C5 by the
  /// light travel of the same time. Without an interval (0) nothing moves.
  void Corr4ClockError();
  /// Puts the whole-millisecond jumps of the receiver clock that the code shows into L1, L2.
  ///
  /// The size of a jump is that of the last satellite compared, without its sign; from there on
  /// every epoch is moved by it. As each moved epoch is then compared with one that is not yet,
  /// the epochs behind a jump count as jumps too. At most 100 satellites are compared; those
  /// without a wavelength are neither compared nor moved. Needs C1 and L1.
  /// \param njumps  epochs at which the test found one (out)
  void CorrMSJumps(long& njumps);

  /// Screening of phase for cycle slips (RINEXDataScreen.cpp).
  ///
  /// Each writes the arcs it finds to the file AmbFile and to `arcs`, satellite by satellite
  /// in the order of satList. \p elev holds the elevation of each record, in the unit of
  /// \p cutoff; records at or below the cut-off are not used. Arcs shorter than \p minLength
  /// are dropped; \p nArcs returns how many were written. Without the screened table (a file
  /// of one frequency has no L4) ScreenCL1 and ScreenL4 find none.

  /// Arcs of code less phase on L1, cut at a gap or a step above \p slipLimit [cycles].
  void ScreenCL1(const matrix<long double>& elev, long double cutoff, long minLength,
                 long double slipLimit, long& nArcs);
  /// Arcs of L4, cut at a gap or a step above \p a [m] + \p b [m/sqrt(s)] sqrt|dt - 1 s|.
  void ScreenL4(const matrix<long double>& elev, long double cutoff, long minLength, long double a,
                long double b, long& nArcs);
  /// Arcs of L4, found by a fit to three epochs and a linear prediction from there.
  void ScreenL4Linear(const matrix<long double>& elev, long double cutoff, long minLength,
                      long double a, long double b, long& nArcs);
  /// Reads the \p nArcs arcs of the file back, cuts those in which the wide lane jumps, and
  /// writes them anew. \p limit [m] is the scatter of a sound arc, which keeps its record.
  ///
  /// A single outlier is passed over; two in a row cut, at the first when they agree within a
  /// wide-lane wavelength of GPS, else at the second. The length of the first piece of an arc is
  /// the number of its values, that of a further piece one less. Arcs that the file does not
  /// hold whole are dropped.
  /// \param nArcs  arcs in the file (in), arcs written (out)
  void ScreenMW(long double limit, long minLength, long& nArcs);

  /// From \p epoch and its first record \p rec on, finds the first usable L4 of \p sat.
  bool FirstSatObsL4(const short& sat, long& epoch, long& rec, const matrix<long double>& elev,
                     const long double& cutoff) const;
  /// Follows the usable L4 of \p sat from \p epoch on to the last epoch before a gap longer
  /// than \p maxGap [s].
  void LastSatObsL4(const short& sat, const long& epoch, const long& rec, long& lastEpoch,
                    long& lastRec, const matrix<long double>& elev, const long double& cutoff,
                    const long double& maxGap) const;
  /// Finds three epochs in a row, from \p epoch to \p lastEpoch, whose L4 lie within
  /// \p fitLimit [m] of a line and \p stepLimit [m] of each other; moves to the first of them.
  bool FindContStart(const short& sat, long& epoch, long& rec, const long& lastEpoch,
                     const long double& fitLimit, const long double& stepLimit) const;
  /// Finds the first L4 behind \p epoch that is more than \p predLimit [m] off the line
  /// through the two before it.
  bool FindCSlipL4(const short& sat, const long& epoch, const long& rec, const long& lastEpoch,
                   long& endEpoch, long& endRec, const long double& predLimit) const;
};

/// Fills the store from the data behind a header, up to the end of the stream or a line
/// longer than 99 characters.
///
/// The numbers of epochs and records must have been announced, and the header read: more of
/// either in the text ends the program with the container's report, as does a satellite
/// number that no system has. A text that ends within a satellite's lines ends the program
/// with status 1 and no message.
std::istream& operator>>(std::istream& in, RINEXData& data);

/// Writes the epochs istart to iend - 1 as RINEX 2 data.
///
/// A receiver clock offset is written behind every twelfth satellite of an epoch, so that
/// epochs of fewer satellites carry none. Types that the store has no table for are left out
/// of the line. Leaves behind ymdhmsns::PrintType = 1, gnssobsns::PrintType = 0 and
/// gnssobsshortns::PrintType = 0.
std::ostream& operator<<(std::ostream& out, const RINEXData& data);

#endif
