#ifndef GNSS_ANTEXNEW_H
#define GNSS_ANTEXNEW_H

#include "GNSS/mjd.h"
#include "GNSS/neu.h"
#include "matrix/matrix.h"

#include <string_view>

class LineSource;

/// One antenna record of an ANTEX file: phase centre offsets and variations on the two GPS and
/// the two GLONASS frequencies.
///
/// A variation table holds one value per zenith angle zen1, zen1 + dzen, ... (PVZEN, a column)
/// or one row of those per azimuth 0, dazi, ... (PVAZI). Tables of frequencies that the record
/// lacks are not set. For satellites the zenith angle is the nadir angle at the satellite.
class AntennaPCV {
public:
  /// Reads the record whose "START OF ANTENNA" line was read last, up to and including
  /// "END OF ANTENNA" or the end of the file.
  ///
  /// Of a receiver antenna with one frequency the offset and the zenith variations of G01 serve
  /// for all four frequencies, with two those of G01 for R01 and of G02 for R02; the azimuth
  /// variations are not carried over. Warned of on standard error: a frequency other than G01,
  /// G02, R01, R02 (passed over), an unknown satellite letter, a record without a type, and
  /// grid steps that make no grid which its lines could hold (its tables stay unset).
  void ReadFile(LineSource& source);

  short SatID = 0; ///< GPS PRN, GLONASS 100 + slot, Galileo 200 + PRN; 0 for a receiver antenna
  char AntennaName[21] = ""; ///< type and radome, 20 characters with their blanks
  /// 0 receiver; GPS: 1 BLOCK I, 2 II, 3 IIA, 4 IIR, 5 IIR-A, 6 IIR-B, 7 IIR-M, 8 IIF;
  /// GLONASS: 9 first generation, 10 M, 11 K, 12 K1; -1 until the type is read
  short PCVType = -1;
  double dazi = 0; ///< [deg] azimuth step; 0 where nothing depends on azimuth
  double zen1 = 0; ///< [deg] first zenith angle
  double zen2 = 0; ///< [deg] last zenith angle
  double dzen = 0; ///< [deg] zenith step
  int nZen = 0;    ///< zenith nodes
  int nAzi = 0;    ///< azimuth nodes
  int nFreq = 0;   ///< frequencies
  mjd ValidFrom{44250, 0};
  mjd ValidTo{85000, 0};
  // Phase centre offsets [m]: north, east, up of a receiver antenna; of a satellite x, y, z of its
  // body frame (z towards the Earth, y along the solar panels).
  neu PC_G01; ///< GPS L1
  neu PC_G02; ///< GPS L2
  neu PC_R01; ///< GLONASS L1
  neu PC_R02; ///< GLONASS L2
  // Phase centre variations [m] by zenith angle, and by azimuth (row) and zenith angle.
  matrix<double> PVZEN_G01;
  matrix<double> PVZEN_G02;
  matrix<double> PVZEN_R01;
  matrix<double> PVZEN_R02;
  matrix<double> PVAZI_G01;
  matrix<double> PVAZI_G02;
  matrix<double> PVAZI_R01;
  matrix<double> PVAZI_R02;

private:
  void ParseSerialType(std::string_view line);
  void ParseValid(std::string_view line, mjd& t) const;
  void ReadFrequency(std::string_view line, LineSource& source);
  void ReadPCVData(LineSource& source, neu& off, matrix<double>& zen, matrix<double>& azi);
  void CompleteFrequencies();
};

/// Antenna calibrations of one ANTEX file.
///
/// Life: SetFile, ReadFile once (counts the records, sizes the table, fills it), then select a
/// receiver antenna (SetAntenna) or a satellite (SetSatellite) and ask for its offsets and
/// variations. With nothing selected all of them are 0.
/// Source: Rothacher and Schmid, ANTEX: The Antenna Exchange Format, version 1.4.
class antex {
public:
  /// Takes the file name, 255 characters at most. A file that can't be opened ends the program:
  /// "ANTEX FILE DOES NOT EXISTS!".
  void SetFile(const char* name);
  /// Reads the file whole. A file cut short gives the records up to its end.
  void ReadFile();

  /// Selects the first record whose name occurs in \p name, which has 20 characters: type in
  /// columns 1 to 16, radome in 17 to 20. Another length ends the program; no such record is
  /// warned of on standard error and leaves nothing selected.
  void SetAntenna(const char* name);
  /// Selects the first record of satellite \p sat (numbers of AntennaPCV::SatID) that is valid
  /// at \p t, both ends included. None is warned of and leaves nothing selected.
  void SetSatellite(const short& sat, const mjd& t);
  /// Selected record, an index of AT_PCV; -1 when none is.
  int GetAtxIndex() const { return IxAnt; }
  /// The selected record is a GPS satellite of Block IIR, IIR-A, IIR-B or IIR-M.
  bool IsBlockIIR() const;

  /// Phase centre offset [m] of the selected record.
  /// \param freq  0 GPS L1, 1 GPS L2, 2 GLONASS L1, 3 GLONASS L2; another one is warned of, and
  ///   the offset is 0
  void GetAntennaOffset(neu& off, short freq) const;
  /// Phase centre variations [m] of the selected record by zenith angle, linear between nodes.
  ///
  /// \param zen  [deg] zenith angle; beyond the grid its first or last node counts
  /// \param azi  [deg] not used: the variations are those without azimuth
  /// \param g1,g2,r1,r2  GPS L1 and L2, GLONASS L1 and L2; 0 for the system that a satellite does
  ///   not belong to
  /// The fraction between two nodes is counted from zenith angle 0, not from zen1, so that it is
  /// right for grids that start at 0 only, as those of receivers and satellites do.
  void GetAntennaPCV(const double& zen, const double& azi, double& g1, double& g2, double& r1,
                     double& r2) const;

  /// Records of the file.
  int GetNAntenna() const { return nAntenna; }
  /// GPS satellite records ("BLOCK").
  int GetNGPSSat() const { return nGPSSat; }
  /// GLONASS satellite records.
  int GetNGLNSat() const { return nGLNSat; }
  /// All other records: receiver antennas, and satellites of other systems.
  int GetNRec() const { return nRec; }

  matrix<AntennaPCV> AT_PCV; ///< the records, in the order of the file

private:
  friend struct antexPeer;

  void ReadHeader(LineSource& source);
  void CheckData(LineSource& source);
  void ReadData(LineSource& source);
  void ParseRVersionType(std::string_view line);

  char antfile[256] = ""; ///< file name
  float version = 0;      ///< format version
  char satsystem = ' ';   ///< G, R, E or M for mixed
  char pvctype = ' ';     ///< A absolute or R relative values
  int nAntenna = 0;       ///< records
  int nGPSSat = 0;        ///< of GPS satellites
  int nGLNSat = 0;        ///< of GLONASS satellites
  int nRec = 0;           ///< of anything else
  int IxAnt = -1;         ///< selected record, -1 none
};

#endif
