#include "GNSS/SolidTide.h"

#include "support/Near.h"

struct SolidTidePeer {
  static long double Geodetic(const SolidTide& s, long double geocentric) {
    long double geodetic = 0;
    s.geoc2geod(geocentric, geodetic);
    return geodetic;
  }
  static long double Geocentric(const SolidTide& s, long double geodetic) {
    long double geocentric = 0;
    s.geod2geoc(geodetic, geocentric);
    return geocentric;
  }
  static void EarthFixed(const SolidTide& s, long double ra, long double dec, const mjd& t,
                         long double& lon, long double& lat) {
    s.ECI2ECEFg(ra, dec, lon, lat, t);
  }
};

namespace {

constexpr long double kPi = 3.14159265358979323846L;
constexpr long double kDeg = kPi / 180;
constexpr long double kAU = 149597870; // [km]

struct Body {
  xyz unit;
  long double dist = 0;
};

Body Sun(const mjd& t) {
  Body b;
  SolidTide().SunPosition(t, b.unit, b.dist);
  return b;
}

Body Moon(const mjd& t) {
  Body b;
  SolidTide().MoonPosition(t, b.unit, b.dist);
  return b;
}

// [deg] back from the turning Earth to the equinox, -180 to 180
long double RightAscension(const Body& b, const mjd& t) {
  const long double ra = std::atan2(b.unit.GetY(), b.unit.GetX()) + SolidTide().GSTime(t);
  return std::remainder(ra, 2 * kPi) / kDeg;
}

long double Declination(const Body& b) { return std::asin(b.unit.GetZ()) / kDeg; }

// [deg]
long double Separation(const xyz& a, const xyz& b) {
  return std::atan2(CrossP(a, b).GetLength(), a * b) / kDeg;
}

TEST(SolidTide, SiderealTimeOfPublishedExamples) {
  const SolidTide tide;
  // Meeus, Astronomical Algorithms, examples 12.a and 12.b: 1987-04-10 0h UT, 13h10m46.3668s,
  // and 19h21m UT, 128.7378734 degrees. GPS time was 4 s ahead of UTC.
  EXPECT_TRUE(Near(tide.GSTime(mjd(46895, 4)) / kDeg, 197.693195L, 1e-6L));
  EXPECT_TRUE(Near(tide.GSTime(mjd(46895, 69660 + 4)) / kDeg, 128.7378734L, 1e-6L));
  // Vallado, Fundamentals of Astrodynamics, example 3-5: 1992-08-20 12:14 UT1; 8 s.
  EXPECT_TRUE(Near(tide.GSTime(mjd(48854, 44040 + 8)) / kDeg, 152.578787810L, 1e-6L));
}

TEST(SolidTide, SiderealTimeLiesInOneTurn) {
  const SolidTide tide;
  for (unsigned int day = 0; day < 199999; day += 997)
    for (long double s = 0; s < 86400; s += 7919) {
      const mjd t(day, s);
      EXPECT_GE(tide.GSTime(t), 0);
      EXPECT_LT(tide.GSTime(t), 2 * kPi);
      for (long double l : {-kPi, -1.0L, 0.0L, 3.0L, -700.0L}) {
        const flh p(0, l, 0);
        EXPECT_GE(tide.LSTime(t, p), 0);
        EXPECT_LT(tide.LSTime(t, p), 2 * kPi);
        const long double off = tide.LSTime(t, p) - tide.GSTime(t) - l;
        EXPECT_TRUE(Near(std::remainder(off, 2 * kPi), 0, 1e-12L));
      }
    }
}

TEST(SolidTide, SunOfPublishedExample) {
  // Meeus, example 25.a: 1992-10-13 0h, apparent place of the Sun.
  const mjd t(48908, 8);
  const Body sun = Sun(t);
  EXPECT_TRUE(Near(RightAscension(sun, t), 198.38083L - 360, 0.01L));
  EXPECT_TRUE(Near(Declination(sun), -7.78507L, 0.01L));
  EXPECT_TRUE(Near(sun.dist / kAU, 0.99766L, 1e-4L));
}

TEST(SolidTide, SunAtEquinoxAndSolsticeOfTheYear2000) {
  // 2000-03-20 07:35 and 2000-06-21 01:48 UT; GPS time was 13 s ahead of UTC.
  const mjd march(51623, 7 * 3600 + 35 * 60 + 13), june(51716, 3600 + 48 * 60 + 13);
  EXPECT_TRUE(Near(RightAscension(Sun(march), march), 0, 0.01L));
  EXPECT_TRUE(Near(Declination(Sun(march)), 0, 0.01L));
  EXPECT_TRUE(Near(RightAscension(Sun(june), june), 90, 0.01L));
  EXPECT_TRUE(Near(Declination(Sun(june)), 23.4386L, 0.01L));
}

TEST(SolidTide, SunIsOverTheMeridianNearNoon) {
  // Equation of time on 2000-11-03: true noon 16 min 26 s early, 4.11 degrees.
  const Body sun = Sun(mjd(51851, 43200 + 13));
  EXPECT_TRUE(Near(std::atan2(sun.unit.GetY(), sun.unit.GetX()) / kDeg, -4.11L, 0.03L));
}

TEST(SolidTide, SunDistanceAtPerihelionAndAphelion) {
  // 2000-01-03 05h: 0.98332 AU, 2000-07-03 24h: 1.01674 AU.
  EXPECT_TRUE(Near(Sun(mjd(51546, 18000)).dist / kAU, 0.98332L, 5e-5L));
  EXPECT_TRUE(Near(Sun(mjd(51729, 0)).dist / kAU, 1.01674L, 5e-5L));
}

TEST(SolidTide, SunAtTheEpochJ2000) {
  // T = 0: mean longitude 280.4606184, mean anomaly 357.5277233 degrees.
  const mjd t(51544, 43200 + 13);
  const Body sun = Sun(t);
  const long double M = 357.5277233L * kDeg, eps = 23.439291L * kDeg;
  const xyz celestial = sun.unit.RotateZ(SolidTide().GSTime(t)).RotateX(-eps);
  const long double longitude = std::atan2(celestial.GetY(), celestial.GetX()) / kDeg + 360;
  const long double centre = 1.914666471L * std::sin(M) + 0.019994643L * std::sin(2 * M);
  EXPECT_TRUE(Near(longitude - centre, 280.4606184L, 1e-10L));
  EXPECT_TRUE(Near(celestial.GetZ(), 0, 1e-15L)); // on the ecliptic
  EXPECT_TRUE(Near(sun.dist / kAU, 0.9833L, 1e-4L));
}

TEST(SolidTide, DirectionsAreUnitVectors) {
  for (unsigned int day = 40000; day < 70000; day += 1009) {
    const mjd t(day, 12345.678L);
    EXPECT_TRUE(Near(Sun(t).unit.GetLength(), 1, 1e-18L));
    EXPECT_TRUE(Near(Moon(t).unit.GetLength(), 1, 1e-18L));
  }
}

// Turned back to the equinox and the ecliptic of date, whose obliquity is given [deg].
struct Ecliptic {
  long double longitude; // [deg] 0 to 360
  long double latitude;  // [deg]
};
Ecliptic EclipticOf(const Body& b, const mjd& t, long double obliquity) {
  const xyz v = b.unit.RotateZ(SolidTide().GSTime(t));
  const long double c = std::cos(obliquity * kDeg);
  const long double s = std::sin(obliquity * kDeg);
  const long double longitude = std::atan2(c * v.GetY() + s * v.GetZ(), v.GetX()) / kDeg;
  return {longitude < 0 ? longitude + 360 : longitude,
          std::asin(c * v.GetZ() - s * v.GetY()) / kDeg};
}

TEST(SolidTide, EveryTermOfTheSeriesOfSunAndMoonCounts) {
  // The series of the Astronomical Almanac, summed by hand at J2000 and a tenth of a century later;
  // GPS time was ahead of UTC by 13 s and 15 s.
  const struct {
    mjd t;
    long double obliquity;
    Ecliptic moon;
    long double moonDistance; // [km]
    long double sunLongitude;
    long double sunDistance; // [AU]
  } cases[] = {{mjd(51544, 43213),
                23.439291L,
                {223.288668603347L, 5.202749416485L},
                402459.645284200L,
                280.376304014060L,
                0.983308477676459L},
               {mjd(55197, 15),
                23.43799058L,
                {103.121201565133L, 0.771270167152L},
                360059.489463266L,
                280.450072918010L,
                0.983309735861685L}};
  for (const auto& c : cases) {
    const Body moon = Moon(c.t);
    const Ecliptic moonAt = EclipticOf(moon, c.t, c.obliquity);
    EXPECT_TRUE(Near(moonAt.longitude, c.moon.longitude, 1e-9L));
    EXPECT_TRUE(Near(moonAt.latitude, c.moon.latitude, 1e-9L));
    EXPECT_TRUE(Near(moon.dist, c.moonDistance, 1e-6L));
    const Body sun = Sun(c.t);
    const Ecliptic sunAt = EclipticOf(sun, c.t, c.obliquity);
    EXPECT_TRUE(Near(sunAt.longitude, c.sunLongitude, 1e-9L));
    EXPECT_TRUE(Near(sunAt.latitude, 0, 1e-9L));
    EXPECT_TRUE(Near(sun.dist / kAU, c.sunDistance, 1e-13L));
  }
}

TEST(SolidTide, MoonOfPublishedExample) {
  // Meeus, example 47.a: 1992-04-12 0h.
  const mjd t(48724, 7);
  const Body moon = Moon(t);
  EXPECT_TRUE(Near(RightAscension(moon, t), 134.688470L, 0.3L));
  EXPECT_TRUE(Near(Declination(moon), 13.768368L, 0.3L));
  EXPECT_TRUE(Near(moon.dist, 368409.7L, 0.004L * 368409.7L));
}

TEST(SolidTide, MoonStandsOppositeTheSunInCentralLunarEclipses) {
  // Greatest eclipse, distance of the Moon's centre from the shadow axis in Earth radii (NASA
  // catalogue): 2000-07-16 13:55:35 UT 0.0302, 2018-07-27 20:21:44 UT 0.1168. A radius is 0.95
  // degrees at the Moon.
  const mjd year2000(51741, 13 * 3600 + 55 * 60 + 35), year2018(58326, 20 * 3600 + 21 * 60 + 44);
  EXPECT_LT(Separation(Moon(year2000).unit, -1 * Sun(year2000).unit), 0.03L + 0.3L);
  EXPECT_LT(Separation(Moon(year2018).unit, -1 * Sun(year2018).unit), 0.11L + 0.3L);
}

TEST(SolidTide, MoonStandsBeforeTheSunInASolarEclipse) {
  // 1999-08-11 11:03:04 UT: shadow axis 0.5062 Earth radii off the centre.
  const mjd t(51401, 11 * 3600 + 3 * 60 + 4);
  EXPECT_TRUE(Near(Separation(Moon(t).unit, Sun(t).unit), 0.5062L * 0.98L, 0.3L));
}

TEST(SolidTide, MoonDistanceStaysBetweenPerigeeAndApogee) {
  for (unsigned int day = 51544; day < 58000; ++day) {
    const long double dist = Moon(mjd(day, 0)).dist;
    EXPECT_GT(dist, 355000);
    EXPECT_LT(dist, 408000);
  }
}

// Displacement by the gradient of the tidal potential of degree 2 over gravity.

struct Attraction {
  Body body;
  long double massRatio;
};

// [m] potential of degree 2 over gravity at a point of the sphere of radius R [km]
long double Height(const Attraction& a, const xyz& unitPoint, long double R) {
  const long double c = a.body.unit * unitPoint, ratio = R / a.body.dist;
  return 1000 * R * a.massRatio * std::pow(ratio, 3) * (3 * c * c - 1) / 2;
}

xyz DisplacementByPotential(const Attraction& a, const xyz& r, long double R) {
  const long double h2 = 0.609, l2 = 0.0852, step = 1e-6L;
  xyz d = r * (h2 * Height(a, r, R));
  const xyz east = CrossP(xyz(0, 0, 1), r).GetUnitVector(1), north = CrossP(r, east);
  for (const xyz& along : {east, north}) {
    const long double slope = (Height(a, (r + along * step).GetUnitVector(1), R) -
                               Height(a, (r - along * step).GetUnitVector(1), R)) /
                              (2 * step);
    d += along * (l2 * slope);
  }
  return d;
}

TEST(SolidTide, DisplacementIsTheGradientOfTheTidalPotential) {
  const long double R = 6371.5L;
  for (unsigned int day = 55843; day < 55873; day += 3)
    for (int f = -80; f <= 80; f += 40)
      for (int l = -180; l < 180; l += 45) {
        const mjd t(day, 240.0L * (l + 181));
        const xyz r(std::cos(f * kDeg) * std::cos(l * kDeg),
                    std::cos(f * kDeg) * std::sin(l * kDeg), std::sin(f * kDeg));
        SolidTide tide;
        xyz disp;
        tide.SolidEarthTide(t, r, R, disp);
        const xyz expected = DisplacementByPotential({Sun(t), 332946.0482L}, r, R) +
                             DisplacementByPotential({Moon(t), 0.0123000371L}, r, R);
        EXPECT_LT((disp - expected).GetLength(), 1e-10L);
        EXPECT_LT(disp.GetLength(), 0.5L);
      }
}

TEST(SolidTide, RadialCorrectionOfK1FollowsTheGeodeticPosition) {
  const mjd t(55843, 54321);
  const flh place(0.8L, -2.1L, 100);
  const xyz r(std::cos(0.8L) * std::cos(-2.1L), std::cos(0.8L) * std::sin(-2.1L), std::sin(0.8L));
  SolidTide with, without;
  with.SetGeodPos(place);
  xyz a, b;
  with.SolidEarthTide(t, r, 6371, a);
  without.SolidEarthTide(t, r, 6371, b);
  const long double theta = with.GSTime(t) - 2.1L;
  const xyz expected = r * (-0.0125L * std::sin(1.6L) * std::sin(theta)); // sin cos = sin2 / 2
  EXPECT_LT((a - b - expected).GetLength(), 1e-17L);
}

TEST(SolidTide, LatitudesStayWithoutEccentricity) {
  const SolidTide tide;
  for (long double f : {-1.5L, -0.7L, 0.0L, 0.3L, 1.5L}) {
    EXPECT_TRUE(Near(SolidTidePeer::Geodetic(tide, f), f, 1e-17L));
    EXPECT_TRUE(Near(SolidTidePeer::Geocentric(tide, f), f, 1e-17L));
  }
}

TEST(SolidTide, LatitudeConversionsUndoEachOther) {
  SolidTide tide;
  tide.SetE2(0.00669438002290L);
  // 45 degrees geodetic are 11.55 minutes less geocentric.
  EXPECT_TRUE(Near(45 - SolidTidePeer::Geocentric(tide, 45 * kDeg) / kDeg, 11.545L / 60, 1e-4L));
  for (long double f : {-1.5L, -0.7L, 0.0L, 0.3L, 1.5L})
    EXPECT_TRUE(Near(SolidTidePeer::Geodetic(tide, SolidTidePeer::Geocentric(tide, f)), f, 1e-17L));
}

TEST(SolidTide, LongitudeOfARightAscensionIsBroughtTowardsZero) {
  const SolidTide tide;
  const mjd t(55843, 54321);
  const long double theta = tide.GSTime(t);
  long double lon = 0, lat = 0;
  for (long double wanted : {-3.1L, -1.0L, 0.0L, 2.0L, 3.1L})
    for (long double turns : {-1.0L, 0.0L, 1.0L}) {
      SolidTidePeer::EarthFixed(tide, theta + wanted + turns * 2 * kPi, 0.5L, t, lon, lat);
      EXPECT_TRUE(Near(lon, wanted, 1e-14L));
      EXPECT_TRUE(Near(lat, 0.5L, 1e-17L));
    }
}

} // namespace
