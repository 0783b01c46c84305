#include "GNSS/antexNew.h"

#include "GNSS/TimeConverse.h"
#include "PROGINC/LineSource.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"

#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <vector>

struct antexPeer {
  static float Version(const antex& atx) { return atx.version; }
  static char System(const antex& atx) { return atx.satsystem; }
  static char PcvType(const antex& atx) { return atx.pvctype; }
};

namespace {

const char* const kSubset = "antex/igs08_1648_subset.atx";
const char* const kReceiver = "LEIAT504        LEIS";

std::string Line(const std::string& text, const std::string& label) {
  return text + std::string(text.size() < 60 ? 60 - text.size() : 0, ' ') + label + "\n";
}

// In the layout of F8.2 fields.
std::string Nodes(const std::string& first, const std::vector<double>& mm) {
  std::string line = first;
  char field[40];
  for (const double value : mm) {
    std::snprintf(field, sizeof field, "%8.2f", value);
    line += field;
  }
  return line + "\n";
}

std::string Offset(double n, double e, double u) {
  char text[100];
  std::snprintf(text, sizeof text, "%10.2f%10.2f%10.2f", n, e, u);
  return Line(text, "NORTH / EAST / UP");
}

// A record of one frequency after the other, zenith 0 to 90 by 5 degrees: value k is
// scale * (k + 1) mm, so that neither grid nor table is symmetric.
struct Record {
  std::string type = kReceiver; // with the satellite from column 20 on
  double dazi = 0;
  std::string zenith = "     0.0  90.0   5.0";
  std::vector<std::string> frequencies = {"G01"};
  std::string validity;

  static std::vector<double> Row(double scale) {
    std::vector<double> row;
    for (int k = 0; k < 19; ++k) row.push_back(scale * (k + 1));
    return row;
  }
  std::string Frequency(const std::string& name, double scale) const {
    std::string text = Line("   " + name, "START OF FREQUENCY") +
                       Offset(10 * scale, 20 * scale, 30 * scale) + Nodes("   NOAZI", Row(scale));
    if (dazi > 0)
      for (int row = 0; row <= static_cast<int>(360 / dazi); ++row)
        text += Nodes("     0.0", Row(scale + 10 * row));
    return text + Line("   " + name, "END OF FREQUENCY");
  }
  std::string Text() const {
    char step[20];
    std::snprintf(step, sizeof step, "  %6.1f", dazi);
    std::string text = Line("", "START OF ANTENNA") + Line(type, "TYPE / SERIAL NO") +
                       Line("ROBOT", "METH / BY / # / DATE") + Line(step, "DAZI") +
                       Line(zenith, "ZEN1 / ZEN2 / DZEN") +
                       Line("     " + std::to_string(frequencies.size()), "# OF FREQUENCIES") +
                       validity + Line("IGS08_1648", "SINEX CODE") +
                       Line("START OF FREQUENCY in a comment", "COMMENT");
    for (std::size_t i = 0; i < frequencies.size(); ++i)
      text += Frequency(frequencies[i], static_cast<double>(i + 1));
    return text + Line("", "END OF ANTENNA");
  }
};

std::string Header() {
  return Line("     1.4            M", "ANTEX VERSION / SYST") + Line("A", "PCV TYPE / REFANT") +
         Line("", "END OF HEADER");
}

Record Satellite(const std::string& type, const std::string& name,
                 const std::vector<std::string>& frequencies = {"G01", "G02"}) {
  Record r;
  r.type = type + std::string(20 - type.size(), ' ') + name;
  r.frequencies = frequencies;
  return r;
}

std::string Validity(const std::string& from, const std::string& until) {
  return Line(from, "VALID FROM") + Line(until, "VALID UNTIL");
}

void Read(antex& atx, const std::string& text) {
  const ScratchFolder folder;
  atx.SetFile(folder.Write("test.atx", text).c_str());
  atx.ReadFile();
}

mjd Day(unsigned short year, unsigned short month, unsigned short day) {
  return ymdhms2mjd(ymdhms(year, month, day, 0, 0, 0));
}

// Offset in millimetres.
testing::AssertionResult HasOffset(const antex& atx, short freq, long double n, long double e,
                                   long double u) {
  neu off(7, 7, 7);
  atx.GetAntennaOffset(off, freq);
  if (!Near(off.GetN(), n / 1000, 1e-15L)) return Near(off.GetN(), n / 1000, 0) << " in n";
  if (!Near(off.GetE(), e / 1000, 1e-15L)) return Near(off.GetE(), e / 1000, 0) << " in e";
  return Near(off.GetU(), u / 1000, 1e-15L) << " in u";
}

struct Variations {
  double g1 = 7, g2 = 7, r1 = 7, r2 = 7;
};
Variations At(const antex& atx, double zen) {
  Variations v;
  atx.GetAntennaPCV(zen, 0, v.g1, v.g2, v.r1, v.r2);
  return v;
}

// Standard error of what is done.
template <typename Action> std::string Warnings(Action&& action) {
  const Captured err(std::cerr);
  action();
  return err.Text();
}

std::string Warning(const std::string& text) {
  return "\n#### Zenta: Warning -> " + text + " ####\n     Continuing Zenta ... \n\n";
}

TEST(antex, HeaderAndCounts) {
  antex atx;
  Read(atx, Header() + Satellite("BLOCK IIF", "G25").Text() +
                Satellite("GLONASS-M", "R01", {"R01", "R02"}).Text() + Record().Text() +
                Record().Text());
  EXPECT_EQ(atx.GetNAntenna(), 4);
  EXPECT_EQ(atx.GetNGPSSat(), 1);
  EXPECT_EQ(atx.GetNGLNSat(), 1);
  EXPECT_EQ(atx.GetNRec(), 2);
  EXPECT_EQ(atx.GetAtxIndex(), -1);
  EXPECT_NEAR(antexPeer::Version(atx), 1.4, 1e-6);
  EXPECT_EQ(antexPeer::System(atx), 'M');
  EXPECT_EQ(antexPeer::PcvType(atx), 'A');
}

TEST(antex, ReceiverOfOneFrequencyAnswersTheSameOffsetOnAllFour) {
  antex atx;
  Read(atx, Header() + Record().Text());
  atx.SetAntenna(kReceiver);
  EXPECT_EQ(atx.GetAtxIndex(), 0);
  for (short freq = 0; freq < 4; ++freq) EXPECT_TRUE(HasOffset(atx, freq, 10, 20, 30)) << freq;
  const Variations v = At(atx, 5);
  EXPECT_EQ(v.g1, 0.002);
  EXPECT_EQ(v.g2, 0.002);
  EXPECT_EQ(v.r1, 0.002);
  EXPECT_EQ(v.r2, 0.002);
}

TEST(antex, ReceiverOfTwoFrequenciesLendsThemToGLONASS) {
  Record r;
  r.frequencies = {"G01", "G02"};
  r.dazi = 120;
  antex atx;
  Read(atx, Header() + r.Text());
  atx.SetAntenna(kReceiver);
  EXPECT_TRUE(HasOffset(atx, 0, 10, 20, 30));
  EXPECT_TRUE(HasOffset(atx, 1, 20, 40, 60));
  EXPECT_TRUE(HasOffset(atx, 2, 10, 20, 30));
  EXPECT_TRUE(HasOffset(atx, 3, 20, 40, 60));
  EXPECT_EQ(At(atx, 0).r1, 0.001);
  EXPECT_EQ(At(atx, 0).r2, 0.002);
  // The azimuth tables stay with their own frequencies.
  EXPECT_EQ(atx.AT_PCV(0).PVAZI_G01.NRow(), 4);
  EXPECT_EQ(atx.AT_PCV(0).PVAZI_R01.Length(), 0);
}

TEST(antex, ReceiverOfFourFrequenciesHasItsOwn) {
  Record r;
  r.frequencies = {"G01", "G02", "R01", "R02"};
  antex atx;
  Read(atx, Header() + r.Text());
  atx.SetAntenna(kReceiver);
  EXPECT_TRUE(HasOffset(atx, 3, 40, 80, 120));
  const Variations v = At(atx, 0);
  EXPECT_EQ(v.g1, 0.001);
  EXPECT_EQ(v.g2, 0.002);
  EXPECT_EQ(v.r1, 0.003);
  EXPECT_EQ(v.r2, 0.004);
}

TEST(antex, BlockIIRMSatelliteG05) {
  antex atx;
  Read(atx, Header() + Satellite("BLOCK IIR-M", "G05").Text());
  EXPECT_EQ(atx.AT_PCV(0).SatID, 5);
  EXPECT_EQ(atx.AT_PCV(0).PCVType, 7);
  EXPECT_STREQ(atx.AT_PCV(0).AntennaName, "BLOCK IIR-M         ");
  EXPECT_FALSE(atx.IsBlockIIR());
  atx.SetSatellite(5, Day(2011, 10, 10));
  EXPECT_EQ(atx.GetAtxIndex(), 0);
  EXPECT_TRUE(atx.IsBlockIIR());
}

TEST(antex, ClassesOfAllSatelliteTypes) {
  const struct {
    const char* type;
    const char* name;
    short code;
    short id;
    bool isIIR;
  } cases[] = {
      {"BLOCK I", "G04", 1, 4, false},      {"BLOCK II", "G14", 2, 14, false},
      {"BLOCK IIA", "G32", 3, 32, false},   {"BLOCK IIR", "G 2", 4, 2, true},
      {"BLOCK IIR-A", "G11", 5, 11, true},  {"BLOCK IIR-B", "G16", 6, 16, true},
      {"BLOCK IIR-M", "G17", 7, 17, true},  {"BLOCK IIF", "G25", 8, 25, false},
      {"GLONASS", "R03", 9, 103, false},    {"GLONASS-M", "R24", 10, 124, false},
      {"GLONASS-K", "R09", 11, 109, false}, {"GLONASS-K1", "R04", 12, 104, false},
      {"GALILEO-1", "E11", 0, 211, false},  {"AOAD/M_T", "   ", 0, 0, false},
  };
  std::string text = Header();
  for (const auto& c : cases) text += Satellite(c.type, c.name).Text();
  antex atx;
  Read(atx, text);
  for (int i = 0; i < atx.GetNAntenna(); ++i) {
    const AntennaPCV& a = atx.AT_PCV(i);
    EXPECT_EQ(a.PCVType, cases[i].code) << cases[i].type;
    EXPECT_EQ(a.SatID, cases[i].id) << cases[i].type;
    if (a.SatID == 0) continue;
    atx.SetSatellite(a.SatID, Day(2011, 1, 1));
    EXPECT_EQ(atx.GetAtxIndex(), i);
    EXPECT_EQ(atx.IsBlockIIR(), cases[i].isIIR) << cases[i].type;
  }
}

TEST(antex, UnexpectedSatelliteLetterIsWarnedOf) {
  antex atx;
  const std::string text = Header() + Satellite("BEIDOU-2", "C06").Text();
  EXPECT_EQ(Warnings([&] { Read(atx, text); }),
            Warning("UNEXPECTED SATELLITE TYPE IN ANTEX FILE: C! "));
  EXPECT_EQ(atx.AT_PCV(0).SatID, 0);
}

TEST(antex, UnexpectedFrequencyIsWarnedOfAndPassedOver) {
  Record r;
  r.frequencies = {"G05", "G01"};
  antex atx;
  EXPECT_EQ(Warnings([&] { Read(atx, Header() + r.Text()); }),
            Warning("READING ANTENNA PHASE CENTER VARIATIONS - UNEXPECTED FREQUENCY!!"));
  atx.SetAntenna(kReceiver);
  EXPECT_TRUE(HasOffset(atx, 0, 20, 40, 60));
}

TEST(antex, RecordWithoutATypeIsWarnedOfAndNeverFound) {
  const std::string typed = Record().Text();
  const std::string untyped = Line("", "START OF ANTENNA") + Line("", "END OF ANTENNA");
  antex atx;
  EXPECT_EQ(
      Warnings([&] { Read(atx, Header() + untyped + typed + Line("stray", "TYPE / SERIAL NO")); }),
      Warning("TYPE OF ANTENNA SENSOR NOT DEFINED [RECEIVER|GPS|GLONASS]!"));
  EXPECT_EQ(atx.AT_PCV(0).PCVType, -1);
  atx.SetAntenna(kReceiver);
  EXPECT_EQ(atx.GetAtxIndex(), 1);
}

// Selection

TEST(antex, SatelliteIsSelectedByItsValidityEndsIncluded) {
  Record first = Satellite("BLOCK IIA", "G01"), second = Satellite("BLOCK IIF", "G01");
  first.validity = Validity("  1992    11    22     0     0    0.0000000",
                            "  2008    10    16    23    59   59.9999999");
  second.validity = Line("  2011     7    16     0     0    0.0000000", "VALID FROM");
  antex atx;
  Read(atx, Header() + first.Text() + second.Text());
  EXPECT_TRUE(atx.AT_PCV(0).ValidFrom == Day(1992, 11, 22));
  EXPECT_TRUE(Near(atx.AT_PCV(0).ValidTo.GetSecond(), 86399.9999999L, 1e-9L));
  EXPECT_TRUE(atx.AT_PCV(1).ValidTo == mjd(85000, 0));
  EXPECT_TRUE(AntennaPCV().ValidFrom == mjd(44250, 0));
  const struct {
    mjd t;
    int index;
  } cases[] = {{Day(1992, 11, 22), 0},
               {atx.AT_PCV(0).ValidTo, 0},
               {Day(2011, 7, 16), 1},
               {mjd(85000, 0), 1}};
  for (const auto& c : cases) {
    atx.SetSatellite(1, c.t);
    EXPECT_EQ(atx.GetAtxIndex(), c.index);
  }
  for (const mjd& t : {Day(1992, 11, 21), Day(2009, 1, 1), mjd(85000, 1)}) {
    const Captured err(std::cerr);
    atx.SetSatellite(1, t);
    EXPECT_EQ(atx.GetAtxIndex(), -1);
  }
}

TEST(antex, SatelliteBeyondEveryValidityLeavesNothingSelected) {
  Record r = Satellite("BLOCK IIA", "G01");
  r.validity = Validity("  1992    11    22     0     0    0.0000000",
                        "  2008    10    16    23    59   59.9999999");
  antex atx;
  Read(atx, Header() + r.Text());
  atx.SetSatellite(1, Day(2000, 1, 1));
  EXPECT_EQ(Warnings([&] { atx.SetSatellite(1, Day(2008, 10, 17)); }),
            Warning("SATELLITE: 1 NOT FOUND IN ANTEX FILE - SETING ALL CALIBRATION PARAMETERS TO "
                    "ZERO!"));
  EXPECT_EQ(atx.GetAtxIndex(), -1);
  EXPECT_FALSE(atx.IsBlockIIR());
  EXPECT_TRUE(HasOffset(atx, 0, 0, 0, 0));
  EXPECT_EQ(At(atx, 10).g1, 0);
}

TEST(antex, NameThatOccursWithinTheOneAskedForIsFound) {
  // The label may stand anywhere in its line, here within the name.
  std::string shorter = Record().Text();
  const std::string line = Line(kReceiver, "TYPE / SERIAL NO");
  shorter.replace(shorter.find(line), line.size(), "TYPE / SERIAL NO\n");
  antex atx;
  Read(atx, Header() + Record().Text() + shorter);
  atx.SetAntenna("  TYPE / SERIAL NO  ");
  EXPECT_EQ(atx.GetAtxIndex(), 1);
  atx.SetAntenna(kReceiver);
  EXPECT_EQ(atx.GetAtxIndex(), 0);
}

TEST(antex, UnknownReceiverIsWarnedOf) {
  antex atx;
  Read(atx, Header() + Record().Text());
  atx.SetAntenna(kReceiver);
  EXPECT_EQ(Warnings([&] { atx.SetAntenna("LEIAT504        NONE"); }),
            Warning("ANTENNA: LEIAT504        NONE NOT FOUND IN ANTEX FILE - SETING ALL "
                    "CALIBRATION PARAMETERS TO ZERO!"));
  EXPECT_EQ(atx.GetAtxIndex(), -1);
  EXPECT_TRUE(HasOffset(atx, 0, 0, 0, 0));
}

TEST(antexDeathTest, NameOfNineteenCharactersEndsTheProgram) {
  antex atx;
  EXPECT_ENDS(atx.SetAntenna("LEIAT504        LEI"),
              "Zenta: Error -> ANTENNA NAME MUST HAVE 20 CHARACTERS!");
  EXPECT_ENDS(atx.SetAntenna("LEIAT504        LEIS "), "ANTENNA NAME MUST HAVE 20 CHARACTERS!");
  EXPECT_ENDS(atx.SetAntenna(""), "ANTENNA NAME MUST HAVE 20 CHARACTERS!");
}

TEST(antexDeathTest, MissingFileEndsTheProgram) {
  const ScratchFolder folder;
  antex atx;
  EXPECT_ENDS(atx.SetFile(folder.Name("none.atx").c_str()),
              "Zenta: Error -> ANTEX FILE DOES NOT EXISTS!");
}

TEST(antex, BadFrequencyCodeIsWarnedOfAndGivesZero) {
  antex atx;
  Read(atx, Header() + Record().Text());
  atx.SetAntenna(kReceiver);
  for (const short freq : {short(-1), short(4)})
    EXPECT_EQ(Warnings([&] { EXPECT_TRUE(HasOffset(atx, freq, 0, 0, 0)); }),
              Warning("FREQUENCY TYPE NOT PROPER (GETTING ANTENNA OFFSET)!"));
}

// Variations

TEST(antex, VariationHalfWayIsTheMeanOfTheNodes) {
  antex atx;
  Read(atx, Header() + Record().Text());
  atx.SetAntenna(kReceiver);
  // Nodes 2 mm at 5, 3 mm at 10, 19 mm at 90 degrees.
  EXPECT_NEAR(At(atx, 7.5).g1, 0.0025, 1e-15);
  EXPECT_NEAR(At(atx, 6).g1, 0.0022, 1e-15);
  EXPECT_NEAR(At(atx, 10).g1, 0.003, 1e-15);
  EXPECT_EQ(At(atx, 90).g1, 0.019);
  EXPECT_EQ(At(atx, 95).g1, 0.019);
  EXPECT_EQ(At(atx, 0).g1, 0.001);
  EXPECT_EQ(At(atx, -5).g1, 0.001);
  EXPECT_NEAR(At(atx, 89.99).g1, 0.018998, 1e-15);
}

TEST(antex, FractionIsCountedFromZeroWhereTheGridDoesNotBeginThere) {
  Record r;
  r.zenith = "    10.0  90.0   5.0";
  antex atx;
  Read(atx, Header() + r.Text());
  atx.SetAntenna(kReceiver);
  // 12 degrees lie behind node 0 of 1 mm: 12 / 5 = 2.4 steps towards node 1 of 2 mm.
  EXPECT_NEAR(At(atx, 12).g1, 0.0034, 1e-15);
  EXPECT_EQ(At(atx, 10).g1, 0.001);
}

TEST(antex, SatellitesHaveTheirOwnSystemOnly) {
  antex atx;
  Read(atx, Header() + Satellite("BLOCK IIF", "G25").Text() +
                Satellite("GLONASS-M", "R01", {"R01", "R02"}).Text());
  atx.SetSatellite(25, Day(2011, 10, 10));
  EXPECT_EQ(At(atx, 0).g1, 0.001);
  EXPECT_EQ(At(atx, 0).g2, 0.002);
  EXPECT_EQ(At(atx, 0).r1, 0);
  EXPECT_EQ(At(atx, 0).r2, 0);
  atx.SetSatellite(101, Day(2011, 10, 10));
  EXPECT_EQ(At(atx, 0).g1, 0);
  EXPECT_EQ(At(atx, 0).g2, 0);
  EXPECT_EQ(At(atx, 0).r1, 0.001);
  EXPECT_EQ(At(atx, 0).r2, 0.002);
}

TEST(antex, FrequencyWithoutATableHasNoVariations) {
  antex atx;
  Read(atx, Header() + Satellite("BLOCK IIF", "G25", {"G01"}).Text());
  atx.SetSatellite(25, Day(2011, 10, 10));
  EXPECT_EQ(At(atx, 7.5).g2, 0);
  EXPECT_TRUE(HasOffset(atx, 1, 0, 0, 0));
}

TEST(antex, GridThatDoesNotEndOnANodeStaysWithItsLastNode) {
  Record r;
  r.zenith = "     0.0  89.5   5.0"; // last node at 85
  antex atx;
  Read(atx, Header() + r.Text());
  atx.SetAntenna(kReceiver);
  EXPECT_EQ(At(atx, 87).g1, 0.018);
  EXPECT_EQ(At(atx, 90).g1, 0.018);
}

TEST(antex, WhatIsNoAngleOrNoGridHasNoVariations) {
  antex atx;
  Read(atx, Header() + Record().Text());
  atx.SetAntenna(kReceiver);
  EXPECT_EQ(At(atx, std::nan("")).g1, 0);
  // Steps that would carry the interpolation beyond the numbers.
  atx.AT_PCV(0).dzen = 1e-320;
  EXPECT_EQ(At(atx, 45).g1, 0);
}

TEST(antex, AzimuthRowsAreReadInOrder) {
  Record r;
  r.dazi = 5;
  antex atx;
  Read(atx, Header() + r.Text());
  const AntennaPCV& a = atx.AT_PCV(0);
  EXPECT_EQ(a.nAzi, 73);
  EXPECT_EQ(a.nZen, 19);
  EXPECT_EQ(a.PVAZI_G01.NRow(), 73);
  EXPECT_EQ(a.PVAZI_G01.NCol(), 19);
  // Row 72 has scale 1 + 720, node 18 is 19 times that: 13699 mm.
  EXPECT_NEAR(a.PVAZI_G01(72, 18), 13.699, 1e-12);
  EXPECT_NEAR(a.PVAZI_G01(0, 0), 0.001, 1e-15);
}

// Broken files

TEST(antex, GridStepsThatMakeNoGridLeaveTheTablesUnset) {
  for (const char* zenith : {"     0.0  90.0   0.0", "     0.0  90.0  -5.0", "     0.0  90.0   nan",
                             "     0.0 1e300 1e-99", "     0.0  90.0 1e-99", "     0.0   0.0   0.0",
                             "", "     0.0 320.0   5.0"}) {
    Record r;
    r.zenith = zenith;
    antex atx;
    const std::string warnings = Warnings([&] { Read(atx, Header() + r.Text()); });
    EXPECT_EQ(warnings, Warning("ANTENNA GRID NOT VALID IN ANTEX FILE!")) << zenith;
    EXPECT_EQ(atx.AT_PCV(0).PVZEN_G01.Length(), 0) << zenith;
    atx.SetAntenna(kReceiver);
    EXPECT_EQ(At(atx, 7.5).g1, 0) << zenith;
    EXPECT_TRUE(HasOffset(atx, 0, 10, 20, 30)) << zenith;
  }
}

TEST(antex, LaterGridThatIsNoneLeavesTheEarlierTable) {
  Record r;
  r.frequencies = {"G01", "G02"};
  std::string text = r.Text();
  text.insert(text.find("   G02"), Line("     0.0  90.0   0.0", "ZEN1 / ZEN2 / DZEN"));
  antex atx;
  const Captured err(std::cerr);
  Read(atx, Header() + text);
  atx.SetAntenna(kReceiver);
  EXPECT_EQ(At(atx, 90).g1, 0.001);
  EXPECT_EQ(At(atx, 90).g2, 0);
}

TEST(antex, MostZenithNodesAreThoseThatBeginOnALine) {
  Record r;
  r.zenith = "     0.0 310.0   5.0"; // 63 nodes, the last in column 504
  antex atx;
  EXPECT_EQ(Warnings([&] { Read(atx, Header() + r.Text()); }), "");
  EXPECT_EQ(atx.AT_PCV(0).nZen, 63);
  EXPECT_EQ(atx.AT_PCV(0).PVZEN_G01(18), 0.019);
  EXPECT_EQ(atx.AT_PCV(0).PVZEN_G01(62), 0);
}

TEST(antex, AzimuthStepsThatMakeNoGridLeaveTheTablesUnset) {
  for (const char* dazi : {"  -5.0", "  0.0002", "  1e-3"}) {
    std::string text = Record().Text();
    text.replace(text.find("     0.0        "), 8,
                 std::string(dazi) + std::string(8 - std::string(dazi).size(), ' '));
    antex atx;
    const std::string warnings = Warnings([&] { Read(atx, Header() + text); });
    EXPECT_EQ(warnings, Warning("ANTENNA GRID NOT VALID IN ANTEX FILE!")) << dazi;
    EXPECT_EQ(atx.AT_PCV(0).nAzi, 0);
    EXPECT_EQ(atx.AT_PCV(0).PVAZI_G01.Length(), 0);
    EXPECT_EQ(atx.AT_PCV(0).PVZEN_G01.Length(), 19);
  }
}

TEST(antex, FewerRecordsThanTypesEndWithTheFile) {
  const std::string text =
      Header() + Record().Text() + Line("x", "TYPE / SERIAL NO") + Line("y", "TYPE / SERIAL NO");
  antex atx;
  Read(atx, text);
  EXPECT_EQ(atx.GetNAntenna(), 1);
  EXPECT_EQ(atx.GetNRec(), 3);
  atx.SetAntenna(kReceiver);
  EXPECT_EQ(atx.GetAtxIndex(), 0);
  const Captured err(std::cerr);
  atx.SetAntenna("LEIAT504        NONE");
  EXPECT_EQ(atx.GetAtxIndex(), -1);
}

TEST(antex, FileCutAnywhereReads) {
  Record r;
  r.dazi = 90;
  const std::string text = Header() + r.Text() + Satellite("BLOCK IIF", "G25").Text();
  for (std::size_t n = 0; n < text.size(); n += 11) {
    const Captured err(std::cerr);
    antex atx;
    Read(atx, text.substr(0, n));
    EXPECT_LE(atx.GetNAntenna(), 2);
    atx.SetSatellite(25, Day(2011, 10, 10));
    At(atx, 7.5);
  }
}

TEST(antex, EmptyFileDirectoryAndHeaderWithoutEndHaveNoRecords) {
  const ScratchFolder folder;
  antex atx;
  atx.SetFile(folder.Path().c_str());
  atx.ReadFile();
  EXPECT_EQ(atx.GetNAntenna(), 0);
  Read(atx, "");
  EXPECT_EQ(atx.GetNAntenna(), 0);
  Read(atx, Line("     1.4            M", "ANTEX VERSION / SYST") + Record().Text());
  EXPECT_EQ(atx.GetNAntenna(), 0);
}

TEST(antex, LineOfMoreThan511CharactersEndsTheFile) {
  const std::string longest(511, 'x');
  antex atx;
  Read(atx, Header() + longest + "\n" + Record().Text());
  EXPECT_EQ(atx.GetNAntenna(), 1);
  Read(atx, Header() + longest + "x\n" + Record().Text());
  EXPECT_EQ(atx.GetNAntenna(), 0);
}

TEST(antex, CarriageReturnsMakeNoDifference) {
  Record r;
  r.dazi = 45;
  std::string text = Header() + r.Text(), crlf;
  for (const char c : text) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
  antex plain, dos;
  Read(plain, text);
  Read(dos, crlf);
  ASSERT_EQ(dos.GetNAntenna(), 1);
  EXPECT_TRUE(dos.AT_PCV(0).PC_G01 == plain.AT_PCV(0).PC_G01);
  for (long k = 0; k < plain.AT_PCV(0).PVAZI_G01.Length(); ++k)
    EXPECT_EQ(dos.AT_PCV(0).PVAZI_G01(k), plain.AT_PCV(0).PVAZI_G01(k));
}

TEST(antexDeathTest, DateThatNoCalendarHasEndsTheProgram) {
  Record r;
  antex atx;
  r.validity = Line("  2011    13     1     0     0    0.0000000", "VALID FROM");
  EXPECT_ENDS(Read(atx, Header() + r.Text()), "MONTH not valid");
  r.validity = Line(" 67547     1     1     0     0    0.0000000", "VALID FROM");
  EXPECT_ENDS(Read(atx, Header() + r.Text()), "YEAR not valid");
}

// Recorded calibrations

class antexRecorded : public testing::Test {
protected:
  void SetUp() override {
    SKIP_WITHOUT(kSubset);
    atx.SetFile(RealData(kSubset).c_str());
    atx.ReadFile();
  }
  antex atx;
};

TEST_F(antexRecorded, CountsByKind) {
  EXPECT_EQ(atx.GetNAntenna(), 151);
  EXPECT_EQ(atx.GetNGPSSat(), 65);
  EXPECT_EQ(atx.GetNGLNSat(), 75);
  EXPECT_EQ(atx.GetNRec(), 11);
}

TEST_F(antexRecorded, OffsetsAreThoseOfTheFile) {
  const mjd t = Day(2011, 10, 10);
  atx.SetSatellite(25, t); // BLOCK IIF
  EXPECT_TRUE(HasOffset(atx, 0, 394.00L, 0, 1663.20L));
  EXPECT_TRUE(HasOffset(atx, 1, 394.00L, 0, 1663.20L));
  atx.SetSatellite(32, t); // BLOCK IIA
  EXPECT_TRUE(HasOffset(atx, 0, 279.00L, 0, 2777.20L));
  EXPECT_FALSE(atx.IsBlockIIR());
  atx.SetSatellite(101, t); // GLONASS-M
  EXPECT_TRUE(HasOffset(atx, 2, -545.00L, 0, 2500.30L));
  EXPECT_TRUE(HasOffset(atx, 0, 0, 0, 0));
  atx.SetAntenna("AOAD/M_T        NONE");
  EXPECT_TRUE(HasOffset(atx, 0, 0.58L, -0.37L, 91.85L));
}

TEST_F(antexRecorded, SatelliteOfASlotChangesWithTime) {
  // Slot G01: II-R-M SVN 49 from 2009-03-24, II-A SVN 35 from 2011-06-02, II-F SVN 63 after it.
  atx.SetSatellite(1, Day(2010, 1, 1));
  EXPECT_TRUE(HasOffset(atx, 0, 0, 0, 965.60L));
  EXPECT_TRUE(atx.IsBlockIIR());
  atx.SetSatellite(1, Day(2011, 6, 15));
  EXPECT_TRUE(HasOffset(atx, 0, 279.00L, 0, 2622.00L));
  atx.SetSatellite(1, Day(2011, 10, 10));
  EXPECT_EQ(atx.AT_PCV(atx.GetAtxIndex()).PCVType, 8);
}

// Every number of every table against the words of the file.
TEST_F(antexRecorded, TablesAreTheWordsOfTheFile) {
  std::istringstream in(ReadWhole(RealData(kSubset)));
  std::string line;
  int antenna = -1;
  long numbers = 0;
  while (std::getline(in, line)) {
    if (line.find("START OF ANTENNA") != std::string::npos) ++antenna;
    if (line.find("START OF FREQUENCY") == std::string::npos) continue;
    const AntennaPCV& a = atx.AT_PCV(antenna);
    const std::string name = line.substr(3, 3);
    const std::map<std::string, const matrix<double>*> zen = {
        {"G01", &a.PVZEN_G01}, {"G02", &a.PVZEN_G02}, {"R01", &a.PVZEN_R01}, {"R02", &a.PVZEN_R02}};
    const std::map<std::string, const matrix<double>*> azi = {
        {"G01", &a.PVAZI_G01}, {"G02", &a.PVAZI_G02}, {"R01", &a.PVAZI_R01}, {"R02", &a.PVAZI_R02}};
    std::getline(in, line);
    long row = -1;
    while (std::getline(in, line) && line.find("END OF FREQUENCY") == std::string::npos) {
      std::istringstream words(line);
      std::string first;
      words >> first;
      long k = 0;
      for (double mm = 0; words >> mm; ++k, ++numbers) {
        const double held = row < 0 ? (*zen.at(name))(k) : (*azi.at(name))(row, k);
        EXPECT_NEAR(held, mm / 1000, 1e-15) << antenna << ' ' << name << ' ' << row << ' ' << k;
      }
      EXPECT_EQ(k, a.nZen);
      ++row;
    }
    EXPECT_EQ(row, azi.at(name)->NRow());
  }
  EXPECT_EQ(antenna, 150);
  EXPECT_GT(numbers, 30000);
}

} // namespace
