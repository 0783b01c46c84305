// Runs on input files that are empty, of another kind, cut off or full of noise.
//
// Whatever the file, the run ends by itself: with status 1 and a message, or with status 0 and a
// report without a value that is not a number.

#include "support/Program.h"

#include <map>
#include <random>

namespace {

/// An input of the run: its option, its sound file, and the orbits beside it.
struct Input {
  const char* option;
  const char* file;
  bool precise; ///< run on precise orbits, else on broadcast ones
};

constexpr Input kObservations = {"-r", "obs", true};
constexpr Input kGpsNavigation = {"-eg", "gnav", false};
constexpr Input kGlonassNavigation = {"-er", "rnav", false};
constexpr Input kGpsPrecise = {"-es", "sp3", true};
constexpr Input kGlonassPrecise = {"-el", "sp3", true};
constexpr Input kChannels = {"-gf", "channels", true};
constexpr Input kP1P2 = {"-cb1", "p1p2", true};
constexpr Input kP1C1 = {"-cb2", "p1c1", true};
constexpr Input kP2C2 = {"-cb3", "p2c2", true};
constexpr Input kClock = {"-cf", "clock", true};
constexpr Input kMultipath1 = {"-mp1", "mp1", true};
constexpr Input kMultipath2 = {"-mp2", "mp2", true};
constexpr Input kReceivers = {"-ct", "receivers", true};
constexpr Input kCoordinates = {"-ac", "coordinates", true};

std::string Error(const std::string& text) {
  return "\n**** Zenta: Error -> " + text + " ****\n     Exiting Zenta ... \n\n";
}

/// What a faulty file holds instead of the sound \p text.
using Faults = std::map<std::string, std::string>;

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

Faults FaultsOf(const std::string& text) {
  Faults faults = {
      {"one line end", "\n"},
      {"binary", Noise(5000)},
      {"zero bytes", std::string(5000, '\0')},
      {"letters", std::string(5000, 'x')},
      {"endless numbers", Replaced(std::string(500, '9'), "9", "99999999 -1 ")},
      {"header without its end", Replaced(text, "END OF HEADER", "END OF         ")},
      {"long lines", Replaced(text, "\n", std::string(600, ' ') + "\n")},
      {"one long line", Replaced(text, "\n", " ")},
      {"every line twice", ""},
      {"words for numbers", Replaced(Replaced(text, "0.", "nan"), "1.", "inf")},
      {"huge numbers", Replaced(text, "0.", "9999999999.")},
      {"nines", Replaced(Replaced(Replaced(text, "0", "9"), "1", "9"), "2", "9")},
      {"minus signs", Replaced(text, " 1", "-1")},
  };
  std::string& twice = faults["every line twice"];
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    twice += text.substr(at, end - at) + text.substr(at, end - at);
    at = end;
  }
  constexpr std::size_t kCuts = 16;
  for (std::size_t k = 1; k < kCuts; ++k)
    faults["cut at " + std::to_string(k) + "/16"] = text.substr(0, text.size() * k / kCuts);
  for (std::size_t n : {1, 2, 79, 100})
    faults["cut by " + std::to_string(n)] = text.substr(0, text.size() - std::min(n, text.size()));
  return faults;
}

class BadInputTest : public ProgramTest {
protected:
  /// A run with every kind of input, "bad" in place of the one of \p input.
  Outcome RunWith(const Input& input) const {
    Arguments arguments = Delays({"-me10"});
    for (const Input& other : {kObservations, kGpsNavigation, kGlonassNavigation, kGpsPrecise,
                               kGlonassPrecise, kChannels, kP1P2, kP1C1, kP2C2, kClock, kMultipath1,
                               kMultipath2, kReceivers, kCoordinates}) {
      const bool broadcast =
          other.option == kGpsNavigation.option || other.option == kGlonassNavigation.option;
      const bool orbits =
          broadcast || other.option == kGpsPrecise.option || other.option == kGlonassPrecise.option;
      if (orbits && broadcast == input.precise) continue;
      const bool same = std::string(other.option) == input.option;
      arguments.push_back(std::string(other.option) + (same ? "bad" : other.file));
    }
    return Zenta(arguments);
  }
  Outcome RunWith(const Input& input, const std::string& text) const {
    folder.Write("bad", text);
    return RunWith(input);
  }

  /// Every fault ends the run in good order.
  /// \param mayBeSilent  a fault of which status 1 alone tells
  void ExpectGoodEnds(const Input& input, bool (*mayBeSilent)(const std::string& fault) = nullptr) {
    const std::string sound = File(input.file);
    ASSERT_FALSE(sound.empty());
    for (const auto& [fault, text] : FaultsOf(sound)) {
      const Outcome o = RunWith(input, text);
      ExpectGoodEnd(o, fault, mayBeSilent && mayBeSilent(fault));
    }
  }
  static void ExpectGoodEnd(const Outcome& o, const std::string& fault, bool maybeSilent = false) {
    SCOPED_TRACE(fault);
    EXPECT_FALSE(o.timedOut);
    EXPECT_EQ(o.signal, 0);
    ASSERT_TRUE(o.status == 0 || o.status == 1) << o;
    if (o.status == 1) {
      const std::string all = o.out + o.err;
      EXPECT_TRUE(maybeSilent || all.find("Error -> ") != std::string::npos ||
                  all.find("MATRIX::ERROR:") != std::string::npos)
          << o;
      EXPECT_EQ(all.find("SUCCESFULLY"), std::string::npos);
      return;
    }
    EXPECT_NE(o.out.find("DCB VALUES AND IONOSPHERE DELAY - RESULTS"), std::string::npos) << o;
    for (const char* word : {"nan", "inf"})
      EXPECT_EQ(From(o.out, "ESTIMATION OF").find(word), std::string::npos) << o;
  }

  /// An empty file and a directory end the run with this text on standard error.
  void ExpectEmptyError(const Input& input, const std::string& text) {
    EXPECT_EQ(RunWith(input, "").err, Error(text));
    const Outcome directory = RunWithDirectory(input);
    EXPECT_EQ(directory.err, Error(text));
    EXPECT_EQ(directory.status, 1);
  }
  Outcome RunWithDirectory(const Input& input) const {
    std::filesystem::remove(folder.Name("bad"));
    std::filesystem::create_directory(folder.Name("bad"));
    const Outcome o = RunWith(input);
    std::filesystem::remove(folder.Name("bad"));
    return o;
  }
};

TEST_F(BadInputTest, SoundFilesPass) {
  for (const bool precise : {true, false}) {
    const Outcome o = RunWith({"-none", "", precise});
    EXPECT_EQ(o.status, 0) << o;
    EXPECT_EQ(o.err, "");
  }
}

TEST_F(BadInputTest, CarriageReturnsChangeNothing) {
  for (const Input& input :
       {kObservations, kGpsNavigation, kGlonassNavigation, kGpsPrecise, kGlonassPrecise, kChannels,
        kP1P2, kP1C1, kP2C2, kClock, kMultipath1, kMultipath2, kReceivers, kCoordinates}) {
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

TEST_F(BadInputTest, ObservationsEndInGoodOrder) {
  // A file that ends among the observations of an epoch ends the run without a message.
  ExpectGoodEnds(kObservations, [](const std::string& fault) { return fault.starts_with("cut"); });
}

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

TEST_F(BadInputTest, GpsNavigationEndsInGoodOrder) { ExpectGoodEnds(kGpsNavigation); }
TEST_F(BadInputTest, GlonassNavigationEndsInGoodOrder) { ExpectGoodEnds(kGlonassNavigation); }
TEST_F(BadInputTest, GpsPreciseOrbitsEndInGoodOrder) { ExpectGoodEnds(kGpsPrecise); }
TEST_F(BadInputTest, GlonassPreciseOrbitsEndInGoodOrder) { ExpectGoodEnds(kGlonassPrecise); }

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

TEST_F(BadInputTest, ChannelsEndInGoodOrder) { ExpectGoodEnds(kChannels); }
TEST_F(BadInputTest, P1P2BiasesEndInGoodOrder) { ExpectGoodEnds(kP1P2); }
TEST_F(BadInputTest, P1C1BiasesEndInGoodOrder) { ExpectGoodEnds(kP1C1); }
TEST_F(BadInputTest, P2C2BiasesEndInGoodOrder) { ExpectGoodEnds(kP2C2); }
TEST_F(BadInputTest, ReceiverClockEndsInGoodOrder) { ExpectGoodEnds(kClock); }
TEST_F(BadInputTest, FirstMultipathEndsInGoodOrder) { ExpectGoodEnds(kMultipath1); }
TEST_F(BadInputTest, SecondMultipathEndsInGoodOrder) { ExpectGoodEnds(kMultipath2); }
TEST_F(BadInputTest, ReceiverListEndsInGoodOrder) { ExpectGoodEnds(kReceivers); }
TEST_F(BadInputTest, CoordinatesEndInGoodOrder) { ExpectGoodEnds(kCoordinates); }

TEST_F(BadInputTest, ListsWithoutEntriesAreWarnedAbout) {
  const struct {
    Input input;
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
  for (const Input& input : {kP1C1, kP2C2}) {
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
  for (const Input& input : {kMultipath1, kMultipath2}) {
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
