#include "teqc/CompactTEQC.h"

#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"

#include <cmath>
#include <string>
#include <vector>

namespace {

const std::string kHeader = "COMPACT2\nT_SAMP    30.0000\nSTART_TIME_MJD  55844.250000000\n";

CompactTEQC Read(const std::string& text) {
  const ScratchFolder folder;
  CompactTEQC file;
  file.SetFile(folder.Write("test.mp1", text).c_str());
  file.ReadFile();
  return file;
}
CompactTEQC ReadRecorded(const std::string& name) {
  CompactTEQC file;
  file.SetFile(RealData(name).c_str());
  file.ReadFile();
  return file;
}

std::vector<int> Satellites(const CompactTEQC& file) {
  std::vector<int> numbers;
  for (long k = 0; k < file.NObs(); ++k) numbers.push_back(file.GetSat(k));
  return numbers;
}
std::vector<double> Values(const CompactTEQC& file) {
  std::vector<double> values;
  for (long k = 0; k < file.NObs(); ++k) values.push_back(file.GetObs(k));
  return values;
}
/// Seconds of epoch e behind the start of kHeader.
long double Seconds(const CompactTEQC& file, long e) {
  return file.GetEpoch(e) - mjd(55844, 21600);
}

using Numbers = std::vector<int>;
using Doubles = std::vector<double>;

} // namespace

TEST(CompactTEQC, ValuesAreStoredEpochByEpoch) {
  const CompactTEQC file = Read(kHeader + " 2 G05 R12\n   0.145    -0.218  \n"
                                          " 1 E11\n  12.500  \n");
  EXPECT_EQ(file.NEph(), 2);
  EXPECT_EQ(file.NObs(), 3);
  EXPECT_EQ(file.GetInterval(), 30.0F);
  EXPECT_EQ(Satellites(file), (Numbers{5, 112, 211}));
  EXPECT_EQ(Values(file), (Doubles{0.145, -0.218, 12.5}));
  EXPECT_EQ(file.GetNSat(0), 2);
  EXPECT_EQ(file.GetNSat(1), 1);
  EXPECT_TRUE(Near(Seconds(file, 0), 0, 1e-9L));
  EXPECT_TRUE(Near(Seconds(file, 1), 30, 1e-9L));
}

TEST(CompactTEQC, HeaderNumbersFollowTheirLabels) {
  const CompactTEQC file =
      Read("COMPACT2\nT_SAMP15.0\nSTART_TIME_MJD55844.25\n0\n1 G05\n   0.500  \n");
  EXPECT_EQ(file.GetInterval(), 15.0F);
  ASSERT_EQ(file.NEph(), 1);
  EXPECT_TRUE(Near(Seconds(file, 0), 15, 1e-9L));
}

TEST(CompactTEQC, MinusOneRepeatsTheLastListAlsoAcrossEpochsWithoutData) {
  const CompactTEQC file = Read(kHeader + "2 G05 R12\n   1.000     2.000  \n"
                                          "-1\n   3.000     4.000  \n"
                                          "0\n"
                                          " 0\n"
                                          "-1\n   5.000     6.000  \n"
                                          "1 G31\n   7.000  \n"
                                          "-1\n   8.000  \n");
  EXPECT_EQ(file.NEph(), 5);
  EXPECT_EQ(Satellites(file), (Numbers{5, 112, 5, 112, 5, 112, 31, 31}));
  EXPECT_EQ(Values(file), (Doubles{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(file.GetNSat(2), 2);
  EXPECT_EQ(file.GetNSat(4), 1);
}

TEST(CompactTEQC, ZeroAdvancesTheTimeWithoutAnEpoch) {
  const CompactTEQC file = Read(kHeader + "0\n1 G05\n   1.000  \n0\n0\n-1\n   2.000  \n0\n");
  ASSERT_EQ(file.NEph(), 2);
  EXPECT_EQ(file.NObs(), 2);
  EXPECT_TRUE(Near(Seconds(file, 0), 30, 1e-9L));
  EXPECT_TRUE(Near(Seconds(file, 1), 120, 1e-9L));
}

TEST(CompactTEQC, TensDigitOfASatelliteMayBeBlank) {
  const CompactTEQC file =
      Read(kHeader + "4 R 7 G 9 E 1 G19\n   1.000     2.000     3.000     4.000  \n");
  EXPECT_EQ(Satellites(file), (Numbers{107, 9, 201, 19}));
}

TEST(CompactTEQC, SatellitesAreListedOnceAscending) {
  const CompactTEQC file = Read(kHeader + "3 R12 G31 G05\n   1.000     2.000     3.000  \n"
                                          "2 E02 G31\n   4.000     5.000  \n");
  ASSERT_EQ(file.GetSatList().NRow(), 4);
  EXPECT_EQ(file.GetSatList()(0), 5);
  EXPECT_EQ(file.GetSatList()(1), 31);
  EXPECT_EQ(file.GetSatList()(2), 112);
  EXPECT_EQ(file.GetSatList()(3), 202);
}

TEST(CompactTEQC, NinthCharacterOfAFieldIsTheSlipFlag) {
  const CompactTEQC file = Read(kHeader + "4 G01 G02 G03 G04\n"
                                          "   0.100S    0.200     0.300 S   0.400\n");
  EXPECT_EQ(Values(file), (Doubles{0.1, 0.2, 0.3, 0.4}));
  EXPECT_FALSE(file.GetSlip(0));
  EXPECT_TRUE(file.GetSlip(1));
  EXPECT_TRUE(file.GetSlip(2));
  EXPECT_TRUE(file.GetSlip(3)); // behind the end of the line
}

TEST(CompactTEQC, FieldsBehindTheEndOfTheLineAreZero) {
  const CompactTEQC file =
      Read(kHeader + "3 G01 G02 G03\n   0.100  \n-1\n\n-1\n             0.500\n");
  EXPECT_EQ(Values(file), (Doubles{0.1, 0, 0, 0, 0, 0, 0, 0.5, 0}));
}

TEST(CompactTEQC, LineEndsOfEitherKindReadTheSame) {
  const std::string data = "2 G05 R12\n   1.000     2.000  \n0\n-1\n   3.000     4.000  \n";
  std::string crlf;
  for (const char c : kHeader + data) crlf += c == '\n' ? "\r\n" : std::string(1, c);
  const CompactTEQC file = Read(crlf);
  EXPECT_EQ(Satellites(file), (Numbers{5, 112, 5, 112}));
  EXPECT_EQ(Values(file), (Doubles{1, 2, 3, 4}));
  EXPECT_TRUE(file.GetSlip(1));
}

TEST(CompactTEQC, OtherHeaderLinesAndBlankLinesArePassedOver) {
  const CompactTEQC file = Read("  COMPACT2  by hand\n# remark\nT_SAMP 15.0\n# remark\n"
                                "START_TIME_MJD 55844.25\n\n  \n1 G05\n   1.000  \n");
  EXPECT_EQ(file.GetInterval(), 15.0F);
  EXPECT_EQ(Values(file), (Doubles{1}));
}

TEST(CompactTEQC, DataEndAtTheFirstLineWithoutAWholeNumber) {
  const CompactTEQC file = Read(kHeader + "1 G05\n   1.000  \nG05\n1 G06\n   2.000  \n");
  EXPECT_EQ(Satellites(file), (Numbers{5}));
  const CompactTEQC overflow = Read(kHeader + "1 G05\n   1.000  \n99999999999 G05\n   1.000  \n");
  EXPECT_EQ(overflow.NEph(), 1);
}

TEST(CompactTEQC, PlusAndMinusSignsOfTheCount) {
  const CompactTEQC file = Read(kHeader + "+1 G05\n   1.000  \n-7\n   2.000  \n");
  EXPECT_EQ(Values(file), (Doubles{1, 2}));
  EXPECT_EQ(Read(kHeader + "+-1 G05\n   1.000  \n").NEph(), 0);
}

TEST(CompactTEQC, RepetitionBeforeAnyListIsAnEpochOfNoValues) {
  const CompactTEQC file = Read(kHeader + "-1\n   9.000  \n1 G05\n   1.000  \n");
  EXPECT_EQ(file.NEph(), 2);
  EXPECT_EQ(file.GetNSat(0), 0);
  EXPECT_EQ(Values(file), (Doubles{1}));
}

TEST(CompactTEQC, LastValuesLineMayBeMissing) {
  const CompactTEQC file = Read(kHeader + "2 G05 G06\n   1.000     2.000  \n-1");
  EXPECT_EQ(file.NEph(), 2);
  EXPECT_EQ(Values(file), (Doubles{1, 2, 0, 0}));
}

TEST(CompactTEQC, NothingIsReadBehindALineOfMoreThan255Characters) {
  for (const int length : {255, 256}) {
    std::string values = "   1.000  ";
    values.resize(static_cast<std::size_t>(length), ' ');
    const CompactTEQC file = Read(kHeader + "1 G05\n" + values + "\n-1\n   2.000  \n");
    EXPECT_EQ(file.NEph(), length == 255 ? 2 : 1);
    EXPECT_EQ(file.GetObs(0), 1);
  }
}

TEST(CompactTEQC, FileCutAnywhereIsReadAsFarAsItGoes) {
  const std::string text =
      kHeader + "2 G05 R12\n   1.000     2.000  \n0\n-1\n   3.000     4.000  \n";
  const std::size_t list = text.find("2 G05");
  for (std::size_t length = 8; length <= text.size(); ++length) {
    if (length > list && length < list + 9) continue; // within the list: reported
    const CompactTEQC file = Read(text.substr(0, length));
    EXPECT_LE(file.NObs(), 4);
    EXPECT_EQ(file.NObs(), 2 * file.NEph());
  }
}

TEST(CompactTEQC, MissingLabelsLeaveNoData) {
  EXPECT_EQ(Read("COMPACT2\nSTART_TIME_MJD 55844\n1 G05\n   1.000  \n").NEph(), 0);
  EXPECT_EQ(Read("COMPACT2\nT_SAMP 30\n1 G05\n   1.000  \n").NEph(), 0);
  EXPECT_EQ(Read("COMPACT2").NObs(), 0);
  EXPECT_EQ(Read("COMPACT2").GetSatList().NRow(), 0);
}

TEST(CompactTEQC, SecondReadReplacesTheFirst) {
  const ScratchFolder folder;
  CompactTEQC file;
  file.SetFile(folder.Write("a", kHeader + "2 G05 R12\n   1.000     2.000  \n").c_str());
  file.ReadFile();
  file.SetFile(folder.Write("b", kHeader + "1 G07\n   3.000  \n").c_str());
  file.ReadFile();
  EXPECT_EQ(file.NEph(), 1);
  EXPECT_EQ(Satellites(file), (Numbers{7}));
  EXPECT_EQ(file.GetSatList().NRow(), 1);
}

TEST(CompactTEQCDeathTest, MissingFileEndsTheProgram) {
  const ScratchFolder folder;
  CompactTEQC file;
  EXPECT_ENDS(file.SetFile(folder.Name("absent").c_str()),
              "\n\\*\\*\\*\\* Zenta: Error -> TEQC COMPACT FILE DOES NOT EXISTS! \\*\\*\\*\\*\n"
              "     Exiting Zenta ... \n\n");
}

TEST(CompactTEQCDeathTest, FirstLineWithoutTheVersionEndsTheProgram) {
  const char* message = "Zenta: Error -> TEQC COMPACT FILE IS NOT WRITTEN IN VERSION COMPACT2! ";
  EXPECT_ENDS(Read(""), message);
  EXPECT_ENDS(Read("COMPACT\nT_SAMP 30\nSTART_TIME_MJD 55844\n"), message);
  EXPECT_ENDS(Read("\n" + kHeader), message);
  const ScratchFolder folder;
  EXPECT_ENDS(
      {
        CompactTEQC file;
        file.SetFile(folder.Path().c_str());
        file.ReadFile();
      },
      message);
}

TEST(CompactTEQCDeathTest, ListsThatDoNotFitAreReportedWithTheFile) {
  const char* message = "SATELLITE LIST NOT VALID IN TEQC COMPACT FILE .*test.mp1!";
  EXPECT_ENDS(Read(kHeader + "2000000000 G05\n   1.000  \n"), message);
  EXPECT_ENDS(Read(kHeader + "2 G05\n   1.000     2.000  \n"), message);
  EXPECT_ENDS(Read(kHeader + "1 E\xFF\xFF\n   1.000  \n"), message);
  EXPECT_ENDS(Read(kHeader + "1 E:5\n   1.000  \n"), message); // ':' is ten: 305
  EXPECT_ENDS(Read(kHeader + "1 G  \n   1.000  \n"), message);
}

TEST(CompactTEQC, NumbersUpTo299AreTaken) {
  EXPECT_EQ(Satellites(Read(kHeader + "1 E99\n   1.000  \n")), (Numbers{299}));
}

TEST(CompactTEQCDeathTest, TimesOutOfRangeAreReported) {
  EXPECT_ENDS(Read("COMPACT2\nT_SAMP 1e30\nSTART_TIME_MJD 55844\n1 G05\n   1.000  \n"),
              "SAMPLING INTERVAL NOT VALID IN TEQC COMPACT FILE");
  EXPECT_ENDS(Read("COMPACT2\nT_SAMP 30\nSTART_TIME_MJD 1e30\n1 G05\n   1.000  \n"),
              "START TIME NOT VALID IN TEQC COMPACT FILE");
  EXPECT_ENDS(Read("COMPACT2\nT_SAMP 30\nSTART_TIME_MJD -5\n1 G05\n   1.000  \n"),
              "START TIME NOT VALID IN TEQC COMPACT FILE");
}

// ---- recorded files

TEST(CompactTEQCRecorded, ListsRepeatedInFull) {
  SKIP_WITHOUT("teqc/LRZ-011m18.azi");
  const CompactTEQC file = ReadRecorded("teqc/LRZ-011m18.azi");
  EXPECT_EQ(file.NEph(), 300);
  EXPECT_EQ(file.GetInterval(), 1.0F);
  EXPECT_EQ(file.GetSat(2), 4); // in the order of the file, which is not that of the numbers
  EXPECT_EQ(file.GetObs(0), 128.312);
  EXPECT_EQ(file.GetObs(1), -167.043);
  // 56668.513043981 d is 12:18:47 less 0.04 ms; the last epoch is 299 s later
  EXPECT_TRUE(Near(file.GetEpoch(0) - mjd(56668, 44327), 0, 1e-4L));
  EXPECT_TRUE(Near(file.GetEpoch(299) - file.GetEpoch(0), 299, 1e-9L));
}

TEST(CompactTEQCRecorded, ListsRepeatedByMinusOne) {
  SKIP_WITHOUT("teqc/LRZ-011m18.sn1");
  const CompactTEQC azimuth = ReadRecorded("teqc/LRZ-011m18.azi");
  const CompactTEQC strength = ReadRecorded("teqc/LRZ-011m18.sn1");
  ASSERT_EQ(strength.NEph(), 300);
  ASSERT_EQ(strength.NObs(), azimuth.NObs());
  EXPECT_EQ(Satellites(strength), Satellites(azimuth));
  for (const double value : Values(strength)) EXPECT_TRUE(value >= 20 && value <= 60) << value;
}

TEST(CompactTEQCRecorded, FileOfEpochsWithoutData) {
  SKIP_WITHOUT("teqc/LRZ-011m18.iod");
  const CompactTEQC file = ReadRecorded("teqc/LRZ-011m18.iod");
  EXPECT_EQ(file.NEph(), 0);
  EXPECT_EQ(file.NObs(), 0);
}

TEST(CompactTEQCRecorded, MultipathOfTwoSystems) {
  SKIP_WITHOUT("derived/cagz2830.mp1");
  for (const auto& [name, rms] :
       {std::pair{"derived/cagz2830.mp1", 0.42}, {"derived/cagz2830.mp2", 0.48}}) {
    const CompactTEQC file = ReadRecorded(name);
    EXPECT_EQ(file.NObs(), 43965);
    double squares = 0;
    for (const double value : Values(file)) squares += value * value;
    EXPECT_NEAR(std::sqrt(squares / file.NObs()), rms, 0.005);
    // 29 GPS satellites from G02 on, 23 GLONASS
    ASSERT_EQ(file.GetSatList().NRow(), 52);
    EXPECT_EQ(file.GetSatList()(0), 2);
    EXPECT_EQ(file.GetSatList()(51), 124);
    EXPECT_TRUE(Near(file.GetEpoch(0) - mjd(55844, 0), 0, 1e-6L));
  }
}

TEST(CompactTEQCRecordedDeathTest, ObservationFileIsRefused) {
  SKIP_WITHOUT("teqc/LRZ-011m18.14O");
  EXPECT_ENDS(ReadRecorded("teqc/LRZ-011m18.14O"), "NOT WRITTEN IN VERSION COMPACT2!");
}
