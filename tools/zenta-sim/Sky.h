#ifndef ZENTA_SIM_SKY_H
#define ZENTA_SIM_SKY_H

#include "GNSS/GLNbEph.h"
#include "GNSS/GNSSpEph.h"
#include "GNSS/GPSbEph.h"
#include "Vec3.h"
#include <array>
#include <string>
#include <vector>

namespace sim {

/// Where the receiving antenna stands, with its horizon.
class Observer {
public:
  /// \param position  Earth-fixed [m]; the vertical is the normal of GRS80
  explicit Observer(const xyz& position);
  /// Elevation and azimuth [rad] of an Earth-fixed point; azimuth from north over east, in
  /// [0, 2 pi).
  void Direction(const Vec3& point, double& elevation, double& azimuth) const;

  const xyz& Position() const { return position_; }
  const Vec3& Where() const { return where_; }
  const Vec3& North() const { return north_; }
  const Vec3& East() const { return east_; }
  double Latitude() const { return latitude_; }   ///< [rad] geodetic
  double Longitude() const { return longitude_; } ///< [rad]

private:
  xyz position_;
  Vec3 where_, north_, east_, up_;
  double latitude_ = 0, longitude_ = 0;
};

/// A satellite as the observer receives it.
struct Sight {
  Vec3 position;    ///< [m] at emission, Earth-fixed frame of the emission epoch
  double range = 0; ///< [m] geometric, with the turn of the Earth
  double clock = 0; ///< [s] satellite clock offset with the relativistic term
};

/// All satellites over one station during one span of time.
///
/// The navigation files are read with the classes of the program and evaluated every five
/// minutes, then interpolated with ten points: an error far below a millimetre, while a slant
/// delay of ten metres moves by a micrometre for a metre of orbit.
class Sky {
public:
  /// \param gpsNavigation, glonassNavigation  names of the files; without one the system is left
  ///   out
  /// \param first, last  span [s since midnight of day \p day0] in which Look is asked
  Sky(const std::string& gpsNavigation, const std::string& glonassNavigation,
      const Observer& observer, unsigned int day0, double first, double last);

  /// Prepares the look at \p t [s since midnight of day0].
  void SetTime(double t);
  /// The satellite at the time that was set.
  Sight Look(short sat) const;
  /// All satellite numbers, GPS first.
  const std::vector<short>& Satellites() const { return satellites_; }

private:
  static constexpr double kStep = 300;      ///< [s]
  static constexpr int kPoints = 10;        ///< nodes of an interpolation
  static constexpr int kHalf = kPoints / 2; ///< of them on either side
  using Node = std::array<double, 5>;       ///< x, y, z, range, clock
  std::vector<Node> Evaluated(short sat, const Observer& observer, unsigned int day0);

  GPSbEph gps_;
  GLNbEph glonass_;
  std::vector<short> satellites_;
  std::vector<std::vector<Node>> tracks_; ///< per satellite
  double begin_ = 0;                      ///< [s] first node
  std::size_t nodes_ = 0;
  std::size_t at_ = 0; ///< first node of the interpolation
  std::array<double, kPoints> weights_{};
};

} // namespace sim

#endif
