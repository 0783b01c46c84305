#include "GNSS/RINEX.h"

#include "GNSS/ymdhms.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"
#include "support/RINEXText.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

using rinextext::End;
using rinextext::Epoch;
using rinextext::Field;
using rinextext::Header;
using rinextext::Line;
using rinextext::Satellites;

namespace {

struct File {
  RINEXHeader header;
  RINEXData data{header};
  RINEX rinex{header, data};

  void Read(const std::string& name) {
    rinex.SetFile(name.c_str());
    rinex.ReadFile();
  }
};

// Writes a text to a scratch file and reads it; restores what a writer leaves changed.
class RINEXFile : public testing::Test, protected File {
protected:
  ~RINEXFile() override {
    xyzns::Width = width_;
    xyzns::NDec = ndec_;
    xyzns::Unit = unit_;
    neuns::PrintType = neuType_;
    ymdhmsns::PrintType = timeType_;
    gnssobsns::PrintType = obsType_;
    gnssobsshortns::PrintType = shortType_;
  }
  void ReadText(const std::string& text) { Read(folder_.Write("obs.11o", text)); }

  ScratchFolder folder_;

private:
  unsigned short width_ = xyzns::Width;
  unsigned short ndec_ = xyzns::NDec;
  long double unit_ = xyzns::Unit;
  unsigned short neuType_ = neuns::PrintType;
  unsigned short timeType_ = ymdhmsns::PrintType;
  unsigned short obsType_ = gnssobsns::PrintType;
  unsigned short shortType_ = gnssobsshortns::PrintType;
};
class RINEXFileDeathTest : public RINEXFile {};

// n satellites with the given observation lines each.
std::string Repeated(int n, const std::string& lines) {
  std::string text;
  while (n-- > 0) text += lines;
  return text;
}

// The flags of a missing value are not written.
template <typename T> void ExpectSame(const matrix<T>& a, const matrix<T>& b, const char* name) {
  ASSERT_EQ(a.NRow(), b.NRow()) << name;
  long differing = 0;
  for (long k = 0; k < a.NRow(); ++k) {
    if (a(k).IsNull() && b(k).IsNull()) continue;
    bool same = a(k).obs == b(k).obs;
    if constexpr (std::is_same_v<T, gnssobs>)
      same = same && a(k).lli == b(k).lli && a(k).ss == b(k).ss;
    if (!same) ++differing;
  }
  EXPECT_EQ(differing, 0) << name;
}

void ExpectSameStore(const RINEXData& a, const RINEXData& b) {
  ASSERT_EQ(a.nepochall, b.nepochall);
  ASSERT_EQ(a.nsatall, b.nsatall);
  for (long i = 0; i < a.nepochall; ++i) {
    // The writer has seven decimals, which the seconds of these files do not use up.
    ASSERT_TRUE(Near(a.epoch(i) - b.epoch(i), 0, 1e-9L)) << i;
    ASSERT_EQ(a.flag(i), b.flag(i)) << i;
    ASSERT_EQ(a.nsat(i), b.nsat(i)) << i;
  }
  for (long r = 0; r < a.nsatall; ++r) ASSERT_EQ(a.sat(r), b.sat(r)) << r;
  ASSERT_EQ(a.GetNSat(), b.GetNSat());
  for (long k = 0; k < a.GetNSat(); ++k) ASSERT_EQ(a.satList(k), b.satList(k));
  ExpectSame(a.C1, b.C1, "C1");
  ExpectSame(a.P1, b.P1, "P1");
  ExpectSame(a.P2, b.P2, "P2");
  ExpectSame(a.L1, b.L1, "L1");
  ExpectSame(a.L2, b.L2, "L2");
  ExpectSame(a.C5, b.C5, "C5");
  ExpectSame(a.L5, b.L5, "L5");
  ExpectSame(a.C2, b.C2, "C2");
  ExpectSame(a.D1, b.D1, "D1");
  ExpectSame(a.D2, b.D2, "D2");
  ExpectSame(a.S1, b.S1, "S1");
  ExpectSame(a.S2, b.S2, "S2");
  ExpectSame(a.S5, b.S5, "S5");
}

} // namespace

TEST_F(RINEXFile, StartsWithoutCounts) {
  EXPECT_STREQ(rinex.rinexfile, "");
  EXPECT_EQ(rinex.nepoch, 0UL);
  EXPECT_EQ(rinex.nobsall, 0UL);
  EXPECT_EQ(rinex.nwfepoch, 0UL);
  EXPECT_EQ(rinex.nwfsat, 0UL);
  EXPECT_FALSE(rinex.IsTimeCorr);
  EXPECT_EQ(&rinex.rhead, &header);
  EXPECT_EQ(&rinex.rdata, &data);
}

TEST_F(RINEXFile, CountsAndFills) {
  ReadText(Header({"C1"}) + Epoch(0, 2, "G 1R 2") + Field(1) + "\n" + Field(2) + "\n" +
           Line("text", "COMMENT") + Epoch(30, 1, "G 3") + Field(3) + "\n");
  EXPECT_EQ(rinex.nepoch, 2UL);
  EXPECT_EQ(rinex.nobsall, 3UL);
  EXPECT_EQ(data.GetNEpoch(), 2);
  EXPECT_EQ(data.GetNObs(), 3);
  EXPECT_EQ(data.sat(1), 102);
  EXPECT_EQ(data.C1(2).obs, 3.0L);
  EXPECT_EQ(data.nComment, 1);
  EXPECT_FALSE(data.IfTimeCorr);
}

TEST_F(RINEXFile, CountCanBeTakenAlone) {
  rinex.SetFile(folder_
                    .Write("obs.11o", Header({"C1"}) + Epoch(0, 2, "G 1R 2") + Field(1) + "\n" +
                                          Field(2) + "\n")
                    .c_str());
  rinex.CountRec();
  EXPECT_EQ(rinex.nepoch, 1UL);
  EXPECT_EQ(rinex.nobsall, 2UL);
  EXPECT_EQ(data.GetNEpoch(), 0);
}

TEST_F(RINEXFile, HeaderGetsTheEpochsOfTheData) {
  ReadText(Line("  2000     1     1     0     0    0.0000000     GLO", "TIME OF FIRST OBS") +
           Header({"C1"}) + Epoch(30, 1, "G 1") + "\n" + Epoch(60, 1, "G 1") + "\n");
  EXPECT_TRUE(header.obsfirst == mjd(55844, 30));
  EXPECT_TRUE(header.obslast == mjd(55844, 60));
  EXPECT_STREQ(header.obsfirstts, "GLO");
  EXPECT_STREQ(header.obslastts, "GPS");
}

TEST_F(RINEXFile, MissingTimeSystemIsGPS) {
  ReadText(Header({"C1"}) + Epoch(30, 1, "G 1") + "\n");
  EXPECT_STREQ(header.obsfirstts, "GPS");
  EXPECT_STREQ(header.obslastts, "GPS");
}

TEST_F(RINEXFile, FirstEpochLineLongerThan69CharactersHasAClockOffset) {
  const std::string list = Satellites(12);
  const std::string lines = Repeated(12, "\n");
  ReadText(Header({"C1"}) + Epoch(0, 12, list + " 0.000123456") + lines +
           Epoch(30, 12, list + "-0.000123456") + lines);
  EXPECT_TRUE(rinex.IsTimeCorr);
  ASSERT_EQ(data.TCorr.Length(), 2);
  EXPECT_EQ(data.TCorr(0), static_cast<long double>(0.000123456));
  EXPECT_EQ(data.TCorr(1), static_cast<long double>(-0.000123456));

  ReadText(Header({"C1"}) + Epoch(0, 12, list + " ") + lines); // 69 characters
  EXPECT_FALSE(rinex.IsTimeCorr);
  ReadText(Header({"C1"}) + Epoch(0, 12, list + "  ") + lines); // 70
  EXPECT_TRUE(rinex.IsTimeCorr);
  EXPECT_EQ(data.TCorr(0), 0.0L);
}

TEST_F(RINEXFile, LaterClockOffsetsAreNotLookedFor) {
  ReadText(Header({"C1"}) + Epoch(0, 1, "G 1") + "\n" +
           Epoch(30, 12, Satellites(12) + " 0.000123456") + Repeated(12, "\n"));
  EXPECT_FALSE(rinex.IsTimeCorr);
  EXPECT_EQ(data.TCorr.Length(), 0);
}

TEST_F(RINEXFile, FurtherListLinesAgreeInBothPasses) {
  for (const int n : {12, 13, 24, 25, 37}) {
    for (const int fields : {1, 5}) {
      const std::string line = Repeated(fields, Field(7)) + "\n";
      std::string text = fields == 1 ? Header({"C1"}) : Header({"C1", "P1", "P2", "L1", "L2"});
      for (int i = 0; i < 3; ++i) text += Epoch(30 * i, n, Satellites(n)) + Repeated(n, line);
      ReadText(text);
      EXPECT_EQ(data.GetNEpoch(), 3) << n;
      EXPECT_EQ(data.GetNObs(), 3 * n);
      EXPECT_EQ(data.sat(3 * n - 1), n);
      EXPECT_EQ(data.C1(3 * n - 1).obs, 7.0L);
      EXPECT_EQ(data.nComment, 0);
    }
  }
}

TEST_F(RINEXFile, ManyTypesAgreeInBothPasses) {
  // Eleven types: three lines a satellite, of which the count passes over one, as the second
  // line of the list of types gives no number.
  const std::string five = Repeated(5, Field(7)) + "\n";
  std::string text = Header({"C1", "P1", "P2", "L1", "L2", "C2", "S1", "S2", "D1", "D2", "C5"});
  for (int i = 0; i < 2; ++i)
    text += Epoch(30 * i, 13, Satellites(13)) + Repeated(13, five + five + Field(7) + "\n");
  ReadText(text);
  EXPECT_EQ(data.GetNEpoch(), 2);
  EXPECT_EQ(data.GetNObs(), 26);
  EXPECT_EQ(data.C5(25).obs, 7.0L);
}

TEST_F(RINEXFile, SecondFileReplacesTheFirst) {
  ReadText(Header({"C1", "P2"}) + Epoch(0, 12, Satellites(12) + " 0.000123456") +
           Repeated(12, Field(1) + Field(2) + "\n"));
  ReadText(Header({"L1"}) + Epoch(30, 1, "G 1") + Field(1) + "\n");
  EXPECT_EQ(data.GetNObs(), 1);
  EXPECT_EQ(data.C1.Length(), 0);
  EXPECT_EQ(data.P2.Length(), 0);
  EXPECT_FALSE(header.iC1);
  EXPECT_EQ(data.L1(0).obs, 1.0L);
  EXPECT_EQ(data.TCorr.Length(), 0);
}

TEST_F(RINEXFile, LongLineBetweenEpochsEndsTheFile) {
  ReadText(Header({"C1"}) + Epoch(0, 1, "G 1") + Field(1) + "\n" + std::string(100, 'x') + "\n" +
           Epoch(30, 1, "G 1") + Field(2) + "\n");
  EXPECT_EQ(data.GetNEpoch(), 1);
  EXPECT_EQ(data.GetNObs(), 1);
}

TEST_F(RINEXFile, WarningGoesToStandardOutput) {
  const Captured out(std::cout);
  rinex.RINEXWarning("TEXT");
  EXPECT_EQ(out.Text(), "\n#### RINEX: Warning -> TEXT ####\n     Continuing RINEX ... \n");
}

TEST_F(RINEXFile, PrintsHeaderAndData) {
  ReadText(Header({"C1"}) + Epoch(0, 1, "G 1") + Field(1) + "\n");
  std::string printed;
  {
    const Captured out(std::cout);
    rinex.PrintFile();
    printed = out.Text();
  }
  rinex.PrintFile(folder_.Name("copy.11o").c_str());
  const std::string copy = ReadWhole(folder_.Name("copy.11o"));
  // The second line has the time of day.
  EXPECT_EQ(printed.substr(0, 81), copy.substr(0, 81));
  EXPECT_EQ(printed.substr(161), copy.substr(161));
  EXPECT_TRUE(copy.ends_with(End() + Epoch(0, 1, "G 1") + "         1.00000\n"));
}

TEST_F(RINEXFileDeathTest, FileThatDoesNotOpen) {
  EXPECT_ENDS(rinex.SetFile(folder_.Name("none.11o").c_str()),
              "^\n#### RINEX: Error -> RINEX FILE CAN NOT BE OPENED! ####\n"
              "     Exiting RINEX ... \n$");
}

TEST_F(RINEXFileDeathTest, NameOfMoreThan255CharactersIsCut) {
  folder_.Write("obs.11o", Header({"C1"}));
  std::string detour = folder_.Path().string() + "/";
  while (detour.size() < 250) detour += "./";
  ASSERT_TRUE(std::filesystem::exists(detour + "obs.11o"));
  EXPECT_ENDS(rinex.SetFile((detour + "obs.11o").c_str()), "RINEX FILE CAN NOT BE OPENED!");
}

TEST_F(RINEXFileDeathTest, CopyThatDoesNotOpen) {
  EXPECT_ENDS(rinex.PrintFile("/no/such/folder/copy.11o"),
              "#### RINEX: Error -> FILE /no/such/folder/copy.11o CAN NOT BE OPENED FOR "
              "WRITING ####");
}

TEST_F(RINEXFileDeathTest, FilesWithoutEpochs) {
  const char* const report = "NUMBER OF EPOCH IN RINEX FILE NOT DETERMINED!";
  EXPECT_ENDS(ReadText(""), report);
  EXPECT_ENDS(ReadText(Header({"C1"})), report);
  EXPECT_ENDS(ReadText(Line("A", "MARKER NAME") + Epoch(0, 1, "G 1") + "\n"), report); // no end
  EXPECT_ENDS(ReadText(std::string("\0\xff\r\0\n\n binary", 13)), report);
  EXPECT_ENDS(ReadText(std::string(100, 'x') + "\n" + Header({"C1"}) + Epoch(0, 1, "G 1") + "\n"),
              report);
  EXPECT_ENDS(Read(folder_.Path().string()), report); // a folder reads as an empty file
}

TEST_F(RINEXFileDeathTest, FileWithoutRecords) {
  EXPECT_ENDS(ReadText(Header({"C1"}) + Epoch(0, 0, " ")),
              "NUMBER OF OBSERVATIONS IN RINEX FILE NOT DETERMINED!");
}

TEST_F(RINEXFileDeathTest, FileThatEndsWithinASatellite) {
  EXPECT_ENDS(ReadText(Header({"C1"}) + Epoch(0, 2, "G 1G 2") + Field(1) + "\n"), "^$");
  EXPECT_ENDS(ReadText(Header({"C1"}) + Epoch(0, 13, Satellites(12))), "^$");
  // The count is content with the first of the two lines, the filling is not.
  EXPECT_ENDS(
      ReadText(Header({"C1", "P1", "P2", "L1", "L2", "C2"}) + Epoch(0, 1, "G 1") + Field(1) + "\n"),
      "^$");
}

TEST_F(RINEXFileDeathTest, LongLineWithinASatellite) {
  EXPECT_ENDS(
      ReadText(Header({"C1"}) + Epoch(0, 1, "G 1") + Field(1) + std::string(84, ' ') + "\n"), "^$");
}

TEST_F(RINEXFileDeathTest, ListOfTypesThatTakesTheEndOfTheHeader) {
  // Ten types, of which the second line is missing: END OF HEADER is taken for it, and the
  // header then runs to the end of the file. The epochs that were counted would stay empty.
  EXPECT_ENDS(ReadText(Line("    10    C1    P1    P2    L1    L2    C2    S1    S2    D1",
                            "# / TYPES OF OBSERV") +
                       End() + Epoch(0, 1, "G 1") + Field(1) + "\n\n"),
              "Error -> NUMBER OF EPOCHS AND OBSERVATIONS DOES NOT FIT THE DATA IN RINEX FILE "
              ".*/obs.11o! ");
}

TEST_F(RINEXFileDeathTest, LostLineOfASatelliteThatTakesTheNextEpoch) {
  const std::string types =
      Line("    10    C1    P1    P2    L1    L2    C2    S1    S2    D1", "# / TYPES OF OBSERV") +
      Line("          D2", "# / TYPES OF OBSERV");
  EXPECT_ENDS(ReadText(types + End() + Epoch(0, 1, "G 1") + Field(1) + "\n" + Epoch(30, 1, "G 1") +
                       Field(1) + "\n" + Field(2) + "\n"),
              "NUMBER OF EPOCHS AND OBSERVATIONS DOES NOT FIT THE DATA IN RINEX FILE");
}

TEST_F(RINEXFileDeathTest, NumberOfTypesThatFitsInNoFile) {
  // Read as 16 bits it would be 2.
  EXPECT_ENDS(ReadText(Line(" 65538    C1    P1", "# / TYPES OF OBSERV") + End() +
                       Epoch(0, 1, "G 1") + Field(1) + "\n"),
              "NUMBER OF EPOCHS AND OBSERVATIONS DOES NOT FIT");
}

TEST_F(RINEXFileDeathTest, EpochsThatTheCountPassedOver) {
  // Without types the count takes a line for each satellite, the filling none.
  EXPECT_ENDS(ReadText(Header({}) + Epoch(0, 1, "G 1") + Epoch(30, 1, "G 1")),
              "Matrix index not in range:     1 -> \\[    0,    0\\]");
}

TEST_F(RINEXFile, WrittenFileIsReadBack) {
  std::string text = Header({"L1", "C1", "P2", "D1", "S1", "S5", "L2"});
  for (int i = 0; i < 3; ++i)
    text += Epoch(30.25 * i, 13, Satellites(12) + "\n" + std::string(32, ' ') + "R24") +
            Repeated(13, " 109876543.21917  21234567.123    21234569.875 5     -1234.567  "
                         "      45.250  \n        41.000   -9876543.219 4\n");
  ReadText(text);
  rinex.PrintFile(folder_.Name("copy.11o").c_str());
  File copy;
  copy.Read(folder_.Name("copy.11o"));
  ASSERT_EQ(copy.data.GetNObs(), 39);
  EXPECT_EQ(copy.data.L1(0).lli, 1);
  ExpectSameStore(copy.data, data);
}

TEST_F(RINEXFile, RecordedFilesAreReadBackFromTheirCopies) {
  for (const char* file : {"2011-283-cagz/cagz2830.11o", "2013-166-gmsd/gmsd166e.13o",
                           "quirks/COMO1190.08o", "quirks/txau047.12o", "quirks/cont.06o"}) {
    SKIP_WITHOUT(file);
    Read(RealData(file));
    rinex.PrintFile(folder_.Name("copy").c_str());
    File copy;
    copy.Read(folder_.Name("copy"));
    SCOPED_TRACE(file);
    ExpectSameStore(copy.data, data);
    EXPECT_EQ(copy.header.interval, header.interval);
    EXPECT_STREQ(copy.header.rectype, header.rectype);
  }
}

namespace {

// What is known of a recorded file from its description.
struct Recorded {
  const char* file;
  const char* marker;
  unsigned short types;
  long epochs;
  short mostSatellites;
  long epochsOverTwelve;
  float interval;
};

class RINEXRecorded : public testing::TestWithParam<Recorded> {};

} // namespace

TEST_P(RINEXRecorded, HasItsEpochsAndSatellites) {
  const Recorded& known = GetParam();
  SKIP_WITHOUT(known.file);
  File f;
  f.Read(RealData(known.file));
  EXPECT_EQ(std::string(f.header.mname).substr(0, 4), known.marker);
  EXPECT_EQ(f.header.nobs, known.types);
  EXPECT_EQ(f.data.GetNEpoch(), known.epochs);
  EXPECT_EQ(f.header.interval, known.interval);
  short most = 0;
  long overTwelve = 0;
  long records = 0;
  for (long i = 0; i < f.data.GetNEpoch(); ++i) {
    most = std::max(most, f.data.nsat(i));
    if (f.data.nsat(i) > 12) ++overTwelve;
    records += f.data.nsat(i);
  }
  EXPECT_EQ(most, known.mostSatellites);
  EXPECT_EQ(overTwelve, known.epochsOverTwelve);
  EXPECT_EQ(records, f.data.GetNObs());
}

INSTANTIATE_TEST_SUITE_P(
    Files, RINEXRecorded,
    testing::Values(Recorded{"2011-283-cagz/cagz2830.11o", "CAGZ", 7, 2880, 20, 2699, 30},
                    Recorded{"2011-283-cagz/brus2830.11o", "BRUS", 7, 2880, 11, 0, 30},
                    Recorded{"2010-001-albh-gras/ALBH0010.10O", "albh", 7, 2880, 11, 0, 30},
                    Recorded{"2010-001-albh-gras/gras0010.10o", "GRAS", 7, 2880, 12, 0, 30},
                    Recorded{"2013-166-gmsd/gmsd166e.13o", "GMSD", 7, 240, 21, 240, 30},
                    Recorded{"2015-019-joze/joze0190.15o", "JOZE", 4, 2880, 12, 0, 30},
                    Recorded{"quirks/nw1_0160.08o", "nw1", 8, 299, 11, 0, 15},
                    Recorded{"quirks/COMO1190.08o", "COMO", 7, 181, 9, 0, 1},
                    Recorded{"quirks/89090590.11o", "8909", 5, 392, 17, 342, 5},
                    Recorded{"quirks/cont.06o", "8540", 10, 7, 13, 1, 30},
                    Recorded{"quirks/KOSG0010.95O", "KOSG", 5, 3, 8, 0, 30},
                    Recorded{"quirks/txau047.12o", "txau", 9, 973, 1, 0, 5},
                    Recorded{"quirks/AJAC3550.21O", "AJAC", 22, 2, 26, 2, 30},
                    Recorded{"quirks/a3460.13o", "-Unk", 6, 115, 7, 0, 30}));

TEST_F(RINEXFile, PowerFailureFlagsOfARecordedFile) {
  SKIP_WITHOUT("2011-283-cagz/cagz2830.11o");
  Read(RealData("2011-283-cagz/cagz2830.11o"));
  for (long i = 0; i < data.GetNEpoch(); ++i)
    EXPECT_EQ(data.flag(i), i % 120 == 0 ? '1' : '0') << i; // at every full hour
  EXPECT_TRUE(data.HasGPSObs());
  EXPECT_TRUE(data.HasGLONASSObs());
}

TEST_F(RINEXFile, ClockOffsetsOfARecordedFileAreTakenByColumn) {
  // This receiver puts fifteen columns behind the list, however long: with eleven satellites
  // they end in column 80, with fewer the number has lost its sign and point.
  SKIP_WITHOUT("quirks/nw1_0160.08o");
  Read(RealData("quirks/nw1_0160.08o"));
  ASSERT_EQ(data.TCorr.Length(), 299);
  EXPECT_EQ(data.nsat(0), 10);
  EXPECT_EQ(data.TCorr(0), 438288.0L); // of -0.000438288
  EXPECT_EQ(data.nsat(298), 11);
  EXPECT_EQ(data.TCorr(298), static_cast<long double>(0.000500021));
}

TEST_F(RINEXFile, CycleSlipRecordsWithAListCountAsAnEpoch) {
  // The mixed example of the format has six epochs and one record of flag 6 with a list of
  // satellites; its other events open no epoch.
  SKIP_WITHOUT("quirks/mixed211.05o");
  Read(RealData("quirks/mixed211.05o"));
  EXPECT_EQ(data.GetNEpoch(), 7);
  EXPECT_EQ(data.GetNObs(), 28);
  EXPECT_EQ(data.flag(5), '6');
  EXPECT_EQ(data.sat(3), 211); // E11
  EXPECT_EQ(data.sat(7), 121); // R21
  EXPECT_EQ(data.TCorr(0), static_cast<long double>(-.123456789));
  EXPECT_TRUE(header.iC1); // from P1
  EXPECT_EQ(data.C1(0).obs, static_cast<long double>(23629347.915));
  EXPECT_EQ(data.L1(1).obs, static_cast<long double>(-.120));
  EXPECT_EQ(data.L1(1).ss, 9);
  EXPECT_EQ(data.nComment, 24);
}

TEST_F(RINEXFileDeathTest, RecordedFileCutOffWithinAnEpoch) {
  SKIP_WITHOUT("quirks/rovn0010.21o");
  EXPECT_ENDS(Read(RealData("quirks/rovn0010.21o")), "^$");
}

TEST_F(RINEXFileDeathTest, RecordedFileWithSecondsOf60) {
  SKIP_WITHOUT("teqc/LRZ-011m18.14O");
  EXPECT_ENDS(Read(RealData("teqc/LRZ-011m18.14O")), "ymdhms: Error -> SECOND not valid");
}
