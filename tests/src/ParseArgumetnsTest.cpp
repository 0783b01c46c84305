#include "ParseArgumetns.h"

#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"
#include "support/TinyRun.h"

#include <string>
#include <vector>

namespace {

using Arguments = std::vector<std::string>;

void Parse(KorvanC& ctx, const Arguments& arguments, const char* program = "zenta") {
  std::vector<const char*> argv = {program};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  ParseArgumetns(ctx, static_cast<int>(argv.size()), argv.data());
}

/// A run with the given arguments, and what parsing them wrote on standard error.
struct Parsed : TinyRun {
  explicit Parsed(const Arguments& arguments, const char* program = "zenta") {
    Captured errors(std::cerr);
    Captured out(std::cout);
    Parse(ctx, arguments, program);
    text = errors.Text();
    EXPECT_EQ(out.Text(), "");
  }
  std::string text;
};

std::string Warning(const std::string& text) {
  return "\n#### Zenta: Warning -> " + text + " ####\n     Continuing Zenta ... \n\n";
}

const std::string kBanner = "\nZenta: ***** CODE/PHASE GNSS IONOSPHERE DELAY ESTIMATION *****\n"
                            "Zenta::GetFiles(): PARSING INPUT PARAMETERS!\n";

/// What a verbose run writes about \p argument, without the opening lines.
std::string Message(const std::string& argument) {
  const std::string text = Parsed({"-v", argument}).text;
  EXPECT_EQ(text.substr(0, kBanner.size()), kBanner);
  return text.substr(kBanner.size());
}

std::string Line(const std::string& text) { return "Zenta::GetFiles():         " + text + "\n"; }

void ParseInDeath(const Arguments& arguments) {
  TinyRun run;
  Parse(run.ctx, arguments);
}

// ---- Verbose ---------------------------------------------------------------------------------

TEST(ParseArgumetns, WithoutVerboseNothingIsWritten) {
  EXPECT_EQ(Parsed({"-robs", "-xREC", "-lCODE", "-me10", "-ii01:00:00", "-pCOSZ", "-c"}).text, "");
}

TEST(ParseArgumetns, VerboseOpensWithTheBanner) {
  for (const char* option : {"-v", "-V", "-verbose"}) {
    const Parsed run({option});
    EXPECT_TRUE(run.ctx.verbose) << option;
    EXPECT_EQ(run.text, kBanner) << option;
  }
}

TEST(ParseArgumetns, VerboseIsKnownBeforeTheFirstArgumentIsParsed) {
  EXPECT_EQ(Parsed({"-robs", "-v"}).text, kBanner + Line("RINEX file name: obs!"));
}

TEST(ParseArgumetns, AnyArgumentWithSecondCharacterVIsVerboseAndWarnedAbout) {
  const Parsed run({"ovo"});
  EXPECT_TRUE(run.ctx.verbose);
  EXPECT_EQ(run.text, kBanner + Warning(" - PARAMETHER MANDATORY -> ovo"));
}

TEST(ParseArgumetns, ThePathOfTheProgramCountsInTheSearchForV) {
  EXPECT_TRUE(Parsed({}, "/var/zenta").ctx.verbose);
  EXPECT_FALSE(Parsed({}, "./verbose").ctx.verbose);
}

TEST(ParseArgumetns, OneCharacterAndNoneAreNotVerbose) {
  EXPECT_FALSE(Parsed({"v", ""}).ctx.verbose);
}

// ---- Arguments that are no options -------------------------------------------------------------

TEST(ParseArgumetns, ArgumentWithoutDashIsWarnedAboutWhole) {
  const std::string longName(600, 'n');
  EXPECT_EQ(Parsed({longName}).text, Warning(" - PARAMETHER MANDATORY -> " + longName));
}

TEST(ParseArgumetns, EmptyArgumentIsWarnedAboutWithNothingBehindTheArrow) {
  EXPECT_EQ(Parsed({""}).text, Warning(" - PARAMETHER MANDATORY -> "));
}

TEST(ParseArgumetns, DashAloneIsAnUnknownParameterWithoutLetter) {
  EXPECT_EQ(Parsed({"-"}).text, Warning("UNKNOWN PARAMETHER: -"));
}

TEST(ParseArgumetns, UnknownOptionIsNamedByItsFirstLetterOnly) {
  EXPECT_EQ(Parsed({"-quiet"}).text, Warning("UNKNOWN PARAMETHER: -q"));
  EXPECT_EQ(Parsed({"--help"}).text, Warning("UNKNOWN PARAMETHER: --"));
}

TEST(ParseArgumetns, LettersWithoutATwoLetterOptionAreUnknown) {
  for (const char* option : {"-mx", "-gx", "-ax", "-bx", "-fx", "-i", "-m", "-Mp1f", "-gPif"})
    EXPECT_EQ(Parsed({option}).text, Warning(std::string("UNKNOWN PARAMETHER: -") + option[1]))
        << option;
}

TEST(ParseArgumetns, WarningsComeInTheOrderOfTheArguments) {
  EXPECT_EQ(Parsed({"one", "-q", "two"}).text, Warning(" - PARAMETHER MANDATORY -> one") +
                                                   Warning("UNKNOWN PARAMETHER: -q") +
                                                   Warning(" - PARAMETHER MANDATORY -> two"));
}

// ---- Files -----------------------------------------------------------------------------------

struct FileCase {
  const char* option;
  char (KorvanC::*name)[256];
  bool KorvanC::*flag;
  const char* message;
};

const FileCase kFiles[] = {
    {"-r", &KorvanC::rnxfile, &KorvanC::isRnx, "RINEX file name: "},
    {"-cf", &KorvanC::clkfile, &KorvanC::isClkFile, "Clock correction input file: "},
    {"-eg", &KorvanC::gnavfile, &KorvanC::isGPSnav, "GPS navigation file: "},
    {"-er", &KorvanC::rnavfile, &KorvanC::isGLNnav, "GLONASS navigation file: "},
    {"-es", &KorvanC::gsp3file, &KorvanC::isGpEph, "GPS precise ephemeris file: "},
    {"-el", &KorvanC::rsp3file, &KorvanC::isRpEph, "GLONASS precise ephemeris file: "},
    {"-cb1", &KorvanC::dcbp1p2file, &KorvanC::isP1P2, "Differential Code Bias (DCB) file - P1P2: "},
    {"-cb2", &KorvanC::dcbp1c1file, &KorvanC::isP1C1, "Differential Code Bias (DCB) file - P1C1: "},
    {"-cb3", &KorvanC::dcbp2c2file, &KorvanC::isP2C2, "Differential Code Bias (DCB) file - P2C2: "},
    {"-mp1", &KorvanC::mp1file, &KorvanC::isMP1, "Multipath on P1 file: "},
    {"-mp2", &KorvanC::mp2file, &KorvanC::isMP2, "Multipath on P1 file: "},
    {"-ct", &KorvanC::rctrackfile, &KorvanC::isRCodTrc, "Receiver Code Tracking type file name: "},
    {"-gf", &KorvanC::glnfreqch, &KorvanC::isGLNfrch, "GLONASS frequency channel file: "},
    {"-ac", &KorvanC::aprcrdfile, &KorvanC::isAprCrd, "Apriori coordinate file name: "},
    {"-gpi", &KorvanC::gnuplotIon, &KorvanC::isGNUPlotIon,
     "GNUPlot intput file with ionospheric delay [linear]: "},
    {"-gpe", &KorvanC::gnuplotIonEph, &KorvanC::isGNUPlotIonEph,
     "GNUPlot input file with ionospheric delay [epoch]: "},
    {"-gpd", &KorvanC::gnuplotDCB, &KorvanC::isGNUPlotDCB,
     "GNUPlot input file with differential code biases: "},
    {"-fp", &KorvanC::resfile, &KorvanC::ifPrintRes, "Residual output file: "},
};

std::string Upper(std::string text) {
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

TEST(ParseArgumetns, FileOptionsSetTheirNameAndFlag) {
  for (const FileCase& file : kFiles) {
    for (const std::string& option : {std::string(file.option), Upper(file.option)}) {
      const Parsed run({option + "Dir/File.1"});
      EXPECT_STREQ(run.ctx.*file.name, "Dir/File.1") << option;
      EXPECT_TRUE(run.ctx.*file.flag) << option;
      EXPECT_EQ(run.text, "") << option;
      for (const FileCase& other : kFiles) {
        if (other.flag == file.flag) continue;
        EXPECT_FALSE(run.ctx.*other.flag) << option << " sets the flag of " << other.option;
      }
    }
  }
}

TEST(ParseArgumetns, FileOptionsTellTheirFileWhenVerbose) {
  for (const FileCase& file : kFiles)
    EXPECT_EQ(Message(file.option + std::string("name")), Line(file.message + std::string("name!")))
        << file.option;
}

TEST(ParseArgumetns, FileOptionWithoutANameSetsItsFlag) {
  for (const FileCase& file : kFiles) {
    const Parsed run({file.option});
    EXPECT_TRUE(run.ctx.*file.flag) << file.option;
    EXPECT_STREQ(run.ctx.*file.name, "") << file.option;
  }
}

TEST(ParseArgumetns, TheLastOfTwoNamesStands) {
  EXPECT_STREQ(Parsed({"-rmuch-longer", "-rb"}).ctx.rnxfile, "b");
}

TEST(ParseArgumetns, GroupAndMemberLettersChooseTheirCase) {
  for (const char* option : {"-eGf", "-Egf", "-EGf"})
    EXPECT_STREQ(Parsed({option}).ctx.gnavfile, "f") << option;
  for (const char* option : {"-eLf", "-Elf"})
    EXPECT_STREQ(Parsed({option}).ctx.rsp3file, "f") << option;
  for (const char* option : {"-gpIf", "-GPif"})
    EXPECT_STREQ(Parsed({option}).ctx.gnuplotIon, "f") << option;
  for (const char* option : {"-gpEf", "-GPef"})
    EXPECT_STREQ(Parsed({option}).ctx.gnuplotIonEph, "f") << option;
}

TEST(ParseArgumetns, MixedCaseOfATwoLetterOptionIsAnotherOption) {
  const Parsed run({"-cFclock.txt", "-cB1bias", "-Cttrack"});
  EXPECT_TRUE(run.ctx.iCout);
  EXPECT_FALSE(run.ctx.isClkFile || run.ctx.isP1P2 || run.ctx.isRCodTrc);
  EXPECT_STREQ(run.ctx.clkfile, "");
  EXPECT_EQ(run.text, "");
}

TEST(ParseArgumetns, OptionOfTheLetterCSetsTheUnusedFlagSilently) {
  EXPECT_FALSE(Parsed({}).ctx.iCout);
  EXPECT_TRUE(Parsed({"-c"}).ctx.iCout);
  EXPECT_EQ(Message("-Cxyz"), "");
}

TEST(ParseArgumetns, LongestNameFits) {
  const std::string name(255, 'n');
  EXPECT_EQ(Parsed({"-r" + name}).ctx.rnxfile, name);
}

TEST(ParseArgumetnsDeathTest, NameOfMoreThan255CharactersEndsTheProgram) {
  EXPECT_ENDS(ParseInDeath({"-eg" + std::string(256, 'n')}),
              "Error -> FILE NAME TOO LONG: -egnnnnnn");
}

TEST(ParseArgumetnsDeathTest, UnknownMemberOfAGroupEndsTheProgram) {
  const std::pair<Arguments, std::string> cases[] = {
      {{"-e", "-ex", "-EXfile"}, "EPHEMERIS FILE NOT SET CORRECTLY \\[ use -e\\[g\\|r\\|s\\|l\\]"},
      {{"-cb", "-cb4f", "-CB0"},
       "DIFFERENTIAL CODE BIAS \\(DCB\\) FILE NOT SET CORRECTLY \\[ use -cb\\[1\\|2\\|3\\]"},
      {{"-mp", "-mp3f", "-MPf"}, "MULTIPATH FILE NOT SET CORRECTLY \\[ use -mp\\[1\\|2\\]"},
      {{"-gp", "-gpx", "-GPx"}, "GNUPLOT FILE NOT SET CORRECTLY \\[ use -gp\\[i,e,d\\]"},
  };
  for (const auto& [options, text] : cases)
    for (const std::string& option : options)
      EXPECT_ENDS(ParseInDeath({option}),
                  "^\n\\*\\*\\*\\* Zenta: Error -> " + text +
                      "FILENAME \\]! \\*\\*\\*\\*\n     Exiting Zenta \\.\\.\\. \n\n$");
}

// ---- Unknowns --------------------------------------------------------------------------------

TEST(ParseArgumetns, UnknownsKeywordsSetTheirFlags) {
  const std::pair<const char*, bool KorvanC::*> keywords[] = {{"REC", &KorvanC::ifEstREC},
                                                              {"GPS", &KorvanC::ifEstGPS},
                                                              {"GLN", &KorvanC::ifEstGLN},
                                                              {"ION", &KorvanC::ifEstION},
                                                              {"IGRAD", &KorvanC::ifEstIGrad}};
  for (const auto& [keyword, flag] : keywords) {
    std::string lower(keyword);
    for (char& c : lower) c = static_cast<char>(c - 'A' + 'a');
    for (const std::string& word : {std::string(keyword), lower}) {
      const Parsed run({"-x" + word});
      for (const auto& [other, otherFlag] : keywords)
        EXPECT_EQ(run.ctx.*otherFlag, otherFlag == flag) << word << " and " << other;
      EXPECT_FALSE(run.ctx.ifEstIONEph) << word;
    }
    std::string mixed(keyword);
    mixed[1] = lower[1];
    EXPECT_FALSE(Parsed({"-x" + mixed}).ctx.*flag) << mixed;
  }
}

TEST(ParseArgumetns, EpochWiseDelaysHoldTheLinearOnes) {
  for (const char* option : {"-xIONEPH", "-Xioneph"}) {
    const Parsed run({option});
    EXPECT_TRUE(run.ctx.ifEstIONEph) << option;
    EXPECT_TRUE(run.ctx.ifEstION) << option;
  }
}

TEST(ParseArgumetns, SeveralUnknownsOptionsAddUp) {
  const Parsed run({"-xREC", "-xION", "-x"});
  EXPECT_TRUE(run.ctx.ifEstREC && run.ctx.ifEstION);
  EXPECT_FALSE(run.ctx.ifEstGPS || run.ctx.ifEstGLN || run.ctx.ifEstIGrad);
}

TEST(ParseArgumetns, UnknownsSetSoFarAreListedWhenVerbose) {
  const Parsed run({"-v", "-xIGRAD", "-xrec,GPS,gln,IONEPH"});
  EXPECT_EQ(run.text, kBanner + Line("Unknowns set:  ION-GRADIENT") +
                          Line("Unknowns set:  REC-DCB GPS-DCB GLN-DCB ION-Delay[Linear] "
                               "ION-Delay[Epoch] ION-GRADIENT"));
}

TEST(ParseEstimationType, SearchesTheWholeArgumentAndClearsNothing) {
  bool rec = false;
  bool gps = true;
  bool gln = false;
  bool ion = false;
  bool ionEph = false;
  bool iGrad = false;
  Captured errors(std::cerr);
  ParseEstimationType("recION", rec, gps, gln, ion, ionEph, iGrad, false);
  EXPECT_TRUE(rec && gps && ion);
  EXPECT_FALSE(gln || ionEph || iGrad);
  EXPECT_EQ(errors.Text(), "");
}

// ---- Settings --------------------------------------------------------------------------------

TEST(ParseArgumetns, IntervalIsHoursMinutesSeconds) {
  EXPECT_EQ(Parsed({"-ii01:30:00"}).ctx.IonoInterval, 5400);
  EXPECT_EQ(Parsed({"-II00x02y03.5"}).ctx.IonoInterval, 123.5L);
  EXPECT_EQ(Message("-ii01:30:00"), Line("Ionospheric delay estimation time interval: 5400 s!"));
}

TEST(ParseArgumetns, WhatAShortIntervalLacksIsZero) {
  EXPECT_EQ(Parsed({"-ii02"}).ctx.IonoInterval, 7200);
  EXPECT_EQ(Parsed({"-ii00:15"}).ctx.IonoInterval, 900);
  EXPECT_EQ(Parsed({"-ii"}).ctx.IonoInterval, 0);
}

TEST(ParseArgumetns, WeightingNeedsItsKeywordAnywhere) {
  for (const char* option : {"-pCOSZ", "-Pcosz", "-p=COSZ.", "-pxcoszx"})
    EXPECT_EQ(Parsed({option}).ctx.obsP, 1) << option;
  EXPECT_EQ(Message("-pCOSZ"), Line("Weighting of observations: YES (COS(Z) model)!"));
}

TEST(ParseArgumetnsDeathTest, WeightingWithoutItsKeywordEndsTheProgram) {
  for (const char* option : {"-p", "-P", "-pCosZ", "-pSIN"})
    EXPECT_ENDS(
        ParseInDeath({option}),
        "^\n\\*\\*\\*\\* Zenta: Error -> WEIGHTING OF OBSERVATIONS NOT SET CORRECTLY \\[ use "
        "-p\\[COSZ\\] \\]! \\*\\*\\*\\*\n");
}

TEST(ParseArgumetns, ObservationTypesByTheirKeywords) {
  for (const char* option : {"-lcode", "-lCODE", "-LCode"}) {
    const Parsed run({option});
    EXPECT_TRUE(run.ctx.ifCodeObs) << option;
    EXPECT_FALSE(run.ctx.ifPhaseObs) << option;
  }
  for (const char* option : {"-lphase", "-lPHASE", "-LPhase"}) {
    const Parsed run({option});
    EXPECT_FALSE(run.ctx.ifCodeObs) << option;
    EXPECT_TRUE(run.ctx.ifPhaseObs) << option;
  }
  const Parsed both({"-lPhase,CODE"});
  EXPECT_TRUE(both.ctx.ifCodeObs && both.ctx.ifPhaseObs);
  EXPECT_EQ(Message("-lphase,code"), Line("Type of observations used in processing:  CODE PHASE"));
}

const std::string kNoTypes = Warning(
    "TYPE OF OBSERVATIONS NOT USED CORRECTLY [ use -l[CODE|PHASE] ]: USING ALL OBSERVATIONS!");

TEST(ParseArgumetns, ObservationTypesWithoutKeywordAreBothWithAWarning) {
  const Parsed run({"-lcoDE"});
  EXPECT_TRUE(run.ctx.ifCodeObs && run.ctx.ifPhaseObs);
  EXPECT_EQ(run.text, kNoTypes);
  EXPECT_EQ(Message("-l"), Line("Type of observations used in processing: ") + kNoTypes);
}

TEST(ParseArgumetns, ObservationTypesOfAnEarlierOptionCount) {
  const Parsed run({"-lcode", "-l"});
  EXPECT_FALSE(run.ctx.ifPhaseObs);
  EXPECT_EQ(run.text, "");
  EXPECT_EQ(Parsed({"-v", "-lcode", "-lphase"}).text,
            kBanner + Line("Type of observations used in processing:  CODE") +
                Line("Type of observations used in processing:  PHASE"));
}

TEST(ParseArgumetns, WithoutTheOptionNoObservationTypeIsUsed) {
  const Parsed run({"-robs"});
  EXPECT_FALSE(run.ctx.ifCodeObs || run.ctx.ifPhaseObs);
}

TEST(ParseArgumetns, NumbersPassThroughSinglePrecision) {
  const Parsed run({"-me10.1", "-bt10.1", "-BL0.1", "-ft33.3"});
  EXPECT_EQ(run.ctx.MinElevation, static_cast<double>(10.1F));
  EXPECT_NE(run.ctx.MinElevation, 10.1);
  EXPECT_EQ(run.ctx.ThresBlunder, static_cast<long double>(10.1F));
  EXPECT_EQ(run.ctx.ThresBlunderL4, static_cast<long double>(0.1F));
  EXPECT_EQ(run.ctx.MaxfDiff, static_cast<long double>(33.3F));
  EXPECT_TRUE(run.ctx.isMinElev && run.ctx.isThresBlunder && run.ctx.isThresBlunderL4 &&
              run.ctx.isMaxfDiff);
}

TEST(ParseArgumetns, MisclosureThresholdLeavesThatOfP1C1) {
  const Parsed run({"-ft100"});
  EXPECT_EQ(run.ctx.MaxfDiff, 100);
  EXPECT_TRUE(Near(run.ctx.MaxfDiffP1C1, 50.0L / 3.0L, 1e-18L));
}

TEST(ParseArgumetns, IterationSettings) {
  const Parsed run({"-mi7", "-MT0.1"});
  EXPECT_EQ(run.ctx.MaxIter, 7);
  EXPECT_EQ(run.ctx.IterThres, 0.1); // in double precision
}

TEST(ParseArgumetns, ValueThatIsNoNumberIsZero) {
  const Parsed run({"-me", "-btabc", "-bl", "-ft-", "-mix", "-mt"});
  EXPECT_EQ(run.ctx.MinElevation, 0);
  EXPECT_EQ(run.ctx.ThresBlunder, 0);
  EXPECT_EQ(run.ctx.ThresBlunderL4, 0);
  EXPECT_EQ(run.ctx.MaxfDiff, 0);
  EXPECT_EQ(run.ctx.MaxIter, 0);
  EXPECT_EQ(run.ctx.IterThres, 0);
}

TEST(ParseArgumetns, NumbersThatMakeNoSenseAreWarnedAbout) {
  const struct {
    const char* argument;
    const char* used;
  } cases[] = {
      {"-me", "0"},
      {"-me-1", "-1"},
      {"-me90.5", "90.5"},
      {"-btabc", "0"},
      {"-bt-5", "-5"},
      {"-bl-0.1", "-0.1"},
      {"-ft-1e-9", "-1e-09"},
      {"-mi", "0"},
      {"-mi0", "0"},
      {"-mi-3", "-3"},
      {"-mi5.5", "5"},
      {"-mi99999999999", "2147483647"},
      {"-mi1e9", "1"},
      {"-mt-1", "-1"},
      {"-mtx", "0"},
      {"-iix", "0"},
      {"-ii-1:00:00", "-3600"},
      {"-ii00:00:1e9", "1e+09"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Parsed({c.argument}).text, Warning(std::string("NUMBER NOT SENSIBLE: ") + c.argument +
                                                 " - USING " + c.used + "!"));
}

TEST(ParseArgumetns, NumbersAtTheirLimitsMakeSense) {
  for (const char* argument :
       {"-me0", "-me-0", "-me90", "-bt0", "-bl0.5", "-ft1e30", "-mi1", "-mi2147483647", "-mt0",
        "-mt1e-300", "-ii00:00:00", "-ii99:59:60", "-ii24", "-ii:30:00", "-ii"})
    EXPECT_EQ(Parsed({argument}).text, "") << argument;
}

TEST(ParseArgumetnsDeathTest, NumberThatIsNotFiniteEndsTheProgram) {
  for (const char* argument :
       {"-menan", "-me1e300", "-bt1e39", "-blinf", "-ft-inf", "-minan", "-mtinf", "-mt1e400"})
    EXPECT_ENDS(ParseInDeath({argument}), std::string("NUMBER NOT FINITE: ") + argument + "!");
}

TEST(ParseArgumetns, IterationsAreTakenAsGiven) {
  EXPECT_EQ(Parsed({"-mi5000"}).ctx.MaxIter, 5000);
}

TEST(ParseArgumetns, SettingsAreToldWithSixSignificantDigits) {
  EXPECT_EQ(Message("-me10.123456789"), Line("Minimum elevation angle: 10.1235!"));
  EXPECT_EQ(Message("-bt12"), Line("Threshold for blunder detection (correction vector v): 12!"));
  EXPECT_EQ(Message("-bl0.5"),
            Line("Threshold for blunder detection (correction vector v - L4): 0.5!"));
  EXPECT_EQ(Message("-ft50"), Line("Threshold for blunder detection (misclosure vector f): 50!"));
  EXPECT_EQ(Message("-mi3"), Line("Maximum number of iteration: 3!"));
  EXPECT_EQ(Message("-mt0.00001"), Line("Iteration process threshold: 1e-05!"));
}

// ---- Checks ----------------------------------------------------------------------------------

/// A folder with one file, and settings that name it.
class CheckArgumetnsTest : public testing::Test {
protected:
  const ScratchFolder folder;
  const std::string file = folder.Write("file", "");
  const std::string absent = folder.Name("absent");

  /// Settings that pass every check without a message; \p more come behind them.
  Arguments Sound(const Arguments& more = {}) const {
    Arguments arguments = {"-r" + file, "-eg" + file, "-xREC"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  /// Parses and checks; what the check wrote on standard error is in text.
  std::string Check(TinyRun& run, const Arguments& arguments) const {
    Captured errors(std::cerr);
    Parse(run.ctx, arguments);
    const std::size_t parsed = errors.Text().size();
    CheckArgumetns(run.ctx);
    return errors.Text().substr(parsed);
  }
};

TEST_F(CheckArgumetnsTest, SoundSettingsPassSilently) {
  TinyRun run;
  EXPECT_EQ(Check(run, Sound()), "");
  EXPECT_TRUE(run.ctx.isGPS);
  EXPECT_FALSE(run.ctx.isGLN);
  EXPECT_EQ(run.ctx.NIonUnkT, 0);
}

TEST_F(CheckArgumetnsTest, HeadingsComeInOrderWhenVerbose) {
  TinyRun run;
  EXPECT_EQ(Check(run, Sound({"-v"})),
            "Zenta::SetFiles(): CHECKING INPUT ARGUMETNS!\n"
            "Zenta::SetFiles():         RINEX file!\n"
            "Zenta::SetFiles():         Clock correction file!\n"
            "Zenta::SetFiles():         Ephemeris files!\n"
            "Zenta::SetFiles():         Differential Code Biases files!\n"
            "Zenta::SetFiles():         A-priori coordinate file!\n"
            "Zenta::SetFiles():         GLONASS frequency channel file!\n"
            "Zenta::SetFiles():         Type of unknowns in estimation!!\n");
}

TEST_F(CheckArgumetnsTest, AbsentOptionalFilesAreDroppedWithWarnings) {
  TinyRun run;
  // In the order of the checks, whatever the order of the arguments.
  EXPECT_EQ(Check(run, Sound({"-ac" + absent, "-mp2" + absent, "-mp1" + absent, "-cf" + absent})),
            Warning("CLOCK CORRECTION FILE CAN NOT BE OPENED!") +
                Warning("MULTIPATH FILE (P1) CAN NOT BE OPENED!") +
                Warning("MULTIPATH FILE (P2) CAN NOT BE OPENED!") +
                Warning("APRIORI COORDINATE FILE CAN NOT BE OPENED - USING RINEX VALUES!"));
  EXPECT_FALSE(run.ctx.isClkFile || run.ctx.isMP1 || run.ctx.isMP2 || run.ctx.isAprCrd);
}

TEST_F(CheckArgumetnsTest, PresentOptionalFilesStay) {
  TinyRun run;
  EXPECT_EQ(Check(run, Sound({"-ac" + file, "-mp2" + file, "-mp1" + file, "-cf" + file})), "");
  EXPECT_TRUE(run.ctx.isClkFile && run.ctx.isMP1 && run.ctx.isMP2 && run.ctx.isAprCrd);
}

TEST_F(CheckArgumetnsTest, OptionalFileWithoutANameKeepsItsFlag) {
  TinyRun run;
  EXPECT_EQ(Check(run, Sound({"-cf", "-mp1", "-ac"})), "");
  EXPECT_TRUE(run.ctx.isClkFile && run.ctx.isMP1 && run.ctx.isAprCrd);
}

TEST_F(CheckArgumetnsTest, TrackingListResidualAndPlotFilesAreNotChecked) {
  TinyRun run;
  EXPECT_EQ(Check(run, Sound({"-ct" + absent, "-fp/no/such", "-gpi/no/a", "-gpe/no/b", "-gpd/n"})),
            "");
  EXPECT_TRUE(run.ctx.isRCodTrc && run.ctx.ifPrintRes && run.ctx.isGNUPlotIon);
}

const std::string kBothGPS = Warning("BOTH PRECISE EPHEMERIS AND NAVIGATION FILES FOR GPS SET -> "
                                     "USING ONLY PRECISE EPHEMERIS FILE!");
const std::string kBothGLONASS =
    Warning("BOTH PRECISE EPHEMERIS AND NAVIGATION FILES FOR GLONASS SET -> USING ONLY PRECISE "
            "EPHEMERIS FILE!");

TEST_F(CheckArgumetnsTest, PreciseOrbitsGoBeforeBroadcastOnes) {
  TinyRun run;
  EXPECT_EQ(Check(run, Sound({"-es" + file, "-er" + file, "-el" + file})), kBothGPS + kBothGLONASS);
  EXPECT_FALSE(run.ctx.isGPSnav || run.ctx.isGLNnav);
  EXPECT_TRUE(run.ctx.isGpEph && run.ctx.isRpEph && run.ctx.isGPS && run.ctx.isGLN);
}

TEST_F(CheckArgumetnsTest, EachKindOfOrbitsSelectsItsSystem) {
  const struct {
    Arguments orbits;
    bool gps;
    bool gln;
  } cases[] = {
      {{"-eg" + file}, true, false},
      {{"-es" + file}, true, false},
      {{"-er" + file}, false, true},
      {{"-er" + file, "-es" + file}, true, true},
      {{"-eg" + file, "-el" + file}, true, true},
  };
  for (const auto& c : cases) {
    TinyRun run;
    Arguments arguments = {"-r" + file, "-xION"};
    arguments.insert(arguments.end(), c.orbits.begin(), c.orbits.end());
    EXPECT_EQ(Check(run, arguments), "") << c.orbits[0];
    EXPECT_EQ(run.ctx.isGPS, c.gps) << c.orbits[0];
    EXPECT_EQ(run.ctx.isGLN, c.gln) << c.orbits[0];
  }
}

const std::string kNoUnknowns = Warning("NO UNKNOWNS SET: ESTIMATION OF ONLY RECEIVER DCB VALUES!");

TEST_F(CheckArgumetnsTest, BiasesOfASystemWithoutOrbitsAreDropped) {
  TinyRun gps;
  EXPECT_EQ(Check(gps, {"-r" + file, "-er" + file, "-xGPS,ION"}),
            Warning("GPS OBSERVATIONS NOT USED: GPS DCB VALUES NOT SET AS UNKNOWNS!"));
  EXPECT_FALSE(gps.ctx.ifEstGPS);
  TinyRun gln;
  EXPECT_EQ(Check(gln, {"-r" + file, "-eg" + file, "-xGLN,ION"}),
            Warning("GLONASS OBSERVATIONS NOT USED: GLONASS DCB VALUES NOT SET AS UNKNOWNS!"));
  EXPECT_FALSE(gln.ctx.ifEstGLN);
}

TEST_F(CheckArgumetnsTest, ReceiverAndGpsBiasesTogetherDropTheReceiver) {
  TinyRun run;
  EXPECT_EQ(Check(run, {"-r" + file, "-eg" + file, "-xREC,GPS"}),
            Warning("BOTH GPS DCB UNKNOWNS SET (RECEIVER AND SATELLITE): ESTIMATION OF RECEIVER "
                    "DCB VALUES WILL NOT BE PERFORMED (SINGULARITY)!"));
  EXPECT_FALSE(run.ctx.ifEstREC);
  EXPECT_TRUE(run.ctx.ifEstGPS);
}

TEST_F(CheckArgumetnsTest, ReceiverAndDroppedGpsBiasesKeepTheReceiver) {
  TinyRun run;
  EXPECT_EQ(Check(run, {"-r" + file, "-er" + file, "-xREC,GPS"}),
            Warning("GPS OBSERVATIONS NOT USED: GPS DCB VALUES NOT SET AS UNKNOWNS!"));
  EXPECT_TRUE(run.ctx.ifEstREC);
}

TEST_F(CheckArgumetnsTest, ReceiverAndGlonassBiasesGoTogether) {
  TinyRun run;
  EXPECT_EQ(Check(run, {"-r" + file, "-er" + file, "-xREC,GLN"}), "");
  EXPECT_TRUE(run.ctx.ifEstREC && run.ctx.ifEstGLN);
}

TEST_F(CheckArgumetnsTest, WithoutUnknownsTheReceiverIsEstimated) {
  TinyRun run;
  EXPECT_EQ(Check(run, {"-r" + file, "-eg" + file}), kNoUnknowns);
  EXPECT_TRUE(run.ctx.ifEstREC);
}

TEST_F(CheckArgumetnsTest, GlonassBiasesAloneBringTheReceiverAlong) {
  TinyRun run;
  EXPECT_EQ(Check(run, {"-r" + file, "-er" + file, "-xGLN"}), kNoUnknowns);
  EXPECT_TRUE(run.ctx.ifEstREC && run.ctx.ifEstGLN);
}

TEST_F(CheckArgumetnsTest, GradientsWithoutDelaysAreDropped) {
  TinyRun run;
  EXPECT_EQ(Check(run, {"-r" + file, "-eg" + file, "-xIGRAD"}),
            kNoUnknowns +
                Warning("NO IONOSPHERE PARAMETERS ESTIMATION (IONO GRADIENTS UNKNOWNS UNSET)!"));
  EXPECT_FALSE(run.ctx.ifEstIGrad);
  EXPECT_EQ(run.ctx.NIonUnkT, 0);
}

TEST_F(CheckArgumetnsTest, UnknownsOfAnIntervalAreTwoOrFour) {
  TinyRun delays;
  EXPECT_EQ(Check(delays, Sound({"-xION"})), "");
  EXPECT_EQ(delays.ctx.NIonUnkT, 2);
  TinyRun gradients;
  EXPECT_EQ(Check(gradients, Sound({"-xION,IGRAD"})), "");
  EXPECT_EQ(gradients.ctx.NIonUnkT, 4);
}

// ---- Checks that end the program ---------------------------------------------------------------

class CheckArgumetnsDeathTest : public CheckArgumetnsTest {
protected:
  static void CheckInDeath(const Arguments& arguments) {
    TinyRun run;
    Parse(run.ctx, arguments);
    CheckArgumetns(run.ctx);
  }
  /// The error is the first and only message.
  static void ExpectError(const Arguments& arguments, const std::string& text) {
    EXPECT_ENDS(CheckInDeath(arguments), "^\n\\*\\*\\*\\* Zenta: Error -> " + text +
                                             " \\*\\*\\*\\*\n     Exiting Zenta \\.\\.\\. \n\n$");
  }
};

TEST_F(CheckArgumetnsDeathTest, ObservationFileIsRequired) {
  ExpectError({"-eg" + file}, "NO RINEX \\(OBSERVATION\\) FILE SET!");
  ExpectError({"-r", "-eg" + file}, "NO RINEX \\(OBSERVATION\\) FILE SET!");
  ExpectError({"-r" + absent, "-eg" + file}, "RINEX \\(OBSERVATION\\) FILE CAN NOT BE OPENED!");
}

TEST_F(CheckArgumetnsDeathTest, OrbitsAreRequired) {
  ExpectError({"-r" + file}, "NO EPHEMERIS FILE SET!");
  ExpectError({"-r" + file, "-eg", "-es", "-er"}, "NO EPHEMERIS FILE SET!");
}

TEST_F(CheckArgumetnsDeathTest, GlonassPreciseOrbitsAloneAreNoOrbits) {
  ExpectError({"-r" + file, "-el" + file}, "NO EPHEMERIS FILE SET!");
}

TEST_F(CheckArgumetnsDeathTest, AbsentRequiredFilesEndTheProgram) {
  const std::pair<const char*, const char*> files[] = {
      {"-eg", "GPS NAVIGATION FILE CAN NOT BE OPENED!"},
      {"-er", "GLONAS NAVIGATION FILE CAN NOT BE OPENED!"},
      {"-es", "GPS PRECISE EPHEMERIS FILE CAN NOT BE OPENED!"},
      {"-el", "GLONASS PRECISE EPHEMERIS FILE CAN NOT BE OPENED!"},
      {"-cb1", "DCB FILE - P1P2 CAN NOT BE OPENED!"},
      {"-cb2", "DCB FILE - P1C1 CAN NOT BE OPENED!"},
      {"-cb3", "DCB FILE - P2C2 CAN NOT BE OPENED!"},
      {"-gf", "GLONASS FREQUENCY CHANNEL FILE CAN NOT BE OPENED!"},
  };
  for (const auto& [option, text] : files) {
    SCOPED_TRACE(option);
    ExpectError({"-r" + file, "-eg" + file, option + absent}, text);
  }
}

TEST_F(CheckArgumetnsDeathTest, FirstErrorInTheOrderOfTheChecksEndsTheProgram) {
  // From the last check to the first: each new fault is found before those already there.
  const std::pair<const char*, const char*> files[] = {
      {"-gf", "GLONASS FREQUENCY CHANNEL FILE CAN NOT BE OPENED!"},
      {"-cb3", "DCB FILE - P2C2 CAN NOT BE OPENED!"},
      {"-cb2", "DCB FILE - P1C1 CAN NOT BE OPENED!"},
      {"-cb1", "DCB FILE - P1P2 CAN NOT BE OPENED!"},
      {"-el", "GLONASS PRECISE EPHEMERIS FILE CAN NOT BE OPENED!"},
      {"-es", "GPS PRECISE EPHEMERIS FILE CAN NOT BE OPENED!"},
      {"-er", "GLONAS NAVIGATION FILE CAN NOT BE OPENED!"},
      {"-eg", "GPS NAVIGATION FILE CAN NOT BE OPENED!"},
      {"-r", "RINEX \\(OBSERVATION\\) FILE CAN NOT BE OPENED!"},
  };
  Arguments arguments = {"-r" + file, "-eg" + file};
  for (const auto& [option, text] : files) {
    SCOPED_TRACE(option);
    arguments.push_back(option + absent);
    ExpectError(arguments, text);
  }
}

TEST_F(CheckArgumetnsDeathTest, WarningsBeforeAnErrorAreWritten) {
  EXPECT_ENDS(CheckInDeath({"-r" + file, "-eg" + file, "-es" + file, "-cf" + absent, "-ac" + absent,
                            "-gf" + absent}),
              "CLOCK CORRECTION FILE CAN NOT BE OPENED!(.|\n)*BOTH PRECISE(.|\n)*APRIORI "
              "COORDINATE FILE(.|\n)*Error -> GLONASS FREQUENCY CHANNEL FILE CAN NOT BE OPENED!");
}

} // namespace
