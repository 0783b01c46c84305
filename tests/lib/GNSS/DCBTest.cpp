#include "GNSS/DCB.h"

#include "GNSS/TimeConverse.h"
#include "GNSS/ymdhms.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

struct DCBPeer {
  static short Count(const DCB& dcb) { return dcb.nsat; }
  static short Sat(const DCB& dcb, long i) { return dcb.sat(i); }
  static long double Val(const DCB& dcb, long i) { return dcb.VAL(i); }
  static mjd Start(const DCB& dcb) { return dcb.StartEpoch; }
  static mjd End(const DCB& dcb) { return dcb.EndEpoch; }
  static bool IsSatelliteLine(const char* line) { return DCB::IsSatelliteLine(line); }
  static short ParseSatelliteNum(const char* line) { return DCB::ParseSatelliteNum(line); }
};

namespace {

const std::string kHeader = "TITLE\n\n"
                            "PRN / STATION NAME        VALUE (NS)  RMS (NS)\n"
                            "***   ****************    *****.***   *****.***\n";

//                         1         2         3         4
//                12345678901234567890123456789012345678901234567
const char* kG05 = "G05                          -0.707       0.012\n";
const char* kR05 = "R05                           1.250       0.034\n";

/// A reader of \p text, in a file of that name in a folder without other digits or suffixes.
DCB Read(const std::string& text, const std::string& name = "bias.txt") {
  const ScratchFolder folder;
  DCB dcb;
  dcb.SetFile(folder.Write(name, text).c_str());
  dcb.ReadFile();
  return dcb;
}

void ExpectValid(const std::string& name, const ymdhms& start, const ymdhms& end) {
  const DCB dcb = Read("", name);
  EXPECT_TRUE(DCBPeer::Start(dcb) == ymdhms2mjd(start)) << name;
  EXPECT_TRUE(Near(DCBPeer::End(dcb) - ymdhms2mjd(end), 0, 1e-9L)) << name;
}

void ExpectValidAlways(const DCB& dcb) {
  EXPECT_TRUE(DCBPeer::Start(dcb) == mjd(44250, 0));
  EXPECT_TRUE(DCBPeer::End(dcb) == mjd(85000, 0));
}

TEST(DCB, NewOneHasNoSatellites) {
  EXPECT_EQ(DCBPeer::Count(DCB()), 0);
  Captured err(std::cerr);
  EXPECT_EQ(DCB().GetDCBVAL(1), 0);
}

TEST(DCB, NoHeaderLineMeansNoSatellites) {
  EXPECT_EQ(DCBPeer::Count(Read(std::string(kG05) + kR05)), 0);
}

TEST(DCB, GpsAndGlonassLinesGiveTheirNumbers) {
  const DCB dcb = Read(kHeader + kG05 + kR05);
  ASSERT_EQ(DCBPeer::Count(dcb), 2);
  EXPECT_EQ(DCBPeer::Sat(dcb, 0), 5);
  EXPECT_EQ(DCBPeer::Sat(dcb, 1), 105);
}

TEST(DCB, NanosecondsAreStoredInSeconds) {
  const DCB dcb = Read(kHeader + kG05 + kR05);
  EXPECT_TRUE(Near(DCBPeer::Val(dcb, 0), -0.707e-9L, 1e-24L));
  EXPECT_TRUE(Near(dcb.GetDCBVAL(105), 1.25e-9L, 1e-24L));
  EXPECT_TRUE(Near(dcb.GetDCBRMS(105), 0.034e-9L, 1e-24L));
  long double val = 0;
  long double rms = 0;
  dcb.GetDCB(5, val, rms);
  EXPECT_TRUE(Near(val, -0.707e-9L, 1e-24L));
  EXPECT_TRUE(Near(rms, 0.012e-9L, 1e-24L));
}

TEST(DCB, ValueIsReadFromColumn27AndRmsFromColumn39) {
  //                                      1         2         3
  //                             123456789012345678901234567890123456789
  const DCB dcb = Read(kHeader + "G05                      9123456.707   91.012\n" + //
                       "G06                      9-7         912      \n");
  EXPECT_TRUE(Near(dcb.GetDCBVAL(5), 123456.707e-9L, 1e-18L));
  EXPECT_TRUE(Near(dcb.GetDCBRMS(5), 91.012e-9L, 1e-18L));
  EXPECT_TRUE(Near(dcb.GetDCBVAL(6), -7e-9L, 1e-18L));
  EXPECT_TRUE(Near(dcb.GetDCBRMS(6), 12e-9L, 1e-18L));
}

TEST(DCB, BlankTensDigitIsNoSatelliteLineButReadsAsZero) {
  EXPECT_FALSE(DCBPeer::IsSatelliteLine("G 5   "));
  EXPECT_EQ(DCBPeer::ParseSatelliteNum("G 5   "), 5);
}

TEST(DCB, SystemLetterSelectsTheNumberRange) {
  EXPECT_EQ(DCBPeer::ParseSatelliteNum("G32 "), 32);
  EXPECT_EQ(DCBPeer::ParseSatelliteNum(" 32 "), 32);
  EXPECT_EQ(DCBPeer::ParseSatelliteNum("R24 "), 124);
  EXPECT_EQ(DCBPeer::ParseSatelliteNum("E11 "), 211);
  EXPECT_EQ(DCBPeer::ParseSatelliteNum("S20 "), 20);
}

TEST(DCB, OnlyGpsAndGlonassLinesCount) {
  EXPECT_TRUE(DCBPeer::IsSatelliteLine("G05 "));
  EXPECT_TRUE(DCBPeer::IsSatelliteLine("R05\t"));
  EXPECT_TRUE(DCBPeer::IsSatelliteLine("G05"));
  EXPECT_FALSE(DCBPeer::IsSatelliteLine("E05 "));
  EXPECT_FALSE(DCBPeer::IsSatelliteLine("g05 "));
  EXPECT_FALSE(DCBPeer::IsSatelliteLine("G0A "));
  EXPECT_FALSE(DCBPeer::IsSatelliteLine("G055"));
  EXPECT_FALSE(DCBPeer::IsSatelliteLine(""));
}

TEST(DCB, StationLinesArePassedOver) {
  const DCB dcb = Read(kHeader + "G    ABMF 97103M001         -2.123       0.040\n" + kG05 +
                       "\nREMARK\n" + kR05);
  EXPECT_EQ(DCBPeer::Count(dcb), 2);
}

TEST(DCB, SatelliteListedTwiceHasItsFirstBias) {
  const DCB dcb = Read(kHeader + kG05 + "G05                           9.000       9.000\n");
  EXPECT_EQ(DCBPeer::Count(dcb), 2);
  EXPECT_TRUE(Near(dcb.GetDCBVAL(5), -0.707e-9L, 1e-24L));
}

TEST(DCB, SatelliteThatIsNotListedIsWarnedOfAndHasNoBias) {
  const DCB dcb = Read(kHeader + kG05);
  long double val = 1;
  long double rms = 1;
  Captured err(std::cerr);
  dcb.GetDCB(7, val, rms);
  EXPECT_EQ(val, 0);
  EXPECT_EQ(rms, 0);
  EXPECT_EQ(dcb.GetDCBRMS(105), 0);
  EXPECT_EQ(dcb.GetDCBVAL(105), 0);
  const std::string frame = "     Continuing Zenta ... \n\n";
  EXPECT_EQ(err.Text(),
            "\n#### Zenta: Warning -> SATELLITE: 07 NOT LISTED IN DCB VALUES - SETTING 0.0s "
            "VALUES! ####\n" +
                frame +
                "\n#### Zenta: Warning -> SATELLITE: 105 NOT LISTED IN DCB VALUES - SETTING 0.0s "
                "VALUES FOR RMS! ####\n" +
                frame +
                "\n#### Zenta: Warning -> SATELLITE: 105 NOT LISTED IN DCB VALUES - SETTING 0.0s "
                "VALUES FOR VAL! ####\n" +
                frame);
}

TEST(DCB, ColumnsWithoutANumberAreZero) {
  const DCB dcb = Read(kHeader + "G05                        ABCDEF\nG06\n");
  ASSERT_EQ(DCBPeer::Count(dcb), 2);
  EXPECT_EQ(dcb.GetDCBVAL(5), 0);
  EXPECT_EQ(dcb.GetDCBRMS(5), 0);
  EXPECT_EQ(dcb.GetDCBVAL(6), 0);
}

TEST(DCB, LineOf511CharactersIsReadAndALongerOneEndsTheReading) {
  std::string line = kG05;
  line.pop_back();
  line.resize(511, ' ');
  EXPECT_EQ(DCBPeer::Count(Read(kHeader + line + '\n' + kR05)), 2);
  EXPECT_EQ(DCBPeer::Count(Read(kHeader + line + " \n" + kR05)), 0);
  EXPECT_EQ(DCBPeer::Count(Read(kHeader + kG05 + line + " \n" + kR05)), 1);
  EXPECT_EQ(DCBPeer::Count(Read(line + " \n" + kHeader + kR05)), 0);
}

TEST(DCB, CarriageReturnsChangeNothing) {
  std::string text = kHeader + kG05 + kR05;
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2)
    text.insert(at, 1, '\r');
  const DCB dcb = Read(text);
  ASSERT_EQ(DCBPeer::Count(dcb), 2);
  EXPECT_TRUE(Near(dcb.GetDCBRMS(105), 0.034e-9L, 1e-24L));
}

TEST(DCB, LastLineNeedsNoEnd) {
  std::string text = kHeader + kG05;
  text.pop_back();
  EXPECT_TRUE(Near(Read(text).GetDCBRMS(5), 0.012e-9L, 1e-24L));
}

TEST(DCB, EmptyFileFolderAndMissingFileHaveNoSatellites) {
  EXPECT_EQ(DCBPeer::Count(Read("")), 0);
  const ScratchFolder folder;
  for (const std::string& name : {folder.Path().string(), folder.Name("absent"), std::string()}) {
    DCB dcb;
    dcb.SetFile(name.c_str());
    dcb.ReadFile();
    EXPECT_EQ(DCBPeer::Count(dcb), 0);
  }
}

TEST(DCB, SecondReadingForgetsTheFirst) {
  const ScratchFolder folder;
  DCB dcb;
  dcb.SetFile(folder.Write("a.txt", kHeader + kG05 + kR05).c_str());
  dcb.ReadFile();
  dcb.SetFile(folder.Write("b.txt", kHeader + kR05).c_str());
  dcb.ReadFile();
  EXPECT_EQ(DCBPeer::Count(dcb), 1);
}

TEST(DCB, MoreLinesThanTheCountHoldsAreLeftOut) {
  std::string text = kHeader;
  for (int i = 0; i < 32768; ++i) text += "G01\n";
  const DCB dcb = Read(text + kR05);
  EXPECT_EQ(DCBPeer::Count(dcb), 32767);
  EXPECT_EQ(DCBPeer::Sat(dcb, 32766), 1);
}

TEST(DCB, MonthOfValidityIsToldByTheName) {
  ExpectValid("P1C10801.DCB", {2008, 1, 1, 0, 0, 0}, {2008, 1, 31, 23, 59, 59.999L});
  ExpectValid("P1P20812_ALL.DCB", {2008, 12, 1, 0, 0, 0}, {2008, 12, 31, 23, 59, 59.999L});
  ExpectValid("P1C10802.DCB", {2008, 2, 1, 0, 0, 0}, {2008, 2, 29, 23, 59, 59.999L});
}

TEST(DCB, Years79To99AreOfTheLastCentury) {
  ExpectValid("P1C17901.DCB", {1979, 1, 1, 0, 0, 0}, {1979, 1, 31, 23, 59, 59.999L});
  ExpectValid("P1C19911.DCB", {1999, 11, 1, 0, 0, 0}, {1999, 11, 30, 23, 59, 59.999L});
  ExpectValid("P1C17812.DCB", {2078, 12, 1, 0, 0, 0}, {2078, 12, 31, 23, 59, 59.999L});
  ExpectValid("P1C10001.DCB", {2000, 1, 1, 0, 0, 0}, {2000, 1, 31, 23, 59, 59.999L});
}

TEST(DCB, SecondDigitOfTheMonthIsNotTested) {
  ExpectValid("P1C1081X.DCB", {2008, 1, 1, 0, 0, 0}, {2008, 1, 31, 23, 59, 59.999L});
}

TEST(DCB, NameWithoutAMonthIsValidAlways) {
  for (const char* name :
       {"P2C2.DCB", "P1P2_ALL.DCB", "P1C1X801.DCB", "P1C10X01.DCB", "P1C108X1.DCB", "a"})
    ExpectValidAlways(Read("", name));
}

TEST(DCB, PathTooShortForAMonthIsValidAlways) {
  for (const char* name : {"", "1.DCB", "801.DCB", "01_ALL.DCB"}) {
    DCB dcb;
    dcb.SetFile(name);
    dcb.ReadFile();
    ExpectValidAlways(dcb);
  }
}

TEST(DCB, NameOf255CharactersIsTaken) {
  DCB dcb;
  dcb.SetFile(std::string(255, 'a').c_str());
  dcb.ReadFile();
  EXPECT_EQ(DCBPeer::Count(dcb), 0);
}

TEST(DCBDeathTest, LongerNameEndsTheProgram) {
  DCB dcb;
  EXPECT_ENDS(dcb.SetFile(std::string(256, 'a').c_str()), "FILE NAME IS TOO LONG!");
}

TEST(DCBDeathTest, ThirteenthMonthIsReported) {
  EXPECT_ENDS(Read("", "P1C10813.DCB"), "ymdhms: Error -> MONTH not valid");
}

/// Each satellite line of the file against what streams read from its words.
class DCBRecorded : public testing::TestWithParam<std::pair<const char*, short>> {};

TEST_P(DCBRecorded, BiasesAreThoseOfTheText) {
  const auto& [name, count] = GetParam();
  SKIP_WITHOUT(name);
  DCB dcb;
  dcb.SetFile(RealData(name).c_str());
  dcb.ReadFile();
  EXPECT_EQ(DCBPeer::Count(dcb), count);

  std::ifstream in(RealData(name));
  std::string line;
  while (std::getline(in, line) && line.find("PRN / STATION NAME") == std::string::npos) {
  }
  long compared = 0;
  while (std::getline(in, line)) {
    std::istringstream words(line);
    std::string prn;
    std::string val;
    std::string rms;
    // A satellite line has three words (four with a remark); a station line has its name between.
    if (!(words >> prn >> val >> rms) || prn.size() != 3 || (prn[0] != 'G' && prn[0] != 'R'))
      continue;
    if (val.find('.') == std::string::npos) continue;
    const auto sat = static_cast<short>(std::stoi(prn.substr(1)) + (prn[0] == 'R' ? 100 : 0));
    long double gotVal = 0;
    long double gotRms = 0;
    dcb.GetDCB(sat, gotVal, gotRms);
    EXPECT_TRUE(Near(gotVal, std::stold(val) / 1e9L, 1e-22L)) << line;
    EXPECT_TRUE(Near(gotRms, std::stold(rms) / 1e9L, 1e-22L)) << line;
    ++compared;
  }
  EXPECT_EQ(compared, count);
}

INSTANTIATE_TEST_SUITE_P(CodeFiles, DCBRecorded,
                         testing::Values(std::pair{"dcb/P1C10401.DCB", short{29}},
                                         std::pair{"dcb/P1P21110.DCB", short{56}},
                                         std::pair{"dcb/P1C11110.DCB", short{31}},
                                         std::pair{"dcb/P1P21306.DCB", short{56}},
                                         std::pair{"dcb/P1P21505_ALL.DCB", short{56}},
                                         std::pair{"dcb/P1P2_ALL.DCB", short{52}},
                                         std::pair{"dcb/P2C2.DCB", short{26}},
                                         std::pair{"dcb/P2C21510_RINEX.DCB", short{44}},
                                         std::pair{"dcb/P1C11411_RINEX.DCB", short{56}},
                                         std::pair{"derived/P1P2IGS1001.DCB", short{47}}));

} // namespace
