// What a run says of input files that are empty, of another kind, cut off or full of noise.
// tests/faults has every kind of fault.

#include "support/InputKinds.h"

#include <random>

namespace {

std::string Error(const std::string& text) {
  return "\n**** Zenta: Error -> " + text + " ****\n     Exiting Zenta ... \n\n";
}

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size())
    text.replace(at, what.size(), with);
  return text;
}

std::string Noise(std::size_t n) {
  std::mt19937 random(20111010);
  std::string text;
  for (std::size_t k = 0; k < n; ++k) text += static_cast<char>(random() & 0xFF);
  return text;
}

class BadInputTest : public ProgramTest {
protected:
  /// A run with every kind of input, "bad" in place of the one of \p input.
  Outcome RunWith(const InputKind& input) const {
    return Zenta(With(Delays({"-me10"}), WithInput(input, "bad")));
  }
  Outcome RunWith(const InputKind& input, const std::string& text) const {
    folder.Write("bad", text);
    return RunWith(input);
  }

  /// An empty file and a directory end the run with this text on standard error.
  void ExpectEmptyError(const InputKind& input, const std::string& text) {
    EXPECT_EQ(RunWith(input, "").err, Error(text));
    const Outcome directory = RunWithDirectory(input);
    EXPECT_EQ(directory.err, Error(text));
    EXPECT_EQ(directory.status, 1);
  }
  Outcome RunWithDirectory(const InputKind& input) const {
    std::filesystem::remove(folder.Name("bad"));
    std::filesystem::create_directory(folder.Name("bad"));
    const Outcome o = RunWith(input);
    std::filesystem::remove(folder.Name("bad"));
    return o;
  }
};

TEST_F(BadInputTest, SoundFilesPass) {
  for (const bool precise : {true, false}) {
    const Outcome o = Zenta(With(Delays({"-me10"}), WithInput({"", "-none", "", precise}, "")));
    EXPECT_EQ(o.status, 0) << o;
    EXPECT_EQ(o.err, "");
  }
}

TEST_F(BadInputTest, CarriageReturnsChangeNothing) {
  for (const InputKind& input : kInputKinds) {
    const std::string title = "PROCESSING SETTINGS USED:";
    const Outcome unix = RunWith(input, File(input.file));
    const Outcome dos = RunWith(input, Replaced(File(input.file), "\n", "\r\n"));
    EXPECT_EQ(dos.status, 0) << input.option << dos;
    EXPECT_EQ(dos.err, "") << input.option;
    EXPECT_EQ(From(dos.out, title), From(unix.out, title)) << input.option;
  }
}

// ---- Observations
// --------------------------------------------------------------------------------

TEST_F(BadInputTest, ObservationsWithoutEpochsAreTold) {
  const std::string text = "\n#### RINEXData: Error -> NUMBER OF EPOCH IN RINEX FILE NOT "
                           "DETERMINED! ####\n     Exiting RINEXData ... \n";
  for (const std::string& content : {std::string(), std::string("\n"), Noise(3000), File("sp3"),
                                     File("obs").substr(0, File("obs").find("END OF HEADER"))}) {
    const Outcome o = RunWith(kObservations, content);
    EXPECT_EQ(o.status, 1);
    EXPECT_EQ(o.out, text);
  }
  EXPECT_EQ(RunWithDirectory(kObservations).out, text);
}

TEST_F(BadInputTest, ObservationsCutInsideAnEpochEndWithoutAMessage) {
  const std::string sound = File("obs");
  const std::size_t lastEpoch = sound.rfind("\n 11 10 10");
  const std::size_t secondSatellite = sound.find('\n', sound.find('\n', lastEpoch + 1) + 1) + 1;
  const Outcome o = RunWith(kObservations, sound.substr(0, secondSatellite));
  EXPECT_EQ(o.status, 1);
  EXPECT_EQ(o.out, "");
  EXPECT_EQ(o.err, "");
}

TEST_F(BadInputTest, ObservationsCutBehindAnEpochAreAShorterFile) {
  const std::string sound = File("obs");
  folder.Write("bad", sound.substr(0, sound.rfind("\n 11 10 10") + 1));
  const Outcome o = Zenta(With({"-rbad", "-essp3", "-elsp3", "-gfchannels", "-me10"}, Delays()));
  EXPECT_EQ(o.status, 0) << o;
  EXPECT_NE(o.out.find("  #EPOCHS    :         59\n"), std::string::npos);
}

TEST_F(BadInputTest, HeaderWithoutPositionIsNoPosition) {
  const std::string sound = File("obs");
  const std::size_t label = sound.find("APPROX POSITION XYZ");
  const std::size_t start = sound.rfind('\n', label) + 1;
  std::string text = sound;
  text.erase(start, text.find('\n', label) + 1 - start);
  folder.Write("bad", text);
  const Outcome o = Zenta({"-rbad", "-essp3", "-xREC", "-lCODE"});
  EXPECT_EQ(o.status, 1);
  EXPECT_NE(o.out.find("LATITUDE not valid"), std::string::npos) << o;
}

// ---- Orbits ------------------------------------------------------------------------------------

TEST_F(BadInputTest, NavigationWithoutRecordsIsTold) {
  for (const auto& [input, name] : {std::pair(kGpsNavigation, std::string("GPSbEphData")),
                                    std::pair(kGlonassNavigation, std::string("GLNbEphData"))}) {
    const std::string text = "#### " + name + ": Error -> NUMBER OF RECORDS not set! ####\n";
    const Outcome empty = RunWith(input, "");
    EXPECT_EQ(empty.status, 1);
    EXPECT_NE(empty.out.find(text), std::string::npos) << empty;
    EXPECT_NE(RunWithDirectory(input).out.find(text), std::string::npos);
    EXPECT_NE(RunWith(input, Noise(3000)).out.find(text), std::string::npos);
  }
}

TEST_F(BadInputTest, SatelliteWithoutNavigationRecordIsTold) {
  const std::string gps = File("gnav");
  const Outcome g = RunWith(kGpsNavigation, gps.substr(0, gps.find("\n21 ") + 1));
  EXPECT_EQ(g.status, 1);
  EXPECT_NE(g.out.find("SAT: G21 IS NOT LISTED IN GPS NAVIGATION FILE!!!"), std::string::npos) << g;
  const std::string gln = File("rnav");
  const Outcome r = RunWith(kGlonassNavigation, gln.substr(0, gln.find("\n14 ") + 1));
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.out.find("SAT: R14 IS NOT LISTED IN GLONASS NAVIGATION FILE!!!"), std::string::npos)
      << r;
}

TEST_F(BadInputTest, PreciseOrbitsWithoutEpochsAreNamedAndEndTheRun) {
  for (const auto& [input, system] : {std::pair(kGpsPrecise, std::string("GPS")),
                                      std::pair(kGlonassPrecise, std::string("GLONASS"))}) {
    const std::string warning =
        "Warning -> " + system + " PRECISE EPHEMERIS FILE HOLDS NO ORBITS: bad! ####\n";
    for (const std::string& content : {std::string(), std::string("\n"), File("obs")}) {
      const Outcome o = RunWith(input, content);
      EXPECT_EQ(o.status, 1);
      EXPECT_NE(o.err.find(warning), std::string::npos) << o;
      EXPECT_NE(o.out.find("MATRIX::ERROR:"), std::string::npos) << o;
    }
    EXPECT_NE(RunWithDirectory(input).err.find(warning), std::string::npos);
  }
}

TEST_F(BadInputTest, PreciseOrbitsCutOffGiveWhatTheyHold) {
  // Six of twenty-five epochs are missing: the interpolation over 14 does not touch them.
  const std::string sound = File("sp3");
  const std::string title = "ESTIMATION OF IONOSPHERIC DELAY:";
  const Outcome cut = RunWith(kGpsPrecise, sound.substr(0, sound.find("*  2011 10 10  4 45")));
  EXPECT_EQ(cut.status, 0) << cut;
  EXPECT_EQ(From(cut.out, title), From(RunWith(kGpsPrecise, sound).out, title));
  // Behind a cut in the first hour no satellite has a position, and no record is used.
  const Outcome none = RunWith(kGpsPrecise, sound.substr(0, sound.find("*  2011 10 10  1  0")));
  EXPECT_EQ(none.status, 0) << none;
  EXPECT_NE(none.out.find("[0 OBS / P1-C1 DCB]"), std::string::npos) << none;
}

// ---- Lists -------------------------------------------------------------------------------------

TEST_F(BadInputTest, ListsWithoutEntriesAreWarnedAbout) {
  const struct {
    InputKind input;
    std::string warning;
  } cases[] = {
      {kChannels,
       "GLONASS SATELLITE 103 NOT LISTED IN GLONASS FREQUENCY CHANNEL FILE - USING FREQ. "
       "CHANNEL k = 0!"},
      {kP1P2, "SATELLITE: 05 NOT LISTED IN DCB VALUES - SETTING 0.0s VALUES FOR VAL!"},
      {kReceivers, "RECEIVER: TINY RECEIVER NOT LISTED IN RECEIVER TYPES LIST - SETTING CODE "
                   "TRACKING TO P1P2 VALUE!"},
      {kCoordinates, "SITE NAME NOT LISTED IN APRIORI COORDINATE FILE - USING RINEX VALUES!"},
  };
  for (const auto& c : cases) {
    for (const Outcome& o : {RunWith(c.input, ""), RunWithDirectory(c.input)}) {
      EXPECT_EQ(o.status, 0) << o;
      EXPECT_NE(o.err.find("\n#### Zenta: Warning -> " + c.warning + " ####\n"), std::string::npos)
          << o;
    }
  }
}

TEST_F(BadInputTest, BiasesThatNobodyReadsAreNotWarnedAbout) {
  // P2-C2 is not applied, and a P1P2 receiver needs no P1-C1.
  for (const InputKind& input : {kP1C1, kP2C2}) {
    const Outcome o = RunWith(input, "");
    EXPECT_EQ(o.status, 0);
    EXPECT_EQ(o.err, "");
  }
}

TEST_F(BadInputTest, ClockOfOtherEpochsIsTold) {
  const std::string text =
      "NUMBER OF RINEX EPOCH DIFFERENT THAN NUMBER OF CLOCK CORRECTIONS EPOCHS!";
  ExpectEmptyError(kClock, text);
  const std::string sound = File("clock");
  EXPECT_EQ(RunWith(kClock, sound + "\n").err, Error(text));
  EXPECT_EQ(RunWith(kClock, Replaced(sound, "END OF HEADER", "")).err, Error(text));
}

TEST_F(BadInputTest, MultipathOfAnotherFormatIsTold) {
  for (const InputKind& input : {kMultipath1, kMultipath2}) {
    const std::string text = "TEQC COMPACT FILE IS NOT WRITTEN IN VERSION COMPACT2!";
    ExpectEmptyError(input, text);
    EXPECT_EQ(RunWith(input, Replaced(File("mp1"), "COMPACT2", "COMPACT3")).err, Error(text));
  }
}

TEST_F(BadInputTest, MultipathSatelliteListCutShortNamesTheFile) {
  const std::string sound = File("mp1");
  const Outcome o = RunWith(kMultipath1, sound.substr(0, sound.find(" 7 G") + 6));
  EXPECT_EQ(o.status, 1);
  EXPECT_EQ(o.err, Error("SATELLITE LIST NOT VALID IN TEQC COMPACT FILE bad!"));
}

} // namespace
