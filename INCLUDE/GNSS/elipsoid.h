#ifndef GNSS_ELIPSOID_H
#define GNSS_ELIPSOID_H

/// An ellipsoid of revolution by its semi-major axis and flattening. Both are 0 until Set.
class elipsoid {
public:
  elipsoid() = default;

  /// Takes the ellipsoid of \p code:
  ///
  /// | code | ellipsoid   | a [m]       | 1/f           | source                   |
  /// |------|-------------|-------------|---------------|--------------------------|
  /// | 0    | GRS80       | 6378137     | 298.257222101 | Moritz 1980 (GPS here)   |
  /// | 1    | WGS84       | 6378137     | 298.257223563 | NIMA TR8350.2            |
  /// | 2    | PZ-90       | 6378136     | 298.257839303 | GLONASS ICD              |
  /// | 3    | Bessel 1841 | 6377397.155 | 299.1528128   |                          |
  /// | 4    | sphere      | 6371000     | (f = 0)       |                          |
  ///
  /// The flattening is the double-precision reciprocal. Any other code is the program error
  /// "Improper ELLIPSOID setting!", which ends the program.
  void Set(int code);

  long double GetA() const { return a; } ///< [m] semi-major axis
  long double GetF() const { return f; } ///< flattening (a - b) / a
  long double GetE() const;              ///< first eccentricity sqrt(2 f - f2)
  long double GetESQR() const;           ///< first eccentricity squared
  long double GetB() const;              ///< [m] semi-minor axis a (1 - f)
  long double GetE2() const;             ///< second eccentricity sqrt(a2 - b2) / b
  long double GetF2() const;             ///< second flattening (a - b) / b

private:
  long double a = 0; ///< [m] semi-major axis
  long double f = 0; ///< flattening
};

#endif
