#include "GNSS/RecCodeTrack.h"

#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Files.h"

#include <filesystem>

namespace {

//                                          1         2         3
//                                 123456789012345678901234567890123
const std::string kTwoP1P2 /*   */ = "ASHTECH Z-XII3         2     P1    L1:     1     G\n"
                                     "                             P2    L2:     1\n\n";
const std::string kTwoC1P2 /*   */ = "LEICA GRX1200          2     C1    L1:     1     G\n"
                                     "                             P2    L2:     1\n\n";
const std::string kTwoC1X2 /*   */ = "TRIMBLE 4000SSI        2     C1    L1:     1     G\n"
                                     "                             X2    L2:     1\n\n";
const std::string kOneC1 /*     */ = "GARMIN 12              1     C1    L1:     1     G\n\n";

const std::string kWarn = "\n#### Zenta: Warning -> RECEIVER: ";
const std::string kGoesOn = " ####\n     Continuing Zenta ... \n\n";
const std::string kNotListed =
    " NOT LISTED IN RECEIVER TYPES LIST - SETTING CODE TRACKING TO P1P2 VALUE!";
const std::string kNotDetermined =
    " DETERMINATION OF CODE TRACKING NOT SUCCESFUL - SETTING TO P1P2 VALUE!";

struct LookUp {
  short trackingClass = -1;
  std::string warnings;
};

LookUp Get(const std::string& text, const std::string& type) {
  const ScratchFolder folder;
  RecCodeTrack track;
  track.SetFile(folder.Write("receivers", text).c_str());
  Captured err(std::cerr);
  const short trackingClass = track.GetRecCodeTrack(type.c_str());
  return {trackingClass, err.Text()};
}

TEST(RecCodeTrack, TwoCodesGiveTheClassWithoutWarning) {
  const std::string list = kOneC1 + kTwoP1P2 + kTwoC1P2 + kTwoC1X2;
  const std::pair<const char*, short> known[] = {
      {"ASHTECH Z-XII3", 0}, {"LEICA GRX1200", 1}, {"TRIMBLE 4000SSI", 2}};
  for (const auto& [type, trackingClass] : known) {
    const LookUp found = Get(list, type);
    EXPECT_EQ(found.trackingClass, trackingClass) << type;
    EXPECT_EQ(found.warnings, "") << type;
  }
}

TEST(RecCodeTrack, SingleCodeIsUndeterminedAndThenNotListed) {
  // The line behind would complete a class, but one code line has no second.
  const LookUp found = Get("GARMIN 12              1     C1\n"
                           "                             P2\n",
                           "GARMIN 12");
  EXPECT_EQ(found.trackingClass, 0);
  EXPECT_EQ(found.warnings, kWarn + "GARMIN 12" + kNotDetermined + kGoesOn + kWarn + "GARMIN 12" +
                                kNotListed + kGoesOn);
}

TEST(RecCodeTrack, P1WithX2IsUndetermined) {
  const LookUp found = Get("ODD                    2     P1\n"
                           "                             X2\n",
                           "ODD");
  EXPECT_EQ(found.trackingClass, 0);
  EXPECT_NE(found.warnings.find(kNotDetermined), std::string::npos);
}

TEST(RecCodeTrack, ListThatEndsBeforeTheSecondCodeIsUndetermined) {
  const LookUp found = Get("CUT                    2     C1\n", "CUT");
  EXPECT_EQ(found.trackingClass, 0);
  EXPECT_NE(found.warnings.find(kNotDetermined), std::string::npos);
}

TEST(RecCodeTrack, TypeThatIsNotListedIsWarnedOfOnce) {
  const LookUp found = Get(kTwoC1P2, "UNKNOWN 100");
  EXPECT_EQ(found.trackingClass, 0);
  EXPECT_EQ(found.warnings, kWarn + "UNKNOWN 100" + kNotListed + kGoesOn);
}

TEST(RecCodeTrack, PartOfAnEarlierLineIsFoundThere) {
  const LookUp found = Get("# replaces LEICA GRX   2     C1\n"
                           "                             X2\n" +
                               kTwoC1P2,
                           "LEICA GRX");
  EXPECT_EQ(found.trackingClass, 2);
}

TEST(RecCodeTrack, FileThatIsGoneAtLookUpGivesP1P2WithoutWarning) {
  const ScratchFolder folder;
  const std::string name = folder.Write("receivers", kTwoC1P2);
  RecCodeTrack track;
  track.SetFile(name.c_str());
  std::filesystem::remove(name);
  Captured err(std::cerr);
  EXPECT_EQ(track.GetRecCodeTrack("LEICA GRX1200"), 0);
  EXPECT_EQ(err.Text(), "");
  EXPECT_FALSE(track.CheckRecName("LEICA GRX1200"));
  EXPECT_FALSE(track.GetRecType("LEICA GRX1200"));
}

TEST(RecCodeTrack, NamesAreFoundAnywhereInALine) {
  const ScratchFolder folder;
  RecCodeTrack track;
  track.SetFile(folder.Write("receivers", kTwoC1P2 + kOneC1).c_str());
  for (const char* type : {"GARMIN 12", "GRX1200", ""}) {
    EXPECT_TRUE(track.CheckRecName(type)) << type;
    EXPECT_TRUE(track.GetRecType(type)) << type;
  }
  EXPECT_FALSE(track.CheckRecName("GARMIN 13"));
  EXPECT_FALSE(track.GetRecType("GARMIN 13"));
}

TEST(RecCodeTrack, EmptyFileAndFolderListNothing) {
  EXPECT_EQ(Get("", "X").warnings, kWarn + "X" + kNotListed + kGoesOn);
  const ScratchFolder folder;
  RecCodeTrack track;
  track.SetFile(folder.Path().c_str());
  EXPECT_FALSE(track.CheckRecName("X"));
}

TEST(RecCodeTrack, LineOver511CharactersEndsTheList) {
  EXPECT_EQ(Get(std::string(511, '-') + '\n' + kTwoC1P2, "LEICA").trackingClass, 1);
  EXPECT_EQ(Get(std::string(512, '-') + '\n' + kTwoC1P2, "LEICA").trackingClass, 0);
  EXPECT_EQ(Get("LEICA" + std::string(507, '-') + '\n', "LEICA").warnings,
            kWarn + "LEICA" + kNotListed + kGoesOn);
}

TEST(RecCodeTrack, CarriageReturnsChangeNothing) {
  EXPECT_EQ(Get("LEICA GRX1200          2     C1\r\n                             X2\r\n", "LEICA")
                .trackingClass,
            2);
}

TEST(RecCodeTrackDeathTest, MissingFileEndsTheProgram) {
  RecCodeTrack track;
  EXPECT_ENDS(track.SetFile("/nowhere/receivers"),
              "Error -> RECEIVER LIST FILE CAN NOT BE OPENED \\(CODE TRACKING TECHNIQUE\\)!");
  EXPECT_ENDS(track.SetFile(std::string(255, 'a').c_str()), "CAN NOT BE OPENED");
  EXPECT_ENDS(track.SetFile(std::string(256, 'a').c_str()), "FILE NAME IS TOO LONG!");
}

// Classes as the list of 17-AUG-2015 prints them.
TEST(RecCodeTrack, RecordedListTellsTheClasses) {
  SKIP_WITHOUT("lists/RECEIVER.LST");
  RecCodeTrack track;
  track.SetFile(RealData("lists/RECEIVER.LST").c_str());
  Captured err(std::cerr);
  EXPECT_EQ(track.GetRecCodeTrack("AOA BENCHMARK ACT"), 0);
  EXPECT_EQ(track.GetRecCodeTrack("AOA ICS-4000Z"), 2);
  EXPECT_EQ(track.GetRecCodeTrack("ASHTECH PF500"), 1);
  EXPECT_EQ(track.GetRecCodeTrack("ASHTECH UZ-12"), 0);
  EXPECT_EQ(err.Text(), "");
}

} // namespace
