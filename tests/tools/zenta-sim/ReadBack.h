#ifndef ZENTA_SIM_READBACK_H
#define ZENTA_SIM_READBACK_H

#include "GNSS/DCB.h"
#include "GNSS/GLNbEph.h"
#include "GNSS/GPSbEph.h"
#include "GNSS/RINEX.h"
#include "GNSS/SatAzimuthZenit.h"
#include "MadeSet.h"
#include <cmath>
#include <map>
#include <memory>
#include <optional>

/// One satellite at one epoch of a set as a user without the truth has it: read by the program's
/// readers and corrected by formulas written out here.
struct Corrected {
  short sat = 0;
  long epoch = 0;
  double elevation = 0, azimuth = 0; ///< [rad]
  std::optional<double> p1c1, p2c1;  ///< [m]
  std::optional<double> l4;          ///< [m] wind-up still in it
  double ionoFactor = 0;             ///< (alpha2 - alpha1) / cos z: P2-C1 over the vertical delay
};

/// A simulated set, read back.
class ReadBack {
public:
  explicit ReadBack(const MadeSet& set)
      : data(header), file_(header, data), truth_(set.Truth()), scenario_(set.Scenario()) {
    file_.SetFile(set.File("observations").c_str());
    file_.ReadFile();
    gps_.SetFile(set.File("gps_navigation").c_str());
    gps_.ReadFile();
    glonass_.SetFile(set.File("glonass_navigation").c_str());
    glonass_.ReadFile();
    ReadBiases(set);
    grs80_.Set(0);
    antenna_ = Antenna();
  }

  /// All records, epoch by epoch.
  std::vector<Corrected> Records() {
    std::vector<Corrected> all;
    long record = 0;
    for (long i = 0; i < data.nepochall; ++i)
      for (short k = 0; k < data.nsat(i); ++k, ++record) all.push_back(Record(i, record));
    return all;
  }

  RINEXHeader header;
  RINEXData data;

private:
  void ReadBiases(const MadeSet& set) {
    if (!scenario_.withP1P2) return;
    p1p2_.emplace();
    p1p2_->SetFile(set.File("p1p2").c_str());
    p1p2_->ReadFile();
    p1c1_.emplace();
    p1c1_->SetFile(set.File("p1c1").c_str());
    p1c1_->ReadFile();
  }

  /// The header's marker with the antenna above it, along the normal of the ellipsoid.
  xyz Antenna() const {
    const double f = scenario_.latitude * M_PI / 180, l = scenario_.longitude * M_PI / 180;
    const long double up = header.Dp.GetU();
    return header.X0 +
           xyz(up * std::cos(f) * std::cos(l), up * std::cos(f) * std::sin(l), up * std::sin(f));
  }

  /// Corrections [m] of C1 and P2: the P1-P2 bias D moves P1 by k2 D and P2 by k1 D off the
  /// ionosphere-free clock; P1-C1 makes a P1 of C1, and of a cross-correlated P2.
  void Correct(short sat, double& c1, double& p2) {
    const double f1 = sat < 100 ? 1575.42 : 9, f2 = sat < 100 ? 1227.6 : 7;
    const double k2 = f2 * f2 / (f1 * f1 - f2 * f2), k1 = 1 + k2;
    const double c = 299792458;
    if (!p1p2_) {
      // Without the file the group delay of GPS tells the bias seen from L1.
      const double tgd = sat < 100 ? GroupDelay(sat) : 0;
      c1 = -c * tgd;
      p2 = -c * tgd * f1 * f1 / (f2 * f2);
      return;
    }
    const double D = c * static_cast<double>(p1p2_->GetDCBVAL(sat));
    const double E = c * static_cast<double>(p1c1_->GetDCBVAL(sat));
    c1 = k2 * D + (scenario_.tracking != sim::Tracking::kP1P2 ? E : 0);
    p2 = k1 * D + (scenario_.tracking == sim::Tracking::kC1X2 ? E : 0);
  }

  double GroupDelay(short sat) {
    for (long k = 0; k < gps_.gdata.sat.NRow(); ++k)
      if (gps_.gdata.sat(k) == sat) return static_cast<double>(gps_.gdata.data(k, 25));
    return 0;
  }

  Corrected Record(long i, long record) {
    Corrected r;
    r.sat = data.sat(record);
    r.epoch = i;
    Look(r, i);
    double dc1 = 0, dp2 = 0;
    Correct(r.sat, dc1, dp2);
    const auto value = [&](const matrix<gnssobs>& table) {
      return static_cast<double>(table(record).GetObs());
    };
    if (header.iC1 && header.iP1) r.p1c1 = value(data.P1) - (value(data.C1) + dc1);
    if (header.iC1 && header.iP2) r.p2c1 = value(data.P2) + dp2 - (value(data.C1) + dc1);
    double f1 = 1575.42e6, f2 = 1227.6e6;
    if (r.sat > 100) {
      const double k = Channel(r.sat);
      f1 = 1602e6 + 562500 * k;
      f2 = 1246e6 + 437500 * k;
    }
    const double c = 299792458;
    if (header.iL1 && header.iL2) r.l4 = c / f1 * value(data.L1) - c / f2 * value(data.L2);
    const double z = std::asin(6371.0 / 6821 * std::cos(r.elevation));
    r.ionoFactor = (std::pow(1575.42e6 / f2, 2) - std::pow(1575.42e6 / f1, 2)) / std::cos(z);
    return r;
  }

  double Channel(short sat) {
    for (long k = 0; k < glonass_.rdata.sat.NRow(); ++k)
      if (glonass_.rdata.sat(k) == sat - 100)
        return static_cast<double>(glonass_.rdata.data(k, 10));
    return 0;
  }

  void Look(Corrected& r, long i) {
    xyzt position, velocity;
    long double tgd = 0;
    const mjd t = data.epoch(i);
    if (r.sat > 100)
      glonass_.CalcSatPosition(static_cast<short>(r.sat - 100), t, t, antenna_, position, velocity,
                               0);
    else
      gps_.CalcSatPosition(static_cast<unsigned short>(r.sat), t, t, antenna_, position, &tgd, 0,
                           0);
    long double elevation = 0, azimuth = 0;
    SatelliteAzimuthElevation(antenna_, position, grs80_, &elevation, &azimuth);
    r.elevation = static_cast<double>(elevation);
    r.azimuth = static_cast<double>(azimuth);
  }

  RINEX file_;
  nlohmann::json truth_;
  sim::Scenario scenario_;
  GPSbEph gps_;
  GLNbEph glonass_;
  std::optional<DCB> p1p2_, p1c1_;
  elipsoid grs80_;
  xyz antenna_;
};

#endif
