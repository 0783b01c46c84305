#include "Sky.h"
#include "GNSS/xyz_flh.h"
#include "Scenario.h"
#include <algorithm>

namespace sim {

static Vec3 ToVec3(const xyz& v) {
  return {static_cast<double>(v.GetX()), static_cast<double>(v.GetY()),
          static_cast<double>(v.GetZ())};
}

Observer::Observer(const xyz& position) : position_(position), where_(ToVec3(position)) {
  elipsoid grs80;
  grs80.Set(0);
  const flh geodetic = xyz2flh(position, grs80);
  latitude_ = static_cast<double>(geodetic.GetF());
  longitude_ = static_cast<double>(geodetic.GetL());
  const double sf = std::sin(latitude_), cf = std::cos(latitude_);
  const double sl = std::sin(longitude_), cl = std::cos(longitude_);
  north_ = {-sf * cl, -sf * sl, cf};
  east_ = {-sl, cl, 0};
  up_ = {cf * cl, cf * sl, sf};
}

void Observer::Direction(const Vec3& point, double& elevation, double& azimuth) const {
  const Vec3 to = point - where_;
  const double n = Dot(north_, to), e = Dot(east_, to), u = Dot(up_, to);
  elevation = std::atan2(u, std::hypot(n, e));
  azimuth = std::atan2(e, n);
  if (azimuth < 0) azimuth += 2 * kPi;
}

Sky::Sky(const std::string& gpsNavigation, const std::string& glonassNavigation,
         const Observer& observer, unsigned int day0, double first, double last) {
  if (!gpsNavigation.empty()) {
    gps_.SetFile(gpsNavigation.c_str());
    gps_.ReadFile();
    for (long k = 0; k < gps_.gdata.satList.NRow(); ++k)
      satellites_.push_back(static_cast<short>(gps_.gdata.satList(k)));
  }
  if (!glonassNavigation.empty()) {
    glonass_.SetFile(glonassNavigation.c_str());
    glonass_.ReadFile();
    for (long k = 0; k < glonass_.rdata.satList.NRow(); ++k)
      satellites_.push_back(static_cast<short>(100 + glonass_.rdata.satList(k)));
  }
  begin_ = std::floor(first / kStep - kHalf) * kStep;
  nodes_ = static_cast<std::size_t>(std::ceil((last - begin_) / kStep)) + kHalf + 1;
  for (const short sat : satellites_) tracks_.push_back(Evaluated(sat, observer, day0));
}

std::vector<Sky::Node> Sky::Evaluated(short sat, const Observer& observer, unsigned int day0) {
  std::vector<Node> track;
  track.reserve(nodes_);
  mjd t(day0, 0);
  t += static_cast<long double>(begin_);
  for (std::size_t k = 0; k < nodes_; ++k, t += static_cast<long double>(kStep)) {
    xyzt position, velocity;
    long double groupDelay = 0;
    const long double range =
        IsGlonass(sat) ? glonass_.CalcSatPosition(static_cast<short>(sat - 100), t, t,
                                                  observer.Position(), position, velocity, 0)
                       : gps_.CalcSatPosition(static_cast<unsigned short>(sat), t, t,
                                              observer.Position(), position, &groupDelay, 0, 0);
    track.push_back({static_cast<double>(position.GetX()), static_cast<double>(position.GetY()),
                     static_cast<double>(position.GetZ()), static_cast<double>(range),
                     static_cast<double>(position.GetT())});
  }
  return track;
}

void Sky::SetTime(double t) {
  const double nodes = (t - begin_) / kStep;
  const double start =
      std::clamp(std::floor(nodes) - kHalf + 1, 0.0, static_cast<double>(nodes_ - kPoints));
  at_ = static_cast<std::size_t>(start);
  const double u = nodes - start;
  for (int k = 0; k < kPoints; ++k) {
    double weight = 1; // Lagrange
    for (int m = 0; m < kPoints; ++m)
      if (m != k) weight *= (u - m) / (k - m);
    weights_[static_cast<std::size_t>(k)] = weight;
  }
}

Sight Sky::Look(short sat) const {
  const auto found = std::lower_bound(satellites_.begin(), satellites_.end(), sat);
  const auto& track = tracks_[static_cast<std::size_t>(found - satellites_.begin())];
  Node sum{};
  for (std::size_t k = 0; k < weights_.size(); ++k)
    for (std::size_t c = 0; c < sum.size(); ++c) sum[c] += weights_[k] * track[at_ + k][c];
  return {{sum[0], sum[1], sum[2]}, sum[3], sum[4]};
}

} // namespace sim
