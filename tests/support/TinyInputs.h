#ifndef SUPPORT_TINYINPUTS_H
#define SUPPORT_TINYINPUTS_H

#include "support/Files.h"
#include "support/NavText.h"
#include "support/RINEXText.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

/// A small complete set of input files with a known truth, for tests of the whole program.
///
/// One receiver in the middle latitudes, half an hour of 2011-10-10 in steps of 30 s, five GPS
/// and two GLONASS satellites on circles that are fixed to the Earth, so that SP3 and navigation
/// files describe the same orbits to a few metres. The truth is in the members.
class TinyInputs {
public:
  static constexpr unsigned kDay = 55844;
  static constexpr int kEpochs = 60;
  static constexpr double kInterval = 30;
  static constexpr double kFirst = 3600; ///< [s] of the day
  static constexpr const char* kReceiver = "TINY RECEIVER";
  static constexpr const char* kMarker = "TINY";

  double receiverP1C1 = 1.25; ///< [m] of the receiver, GPS
  double receiverP2C1 = -2.5; ///< [m] of the receiver, GPS
  double delay = 3;           ///< [m] vertical, GPS L1, at the first epoch
  double rate = 0.6;          ///< [m/h]
  double noise = 0;           ///< [m] largest of a pattern on the codes
  int epochs = kEpochs;       ///< of the observation file
  std::vector<short> satellites = {1, 5, 9, 13, 21, 103, 114};

  std::string Observations() const {
    using namespace rinextext;
    char line[128];
    const Vector r = Receiver();
    std::string text =
        Line("     2.11           OBSERVATION DATA    M (MIXED)", "RINEX VERSION / TYPE");
    text += Line(kMarker, "MARKER NAME");
    text += Line(std::string(20, ' ') + kReceiver, "REC # / TYPE / VERS");
    std::snprintf(line, sizeof line, "%14.4f%14.4f%14.4f", r[0], r[1], r[2]);
    text += Line(line, "APPROX POSITION XYZ");
    text += Line("        0.0000        0.0000        0.0000", "ANTENNA: DELTA H/E/N");
    text += Types({"C1", "P1", "P2", "L1", "L2"});
    text += Line("    30.000", "INTERVAL");
    text += Line("  2011    10    10     1     0    0.0000000     GPS", "TIME OF FIRST OBS");
    text += End();
    for (int i = 0; i < epochs; ++i) text += ObservationEpoch(i);
    return text;
  }

  /// Epoch line and observation lines of epoch \p i.
  std::string ObservationEpoch(int i) const {
    using namespace rinextext;
    std::string list;
    for (const short sat : satellites) list += Name(sat);
    const double t = kFirst + kInterval * i;
    std::string text = Epoch(t, static_cast<int>(satellites.size()), list);
    for (const short sat : satellites) {
      const double code = Distance(Position(sat, t), Receiver());
      const double ion = Slant(sat, t) * (delay + rate * (t - kFirst) / 3600);
      const bool gps = sat < 100;
      const double bump = noise * ((7 * i + 3 * sat) % 5 - 2) / 2;
      const std::array<double, 2> lambda = Wavelengths(sat);
      const double ambiguity = sat % 10;
      text += Field(code) + Field(code + (gps ? receiverP1C1 : 0) + bump) +
              Field(code + (gps ? receiverP2C1 : 0) + ion - bump) + Field(code / lambda[0]) +
              Field((code - ion - ambiguity) / lambda[1]) + "\n";
    }
    return text;
  }

  /// SP3 file of both systems from midnight to six.
  std::string PreciseOrbits() const {
    constexpr int kNodes = 25;
    char line[128];
    std::string text;
    std::snprintf(line, sizeof line, "#cP2011 10 10  0  0  0.00000000 %7d ORBIT IGS08 HLM  IGS\n",
                  kNodes);
    text += line;
    std::snprintf(line, sizeof line, "## 1657  86400.00000000   900.00000000 %5u 0.0000000000000\n",
                  kDay);
    text += line;
    for (int row = 0; row < 5; ++row) {
      std::snprintf(line, sizeof line, "+  %3zu   ", satellites.size());
      text += row == 0 ? line : "+        ";
      for (std::size_t k = 0; k < 17; ++k)
        text += row == 0 && k < satellites.size() ? Name(satellites[k], '0') : "  0";
      text += "\n";
    }
    for (int row = 0; row < 5; ++row) {
      text += "++       ";
      for (int k = 0; k < 17; ++k) text += "  0";
      text += "\n";
    }
    text += "%c M  cc GPS ccc cccc cccc cccc cccc ccccc ccccc ccccc ccccc\n"
            "%c cc cc ccc ccc cccc cccc cccc cccc ccccc ccccc ccccc ccccc\n"
            "%f  1.2500000  1.025000000  0.00000000000  0.000000000000000\n"
            "%f  0.0000000  0.000000000  0.00000000000  0.000000000000000\n"
            "%i    0    0    0    0      0      0      0      0         0\n"
            "%i    0    0    0    0      0      0      0      0         0\n"
            "/* ORBITS OF THE TESTS\n/*\n/*\n/*\n";
    for (int k = 0; k < kNodes; ++k) {
      std::snprintf(line, sizeof line, "*  2011 10 10 %2d %2d  0.00000000\n", k / 4, k % 4 * 15);
      text += line;
      for (const short sat : satellites) {
        const Vector p = Position(sat, 900.0 * k);
        std::snprintf(line, sizeof line, "P%s%14.6f%14.6f%14.6f%14.6f\n", Name(sat, '0').c_str(),
                      p[0] / 1000, p[1] / 1000, p[2] / 1000, 1.0);
        text += line;
      }
    }
    return text + "EOF\n";
  }

  /// GPS broadcast orbits: one record per satellite, at two in the morning.
  std::string GpsNavigation() const {
    std::string text = HeaderLine("     2.10           NAVIGATION DATA", "RINEX VERSION / TYPE") +
                       HeaderLine("", "END OF HEADER");
    for (const short sat : satellites) {
      if (sat >= 100) continue;
      const double toe = 86400 + 7200; // Monday
      std::vector<double> v(28, 0.0);
      const Orbit o = OrbitOf(sat);
      const double a = Radius(sat);
      const double turn = 7.2921151467e-5;
      // Inclination and node of the plane of (start, along), argument at two o'clock.
      const Vector normal = Cross(o.start, o.along);
      const double inclination = std::acos(normal[2]);
      const double node = std::atan2(normal[0], -normal[1]);
      const double argument = std::atan2(o.start[2], o.along[2]);
      v[5] = Motion() - std::sqrt(3.986005e14 / a) / a; // delta n
      v[6] = argument + Motion() * (7200 - kMiddle);    // M0
      v[10] = std::sqrt(a);
      v[11] = toe;
      v[13] = node + turn * toe;
      v[15] = inclination;
      v[18] = turn; // the node stays on the Earth
      v[25] = -5e-9;
      text += NavRecord(sat, " 11 10 10  2  0  0.0", v);
    }
    return text;
  }

  /// GLONASS broadcast orbits: one record per satellite, a quarter past one (UTC is 15 s behind).
  std::string GlonassNavigation() const {
    std::string text = HeaderLine("     2.01           GLONASS NAV DATA", "RINEX VERSION / TYPE") +
                       HeaderLine("", "END OF HEADER");
    for (const short sat : satellites) {
      if (sat < 100) continue;
      const double t = kFirst + 900 + 15;
      const Vector p = Position(sat, t);
      const Vector ahead = Position(sat, t + 1);
      const Vector behind = Position(sat, t - 1);
      std::vector<double> v(15, 0.0);
      for (std::size_t axis = 0; axis < 3; ++axis) {
        v[3 + 4 * axis] = p[axis] / 1000;
        v[4 + 4 * axis] = (ahead[axis] - behind[axis]) / 2000;
      }
      v[10] = Channel(sat);
      text += NavRecord(sat - 100, " 11 10 10  1 15  0.0", v);
    }
    return text;
  }

  std::string Channels() const {
    std::string text = "# slot, from, to, channel\n";
    for (const short sat : satellites) {
      if (sat < 100) continue;
      char line[80];
      std::snprintf(line, sizeof line, "R%02d       2009 01 01 00 00 00                       %d\n",
                    sat - 100, Channel(sat));
      text += line;
    }
    return text;
  }

  /// Satellite biases, the same \p ns for all.
  std::string Biases(double ns = 1) const {
    std::string text = "CODE'S MONTHLY SOLUTION\n\nPRN / STATION NAME        VALUE (NS)  RMS (NS)\n"
                       "***   ****************    *****.***   *****.***\n";
    for (const short sat : satellites) {
      char line[80];
      std::snprintf(line, sizeof line, "%s                     %11.3f       0.010\n",
                    Name(sat, '0').c_str(), ns);
      text += line;
    }
    return text;
  }

  /// Receiver clock corrections, 0 throughout.
  std::string Clock() const {
    std::string text = "RECEIVER CLOCK\nEND OF HEADER\n";
    for (int i = 0; i < epochs; ++i) {
      char line[64];
      std::snprintf(line, sizeof line, "%5u %10.3f 0.0 0.0\n", kDay, kFirst + kInterval * i);
      text += line;
    }
    return text;
  }

  /// Code multipath of \p metres for all satellites at all epochs.
  std::string Multipath(double metres = 0) const {
    std::string text = "COMPACT2\nT_SAMP    30.0000\n";
    char line[80];
    std::snprintf(line, sizeof line, "START_TIME_MJD  %.12f\n", kDay + kFirst / 86400);
    text += line;
    for (int i = 0; i < epochs; ++i) {
      if (i == 0) {
        std::snprintf(line, sizeof line, "%2zu", satellites.size());
        text += line;
        for (const short sat : satellites) text += " " + Name(sat, '0');
        text += "\n";
      } else {
        text += "-1\n";
      }
      for (std::size_t k = 0; k < satellites.size(); ++k) {
        std::snprintf(line, sizeof line, "%8.3f  ", metres);
        text += line;
      }
      text += "\n";
    }
    return text;
  }

  /// Classes of receivers; the one of the observations is of class P1P2.
  static std::string Receivers() {
    return "RECEIVER TYPE        #FREQ  CODE  FREQ  WAVE.F.  SYST\n\n"
           "TINY RECEIVER          2     P1    L1:     1     GR\n"
           "                             P2    L2:     1\n\n";
  }

  std::string Coordinates() const {
    const Vector r = Receiver();
    char line[256];
    std::snprintf(line, sizeof line, "   1 %-20s %-60s %14.4f %14.4f %14.4f\n", kMarker, "", r[0],
                  r[1], r[2]);
    return std::string("# ID MARKER_NAME\n") + line;
  }

  /// Writes every kind of input into \p folder under the names of the members of Names.
  void WriteAll(const ScratchFolder& folder) const {
    folder.Write("obs", Observations());
    folder.Write("sp3", PreciseOrbits());
    folder.Write("gnav", GpsNavigation());
    folder.Write("rnav", GlonassNavigation());
    folder.Write("channels", Channels());
    folder.Write("p1p2", Biases());
    folder.Write("p1c1", Biases());
    folder.Write("p2c2", Biases());
    folder.Write("clock", Clock());
    folder.Write("mp1", Multipath());
    folder.Write("mp2", Multipath());
    folder.Write("receivers", Receivers());
    folder.Write("coordinates", Coordinates());
  }

  /// The slant factor (alpha2 - alpha1) / cos z of the single-layer model.
  double Slant(short sat, double t) const {
    const double z = std::asin(6371.0 / 6821.0 * std::cos(Elevation(sat, t)));
    const double f1 = 1575.42;
    const std::array<double, 2> f = Frequencies(sat);
    return (f1 * f1 / (f[1] * f[1]) - f1 * f1 / (f[0] * f[0])) / std::cos(z);
  }

private:
  using Vector = std::array<double, 3>;
  /// Unit vectors: where the satellite is in the middle of the observations, and across to it.
  struct Orbit {
    Vector start;
    Vector along;
  };
  static constexpr double kPi = 3.14159265358979323846;
  static constexpr double kMiddle = 4500; ///< [s] of the day
  static constexpr double kLatitude = 40 * kPi / 180;
  static constexpr double kLongitude = 9 * kPi / 180;

  static double Motion() { return 2 * kPi / 43200; } ///< [rad/s]
  static double Radius(short sat) { return sat < 100 ? 26560e3 : 25510e3; }
  static int Channel(short sat) { return sat % 7 - 3; }

  static std::string Name(short sat, char fill = ' ') {
    const int n = sat % 100;
    std::string name(1, sat < 100 ? 'G' : 'R');
    name += n < 10 ? fill : static_cast<char>('0' + n / 10);
    return name + static_cast<char>('0' + n % 10);
  }
  static double Dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
  }
  static Vector Cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
  }
  static Vector Unit(const Vector& a) {
    const double n = std::sqrt(Dot(a, a));
    return {a[0] / n, a[1] / n, a[2] / n};
  }
  static double Distance(const Vector& a, const Vector& b) {
    const Vector d = {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
    return std::sqrt(Dot(d, d));
  }
  static Vector Up() {
    return {std::cos(kLatitude) * std::cos(kLongitude), std::cos(kLatitude) * std::sin(kLongitude),
            std::sin(kLatitude)};
  }
  /// On the GRS80 ellipsoid.
  static Vector Receiver() {
    constexpr double a = 6378137;
    constexpr double e2 = 0.00669438002290;
    const Vector up = Up();
    const double n = a / std::sqrt(1 - e2 * up[2] * up[2]);
    return {n * up[0], n * up[1], n * (1 - e2) * up[2]};
  }
  static Orbit OrbitOf(short sat) {
    const double azimuth = sat * 1.2;
    const double elevation = (25 + sat * 17 % 60) * kPi / 180;
    const Vector up = Up();
    const Vector east = Unit(Cross({0, 0, 1}, up));
    const Vector north = Cross(up, east);
    const Vector r = Receiver();
    Vector line{};
    for (std::size_t k = 0; k < 3; ++k)
      line[k] = std::sin(elevation) * up[k] +
                std::cos(elevation) * (std::cos(azimuth) * north[k] + std::sin(azimuth) * east[k]);
    const double b = Dot(r, line);
    const double range = -b + std::sqrt(b * b + Radius(sat) * Radius(sat) - Dot(r, r));
    Orbit o;
    for (std::size_t k = 0; k < 3; ++k) o.start[k] = (r[k] + range * line[k]) / Radius(sat);
    o.along = Unit(Cross({0, 0, 1}, o.start));
    // Tilted out of the east so that the plane has a node.
    const Vector across = Cross(o.start, o.along);
    for (std::size_t k = 0; k < 3; ++k) o.along[k] = 0.8 * o.along[k] + 0.6 * across[k];
    return o;
  }
  /// [m], Earth-fixed, at \p t seconds of the day.
  static Vector Position(short sat, double t) {
    const Orbit o = OrbitOf(sat);
    const double u = Motion() * (t - kMiddle);
    Vector p{};
    for (std::size_t k = 0; k < 3; ++k)
      p[k] = Radius(sat) * (std::cos(u) * o.start[k] + std::sin(u) * o.along[k]);
    return p;
  }
  static double Elevation(short sat, double t) {
    const Vector p = Position(sat, t);
    const Vector r = Receiver();
    return std::asin(Dot(Unit({p[0] - r[0], p[1] - r[1], p[2] - r[2]}), Up()));
  }
  /// [MHz]
  static std::array<double, 2> Frequencies(short sat) {
    if (sat < 100) return {1575.42, 1227.60};
    return {1602 + 0.5625 * Channel(sat), 1246 + 0.4375 * Channel(sat)};
  }
  static std::array<double, 2> Wavelengths(short sat) {
    const std::array<double, 2> f = Frequencies(sat);
    return {299.792458 / f[0], 299.792458 / f[1]};
  }
};

#endif
