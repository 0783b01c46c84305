#include "GNSS/RINEXData.h"

#include "GNSS/ymdhms.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Near.h"
#include "support/RINEXText.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <string>

using rinextext::Epoch;
using rinextext::Field;
using rinextext::Header;
using rinextext::Line;
using rinextext::Satellites;
using rinextext::Types;

namespace {

// A store with its header, read by the stream operators. The counts, which RINEX::ReadFile
// finds, are given.
struct Store {
  RINEXHeader header;
  RINEXData data{header};

  void Read(const std::string& text, unsigned long epochs, unsigned long records) {
    std::istringstream in(text);
    data.SetNRecords(epochs, records);
    in >> header >> data;
  }
};

// Restores what the writer leaves changed.
class RINEXDataWriter : public testing::Test, protected Store {
protected:
  ~RINEXDataWriter() override {
    ymdhmsns::PrintType = timeType_;
    gnssobsns::PrintType = obsType_;
    gnssobsshortns::PrintType = shortType_;
  }
  std::string Written() const {
    std::ostringstream out;
    out << std::fixed;
    out.precision(3); // as the header leaves it
    out << data;
    return out.str();
  }

private:
  unsigned short timeType_ = ymdhmsns::PrintType;
  unsigned short obsType_ = gnssobsns::PrintType;
  unsigned short shortType_ = gnssobsshortns::PrintType;
};

// n observation lines of one field, 1 to n.
std::string Lines(int n) {
  std::string lines;
  for (int k = 1; k <= n; ++k) lines += Field(k) + "\n";
  return lines;
}

} // namespace

TEST(RINEXData, StartsEmpty) {
  RINEXHeader header;
  const RINEXData data(header);
  EXPECT_EQ(data.GetNEpoch(), 0);
  EXPECT_EQ(data.GetNObs(), 0);
  EXPECT_EQ(data.GetNSat(), 0);
  EXPECT_STREQ(data.AmbFile, "");
  EXPECT_FALSE(data.IfTimeCorr);
  EXPECT_EQ(data.nComment, 0);
  EXPECT_EQ(data.NBadEphSat, 0);
  EXPECT_EQ(data.NBadEphObs, 0);
  EXPECT_EQ(data.NOKEph, 0);
  EXPECT_TRUE(data.arcs.empty());
  EXPECT_EQ(&data.rhead, &header);
  EXPECT_FALSE(data.HasGPSObs());
  EXPECT_FALSE(data.HasGLONASSObs());
}

TEST(RINEXData, ReadsEpochsAndObservations) {
  Store s;
  s.Read(Header({"C1", "L1", "S1"}) + Epoch(30, 2, "G 5R12") +
             "  21234567.123 5 109876543.21917        45.250  \n" +
             "  19234567.001                          38.000  \n" + Epoch(60, 1, "G 5", '1') +
             "                 109876999.219 6\n",
         2, 3);
  const RINEXData& d = s.data;
  EXPECT_EQ(d.epoch(0).GetMJDay(), 55844U);
  EXPECT_TRUE(Near(d.epoch(0).GetSecond(), 30, 1e-12L));
  EXPECT_TRUE(Near(d.GetMJD(1).GetSecond(), 60, 1e-12L));
  EXPECT_TRUE(d.obslast == d.epoch(1));
  EXPECT_EQ(d.flag(0), '0');
  EXPECT_EQ(d.flag(1), '1');
  EXPECT_EQ(d.nsat(0), 2);
  EXPECT_EQ(d.nsat(1), 1);
  EXPECT_EQ(d.sat(0), 5);
  EXPECT_EQ(d.sat(1), 112);
  EXPECT_EQ(d.GetSat(2), 5);
  ASSERT_EQ(d.GetNSat(), 2);
  EXPECT_EQ(d.satList(0), 5);
  EXPECT_EQ(d.satList(1), 112);
  EXPECT_EQ(d.C1(0).obs, static_cast<long double>(21234567.123));
  EXPECT_EQ(d.C1(0).ss, 5);
  EXPECT_EQ(d.C1(1).obs, static_cast<long double>(19234567.001));
  EXPECT_TRUE(d.C1(2).IsNull());
  EXPECT_EQ(d.L1(0).lli, 1);
  EXPECT_EQ(d.L1(0).ss, 7);
  EXPECT_TRUE(d.L1(1).IsNull());
  EXPECT_EQ(d.L1(2).obs, static_cast<long double>(109876999.219));
  EXPECT_EQ(d.S1(0).obs, 45.25L);
  EXPECT_EQ(d.S1(1).obs, 38.0L);
  EXPECT_TRUE(d.S1(2).IsNull());
  EXPECT_EQ(d.P2.Length(), 0);
  EXPECT_EQ(d.TCorr.Length(), 0);
  EXPECT_EQ(d.satstart, 0);
  EXPECT_EQ(d.istart, 0);
  EXPECT_EQ(d.iend, 2);
}

TEST(RINEXData, SystemLettersMakeTheSatelliteNumber) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 7, "G 5R12  3E01S20C 9 07") + Lines(7), 1, 7);
  const short numbers[] = {5, 112, 3, 201, 320, 409, 7};
  for (long r = 0; r < 7; ++r) EXPECT_EQ(s.data.sat(r), numbers[r]);
  const short sorted[] = {3, 5, 7, 112, 201, 320, 409};
  ASSERT_EQ(s.data.GetNSat(), 7);
  for (long k = 0; k < 7; ++k) EXPECT_EQ(s.data.satList(k), sorted[k]);
}

TEST(RINEXData, UnknownSystemLetterLeavesTheNumberZeroAndOutOfTheList) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 3, "J01g02G 3") + Lines(3), 1, 3);
  EXPECT_EQ(s.data.sat(0), 0);
  EXPECT_EQ(s.data.sat(1), 0);
  EXPECT_EQ(s.data.sat(2), 3);
  EXPECT_EQ(s.data.C1(1).obs, 2.0L);
  ASSERT_EQ(s.data.GetNSat(), 1);
  EXPECT_EQ(s.data.satList(0), 3);
}

TEST(RINEXData, LettersForDigitsGiveOddNumbers) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 2, "G0AG:0") + Lines(2), 1, 2);
  EXPECT_EQ(s.data.sat(0), 17);  // 'A' is 17 above '0'
  EXPECT_EQ(s.data.sat(1), 100); // ':' is 10 above '0'
}

TEST(RINEXData, ClockOffsetsAreReadOfEveryEpochLine) {
  Store s;
  const std::string list = "G 1" + std::string(33, ' '); // the offset stands behind twelve
  s.data.SetTimeCorr(true);
  s.Read(Header({"C1"}) + Epoch(0, 1, list + "  .123456789") + Field(1) + "\n" +
             Epoch(30, 1, list + "-0.000500000") + Field(1) + "\n" + Epoch(60, 1, "G 1") +
             Field(1) + "\n",
         3, 3);
  ASSERT_EQ(s.data.TCorr.Length(), 3);
  EXPECT_EQ(s.data.TCorr(0), static_cast<long double>(.123456789));
  EXPECT_EQ(s.data.TCorr(1), static_cast<long double>(-0.0005));
  EXPECT_EQ(s.data.TCorr(2), 0.0L);
}

TEST(RINEXData, P1IsCopiedIntoAMissingC1) {
  Store s;
  s.Read(Header({"P1"}) + Epoch(0, 2, "G 1G 2") + "  21234567.12317\n" + Field(2) + "\n", 1, 2);
  EXPECT_TRUE(s.header.iC1);
  ASSERT_EQ(s.data.C1.Length(), 2);
  EXPECT_EQ(s.data.C1(0).obs, s.data.P1(0).obs);
  EXPECT_EQ(s.data.C1(0).lli, 1);
  EXPECT_EQ(s.data.C1(0).ss, 7);
  EXPECT_EQ(s.data.C1(1).obs, 2.0L);
}

TEST(RINEXData, C1IsKeptBesideP1) {
  Store s;
  s.Read(Header({"C1", "P1"}) + Epoch(0, 1, "G 1") + Field(1) + Field(2) + "\n", 1, 1);
  EXPECT_EQ(s.data.C1(0).obs, 1.0L);
  EXPECT_EQ(s.data.P1(0).obs, 2.0L);
}

TEST(RINEXData, IntervalIsTheSmallestStepWithinADay) {
  std::string text = Header({"C1"});
  for (const double t : {0.0, 90.0, 120.0, 135.0, 165.0}) text += Epoch(t, 1, "G 1") + "\n";
  Store s;
  s.Read(text, 5, 5);
  EXPECT_EQ(s.header.interval, 15.0F);
}

TEST(RINEXData, IntervalOfTheHeaderIsLoweredOnly) {
  const std::string epochs = Epoch(0, 1, "G 1") + "\n" + Epoch(30, 1, "G 1") + "\n";
  Store larger;
  larger.Read(Line("    60.000", "INTERVAL") + Header({"C1"}) + epochs, 2, 2);
  EXPECT_EQ(larger.header.interval, 30.0F);
  Store smaller;
  smaller.Read(Line("     1.000", "INTERVAL") + Header({"C1"}) + epochs, 2, 2);
  EXPECT_EQ(smaller.header.interval, 1.0F);
}

TEST(RINEXData, StepOverMidnightDoesNotLowerTheInterval) {
  Store s;
  s.Read(Header({"C1"}) + " 11 10  9 23 59 30.0000000  0  1G 1\n\n" + Epoch(0, 1, "G 1") + "\n" +
             Epoch(60, 1, "G 1") + "\n",
         3, 3);
  EXPECT_EQ(s.header.interval, 60.0F); // not the 30 s over midnight
}

TEST(RINEXData, OneEpochHasNoInterval) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 1, "G 1") + "\n", 1, 1);
  EXPECT_EQ(s.header.interval, -1.0F);
}

TEST(RINEXData, ThirteenAndMoreSatellitesTakeFurtherLines) {
  for (const int n : {12, 13, 24, 25, 33, 99}) {
    Store s;
    s.Read(Header({"C1"}) + Epoch(0, n, Satellites(n)) + Lines(n), 1,
           static_cast<unsigned long>(n));
    EXPECT_EQ(s.data.nComment, 0);
    for (int k = 0; k < n; ++k) {
      EXPECT_EQ(s.data.sat(k), k + 1);
      EXPECT_EQ(s.data.C1(k).obs, k + 1);
    }
  }
}

TEST(RINEXData, ShortListLineIsBlankBehindItsEnd) {
  // Blank digits in the middle of the list would shift what follows; behind its end they don't.
  Store s;
  const std::string list = "G 1G 2G 3G 4G 5G 6G 7G 8G 9G10G11J  ";
  s.Read(Header({"C1"}) + Epoch(0, 13, list.substr(0, 34) + "\n" + std::string(32, ' ') + "G13") +
             Lines(13),
         1, 13);
  EXPECT_EQ(s.data.sat(11), 0);
  EXPECT_EQ(s.data.sat(12), 13);
}

TEST(RINEXData, TypesTakeFiveFieldsALine) {
  Store s;
  s.Read(Header({"C1", "P1", "P2", "L1", "L2", "D1", "D2", "S1", "S2", "C5", "L5", "S5"}) +
             Epoch(0, 1, "G 1") + Field(1) + Field(2) + Field(3) + Field(4) + Field(5) + "\n" +
             Field(6) + Field(7) + Field(8) + Field(9) + Field(10) + "\n" + Field(11) + Field(12) +
             "\n",
         1, 1);
  EXPECT_EQ(s.data.C1(0).obs, 1.0L);
  EXPECT_EQ(s.data.P1(0).obs, 2.0L);
  EXPECT_EQ(s.data.P2(0).obs, 3.0L);
  EXPECT_EQ(s.data.L1(0).obs, 4.0L);
  EXPECT_EQ(s.data.L2(0).obs, 5.0L);
  EXPECT_EQ(s.data.D1(0).obs, 6.0L);
  EXPECT_EQ(s.data.D2(0).obs, 7.0L);
  EXPECT_EQ(s.data.S1(0).obs, 8.0L);
  EXPECT_EQ(s.data.S2(0).obs, 9.0L);
  EXPECT_EQ(s.data.C5(0).obs, 10.0L);
  EXPECT_EQ(s.data.L5(0).obs, 11.0L);
  EXPECT_EQ(s.data.S5(0).obs, 12.0L);
}

TEST(RINEXData, TypesWithoutATableKeepTheirPlaceInTheLine) {
  Store s;
  s.Read(Header({"D5", "C9", "C2", "S8"}) + Epoch(0, 1, "G 1") + Field(1) + Field(2) + Field(3) +
             Field(4) + "\n",
         1, 1);
  EXPECT_EQ(s.data.C2(0).obs, 3.0L);
  EXPECT_EQ(s.data.S5.Length(), 0);
}

TEST(RINEXData, S5IsTheNumberInItsWholeField) {
  Store s;
  s.Read(Header({"S5", "S1"}) + Epoch(0, 1, "G 1") + "        45.25012        45.25012\n", 1, 1);
  EXPECT_EQ(s.data.S5(0).obs, static_cast<long double>(45.25012));
  EXPECT_EQ(s.data.S1(0).obs, 45.25L);
}

TEST(RINEXData, WhatStandsBehindTheFifthFieldIsPassedOver) {
  Store s;
  s.Read(Header({"C1", "P1", "P2", "L1", "L2", "C2"}) + Epoch(0, 1, "G 1") + Field(1) + Field(2) +
             Field(3) + Field(4) + Field(5) + Field(99) + "\n" + Field(6) + "\n",
         1, 1);
  EXPECT_EQ(s.data.C2(0).obs, 6.0L);
}

TEST(RINEXData, LinesBetweenTheEpochsAreCounted) {
  Store s;
  s.Read(Header({"C1"}) + "comment\n" + Epoch(0, 1, "G 1") + Field(1) + "\n" +
             "                            4  1\n" + Line("text", "COMMENT") + Epoch(30, 1, "G 1") +
             Field(2) + "\n\n",
         2, 2);
  EXPECT_EQ(s.data.nComment, 4);
  EXPECT_EQ(s.data.C1(1).obs, 2.0L);
}

TEST(RINEXData, LongLineBetweenEpochsEndsTheReading) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 1, "G 1") + Field(1) + "\n" + std::string(100, ' ') + "\n" +
             Epoch(30, 1, "G 1") + Field(2) + "\n",
         2, 2);
  EXPECT_TRUE(Near(s.data.obslast.GetSecond(), 0, 1e-12L));
  EXPECT_EQ(s.data.nsat(1), 0);
  EXPECT_TRUE(s.data.C1(1).IsNull());
  EXPECT_EQ(s.data.iend, 2);
  EXPECT_EQ(s.data.GetNSat(), 1);
}

TEST(RINEXData, EpochWithoutSatellitesIsAnEpoch) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 0, " ") + Epoch(30, 1, "G 1") + Field(1) + "\n", 2, 1);
  EXPECT_EQ(s.data.nsat(0), 0);
  EXPECT_EQ(s.data.nsat(1), 1);
  EXPECT_EQ(s.data.C1(0).obs, 1.0L);
}

TEST(RINEXData, CarriageReturnsAreNoPartOfTheFields) {
  std::string text;
  for (const char c :
       Header({"C1"}) + Epoch(0, 2, "G 1 12") + "  21234567.123\n" + "  21234567.12 \n")
    text += c == '\n' ? "\r\n" : std::string(1, c);
  Store s;
  s.Read(text, 1, 2);
  EXPECT_EQ(s.data.sat(1), 12);
  EXPECT_EQ(s.data.C1(0).obs, static_cast<long double>(21234567.123));
  EXPECT_EQ(s.data.C1(0).lli, 0);
}

TEST(RINEXData, LastLineMayLackItsEnd) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 1, "G 1") + "  21234567.123", 1, 1);
  EXPECT_EQ(s.data.C1(0).obs, static_cast<long double>(21234567.123));
}

TEST(RINEXData, HeaderWithoutTypesHasNoObservationLines) {
  Store s;
  s.Read(Header({}) + Epoch(0, 2, "G 1G 2") + Epoch(30, 1, "G 3"), 2, 3);
  EXPECT_EQ(s.data.nComment, 0);
  EXPECT_EQ(s.data.sat(2), 3);
}

TEST(RINEXData, ResetEmptiesTheStore) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 1, "G 1") + Field(1) + "\n", 1, 1);
  s.data.SetAmbFile("Ambiq.b");
  s.data.arcs.emplace_back();
  s.data.RINEXDataReset();
  EXPECT_EQ(s.data.GetNEpoch(), 0);
  EXPECT_EQ(s.data.GetNObs(), 0);
  EXPECT_EQ(s.data.epoch.NRow(), 0);
  EXPECT_EQ(s.data.C1.NRow(), 0);
  EXPECT_EQ(s.data.satList.NRow(), 0);
  EXPECT_EQ(s.data.iend, 0);
  EXPECT_STREQ(s.data.AmbFile, "");
  EXPECT_TRUE(s.data.arcs.empty());
}

TEST(RINEXData, NameOfTheArcFileIsCut) {
  RINEXHeader header;
  RINEXData data(header);
  data.SetAmbFile("Ambiq.b");
  EXPECT_STREQ(data.AmbFile, "Ambiq.b");
  data.SetAmbFile(std::string(600, 'x').c_str());
  EXPECT_EQ(std::string(data.AmbFile), std::string(511, 'x'));
}

TEST(RINEXData, SystemIsThereWithATenthOfTheRecords) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 10, "G 1R 1R 2R 3R 4R 5R 6R 7R 8R 9") + Lines(10), 1, 10);
  EXPECT_TRUE(s.data.HasGPSObs());
  EXPECT_TRUE(s.data.HasGLONASSObs());
  s.Read(Header({"C1"}) + Epoch(0, 11, "G 1R 1R 2R 3R 4R 5R 6R 7R 8R 9R10") + Lines(11), 1, 11);
  EXPECT_FALSE(s.data.HasGPSObs());
  EXPECT_TRUE(s.data.HasGLONASSObs());
}

TEST(RINEXData, SatellitesOf100And200AreNoGLONASS) {
  Store s;
  s.Read(Header({"C1"}) + Epoch(0, 2, "R00E00") + Lines(2), 1, 2);
  EXPECT_EQ(s.data.satList(0), 100);
  EXPECT_FALSE(s.data.HasGLONASSObs());
  EXPECT_FALSE(s.data.HasGPSObs());
  s.Read(Header({"C1"}) + Epoch(0, 2, "R01R99") + Lines(2), 1, 2);
  EXPECT_TRUE(s.data.HasGLONASSObs());
}

TEST(RINEXData, WarningGoesToStandardOutput) {
  RINEXHeader header;
  const RINEXData data(header);
  const Captured out(std::cout);
  data.RINEXDataWarning("TEXT");
  EXPECT_EQ(out.Text(), "\n#### RINEXData: Warning -> TEXT ####\n     Continuing RINEXData ... \n");
}

TEST(RINEXDataDeathTest, Error) {
  RINEXHeader header;
  const RINEXData data(header);
  EXPECT_ENDS(data.RINEXDataError("TEXT"),
              "^\n#### RINEXData: Error -> TEXT ####\n     Exiting RINEXData ... \n$");
}

TEST(RINEXDataDeathTest, NothingCounted) {
  RINEXHeader header;
  RINEXData data(header);
  EXPECT_ENDS(data.SetData(), "Error -> NUMBER OF EPOCH IN RINEX FILE NOT DETERMINED! ####");
  data.SetNRecords(1, 0);
  EXPECT_ENDS(data.SetData(), "Error -> NUMBER OF OBSERVATIONS IN RINEX FILE NOT DETERMINED! ####");
}

TEST(RINEXDataDeathTest, TextThatEndsWithinASatelliteEndsSilently) {
  Store s;
  EXPECT_ENDS(s.Read(Header({"C1"}) + Epoch(0, 2, "G 1G 2") + Field(1) + "\n", 1, 2), "^$");
  EXPECT_ENDS(
      s.Read(Header({"C1", "P1", "P2", "L1", "L2", "C2"}) + Epoch(0, 1, "G 1") + Field(1) + "\n", 1,
             1),
      "^$");
  EXPECT_ENDS(s.Read(Header({"C1"}) + Epoch(0, 13, Satellites(12)), 1, 13), "^$");
}

TEST(RINEXDataDeathTest, LongLineWithinASatelliteEndsSilently) {
  Store s;
  EXPECT_ENDS(s.Read(Header({"C1"}) + Epoch(0, 1, "G 1") + Field(1) + std::string(84, ' ') + "\n" +
                         Epoch(30, 1, "G 1") + Field(1) + "\n",
                     2, 2),
              "^$");
}

TEST(RINEXDataDeathTest, MoreEpochsThanCounted) {
  Store s;
  EXPECT_ENDS(s.Read(Header({"C1"}) + Epoch(0, 1, "G 1") + "\n" + Epoch(30, 1, "G 1") + "\n", 1, 2),
              "Matrix index not in range:     1 -> \\[    0,    0\\]");
}

TEST(RINEXDataDeathTest, MoreRecordsThanCounted) {
  Store s;
  EXPECT_ENDS(s.Read(Header({"C1"}) + Epoch(0, 3, "G 1G 2G 3") + Lines(3), 1, 2),
              "Matrix index not in range:     2 -> \\[    0,    1\\]");
}

TEST(RINEXDataDeathTest, SatelliteNumberOfNoSystem) {
  Store s;
  // 'z' is 74 above '0', and a blank 16 below it.
  EXPECT_ENDS(s.Read(Header({"C1"}) + Epoch(0, 1, "Cz0") + Lines(1), 1, 1),
              "Matrix index not in range:  1140 -> \\[    0,  499\\]");
  EXPECT_ENDS(s.Read(Header({"C1"}) + Epoch(0, 1, "   ") + Lines(1), 1, 1),
              "Matrix index not in range:   -16 -> \\[    0,  499\\]");
  EXPECT_ENDS(s.Read(Header({"C1"}) + Epoch(0, 2, "G 1") + Lines(2), 1, 2),
              "Matrix index not in range:   -16 -> \\[    0,  499\\]");
}

TEST(RINEXDataDeathTest, DateThatIsNone) {
  Store s;
  EXPECT_ENDS(s.Read(Header({"C1"}) + " 11 13 10  0  0  0.0000000  0  1G 1\n\n", 1, 1),
              "ymdhms: Error -> MONTH not valid");
  EXPECT_ENDS(s.Read(Header({"C1"}) + " 11 10 10  0  0 60.0000000  0  1G 1\n\n", 1, 1),
              "ymdhms: Error -> SECOND not valid");
}

TEST_F(RINEXDataWriter, WritesEpochsAndFields) {
  Read(Header({"C1", "L1", "S1"}) + Epoch(30, 5, "G 5R12E 1S20C 9", '1') +
           "  21234567.123 5 109876543.21917        45.250  \n\n\n\n\n",
       1, 5);
  EXPECT_EQ(Written(), " 11 10 10  0  0 30.0000000  1  5G 5R12E 1S20C 9\n"
                       "  21234567.12305 109876543.21917        45.250  \n"
                       "         0.000           0.000           0.000  \n"
                       "         0.000           0.000           0.000  \n"
                       "         0.000           0.000           0.000  \n"
                       "         0.000           0.000           0.000  \n");
}

TEST_F(RINEXDataWriter, EveryFifthTypeEndsTheLine) {
  const std::string line = Field(0) + Field(0) + Field(0) + Field(0) + Field(0) + "\n";
  Read(Header({"C1", "P1", "P2", "L1", "L2"}) + Epoch(0, 1, "G 1") + "\n", 1, 1);
  EXPECT_EQ(Written(), Epoch(0, 1, "G 1") + line);
  Read(Header({"C1", "P1", "P2", "L1", "L2", "C2"}) + Epoch(0, 1, "G 1") + "\n\n", 1, 1);
  EXPECT_EQ(Written(), Epoch(0, 1, "G 1") + line + Field(0) + "\n");
}

TEST_F(RINEXDataWriter, TypesWithoutATableAreLeftOut) {
  Read(Header({"C1", "D5", "C9", "L1"}) + Epoch(0, 1, "G 1") + Field(1) + Field(2) + Field(3) +
           Field(4) + "\n",
       1, 1);
  EXPECT_EQ(Written(), Epoch(0, 1, "G 1") + "         1.00000         4.00000\n");
}

TEST_F(RINEXDataWriter, EveryTwelfthSatelliteEndsTheLine) {
  for (const int n : {1, 8, 11, 12, 13, 24, 25}) {
    Read(Header({"C1"}) + Epoch(0, n, Satellites(n)) + Lines(n), 1, static_cast<unsigned long>(n));
    const std::string text = Written();
    EXPECT_EQ(text.substr(0, text.find("         1.000")), Epoch(0, n, Satellites(n))) << n;
  }
}

TEST_F(RINEXDataWriter, ClockOffsetFollowsTheTwelfthSatelliteOnly) {
  data.SetTimeCorr(true);
  const std::string list = Satellites(8) + std::string(12, ' ');
  Read(Header({"C1"}) + Epoch(0, 8, list + " 0.000500000") + Lines(8), 1, 8);
  ASSERT_EQ(data.TCorr(0), static_cast<long double>(0.0005));
  EXPECT_EQ(Written().substr(0, 57), Epoch(0, 8, Satellites(8)));

  Read(Header({"C1"}) + Epoch(0, 12, Satellites(12) + " 0.000500000") + Lines(12), 1, 12);
  EXPECT_EQ(Written().substr(0, 81), Epoch(0, 12, Satellites(12) + " 0.000500000"));
}

TEST_F(RINEXDataWriter, ClockOffsetFollowsEveryFullLine) {
  data.SetTimeCorr(true);
  std::string list = Satellites(12) + "-0.000500000\n" + std::string(32, ' ');
  const std::string second = Satellites(24).substr(12 * 3 + 1 + 32);
  Read(Header({"C1"}) + Epoch(0, 24, list + second) + Lines(24), 1, 24);
  const std::string expected = Epoch(0, 24, list + second + "-0.000500000");
  EXPECT_EQ(Written().substr(0, expected.size()), expected);
}

TEST_F(RINEXDataWriter, RangeOfEpochs) {
  std::string text = Header({"C1"});
  for (int i = 0; i < 4; ++i)
    text += Epoch(30 * i, 2, "G 1G 2") + Field(i) + "\n" + Field(i) + "\n";
  Read(text, 4, 8);
  data.istart = 1;
  data.iend = 3;
  data.satstart = 2;
  EXPECT_EQ(Written(), Epoch(30, 2, "G 1G 2") + "         1.00000\n         1.00000\n" +
                           Epoch(60, 2, "G 1G 2") + "         2.00000\n         2.00000\n");
}

TEST_F(RINEXDataWriter, EpochWithoutSatellitesHasItsLine) {
  Read(Header({"C1"}) + Epoch(0, 0, " ") + Epoch(30, 1, "G 1") + Field(1) + "\n", 2, 1);
  EXPECT_EQ(Written(), Epoch(0, 0, "") + Epoch(30, 1, "G 1") + "         1.00000\n");
}

TEST_F(RINEXDataWriter, PrintSettingsStayChanged) {
  ymdhmsns::PrintType = 2;
  gnssobsns::PrintType = 1;
  gnssobsshortns::PrintType = 1;
  Written();
  EXPECT_EQ(ymdhmsns::PrintType, 1);
  EXPECT_EQ(gnssobsns::PrintType, 0);
  EXPECT_EQ(gnssobsshortns::PrintType, 0);
}
