// Whole runs: what they estimate, print, write and leave behind.

#include "support/Near.h"
#include "support/Program.h"

#include <sstream>

namespace {

using RunTest = ProgramTest;

/// The first number behind \p label.
long double NumberBehind(const std::string& text, const std::string& label) {
  const std::size_t at = text.find(label);
  if (at == std::string::npos) return std::nanl("");
  long double value = std::nanl("");
  std::istringstream(text.substr(at + label.size())) >> value;
  return value;
}

/// The columns of the first line of a GNUPlot file that is no comment, signs of deviations left
/// out.
std::vector<long double> FirstRow(const std::string& file) {
  std::istringstream lines(file);
  std::string line;
  while (std::getline(lines, line) && line.front() == '#') {
  }
  for (std::size_t at = 0; (at = line.find("+-", at)) != std::string::npos;)
    line.replace(at, 2, "  ");
  std::istringstream columns(line);
  std::vector<long double> values;
  for (long double value = 0; columns >> value;) values.push_back(value);
  return values;
}

void ExpectSilentSuccess(const Outcome& o) {
  EXPECT_EQ(o.status, 0) << o;
  EXPECT_EQ(o.err, "");
}

// ---- Estimates
// -----------------------------------------------------------------------------------

// The inputs are rounded to a millimetre; a satellite moves 0.2 m during the error of a light time.
TEST_F(RunTest, PreciseOrbitsGiveTheTruthBack) {
  const Outcome o = Zenta(Precise({"-xREC,ION", "-ii00:10:00", "-lCODE", "-gpiion"}));
  ExpectSilentSuccess(o);
  EXPECT_TRUE(Near(NumberBehind(o.out, "P1-C1 DCB: "), inputs.receiverP1C1, 1e-3L)) << o;
  EXPECT_TRUE(Near(NumberBehind(o.out, "P2-C1 DCB: "), inputs.receiverP2C1, 2e-3L)) << o;
  const std::vector<long double> row = FirstRow(File("ion"));
  ASSERT_EQ(row.size(), 6U);
  EXPECT_EQ(row[0], 55844);
  EXPECT_EQ(row[1], 3600);
  EXPECT_TRUE(Near(row[2], inputs.delay, 2e-3L));
  EXPECT_TRUE(Near(row[4], inputs.rate, 5e-3L));
}

TEST_F(RunTest, BroadcastOrbitsGiveTheTruthBackLessTheGroupDelay) {
  // A group delay T of -5 ns adds -c T = 1.49896 m to C1 and g times as much to P2.
  const Outcome o = Zenta(Broadcast({"-xREC,ION", "-ii00:10:00", "-lCODE", "-gpiion"}));
  ExpectSilentSuccess(o);
  const long double shift = 299792458.0L * 5e-9L;
  const long double g = 5929.0L / 3600.0L;
  EXPECT_TRUE(Near(NumberBehind(o.out, "P1-C1 DCB: "), inputs.receiverP1C1 - shift, 1e-3L)) << o;
  EXPECT_TRUE(
      Near(NumberBehind(o.out, "P2-C1 DCB: "), inputs.receiverP2C1 + (g - 1) * shift, 5e-3L))
      << o;
  EXPECT_TRUE(Near(FirstRow(File("ion")).at(2), inputs.delay, 5e-3L));
}

TEST_F(RunTest, BiasFilesShiftTheReceiverBiases) {
  // P1-P2 biases of 1 ns: C1 gets k2 c 1e-9 = 0.46340 m, P2 k1 c 1e-9 = 0.76319 m.
  const Outcome o = Zenta(Precise({"-xREC", "-lCODE", "-elsp3", "-cb1p1p2"}));
  ASSERT_EQ(o.status, 0) << o;
  const Outcome without = Zenta(Precise({"-xREC", "-lCODE"}));
  EXPECT_TRUE(Near(NumberBehind(o.out, "P1-C1 DCB: ") - NumberBehind(without.out, "P1-C1 DCB: "),
                   -0.46340L, 2e-4L));
  EXPECT_TRUE(Near(NumberBehind(o.out, "P2-C1 DCB: ") - NumberBehind(without.out, "P2-C1 DCB: "),
                   0.29979L, 2e-4L));
}

TEST_F(RunTest, EpochWiseDelaysFollowTheLinearOnes) {
  const Outcome o = Zenta(Precise(Delays({"-xIONEPH", "-gpeepochs"})));
  ExpectSilentSuccess(o);
  std::istringstream lines(File("epochs"));
  std::string line;
  int rows = 0;
  while (std::getline(lines, line)) {
    if (line.front() == '#') continue;
    std::istringstream columns(line);
    long double day = 0;
    long double second = 0;
    long double delay = 0;
    columns >> day >> second >> delay;
    EXPECT_TRUE(Near(delay, inputs.delay + inputs.rate * (second - 3600) / 3600, 0.02L)) << line;
    ++rows;
  }
  EXPECT_EQ(rows, TinyInputs::kEpochs);
}

TEST_F(RunTest, MultipathIsTakenOutOfTheCodes) {
  // The same metre off C1, P1 and P2 changes no difference; off P2 alone it changes P2-C1.
  folder.Write("mp1", inputs.Multipath(1));
  folder.Write("mp2", inputs.Multipath(1));
  const Arguments arguments = Precise({"-xREC", "-lCODE"});
  const long double none = NumberBehind(Zenta(arguments).out, "P2-C1 DCB: ");
  const Outcome both = Zenta(With(arguments, {"-mp1mp1", "-mp2mp2"}));
  EXPECT_TRUE(Near(NumberBehind(both.out, "P2-C1 DCB: "), none, 2e-4L)) << both;
  const Outcome second = Zenta(With(arguments, {"-mp2mp2"}));
  EXPECT_TRUE(Near(NumberBehind(second.out, "P2-C1 DCB: "), none - 1, 2e-4L)) << second;
}

// ---- Reports
// -------------------------------------------------------------------------------------

TEST_F(RunTest, ReportsComeInOrderAndNothingElse) {
  const Outcome o = Zenta(Precise(Delays({"-xIONEPH", "-fpres"})));
  ExpectSilentSuccess(o);
  std::size_t at = 0;
  for (const char* title :
       {"          PROGRAM: ", "INPUT DATA (FILE NAMES):", "PROCESSING SETTINGS USED:",
        "ECLIPSING EPOCHS FOR SATELLITES:", "ESTIMATION OF IONOSPHERIC DELAY:", "PROCESSING DATA:",
        "RECEIVER/SATELLITE DCB VALUES AND IONOSPHERE DELAY - RESULTS:",
        " RECEIVER GPS DCB VALUES:", "  PHASE L4 AMBIGUITIES (REAL VALUES):", " IONOSPHERE DELAYS:",
        "PRINTING OF RESIDUALS:", "ESTIMATION OF EPOCH TO EPOCH IONOSPHERIC DELAY:"}) {
    const std::size_t next = o.out.find("\n" + std::string(title), at);
    EXPECT_NE(next, std::string::npos) << title;
    at = next;
  }
  EXPECT_EQ(o.out.substr(0, 121), std::string(120, '_') + "\n");
  const std::string end = "  #of estimated Iono delays: 60\n\n";
  EXPECT_EQ(o.out.substr(o.out.size() - end.size()), end);
}

TEST_F(RunTest, NotationAndDecimalsStayFromReportToReport) {
  // One decimal from the settings report on: the iterations set their own, and so do the results.
  const Outcome o = Zenta(Precise(Delays({"-ft50"})));
  EXPECT_NE(o.out.find("      Misclosure vector f [threshold] : YES [50.000 m]\n"),
            std::string::npos);
  EXPECT_NE(o.out.find("      Ionospheric time interval       : 600.000 s\n"), std::string::npos);
  EXPECT_EQ(o.out.find("e-0"), std::string::npos) << "scientific notation";
  EXPECT_EQ(o.out.find("e+0"), std::string::npos) << "scientific notation";
}

TEST_F(RunTest, CodeAloneSkipsThePhaseStages) {
  const Outcome o = Zenta(Precise({"-xREC,ION", "-ii00:10:00", "-lCODE", "-v"}));
  EXPECT_EQ(o.status, 0) << o;
  for (const char* text : {"GetEclipsing", "SetAmbiguities", "PhaseWindUp"})
    EXPECT_EQ(o.err.find(text), std::string::npos) << text;
  for (const char* text : {"ECLIPSING", "AMBIGUITIES"})
    EXPECT_EQ(o.out.find(text), std::string::npos) << text;
  EXPECT_FALSE(Exists("Ambiq.b"));
}

TEST_F(RunTest, PhaseAloneHasNoCode) {
  const Outcome o = Zenta(Precise({"-xION", "-ii00:10:00", "-lPHASE"}));
  ExpectSilentSuccess(o);
  EXPECT_NE(o.out.find("                Code observations     :  ---\n"
                       "               Phase observations     : L4->[L1-L2]\n"),
            std::string::npos);
  EXPECT_EQ(o.out.find("DCB VALUES:"), std::string::npos);
  EXPECT_TRUE(Exists("Ambiq.b"));
}

TEST_F(RunTest, WithoutResidualFileAndKeywordTheirStagesAreSilent) {
  const Outcome o = Zenta(Precise(Delays({"-v"})));
  EXPECT_EQ(o.status, 0);
  for (const char* text : {"PRINTING OF RESIDUALS", "EPOCH TO EPOCH"})
    EXPECT_EQ(o.out.find(text), std::string::npos) << text;
  for (const char* text : {"PrintRes()", "ProcIonoEph", "ApplyMultipath"})
    EXPECT_EQ(o.err.find(text), std::string::npos) << text;
}

TEST_F(RunTest, CountLinesOfSatelliteBiasesAreWrittenWithoutVerbose) {
  // No GLONASS satellite has a P1-C1 other than 0, which is a missing value.
  const Outcome o = Zenta(Precise({"-xGPS,GLN,ION", "-ii00:10:00", "-lCODE"}));
  EXPECT_EQ(o.status, 0) << o;
  EXPECT_EQ(o.err, "  #P1C1    5    #P2C1    5\n  #P1C1    0    #P2C1    2\n");
}

// ---- Files
// ---------------------------------------------------------------------------------------

/// Residual records of a residual file, counted by walking over its blocks.
long CountResiduals(const std::string& bytes) {
  const auto integer = [&](std::size_t at, int n) {
    long value = 0;
    for (int k = n; k-- > 0;)
      value = value * 256 + static_cast<unsigned char>(bytes.at(at + static_cast<std::size_t>(k)));
    return value;
  };
  long records = 0;
  std::size_t at = 2 + 2 * static_cast<std::size_t>(integer(0, 2));
  while (at < bytes.size()) {
    const long count = integer(at + 16, 4);
    records += count;
    at += 20 + 16 * static_cast<std::size_t>(count);
  }
  EXPECT_EQ(at, bytes.size());
  return records;
}

TEST_F(RunTest, EveryOutputAtOnce) {
  inputs.noise = 0.5;
  folder.Write("obs", inputs.Observations());
  const Outcome o = Zenta(Precise(Delays({"-xIONEPH", "-fpres", "-gpiion", "-gpeepochs", "-gpddcb",
                                          "-bt0.4", "-bl0.5", "-ft50", "-v"})));
  EXPECT_EQ(o.status, 0) << o;
  EXPECT_EQ(static_cast<long double>(CountResiduals(File("res"))),
            NumberBehind(o.out, "  #of printed residuals: "));
  EXPECT_GT(NumberBehind(o.out, "  #OUTLIERS  : "), 0);
  EXPECT_EQ(File("ion").substr(0, 18), "#ION_TYPE: LINEAR\n");
  EXPECT_EQ(File("epochs").substr(0, 26), "#ION_TYPE: EPOCH BY EPOCH\n");
  // First epoch 3600 s, last 5370 s.
  EXPECT_EQ(File("dcb").substr(0, 33), "#REFERECNE EPOCH:  55844  4485.0\n");
  // Arcs of 18 bytes, one per ambiguity.
  EXPECT_EQ(static_cast<long double>(File("Ambiq.b").size()),
            18 * NumberBehind(o.out, "    Number of all ambiguities: "));
  EXPECT_FALSE(Exists("Iono.int"));
}

TEST_F(RunTest, LinesOfTheDelayFileAreThoseOfTheReport) {
  const Outcome o = Zenta(Precise(Delays({"-gpiion"})));
  std::istringstream lines(File("ion"));
  std::string line;
  while (std::getline(lines, line)) {
    if (line.front() == '#') continue;
    EXPECT_NE(o.out.find("\n" + line + "         ["), std::string::npos) << line;
  }
}

/// Names in \p folder but for those in \p known.
std::vector<std::string> Others(const ScratchFolder& folder,
                                const std::vector<std::string>& known) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
    const std::string name = entry.path().filename().string();
    if (std::find(known.begin(), known.end(), name) == known.end()) names.push_back(name);
  }
  return names;
}

TEST_F(RunTest, TwoRunsInOneDirectoryAreEqual) {
  const Arguments arguments = Precise(Delays({"-fpres", "-gpiion"}));
  const Outcome first = Zenta(arguments);
  const std::string residuals = File("res");
  const std::string arcs = File("Ambiq.b");
  const Outcome second = Zenta(arguments);
  EXPECT_EQ(WithoutDate(second.out), WithoutDate(first.out));
  EXPECT_EQ(File("res"), residuals);
  EXPECT_EQ(File("Ambiq.b"), arcs);
  EXPECT_FALSE(arcs.empty());
}

TEST_F(RunTest, ArcsOfALaterRunReplaceThoseOfAnEarlierOne) {
  Zenta(Precise(Delays()));
  const std::size_t all = File("Ambiq.b").size();
  Zenta(Precise(Delays({"-me60"})));
  EXPECT_LT(File("Ambiq.b").size(), all);
  EXPECT_EQ(File("Ambiq.b").size() % 18, 0U);
}

TEST_F(RunTest, TwoRunsAtOnceInOneDirectoryDoNotDisturbEachOther) {
  const Arguments one = Precise(Delays());
  const Arguments other = Precise(Delays({"-me40"}));
  const std::string alone = WithoutDate(Zenta(one).out);
  const std::string otherAlone = WithoutDate(Zenta(other).out);
  EXPECT_NE(alone, otherAlone);
  for (int k = 0; k < 5; ++k) {
    Outcome beside;
    std::thread second([&] { beside = Zenta(other); });
    const Outcome o = Zenta(one);
    second.join();
    EXPECT_EQ(WithoutDate(o.out), alone);
    EXPECT_EQ(WithoutDate(beside.out), otherAlone);
  }
}

TEST_F(RunTest, OnlyTheNamedFilesAreLeftBehind) {
  const std::vector<std::string> before = Others(folder, {});
  Zenta(Precise(Delays({"-fpres", "-gpiion"})));
  std::vector<std::string> after = Others(folder, before);
  std::sort(after.begin(), after.end());
  EXPECT_EQ(after, (std::vector<std::string>{"Ambiq.b", "ion", "res"}));
}

// ---- Directories that can't be written
// ------------------------------------------------------------

TEST_F(RunTest, WorkingDirectoryThatCantBeWrittenChangesNoEstimate) {
  // Nobody creates files in /proc, the superuser neither.
  if (!std::filesystem::is_directory("/proc")) GTEST_SKIP() << "no /proc";
  const Outcome writable = Zenta(Precise(Delays()));
  Start start;
  start.folder = "/proc";
  Arguments arguments = Delays({"-me10"});
  for (const char* option : {"-r", "-es", "-el", "-gf"}) {
    const std::string file = option == std::string("-r")    ? "obs"
                             : option == std::string("-gf") ? "channels"
                                                            : "sp3";
    arguments.push_back(option + folder.Name(file));
  }
  const Outcome o = RunCommand(start, arguments);
  EXPECT_EQ(o.status, 0) << o;
  const std::string title = "ESTIMATION OF IONOSPHERIC DELAY:";
  EXPECT_EQ(From(o.out, title), From(writable.out, title));
  EXPECT_NE(From(o.out, title), "");
}

TEST_F(RunTest, ArcFileThatCantBeWrittenChangesNoEstimate) {
  const Outcome writable = Zenta(Precise(Delays()));
  std::filesystem::remove(folder.Name("Ambiq.b"));
  std::filesystem::create_directory(folder.Name("Ambiq.b"));
  const Outcome o = Zenta(Precise(Delays()));
  EXPECT_EQ(o.status, 0) << o;
  EXPECT_EQ(WithoutDate(o.out), WithoutDate(writable.out));
}

TEST_F(RunTest, OutputsThatCantBeWrittenLeaveTheReport) {
  const Arguments outputs = {"-xIONEPH", "-fpobs/res", "-gpiobs/ion", "-gpeobs/epochs",
                             "-gpdobs/dcb"};
  const Outcome o = Zenta(Precise(Delays(outputs))); // "obs" is a file
  EXPECT_EQ(o.status, 0) << o;
  const Outcome sound =
      Zenta(Precise(Delays({"-xIONEPH", "-fpres", "-gpiion", "-gpeepochs", "-gpddcb"})));
  const std::string title = "RECEIVER/SATELLITE DCB VALUES";
  const std::string end = "PRINTING OF RESIDUALS";
  const auto results = [&](const Outcome& run) {
    const std::string text = From(run.out, title);
    return text.substr(0, text.find(end));
  };
  EXPECT_EQ(results(o), results(sound));
  for (const char* name : {"obs/res", "obs/ion", "obs/epochs", "obs/dcb"})
    EXPECT_NE(o.err.find(std::string("Warning -> OUTPUT FILE CAN NOT BE WRITTEN: ") + name + "!"),
              std::string::npos)
        << name;
}

TEST_F(RunTest, ScratchNameOfTheIntervalsIsNotTouched) {
  folder.Write("Iono.int", "mine");
  EXPECT_EQ(Zenta(Precise(Delays())).status, 0);
  EXPECT_EQ(File("Iono.int"), "mine");
}

// ---- Regression net
// --------------------------------------------------------------------------------

/// What the program printed once, to see any change of it: no proof that it is right.
void ExpectAsKept(const std::string& name, const std::string& text) {
  const std::string kept = std::string(ZENTA_GOLDEN) + "/" + name;
  if (std::getenv("ZENTA_KEEP_GOLDEN")) std::ofstream(kept) << text;
  EXPECT_EQ(text, ReadWhole(kept)) << "ZENTA_KEEP_GOLDEN=1 keeps the new text";
}

TEST_F(RunTest, ReportIsAsKept) {
  inputs.noise = 0.5;
  inputs.epochs = 25;
  folder.Write("obs", inputs.Observations());
  const Outcome o = Zenta(Precise(
      {"-xREC,IONEPH", "-ii00:15:00", "-lCODE,PHASE", "-fpres", "-pCOSZ", "-bt0.503", "-bl0.5"}));
  ASSERT_EQ(o.status, 0) << o;
  ExpectAsKept("precise.txt", WithoutDate(o.out));
}

TEST_F(RunTest, ReportOfSatelliteBiasesIsAsKept) {
  inputs.noise = 0.5;
  folder.Write("obs", inputs.Observations());
  const Outcome o = Zenta(Broadcast({"-xGPS,GLN,ION", "-ii00:15:00", "-lCODE,PHASE", "-ft50",
                                     "-cb1p1p2", "-cb2p1c1", "-ctreceivers", "-gpddcb"}));
  ASSERT_EQ(o.status, 0) << o;
  ExpectAsKept("broadcast.txt", WithoutDate(o.out) + "---- dcb\n" + File("dcb"));
}

} // namespace
