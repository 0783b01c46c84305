#ifndef SRC_KORVANC_H
#define SRC_KORVANC_H

#include "GNSS/ClkErr.h"
#include "GNSS/DCB.h"
#include "GNSS/GLNSat.h"
#include "GNSS/GLNbEph.h"
#include "GNSS/GNSSpEph.h"
#include "GNSS/GPSbEph.h"
#include "GNSS/RINEX.h"
#include "GNSS/RINEXData.h"
#include "GNSS/RINEXHeader.h"
#include "GNSS/RecCodeTrack.h"
#include "GNSS/SolidTide.h"
#include "GNSS/elipsoid.h"
#include "GNSS/flh.h"
#include "GNSS/gCRD.h"
#include "GNSS/neu.h"
#include "GNSS/xyz.h"
#include "SatPosition.h"
#include "SlantTable.h"
#include "matrix/matrix.h"
#include "teqc/CompactTEQC.h"

/// The run context: every input object, every setting with its default, every result.
///
/// Each stage of a run takes it by reference; the stages talk to each other through it alone.
/// The input objects belong to main, which outlives the context.
///
/// Satellites are numbered as in RINEXData: GPS 1 to 99, GLONASS 100 + slot. An "observation
/// record" is one satellite at one epoch, by its index in the observation store. Delays and
/// biases are in metres; ionospheric delays are those of the GPS L1 signal.
class KorvanC {
public:
  KorvanC(RINEXHeader& header, RINEXData& data, RINEX& file, ClkErr& clock, CompactTEQC& multipath1,
          CompactTEQC& multipath2, GPSbEph& gpsBroadcast, GLNbEph& glonassBroadcast,
          GNSSpEph& gpsPrecise, GNSSpEph& glonassPrecise, DCB& dcbP1P2, DCB& dcbP1C1, DCB& dcbP2C2,
          RecCodeTrack& codeTracking, gCRD& coordinates, GLNSat& glonassChannels,
          SolidTide& sunMoon);
  ~KorvanC() = default;
  KorvanC(const KorvanC&) = delete;
  KorvanC& operator=(const KorvanC&) = delete;

  bool GetVerbose() const { return verbose; }
  bool GetIsMP1() const { return isMP1; }
  bool GetIsMP2() const { return isMP2; }

  /// Opening banner on standard error, when verbose.
  void StartProg() const;
  /// Closing banner on standard error, when verbose.
  void EndProg() const;

  // ---- Input objects ----------------------------------------------------------------------
  RINEXHeader& rnxh;     ///< header of the observation file
  RINEXData& rnxd;       ///< observation store
  RINEX& rnx;            ///< observation file
  ClkErr& clkerr;        ///< receiver clock corrections
  CompactTEQC& mp1;      ///< multipath on C1/P1
  CompactTEQC& mp2;      ///< multipath on P2
  GPSbEph& gpsnav;       ///< GPS broadcast orbits
  GLNbEph& glnnav;       ///< GLONASS broadcast orbits
  GNSSpEph& pephG;       ///< GPS precise orbits
  GNSSpEph& pephR;       ///< GLONASS precise orbits
  DCB& p1p2;             ///< satellite biases P1-P2
  DCB& p1c1;             ///< satellite biases P1-C1
  DCB& p2c2;             ///< satellite biases P2-C2
  RecCodeTrack& rctrack; ///< code-tracking classes of receivers
  gCRD& acrd;            ///< a-priori coordinates
  GLNSat& glnfc;         ///< GLONASS frequency channels
  SolidTide& stide;      ///< Sun, Moon and tides

  elipsoid eGPS; ///< GRS80
  elipsoid eGLN; ///< PZ-90

  // ---- File names, empty where none was given ------------------------------------------------
  char rnxfile[256] = "";       ///< RINEX observations
  char gnavfile[256] = "";      ///< GPS navigation
  char rnavfile[256] = "";      ///< GLONASS navigation
  char gsp3file[256] = "";      ///< GPS SP3
  char rsp3file[256] = "";      ///< GLONASS SP3
  char dcbp1p2file[256] = "";   ///< satellite biases P1-P2
  char dcbp1c1file[256] = "";   ///< satellite biases P1-C1
  char dcbp2c2file[256] = "";   ///< satellite biases P2-C2
  char mp1file[256] = "";       ///< multipath on C1/P1
  char mp2file[256] = "";       ///< multipath on P2
  char rctrackfile[256] = "";   ///< code-tracking classes
  char aprcrdfile[256] = "";    ///< a-priori coordinates
  char glnfreqch[256] = "";     ///< GLONASS channels
  char clkfile[256] = "";       ///< receiver clock
  char resfile[256] = "";       ///< residuals, written
  char gnuplotIon[256] = "";    ///< delays by interval for GNUPlot, written
  char gnuplotIonEph[256] = ""; ///< delays by epoch for GNUPlot, written
  char gnuplotDCB[256] = "";    ///< biases for GNUPlot, written

  // ---- Flags and settings -----------------------------------------------------------------------
  bool verbose = false;    ///< progress messages on standard error
  bool iCout = false;      ///< set by -c, read by nobody
  bool isRnx = false;      ///< an observation file was named
  bool isGLNnav = false;   ///< GLONASS navigation file in use
  bool isGPSnav = false;   ///< GPS navigation file in use
  bool isGpEph = false;    ///< GPS SP3 file in use
  bool isRpEph = false;    ///< GLONASS SP3 file in use
  bool isP1P2 = false;     ///< P1-P2 bias file in use
  bool isP1C1 = false;     ///< P1-C1 bias file in use
  bool isP2C2 = false;     ///< P2-C2 bias file in use
  bool isMP1 = false;      ///< multipath file for C1/P1 in use
  bool isMP2 = false;      ///< multipath file for P2 in use
  bool isRCodTrc = false;  ///< code-tracking list in use
  bool isAprCrd = false;   ///< coordinate file in use
  bool isGLNfrch = false;  ///< GLONASS channel list in use
  bool isClkFile = false;  ///< receiver clock file in use
  bool isGPS = false;      ///< GPS satellites are processed
  bool isGLN = false;      ///< GLONASS satellites are processed
  bool ifPrintRes = false; ///< a residual file was named

  short obsP = 0; ///< weighting: 0 all equal, 1 by the squared sine of the elevation

  bool ifEstREC = false;    ///< estimate the receiver's biases
  bool ifEstGPS = false;    ///< estimate biases of GPS satellites
  bool ifEstGLN = false;    ///< estimate biases of GLONASS satellites
  bool ifEstION = false;    ///< estimate the piece-wise linear delay
  bool ifEstIONEph = false; ///< estimate the delay epoch by epoch too
  bool ifEstIGrad = false;  ///< estimate east and north gradients
  bool ifCodeObs = false;   ///< use P1-C1 and P2-C1
  bool ifPhaseObs = false;  ///< use L4
  int NIonUnkT = 0;         ///< unknowns of one ionosphere interval: 0, 2 or 4

  double WPh2Code = 100.0;           ///< weight of phase in units of that of code
  double MinElevation = 5.0;         ///< [degree]
  bool isMinElev = false;            ///< the cut-off was given
  long double ThresBlunder = 20.0L;  ///< [m] on residuals of code
  long double ThresBlunderL4 = 2.0L; ///< [m] on residuals of L4
  long double MaxfDiff = 50.0L;      ///< [m] on misclosures of P2-C1
  /// [m] on misclosures of P1-C1: a third of the default of MaxfDiff, whatever is given later
  long double MaxfDiffP1C1 = MaxfDiff / 3;
  bool isThresBlunder = false;
  bool isThresBlunderL4 = false;
  bool isMaxfDiff = false;
  bool isGNUPlotIon = false;
  bool isGNUPlotIonEph = false;
  bool isGNUPlotDCB = false;

  // ---- Receiver and geometry ------------------------------------------------------------------
  long MinObs = 5;            ///< read by nobody
  short RecCodeTrackType = 0; ///< 0 P1P2, 1 C1P2, 2 C1X2
  matrix<long double> ELV;    ///< [rad] elevation of each record
  matrix<long double> AZM;    ///< [rad] azimuth of each record, from north over east
  matrix<long double> WGHT;   ///< weight of each record
  xyz RecPosFC;               ///< [m] antenna reference point, the origin of all geometry
  xyz RecPos0;                ///< [m] marker
  xyz RecPosEcc;              ///< [m] read by nobody
  flh RecPosFCG;              ///< RecPosFC on GRS80
  flh RecPos0G;               ///< RecPos0 on GRS80
  neu RecPosEccLG;            ///< [m] marker to antenna reference point
  RecordPositions positions;  ///< what the stages before the layout of the unknowns share

  // ---- Eclipses ---------------------------------------------------------------------------------
  long double satEclipsThres; ///< [rad] smaller angles between Sun and Earth count
  matrix<short> EclipsSat;    ///< satellites with removed phases
  matrix<long> EclipsNObs;    ///< removed records of each
  long NEclipsSat = 0;        ///< rows in use of the two tables
  matrix<xyz> posSunUnit;     ///< unit vector to the Sun at each epoch, Earth-fixed
  matrix<long double> SunMag; ///< [m] distance of the Sun at each epoch

  // ---- Unknowns: layout and values ------------------------------------------------------------
  bool isxP1C1 = false;         ///< the receiver's P1-C1 bias is an unknown
  bool isxP2C1 = false;         ///< the receiver's P2-C1 bias is an unknown
  long ixP1C1 = -1;             ///< its index, -1 where it is none
  long ixP2C1 = -1;             ///< its index, -1 where it is none
  long double xP1C1 = 0;        ///< [m]
  long double xP2C1 = 0;        ///< [m]
  matrix<long double> xbSAT;    ///< [m] satellite of satList x (P1-C1, P2-C1)
  matrix<long> ixbSAT;          ///< their indices, -1 where none
  long nP1C1g = 0;              ///< GPS satellites with a P1-C1 unknown
  long nP2C1g = 0;              ///< GPS satellites with a P2-C1 unknown
  long nP1C1r = 0;              ///< GLONASS satellites with a P1-C1 unknown
  long nP2C1r = 0;              ///< GLONASS satellites with a P2-C1 unknown
  bool isxP1C1g = false;        ///< read by nobody
  bool isxP2C1g = false;        ///< read by nobody
  matrix<long double> xION;     ///< interval x (delay [m] at its first epoch, rate [m/h])
  matrix<long double> xIGRAD;   ///< interval x (east, north) gradient [m]
  long double IonoInterval = 0; ///< [s] length of one interval
  matrix<long> IonoEstInd;      ///< interval x (first epoch, last epoch)
  long iIono = 0;               ///< interval of the current epoch
  long nIono = 0;               ///< intervals
  long nIonoConst = 0;          ///< continuity constraints between them
  long nIonoUnk = 0;            ///< unknowns of all intervals
  double MaxIonGap = 601.0;     ///< [s] a longer gap in the data breaks the chain of intervals
  long MinObsAmb = 15;          ///< least observations of an L4 arc
  long nAmb = 0;                ///< L4 ambiguities
  long double ThresL40;         ///< [m] L4 screening: constant part of the limit
  long double dThresL4;         ///< [m/sqrt(s)] L4 screening: growth of the limit
  matrix<long double> xAmb;     ///< [m] ambiguities
  matrix<long> AmbIndex;        ///< ambiguity x (first epoch, its first record, last epoch, count)
  matrix<long> ixAmb;           ///< index of each ambiguity
  matrix<short> AmbSat;         ///< satellite of each ambiguity
  long NUnkDCB = 0;             ///< unknown biases
  long NUnk = 0;                ///< all unknowns

  // ---- Adjustment -------------------------------------------------------------------------------
  SlantTable slants;          ///< ionosphere coefficients of the records in use
  matrix<bool> ifOP1C1;       ///< the record's P1-C1 took part
  matrix<bool> ifOP2C1;       ///< the record's P2-C1 took part
  matrix<bool> ifOL4;         ///< the record's L4 took part
  matrix<long double> Nall;   ///< normal matrix, bordered by the constraints
  matrix<long double> tall;   ///< right-hand side
  matrix<long double> QxxAll; ///< inverse of Nall
  matrix<long double> xAll;   ///< last correction of the unknowns, then the multipliers
  matrix<long double> xNoC;   ///< solution without constraints; read by nobody
  long double vtPv = 0;       ///< weighted sum of squared misclosures
  long double s0apost = 0;    ///< a-posteriori variance of unit weight
  long double NRed = 0;       ///< redundancy
  long NObs = 0;              ///< observations used, counted on over the iterations
  long NObsOutl = 0;          ///< observations rejected
  long NObsG = 0;             ///< not counted, 0
  long NObsR = 0;             ///< not counted, 0
  long NObsOutlG = 0;         ///< not counted, 0
  long NObsOutlR = 0;         ///< not counted, 0
  long NInv = 0;              ///< inversions performed; equal matrices in a row take one
  int MaxIter = 10;           ///< iterations at most
  int IterDone = 0;           ///< iterations performed
  double IterThres = 0.005;   ///< [m] the norm of the correction ends the iteration below this
  double IterThresFin = 0;    ///< [m] norm of the last iteration's correction
  matrix<long> ObsPerUnk;     ///< observations of each unknown
};

#endif
