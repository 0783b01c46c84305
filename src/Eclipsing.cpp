#include "Eclipsing.h"

#include "GNSS/GNSSLinCombs.h"
#include "GNSS/g_lg.h"
#include "KorvanC.h"
#include "Progress.h"
#include "SatelliteRecords.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <optional>

namespace {

constexpr long double kPi = 3.141592653589793;
constexpr long double kMetresPerKilometre = 1000;

/// Arc cosine of a product of unit vectors, which rounding may carry beyond 1.
long double AngleOf(long double cosine) { return std::acos(std::clamp(cosine, -1.0L, 1.0L)); }

void FindSun(KorvanC& ctx) {
  const long n = ctx.rnxd.nepochall;
  ctx.posSunUnit.Resize(n, 1);
  ctx.SunMag.Resize(n, 1);
  for (long i = 0; i < n; ++i) {
    ctx.stide.SunPosition(ctx.rnxd.epoch(i), ctx.posSunUnit(i), ctx.SunMag(i));
    ctx.SunMag(i) *= kMetresPerKilometre;
  }
}

xyz SunAt(const KorvanC& ctx, long i) { return ctx.SunMag(i) * ctx.posSunUnit(i); }

/// The angle below which a satellite is eclipsed. Most are far from it, which double precision
/// tells sooner than SunEarthAngle.
class EclipseLimit {
public:
  explicit EclipseLimit(long double angle) : angle_(angle) {
    constexpr double kMargin = 1e-9; // of the squared cosine, by far what double could err in it
    const double cosine = std::cos(static_cast<double>(angle));
    clear_ = cosine > 0 ? cosine * cosine - kMargin : -1;
  }
  bool Holds(const xyz& satellite, const xyz& sun) const {
    return !IsClear(satellite, sun) && SunEarthAngle(satellite, sun) < angle_;
  }

private:
  bool IsClear(const xyz& satellite, const xyz& sun) const {
    double product = 0, toEarth2 = 0, toSun2 = 0;
    const auto add = [&](long double satelliteAt, long double sunAt) {
      const auto earth = static_cast<double>(satelliteAt);
      const auto toSun = static_cast<double>(sunAt) - earth;
      product += earth * toSun;
      toEarth2 += earth * earth;
      toSun2 += toSun * toSun;
    };
    add(satellite.GetX(), sun.GetX());
    add(satellite.GetY(), sun.GetY());
    add(satellite.GetZ(), sun.GetZ());
    return product * product < clear_ * toEarth2 * toSun2;
  }

  long double angle_; ///< [rad]
  double clear_;      ///< squared cosine of angles that are surely larger; none where negative
};

bool IsEclipsed(KorvanC& ctx, const SatelliteRecords::Record& r, const EclipseLimit& limit) {
  xyz position;
  return ctx.positions.Locate(ctx, r.k, ctx.rnxd.epoch(r.epoch), position) &&
         limit.Holds(position, SunAt(ctx, r.epoch));
}

void RemovePhases(KorvanC& ctx, long k) {
  if (ctx.rnxh.iL1) ctx.rnxd.L1(k) = 0.0L;
  if (ctx.rnxh.iL2) ctx.rnxd.L2(k) = 0.0L;
  if (ctx.rnxh.iL4) ctx.rnxd.L4(k) = 0.0L;
}

/// \returns how many of the records lost their phases.
long RemoveEclipsed(KorvanC& ctx, std::span<const SatelliteRecords::Record> records) {
  const EclipseLimit limit(ctx.satEclipsThres);
  long count = 0;
  for (const auto& r : records) {
    if (!IsEclipsed(ctx, r, limit)) continue;
    RemovePhases(ctx, r.k);
    ++count;
  }
  return count;
}

/// The tables hold 100 satellites from the start; a file with more gets larger ones.
void AppendEclipsed(KorvanC& ctx, short sat, long count) {
  const long n = ctx.NEclipsSat;
  if (n == ctx.EclipsSat.Length()) {
    const matrix<short> sats = ctx.EclipsSat;
    const matrix<long> counts = ctx.EclipsNObs;
    ctx.EclipsSat.Resize(2 * n);
    ctx.EclipsNObs.Resize(2 * n);
    for (long j = 0; j < n; ++j) {
      ctx.EclipsSat(j) = sats(j);
      ctx.EclipsNObs(j) = counts(j);
    }
  }
  ctx.EclipsSat(n) = sat;
  ctx.EclipsNObs(n) = count;
  ++ctx.NEclipsSat;
}

/// Dipole axes of the receiver's antenna, Earth-fixed.
struct Dipoles {
  xyz north;
  xyz west;
};

Dipoles ReceiverDipoles(const KorvanC& ctx) {
  return {lg2g(neu(1, 0, 0), ctx.RecPosFCG), lg2g(neu(0, -1, 0), ctx.RecPosFCG)};
}

void CorrectArc(KorvanC& ctx, std::span<const SatelliteRecords::Record> records,
                const Dipoles& antenna) {
  std::optional<long double> previous;
  for (const auto& [e, k] : records) {
    xyz position;
    if (!ctx.positions.Locate(ctx, k, ctx.rnxd.epoch(e), position)) continue;
    long double w = WindUp(position, SunAt(ctx, e), ctx.RecPosFC, antenna.north, antenna.west);
    if (previous) w = ContinuousCycles(w, *previous);
    // GNSS_L4(w, w) with the GPS wavelengths, whatever the working coefficients hold
    if (!ctx.rnxd.L4(k).IsNull()) ctx.rnxd.L4(k) += -(GNSSc::lamb1 * w - GNSSc::lamb2 * w);
    previous = w;
  }
}

} // namespace

long double sign(long double x) {
  if (x > 0) return 1;
  return x < 0 ? -1 : 0;
}

long double SunEarthAngle(const xyz& satellite, const xyz& sun) {
  const xyz toSun = (sun - satellite).GetUnitVector(1);
  const xyz toEarth = satellite.GetUnitVector(-1);
  return AngleOf(std::fabs(toSun * toEarth));
}

long double WindUp(const xyz& satellite, const xyz& sun, const xyz& receiver, const xyz& north,
                   const xyz& west) {
  const xyz k = (satellite - receiver).GetUnitVector(1);
  const xyz zs = satellite.GetUnitVector(-1);
  const xyz es = (sun - satellite).GetUnitVector(1);
  const xyz ys = CrossP(zs, es);
  const xyz xs = CrossP(ys, zs);
  const xyz ds = xs - k * (k * xs) - CrossP(k, ys);
  const xyz dr = north - k * (k * north) + CrossP(k, west);
  // straight overhead both dipoles vanish, and so does their angle
  if (!(ds * ds > 0 && dr * dr > 0)) return 0;
  const xyz us = ds.GetUnitVector(1);
  const xyz ur = dr.GetUnitVector(1);
  return sign(k * CrossP(us, ur)) * AngleOf(us * ur) / 2 / kPi;
}

long double ContinuousCycles(long double w, long double previous) {
  const long double d = w - previous;
  return w - std::trunc(d >= 0 ? d + 0.5L : d - 0.5L);
}

void GetEclipsing(KorvanC& ctx) {
  if (!ctx.ifPhaseObs) return;
  Progress(ctx, "GetEclipsing(): SETTING ECLIPSING SEASONS FOR SATELLITES!");
  FindSun(ctx);
  std::cout << std::fixed;
  const SatelliteRecords records(ctx.rnxd);
  for (long j = 0; j < ctx.rnxd.satList.Length(); ++j) {
    const short sat = ctx.rnxd.satList(j);
    if (!IsProcessed(ctx, sat)) continue;
    const long count = RemoveEclipsed(ctx, records.Of(sat));
    if (count > 0) AppendEclipsed(ctx, sat, count);
  }
  if (ctx.verbose)
    std::cerr << "Zenta::GetEclipsing():         #Eclipsing Satellites: " << ctx.NEclipsSat << '\n';
}

void PhaseWindUp(KorvanC& ctx) {
  if (!ctx.ifPhaseObs) return;
  Progress(ctx, "PhaseWindUp(): APPLYING PHASE WIND-UP BIAS!");
  const Dipoles antenna = ReceiverDipoles(ctx);
  const SatelliteRecords records(ctx.rnxd);
  for (long j = 0; j < ctx.nAmb; ++j) {
    const short sat = ctx.AmbSat(j);
    if (!IsProcessed(ctx, sat)) continue;
    // The last epoch of an arc stays as it is.
    CorrectArc(ctx, records.Of(sat, ctx.AmbIndex(j, 0), ctx.AmbIndex(j, 2) - 1), antenna);
  }
  ctx.positions.Clear();
}

void PrintEclipsingSatellite(KorvanC& ctx) {
  if (!ctx.ifPhaseObs) return;
  constexpr const char* kRule = "  -------------------------------\n";
  std::cout << "ECLIPSING EPOCHS FOR SATELLITES:\n--------------------------------\n\n"
            << "   ID     PRN      #ECLIPSING OBS\n"
            << kRule;
  for (long i = 0; i < ctx.NEclipsSat; ++i) {
    const short sat = ctx.EclipsSat(i);
    const bool gps = sat <= 99;
    std::cout << std::setw(5) << i + 1 << std::setw(6) << (gps ? 'G' : 'R') << std::setw(2)
              << (gps ? sat : sat - 100) << std::setw(20) << ctx.EclipsNObs(i) << '\n';
  }
  std::cout << kRule << "\n\n";
}
