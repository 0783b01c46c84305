#include "GNSS/GLNSat.h"

#include "GNSS/TimeConverse.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"

#include <filesystem>

struct GLNSatPeer {
  static long Count(const GLNSat& list) { return list.nsat; }
};

namespace {

//                            0         1         2         3         4         5
//                            012345678901234567890123456789012345678901234567890123
const std::string kOpen /**/ = "R05       2009 01 01 00 00 00                       1\n";
const std::string kPeriod /**/ = "R05       2009 01 01 00 00 00  2009 12 31 23 59 59 -7\n";

GLNSat Read(const std::string& text) {
  const ScratchFolder folder;
  GLNSat list;
  list.SetFile(folder.Write("channels", text).c_str());
  list.ReadFile();
  return list;
}

mjd At(unsigned short year, unsigned short month, unsigned short day, unsigned short hour = 0,
       unsigned short minute = 0, long double second = 0) {
  return ymdhms2mjd(ymdhms(year, month, day, hour, minute, second));
}

void ExpectChannel(GLNSat& list, short sat, const mjd& t, long double channel) {
  EXPECT_EQ(list.GetFreqNum(sat, t), channel);
  EXPECT_TRUE(list.GetIsGLNSat());
}

void ExpectNone(GLNSat& list, short sat, const mjd& t) {
  EXPECT_EQ(list.GetFreqNum(sat, t), 0);
  EXPECT_FALSE(list.GetIsGLNSat());
}

TEST(GLNSat, NewOneHasNoChannels) {
  GLNSat list;
  EXPECT_FALSE(list.GetIsGLNSat());
  ExpectNone(list, 101, At(2009, 1, 1));
}

TEST(GLNSat, BlankEndIsOpen) {
  GLNSat list = Read(kOpen);
  ExpectChannel(list, 105, At(2009, 1, 1), 1);
  ExpectChannel(list, 105, At(2050, 6, 15, 12, 0, 0), 1);
  ExpectNone(list, 105, At(2008, 12, 31, 23, 59, 59.9L));
}

TEST(GLNSat, SlotThatIsNoneIsNotTakenForAnother) {
  // 65541 is 5 in 16 bits.
  std::string line = kOpen;
  line.replace(1, 5, "65541");
  GLNSat list = Read(line);
  ExpectNone(list, 105, At(2010, 1, 1));
  line.replace(1, 5, "-1   ");
  list = Read(line);
  ExpectNone(list, 99, At(2010, 1, 1));
}

TEST(GLNSat, OpenEndIsTheLastSecondOfDay88068) {
  GLNSat list = Read(kOpen);
  ExpectChannel(list, 105, mjd(88068, 86399), 1);
  ExpectNone(list, 105, mjd(88068, 86399.5L));
}

TEST(GLNSat, BothEndsOfAPeriodBelongToIt) {
  GLNSat list = Read(kPeriod);
  ExpectChannel(list, 105, At(2009, 1, 1), -7);
  ExpectChannel(list, 105, At(2009, 12, 31, 23, 59, 59), -7);
  ExpectNone(list, 105, At(2009, 12, 31, 23, 59, 59.1L));
}

TEST(GLNSat, EachNumberBeginsInItsColumn) {
  GLNSat list = Read("R05xxxxxxx2011x10x09x12x30x15xx2012x11x10x13x45x20x-2\n");
  ExpectNone(list, 105, At(2011, 10, 9, 12, 30, 14.9L));
  ExpectChannel(list, 105, At(2011, 10, 9, 12, 30, 15), -2);
  ExpectChannel(list, 105, At(2012, 11, 10, 13, 45, 20), -2);
  ExpectNone(list, 105, At(2012, 11, 10, 13, 45, 20.1L));
}

TEST(GLNSat, FirstOfTwoOverlappingLinesWins) {
  GLNSat list = Read(kPeriod + kOpen);
  ExpectChannel(list, 105, At(2009, 6, 1), -7);
  ExpectChannel(list, 105, At(2010, 6, 1), 1);
}

TEST(GLNSat, SlotThatIsNotListedHasNoChannel) {
  GLNSat list = Read(kOpen);
  ExpectNone(list, 106, At(2010, 1, 1));
  ExpectNone(list, 5, At(2010, 1, 1));
}

TEST(GLNSat, EachLookUpAnswersForItself) {
  GLNSat list = Read(kOpen);
  ExpectChannel(list, 105, At(2010, 1, 1), 1);
  ExpectNone(list, 106, At(2010, 1, 1));
}

TEST(GLNSat, CommentsAreNeitherCountedNorRead) {
  GLNSat list = Read("# R05       2009\n\n R05 in the text\n" + kOpen + "\n#" + kPeriod + " \n");
  EXPECT_EQ(GLNSatPeer::Count(list), 1);
  ExpectChannel(list, 105, At(2009, 6, 1), 1);
}

TEST(GLNSat, ChannelZeroIsFound) {
  GLNSat list = Read("R11       2009 01 01 00 00 00                       0\n");
  ExpectChannel(list, 111, At(2010, 1, 1), 0);
}

TEST(GLNSat, SystemLetterIsNotLookedAt) {
  GLNSat list = Read("x05       2009 01 01 00 00 00                       1\n");
  ExpectChannel(list, 105, At(2010, 1, 1), 1);
}

TEST(GLNSat, LineThatEndsBeforeItsEndDateIsOpenOnChannelZero) {
  GLNSat list = Read("R05       2009 01 01 00 00 00\n");
  ExpectChannel(list, 105, At(2010, 1, 1), 0);
}

TEST(GLNSat, CarriageReturnsChangeNothing) {
  GLNSat list = Read("\r\n#\r\nR05       2009 01 01 00 00 00                       1\r\n");
  EXPECT_EQ(GLNSatPeer::Count(list), 1);
  ExpectChannel(list, 105, At(2010, 1, 1), 1);
}

TEST(GLNSat, LineOver511CharactersEndsTheReading) {
  EXPECT_EQ(GLNSatPeer::Count(Read('#' + std::string(510, '-') + '\n' + kOpen)), 1);
  EXPECT_EQ(GLNSatPeer::Count(Read('#' + std::string(511, '-') + '\n' + kOpen)), 0);
}

TEST(GLNSat, EmptyFileAndFolderHaveNoChannels) {
  EXPECT_EQ(GLNSatPeer::Count(Read("")), 0);
  const ScratchFolder folder;
  GLNSat list;
  list.SetFile(folder.Path().c_str());
  list.ReadFile();
  EXPECT_EQ(GLNSatPeer::Count(list), 0);
}

TEST(GLNSat, SlotFarOutOfRangeIsOnlyAnotherNumber) {
  GLNSat list = Read("R9999999992009 01 01 00 00 00\n" + kOpen);
  EXPECT_EQ(GLNSatPeer::Count(list), 2);
}

TEST(GLNSatDeathTest, MissingFileEndsTheProgram) {
  GLNSat list;
  EXPECT_ENDS(list.SetFile("/nowhere/channels"),
              "Error -> GLONASS FREQUENCY CHANNEL FILE DOES NOT EXIST!");
  EXPECT_ENDS(list.SetFile(std::string(256, 'a').c_str()), "FILE NAME IS TOO LONG!");
}

TEST(GLNSatDeathTest, FileThatIsGoneBeforeItIsReadEndsTheProgram) {
  const ScratchFolder folder;
  const std::string name = folder.Write("channels", kOpen);
  GLNSat list;
  list.SetFile(name.c_str());
  std::filesystem::remove(name);
  EXPECT_ENDS(list.ReadFile(), "Error -> GLONASS FREQUENCY CHANNEL FILE CAN NOT BE OPENED!");
}

TEST(GLNSatDeathTest, DateThatIsNoneIsReported) {
  EXPECT_ENDS(Read("R05\n"), "ymdhms: Error -> YEAR not valid");
  EXPECT_ENDS(Read("R05       2009 13 01 00 00 00\n"), "ymdhms: Error -> MONTH not valid");
  EXPECT_ENDS(Read("R05       67545 1 01 00 00 00\n"), "ymdhms: Error -> YEAR not valid");
}

// R03 changed its channel three times in 2011; R05 holds 1 since 2009-12-14.
TEST(GLNSat, RecordedListFollowsAChangeOfChannel) {
  SKIP_WITHOUT("derived/glonass-channels.txt");
  GLNSat list;
  list.SetFile(RealData("derived/glonass-channels.txt").c_str());
  list.ReadFile();
  ExpectChannel(list, 103, At(2011, 3, 10, 23, 59, 59), 5);
  ExpectChannel(list, 103, At(2011, 3, 11), -6);
  ExpectChannel(list, 103, At(2011, 10, 10), -6);
  ExpectChannel(list, 103, At(2011, 10, 13), -5);
  ExpectChannel(list, 103, At(2020, 1, 1), 5);
  ExpectChannel(list, 105, At(2013, 6, 15, 4, 0, 0), 1);
  // Between two lines of slot 4, from 2010-12-16 to 2011-02-25, there is no channel.
  ExpectNone(list, 104, At(2011, 1, 15));
}

} // namespace
