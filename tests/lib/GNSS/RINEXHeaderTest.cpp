#include "GNSS/RINEXHeader.h"

#include "GNSS/TimeConverse.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Near.h"
#include "support/RINEXText.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <string>

using rinextext::End;
using rinextext::Line;
using rinextext::Types;

namespace {

// Reads a header and keeps what was printed meanwhile and what it left unread.
struct Read {
  explicit Read(const std::string& text) {
    std::istringstream in(text);
    const Captured out(std::cout);
    in >> header;
    printed = out.Text();
    good = !in.fail();
    in.clear();
    rest.assign(std::istreambuf_iterator<char>(in), {});
  }
  RINEXHeader header;
  std::string printed;
  std::string rest;
  bool good;
};

std::string Warning(const std::string& label, int line) {
  return "\n#### RINEXHeader: Warning -> ADDITIONAL \"" + label +
         "\" HEADER LINE -> line: " + std::to_string(line) +
         " ####\n     Continuing RINEXHeader ... \n\n";
}

std::string FullHeader() {
  return Line("     2.11           OBSERVATION DATA    M (MIXED)", "RINEX VERSION / TYPE") +
         Line("teqc  2008Nov14     CODE                20111011 00:05:11UTC",
              "PGM / RUN BY / DATE") +
         Line("CAGZ  long name", "MARKER NAME") + Line("12725M004", "MARKER NUMBER") +
         Line("AUTOMATIC           UNIVERSITY OF CAGLIARI", "OBSERVER / AGENCY") +
         Line("8PR7K5L4XYO         TPS E_GGD           3.4 DEC,12,2009 P2", "REC # / TYPE / VERS") +
         Line("217-0400            TPSCR3_GGD      CONE", "ANT # / TYPE") +
         Line("  4893378.8830   772649.7550  4004182.1260", "APPROX POSITION XYZ") +
         Line("        0.2260        0.0010       -0.0020", "ANTENNA: DELTA H/E/N") +
         Line("     1     2", "WAVELENGTH FACT L1/2") +
         Types({"C1", "P1", "P2", "L1", "L2", "D1", "D2"}) + Line("    30.000", "INTERVAL") +
         Line("  2011    10    10     1     2    3.5000000     GPS", "TIME OF FIRST OBS") + End();
}

// Restores what the writer leaves changed.
class RINEXHeaderWriter : public testing::Test {
protected:
  RINEXHeaderWriter() {
    header_.obsfirst = header_.obslast = mjd(55844, 0); // 2011-10-10
  }
  ~RINEXHeaderWriter() override {
    xyzns::Width = width_;
    xyzns::NDec = ndec_;
    xyzns::Unit = unit_;
    neuns::PrintType = neuType_;
    ymdhmsns::PrintType = timeType_;
  }
  // The lines that the writer makes of header_; line n counted from 1.
  std::string Written() const {
    std::ostringstream out;
    out << header_;
    return out.str();
  }
  std::string WrittenLine(int n) const {
    std::istringstream in(Written());
    std::string line;
    while (n-- > 0) std::getline(in, line);
    return line;
  }
  void SetTypes(std::initializer_list<unsigned short> codes) {
    header_.nobs = static_cast<unsigned short>(codes.size());
    header_.obs.Resize(header_.nobs, 1);
    long k = 0;
    for (const unsigned short code : codes) header_.obs(k++) = code;
  }

  RINEXHeader header_;

private:
  unsigned short width_ = xyzns::Width;
  unsigned short ndec_ = xyzns::NDec;
  long double unit_ = xyzns::Unit;
  unsigned short neuType_ = neuns::PrintType;
  unsigned short timeType_ = ymdhmsns::PrintType;
};

std::string Unended(const std::string& line) { return line.substr(0, line.size() - 1); }

} // namespace

TEST(RINEXHeader, StartsEmpty) {
  const RINEXHeader h;
  EXPECT_EQ(h.version, 0.0F);
  EXPECT_EQ(h.type, '\0');
  EXPECT_STREQ(h.mname, "");
  EXPECT_FALSE(h.xyz0read);
  EXPECT_EQ(h.GetNObs(), 0);
  EXPECT_TRUE(h.isobs);
  EXPECT_EQ(h.GetInterval(), -1.0F);
  EXPECT_EQ(h.wavelengthDefL1, '1');
  EXPECT_EQ(h.wavelengthDefL2, '1');
  EXPECT_STREQ(h.obsfirstts, "");
  EXPECT_FALSE(h.iC1);
  EXPECT_FALSE(h.iS8);
  EXPECT_FALSE(h.iPC1);
  EXPECT_FALSE(h.iCLI);
}

TEST(RINEXHeader, ReadsEveryField) {
  const Read r(FullHeader());
  const RINEXHeader& h = r.header;
  EXPECT_EQ(h.version, 2.11F);
  EXPECT_EQ(h.type, 'O');
  EXPECT_EQ(h.satsystems, 'M');
  EXPECT_STREQ(h.pgm, "teqc  2008Nov14");
  EXPECT_STREQ(h.runby, "CODE");
  EXPECT_STREQ(h.date, "20111011 00:05:11UT"); // nineteen characters fit
  EXPECT_STREQ(h.mname, "CAGZ  long name");
  EXPECT_STREQ(h.mnumber, "12725M004");
  EXPECT_STREQ(h.observer, "AUTOMATIC");
  EXPECT_STREQ(h.agency, "UNIVERSITY OF CAGLIARI");
  EXPECT_STREQ(h.recnumb, "8PR7K5L4XYO");
  EXPECT_STREQ(h.rectype, "TPS E_GGD");
  EXPECT_STREQ(h.recversion, "3.4 DEC,12,2009 P2");
  EXPECT_STREQ(h.antnumb, "217-0400");
  EXPECT_STREQ(h.anttype, "TPSCR3_GGD      CONE");
  EXPECT_TRUE(h.xyz0read);
  EXPECT_EQ(h.X0.GetX(), static_cast<long double>(4893378.8830));
  EXPECT_EQ(h.X0.GetY(), static_cast<long double>(772649.7550));
  EXPECT_EQ(h.X0.GetZ(), static_cast<long double>(4004182.1260));
  EXPECT_TRUE(h.neuread);
  EXPECT_EQ(h.Dp.GetU(), static_cast<long double>(0.2260));
  EXPECT_EQ(h.Dp.GetE(), static_cast<long double>(0.0010));
  EXPECT_EQ(h.Dp.GetN(), static_cast<long double>(-0.0020));
  EXPECT_EQ(h.wavelengthDefL1, '1');
  EXPECT_EQ(h.wavelengthDefL2, '2');
  ASSERT_EQ(h.GetNObs(), 7);
  const unsigned short codes[] = {0, 1, 2, 3, 4, 8, 9};
  for (long k = 0; k < 7; ++k) EXPECT_EQ(h.obs(k), codes[k]);
  EXPECT_TRUE(h.iC1 && h.iP1 && h.iP2 && h.iL1 && h.iL2 && h.iD1 && h.iD2);
  EXPECT_FALSE(h.iC2 || h.iS1 || h.iS2 || h.iC5 || h.iS8 || h.iPC1);
  EXPECT_EQ(h.interval, 30.0F);
  EXPECT_EQ(h.obsfirst.GetMJDay(), 55844U);
  EXPECT_TRUE(Near(h.obsfirst.GetSecond(), 3723.5L, 1e-12L));
  EXPECT_STREQ(h.obsfirstts, "GPS");
  EXPECT_STREQ(h.obslastts, "");
  EXPECT_EQ(r.printed, "");
}

TEST(RINEXHeader, StreamIsLeftBehindTheEndOfTheHeader) {
  const Read r(FullHeader() + " 11 10 10\nmore");
  EXPECT_TRUE(r.good);
  EXPECT_EQ(r.rest, " 11 10 10\nmore");
}

TEST(RINEXHeader, CarriageReturnsAreNoPartOfTheTexts) {
  std::string text;
  for (const char c : FullHeader()) text += c == '\n' ? "\r\n" : std::string(1, c);
  const Read r(text + "rest");
  EXPECT_EQ(r.header.wavelengthDefL2, '2');
  EXPECT_STREQ(r.header.obsfirstts, "GPS");
  EXPECT_EQ(r.header.nobs, 7);
  EXPECT_EQ(r.rest, "rest");
}

TEST(RINEXHeader, ReadingForgetsTheHeaderBefore) {
  std::istringstream in(FullHeader() + Line("B", "MARKER NAME") + End());
  RINEXHeader h;
  h.iL4 = true;
  in >> h >> h;
  EXPECT_STREQ(h.mname, "B");
  EXPECT_EQ(h.nobs, 0);
  EXPECT_FALSE(h.iC1);
  EXPECT_FALSE(h.iL4);
  EXPECT_FALSE(h.xyz0read);
  EXPECT_EQ(h.interval, -1.0F);
  // What the reset leaves as it is.
  EXPECT_EQ(h.obsfirst.GetMJDay(), 55844U);
  EXPECT_EQ(h.X0.GetX(), static_cast<long double>(4893378.8830));
}

TEST(RINEXHeader, SecondMarkerNameIsWarnedOfAndKept) {
  const Read r(Line("A", "MARKER NAME") + Line("x", "COMMENT") + Line("B", "MARKER NAME") + End());
  EXPECT_STREQ(r.header.mname, "B");
  EXPECT_EQ(r.printed, Warning("MARKER NAME", 3));
}

TEST(RINEXHeader, EveryRepeatedLineIsWarnedOf) {
  for (const char* label :
       {"RINEX VERSION / TYPE", "PGM / RUN BY / DATE", "MARKER NAME", "MARKER NUMBER",
        "OBSERVER / AGENCY", "APPROX POSITION XYZ", "ANTENNA: DELTA H/E/N", "INTERVAL",
        "REC # / TYPE / VERS", "ANT # / TYPE"}) {
    const std::string line = Line("1 3                 1 3                 1 3", label);
    EXPECT_EQ(Read(line + End()).printed, "") << label;
    EXPECT_EQ(Read(line + line + End()).printed, Warning(label, 2)) << label;
  }
}

TEST(RINEXHeader, RepeatedTypesTimesAndFactorsAreNot) {
  const std::string types = Types({"C1"});
  const std::string time = Line("  2011    10    10     1     2    3.0", "TIME OF FIRST OBS");
  const std::string factors = Line("     2     2", "WAVELENGTH FACT L1/2");
  EXPECT_EQ(Read(types + types + time + time + factors + factors + End()).printed, "");
}

TEST(RINEXHeader, SecondListOfTypesReplacesTheFirst) {
  const Read r(Types({"C1", "L1"}) + Types({"P2"}) + End());
  EXPECT_EQ(r.header.nobs, 1);
  EXPECT_EQ(r.header.obs(0), 2);
  EXPECT_EQ(r.header.obs.NRow(), 1);
  EXPECT_TRUE(r.header.iC1); // a flag once raised stays
  EXPECT_TRUE(r.header.iP2);
}

TEST(RINEXHeader, WarningLinesDoNotCountTheContinuedTypes) {
  const Read r(Line("A", "MARKER NAME") +
               Types({"C1", "P1", "P2", "L1", "L2", "C2", "S1", "S2", "D1", "D2"}) +
               Line("B", "MARKER NAME") + End());
  EXPECT_EQ(r.printed, Warning("MARKER NAME", 3)); // the fourth line of the file
}

TEST(RINEXHeader, NineTypesTakeOneLine) {
  const Read r(Types({"C1", "P1", "P2", "L1", "L2", "C2", "S1", "S2", "D1"}) +
               Line("A", "MARKER NAME") + End());
  EXPECT_EQ(r.header.nobs, 9);
  EXPECT_EQ(r.header.obs(8), 8);
  EXPECT_STREQ(r.header.mname, "A"); // the line behind was not taken for types
}

TEST(RINEXHeader, ElevenTypesTakeTwoLines) {
  const Read r(Types({"C1", "P1", "P2", "L1", "L2", "C2", "S1", "S2", "D1", "D2", "C5"}) +
               Line("A", "MARKER NAME") + End());
  EXPECT_EQ(r.header.nobs, 11);
  for (long k = 0; k < 11; ++k) EXPECT_EQ(r.header.obs(k), k);
  EXPECT_STREQ(r.header.mname, "A");
}

TEST(RINEXHeader, EighteenTypesTakeTwoLines) {
  const Read r(Types({"C1", "P1", "P2", "L1", "L2", "C2", "S1", "S2", "D1", "D2", "C5", "L5", "D5",
                      "S5", "C6", "L6", "D6", "S6"}) +
               Line("A", "MARKER NAME") + End());
  EXPECT_EQ(r.header.nobs, 18);
  for (long k = 0; k < 18; ++k) EXPECT_EQ(r.header.obs(k), k);
  EXPECT_STREQ(r.header.mname, "A");
}

TEST(RINEXHeader, EveryTypeHasItsCodeAndItsFlag) {
  const Read r(
      Types({"C1", "P1", "P2", "L1", "L2", "C2", "S1", "S2", "D1", "D2", "C5", "L5", "D5",
             "S5", "C6", "L6", "D6", "S6", "C7", "L7", "D7", "S7", "C8", "L8", "D8", "S8"}) +
      End());
  const RINEXHeader& h = r.header;
  for (long k = 0; k < 26; ++k) EXPECT_EQ(h.obs(k), k);
  for (const bool flag :
       {h.iC1, h.iP1, h.iP2, h.iL1, h.iL2, h.iC2, h.iS1, h.iS2, h.iD1, h.iD2, h.iC5, h.iL5, h.iD5,
        h.iS5, h.iC6, h.iL6, h.iD6, h.iS6, h.iC7, h.iL7, h.iD7, h.iS7, h.iC8, h.iL8, h.iD8, h.iS8})
    EXPECT_TRUE(flag);
}

TEST(RINEXHeader, UnknownTypeHasNoFlag) {
  const Read r(Types({"C1", "C9", "L1"}) + End());
  EXPECT_EQ(r.header.nobs, 3);
  EXPECT_EQ(r.header.obs(0), 0);
  EXPECT_EQ(r.header.obs(1), 65535);
  EXPECT_EQ(r.header.obs(2), 3);
}

TEST(RINEXHeader, TypesBeyondTheTextAreUnknown) {
  const Read r(Line("     4    C1    L1", "# / TYPES OF OBSERV") + End());
  EXPECT_EQ(r.header.obs(1), 3);
  EXPECT_EQ(r.header.obs(2), 65535);
  EXPECT_EQ(r.header.obs(3), 65535);
}

TEST(RINEXHeader, TypeLettersEndAtColumn60) {
  // A tenth type in columns 65 and 66 belongs to the label.
  std::string line = "     9";
  for (int k = 0; k < 9; ++k) line += "    L1";
  const Read r(line + "# / TYPES OF OBSERV\n" + End());
  for (long k = 0; k < 9; ++k) EXPECT_EQ(r.header.obs(k), 3);
}

TEST(RINEXHeader, NoTypes) {
  const Read r(Line("     0", "# / TYPES OF OBSERV") + Line("A", "MARKER NAME") + End());
  EXPECT_EQ(r.header.nobs, 0);
  EXPECT_STREQ(r.header.mname, "A");
}

TEST(RINEXHeader, NumberOfTypesIsNoMoreThanSixteenBitsHold) {
  // 65535 types: the list runs on to the end of the file, for want of 7281 lines.
  for (const char* number : {" 65535", " 65537", "999999"}) {
    const Read r(Line(number + std::string("    C1"), "# / TYPES OF OBSERV") + End() + "data\n");
    EXPECT_EQ(r.header.nobs, 65535);
    EXPECT_EQ(r.header.obs.NRow(), 65535);
    EXPECT_EQ(r.header.obs(0), 0);
    EXPECT_EQ(r.header.obs(65534), 65535);
    EXPECT_FALSE(r.good);
    EXPECT_EQ(r.rest, "");
  }
  EXPECT_EQ(Read(Line("    -1    C1", "# / TYPES OF OBSERV") + End()).header.nobs, 0);
}

TEST(RINEXHeader, LastEpochReplacesTheFirst) {
  const Read r(Line("  2011    10    10     0     0    0.0000000     GPS", "TIME OF FIRST OBS") +
               Line("  2011    10    10    23    59   30.0000000     GLO", "TIME OF LAST OBS") +
               End());
  EXPECT_EQ(r.header.obsfirst.GetMJDay(), 55844U);
  EXPECT_TRUE(Near(r.header.obsfirst.GetSecond(), 86370.0L, 1e-12L));
  EXPECT_STREQ(r.header.obsfirstts, "GLO");
  EXPECT_EQ(r.header.obslast.GetMJDay(), 0U);
  EXPECT_STREQ(r.header.obslastts, "");
}

TEST(RINEXHeader, LabelInACommentIsTakenForIt) {
  const Read r(Line("    15.000  IS THE INTERVAL OF THE RECEIVER", "COMMENT") + End());
  EXPECT_EQ(r.header.interval, 15.0F);
}

TEST(RINEXHeader, FirstLabelOfTheListWins) {
  const Read r(Line("MARKER NUMBER", "MARKER NAME") + End());
  EXPECT_STREQ(r.header.mname, "MARKER NUMBER");
  EXPECT_STREQ(r.header.mnumber, "");
}

TEST(RINEXHeader, UnknownLinesArePassedOver) {
  const Read r(Line("    15", "LEAP SECONDS") + Line("text", "COMMENT") + "\n" + End() + "rest");
  EXPECT_EQ(r.printed, "");
  EXPECT_EQ(r.rest, "rest");
}

TEST(RINEXHeader, NumbersThatAreNoneAreZero) {
  const Read r(Line("   abcdefgh", "APPROX POSITION XYZ") + Line("", "INTERVAL") + End());
  EXPECT_EQ(r.header.X0.GetX(), 0.0L);
  EXPECT_TRUE(r.header.xyz0read);
  EXPECT_EQ(r.header.interval, 0.0F);
}

TEST(RINEXHeader, WithoutItsEndTheHeaderEndsWithTheFile) {
  const Read r(Line("A", "MARKER NAME") + " 11 10 10\n");
  EXPECT_STREQ(r.header.mname, "A");
  EXPECT_FALSE(r.good);
}

TEST(RINEXHeader, EmptyStreamLeavesItEmpty) {
  const Read r("");
  EXPECT_EQ(r.header.type, '\0');
  EXPECT_FALSE(r.good);
}

TEST(RINEXHeader, LastLineMayLackItsEnd) {
  const Read r(Line("A", "MARKER NAME") + Unended(Line("12", "MARKER NUMBER")));
  EXPECT_STREQ(r.header.mnumber, "12");
}

TEST(RINEXHeader, LineOf99CharactersIsRead) {
  const std::string line = Unended(Line("A", "MARKER NAME"));
  for (const char* ending : {"\n", "\r\n"}) {
    const Read r(line + std::string(99 - line.size(), 'x') + ending + End() + "rest");
    EXPECT_STREQ(r.header.mname, "A");
    EXPECT_EQ(r.rest, "rest");
  }
}

TEST(RINEXHeader, LineOf100CharactersEndsTheReading) {
  const Read r(Line("A", "MARKER NAME") + std::string(100, 'x') + "\n" +
               Line("12", "MARKER NUMBER") + End());
  EXPECT_STREQ(r.header.mname, "A");
  EXPECT_STREQ(r.header.mnumber, "");
  EXPECT_FALSE(r.good);
}

TEST(RINEXHeader, WarningsGoToStandardOutput) {
  const RINEXHeader h;
  const Captured out(std::cout);
  h.RINEXHeaderWarning("TEXT");
  h.RINEXHeaderWarning("TEXT", 17);
  EXPECT_EQ(out.Text(), "\n#### RINEXHeader: Warning -> TEXT ####\n"
                        "     Continuing RINEXHeader ... \n\n"
                        "\n#### RINEXHeader: Warning -> TEXT -> line: 17 ####\n"
                        "     Continuing RINEXHeader ... \n\n");
}

TEST(RINEXHeader, NamesOfTypes) {
  const RINEXHeader h;
  char name[3] = "xx";
  h.GetObsString(26, name);
  EXPECT_STREQ(name, "xx");
  h.GetObsString(65535, name);
  EXPECT_STREQ(name, "xx");
  h.GetObsString(5, name);
  EXPECT_STREQ(name, "C2");
  h.GetObsString(25, name);
  EXPECT_STREQ(name, "S8");
}

TEST(RINEXHeader, IntervalCanBeSet) {
  RINEXHeader h;
  h.SetInterval(0.5F);
  EXPECT_EQ(h.GetInterval(), 0.5F);
}

TEST(RINEXHeaderDeathTest, HeaderWithoutEpochsCanNotBeWritten) {
  const RINEXHeader h;
  std::ostringstream out;
  EXPECT_ENDS(out << h, "ymdhms: Error -> YEAR not valid");
}

TEST(RINEXHeaderDeathTest, DateThatIsNoneEndsTheProgram) {
  std::istringstream in(Line("", "TIME OF FIRST OBS") + End());
  RINEXHeader h;
  EXPECT_ENDS(in >> h, "ymdhms: Error -> YEAR not valid");
}

TEST_F(RINEXHeaderWriter, WritesEveryLine) {
  header_ = Read(FullHeader()).header;
  header_.obslast = mjd(55844, 86370);
  std::string text = Written();
  const std::size_t date = 81 + 40; // of the second line
  text.replace(date, 20, "2011-10-11  00:05:11");
  EXPECT_EQ(text,
            Line("     2.11           O                   M", "RINEX VERSION / TYPE") +
                Line("Zenta               OPERATOR LAB-GNSS1  2011-10-11  00:05:11",
                     "PGM / RUN BY / DATE") +
                Line("CAGZ  long name", "MARKER NAME") + Line("12725M004", "MARKER NUMBER") +
                Line("AUTOMATIC           UNIVERSITY OF CAGLIARI", "OBSERVER / AGENCY") +
                Line("8PR7K5L4XYO         TPS E_GGD           3.4 DEC,12,2009 P2",
                     "REC # / TYPE / VERS") +
                Line("217-0400            TPSCR3_GGD      CONE", "ANT # / TYPE") +
                Line("  4893378.8830   772649.7550  4004182.1260", "APPROX POSITION XYZ") +
                Line("        0.2260        0.0010       -0.0020", "ANTENNA: DELTA H/E/N") +
                Line("     1     2", "WAVELENGTH FACT L1/2") +
                Types({"C1", "P1", "P2", "L1", "L2", "D1", "D2"}) + Line("    30.000", "INTERVAL") +
                Line("  2011    10    10     1     2    3.5000000     GPS", "TIME OF FIRST OBS") +
                Line("  2011    10    10    23    59   30.0000000", "TIME OF LAST OBS") + End());
}

TEST_F(RINEXHeaderWriter, DateIsThatOfTheClock) {
  const std::string line = WrittenLine(2);
  EXPECT_EQ(line.substr(60), "PGM / RUN BY / DATE");
  for (const std::size_t dash : {44, 47}) EXPECT_EQ(line[dash], '-');
  for (const std::size_t colon : {54, 57}) EXPECT_EQ(line[colon], ':');
}

TEST_F(RINEXHeaderWriter, WrittenHeaderIsReadBack) {
  header_ = Read(FullHeader()).header;
  header_.obslast = header_.obsfirst;
  const RINEXHeader back = Read(Written()).header;
  EXPECT_EQ(back.version, header_.version);
  EXPECT_EQ(back.type, header_.type);
  EXPECT_EQ(back.satsystems, header_.satsystems);
  EXPECT_STREQ(back.mname, header_.mname);
  EXPECT_STREQ(back.mnumber, header_.mnumber);
  EXPECT_STREQ(back.observer, header_.observer);
  EXPECT_STREQ(back.agency, header_.agency);
  EXPECT_STREQ(back.recnumb, header_.recnumb);
  EXPECT_STREQ(back.rectype, header_.rectype);
  EXPECT_STREQ(back.recversion, header_.recversion);
  EXPECT_STREQ(back.antnumb, header_.antnumb);
  EXPECT_STREQ(back.anttype, header_.anttype);
  EXPECT_TRUE(back.X0 == header_.X0);
  EXPECT_TRUE(back.Dp == header_.Dp);
  ASSERT_EQ(back.nobs, header_.nobs);
  for (long k = 0; k < back.nobs; ++k) EXPECT_EQ(back.obs(k), header_.obs(k));
  EXPECT_EQ(back.interval, header_.interval);
  EXPECT_EQ(back.wavelengthDefL2, header_.wavelengthDefL2);
}

TEST_F(RINEXHeaderWriter, NineTypesFillTheirLine) {
  SetTypes({0, 1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(WrittenLine(11),
            "     9    C1    P1    P2    L1    L2    C2    S1    S2    D1# / TYPES OF OBSERV");
  EXPECT_EQ(WrittenLine(12).substr(60), "INTERVAL");
}

TEST_F(RINEXHeaderWriter, ElevenTypesTakeTwoLines) {
  SetTypes({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_EQ(WrittenLine(11),
            "    11    C1    P1    P2    L1    L2    C2    S1    S2    D1# / TYPES OF OBSERV");
  EXPECT_EQ(WrittenLine(12),
            "          D2    C5                                          # / TYPES OF OBSERV");
  EXPECT_EQ(WrittenLine(13).substr(60), "INTERVAL");
}

TEST_F(RINEXHeaderWriter, NoTypesHaveNoLabel) {
  EXPECT_EQ(WrittenLine(11), "     0");
  EXPECT_EQ(WrittenLine(12).substr(60), "INTERVAL");
}

TEST_F(RINEXHeaderWriter, UnknownTypeIsBlank) {
  SetTypes({0, 65535, 3});
  EXPECT_EQ(WrittenLine(11).substr(0, 24), "     3    C1          L1");
}

TEST_F(RINEXHeaderWriter, UnknownIntervalIsWrittenAsItIs) {
  EXPECT_EQ(WrittenLine(12), Unended(Line("    -1.000", "INTERVAL")));
}

TEST_F(RINEXHeaderWriter, PrintSettingsStayChanged) {
  xyzns::Width = 20;
  xyzns::NDec = 1;
  xyzns::Unit = 1000;
  neuns::PrintType = 1;
  ymdhmsns::PrintType = 2;
  std::ostringstream out;
  out << header_;
  EXPECT_EQ(xyzns::Width, 14);
  EXPECT_EQ(xyzns::NDec, 4);
  EXPECT_EQ(xyzns::Unit, 1.0L);
  EXPECT_EQ(neuns::PrintType, 0);
  EXPECT_EQ(ymdhmsns::PrintType, 0);
  EXPECT_EQ(out.precision(), 3);
  EXPECT_TRUE(out.flags() & std::ios::fixed);
}
