#ifndef GNSS_GCRD_H
#define GNSS_GCRD_H

#include "GNSS/mjd.h"
#include "GNSS/xyz.h"
#include "matrix/matrix.h"

#include <fstream>
#include <string>
#include <string_view>

/// A station of a coordinate or constraint file.
struct CRDSite {
  std::string name;   ///< marker name, up to 20 characters
  std::string number; ///< marker number, up to 60 characters; may be empty
};

/// One line of a coordinate file.
struct CRDPoint {
  CRDSite site;
  xyz position; ///< [m], Earth-fixed, at the reference epoch
  xyz velocity; ///< [m/year]
  mjd epoch;    ///< reference epoch
};

/// Absolute constraint: the coordinates of a station are held within \p sigma.
struct ABSConst {
  CRDSite site;
  xyz sigma; ///< standard deviations of X, Y, Z [m]
};

/// Relative constraint: the difference of two stations is held within \p sigma.
struct RELConst {
  CRDSite from;
  CRDSite to;
  xyz sigma; ///< standard deviations of dX, dY, dZ [m]
};

/// Station coordinates with velocities and reference epoch, in a text file of fixed columns.
///
/// Lines beginning with "#" at the top are the header. Columns of a data line, from 1: 1-4
/// point number, 6-25 marker name, 27-86 marker number, X from 88, Y from 103, Z from 118 [m];
/// in a line of more than 160 characters the velocities from 133, 143, 153 [m/year], else 0; in
/// a line of 182 characters or more the reference epoch 164-182 as YYYY-MM-DD HH:MM:SS, else
/// 2005-01-01 00:00:00. The data end with the file, an empty line, a line with a blank in
/// column 4, or a line of more than 511 characters. A date that is none ends the program with
/// the report of ymdhms.
///
/// A look-up by name takes the first line whose name begins with the one looked for, so that
/// ALBH finds ALBH 40129M003 too; one by name and number takes the first of those whose number
/// is empty or equal.
class gCRD {
public:
  gCRD() = default;

  /// Takes the file name. One of more than 255 characters, or of a file that does not exist,
  /// ends the program.
  void SetFile(const char* name);

  /// Position [m] of a station, moved with its velocity from the reference epoch to \p epoch.
  /// A station that is not listed, and a file that can't be opened, give (0, 0, 0); IsSite()
  /// tells the former, and keeps its answer in the latter case.
  xyz GetCRD(const char* name, const char* number, const mjd& epoch);
  /// As above, with the velocity [m/year] in \p velocity, 0 for a station that is not listed.
  xyz GetCRD(const char* name, const char* number, const mjd& epoch, xyz& velocity);
  /// Position at the reference epoch of the first line with that name, whatever its number.
  xyz GetCRD(const char* name);
  /// The last look-up found the station.
  bool IsSite() const { return IsSiteB; }

  /// All stations of a file of this class's layout, in the order of the file. Each of these
  /// readers ends the program when no file was set; a file that can't be opened gives an empty
  /// table.
  void ReadCRDs(matrix<CRDPoint>& points) const;
  /// Absolute constraints: the layout above with the standard deviations [m] in place of X, Y
  /// and Z.
  void ReadABSConst(matrix<ABSConst>& constraints) const;
  /// Relative constraints: first station as above, second with its name in 88-107 and its
  /// number in 109-168, standard deviations [m] from 170, 185 and 200.
  void ReadRELConst(matrix<RELConst>& constraints) const;
  /// Stations to be held fixed: the first 86 columns of the layout above.
  void ReadFixedStat(matrix<CRDSite>& sites) const;

  /// Opens \p name for writing and writes the two header lines. With a file that can't be
  /// created nothing is written.
  void OpenOutputFile(const char* name);
  /// Writes a line that ReadCRDs reads back: coordinates to 0.1 mm, the epoch to the second.
  /// Points are numbered from 1; names and numbers too long for their columns are cut.
  void PrintGPoint(const char* name, const char* number, const xyz& position, const xyz& velocity,
                   const mjd& epoch);
  void CloseOutputFile();

private:
  /// Looks for the station in the file, keeps the answer in IsSiteB and gives its line in
  /// \p found. \p number null: any number. False without a match or without a file.
  bool Find(std::string_view name, const char* number, CRDPoint& found);

  char file[256] = "";
  bool IsSiteB = false;    ///< the last look-up found the station
  std::ofstream CRDOutput; ///< file that PrintGPoint writes to
  long icrd = 0;           ///< number of the last point written
};

#endif
