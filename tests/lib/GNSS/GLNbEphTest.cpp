#include "GNSS/GLNbEph.h"

#include "GNSS/GNSSpEph.h"
#include "GNSS/TimeConverse.h"
#include "GNSS/gnssobs.h"
#include "PROGINC/LineSource.h"
#include "reference/orbits_plain.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/NavText.h"
#include "support/Near.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <limits>
#include <random>
#include <sstream>
#include <vector>

struct GLNbEphDataPeer {
  static void Warning(const char* text) { GLNbEphData::GLNbEphDataWarning(text); }
  static long double ReadParameter(LineSource& source) {
    return GLNbEphData::ReadParameter(source);
  }
};

struct GLNbEphPeer {
  static long GetDataIndex(const GLNbEph& eph, short slot, const mjd& tsel) {
    return eph.GetDataIndex(slot, tsel);
  }
  static void Derivative(const matrix<long double>& y, long double ax, long double ay,
                         long double az, matrix<long double>& dy) {
    const GLNbEph eph;
    GLNbEph::DiffEqTwoBody(y, eph.GMz, eph.OMEGAz, eph.aE, eph.C20, ax, ay, az, dy);
  }
  static void SetRoundEarth(GLNbEph& eph) { eph.C20 = 0; }
  static void PrintParameter(const char* name, long double value) {
    GLNbEph::PrintParameter(name, value);
  }
};

namespace {

constexpr long double kGM = 3.9860044e14L;
constexpr long double kOmega = 7.292115e-5L;
constexpr long double kAE = 6378136.0L;
constexpr long double kC20 = -1.08263e-3L;
constexpr long double kC = 299792458.0L;
constexpr unsigned kDay = 54922; // 2009-04-01

// Position [m], velocity [m/s], acceleration of Sun and Moon [m/s2].
using Orbit = std::array<long double, 9>;

// Slot 3 of 2009-04-01, near enough.
const Orbit kOrbit = {9364739.25L, -15908797.36L, -17614389.65L, -267.867L, 2398.53L,
                      -2307.656L,  1.0e-6L,       -2.0e-6L,      0.5e-6L};

// One record of slot 3 at noon of kDay.
GLNbEph OneRecord(const Orbit& orbit) {
  GLNbEph eph;
  eph.rdata.SetNRecords(1);
  eph.rdata.sat(0) = 3;
  eph.rdata.mjdo(0) = mjd(kDay, 43200);
  for (long axis = 0; axis < 3; ++axis)
    for (long order = 0; order < 3; ++order)
      eph.rdata.data(0, 3 + 4 * axis + order) =
          orbit[static_cast<std::size_t>(3 * order + axis)] / 1000;
  return eph;
}

struct Evaluated {
  xyzt pos;
  xyzt vel;
};

Evaluated At(GLNbEph& eph, long double seconds, short warn = 0) {
  mjd t(kDay, 43200);
  t += seconds;
  Evaluated state;
  eph.CalcSatPosition(3, t, t, state.pos, state.vel, warn);
  return state;
}

Orbit Continued(const Evaluated& state, const Orbit& from) {
  return {state.pos.GetX(), state.pos.GetY(), state.pos.GetZ(), state.vel.GetX(), state.vel.GetY(),
          state.vel.GetZ(), from[6],          from[7],          from[8]};
}

long double Distance(const xyzt& a, const xyzt& b) {
  return xyz(a.GetX() - b.GetX(), a.GetY() - b.GetY(), a.GetZ() - b.GetZ()).GetLength();
}

const std::string kEndOfHeader = HeaderLine("", "END OF HEADER");

const char* const kRealRecord =
    " 2 09  4  1  0 15  0.0 0.206762924790E-04-0.272848410532E-11 0.900000000000E+03\n"
    "    0.936473925781E+04-0.267867088318E+00 0.000000000000E+00 0.000000000000E+00\n"
    "   -0.159087973633E+05 0.239853191376E+01 0.186264514923E-08 0.100000000000E+01\n"
    "   -0.176143896484E+05-0.230765628815E+01 0.186264514923E-08 0.000000000000E+00\n";

GLNbEph ReadText(const std::string& text) {
  ScratchFolder folder;
  GLNbEph eph;
  eph.SetFile(folder.Write("nav", text).c_str());
  eph.ReadFile();
  return eph;
}

GLNbEph Records(const std::vector<long double>& seconds) {
  GLNbEph eph;
  eph.rdata.SetNRecords(static_cast<int>(seconds.size()));
  for (std::size_t k = 0; k < seconds.size(); ++k) {
    eph.rdata.sat(static_cast<long>(k)) = 3;
    eph.rdata.mjdo(static_cast<long>(k)) = mjd(kDay, seconds[k]);
  }
  return eph;
}

long Chosen(const GLNbEph& eph, long double seconds) {
  return GLNbEphPeer::GetDataIndex(eph, 3, mjd(kDay, seconds));
}

} // namespace

// ---------------------------------------------------------------- header

TEST(GLNbEphHeader, EveryLabelIsRead) {
  LineSource source(
      HeaderLine("     2.01           GLONASS NAV DATA", "RINEX VERSION / TYPE") +
      HeaderLine("CCRINEXG V1.4 UX    CDDIS               02-APR- 9 16:53", "PGM / RUN BY / DATE") +
      HeaderLine("", "COMMENT") +
      HeaderLine("  2009     4     1   -0.158790498972D-06", "CORR TO SYSTEM TIME") +
      HeaderLine("    15", "LEAP SECONDS") + kEndOfHeader);
  GLNbEphHeader header;
  Captured out(std::cout);
  EXPECT_TRUE(header.Read(source));
  EXPECT_EQ(out.Text(), "");
  EXPECT_FLOAT_EQ(header.version, 2.01F);
  EXPECT_STREQ(header.type, "GLONASS NAV DATA");
  EXPECT_STREQ(header.pgm, "CCRINEXG V1.4 UX");
  EXPECT_STREQ(header.runby, "CDDIS");
  EXPECT_STREQ(header.date, "02-APR- 9 16:53");
  EXPECT_TRUE(Near(header.TauC, -1.58790498972e-7L, 1e-22L));
  EXPECT_EQ(header.RefTimeCorr.GetYear(), 2009);
  EXPECT_EQ(header.RefTimeCorr.GetMonth(), 4);
  EXPECT_EQ(header.RefTimeCorr.GetDay(), 1);
  EXPECT_EQ(header.RefTimeCorr.GetDaySecond(), 0.0L);
  EXPECT_EQ(header.leaps, 15);
}

TEST(GLNbEphHeader, UnknownLabelIsWarnedOf) {
  LineSource source(HeaderLine("", "ION ALPHA") + kEndOfHeader);
  GLNbEphHeader header;
  Captured out(std::cout);
  header.Read(source);
  EXPECT_EQ(out.Text(), "\n#### GLNbEphHeader: Warning -> ION ALPHA -> UNKNOWN HEADER LABEL ####\n"
                        "     Continuing GLNbEphHeader ... \n\n");
}

TEST(GLNbEphHeaderDeathTest, ReferenceDateThatIsNoneEndsTheProgram) {
  LineSource source(HeaderLine("     0     0     0    0.0D+00", "CORR TO SYSTEM TIME"));
  GLNbEphHeader header;
  EXPECT_ENDS(header.Read(source), "ymdhms: Error -> YEAR not valid");
}

TEST(GLNbEphHeader, ExtractionLeavesTheStreamAtTheRecords) {
  std::istringstream in(HeaderLine("    14", "LEAP SECONDS") + kEndOfHeader + kRealRecord);
  GLNbEphHeader header;
  GLNbEphData data;
  data.SetNRecords(1);
  EXPECT_TRUE(in >> header >> data);
  EXPECT_EQ(header.leaps, 14);
  EXPECT_EQ(data.sat(0), 2);
}

// ---------------------------------------------------------------- records

TEST(GLNbEphData, RecordsAreReadAndTheirEpochsAreGpsTime) {
  std::istringstream in(std::string(kRealRecord) +
                        NavRecord(24, " 08 12 31 23 45  0.0", std::vector<double>(15, -0.5)));
  GLNbEphData data;
  data.SetNRecords(2);
  EXPECT_TRUE(in >> data);
  EXPECT_TRUE(data.mjdo(0) == mjd(kDay, 915));    // 15 leap seconds in 2009
  EXPECT_TRUE(data.mjdo(1) == mjd(54831, 85514)); // 14 on the day before them
  EXPECT_EQ(data.sat(1), 24);
  EXPECT_TRUE(Near(data.data(0, 0), 2.06762924790e-5L, 1e-20L));
  EXPECT_TRUE(Near(data.data(0, 1), -2.72848410532e-12L, 1e-26L));
  EXPECT_TRUE(Near(data.data(0, 2), 900, 1e-12L));
  EXPECT_TRUE(Near(data.data(0, 3), 9364.73925781L, 1e-11L));
  EXPECT_TRUE(Near(data.data(0, 8), 2.39853191376L, 1e-14L));
  EXPECT_TRUE(Near(data.data(0, 13), 1.86264514923e-9L, 1e-24L));
  EXPECT_EQ(data.data(0, 14), 0.0L);
  EXPECT_EQ(data.data(1, 14), -0.5L);
  ASSERT_EQ(data.satList.NRow(), 2);
  EXPECT_EQ(data.satList(0), 2);
  EXPECT_EQ(data.satList(1), 24);
}

TEST(GLNbEphData, CutRecordIsLeftOut) {
  const std::string record = kRealRecord;
  for (const std::size_t cut : {2UL, 22UL, 100UL, 310UL}) {
    std::istringstream in(record + record.substr(0, cut));
    GLNbEphData data;
    data.SetNRecords(2);
    EXPECT_FALSE(in >> data) << cut;
    EXPECT_EQ(data.nsatall, 1) << cut;
    EXPECT_EQ(data.data.NRow(), 1) << cut;
    EXPECT_EQ(data.satList.NRow(), 1) << cut;
  }
}

TEST(GLNbEphData, ExponentAfterDOrEIsReadTheSame) {
  for (const char* text : {"-0.123456789012D-09", "-0.123456789012E-09"}) {
    LineSource source{std::string(text)};
    EXPECT_TRUE(Near(GLNbEphDataPeer::ReadParameter(source), -1.23456789012e-10L, 2e-26L));
  }
}

TEST(GLNbEphDataDeathTest, WithoutNumberOfRecordsTheProgramEnds) {
  std::istringstream in(kRealRecord);
  GLNbEphData data;
  EXPECT_ENDS(in >> data, "^\n#### GLNbEphData: Error -> NUMBER OF RECORDS not set! ####\n"
                          "     Exiting GLNbEphData ... \n\n$");
}

TEST(GLNbEphDataDeathTest, EpochThatIsNoDateEndsTheProgram) {
  std::istringstream in(NavRecord(1, " 09  2 30  2  0  0.0", std::vector<double>(15, 0)));
  GLNbEphData data;
  data.SetNRecords(1);
  EXPECT_ENDS(in >> data, "ymdhms: Error -> DAY not valid");
}

TEST(GLNbEphData, WarningsNameTheClass) {
  Captured out(std::cout);
  GLNbEphDataPeer::Warning("TEXT");
  EXPECT_EQ(out.Text(),
            "\n#### GLNbEphData: Warning -> TEXT ####\n     Continuing GLNbEphData ... \n\n");
}

// ---------------------------------------------------------------- file

TEST(GLNbEph, FileIsReadInRecordsOfFourLines) {
  const GLNbEph eph =
      ReadText(kEndOfHeader + kRealRecord +
               NavRecord(24, " 09  4  1  0 45  0.0", std::vector<double>(15, 1)) + kRealRecord);
  EXPECT_EQ(eph.GetNSat(), 3);
  EXPECT_EQ(eph.nsatall, 3);
  EXPECT_EQ(eph.rdata.sat(1), 24);
  EXPECT_TRUE(eph.GetMJD(1) == mjd(kDay, 2715));
}

TEST(GLNbEphDeathTest, FileWithoutRecordsEndsTheProgram) {
  EXPECT_ENDS(ReadText(""), "NUMBER OF RECORDS not set!");
  EXPECT_ENDS(ReadText("a\nb\n"), "NUMBER OF RECORDS not set!");
  EXPECT_ENDS(ReadText(kEndOfHeader + "R02 09\n"), "NUMBER OF RECORDS not set!");
  EXPECT_ENDS(ReadText(kEndOfHeader + "40000 09\n"), "NUMBER OF RECORDS not set!");
  GLNbEph directory;
  directory.SetFile("/");
  EXPECT_ENDS(directory.ReadFile(), "NUMBER OF RECORDS not set!");
}

// ---------------------------------------------------------------- choice of the record

TEST(GLNbEph, NearerRecordIsChosenAndOfTwoEquallyNearTheEarlier) {
  const GLNbEph eph = Records({900, 2700}); // 00:15 and 00:45
  EXPECT_EQ(Chosen(eph, 1740), 0);          // 00:29
  EXPECT_EQ(Chosen(eph, 1860), 1);          // 00:31
  EXPECT_EQ(Chosen(eph, 1800), 0);          // 00:30
  EXPECT_EQ(Chosen(eph, 2700), 1);
}

TEST(GLNbEph, BeforeTheFirstRecordTheFirstBehindTheLastTheLast) {
  const GLNbEph eph = Records({900, 2700, 4500});
  EXPECT_EQ(Chosen(eph, 0), 0);
  EXPECT_EQ(Chosen(eph, 899), 0);
  EXPECT_EQ(Chosen(eph, 4501), 2);
  EXPECT_EQ(Chosen(eph, 80000), 2);
}

TEST(GLNbEph, EpochOfTheFirstRecordTakesTheLast) {
  const GLNbEph eph = Records({900, 2700, 4500});
  EXPECT_EQ(Chosen(eph, 900), 2);
  EXPECT_EQ(Chosen(Records({900}), 900), 0);
}

TEST(GLNbEph, RecordsOfOtherSlotsAreNoNeighbours) {
  GLNbEph eph = Records({900, 1700, 2700});
  eph.rdata.sat(1) = 4;
  EXPECT_EQ(Chosen(eph, 1740), 0);
  EXPECT_EQ(Chosen(eph, 1860), 2);
}

TEST(GLNbEph, RecordIsTheOneThatAScanOfTheFileFinds) {
  std::mt19937 engine(9);
  std::uniform_int_distribution<int> slot(1, 4), minutes(0, 12), seconds(-100, 11000);
  for (int file = 0; file < 40; ++file) {
    GLNbEph orbit;
    orbit.rdata.SetNRecords(25);
    for (long k = 0; k < 25; ++k) {
      // In order of time in one file, and as it comes, with repetitions, in the next.
      const long quarter = file % 2 == 0 ? k / 2 : minutes(engine);
      orbit.rdata.sat(k) = static_cast<short>(slot(engine));
      orbit.rdata.mjdo(k) = mjd(56458, static_cast<long double>(900 * quarter));
    }
    const GlonassOrbit_plain plain(orbit);
    for (short s = 1; s <= 4; ++s) {
      if (orbit.rdata.RecordsOf(s).empty()) continue;
      for (int i = 0; i < 200; ++i) {
        mjd t(56458, 0);
        t += static_cast<long double>(i < 27 ? 450 * i : seconds(engine));
        EXPECT_EQ(GLNbEphPeer::GetDataIndex(orbit, s, t), plain.GetDataIndex(s, t));
      }
    }
  }
}

TEST(GLNbEphDeathTest, SlotWithoutRecordsEndsTheProgram) {
  const GLNbEph eph = Records({900});
  EXPECT_ENDS(GLNbEphPeer::GetDataIndex(eph, 5, mjd(kDay, 0)),
              "^\n\\*\\*\\*\\* GLNbEph: Error -> SAT: R05 IS NOT LISTED IN GLONASS NAVIGATION "
              "FILE!!! \\*\\*\\*\\*\n     Exiting GLNbEph ... \n\n$");
}

TEST(GLNbEph, OldRecordIsWarnedOfWhenAsked) {
  GLNbEph eph = OneRecord(kOrbit);
  {
    Captured out(std::cout);
    At(eph, 961, 1);
    EXPECT_EQ(out.Text(), "\n#### GLNbEph: Warning -> SAT: G03 [2009-04-01 12:16:01.0] -> DT = "
                          "16.02' PARAMETER TO BIG [>16'] ####\n     Continuing GLNbEph ... \n\n");
  }
  Captured out(std::cout);
  At(eph, 961, 0);
  At(eph, 959, 1);
  EXPECT_EQ(out.Text(), "");
  At(eph, -961, 1);
  EXPECT_NE(out.Text().find("[2009-04-01 11:43:59.0] -> DT = -16.02'"), std::string::npos);
}

// ---------------------------------------------------------------- orbit

TEST(GLNbEph, AtTheRecordTheBroadcastStateIsReturned) {
  GLNbEph eph = OneRecord(kOrbit);
  eph.rhead.TauC = -0.25e-6L;
  eph.rdata.data(0, 0) = 2e-5L;
  eph.rdata.data(0, 1) = 3e-12L;
  const mjd te(kDay, 43200 - 0.25e-6L);
  xyzt pos, vel;
  eph.CalcSatPosition(3, te, te, pos, vel, 0);
  EXPECT_EQ(pos.GetX(), eph.rdata.data(0, 3) * 1000);
  EXPECT_EQ(pos.GetY(), eph.rdata.data(0, 7) * 1000);
  EXPECT_EQ(pos.GetZ(), eph.rdata.data(0, 11) * 1000);
  EXPECT_EQ(vel.GetX(), eph.rdata.data(0, 4) * 1000);
  EXPECT_EQ(vel.GetY(), eph.rdata.data(0, 8) * 1000);
  EXPECT_EQ(vel.GetZ(), eph.rdata.data(0, 12) * 1000);
  EXPECT_EQ(vel.GetT(), 0.0L);
  const long double rv = kOrbit[0] * kOrbit[3] + kOrbit[1] * kOrbit[4] + kOrbit[2] * kOrbit[5];
  EXPECT_TRUE(Near(eph.Relativity, 2 * rv / kC / kC, 1e-22L));
  EXPECT_TRUE(Near(pos.GetT(), 2e-5L - 0.25e-6L - eph.Relativity, 1e-22L));
}

TEST(GLNbEph, FrequencyBiasIsSubtracted) {
  GLNbEph eph = OneRecord(kOrbit);
  eph.rdata.data(0, 0) = 2e-5L;
  eph.rdata.data(0, 1) = 3e-12L;
  EXPECT_TRUE(Near(At(eph, 600).pos.GetT() + eph.Relativity, 2e-5L - 1.8e-9L, 1e-20L));
}

TEST(GLNbEph, BackwardIntegrationReturnsToItsStart) {
  for (const long double seconds : {900.0L, 613.7L, -900.0L, -14.2L}) {
    GLNbEph forth = OneRecord(kOrbit);
    const Evaluated there = At(forth, seconds);
    EXPECT_GT(std::fabs(there.pos.GetX() - kOrbit[0]), 100.0L);
    GLNbEph back = OneRecord(Continued(there, kOrbit));
    const Evaluated here = At(back, -seconds);
    EXPECT_TRUE(Near(here.pos.GetX(), kOrbit[0], 1e-5L)) << seconds;
    EXPECT_TRUE(Near(here.pos.GetY(), kOrbit[1], 1e-5L)) << seconds;
    EXPECT_TRUE(Near(here.pos.GetZ(), kOrbit[2], 1e-5L)) << seconds;
    EXPECT_TRUE(Near(here.vel.GetZ(), kOrbit[5], 1e-8L)) << seconds;
  }
}

// The error of a method of fourth order falls to a sixteenth with half the step. The remainder
// of the last step is right to 0.3 ns, a micrometre at 3 km/s.
TEST(GLNbEph, HalvedStepsLeaveASixteenthOfTheError) {
  const auto position = [](long double step) {
    GLNbEph eph = OneRecord(kOrbit);
    eph.SetIntegrationStep(step);
    return At(eph, 9600).pos;
  };
  const xyzt truth = position(25);
  const long double coarse = Distance(position(400), truth);
  const long double fine = Distance(position(200), truth);
  EXPECT_GT(coarse, 1e-3L);
  EXPECT_TRUE(Near(coarse / fine, 16, 2));
  EXPECT_LT(Distance(position(30), truth), 1e-3L);
}

// Closed form: on a round Earth without Sun and Moon a circle is kept, and turns against the
// Earth's rotation in the frame of the Earth.
TEST(GLNbEph, CircleOnARoundEarthIsKept) {
  const long double r = 25.5e6L, inclination = 1.13L;
  const long double n = std::sqrt(kGM / (r * r * r));
  const auto truth = [&](long double s) {
    return xyz(r, 0, 0).RotateZ(n * s).RotateX(inclination).RotateZ(-kOmega * s);
  };
  const xyz start = truth(0);
  const xyz inertial = xyz(0, r * n, 0).RotateX(inclination);
  const xyz turning = CrossP(xyz(0, 0, kOmega), start);
  const xyz velocity = inertial - turning;
  GLNbEph eph = OneRecord({start.GetX(), start.GetY(), start.GetZ(), velocity.GetX(),
                           velocity.GetY(), velocity.GetZ(), 0, 0, 0});
  GLNbEphPeer::SetRoundEarth(eph);
  for (const long double s : {30.0L, 431.5L, 900.0L, -900.0L, 7200.0L})
    EXPECT_LT((truth(s) - At(eph, s).pos).GetLength(), 1e-6L + 1e-7L * std::fabs(s)) << s;
}

// The Earth turns and is symmetric about its axis: kept are the energy in the turning frame and,
// without Sun and Moon, the angular momentum about the axis in the inertial one.
TEST(GLNbEph, EnergyAndAxialMomentumAreKept) {
  Orbit orbit = kOrbit;
  orbit[6] = orbit[7] = orbit[8] = 0;
  const auto energy = [](const Evaluated& s) {
    const long double x = s.pos.GetX(), y = s.pos.GetY(), z = s.pos.GetZ();
    const long double r = s.pos.GetLength(), v = s.vel.GetLength();
    const long double sine = z / r;
    const long double potential =
        kGM / r * (1 + kC20 * kAE * kAE / (r * r) * (1.5L * sine * sine - 0.5L));
    return v * v / 2 - potential - kOmega * kOmega * (x * x + y * y) / 2;
  };
  const auto momentum = [](const Evaluated& s) {
    const long double x = s.pos.GetX(), y = s.pos.GetY();
    return x * s.vel.GetY() - y * s.vel.GetX() + kOmega * (x * x + y * y);
  };
  GLNbEph eph = OneRecord(orbit);
  const Evaluated start = At(eph, 0);
  const auto drift = [&](long double seconds) {
    const Evaluated later = At(eph, seconds);
    return std::max(std::fabs(energy(later) / energy(start) - 1),
                    std::fabs(momentum(later) / momentum(start) - 1));
  };
  for (const long double seconds : {900.0L, -900.0L}) {
    eph.SetIntegrationStep(30);
    EXPECT_LT(drift(seconds), 1e-11L);
    eph.SetIntegrationStep(3); // what is left is the error of the method
    EXPECT_LT(drift(seconds), 1e-15L);
  }
}

// The accelerations are the gradient of the potential of gravity and rotation, plus Coriolis.
TEST(GLNbEph, AccelerationIsTheGradientOfThePotential) {
  const auto potential = [](long double x, long double y, long double z) {
    const long double r = std::sqrt(x * x + y * y + z * z), sine = z / r;
    return kGM / r * (1 + kC20 * kAE * kAE / (r * r) * (1.5L * sine * sine - 0.5L)) +
           kOmega * kOmega * (x * x + y * y) / 2;
  };
  matrix<long double> y(6, 1), dy(6, 1);
  for (long i = 0; i < 6; ++i) y(i) = kOrbit[static_cast<std::size_t>(i)];
  GLNbEphPeer::Derivative(y, 1e-6L, -2e-6L, 3e-6L, dy);
  for (long i = 0; i < 3; ++i) EXPECT_EQ(dy(i), y(i + 3));
  const long double h = 100;
  const auto gradient = [&](long axis) {
    matrix<long double> a = y, b = y;
    a(axis) += h;
    b(axis) -= h;
    return (potential(a(0), a(1), a(2)) - potential(b(0), b(1), b(2))) / (2 * h);
  };
  EXPECT_TRUE(Near(dy(3), gradient(0) + 2 * kOmega * y(4) + 1e-6L, 1e-10L));
  EXPECT_TRUE(Near(dy(4), gradient(1) - 2 * kOmega * y(3) - 2e-6L, 1e-10L));
  EXPECT_TRUE(Near(dy(5), gradient(2) + 3e-6L, 1e-10L));
}

namespace {

// The integration as it reads in a textbook, over the equations of motion on matrices: steps of
// \p step while the decimal days leave room for one, then what is left, 501 steps at most.
struct PlainIntegration {
  matrix<long double> y{6, 1};
  int steps = 0;

  PlainIntegration(const Orbit& orbit, mjd tc, const mjd& t, long double step) {
    for (long i = 0; i < 6; ++i) y(i) = orbit[static_cast<std::size_t>(i)];
    const bool back = t.GetMJDDec() - tc.GetMJDDec() < 0;
    long double h = back ? -step : step;
    long double hd = h / 86400;
    while (steps < 501) {
      const long double left = t.GetMJDDec() - tc.GetMJDDec();
      if (std::fabs(left) < std::fabs(hd)) {
        hd = left;
        h = hd * 86400;
      }
      if (back ? tc <= t : tc >= t) break;
      if (std::fabs(h) < 1e-8) break;
      Step(orbit, h);
      tc += h;
      ++steps;
    }
  }

  void Step(const Orbit& orbit, long double h) {
    matrix<long double> k[4], at = y, dy(6, 1);
    const long double forward[4] = {0, h / 2, h / 2, h};
    for (int stage = 0; stage < 4; ++stage) {
      for (long i = 0; i < 6; ++i)
        at(i) = stage == 0 ? y(i) : y(i) + k[stage - 1](i) * forward[stage];
      GLNbEphPeer::Derivative(at, orbit[6], orbit[7], orbit[8], dy);
      k[stage] = dy;
    }
    for (long i = 0; i < 6; ++i)
      y(i) += k[0](i) * h / 6 + k[1](i) * h / 3 + k[2](i) * h / 3 + k[3](i) * h / 6;
  }
};

} // namespace

TEST(GLNbEph, IntegrationEqualsThePlainOne) {
  GLNbEph eph = OneRecord(kOrbit);
  Orbit orbit; // as the record holds it
  for (std::size_t axis = 0; axis < 3; ++axis)
    for (std::size_t order = 0; order < 3; ++order)
      orbit[3 * order + axis] = eph.rdata.data(0, static_cast<long>(3 + 4 * axis + order)) * 1000;
  for (long double s = -1000; s <= 1000; s += 7.37L) {
    for (const long double whole : {s, std::floor(s / 30) * 30, std::floor(s / 30) * 30 - 0.075L}) {
      mjd t(kDay, 43200);
      t += whole;
      const PlainIntegration plain(orbit, mjd(kDay, 43200), t, 30);
      const Evaluated state = At(eph, whole);
      EXPECT_EQ(state.pos.GetX(), plain.y(0)) << whole;
      EXPECT_EQ(state.pos.GetY(), plain.y(1)) << whole;
      EXPECT_EQ(state.pos.GetZ(), plain.y(2)) << whole;
      EXPECT_EQ(state.vel.GetZ(), plain.y(5)) << whole;
    }
  }
}

TEST(GLNbEph, IntegrationStopsAfter501Steps) {
  GLNbEph eph = OneRecord(kOrbit);
  const Evaluated last = At(eph, 501 * 30);
  Captured out(std::cout);
  Captured err(std::cerr);
  EXPECT_LT(Distance(At(eph, 501 * 30 + 6000).pos, last.pos), 1e-3L);
  EXPECT_EQ(out.Text(), "");
  EXPECT_EQ(err.Text(), "");
  EXPECT_GT(Distance(At(eph, 500 * 30).pos, last.pos), 1e4L);
}

TEST(GLNbEph, StepThatIsNoneEndsAllTheSame) {
  GLNbEph eph = OneRecord(kOrbit);
  const long double inf = std::numeric_limits<long double>::infinity();
  for (const long double step :
       {0.0L, -30.0L, 1e-9L, std::numeric_limits<long double>::quiet_NaN()}) {
    eph.SetIntegrationStep(step);
    At(eph, 100);
    At(eph, -100);
  }
  // What is left is shorter than an endless step: one step.
  eph.SetIntegrationStep(inf);
  const xyzt once = At(eph, 100).pos;
  eph.SetIntegrationStep(100);
  EXPECT_LT(Distance(At(eph, 100).pos, once), 1e-5L);
}

TEST(GLNbEph, SpoiltStatesEndTheEvaluation) {
  const long double inf = std::numeric_limits<long double>::infinity();
  const long double nan = std::numeric_limits<long double>::quiet_NaN();
  const mjd t(kDay, 43300);
  const xyz rec(4e6L, 1e6L, 4.8e6L);
  for (long column = 0; column < 15; ++column) {
    for (const long double value : {0.0L, 1e30L, 1e300L, inf, -inf, nan}) {
      GLNbEph eph = OneRecord(kOrbit);
      eph.rdata.data(0, column) = value;
      xyzt pos, vel;
      Captured out(std::cout);
      eph.CalcSatPosition(3, t, t, rec, pos, vel, 0);
    }
  }
  GLNbEph centre = OneRecord({});
  EXPECT_TRUE(std::isnan(At(centre, 100).pos.GetX()));
}

TEST(GLNbEphDeathTest, SpoiltSystemTimeCorrectionEndsTheProgram) {
  GLNbEph eph = OneRecord(kOrbit);
  eph.rhead.TauC = std::numeric_limits<long double>::infinity();
  EXPECT_ENDS(At(eph, 100), "mjd: Error -> ");
}

// ---------------------------------------------------------------- travel time

TEST(GLNbEph, TravelTimeIsThatOfTheRange) {
  GLNbEph eph = OneRecord(kOrbit);
  const mjd t(kDay, 43500);
  const xyz rec(2.4e6L, -4.7e6L, -3.5e6L);
  xyzt pos, vel;
  const long double range = eph.CalcSatPosition(3, t, t, rec, pos, vel, 0);
  EXPECT_TRUE(Near((eph.ps - pos).GetLength(), range, 1e-9L));
  const long double turned =
      std::atan2(eph.ps.GetY(), eph.ps.GetX()) - std::atan2(rec.GetY(), rec.GetX());
  EXPECT_TRUE(Near(turned, kOmega * range / kC, 1e-15L));
  const Evaluated emission = At(eph, 300 - range / kC);
  EXPECT_LT(Distance(pos, emission.pos), 1e-5L);
  EXPECT_LT(Distance(vel, emission.vel), 1e-8L);
  const long double sagnac = kOmega / kC * (pos.GetX() * rec.GetY() - pos.GetY() * rec.GetX());
  EXPECT_TRUE(Near(range, (rec - pos).GetLength() + sagnac, 2e-3L));
}

TEST(GLNbEph, ObservedRangeTurnsTheSatelliteTheOtherWay) {
  GLNbEph eph = OneRecord(kOrbit);
  const mjd t(kDay, 43500);
  const xyz rec(2.4e6L, -4.7e6L, -3.5e6L);
  xyzt iterated, pos, vel;
  gnssobs obs;
  obs.obs = eph.CalcSatPosition(3, t, t, rec, iterated, vel, 0);
  const long double range = eph.CalcSatPosition(3, t, t, rec, pos, vel, obs, 0);
  const long double a = kOmega * obs.obs / kC;
  const xyz turned(iterated.GetX() * std::cos(a) - iterated.GetY() * std::sin(a),
                   iterated.GetX() * std::sin(a) + iterated.GetY() * std::cos(a), iterated.GetZ());
  EXPECT_LT((turned - pos).GetLength(), 1e-5L);
  EXPECT_TRUE(Near(range, (rec - turned).GetLength(), 1e-5L));
  EXPECT_TRUE(Near(pos.GetT(), iterated.GetT(), 1e-18L));
  // Turned the wrong way the Sagnac correction has the other sign.
  const long double sagnac =
      kOmega / kC * (iterated.GetX() * rec.GetY() - iterated.GetY() * rec.GetX());
  EXPECT_TRUE(Near(range - obs.obs, -2 * sagnac, 1e-2L));
  for (const long double nonsense :
       {std::numeric_limits<long double>::quiet_NaN(), 1e30L, -1e30L}) {
    obs.obs = nonsense;
    EXPECT_EQ(eph.CalcSatPosition(3, t, t, rec, pos, vel, obs, 0), -1.0L);
  }
}

TEST(GLNbEph, TravelTimeThatDoesNotSettleIsWarnedOf) {
  Orbit orbit = kOrbit;
  orbit[3] = 1e12L; // faster than its own signal, so that it is where it was not
  GLNbEph eph = OneRecord(orbit);
  const mjd t(kDay, 43201);
  xyzt pos, vel;
  Captured out(std::cout);
  eph.CalcSatPosition(3, t, t, xyz(6.4e6L, 0, 0), pos, vel, 0);
  EXPECT_EQ(out.Text(), "\n#### GLNbEph: Warning -> GLNbEph::CalcSatPosition():      TO MANY "
                        "ITERATIONS: > 50!! ####\n     Continuing GLNbEph ... \n\n");
}

TEST(GLNbEph, ParameterIsPrintedInScientificNotation) {
  Captured out(std::cout);
  GLNbEphPeer::PrintParameter("X ", -9364.5L);
  EXPECT_EQ(out.Text(), "X -9.364500000000000e+03\n");
}

// ---------------------------------------------------------------- recorded file

namespace {

bool IsListed(const GLNbEph& eph, short slot) {
  for (long i = 0; i < eph.rdata.satList.NRow(); ++i)
    if (eph.rdata.satList(i) == slot) return true;
  return false;
}

} // namespace

TEST(GLNbEph, BroadcastIsNearThePreciseOrbit2009) {
  SKIP_WITHOUT("orbits-2009-091/brdc0910.09g");
  GLNbEph eph;
  eph.SetFile(RealData("orbits-2009-091/brdc0910.09g").c_str());
  eph.ReadFile();
  EXPECT_EQ(eph.GetNSat(), 912);
  EXPECT_EQ(eph.rdata.satList.NRow(), 19);
  GNSSpEph truth;
  truth.SetFile(RealData("orbits-2009-091/esa15253.sp3").c_str());
  truth.ReadFile();
  std::vector<long double> differences;
  for (long record = 0; record < truth.sat.NRow(); ++record) {
    const auto slot = static_cast<short>(truth.GetSat(record) - 100);
    const xyzt& position = truth.GetSatPos(record);
    if (slot < 1 || slot > 24 || position.GetLength() < 1 || !IsListed(eph, slot)) continue;
    const mjd& t = truth.GetMJD(record / truth.GetNSat());
    if (std::fabs(t - eph.GetMJD(GLNbEphPeer::GetDataIndex(eph, slot, t))) > 960) continue;
    xyzt pos, vel;
    eph.CalcSatPosition(slot, t, t, pos, vel, 0);
    differences.push_back(Distance(position, pos));
  }
  std::sort(differences.begin(), differences.end());
  ASSERT_GT(differences.size(), 1000U);
  RecordProperty("median", std::to_string(differences[differences.size() / 2]));
  EXPECT_LT(differences[differences.size() / 2], 5.0L);
  EXPECT_LT(differences[differences.size() * 9 / 10], 20.0L);
}

namespace {

// Lines behind the header of a recorded file.
long RecordLines(const std::string& name) {
  std::istringstream in(ReadWhole(name));
  std::string line;
  while (std::getline(in, line))
    if (line.find("END OF HEADER") != std::string::npos) break;
  long lines = 0;
  while (std::getline(in, line)) lines += line.find_first_not_of(" \r") != std::string::npos;
  return lines;
}

} // namespace

TEST(GLNbEph, RecordedFilesAreReadWhole) {
  for (const char* file : {"2013-166-gmsd/gmsd1660.13g", "2024-010-dgar/brdc0100.24g",
                           "orbits-2009-091/brdc0910.09g"}) {
    SKIP_WITHOUT(file);
    GLNbEph eph;
    eph.SetFile(RealData(file).c_str());
    Captured out(std::cout);
    eph.ReadFile();
    EXPECT_EQ(out.Text(), "") << file;
    EXPECT_EQ(4 * static_cast<long>(eph.GetNSat()), RecordLines(RealData(file))) << file;
    EXPECT_GT(eph.GetNSat(), 1) << file;
  }
}
