#include "ReadFiles.h"

#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"
#include "support/TinyInputs.h"
#include "support/TinyRun.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace {

/// A run with a folder of small input files.
class Inputs : public testing::Test {
protected:
  Inputs() { TinyInputs().WriteAll(folder); }
  void Name(char (&field)[256], bool& flag, const std::string& file) const {
    std::strcpy(field, folder.Name(file).c_str());
    flag = true;
  }
  void NameAll() {
    KorvanC& c = run.ctx;
    Name(c.rnxfile, c.isRnx, "obs");
    Name(c.clkfile, c.isClkFile, "clock");
    Name(c.mp1file, c.isMP1, "mp1");
    Name(c.mp2file, c.isMP2, "mp2");
    Name(c.gnavfile, c.isGPSnav, "gnav");
    Name(c.rnavfile, c.isGLNnav, "rnav");
    Name(c.gsp3file, c.isGpEph, "sp3");
    Name(c.rsp3file, c.isRpEph, "sp3");
    Name(c.glnfreqch, c.isGLNfrch, "channels");
    Name(c.dcbp1p2file, c.isP1P2, "p1p2");
    Name(c.dcbp1c1file, c.isP1C1, "p1c1");
    Name(c.dcbp2c2file, c.isP2C2, "p2c2");
    Name(c.rctrackfile, c.isRCodTrc, "receivers");
    Name(c.aprcrdfile, c.isAprCrd, "coordinates");
  }
  /// What both stages wrote on standard error.
  std::string SetAndRead() {
    Captured out(std::cout);
    Captured errors(std::cerr);
    SetFiles(run.ctx);
    setting = errors.Text();
    ReadFiles(run.ctx);
    EXPECT_EQ(out.Text(), "");
    return errors.Text().substr(setting.size());
  }
  void Read() {
    SetFiles(run.ctx);
    ReadFiles(run.ctx);
  }
  const ScratchFolder folder;
  TinyRun run;
  std::string setting; ///< by SetFiles
};

using SetFilesTest = Inputs;
using ReadFilesTest = Inputs;
using ReadFilesDeathTest = Inputs;

TEST_F(SetFilesTest, NothingNamedNothingSet) {
  EXPECT_EQ(SetAndRead(), "");
  EXPECT_EQ(setting, "");
  EXPECT_EQ(run.data.GetNEpoch(), 0);
}

TEST_F(SetFilesTest, EveryFileIsToldWhenVerbose) {
  NameAll();
  run.ctx.verbose = true;
  SetAndRead();
  EXPECT_EQ(setting, "Zenta::SetFiles(): SETTING INPUT FILE NAMES AND PROCESSING SETTINGS!\n"
                     "Zenta::SetFiles():         setting RINEX file!\n"
                     "Zenta::SetFiles():         RECEIVER CLOCK file!\n"
                     "Zenta::SetFiles():         MULTIPATH ON C1/P1 file!\n"
                     "Zenta::SetFiles():         MULTIPATH ON P2 file!\n"
                     "Zenta::SetFiles():         setting GPS NAVIGATION file!\n"
                     "Zenta::SetFiles():         setting GLONASS NAVIGATION file!\n"
                     "Zenta::SetFiles():         setting GPS PRECISE EPHEMERIS file!\n"
                     "Zenta::SetFiles():         setting GLONASS PRECISE EPHEMERIS file!\n"
                     "Zenta::SetFiles():         setting GLONASS FREQUENCY CHANNEL file!\n"
                     "Zenta::SetFiles():         setting P1P2 DCB file!\n"
                     "Zenta::SetFiles():         setting P1C1 DCB file!\n"
                     "Zenta::SetFiles():         setting P2C2 DCB file!\n"
                     "Zenta::SetFiles():         setting RECEIVER CODE TRACKING file!\n"
                     "Zenta::SetFiles():         setting APRIORI COORDINATE file!\n");
}

TEST_F(SetFilesTest, OnlyTheHeadingWithoutFiles) {
  run.ctx.verbose = true;
  EXPECT_EQ(SetAndRead(), "Zenta::ReadFiles(): READING INPUT DATA FILES!\n");
  EXPECT_EQ(setting, "Zenta::SetFiles(): SETTING INPUT FILE NAMES AND PROCESSING SETTINGS!\n");
}

TEST_F(ReadFilesTest, EveryFileIsToldWithItsCountsWhenVerbose) {
  NameAll();
  run.ctx.verbose = true;
  // 60 epochs of 7 satellites and 5 types; orbits of 25 epochs; 5 GPS and 2 GLONASS records.
  EXPECT_EQ(SetAndRead(),
            "Zenta::ReadFiles(): READING INPUT DATA FILES!\n"
            "Zenta::ReadFiles():        reading RINEX file - 60 epochs, 420 C1 observations, 5 obs "
            "types\n"
            "Zenta::ReadFiles():        reading RECEIVER CLOCK file - 60 epochs!\n"
            "Zenta::SetFiles():         reading MULTIPATH ON C1/P1 file - 60 epochs 420 "
            "observations\n"
            "Zenta::SetFiles():         reading MULTIPATH ON P2 file - 60 epochs 420 observations\n"
            "Zenta::ReadFiles():        reading GPS NAVIGATION file - 5 records\n"
            "Zenta::ReadFiles():        reading GLONASS NAVIGATION file - 2 records\n"
            "Zenta::ReadFiles():        reading GPS PRECISE EPHEMERIS file - 25 epochs 7 "
            "satellites\n"
            "Zenta::ReadFiles():        reading GLONASS PRECISE EPHEMERIS file - 25 epochs 7 "
            "satellites\n"
            "Zenta::ReadFiles():        reading GLONASS FREQUENCY CHANNEL file\n"
            "Zenta::ReadFiles():        reading P1P2 DCB file!\n"
            "Zenta::ReadFiles():        reading P1C1 DCB file!\n"
            "Zenta::ReadFiles():        reading P2C2 DCB file!\n");
}

TEST_F(ReadFilesTest, SilentWithoutVerbose) {
  NameAll();
  EXPECT_EQ(SetAndRead(), "");
  EXPECT_EQ(setting, "");
  EXPECT_EQ(run.data.GetNEpoch(), 60);
  EXPECT_EQ(run.clock.GetNEpoch(), 60);
  EXPECT_EQ(run.multipath1.NEph(), 60);
  EXPECT_EQ(run.multipath2.NObs(), 420);
  EXPECT_EQ(run.gpsBroadcast.GetNSat(), 5U);
  EXPECT_EQ(run.glonassBroadcast.GetNSat(), 2);
  EXPECT_EQ(run.gpsPrecise.GetNEpoch(), 25);
  EXPECT_EQ(run.glonassPrecise.GetNEpoch(), 25);
}

TEST_F(ReadFilesTest, FlagsDecideNotNames) {
  NameAll();
  run.ctx.isGPSnav = run.ctx.isClkFile = run.ctx.isMP1 = run.ctx.isRpEph = false;
  SetAndRead();
  EXPECT_EQ(run.gpsBroadcast.GetNSat(), 0U);
  EXPECT_EQ(run.clock.GetNEpoch(), 0);
  EXPECT_EQ(run.multipath1.NObs(), 0);
  EXPECT_EQ(run.glonassPrecise.GetNEpoch(), 0);
  EXPECT_EQ(run.glonassBroadcast.GetNSat(), 2);
  EXPECT_EQ(run.multipath2.NObs(), 420);
  EXPECT_EQ(run.gpsPrecise.GetNEpoch(), 25);
}

TEST_F(ReadFilesTest, EachReaderGetsItsOwnFile) {
  folder.Write("p1p2", TinyInputs().Biases(1));
  folder.Write("p1c1", TinyInputs().Biases(2));
  folder.Write("p2c2", TinyInputs().Biases(3));
  NameAll();
  SetAndRead();
  EXPECT_TRUE(Near(run.dcbP1P2.GetDCBVAL(5), 1e-9L, 1e-20L));
  EXPECT_TRUE(Near(run.dcbP1C1.GetDCBVAL(5), 2e-9L, 1e-20L));
  EXPECT_TRUE(Near(run.dcbP2C2.GetDCBVAL(5), 3e-9L, 1e-20L));
}

TEST_F(ReadFilesTest, TrackingListAndCoordinatesAreOnlySet) {
  NameAll();
  SetAndRead();
  Captured errors(std::cerr);
  EXPECT_EQ(run.codeTracking.GetRecCodeTrack(TinyInputs::kReceiver), 0);
  EXPECT_GT(run.coordinates.GetCRD(TinyInputs::kMarker, "", mjd(55844, 0)).GetX(), 4e6L);
  EXPECT_TRUE(run.coordinates.IsSite());
  EXPECT_EQ(errors.Text(), "");
}

TEST_F(ReadFilesTest, PreciseOrbitsWithoutEpochsAreNamedInAWarning) {
  Name(run.ctx.gsp3file, run.ctx.isGpEph, "empty.sp3");
  Name(run.ctx.rsp3file, run.ctx.isRpEph, "empty.sp3");
  const std::string name = folder.Write("empty.sp3", "");
  const auto warning = [&](const std::string& system) {
    return "\n#### Zenta: Warning -> " + system +
           " PRECISE EPHEMERIS FILE HOLDS NO ORBITS: " + name +
           "! ####\n     Continuing Zenta ... \n\n";
  };
  EXPECT_EQ(SetAndRead(), warning("GPS") + warning("GLONASS"));
}

TEST_F(ReadFilesTest, PreciseOrbitsCutBehindTheFirstLineAreNamedInAWarning) {
  const std::string text = TinyInputs().PreciseOrbits();
  folder.Write("cut.sp3", text.substr(0, text.find('\n') + 1)); // 25 epochs, no satellites
  Name(run.ctx.gsp3file, run.ctx.isGpEph, "cut.sp3");
  EXPECT_NE(SetAndRead().find("GPS PRECISE EPHEMERIS FILE HOLDS NO ORBITS"), std::string::npos);
}

TEST_F(ReadFilesTest, PreciseOrbitsThatLackALineAreNamedInAWarning) {
  const std::string text = TinyInputs().PreciseOrbits();
  const std::size_t lastLine = text.rfind("\nP") + 1; // EOF follows
  const std::string name = folder.Write("cut.sp3", text.substr(0, lastLine));
  Name(run.ctx.gsp3file, run.ctx.isGpEph, "cut.sp3");
  EXPECT_EQ(SetAndRead(),
            "\n#### Zenta: Warning -> GPS PRECISE EPHEMERIS FILE ENDS BEFORE ITS LAST EPOCH: " +
                name + "! ####\n     Continuing Zenta ... \n\n");
}

TEST_F(ReadFilesTest, PreciseOrbitsOfLessEpochsThanNodesAreNamedInAWarning) {
  std::string text = TinyInputs().PreciseOrbits();
  for (const int epochs : {13, 14}) {
    const std::string number = std::to_string(epochs);
    text.replace(37, 2, number);
    folder.Write("few.sp3", text);
    Name(run.ctx.rsp3file, run.ctx.isRpEph, "few.sp3");
    EXPECT_EQ(SetAndRead().find("GLONASS PRECISE EPHEMERIS FILE HOLDS TOO FEW EPOCHS") !=
                  std::string::npos,
              epochs == 13);
  }
}

TEST_F(ReadFilesDeathTest, DecimalCommasEndTheProgram) {
  std::string text = TinyInputs().GpsNavigation();
  std::replace(text.begin(), text.end(), '.', ',');
  folder.Write("commas", text);
  Name(run.ctx.gnavfile, run.ctx.isGPSnav, "commas");
  EXPECT_ENDS(Read(), "Error -> DECIMAL COMMAS IN INPUT FILE .*commas! ");
}

TEST_F(ReadFilesTest, HeadingsMayHaveCommas) {
  folder.Write("day.clk", "DAYS 283,284\nEND OF HEADER\n55844 0 5 0\n");
  Name(run.ctx.clkfile, run.ctx.isClkFile, "day.clk");
  Read();
  EXPECT_EQ(run.ctx.clkerr.GetNEpoch(), 1);
}

TEST_F(ReadFilesDeathTest, FatalReportsOfValuesNameTheFile) {
  folder.Write("day.clk", "END OF HEADER\n55844 86400.0 0.0\n");
  Name(run.ctx.clkfile, run.ctx.isClkFile, "day.clk");
  EXPECT_ENDS(Read(), "SECOND not valid(.|\n)*INPUT FILE NOT VALID: .*day.clk! ");
}

} // namespace
