#include "GNSS/gCRD.h"

#include "GNSS/TimeConverse.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"

#include <filesystem>

namespace {

const std::string kHeader =
    "# ID MARKER_NAME          MARKER_NUMBER                                                      "
    "X [m]        Y [m]          Z [m]       VX[m/yr]  VY[m/yr]  VZ[m/yr]  YYYY-MM-DD HH:MM:SS\n"
    "#*** ******************** ************************************************************ "
    "*********.**** *********.**** *********.**** ****.**** ****.**** ****.****  "
    "****-**-** **:**:**\n";

/// A data line by its columns (from 1), as long as its last field.
class Line {
public:
  Line& Put(std::size_t column, const std::string& text) {
    if (text_.size() < column - 1 + text.size()) text_.resize(column - 1 + text.size(), ' ');
    text_.replace(column - 1, text.size(), text);
    return *this;
  }
  std::string End() const { return text_ + '\n'; }
  std::size_t Size() const { return text_.size(); }

private:
  std::string text_;
};

Line Station(const std::string& name, const std::string& number) {
  return Line()
      .Put(1, "   1")
      .Put(6, name)
      .Put(27, number)
      .Put(88, " 1000000.0000")
      .Put(103, "-2000000.2500")
      .Put(118, " 3000000.5000 ");
}

Line Moving(const std::string& name, const std::string& number) {
  return Station(name, number).Put(133, "   1.0000").Put(143, "  -2.0000").Put(153, "   0.5000");
}

class gCRDTest : public testing::Test {
protected:
  void Open(const std::string& text) { crd.SetFile(folder.Write("stations", text).c_str()); }
  void ExpectAt(const xyz& p, long double x, long double y, long double z) {
    EXPECT_TRUE(Near(p.GetX(), x, 1e-9L));
    EXPECT_TRUE(Near(p.GetY(), y, 1e-9L));
    EXPECT_TRUE(Near(p.GetZ(), z, 1e-9L));
  }
  void ExpectMissing(const char* name, const char* number) {
    ExpectAt(crd.GetCRD(name, number, in2005), 0, 0, 0);
    EXPECT_FALSE(crd.IsSite());
  }
  void ExpectFound(const char* name, const char* number) {
    ExpectAt(crd.GetCRD(name, number, in2005), 1000000, -2000000.25L, 3000000.5L);
    EXPECT_TRUE(crd.IsSite());
  }

  const ScratchFolder folder;
  const mjd in2005 = ymdhms2mjd(ymdhms(2005, 1, 1, 0, 0, 0));
  const mjd in2007 = ymdhms2mjd(ymdhms(2007, 1, 1, 0, 0, 0));
  gCRD crd;
};

using gCRDDeathTest = gCRDTest;

TEST_F(gCRDTest, StationIsFoundByNameAndNumber) {
  Open(kHeader + Station("BRUS", "13101M004").End() + Station("CAGZ", "12725M004").End());
  ExpectFound("CAGZ", "12725M004");
  ExpectMissing("CAGZ", "12725M003");
  ExpectMissing("CAGL", "12725M004");
}

TEST_F(gCRDTest, HeaderIsNotNeeded) {
  Open(Station("BRUS", "13101M004").End());
  ExpectFound("BRUS", "13101M004");
}

TEST_F(gCRDTest, CoordinatesBeginInTheirColumns) {
  const std::string line = Line()
                               .Put(1, "   1")
                               .Put(6, "BRUS")
                               .Put(87, "91000000.0000")
                               .Put(102, "92000000.2500")
                               .Put(117, "93000000.5000")
                               .End();
  Open(line);
  ExpectAt(crd.GetCRD("BRUS", "", in2005), 1000000, 2000000.25L, 3000000.5L);
}

TEST_F(gCRDTest, FirstLineWithoutACharacterEndsTheReading) {
  Open("\n" + Station("BRUS", "").End());
  ExpectMissing("BRUS", "");
  Open(kHeader + "\n" + Station("BRUS", "").End());
  ExpectMissing("BRUS", "");
}

TEST_F(gCRDTest, EmptyNumberMatchesAny) {
  Open(Station("BRUS", "").End());
  ExpectFound("BRUS", "13101M004");
  ExpectFound("BRUS", "");
}

TEST_F(gCRDTest, NameMatchesALongerOneThatBeginsWithIt) {
  Open(Station("BRUS 13101M004", "X").End());
  ExpectFound("BRUS", "X");
  ExpectMissing("BRUS 13101M005", "X");
  ExpectMissing("RUS", "X");
}

TEST_F(gCRDTest, FirstMatchWins) {
  Open(Station("BRUS", "B").End() + Station("BRUS", "").Put(88, " 5000000.0000").End());
  ExpectFound("BRUS", "B");
  ExpectAt(crd.GetCRD("BRUS", "C", in2005), 5000000, -2000000.25L, 3000000.5L);
}

TEST_F(gCRDTest, LineOf160CharactersHasNoVelocityOneOf161Has) {
  const Line line = Moving("BRUS", "1");
  ASSERT_EQ(line.Size(), 161U);
  std::string cut = line.End();
  cut.replace(160, 2, "\n");
  Open(cut);
  ExpectAt(crd.GetCRD("BRUS", "1", in2007), 1000000, -2000000.25L, 3000000.5L);
  Open(line.End());
  ExpectAt(crd.GetCRD("BRUS", "1", in2007), 1000002, -2000004.25L, 3000001.5L);
}

TEST_F(gCRDTest, LineWithoutDateRefersTo2005) {
  Open(Moving("BRUS", "1").End());
  ExpectFound("BRUS", "1");
  const mjd in2004 = ymdhms2mjd(ymdhms(2004, 1, 1, 0, 0, 0));
  ExpectAt(crd.GetCRD("BRUS", "1", in2004), 999999, -1999998.25L, 3000000);
}

TEST_F(gCRDTest, DateIsReadFrom182CharactersOn) {
  const Line line = Moving("BRUS", "1").Put(164, "2006-01-01 00:00:00");
  ASSERT_EQ(line.Size(), 182U);
  Open(line.End());
  ExpectAt(crd.GetCRD("BRUS", "1", in2007), 1000001, -2000002.25L, 3000001);
  std::string cut = line.End();
  cut.replace(181, 2, "\n");
  Open(cut);
  ExpectAt(crd.GetCRD("BRUS", "1", in2007), 1000002, -2000004.25L, 3000001.5L);
}

// Half of the common year 2006 is 182.5 days: 2006-07-02 12:00.
TEST_F(gCRDTest, TimeOfDayEntersTheReferenceEpoch) {
  Open(Moving("BRUS", "1").Put(164, "2006-07-02 12:00:00").End());
  ExpectAt(crd.GetCRD("BRUS", "1", in2007), 1000000.5L, -2000001.25L, 3000000.75L);
}

TEST_F(gCRDTest, VelocityIsHandedOut) {
  Open(Moving("BRUS", "1").End());
  xyz velocity;
  ExpectAt(crd.GetCRD("BRUS", "1", in2007, velocity), 1000002, -2000004.25L, 3000001.5L);
  ExpectAt(velocity, 1, -2, 0.5L);
  crd.GetCRD("ABSENT", "1", in2007, velocity);
  ExpectAt(velocity, 0, 0, 0);
}

TEST_F(gCRDTest, NameAloneGivesThePositionAtTheReferenceEpoch) {
  Open(Moving("BRUS", "1").Put(164, "1990-01-01 00:00:00").End());
  ExpectAt(crd.GetCRD("BRUS"), 1000000, -2000000.25L, 3000000.5L);
  EXPECT_TRUE(crd.IsSite());
  ExpectAt(crd.GetCRD("CAGZ"), 0, 0, 0);
  EXPECT_FALSE(crd.IsSite());
}

TEST_F(gCRDTest, EmptyLineEndsTheSearch) {
  Open(kHeader + Station("BRUS", "").End() + '\n' + Station("CAGZ", "").End());
  ExpectFound("BRUS", "");
  ExpectMissing("CAGZ", "");
}

TEST_F(gCRDTest, BlankInTheFourthColumnEndsTheSearch) {
  Open(Station("BRUS", "").Put(4, " ").End() + Station("CAGZ", "").End());
  ExpectMissing("BRUS", "");
  ExpectMissing("CAGZ", "");
  Open("  1\n" + Station("CAGZ", "").End());
  ExpectMissing("CAGZ", "");
}

TEST_F(gCRDTest, HashBehindTheFirstStationIsNoHeader) {
  Open(Station("BRUS", "").End() + "# note\n" + Station("CAGZ", "").End());
  ExpectFound("CAGZ", "");
}

TEST_F(gCRDTest, LineOver511CharactersEndsTheSearch) {
  Open("#" + std::string(510, '-') + '\n' + Station("BRUS", "").End());
  ExpectFound("BRUS", "");
  Open("#" + std::string(511, '-') + '\n' + Station("BRUS", "").End());
  ExpectMissing("BRUS", "");
}

TEST_F(gCRDTest, CarriageReturnsChangeNothing) {
  std::string text = kHeader + Moving("BRUS", "1").End();
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2)
    text.insert(at, 1, '\r');
  Open(text);
  ExpectAt(crd.GetCRD("BRUS", "1", in2007), 1000002, -2000004.25L, 3000001.5L);
  Open("\r\n" + Station("BRUS", "").End());
  ExpectMissing("BRUS", "");
}

TEST_F(gCRDTest, EmptyFileAndFolderListNoStation) {
  Open("");
  ExpectMissing("BRUS", "");
  Open(kHeader);
  ExpectMissing("BRUS", "");
  crd.SetFile(folder.Path().c_str());
  ExpectMissing("BRUS", "");
}

TEST_F(gCRDTest, FileThatIsGoneGivesZeroAndKeepsTheLastAnswer) {
  Open(Moving("BRUS", "1").End());
  ExpectFound("BRUS", "1");
  std::filesystem::remove(folder.Name("stations"));
  ExpectAt(crd.GetCRD("BRUS", "1", in2007), 0, 0, 0);
  EXPECT_TRUE(crd.IsSite());
}

TEST_F(gCRDTest, AllStationsAreReadInTheOrderOfTheFile) {
  Open(kHeader + Station("BRUS", "A1").End() +
       Moving("CAGZ", "B2").Put(164, "2010-03-04 05:06:07").End());
  matrix<CRDPoint> points;
  crd.ReadCRDs(points);
  ASSERT_EQ(points.Length(), 2);
  EXPECT_EQ(points(0).site.name, "BRUS");
  EXPECT_EQ(points(1).site.number, "B2");
  ExpectAt(points(1).position, 1000000, -2000000.25L, 3000000.5L);
  ExpectAt(points(1).velocity, 1, -2, 0.5L);
  EXPECT_TRUE(points(1).epoch == ymdhms2mjd(ymdhms(2010, 3, 4, 5, 6, 7)));
  EXPECT_TRUE(points(0).epoch == in2005);
}

TEST_F(gCRDTest, ConstraintsAreReadByTheirColumns) {
  Open(Line()
           .Put(1, "   1")
           .Put(6, "BRUS")
           .Put(27, "A")
           .Put(88, "0.001")
           .Put(103, "0.002")
           .Put(118, "0.003")
           .Put(170, "0.1")
           .Put(185, "0.2")
           .Put(200, "0.3")
           .End());
  matrix<ABSConst> held;
  crd.ReadABSConst(held);
  ASSERT_EQ(held.Length(), 1);
  EXPECT_EQ(held(0).site.name, "BRUS");
  ExpectAt(held(0).sigma, 0.001L, 0.002L, 0.003L);

  Open(Line()
           .Put(1, "   1")
           .Put(6, "BRUS")
           .Put(27, "A")
           .Put(88, "CAGZ")
           .Put(109, "B")
           .Put(170, "0.1")
           .Put(185, "0.2")
           .Put(200, "0.3")
           .End());
  matrix<RELConst> pairs;
  crd.ReadRELConst(pairs);
  ASSERT_EQ(pairs.Length(), 1);
  EXPECT_EQ(pairs(0).from.name + pairs(0).from.number, "BRUSA");
  EXPECT_EQ(pairs(0).to.name + pairs(0).to.number, "CAGZB");
  ExpectAt(pairs(0).sigma, 0.1L, 0.2L, 0.3L);

  matrix<CRDSite> fixed;
  crd.ReadFixedStat(fixed);
  ASSERT_EQ(fixed.Length(), 1);
  EXPECT_EQ(fixed(0).name, "BRUS");
}

TEST_F(gCRDTest, EmptyFileGivesAnEmptyTable) {
  Open("");
  matrix<CRDPoint> points(3, 1);
  crd.ReadCRDs(points);
  EXPECT_EQ(points.Length(), 0);
}

TEST_F(gCRDTest, WrittenFileHasTheColumnsOfItsHeader) {
  const std::string name = folder.Name("out");
  crd.OpenOutputFile(name.c_str());
  crd.PrintGPoint("BRUS", "13101M004", xyz(1000000, -2000000.25L, 3000000.5L), xyz(1, -2, 0.5L),
                  in2007);
  crd.CloseOutputFile();
  EXPECT_EQ(ReadWhole(name), kHeader + Line()
                                           .Put(1, "   1")
                                           .Put(6, "BRUS")
                                           .Put(27, "13101M004")
                                           .Put(88, "  1000000.0000")
                                           .Put(103, " -2000000.2500")
                                           .Put(118, "  3000000.5000")
                                           .Put(133, "   1.0000")
                                           .Put(143, "  -2.0000")
                                           .Put(153, "   0.5000")
                                           .Put(164, "2007-01-01 00:00:00")
                                           .End());
}

TEST_F(gCRDTest, WrittenPointsAreReadBack) {
  const std::string name = folder.Name("out");
  crd.OpenOutputFile(name.c_str());
  crd.PrintGPoint("BRUS", "13101M004", xyz(4027881.6283L, 306998.7539L, 4919498.9841L),
                  xyz(-0.0136L, 0.0169L, 0.0105L), ymdhms2mjd(ymdhms(2011, 10, 10, 1, 2, 59.7L)));
  crd.PrintGPoint(std::string(30, 'N').c_str(), std::string(70, 'M').c_str(), xyz(-6378137, 0, 0),
                  xyz(), ymdhms2mjd(ymdhms(1999, 12, 31, 23, 59, 59.9L)));
  crd.CloseOutputFile();
  crd.SetFile(name.c_str());
  matrix<CRDPoint> points;
  crd.ReadCRDs(points);
  ASSERT_EQ(points.Length(), 2);
  EXPECT_EQ(points(0).site.name, "BRUS");
  EXPECT_EQ(points(0).site.number, "13101M004");
  ExpectAt(points(0).position, 4027881.6283L, 306998.7539L, 4919498.9841L);
  ExpectAt(points(0).velocity, -0.0136L, 0.0169L, 0.0105L);
  EXPECT_TRUE(points(0).epoch == ymdhms2mjd(ymdhms(2011, 10, 10, 1, 3, 0)));
  EXPECT_EQ(points(1).site.name, std::string(20, 'N'));
  EXPECT_EQ(points(1).site.number, std::string(60, 'M'));
  ExpectAt(points(1).position, -6378137, 0, 0);
  EXPECT_TRUE(points(1).epoch == ymdhms2mjd(ymdhms(2000, 1, 1, 0, 0, 0)));
}

TEST_F(gCRDTest, WritingLeavesThePrintSettingsAlone) {
  xyzns::Width = 20;
  ymdhmsns::PrintType = 1;
  crd.OpenOutputFile(folder.Name("out").c_str());
  crd.PrintGPoint("A", "", xyz(), xyz(), in2005);
  EXPECT_EQ(xyzns::Width, 20);
  EXPECT_EQ(xyzns::NDec, 4);
  EXPECT_EQ(ymdhmsns::PrintType, 1);
  EXPECT_EQ(ymdhmsns::NDecSecond, 1);
  xyzns::Width = 14;
  ymdhmsns::PrintType = 2;
}

TEST_F(gCRDTest, EachOutputFileCountsFromOne) {
  for (const char* file : {"a", "b"}) {
    crd.OpenOutputFile(folder.Name(file).c_str());
    crd.PrintGPoint("A", "", xyz(), xyz(), in2005);
  }
  crd.CloseOutputFile();
  EXPECT_EQ(ReadWhole(folder.Name("a")), ReadWhole(folder.Name("b")));
}

TEST_F(gCRDTest, FileThatCannotBeCreatedIsPassedOver) {
  crd.OpenOutputFile((folder.Name("absent") + "/out").c_str());
  crd.PrintGPoint("A", "", xyz(), xyz(), in2005);
  crd.CloseOutputFile();
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_F(gCRDDeathTest, MissingFileEndsTheProgram) {
  EXPECT_ENDS(crd.SetFile("/nowhere/stations"), "Error -> COORDINATE FILE DOES NOT EXIST!");
  EXPECT_ENDS(crd.SetFile(std::string(255, 'a').c_str()), "COORDINATE FILE DOES NOT EXIST!");
  EXPECT_ENDS(crd.SetFile(std::string(256, 'a').c_str()), "FILE NAME IS TOO LONG!");
}

TEST_F(gCRDDeathTest, TablesNeedAFile) {
  matrix<CRDPoint> points;
  matrix<ABSConst> held;
  matrix<RELConst> pairs;
  matrix<CRDSite> fixed;
  EXPECT_ENDS(crd.ReadCRDs(points), "Error -> COORDINATE FILE IS NOT SET!");
  EXPECT_ENDS(crd.ReadABSConst(held), "Error -> COORDINATE FILE IS NOT SET!");
  EXPECT_ENDS(crd.ReadRELConst(pairs), "Error -> COORDINATE FILE IS NOT SET!");
  EXPECT_ENDS(crd.ReadFixedStat(fixed), "Error -> COORDINATE FILE IS NOT SET!");
}

TEST_F(gCRDDeathTest, DateThatIsNoneIsReported) {
  Open(Moving("BRUS", "1").Put(164, "2006-13-01 00:00:00").End());
  EXPECT_ENDS(crd.GetCRD("BRUS", "1", in2007), "ymdhms: Error -> MONTH not valid");
}

} // namespace
