// The command line as a user meets it: exit status, messages and where they go.

#include "support/Program.h"

namespace {

using ArgumentsTest = ProgramTest;

std::string Error(const std::string& text) {
  return "\n**** Zenta: Error -> " + text + " ****\n     Exiting Zenta ... \n\n";
}
std::string Warning(const std::string& text) {
  return "\n#### Zenta: Warning -> " + text + " ####\n     Continuing Zenta ... \n\n";
}

TEST_F(ArgumentsTest, ErrorsEndWithStatusOneOnStandardErrorAlone) {
  const std::pair<Arguments, std::string> cases[] = {
      {{}, "NO RINEX (OBSERVATION) FILE SET!"},
      {{"-r", "-essp3"}, "NO RINEX (OBSERVATION) FILE SET!"},
      {{"-rabsent", "-essp3"}, "RINEX (OBSERVATION) FILE CAN NOT BE OPENED!"},
      {{"-robs"}, "NO EPHEMERIS FILE SET!"},
      {{"-robs", "-elsp3"}, "NO EPHEMERIS FILE SET!"},
      {{"-robs", "-egabsent"}, "GPS NAVIGATION FILE CAN NOT BE OPENED!"},
      {{"-robs", "-erabsent"}, "GLONAS NAVIGATION FILE CAN NOT BE OPENED!"},
      {{"-robs", "-esabsent"}, "GPS PRECISE EPHEMERIS FILE CAN NOT BE OPENED!"},
      {{"-robs", "-essp3", "-elabsent"}, "GLONASS PRECISE EPHEMERIS FILE CAN NOT BE OPENED!"},
      {{"-robs", "-essp3", "-cb1absent"}, "DCB FILE - P1P2 CAN NOT BE OPENED!"},
      {{"-robs", "-essp3", "-cb2absent"}, "DCB FILE - P1C1 CAN NOT BE OPENED!"},
      {{"-robs", "-essp3", "-cb3absent"}, "DCB FILE - P2C2 CAN NOT BE OPENED!"},
      {{"-robs", "-essp3", "-gfabsent"}, "GLONASS FREQUENCY CHANNEL FILE CAN NOT BE OPENED!"},
      {{"-e"}, "EPHEMERIS FILE NOT SET CORRECTLY [ use -e[g|r|s|l]FILENAME ]!"},
      {{"-cb"}, "DIFFERENTIAL CODE BIAS (DCB) FILE NOT SET CORRECTLY [ use -cb[1|2|3]FILENAME ]!"},
      {{"-mp3"}, "MULTIPATH FILE NOT SET CORRECTLY [ use -mp[1|2]FILENAME ]!"},
      {{"-gp"}, "GNUPLOT FILE NOT SET CORRECTLY [ use -gp[i,e,d]FILENAME ]!"},
      {{"-p"}, "WEIGHTING OF OBSERVATIONS NOT SET CORRECTLY [ use -p[COSZ] ]!"},
      {{"-robs", "-essp3", "-xREC", "-ctabsent"},
       "RECEIVER LIST FILE CAN NOT BE OPENED (CODE TRACKING TECHNIQUE)!"},
  };
  for (const auto& [arguments, text] : cases) {
    const Outcome o = Zenta(arguments);
    EXPECT_EQ(o.status, 1) << text << o;
    EXPECT_EQ(o.err, Error(text));
    EXPECT_EQ(o.out, "") << text;
  }
}

TEST_F(ArgumentsTest, FilesWithoutANameFailWhereTheyAreFirstLookedFor) {
  const std::pair<const char*, const char*> cases[] = {
      {"-mp1", "TEQC COMPACT FILE DOES NOT EXISTS!"},
      {"-mp2", "TEQC COMPACT FILE DOES NOT EXISTS!"},
      {"-gf", "GLONASS FREQUENCY CHANNEL FILE DOES NOT EXIST!"},
      {"-ct", "RECEIVER LIST FILE CAN NOT BE OPENED (CODE TRACKING TECHNIQUE)!"},
      {"-ac", "COORDINATE FILE DOES NOT EXIST!"},
      {"-cf", "NUMBER OF RINEX EPOCH DIFFERENT THAN NUMBER OF CLOCK CORRECTIONS EPOCHS!"},
  };
  for (const auto& [option, text] : cases) {
    const Outcome o = Zenta({"-robs", "-essp3", "-xREC", "-lCODE", option});
    EXPECT_EQ(o.status, 1) << option << o;
    EXPECT_EQ(o.err, Error(text)) << option;
  }
}

TEST_F(ArgumentsTest, WarningsGoOnInTheOrderOfTheChecks) {
  const Outcome o = Zenta(Precise(Delays({"stray", "-q", "-cfabsent", "-mp1absent", "-mp2absent",
                                          "-eggnav", "-errnav", "-acabsent", "-xGPS"})));
  EXPECT_EQ(o.status, 0) << o;
  const std::string counts = "  #P1C1    5    #P2C1    5\n";
  EXPECT_EQ(o.err,
            Warning(" - PARAMETHER MANDATORY -> stray") + Warning("UNKNOWN PARAMETHER: -q") +
                Warning("CLOCK CORRECTION FILE CAN NOT BE OPENED!") +
                Warning("MULTIPATH FILE (P1) CAN NOT BE OPENED!") +
                Warning("MULTIPATH FILE (P2) CAN NOT BE OPENED!") +
                Warning("BOTH PRECISE EPHEMERIS AND NAVIGATION FILES FOR GPS SET -> USING ONLY "
                        "PRECISE EPHEMERIS FILE!") +
                Warning("BOTH PRECISE EPHEMERIS AND NAVIGATION FILES FOR GLONASS SET -> USING ONLY "
                        "PRECISE EPHEMERIS FILE!") +
                Warning("APRIORI COORDINATE FILE CAN NOT BE OPENED - USING RINEX VALUES!") +
                Warning("BOTH GPS DCB UNKNOWNS SET (RECEIVER AND SATELLITE): ESTIMATION OF "
                        "RECEIVER DCB VALUES WILL NOT BE PERFORMED (SINGULARITY)!") +
                counts);
}

TEST_F(ArgumentsTest, UnknownsThatCantBeAreCorrected) {
  const Outcome gln = Zenta({"-robs", "-essp3", "-xGLN,IGRAD", "-lCODE"});
  EXPECT_EQ(gln.status, 0) << gln;
  EXPECT_EQ(gln.err,
            Warning("GLONASS OBSERVATIONS NOT USED: GLONASS DCB VALUES NOT SET AS UNKNOWNS!") +
                Warning("NO UNKNOWNS SET: ESTIMATION OF ONLY RECEIVER DCB VALUES!") +
                Warning("NO IONOSPHERE PARAMETERS ESTIMATION (IONO GRADIENTS UNKNOWNS UNSET)!"));
  const Outcome gps = Zenta({"-robs", "-errnav", "-xGPS,ION", "-ii00:10:00", "-lCODE"});
  EXPECT_EQ(gps.status, 0) << gps;
  EXPECT_EQ(gps.err, Warning("GPS OBSERVATIONS NOT USED: GPS DCB VALUES NOT SET AS UNKNOWNS!"));
}

TEST_F(ArgumentsTest, PathWithVAsSecondCharacterMakesTheRunVerbose) {
  Start start;
  start.folder = folder.Path().string();
  start.name = "/vol/zenta";
  const Outcome o = RunCommand(start, Precise(Delays()));
  EXPECT_EQ(o.status, 0);
  EXPECT_NE(o.err.find("Zenta::GetFiles(): PARSING INPUT PARAMETERS!\n"), std::string::npos);
}

TEST_F(ArgumentsTest, OrderOfTheOptionsDoesNotMatter) {
  Arguments arguments = Precise(Delays({"-pCOSZ", "-bt10"}));
  const Outcome forward = Zenta(arguments);
  std::reverse(arguments.begin(), arguments.end());
  EXPECT_EQ(WithoutDate(Zenta(arguments).out), WithoutDate(forward.out));
  EXPECT_EQ(forward.status, 0);
}

TEST_F(ArgumentsTest, VeryLongArgumentsEndOrAreWarnedAbout) {
  const std::string name(100000, 'n');
  const Outcome file = Zenta({"-r" + name});
  EXPECT_EQ(file.status, 1);
  EXPECT_EQ(file.err, Error("FILE NAME TOO LONG: -r" + name + "!"));
  const Outcome stray = Zenta(Precise(Delays({name})));
  EXPECT_EQ(stray.status, 0);
  EXPECT_EQ(stray.err, Warning(" - PARAMETHER MANDATORY -> " + name));
}

TEST_F(ArgumentsTest, AbsurdSettingsEnd) {
  for (const char* setting : {"-ii",
                              "-ii-1:00:00",
                              "-ii99:59:59",
                              "-ii00:00:nan",
                              "-ii00:00:00.001",
                              "-ii00:00:1e400",
                              "-mi0",
                              "-mi-5",
                              "-mi99999999999",
                              "-mt-1",
                              "-mtnan",
                              "-mt1e400",
                              "-me-90",
                              "-me90",
                              "-me1e60",
                              "-menan",
                              "-ft0",
                              "-ft-1",
                              "-ftinf",
                              "-bt0",
                              "-bl-1",
                              "-btnan"}) {
    const Outcome o = Zenta(Precise(Delays({setting})));
    EXPECT_TRUE(o.status == 0 || o.status == 1) << setting << o;
    if (o.status == 1) {
      EXPECT_TRUE(o.err.find("Error -> ") != std::string::npos ||
                  o.out.find("MATRIX::ERROR:") != std::string::npos)
          << setting << o;
    }
    if (o.status == 0) {
      EXPECT_EQ(o.out.find("inf"), std::string::npos) << setting << o;
      EXPECT_EQ(o.out.find("nan"), std::string::npos) << setting << o;
    }
  }
}

} // namespace
