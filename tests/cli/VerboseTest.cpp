// Progress messages: every line of a verbose run, in order.

#include "support/Program.h"

namespace {

using VerboseTest = ProgramTest;

const std::string kErase(6, '\b');

/// The progress of one iteration over 60 epochs: every percent that is a multiple of 5.
std::string Iteration(int n) {
  std::string text = "Zenta::ProcIono():           " + std::to_string(n) + ":   Process:       ";
  for (int percent = 0; percent <= 100; percent += 5) {
    const std::string number = std::to_string(percent);
    text += kErase + std::string(4 - number.size(), ' ') + number + " %";
  }
  return text + "\n";
}

TEST_F(VerboseTest, EveryLineOfARunWithEveryFile) {
  const Outcome o = Zenta({"-v",           "-robs",          "-eggnav",     "-errnav",   "-cfclock",
                           "-mp1mp1",      "-mp2mp2",        "-cb1p1p2",    "-cb2p1c1",  "-cb3p2c2",
                           "-ctreceivers", "-accoordinates", "-gfchannels", "-xREC,ION", "-xIONEPH",
                           "-ii00:10:00",  "-lCODE,PHASE",   "-me10",       "-fpres",    "-bt10"});
  EXPECT_EQ(o.status, 0) << o;
  EXPECT_EQ(
      o.err,
      "\nZenta: ***** CODE/PHASE GNSS IONOSPHERE DELAY ESTIMATION *****\n"
      "Zenta::GetFiles(): PARSING INPUT PARAMETERS!\n"
      "Zenta::GetFiles():         RINEX file name: obs!\n"
      "Zenta::GetFiles():         GPS navigation file: gnav!\n"
      "Zenta::GetFiles():         GLONASS navigation file: rnav!\n"
      "Zenta::GetFiles():         Clock correction input file: clock!\n"
      "Zenta::GetFiles():         Multipath on P1 file: mp1!\n"
      "Zenta::GetFiles():         Multipath on P1 file: mp2!\n"
      "Zenta::GetFiles():         Differential Code Bias (DCB) file - P1P2: p1p2!\n"
      "Zenta::GetFiles():         Differential Code Bias (DCB) file - P1C1: p1c1!\n"
      "Zenta::GetFiles():         Differential Code Bias (DCB) file - P2C2: p2c2!\n"
      "Zenta::GetFiles():         Receiver Code Tracking type file name: receivers!\n"
      "Zenta::GetFiles():         Apriori coordinate file name: coordinates!\n"
      "Zenta::GetFiles():         GLONASS frequency channel file: channels!\n"
      "Zenta::GetFiles():         Unknowns set:  REC-DCB ION-Delay[Linear]\n"
      "Zenta::GetFiles():         Unknowns set:  REC-DCB ION-Delay[Linear] ION-Delay[Epoch]\n"
      "Zenta::GetFiles():         Ionospheric delay estimation time interval: 600 s!\n"
      "Zenta::GetFiles():         Type of observations used in processing:  CODE PHASE\n"
      "Zenta::GetFiles():         Minimum elevation angle: 10!\n"
      "Zenta::GetFiles():         Residual output file: res!\n"
      "Zenta::GetFiles():         Threshold for blunder detection (correction vector v): 10!\n"
      "Zenta::SetFiles(): CHECKING INPUT ARGUMETNS!\n"
      "Zenta::SetFiles():         RINEX file!\n"
      "Zenta::SetFiles():         Clock correction file!\n"
      "Zenta::SetFiles():         Ephemeris files!\n"
      "Zenta::SetFiles():         Differential Code Biases files!\n"
      "Zenta::SetFiles():         A-priori coordinate file!\n"
      "Zenta::SetFiles():         GLONASS frequency channel file!\n"
      "Zenta::SetFiles():         Type of unknowns in estimation!!\n"
      "Zenta::SetFiles(): SETTING INPUT FILE NAMES AND PROCESSING SETTINGS!\n"
      "Zenta::SetFiles():         setting RINEX file!\n"
      "Zenta::SetFiles():         RECEIVER CLOCK file!\n"
      "Zenta::SetFiles():         MULTIPATH ON C1/P1 file!\n"
      "Zenta::SetFiles():         MULTIPATH ON P2 file!\n"
      "Zenta::SetFiles():         setting GPS NAVIGATION file!\n"
      "Zenta::SetFiles():         setting GLONASS NAVIGATION file!\n"
      "Zenta::SetFiles():         setting GLONASS FREQUENCY CHANNEL file!\n"
      "Zenta::SetFiles():         setting P1P2 DCB file!\n"
      "Zenta::SetFiles():         setting P1C1 DCB file!\n"
      "Zenta::SetFiles():         setting P2C2 DCB file!\n"
      "Zenta::SetFiles():         setting RECEIVER CODE TRACKING file!\n"
      "Zenta::SetFiles():         setting APRIORI COORDINATE file!\n"
      "Zenta::ReadFiles(): READING INPUT DATA FILES!\n"
      "Zenta::ReadFiles():        reading RINEX file - 60 epochs, 420 C1 observations, 5 obs "
      "types\n"
      "Zenta::ReadFiles():        reading RECEIVER CLOCK file - 60 epochs!\n"
      "Zenta::SetFiles():         reading MULTIPATH ON C1/P1 file - 60 epochs 420 observations\n"
      "Zenta::SetFiles():         reading MULTIPATH ON P2 file - 60 epochs 420 observations\n"
      "Zenta::ReadFiles():        reading GPS NAVIGATION file - 5 records\n"
      "Zenta::ReadFiles():        reading GLONASS NAVIGATION file - 2 records\n"
      "Zenta::ReadFiles():        reading GLONASS FREQUENCY CHANNEL file\n"
      "Zenta::ReadFiles():        reading P1P2 DCB file!\n"
      "Zenta::ReadFiles():        reading P1C1 DCB file!\n"
      "Zenta::ReadFiles():        reading P2C2 DCB file!\n"
      "Zenta::GetReceiverProperties(): RECEIVER POSITION PARAMETERS!!\n"
      "Zenta::GetReceiverProperties():         Receiver code tracking type!\n"
      "Zenta::GetReceiverProperties():         Setting a-priori coordinates!\n"
      "Zenta::GetReceiverProperties():         RINEX eccentricity Delta H/E/N!\n"
      "Zenta::ApplyCorrections(): OBSERVATIONS AND COORDINATE CORRECTIONS!\n"
      "Zenta::ApplyCorrections():         Applying receiver clock corrections!\n"
      "Zenta::ApplyCorrections():         GLONASS frequency channel determination!\n"
      "Zenta::ApplyCorrections():         Applying DCB values!\n"
      "Zenta::ApplyCorrections():         Azimuths, Elevation angles, Weights!\n"
      "Zenta::ApplyMultipath(): REMOVING ESTIMATED MULTIPATH FROM TEQC!\n"
      "Zenta::ApplyMultipath():         Multipath on P1/C1 - 420 common satellites!\n"
      "Zenta::ApplyMultipath():         Multipath on P2 - 420 common satellites!\n"
      "Zenta::SetLinearCombinations(): SETTING LINEAR COMBINATIONS OF OBSERVATIONS!\n"
      "Zenta::SetLinearCombinations():         P1-C1 Linear combination!\n"
      "Zenta::SetLinearCombinations():         P4[C1,P2] Linear combination!\n"
      "Zenta::SetLinearCombinations():         L4[L1,L2] Linear combination!\n"
      "Zenta::GetEclipsing(): SETTING ECLIPSING SEASONS FOR SATELLITES!\n"
      "Zenta::GetEclipsing():         #Eclipsing Satellites: 1\n"
      "Zenta::SetAmbiguities(): SETTING AMBIGUITIES FOR PHASE OBSERVATIONS!\n"
      "Zenta::SetAmbiguities():         Screening L4 linear combination!\n"
      "Zenta::SetAmbiguities():         Storing ambiguities!\n"
      "Zenta::SetAmbiguities():         #of ambiguities: 6\n"
      "Zenta::PhaseWindUp(): APPLYING PHASE WIND-UP BIAS!\n"
      "Zenta::SetUnknowns(): SETTING UNKNOWNS IN ESTIMATION!\n"
      "Zenta::SetUnknowns():         Receiver GPS differential code biases: P1C1-DCB [0] P2C1-DCB "
      "[1]\n"
      "Zenta::SetUnknowns():         IONOSPHERE delay unknowns:  #intervals: 3  #unknowns: 6  "
      "#constraints: 2\n"
      "Zenta::SetUnknowns():         FINAL:    xR_P1C1[1]  xR_P2C1[1]  xG_P1C1[0]  xG_P2C1[0]  "
      "xR_P1C1[0]  xR_P2C1[0]  xAMB[6]  xION[6]\n"
      "Zenta::SetUnknowns():                   DCB[2]  AMB[6]  ION[6]  ->  #UNK: 14\n"
      "Zenta::PrintSet(): PRINTING PROCESSING SETTINGS!\n"
      "Zenta::ProcIono(): DETERMINING IONO DELAY AND DCB VALUES!\n" +
          Iteration(1) + Iteration(2) +
          "Zenta::ProcIono(): OUTLIER DETECTION AND ELIMINATION -> 0 OUTLIERS!\n"
          "Zenta::PrintResults():         Printing results to STDOUT!\n"
          "Zenta::PrintRes(): WRITING RESIDUALS IN BINARY PLOT FILE!\n"
          "Zenta::ProcIonoEph(): EPOCH TO EPOCH ESTIMATION OF IONOSPHERIC DELAY!\n"
          "Zenta: ***** SUCCESFULLY ENDING PROGRAM *****!\n\n\n");
}

TEST_F(VerboseTest, SatelliteBiasesHaveHeadingsBeforeTheirCounts) {
  const Outcome o = Zenta(Precise({"-v", "-xGPS,GLN,ION", "-ii00:10:00", "-lCODE"}));
  EXPECT_NE(o.err.find("Zenta::SetUnknowns():         GPS satellite differential code biases:  "
                       "#P1C1    5    #P2C1    5\n"
                       "Zenta::SetUnknowns():         GLONASS satellite differential code biases:  "
                       "#P1C1    0    #P2C1    2\n"),
            std::string::npos)
      << o;
}

TEST_F(VerboseTest, PreciseOrbitsHaveTheirLines) {
  const Outcome o = Zenta(Precise(Delays({"-v"})));
  EXPECT_NE(o.err.find("Zenta::SetFiles():         setting GPS PRECISE EPHEMERIS file!\n"
                       "Zenta::SetFiles():         setting GLONASS PRECISE EPHEMERIS file!\n"),
            std::string::npos);
  EXPECT_NE(o.err.find("reading GPS PRECISE EPHEMERIS file - 25 epochs 7 satellites\n"
                       "Zenta::ReadFiles():        reading GLONASS PRECISE EPHEMERIS file - 25 "
                       "epochs 7 satellites\n"),
            std::string::npos);
}

TEST_F(VerboseTest, ReportIsTheSameAsWithoutVerbose) {
  const Outcome quiet = Zenta(Precise(Delays()));
  const Outcome verbose = Zenta(Precise(Delays({"-V"})));
  EXPECT_EQ(quiet.err, "");
  EXPECT_EQ(WithoutDate(verbose.out), WithoutDate(quiet.out));
}

TEST_F(VerboseTest, FailedRunHasNoClosingLine) {
  const Outcome o = Zenta({"-v", "-robs"});
  EXPECT_EQ(o.status, 1);
  EXPECT_EQ(o.err.find("SUCCESFULLY"), std::string::npos);
  const std::string end = "     Exiting Zenta ... \n\n";
  EXPECT_EQ(o.err.substr(o.err.size() - end.size()), end);
}

} // namespace
