#include "GNSS/GPSbEph.h"

#include "GNSS/GNSSpEph.h"
#include "GNSS/gnssobs.h"
#include "PROGINC/InputInWork.h"
#include "PROGINC/LineSource.h"
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
#include <sstream>
#include <vector>

struct GPSbEphDataPeer {
  static long double ReadParameter(LineSource& source) {
    return GPSbEphData::ReadParameter(source);
  }
  static void Warning(const char* text) { GPSbEphData::GPSbEphDataWarning(text); }
};

struct GPSbEphPeer {
  static long GetDataIndex(const GPSbEph& eph, unsigned short prn, const mjd& tsel) {
    return eph.GetDataIndex(prn, tsel);
  }
  static long double EccentricAnomaly(long double M, long double e) {
    return GPSbEph::EccentricAnomaly(M, e);
  }
  static void PrintParameter(const char* name, long double value) {
    GPSbEph::PrintParameter(name, value);
  }
};

namespace {

constexpr long double kPi = 3.141592653589793238462643383279502884L;
constexpr long double kGM = 3.986005e14L;
constexpr double kOmega = 7.2921151467e-5;
constexpr long double kC = 299792458.0L;
constexpr unsigned kDay = 54922; // 2009-04-01

// One record of PRN 7 at midnight of kDay, all values 0.
GPSbEph OneRecord() {
  GPSbEph eph;
  eph.gdata.SetNRecords(1);
  eph.gdata.sat(0) = 7;
  eph.gdata.mjdo(0) = mjd(kDay, 0);
  return eph;
}

// Inclined ellipse in a frame that does not turn with respect to the orbit: the node moves with
// the Earth, so that Earth-fixed coordinates are inertial ones.
GPSbEph Ellipse(double sqrtA, double e, double M0) {
  GPSbEph eph = OneRecord();
  eph.gdata.data(0, 6) = M0;
  eph.gdata.data(0, 8) = e;
  eph.gdata.data(0, 10) = sqrtA;
  eph.gdata.data(0, 13) = 0.7;    // OMEGA0
  eph.gdata.data(0, 15) = 0.96;   // i0
  eph.gdata.data(0, 17) = -1.1;   // omega
  eph.gdata.data(0, 18) = kOmega; // OMEGA DOT
  return eph;
}

xyzt PositionAt(GPSbEph& eph, long double seconds, unsigned short prn = 7) {
  mjd t(kDay, 0);
  t += seconds;
  xyzt pos;
  long double tgd = 0;
  eph.CalcSatPosition(prn, t, t, pos, &tgd, 0, 0);
  return pos;
}

long double Distance(const xyzt& a, const xyzt& b) {
  return xyz(a.GetX() - b.GetX(), a.GetY() - b.GetY(), a.GetZ() - b.GetZ()).GetLength();
}

LineSource Text(const std::string& text) { return LineSource(text); }

// PRN 2 of 2009-04-01 00:00:00 as broadcast.
const char* const kRealRecord =
    " 2 09  4  1  0  0  0.0 0.153949949890E-03-0.454747350886E-12 0.000000000000E+00\n"
    "    0.690000000000E+02 0.295937500000E+02 0.475376937814E-08-0.172729451478E+01\n"
    "    0.150687992573E-05 0.904141401406E-02 0.103265047073E-04 0.515363668251E+04\n"
    "    0.259200000000E+06-0.156462192535E-06 0.593659833961E+00-0.726431608200E-07\n"
    "    0.941899917981E+00 0.173343750000E+03 0.276376221774E+01-0.804747823935E-08\n"
    "   -0.132148361698E-09 0.100000000000E+01 0.152500000000E+04 0.000000000000E+00\n"
    "    0.200000000000E+01 0.000000000000E+00-0.172294676304E-07 0.690000000000E+02\n"
    "    0.253968000000E+06 0.400000000000E+01 0.000000000000E+00 0.000000000000E+00\n";

const std::string kEndOfHeader = HeaderLine("", "END OF HEADER");

std::vector<double> Values(double af0) {
  std::vector<double> values(29, 0.0);
  values[0] = af0;
  values[10] = 5153.6;
  return values;
}

std::string WithCRLF(const std::string& text) {
  std::string out;
  for (const char c : text) out += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return out;
}

GPSbEph ReadText(const std::string& text) {
  ScratchFolder folder;
  GPSbEph eph;
  eph.SetFile(folder.Write("nav", text).c_str());
  eph.ReadFile();
  return eph;
}

// The record for tsel by a scan of the whole file.
long GpsRecord_plain(const GPSbEph& orbit, unsigned short prn, const mjd& tsel) {
  long last = -1;
  for (long k = 0; k < static_cast<long>(orbit.gdata.nsatall); ++k) {
    if (orbit.gdata.sat(k) != prn) continue;
    last = k;
    if (orbit.gdata.mjdo(k) > tsel) return k;
  }
  return last;
}

} // namespace

// ---------------------------------------------------------------- header

TEST(GPSbEphHeader, EveryLabelIsRead) {
  LineSource source =
      Text(HeaderLine("     2.10           N: GPS NAV DATA", "RINEX VERSION / TYPE") +
           HeaderLine("teqc  2010Oct21                         20110102 00:10:11UTC",
                      "PGM / RUN BY / DATE") +
           HeaderLine("anything", "COMMENT") +
           HeaderLine("    0.1118D-07  0.7451D-08 -0.5960D-07 -0.5960D-07", "ION ALPHA") +
           HeaderLine("    0.9011D+05  0.1638D+05 -0.1966D+06 -0.6554D+05", "ION BETA") +
           HeaderLine("   -0.186264514923D-08 0.355271367880D-14   405504     1525",
                      "DELTA-UTC: A0,A1,T,W") +
           HeaderLine("    15", "LEAP SECONDS") + kEndOfHeader + "not read\n");
  GPSbEphHeader header;
  Captured out(std::cout);
  EXPECT_TRUE(header.Read(source));
  EXPECT_EQ(out.Text(), "");
  EXPECT_FLOAT_EQ(header.version, 2.10F);
  EXPECT_STREQ(header.type, "N: GPS NAV DATA");
  EXPECT_STREQ(header.pgm, "teqc  2010Oct21");
  EXPECT_STREQ(header.runby, "");
  EXPECT_STREQ(header.date, "20110102 00:10:11UTC");
  EXPECT_TRUE(Near(header.alfa[0], 1.118e-8L, 1e-23L));
  EXPECT_TRUE(Near(header.alfa[1], 7.451e-9L, 1e-23L));
  EXPECT_TRUE(Near(header.alfa[2], -5.960e-8L, 1e-22L));
  EXPECT_TRUE(Near(header.alfa[3], -5.960e-8L, 1e-22L));
  EXPECT_TRUE(Near(header.beta[0], 90110, 1e-10L));
  EXPECT_TRUE(Near(header.beta[3], -65540, 1e-10L));
  EXPECT_TRUE(Near(header.a0, -1.86264514923e-9L, 1e-24L));
  EXPECT_TRUE(Near(header.a1, 3.55271367880e-15L, 1e-29L));
  EXPECT_EQ(header.T, 405504);
  EXPECT_EQ(header.W, 1525);
  EXPECT_EQ(header.leaps, 15);
  EXPECT_EQ(source.Rest(), "not read\n");
}

TEST(GPSbEphHeader, UnknownLabelIsWarnedOfWithTheTextFromColumn60) {
  LineSource source = Text(HeaderLine("something", "STRANGE LABEL") + kEndOfHeader);
  GPSbEphHeader header;
  Captured out(std::cout);
  EXPECT_TRUE(header.Read(source));
  EXPECT_EQ(out.Text(), "\n#### GPSbEphHeader: Warning -> STRANGE LABEL -> UNKNOWN HEADER LABEL "
                        "####\n     Continuing GPSbEphHeader ... \n\n");
}

TEST(GPSbEphHeader, ShortUnknownLineGivesAnEmptyLabel) {
  LineSource source = Text("short\r\n" + kEndOfHeader);
  GPSbEphHeader header;
  Captured out(std::cout);
  header.Read(source);
  EXPECT_NE(out.Text().find("Warning ->  -> UNKNOWN HEADER LABEL ####"), std::string::npos);
}

TEST(GPSbEphHeader, WithoutItsEndItReadsToTheEndOfTheText) {
  LineSource source = Text(HeaderLine("    15", "LEAP SECONDS"));
  GPSbEphHeader header;
  EXPECT_FALSE(header.Read(source));
  EXPECT_EQ(header.leaps, 15);
}

TEST(GPSbEphHeader, LineOfHundredCharactersEndsTheReading) {
  const std::string longest = std::string(60, ' ') + "COMMENT" + std::string(32, ' '); // 99
  GPSbEphHeader header;
  LineSource fits = Text(longest + "\n" + kEndOfHeader);
  EXPECT_TRUE(header.Read(fits));
  LineSource tooLong = Text(longest + " \n" + kEndOfHeader);
  EXPECT_FALSE(header.Read(tooLong));
}

TEST(GPSbEphHeader, ExtractionLeavesTheStreamAtTheRecords) {
  std::istringstream in(HeaderLine("    14", "LEAP SECONDS") + kEndOfHeader + " 2 09 rest");
  GPSbEphHeader header;
  EXPECT_TRUE(in >> header);
  EXPECT_EQ(header.leaps, 14);
  int prn = 0;
  in >> prn;
  EXPECT_EQ(prn, 2);
}

TEST(GPSbEphHeader, ExtractionWithoutEndFailsTheStream) {
  std::istringstream in(HeaderLine("    14", "LEAP SECONDS"));
  GPSbEphHeader header;
  EXPECT_FALSE(in >> header);
}

// ---------------------------------------------------------------- records

TEST(GPSbEphData, ExponentAfterDOrEIsReadTheSame) {
  for (const char* text : {"-0.123456789012D-09", "-0.123456789012E-09",
                           "\r\n    -0.123456789012D-09", "-.123456789012D-09-0.5D+01"}) {
    LineSource source = Text(text);
    EXPECT_TRUE(Near(GPSbEphDataPeer::ReadParameter(source), -1.23456789012e-10L, 2e-26L)) << text;
    EXPECT_FALSE(source.Failed());
  }
}

TEST(GPSbEphData, ExponentTakesThreeCharacters) {
  LineSource source = Text("1.0D+012.5D+00");
  EXPECT_EQ(GPSbEphDataPeer::ReadParameter(source), 10.0L);
  EXPECT_EQ(GPSbEphDataPeer::ReadParameter(source), 2.5L);
}

TEST(GPSbEphData, ExponentsBeyondTheRangeMakeNoNumber) {
  LineSource source = Text("1.0D999 1.0D-99 0.0D999");
  EXPECT_TRUE(std::isnan(GPSbEphDataPeer::ReadParameter(source)));
  EXPECT_TRUE(Near(GPSbEphDataPeer::ReadParameter(source), 1e-99L, 1e-110L));
  EXPECT_EQ(GPSbEphDataPeer::ReadParameter(source), 0);
}

TEST(GPSbEphData, MantissaThatIsNoNumberMakesNone) {
  for (const char* text : {"nanD+00", "   infD+01", "x1.5D+00", "D+00", " .D+00", "1e999D+00"}) {
    LineSource source = Text(text);
    EXPECT_TRUE(std::isnan(GPSbEphDataPeer::ReadParameter(source))) << text;
    EXPECT_FALSE(source.Failed()) << text;
  }
  for (const char* text : {"\n    0.000000000000D+00", "-.0D+00", "+0D+00", "0.D+00"}) {
    LineSource source = Text(text);
    EXPECT_EQ(GPSbEphDataPeer::ReadParameter(source), 0) << text;
  }
}

TEST(GPSbEphData, RecordWithAValueThatIsNoNumberMakesNoOrbit) {
  const std::string sound = kRealRecord;
  std::string spoilt = sound;
  spoilt[spoilt.find('.', spoilt.find('\n')) - 1] = 'x'; // the first value of the second line
  std::istringstream in(spoilt + sound);
  GPSbEphData data;
  data.SetNRecords(2);
  const InputInWork file("brdc.11n");
  const Captured errors(std::cerr);
  EXPECT_TRUE(in >> data);
  for (long column = 0; column < GPSbEphData::NValues; ++column)
    EXPECT_EQ(data.data(0, column), 0) << column;
  EXPECT_TRUE(Near(data.data(1, 27), 253968, 1e-10L));
  EXPECT_EQ(
      errors.Text(),
      "\n#### Zenta: Warning -> RECORD OF SATELLITE 02 NOT VALID IN NAVIGATION FILE brdc.11n - "
      "NO POSITION FROM IT! ####\n     Continuing Zenta ... \n\n");
}

TEST(GPSbEphData, NumberWithoutExponentFailsTheText) {
  for (const char* text : {"", "1.0", "1.0D", "1.0Dx1", "1.0D-"}) {
    LineSource source = Text(text);
    EXPECT_EQ(GPSbEphDataPeer::ReadParameter(source), 0.0L) << text;
    EXPECT_TRUE(source.Failed()) << text;
  }
}

TEST(GPSbEphData, RecordsAreReadFromAStream) {
  std::istringstream in(NavRecord(12, " 09  4  1  2  0  0.0", Values(1e-4)) + kRealRecord);
  GPSbEphData data;
  data.SetNRecords(2);
  EXPECT_TRUE(in >> data);
  EXPECT_EQ(data.sat(0), 12);
  EXPECT_EQ(data.sat(1), 2);
  EXPECT_TRUE(data.mjdo(0) == mjd(kDay, 7200));
  EXPECT_TRUE(data.mjdo(1) == mjd(kDay, 0));
  EXPECT_TRUE(Near(data.data(0, 0), 1e-4L, 1e-19L));
  EXPECT_TRUE(Near(data.data(1, 0), 0.153949949890e-3L, 1e-18L));
  EXPECT_TRUE(Near(data.data(1, 6), -1.72729451478L, 1e-15L));
  EXPECT_TRUE(Near(data.data(1, 25), -1.72294676304e-8L, 1e-23L));
  EXPECT_TRUE(Near(data.data(1, 27), 253968, 1e-10L));
  ASSERT_EQ(data.satList.NRow(), 2);
  EXPECT_EQ(data.satList(0), 2);
  EXPECT_EQ(data.satList(1), 12);
}

TEST(GPSbEphData, LineEndsOfEitherKindAreRead) {
  std::istringstream in(WithCRLF(std::string(kRealRecord) + kRealRecord));
  GPSbEphData data;
  data.SetNRecords(2);
  EXPECT_TRUE(in >> data);
  EXPECT_TRUE(Near(data.data(1, 4), 29.59375L, 1e-14L));
  EXPECT_EQ(data.data(1, 26), 69.0L);
}

TEST(GPSbEphData, CutRecordIsLeftOut) {
  const std::string whole = std::string(kRealRecord) + kRealRecord;
  // Ends within the second record: after its number, its date, a value, a mantissa.
  for (const std::size_t cut : {2UL, 22UL, 200UL, 331UL}) {
    std::istringstream in(whole.substr(0, whole.size() / 2 + cut));
    GPSbEphData data;
    data.SetNRecords(2);
    EXPECT_FALSE(in >> data) << cut;
    EXPECT_EQ(data.nsatall, 1U) << cut;
    ASSERT_EQ(data.sat.NRow(), 1) << cut;
    EXPECT_EQ(data.mjdo.NRow(), 1) << cut;
    EXPECT_EQ(data.data.NRow(), 1) << cut;
    EXPECT_EQ(data.data.NCol(), 28) << cut;
    EXPECT_TRUE(Near(data.data(0, 27), 253968, 1e-10L)) << cut;
    EXPECT_EQ(data.satList.NRow(), 1) << cut;
  }
}

TEST(GPSbEphData, MissingFitIntervalAndLineEndAreNoLoss) {
  const std::string record = kRealRecord;
  std::istringstream in(record.substr(0, record.find("0.253968") + 18));
  GPSbEphData data;
  data.SetNRecords(1);
  EXPECT_TRUE(in >> data);
  EXPECT_TRUE(Near(data.data(0, 27), 253968, 1e-10L));
}

TEST(GPSbEphDataDeathTest, WithoutNumberOfRecordsTheProgramEnds) {
  std::istringstream in(kRealRecord);
  GPSbEphData data;
  EXPECT_ENDS(in >> data, "^\n#### GPSbEphData: Error -> NUMBER OF RECORDS not set! ####\n"
                          "     Exiting GPSbEphData ... \n\n$");
}

TEST(GPSbEphDataDeathTest, EpochThatIsNoDateEndsTheProgram) {
  std::istringstream in(NavRecord(1, " 09 13  1  2  0  0.0", Values(0)));
  GPSbEphData data;
  data.SetNRecords(1);
  EXPECT_ENDS(in >> data, "ymdhms: Error -> MONTH not valid");
}

TEST(GPSbEphData, WarningsNameTheClass) {
  Captured out(std::cout);
  GPSbEphDataPeer::Warning("TEXT");
  EXPECT_EQ(out.Text(),
            "\n#### GPSbEphData: Warning -> TEXT ####\n     Continuing GPSbEphData ... \n\n");
}

// ---------------------------------------------------------------- file

TEST(GPSbEph, FileIsReadAndHeaderWarningsAppearTwice) {
  ScratchFolder folder;
  GPSbEph eph;
  eph.SetFile(folder
                  .Write("nav", HeaderLine("", "ODD") + kEndOfHeader + kRealRecord +
                                    NavRecord(31, " 09  4  1  2  0  0.0", Values(0)) +
                                    NavRecord(2, " 09  4  1  2  0  0.0", Values(0)))
                  .c_str());
  Captured out(std::cout);
  eph.ReadFile();
  const std::string warning = "\n#### GPSbEphHeader: Warning -> ODD -> UNKNOWN HEADER LABEL ####\n"
                              "     Continuing GPSbEphHeader ... \n\n";
  EXPECT_EQ(out.Text(), warning + warning);
  EXPECT_EQ(eph.GetNSat(), 3U);
  EXPECT_EQ(eph.nsatall, 3U);
  ASSERT_EQ(eph.GetSatList().NRow(), 2);
  EXPECT_EQ(eph.GetSatList()(1), 31);
  EXPECT_TRUE(eph.GetMJD(2) == mjd(kDay, 7200));
}

TEST(GPSbEph, CutFileCountsItsWholeRecords) {
  const std::string record = kRealRecord;
  const GPSbEph eph = ReadText(kEndOfHeader + record + record.substr(0, 300));
  EXPECT_EQ(eph.GetNSat(), 1U);
  EXPECT_EQ(eph.gdata.sat.NRow(), 1);
}

TEST(GPSbEphDeathTest, FileWithoutRecordsEndsTheProgram) {
  const std::string pattern = "NUMBER OF RECORDS not set!";
  EXPECT_ENDS(ReadText(""), pattern);
  EXPECT_ENDS(ReadText(kEndOfHeader), pattern);
  EXPECT_ENDS(ReadText("no header, no end\n"), pattern);
  EXPECT_ENDS(ReadText(std::string("\0\1\2\xff\n", 5)), pattern);
  EXPECT_ENDS(ReadText(kEndOfHeader + "G02 09 4 1\n"), pattern);
  EXPECT_ENDS(ReadText(kEndOfHeader + " 70000 09 4 1\n"), pattern);
  GPSbEph absent;
  absent.SetFile("/nonexistent/nav");
  EXPECT_ENDS(absent.ReadFile(), pattern);
  ScratchFolder folder;
  GPSbEph directory;
  directory.SetFile(folder.Path().c_str());
  EXPECT_ENDS(directory.ReadFile(), pattern);
}

TEST(GPSbEph, NameOfMoreThan255CharactersIsCut) {
  ScratchFolder folder;
  folder.Write("nav", kEndOfHeader + kRealRecord);
  std::string name = folder.Path().string();
  while (name.size() + 4 < 255) name += name.size() % 2 == 1 ? "/." : "/";
  name += "/nav"; // 255 characters
  ASSERT_EQ(name.size(), 255U);
  GPSbEph eph;
  eph.SetFile((name + "beyond").c_str());
  eph.ReadFile();
  EXPECT_EQ(eph.GetNSat(), 1U);
}

// ---------------------------------------------------------------- choice of the record

TEST(GPSbEph, RecordBehindTheEpochIsChosenElseTheLast) {
  GPSbEph eph;
  eph.gdata.SetNRecords(5);
  const long double hours[] = {0, 2, 1, 4, 6};
  const unsigned short prns[] = {5, 5, 9, 5, 9};
  for (long k = 0; k < 5; ++k) {
    eph.gdata.sat(k) = prns[k];
    eph.gdata.mjdo(k) = mjd(kDay, 3600 * hours[k]);
  }
  const auto chosen = [&eph](long double seconds) {
    return GPSbEphPeer::GetDataIndex(eph, 5, mjd(kDay, seconds));
  };
  EXPECT_EQ(chosen(7140), 1);  // 01:59, although a minute is left
  EXPECT_EQ(chosen(60), 1);    // 00:01: the later one, not the nearer
  EXPECT_EQ(chosen(18000), 3); // 05:00
  EXPECT_EQ(chosen(7200), 3);  // on an epoch: the next
  EXPECT_EQ(chosen(0), 1);
  EXPECT_EQ(GPSbEphPeer::GetDataIndex(eph, 5, mjd(kDay - 1, 0)), 0);
}

TEST(GPSbEph, RecordIsTheOneThatAScanOfTheFileFinds) {
  SKIP_WITHOUT("2010-001-albh-gras");
  GPSbEph orbit;
  orbit.SetFile(RealData("2010-001-albh-gras/ALBH0010.10N").c_str());
  orbit.ReadFile();
  for (long i = 0; i < orbit.gdata.satList.NRow(); ++i) {
    const unsigned short prn = orbit.gdata.satList(i);
    mjd t = orbit.gdata.mjdo(0);
    t += -7200.0L;
    for (int n = 0; n < 120; ++n, t += 900.0L)
      EXPECT_EQ(GPSbEphPeer::GetDataIndex(orbit, prn, t), GpsRecord_plain(orbit, prn, t));
  }
}

TEST(GPSbEphDeathTest, SatelliteWithoutRecordsEndsTheProgram) {
  GPSbEph eph = OneRecord();
  EXPECT_ENDS(PositionAt(eph, 0, 3),
              "^\n\\*\\*\\*\\* GPSbEph: Error -> SAT: G03 IS NOT LISTED IN GPS NAVIGATION FILE!!! "
              "\\*\\*\\*\\*\n     Exiting GPSbEph ... \n\n$");
  GPSbEph empty;
  EXPECT_ENDS(PositionAt(empty, 0, 12), "SAT: G12 IS NOT LISTED");
}

TEST(GPSbEph, OldRecordIsWarnedOfWhenAsked) {
  GPSbEph eph = Ellipse(5153.6, 0.01, 0);
  xyzt pos;
  long double tgd = 0;
  const mjd t(kDay, 7300);
  {
    Captured out(std::cout);
    eph.CalcSatPosition(7, t, t, pos, &tgd, 1, 0);
    EXPECT_EQ(out.Text(),
              "\n#### GPSbEph: Warning -> SAT: G07 [2009-04-01 02:01:40.0] -> DT =  2.03 h "
              "PARAMETER TO BIG [>2h] ####\n     Continuing GPSbEph ... \n\n");
  }
  Captured out(std::cout);
  eph.CalcSatPosition(7, t, t, pos, &tgd, 0, 0);
  const mjd atLimit(kDay, 7200);
  eph.CalcSatPosition(7, atLimit, atLimit, pos, &tgd, 1, 0);
  EXPECT_EQ(out.Text(), "");
}

TEST(GPSbEph, EpochFarFromTheRecordIsWarnedOfAlways) {
  const std::string warning =
      "\n#### Zenta: Warning -> CALCULATION EPOCH NOT IN EPOCH INTERVAL OF "
      "GPS NAVIGATION ORBIT ORBIT FILE! ####\n     Continuing Zenta ... \n\n";
  GPSbEph eph = Ellipse(5153.6, 0.01, 0);
  for (const long double sign : {1.0L, -1.0L}) {
    Captured err(std::cerr);
    PositionAt(eph, sign * 8000);
    EXPECT_EQ(err.Text(), "");
    PositionAt(eph, sign * 8001);
    EXPECT_EQ(err.Text(), warning);
  }
}

// ---------------------------------------------------------------- orbit

TEST(GPSbEph, CircleHasEccentricAnomalyOfTheMeanOne) {
  EXPECT_EQ(GPSbEphPeer::EccentricAnomaly(1.25L, 0), 1.25L);
  EXPECT_EQ(GPSbEphPeer::EccentricAnomaly(0, 0), 0.0L);
  // In the plane x, y the true anomaly is the polar angle.
  GPSbEph eph = OneRecord();
  eph.gdata.data(0, 6) = 1.25L;
  eph.gdata.data(0, 10) = 5000;
  const xyzt pos = PositionAt(eph, 0);
  EXPECT_TRUE(Near(std::atan2(pos.GetY(), pos.GetX()), 1.25L, 1e-15L));
  EXPECT_TRUE(Near(pos.GetLength(), 25e6L, 1e-9L));
}

TEST(GPSbEph, EccentricAnomalySolvesKeplersEquation) {
  for (const long double e : {0.001L, 0.02L, 0.3L, 0.6L}) {
    for (long double M = -6; M < 6; M += 0.37L) {
      const long double E = GPSbEphPeer::EccentricAnomaly(M, e);
      EXPECT_TRUE(Near(E - e * std::sin(E), M, 1e-14L)) << e;
    }
  }
}

TEST(GPSbEphDeathTest, KeplerIterationThatDoesNotSettleEndsTheProgram) {
  EXPECT_ENDS(GPSbEphPeer::EccentricAnomaly(1, 2.5L),
              "\\*\\*\\*\\* GPSbEph: Error -> TO MANY ITERATIONS \\(E\\) \\*\\*\\*\\*");
  // Near 1 the passes approach the root too slowly.
  EXPECT_ENDS(GPSbEphPeer::EccentricAnomaly(1e-3L, 0.9999L), "TO MANY ITERATIONS \\(E\\)");
}

// The ellipse by its axes: centre - focus, semi-minor axis, no true anomaly.
TEST(GPSbEph, KeplerOrbitFollowsTheEllipse) {
  for (const double e : {0.0, 0.01, 0.2, 0.5}) {
    for (int step = -8; step <= 8; ++step) {
      const long double E = 0.3L * step + 0.1L;
      const long double a = 5153.6L * 5153.6L;
      const long double b = a * std::sqrt(1.0L - static_cast<long double>(e) * e);
      // A double holds the mean anomaly to 4e-16 rad, 12 nm of the orbit.
      GPSbEph eph = Ellipse(5153.6, e, static_cast<double>(E - e * std::sin(E)));
      const xyz inPlane(a * (std::cos(E) - e), b * std::sin(E), 0);
      const xyz truth = inPlane.RotateZ(-1.1).RotateX(0.96).RotateZ(0.7);
      const xyzt pos = PositionAt(eph, 0);
      EXPECT_LT((truth - pos).GetLength(), 1e-6L) << e << " " << step;
    }
  }
}

// Half a unit in the last of 53 bits is some tenths of a nanometre of the orbit. Anomalies of less
// than a right angle: the others have pi in double precision added.
TEST(GPSbEph, TrueAnomalyIsThatOfACosineInDoublePrecision) {
  constexpr double sqrtA = 5153.6;
  constexpr double e = 0.3;
  const long double a = static_cast<long double>(sqrtA) * sqrtA;
  long double apart = 0;
  for (const double M : {0.1, 0.25, 0.4, 0.55, 0.7, 0.85}) {
    const long double E = GPSbEphPeer::EccentricAnomaly(M, e);
    const auto place = [&](long double cosine) {
      const long double nu = std::atan2(std::sqrt((1.0L - e) * (1.0L + e)) * std::sin(E), cosine);
      const long double r = a * (1.0L - e * std::cos(E));
      return xyz(r * std::cos(nu), r * std::sin(nu), 0).RotateZ(-1.1).RotateX(0.96).RotateZ(0.7);
    };
    GPSbEph eph = Ellipse(sqrtA, e, M);
    const xyzt pos = PositionAt(eph, 0);
    const long double cosine = std::cos(E) - e;
    EXPECT_LT((place(static_cast<double>(cosine)) - pos).GetLength(), 1e-10L) << M;
    apart = std::max(apart, (place(cosine) - pos).GetLength());
  }
  EXPECT_GT(apart, 3e-10L);
}

TEST(GPSbEph, OrbitClosesAfterItsPeriod) {
  GPSbEph eph = Ellipse(1500.0, 0.3, 0.4); // 2 250 km, so that the period is within 8000 s
  const long double a = 1500.0L * 1500.0L;
  const long double period = 2 * kPi * std::sqrt(a * a * a / kGM);
  ASSERT_LT(period, 8000);
  EXPECT_LT(Distance(PositionAt(eph, 0), PositionAt(eph, period)), 1e-6L);
  EXPECT_LT(Distance(PositionAt(eph, -100), PositionAt(eph, period - 100)), 1e-6L);
}

// Acceleration from differences of the position against gravity, in the inertial frame.
TEST(GPSbEph, KeplerOrbitObeysGravity) {
  GPSbEph eph = Ellipse(5153.6, 0.2, 0.4);
  const long double h = 10;
  for (long double s = -3000; s <= 3000; s += 500) {
    const xyzt before = PositionAt(eph, s - h), at = PositionAt(eph, s),
               after = PositionAt(eph, s + h);
    const long double r = at.GetLength();
    const long double tolerance = 1e-6L; // of 0.5 m/s2; the fourth derivative is 1e-8 of it
    EXPECT_TRUE(Near((after.GetX() - 2 * at.GetX() + before.GetX()) / (h * h),
                     -kGM * at.GetX() / (r * r * r), tolerance));
    EXPECT_TRUE(Near((after.GetY() - 2 * at.GetY() + before.GetY()) / (h * h),
                     -kGM * at.GetY() / (r * r * r), tolerance));
    EXPECT_TRUE(Near((after.GetZ() - 2 * at.GetZ() + before.GetZ()) / (h * h),
                     -kGM * at.GetZ() / (r * r * r), tolerance));
  }
}

// IS-GPS-200, 20.3.3.3.3.1: the term is also -2 r v / c2 of the inertial motion.
TEST(GPSbEph, RelativisticTermIsThatOfTheMotion) {
  GPSbEph eph = Ellipse(5153.6, 0.02, 0.9);
  for (long double s = -3000; s <= 3000; s += 1000) {
    const long double h = 0.5;
    const xyzt at = PositionAt(eph, s);
    const long double term = eph.Relativity;
    EXPECT_EQ(at.GetT(), term); // no other clock terms here
    const xyzt before = PositionAt(eph, s - h), after = PositionAt(eph, s + h);
    const long double rv =
        (at.GetX() * (after.GetX() - before.GetX()) + at.GetY() * (after.GetY() - before.GetY()) +
         at.GetZ() * (after.GetZ() - before.GetZ())) /
        (2 * h);
    EXPECT_TRUE(Near(term, -2 * rv / (kC * kC), 1e-15L));
    EXPECT_GT(std::fabs(term), 1e-10L);
  }
}

TEST(GPSbEph, ClockIsAPolynomialFromTheRecordAndTheGroupDelayStaysOut) {
  GPSbEph eph = Ellipse(5153.6, 0, 0);
  eph.gdata.data(0, 0) = 1e-4L;
  eph.gdata.data(0, 1) = -2e-11L;
  eph.gdata.data(0, 2) = 3e-18L;
  eph.gdata.data(0, 25) = -1.7e-8L;
  xyzt pos;
  long double tgd = 0;
  const mjd t(kDay, 1000);
  eph.CalcSatPosition(7, t, t, pos, &tgd, 0, 0);
  EXPECT_TRUE(Near(pos.GetT(), 1e-4L - 2e-8L + 3e-12L, 1e-22L));
  EXPECT_EQ(tgd, -1.7e-8L);
}

// The user algorithm of IS-GPS-200, table 20-IV, in double precision and by another way: Newton's
// method, the half-angle formula, and rotations one after the other.
TEST(GPSbEph, RealRecordAgreesWithIsGps200) {
  GPSbEph eph = ReadText(kEndOfHeader + kRealRecord);
  for (const double tk : {-7000.0, -1234.5, 0.0, 900.0, 6999.0}) {
    const double A = 5153.63668251 * 5153.63668251, e = 0.00904141401406;
    const double M =
        -1.72729451478 + tk * (std::sqrt(3.986005e14 / (A * A * A)) + 4.75376937814e-9);
    double E = M;
    for (int i = 0; i < 20; ++i) E -= (E - e * std::sin(E) - M) / (1 - e * std::cos(E));
    const double nu =
        2 * std::atan2(std::sqrt(1 + e) * std::sin(E / 2), std::sqrt(1 - e) * std::cos(E / 2));
    const double phi = nu + 2.76376221774;
    const double s2 = std::sin(2 * phi), c2 = std::cos(2 * phi);
    const double u = phi + 1.03265047073e-5 * s2 + 1.50687992573e-6 * c2;
    const double r = A * (1 - e * std::cos(E)) + 29.59375 * s2 + 173.34375 * c2;
    const double i =
        0.941899917981 - 1.32148361698e-10 * tk - 7.26431608200e-8 * s2 - 1.56462192535e-7 * c2;
    const double node =
        0.593659833961 + (-8.04747823935e-9 - 7.2921151467e-5) * tk - 7.2921151467e-5 * 259200.0;
    const xyz truth = xyz(r, 0, 0).RotateZ(u).RotateX(i).RotateZ(node);
    const double clock = 1.53949949890e-4 - 4.54747350886e-13 * tk -
                         4.442807633e-10 * e * 5153.63668251 * std::sin(E);
    const xyzt pos = PositionAt(eph, tk, 2);
    EXPECT_LT((truth - pos).GetLength(), 1e-6L) << tk;
    EXPECT_TRUE(Near(pos.GetT(), clock, 1e-18L)) << tk;
  }
}

TEST(GPSbEph, SpoiltElementsEndTheEvaluationOrTheProgram) {
  const long double inf = std::numeric_limits<long double>::infinity();
  const long double nan = std::numeric_limits<long double>::quiet_NaN();
  const xyz rec(4e6L, 1e6L, 4.8e6L);
  for (long column = 0; column < 28; ++column) {
    for (const long double value : {0.0L, -5153.6L, 1e30L, 1e300L, inf, -inf, nan}) {
      if (column == 8 && !std::isnan(value) && value != 0) continue; // see Kepler's equation
      GPSbEph eph = Ellipse(5153.6, 0.01, 0.5);
      eph.gdata.data(0, column) = value;
      xyzt pos;
      long double tgd = 0;
      const mjd t(kDay, 100);
      Captured out(std::cout);
      Captured err(std::cerr);
      eph.CalcSatPosition(7, t, t, rec, pos, &tgd, 0, 0);
    }
  }
  GPSbEph zero = Ellipse(0, 0.01, 0.5);
  EXPECT_TRUE(std::isnan(PositionAt(zero, 10).GetX()));
  // The square of a root is positive, whatever sign the root has.
  GPSbEph negative = Ellipse(-5153.6, 0.01, 0.5);
  GPSbEph positive = Ellipse(5153.6, 0.01, 0.5);
  EXPECT_LT(Distance(PositionAt(negative, 10), PositionAt(positive, 10)), 1e-12L);
}

// ---------------------------------------------------------------- travel time

TEST(GPSbEph, TravelTimeIsThatOfTheRange) {
  GPSbEph eph = ReadText(kEndOfHeader + kRealRecord);
  const mjd t(kDay, 600);
  const xyz rec(-2.4e6L, -4.7e6L, 3.5e6L);
  xyzt pos;
  long double tgd = 0;
  const long double range = eph.CalcSatPosition(2, t, t, rec, pos, &tgd, 0, 0);
  EXPECT_TRUE(Near(tgd, -1.72294676304e-8L, 1e-23L));
  // The receiver waits in the inertial frame while the Earth turns under the signal.
  EXPECT_TRUE(Near((eph.ps - pos).GetLength(), range, 1e-9L));
  const long double turned =
      std::atan2(eph.ps.GetY(), eph.ps.GetX()) - std::atan2(rec.GetY(), rec.GetX());
  EXPECT_TRUE(Near(turned, kOmega * range / kC, 1e-15L));
  EXPECT_EQ(eph.ps.GetZ(), rec.GetZ());
  // The satellite is where it was the travel time ago.
  EXPECT_LT(Distance(pos, PositionAt(eph, 600 - range / kC, 2)), 1e-5L);
  // The Sagnac correction is the first-order effect of the same turn.
  const xyzt still = PositionAt(eph, 600 - range / kC, 2);
  const long double sagnac = kOmega / kC * (still.GetX() * rec.GetY() - still.GetY() * rec.GetX());
  EXPECT_TRUE(Near(range, (rec - still).GetLength() + sagnac, 2e-3L));
}

TEST(GPSbEph, ObservedRangeGivesTheTravelTime) {
  GPSbEph eph = ReadText(kEndOfHeader + kRealRecord);
  const mjd t(kDay, 600);
  const xyz rec(-2.4e6L, -4.7e6L, 3.5e6L);
  xyzt iterated, pos;
  long double tgd = 0;
  gnssobs obs;
  obs.obs = eph.CalcSatPosition(2, t, t, rec, iterated, &tgd, 0, 0);
  const xyz turned = eph.ps;
  const long double range = eph.CalcSatPosition(2, t, t, rec, pos, obs, &tgd, 0, 0);
  EXPECT_TRUE(Near(range, obs.obs, 1e-5L));
  EXPECT_LT((turned - eph.ps).GetLength(), 1e-5L);
  EXPECT_LT(Distance(iterated, pos), 1e-5L);
  for (const long double nonsense :
       {std::numeric_limits<long double>::quiet_NaN(), 1e30L, -1e30L}) {
    obs.obs = nonsense;
    EXPECT_EQ(eph.CalcSatPosition(2, t, t, rec, pos, obs, &tgd, 0, 0), -1.0L);
  }
}

TEST(GPSbEph, TravelTimeThatDoesNotSettleIsWarnedOf) {
  GPSbEph eph = Ellipse(5153.6, 0, 0.5);
  eph.gdata.data(0, 5) = 20; // [rad/s]: faster than its own signal
  const mjd t(kDay, 100);
  xyzt pos;
  long double tgd = 0;
  Captured out(std::cout);
  const long double range = eph.CalcSatPosition(7, t, t, xyz(6.4e6L, 0, 0), pos, &tgd, 0, 0);
  EXPECT_EQ(out.Text(), "\n#### GPSbEph: Warning -> GPSbEph::CalcSatPosition():      TO MANY "
                        "ITERATIONS: > 10!! ####\n     Continuing GPSbEph ... \n\n");
  EXPECT_TRUE(Near(range, (eph.ps - pos).GetLength(), 1e-9L));
}

TEST(GPSbEph, ParameterIsPrintedInScientificNotation) {
  Captured out(std::cout);
  GPSbEphPeer::PrintParameter("sqrt(A) ", 5153.5L);
  EXPECT_EQ(out.Text(), "sqrt(A) 5.153500000000000e+03\n");
}

// ---------------------------------------------------------------- recorded files

namespace {

bool IsListed(const GPSbEph& eph, unsigned short prn) {
  for (long i = 0; i < eph.GetSatList().NRow(); ++i)
    if (eph.GetSatList()(i) == prn) return true;
  return false;
}

// Distances [m] of the broadcast from the precise positions of one day, sorted. Epochs farther
// than two hours from their record are no test of the orbit.
std::vector<long double> Differences(const char* broadcast, const char* precise) {
  GPSbEph eph;
  eph.SetFile(RealData(broadcast).c_str());
  eph.ReadFile();
  GNSSpEph truth;
  truth.SetFile(RealData(precise).c_str());
  truth.ReadFile();
  std::vector<long double> differences;
  for (long record = 0; record < truth.sat.NRow(); ++record) {
    const auto prn = static_cast<unsigned short>(truth.GetSat(record));
    const xyzt& position = truth.GetSatPos(record);
    if (position.GetLength() < 1 || !IsListed(eph, prn)) continue;
    const mjd& t = truth.GetMJD(record / truth.GetNSat());
    if (std::fabs(t - eph.GetMJD(GPSbEphPeer::GetDataIndex(eph, prn, t))) > 7200) continue;
    xyzt pos;
    long double tgd = 0;
    eph.CalcSatPosition(prn, t, t, pos, &tgd, 0, 0);
    differences.push_back(Distance(position, pos));
  }
  std::sort(differences.begin(), differences.end());
  return differences;
}

} // namespace

TEST(GPSbEph, BroadcastIsNearThePreciseOrbit2009) {
  SKIP_WITHOUT("orbits-2009-091/brdc0910.09n");
  const auto differences =
      Differences("orbits-2009-091/brdc0910.09n", "orbits-2009-091/esa15253.sp3");
  ASSERT_GT(differences.size(), 2000U);
  RecordProperty("median", std::to_string(differences[differences.size() / 2]));
  EXPECT_LT(differences[differences.size() / 2], 2.0L);
  EXPECT_LT(differences[differences.size() * 95 / 100], 10.0L);
}

TEST(GPSbEph, BroadcastIsNearThePreciseOrbit2010) {
  SKIP_WITHOUT("2010-001-albh-gras/ALBH0010.10N");
  const auto differences =
      Differences("2010-001-albh-gras/ALBH0010.10N", "2010-001-albh-gras/igs15645.sp3");
  ASSERT_GT(differences.size(), 500U);
  RecordProperty("median", std::to_string(differences[differences.size() / 2]));
  EXPECT_LT(differences[differences.size() / 2], 2.0L);
  EXPECT_LT(differences[differences.size() * 95 / 100], 10.0L);
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

TEST(GPSbEph, RecordedFilesAreReadWhole) {
  for (const char* file :
       {"2010-001-albh-gras/ALBH0010.10N", "2011-001-algo/ALGO0010.11N",
        "2013-166-gmsd/gmsd1660.13n", "2014-062-dsrc/brdc0620.14n", "2024-010-dgar/brdc0100.24n",
        "orbits-2009-091/brdc0910.09n", "quirks/bjfs2210.08n", "quirks/brdc0590.11n",
        "quirks/nw1_0160.08n", "teqc/LRZ-011m00.14N"}) {
    SKIP_WITHOUT(file);
    GPSbEph eph;
    eph.SetFile(RealData(file).c_str());
    Captured out(std::cout);
    eph.ReadFile();
    EXPECT_EQ(out.Text(), "") << file;
    EXPECT_EQ(8 * static_cast<long>(eph.GetNSat()), RecordLines(RealData(file))) << file;
    EXPECT_GT(eph.GetNSat(), 1U) << file;
  }
}
