#include "GNSS/ClkErr.h"

#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"

struct ClkErrPeer {
  static long double GpsGln(const ClkErr& clock) { return clock.gps_gln; }
  static mjd Epoch(const ClkErr& clock, long i) { return clock.epoch(i); }
};

namespace {

const std::string kHeader = "RECEIVER CLOCK\nEND OF HEADER\n";

ClkErr Read(const std::string& text) {
  const ScratchFolder folder;
  ClkErr clock;
  clock.SetFile(folder.Write("clock", text).c_str());
  clock.ReadFile();
  return clock;
}

TEST(ClkErr, MicrosecondsAreStoredInSeconds) {
  const ClkErr clock = Read(kHeader + "55844 0.0 12.5 0.1\n55844 30.0 -3 0.1\n");
  ASSERT_EQ(clock.GetNEpoch(), 2);
  EXPECT_TRUE(Near(clock.GetClkErr(0), 1.25e-5L, 1e-20L));
  EXPECT_TRUE(Near(clock.GetClkErr(1), -3e-6L, 1e-20L));
  EXPECT_TRUE(ClkErrPeer::Epoch(clock, 1) == mjd(55844, 30));
}

TEST(ClkErr, TrailingEmptyLineCountsAsAnEpoch) {
  const ClkErr clock = Read(kHeader + "55844 0.0 12.5 0.1\n\n");
  ASSERT_EQ(clock.GetNEpoch(), 2);
  EXPECT_TRUE(Near(clock.GetClkErr(1), 1.25e-5L, 1e-20L));
}

TEST(ClkErr, LastLineNeedsNoEnd) {
  EXPECT_EQ(Read(kHeader + "55844 0 1 0").GetNEpoch(), 1);
  EXPECT_EQ(Read(kHeader).GetNEpoch(), 0);
}

TEST(ClkErr, FileWithoutEndOfHeaderHasNoEpochs) {
  EXPECT_EQ(Read("55844 0.0 12.5 0.1\n55844 30.0 12.5 0.1\n").GetNEpoch(), 0);
}

TEST(ClkErr, WhatALineLacksComesFromTheLineBefore) {
  const ClkErr clock = Read(kHeader + "abc\n"           // nothing: zeros
                                      "55844 60 5 0\n"  //
                                      "55845\n"         // day alone
                                      "55846 90 x\n"    // day and second
                                      "x 1 1 1\n"       // stops at once
                                      "55847 120 7\n"   // the fourth is not needed
                                      "55848.5 8 9\n"); // %d ends at the point
  ASSERT_EQ(clock.GetNEpoch(), 7);
  const struct {
    unsigned day;
    long double second, correction;
  } expected[] = {{0, 0, 0},          {55844, 60, 5e-6L},  {55845, 60, 5e-6L},  {55846, 90, 5e-6L},
                  {55846, 90, 5e-6L}, {55847, 120, 7e-6L}, {55848, 0.5L, 8e-6L}};
  for (long i = 0; i < 7; ++i) {
    EXPECT_TRUE(ClkErrPeer::Epoch(clock, i) == mjd(expected[i].day, expected[i].second)) << i;
    EXPECT_TRUE(Near(clock.GetClkErr(i), expected[i].correction, 1e-20L)) << i;
  }
}

TEST(ClkErr, NotANumberCountsAsNoNumber) {
  const ClkErr clock = Read(kHeader + "55844 30 5 0\n55844 nan 6 0\n55844 60 inf 0\n");
  EXPECT_TRUE(ClkErrPeer::Epoch(clock, 1) == mjd(55844, 30));
  EXPECT_TRUE(Near(clock.GetClkErr(1), 5e-6L, 1e-20L));
  EXPECT_TRUE(Near(clock.GetClkErr(2), 5e-6L, 1e-20L));
}

TEST(ClkErr, HeaderKeyGivesTheGpsGlonassOffset) {
  EXPECT_TRUE(
      Near(ClkErrPeer::GpsGln(Read("GPS_GLONASS: -123.25 ns\nEND OF HEADER\n")), -123.25L, 0));
  EXPECT_EQ(ClkErrPeer::GpsGln(Read("GPS_GLONASS:7\nEND OF HEADER\n")), 7);
  EXPECT_EQ(ClkErrPeer::GpsGln(Read("END OF HEADER\nGPS_GLONASS: 7\n")), 0);
}

TEST(ClkErr, LineOver99CharactersEndsTheReading) {
  std::string line = "55844 0 1 0";
  line.resize(99, ' ');
  EXPECT_EQ(Read(kHeader + line + "\n55844 30 1 0\n").GetNEpoch(), 2);
  EXPECT_EQ(Read(kHeader + line + " \n55844 30 1 0\n").GetNEpoch(), 0);
  EXPECT_EQ(Read(std::string(100, '-') + '\n' + kHeader + "55844 30 1 0\n").GetNEpoch(), 0);
}

TEST(ClkErr, CarriageReturnsChangeNothing) {
  const ClkErr clock = Read("END OF HEADER\r\n55844 0 1 0\r\n");
  ASSERT_EQ(clock.GetNEpoch(), 1);
  EXPECT_TRUE(Near(clock.GetClkErr(0), 1e-6L, 1e-21L));
}

TEST(ClkErr, EmptyFileFolderAndMissingFileHaveNoEpochs) {
  EXPECT_EQ(Read("").GetNEpoch(), 0);
  const ScratchFolder folder;
  for (const std::string& name : {folder.Path().string(), folder.Name("absent")}) {
    ClkErr clock;
    clock.SetFile(name.c_str());
    clock.ReadFile();
    EXPECT_EQ(clock.GetNEpoch(), 0);
  }
}

TEST(ClkErrDeathTest, BadInputIsReported) {
  ClkErr clock;
  EXPECT_ENDS(clock.SetFile(std::string(256, 'a').c_str()), "FILE NAME IS TOO LONG!");
  EXPECT_ENDS(Read(kHeader + "-1 0 0 0\n"), "mjd: Error -> MJDAY not valid");
  EXPECT_ENDS(Read(kHeader + "99999999999999999999 0 0 0\n"), "mjd: Error -> MJDAY not valid");
  EXPECT_ENDS(Read(kHeader + "55844 86400 0 0\n"), "mjd: Error -> SECOND not valid");
  EXPECT_ENDS(Read("END OF HEADER\n").GetClkErr(0), "MATRIX::ERROR");
}

} // namespace
