#include "Constellation.h"
#include "GNSS/TimeConverse.h"
#include "Sun.h"
#include <cmath>

namespace sim {

// Node longitudes and arguments below hold at this day's midnight.
static const mjd kReference(55000, 0);

static double Wrapped(long double angle) {
  return static_cast<double>(std::remainder(angle, 2 * 3.14159265358979323846L));
}

// --- GPS: IS-GPS-200, table 20-IV ---------------------------------------------------------

static constexpr long double kGpsGM = 3.986005e14L;
static constexpr long double kGpsOmegaE = 7.2921151467e-5L;

namespace {

/// One satellite's motion: elements at the reference epoch and their rates.
struct GpsMotion {
  double sqrtA, e, perigee, deltaN;
  double node;        ///< longitude of the node [rad] in the Earth-fixed frame
  double meanAnomaly; ///< [rad]
  double nodeRate, inclination, inclinationRate;
  double clockBias, clockDrift; ///< [s] at the reference epoch, [s/s]
};

} // namespace

/// Angles and small terms that differ from satellite to satellite without any rule.
static double Scatter(int satellite, int k) {
  const double x = std::sin(12.9898 * satellite + 78.233 * k) * 43758.5453;
  return 2 * (x - std::floor(x)) - 1;
}

static GpsMotion MotionOf(short prn) {
  const int plane = (prn - 1) % 6;
  const int place = (prn - 1) / 6;
  const int inPlane = plane < 2 ? 6 : 5; // 32 = 6 + 6 + 5 + 5 + 5 + 5
  GpsMotion m{};
  m.sqrtA = 5153.65 + 0.05 * Scatter(prn, 1);
  m.e = 0.008 + 0.006 * Scatter(prn, 2);
  m.perigee = kPi * Scatter(prn, 3);
  m.deltaN = (4.5 + 0.5 * Scatter(prn, 4)) * 1e-9;
  m.node = (60 * plane + 2 * Scatter(prn, 5)) * kDegree;
  const double argument = (360.0 * place / inPlane + 25 * plane + 6 * Scatter(prn, 6)) * kDegree;
  m.meanAnomaly = argument - m.perigee;
  m.nodeRate = (-8 + 0.3 * Scatter(prn, 7)) * 1e-9;
  m.inclination = (55 + Scatter(prn, 8)) * kDegree;
  m.inclinationRate = 1e-10 * Scatter(prn, 9);
  m.clockBias = 3e-4 * Scatter(prn, 10);
  m.clockDrift = 4e-13 * Scatter(prn, 11);
  return m;
}

static GpsRecord RecordAt(short prn, const GpsMotion& m, const mjd& toe, double groupDelay) {
  const long double dt = toe - kReference;
  const long double A = static_cast<long double>(m.sqrtA) * m.sqrtA;
  const long double n = std::sqrt(kGpsGM / A) / A + m.deltaN;
  const GPSws week = mjd2GPSws(toe);
  const double toeOfWeek = static_cast<double>(week.GetSecond());
  GpsRecord r;
  r.number = prn;
  r.epoch = toe;
  const double iode = std::fmod(toeOfWeek / 7200, 256);
  // OMEGA0 is counted from the week's begin: the longitude of the node at toe plus the turn of
  // the Earth since then.
  const double omega0 =
      Wrapped(m.node + (m.nodeRate - kGpsOmegaE) * dt + kGpsOmegaE * week.GetSecond());
  r.values = {static_cast<double>(m.clockBias + m.clockDrift * dt),
              m.clockDrift,
              0,
              iode,
              40 + 60 * Scatter(prn, 20), // Crs
              m.deltaN,
              Wrapped(m.meanAnomaly + n * dt),
              2e-6 * Scatter(prn, 21), // Cuc
              m.e,
              6e-6 * Scatter(prn, 22), // Cus
              m.sqrtA,
              toeOfWeek,
              1e-7 * Scatter(prn, 23), // Cic
              omega0,
              1e-7 * Scatter(prn, 24), // Cis
              static_cast<double>(m.inclination + m.inclinationRate * dt),
              220 + 100 * Scatter(prn, 25), // Crc
              m.perigee,
              m.nodeRate,
              m.inclinationRate,
              1,
              static_cast<double>(week.GetWeek()),
              0,
              2,
              0,
              groupDelay,
              iode,
              std::max(0.0, toeOfWeek - 7200),
              4};
  return r;
}

std::vector<GpsRecord> GpsRecords(const mjd& first, const mjd& last,
                                  const std::array<double, kGpsSatellites>& groupDelays) {
  std::vector<GpsRecord> records;
  for (mjd toe = first; toe <= last; toe += 7200.0L)
    for (short prn = 1; prn <= kGpsSatellites; ++prn)
      records.push_back(
          RecordAt(prn, MotionOf(prn), toe, groupDelays[static_cast<std::size_t>(prn - 1)]));
  return records;
}

// --- GLONASS: ICD 5.1, appendix 3 ---------------------------------------------------------

static constexpr double kPzGM = 3.9860044e14;
static constexpr double kPzOmegaE = 7.292115e-5;
static constexpr double kPzRadius = 6378136.0;
static constexpr double kPzC20 = -1.08263e-3;

namespace {

struct State {
  Vec3 position; ///< [m]
  Vec3 velocity; ///< [m/s] in the rotating frame
};

} // namespace

/// Acceleration in the Earth-fixed frame, Coriolis and centrifugal terms included.
static Vec3 Acceleration(const State& s, const Vec3& pull) {
  const Vec3& p = s.position;
  const double r = Length(p);
  const double central = -kPzGM / (r * r * r);
  const double flat = 1.5 * kPzC20 * kPzGM * kPzRadius * kPzRadius / std::pow(r, 5);
  const double z2 = 5 * p.z * p.z / (r * r);
  const double w = kPzOmegaE;
  return {p.x * (central + flat * (1 - z2) + w * w) + 2 * w * s.velocity.y + pull.x,
          p.y * (central + flat * (1 - z2) + w * w) - 2 * w * s.velocity.x + pull.y,
          p.z * (central + flat * (3 - z2)) + pull.z};
}

static State Moved(const State& s, const State& rate, double h) {
  return {s.position + h * rate.position, s.velocity + h * rate.velocity};
}

/// One Runge-Kutta step of \p h [s].
static State Stepped(const State& s, const Vec3& pull, double h) {
  const auto rate = [&](const State& at) { return State{at.velocity, Acceleration(at, pull)}; };
  const State k1 = rate(s);
  const State k2 = rate(Moved(s, k1, h / 2));
  const State k3 = rate(Moved(s, k2, h / 2));
  const State k4 = rate(Moved(s, k3, h));
  State result = Moved(s, k1, h / 6);
  result = Moved(result, k2, h / 3);
  result = Moved(result, k3, h / 3);
  return Moved(result, k4, h / 6);
}

/// Quarter of an hour in steps of half a minute.
static State QuarterLater(State s, const Vec3& pull) {
  for (int step = 0; step < 30; ++step) s = Stepped(s, pull, 30);
  return s;
}

/// Direct and indirect pull [m/s2] of a body of gravity \p GM at \p body on a satellite.
static Vec3 PullOf(const Vec3& body, double GM, const Vec3& satellite) {
  const Vec3 to = body - satellite;
  return (GM / std::pow(Length(to), 3)) * to - (GM / std::pow(Length(body), 3)) * body;
}

/// Pull of Sun and Moon, in the steps in which the message transmits it (2^-30 km/s2).
static Vec3 LuniSolarPull(const mjd& t, const Vec3& satellite) {
  const Vec3 pull = PullOf(SunPosition(t), 1.32712440018e20, satellite) +
                    PullOf(MoonPosition(t), 4.9028695e12, satellite);
  constexpr double kStep = 0x1p-30 * 1e3;
  return {kStep * std::round(pull.x / kStep), kStep * std::round(pull.y / kStep),
          kStep * std::round(pull.z / kStep)};
}

/// Circular orbit of \p slot at \p t.
static State GlonassStart(short slot, const mjd& t) {
  const int plane = (slot - 1) / 8;
  const int place = (slot - 1) % 8;
  const double a = 25508e3 + 2e3 * Scatter(slot, 30);
  const double n = std::sqrt(kPzGM / (a * a * a));
  const double i = (64.8 + 0.3 * Scatter(slot, 31)) * kDegree;
  const long double dt = t - kReference;
  const double node = Wrapped((120.0L * plane + 10) * kDegree - kPzOmegaE * dt);
  const double u = Wrapped((45.0L * place + 15.0L * plane) * kDegree + n * dt);
  const Vec3 along = {std::cos(u), std::sin(u) * std::cos(i), std::sin(u) * std::sin(i)};
  const Vec3 across = {-std::sin(u), std::cos(u) * std::cos(i), std::cos(u) * std::sin(i)};
  const Vec3 position = TurnedZ(a * along, node);
  const Vec3 inertial = TurnedZ(a * n * across, node);
  return {position, inertial - Cross({0, 0, kPzOmegaE}, position)};
}

int GlonassChannel(short slot) {
  static constexpr std::array<int, kGlonassSatellites> channels = {
      1, -4, 5, 6, 1, -4, 5, 6, -2, -7, 0, -1, -2, -7, 0, -1, 4, -3, 3, 2, 4, -3, 3, 2};
  return channels[static_cast<std::size_t>(slot - 1)];
}

static GlonassRecord RecordOf(short slot, const mjd& utc, const State& s, const Vec3& pull) {
  GlonassRecord r;
  r.number = slot;
  r.epoch = utc;
  constexpr double km = 1e-3;
  r.values = {1e-4 * Scatter(slot, 32),
              0,
              static_cast<double>(utc.GetSecond()),
              km * s.position.x,
              km * s.velocity.x,
              km * pull.x,
              0,
              km * s.position.y,
              km * s.velocity.y,
              km * pull.y,
              static_cast<double>(GlonassChannel(slot)),
              km * s.position.z,
              km * s.velocity.z,
              km * pull.z,
              0};
  return r;
}

/// The last of the record instants, a quarter to or past an hour of UTC, that is before \p gps.
static mjd RecordInstantBefore(const mjd& gps) {
  mjd utc = gps;
  utc += -static_cast<long double>(LeapSecond(gps));
  mjd instant(utc.GetMJDay(), 0);
  instant += 900.0L + 1800.0L * std::floor((utc.GetSecond() - 900.0L) / 1800.0L);
  return instant;
}

namespace {

/// A satellite at the instant of a record, with the pull that the record transmits.
struct Transmitted {
  State state;
  Vec3 pull;
};

} // namespace

/// The next record's, half an hour later: the first half of the way with the pull of \p from, the
/// second with its own, as a user changes from one record to the other.
static Transmitted NextRecord(const Transmitted& from, const mjd& next) {
  const State between = QuarterLater(from.state, from.pull);
  const Vec3 pull = LuniSolarPull(next, QuarterLater(between, from.pull).position);
  return {QuarterLater(between, pull), pull};
}

std::vector<GlonassRecord> GlonassRecords(const mjd& first, const mjd& last) {
  const mjd start = RecordInstantBefore(first);
  std::vector<Transmitted> satellites;
  for (short slot = 1; slot <= kGlonassSatellites; ++slot) {
    const State state = GlonassStart(slot, start);
    satellites.push_back({state, LuniSolarPull(start, state.position)});
  }
  std::vector<GlonassRecord> records;
  for (mjd utc = start; utc - last < 1800.0L; utc += 1800.0L) {
    mjd next = utc;
    next += 1800.0L + LeapSecond(utc);
    for (short slot = 1; slot <= kGlonassSatellites; ++slot) {
      Transmitted& satellite = satellites[static_cast<std::size_t>(slot - 1)];
      records.push_back(RecordOf(slot, utc, satellite.state, satellite.pull));
      satellite = NextRecord(satellite, next);
    }
  }
  return records;
}

} // namespace sim
