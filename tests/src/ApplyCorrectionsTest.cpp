#include "ApplyCorrections.h"

#include "GNSS/GNSSLinCombs.h"
#include "GNSS/TimeConverse.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Near.h"
#include "support/StandingOrbits.h"
#include "support/TinyRun.h"

#include <cmath>

namespace {

constexpr long double kC = 299792458.0L;
constexpr long double kCode = 2.0e7L;
constexpr long double kEquator = 6378137.0L; // [m] GRS80

/// Frequencies of GPS in units of 20.46 MHz: 77 and 60. Of GLONASS in units of the channel
/// spacing: 9 and 7.
constexpr long double kGps1 = 77.0L * 77 / (77.0L * 77 - 60.0L * 60);
constexpr long double kGps2 = 60.0L * 60 / (77.0L * 77 - 60.0L * 60);

mjd Second(long double s) {
  mjd t(55844, 0);
  t += s;
  return t;
}

TinyRecord Codes(short sat) {
  TinyRecord r;
  r.sat = sat;
  r.C1 = r.P1 = kCode;
  r.P2 = kCode + 5;
  return r;
}

/// One epoch with a record of each satellite, and files beside it.
struct Stage : TinyRun {
  Captured errors{std::cerr};
  ScratchFolder folder;

  explicit Stage(std::initializer_list<short> satellites = {7}) {
    std::vector<TinyRecord> records;
    for (const short sat : satellites) records.push_back(Codes(sat));
    Fill(*this, {{Second(0), records}});
    ctx.RecPosFC = xyz(kEquator, 0, 0);
  }
  bool Warned(const std::string& text) const {
    return errors.Text().find("#### Zenta: Warning -> " + text + " ####") != std::string::npos;
  }
};

// ---- Receiver clock
// ------------------------------------------------------------------------------

struct Clocked : Stage {
  explicit Clocked(int lines) {
    Fill(*this,
         {{Second(0), {Codes(7)}}, {Second(30), {Codes(7)}}, {Second(60), {Codes(7), Codes(8)}}});
    std::string text = "END OF HEADER\n";
    // microseconds; the times are not compared
    for (int i = 0; i < lines; ++i) text += "50000 0.0 " + std::to_string(250 * (i - 1)) + " 0\n";
    clock.SetFile(folder.Write("clock", text).c_str());
    clock.ReadFile();
    ctx.isClkFile = true;
  }
};

TEST(CorrectRecClock, EpochsMoveBackByTheCorrectionOfTheirLine) {
  Clocked run(3); // -250, 0, 250 us
  CorrectRecClock(run.ctx);
  EXPECT_TRUE(Near(run.data.epoch(0) - Second(0), 250e-6L, 1e-15L));
  EXPECT_TRUE(Near(run.data.epoch(1) - Second(30), 0, 1e-15L));
  EXPECT_TRUE(Near(run.data.epoch(2) - Second(60), -250e-6L, 1e-15L));
  EXPECT_EQ(run.data.C1(3).GetObs(), kCode);
}

TEST(CorrectRecClock, WithoutClockFileTheEpochsStay) {
  Clocked run(2);
  run.ctx.isClkFile = false;
  CorrectRecClock(run.ctx);
  EXPECT_EQ(run.data.epoch(0) - Second(0), 0);
}

TEST(CorrectRecClockDeathTest, AnotherNumberOfLinesEndsTheProgram) {
  for (const int lines : {2, 4})
    EXPECT_ENDS(
        {
          Clocked run(lines);
          std::cerr.rdbuf(std::cout.rdbuf());
          CorrectRecClock(run.ctx);
        },
        "Zenta: Error -> NUMBER OF RINEX EPOCH DIFFERENT THAN NUMBER OF CLOCK CORRECTIONS EPOCHS!");
}

// ---- GLONASS channels
// ----------------------------------------------------------------------------

/// Empties the frequency tables before and after.
struct Channels : Stage {
  using Stage::Stage;
  Channels() { Clear(); }
  ~Channels() { Clear(); }
  static void Clear() {
    GLONASSc::freq.Resize(GLONASSc::kSlots, 2, 0.0L);
    GLONASSc::lamb.Resize(GLONASSc::kSlots, 2, 0.0L);
    GLONASSc::lambWL.Resize(GLONASSc::kSlots, 1, 0.0L);
    GLONASSc::lambNL.Resize(GLONASSc::kSlots, 1, 0.0L);
    GLONASSc::alphaG.Resize(GLONASSc::kSlots, 2, 0.0L);
  }
  void List(const std::string& text) {
    glonassChannels.SetFile(folder.Write("channels", text).c_str());
    glonassChannels.ReadFile();
    ctx.isGLNfrch = true;
  }
  /// Broadcast records of slot 5, in this order, on the given channels.
  void Broadcast(std::initializer_list<int> channels) {
    GLNbEphData& records = glonassBroadcast.rdata;
    records.SetNRecords(static_cast<int>(channels.size()));
    long i = 0;
    for (const int k : channels) {
      records.sat(i) = 5;
      records.data(i++, 10) = k;
    }
    ctx.isGLNnav = true;
  }
  /// L1 of a slot, in channels from 1602 MHz; -2848 where the table is empty.
  static long double Channel(long slot) {
    return (GLONASSc::freq(slot - 1, 0) - 1602.0e6L) / 562500;
  }
};

const char* const kList = "R05       2011 01 01 00 00 00  2011 10 10 00 00 00 -2\n"
                          "R05       2011 10 10 00 00 01                       4\n"
                          "R06       2011 01 01 00 00 00                       6\n";

TEST(SetGlonassFrequency, ListAnswersForTheFirstEpoch) {
  Channels run({105, 106});
  run.List(kList);
  run.data.epoch.Resize(2, 1);
  run.data.epoch(0) = ymdhms2mjd(ymdhms(2011, 10, 10, 0, 0, 0)); // the last second of -2
  run.data.epoch(1) = ymdhms2mjd(ymdhms(2011, 10, 10, 0, 0, 1));
  SetGlonassFrequency(run.ctx);
  EXPECT_EQ(Channels::Channel(5), -2);
  EXPECT_EQ(Channels::Channel(6), 6);
  EXPECT_EQ(Channels::Channel(7), -2848);
  EXPECT_EQ(run.errors.Text(), "");
}

TEST(SetGlonassFrequency, SatelliteThatTheListLacksIsWarnedAboutAndSendsOnChannelZero) {
  Channels run({105});
  run.List("R06       2011 01 01 00 00 00                       6\n");
  SetGlonassFrequency(run.ctx);
  EXPECT_TRUE(run.Warned("GLONASS SATELLITE 105 NOT LISTED IN GLONASS FREQUENCY CHANNEL FILE - "
                         "USING FREQ. CHANNEL k = 0!"))
      << run.errors.Text();
  EXPECT_EQ(Channels::Channel(5), 0);
}

TEST(SetGlonassFrequency, ListComesBeforeTheBroadcastRecords) {
  Channels run({105});
  run.List(kList);
  run.Broadcast({3});
  SetGlonassFrequency(run.ctx);
  EXPECT_EQ(Channels::Channel(5), -2);
}

TEST(SetGlonassFrequency, FirstBroadcastRecordOfTheSlotCounts) {
  Channels run({105});
  run.Broadcast({-2, 254});
  SetGlonassFrequency(run.ctx);
  EXPECT_EQ(Channels::Channel(5), -2);
}

TEST(SetGlonassFrequency, SlotWithoutBroadcastRecordIsWarnedAboutAndSendsOnChannelZero) {
  Channels run({107});
  run.Broadcast({3});
  SetGlonassFrequency(run.ctx);
  EXPECT_TRUE(run.Warned("GLONASS SATELLITE 107 NOT LISTED IN GLONASS BROADCAST EPHEMERIS FILE - "
                         "USING FREQ. CHANNEL k = 0!"))
      << run.errors.Text();
  EXPECT_EQ(Channels::Channel(7), 0);
}

TEST(SetGlonassFrequency, ChannelsThatGlonassHadAreTaken) {
  for (const int k : {-7, 0, 24}) {
    Channels run({105});
    run.Broadcast({k});
    SetGlonassFrequency(run.ctx);
    EXPECT_EQ(Channels::Channel(5), k);
    EXPECT_EQ(run.errors.Text(), "");
  }
}

// On channel -2848 a satellite would send on frequency 0.
TEST(SetGlonassFrequency, ChannelsAreTakenAsTheyAreListed) {
  for (const int k : {-8, 25, 249}) { // 249: -7 in eight bits, as some records have it
    Channels run({105});
    run.Broadcast({k});
    SetGlonassFrequency(run.ctx);
    EXPECT_EQ(run.errors.Text(), "");
    EXPECT_EQ(Channels::Channel(5), k);
  }
}

TEST(SetGlonassFrequency, ChannelsWithoutAWavelengthAreWarnedAboutAndCountAsZero) {
  for (const int k : {-100000, -2848, 100000}) {
    const std::string number = std::to_string(k);
    Channels broadcast({105});
    broadcast.Broadcast({k});
    SetGlonassFrequency(broadcast.ctx);
    EXPECT_TRUE(broadcast.Warned("GLONASS SATELLITE 105 HAS NO VALID CHANNEL [" + number +
                                 "] IN GLONASS BROADCAST EPHEMERIS FILE - USING FREQ. CHANNEL k = "
                                 "0!"))
        << broadcast.errors.Text();
    EXPECT_EQ(Channels::Channel(5), 0);
    Channels listed({105});
    listed.List("R05       2011 01 01 00 00 00                       " + number + "\n");
    SetGlonassFrequency(listed.ctx);
    EXPECT_TRUE(listed.Warned("GLONASS SATELLITE 105 HAS NO VALID CHANNEL [" + number +
                              "] IN GLONASS FREQUENCY CHANNEL FILE - USING FREQ. CHANNEL k = 0!"))
        << listed.errors.Text();
    EXPECT_EQ(Channels::Channel(5), 0);
  }
}

TEST(SetGlonassFrequency, SatellitesOfOtherSystemsAreLeftAlone) {
  Channels run({1, 99, 100, 200, 305});
  run.List(kList);
  SetGlonassFrequency(run.ctx);
  EXPECT_EQ(run.errors.Text(), "");
  for (long slot = 1; slot <= GLONASSc::kSlots; ++slot) EXPECT_EQ(Channels::Channel(slot), -2848);
}

TEST(SetGlonassFrequency, WithoutSourceTheTablesStayEmpty) {
  Channels run({105});
  SetGlonassFrequency(run.ctx);
  EXPECT_EQ(Channels::Channel(5), -2848);
  EXPECT_EQ(run.errors.Text(), "");
}

TEST(SetGlonassFrequencyDeathTest, SlotBeyondTheTablesEndsWithTheRangeReport) {
  EXPECT_ENDS(
      {
        Channels run({125});
        run.List(kList);
        SetGlonassFrequency(run.ctx);
      },
      "Row index not in range:    24 -> \\[    0,   23\\]");
}

// ---- Biases
// --------------------------------------------------------------------------------------

struct Biased : Stage {
  explicit Biased(std::initializer_list<short> satellites = {7}) : Stage(satellites) {}

  /// Biases [ns] of G07 and R05.
  void Read(DCB& biases, const char* name, double gps, double glonass) {
    char line[64];
    std::string text = "PRN / STATION NAME\n";
    std::snprintf(line, sizeof line, "G07 %31.3f%12.3f\n", gps, 0.01);
    text += line;
    std::snprintf(line, sizeof line, "R05 %31.3f%12.3f\n", glonass, 0.01);
    biases.SetFile(folder.Write(name, text + line).c_str());
    biases.ReadFile();
  }
  void P1P2(double gps, double glonass) {
    Read(dcbP1P2, "P1P2.txt", gps, glonass);
    ctx.isP1P2 = true;
  }
  void P1C1(double gps, double glonass) {
    Read(dcbP1C1, "P1C1.txt", gps, glonass);
    ctx.isP1C1 = true;
  }
  void GroupDelay(long double tgd) {
    GPSbEphData& records = gpsBroadcast.gdata;
    records.SetNRecords(3);
    for (long i = 0; i < 3; ++i) records.sat(i) = i == 0 ? 8 : 7;
    records.data(0, 25) = 9e-9L;
    records.data(1, 25) = tgd;
    records.data(2, 25) = 9e-9L; // a later record of the same satellite
    ctx.isGPSnav = true;
  }
  /// What was added to the first record [m].
  void ExpectAdded(long double c1, long double p2) {
    EXPECT_TRUE(Near(data.C1(0).GetObs() - kCode, c1, 1e-10L));
    EXPECT_TRUE(Near(data.P2(0).GetObs() - kCode - 5, p2, 1e-10L));
    EXPECT_EQ(data.P1(0).GetObs(), kCode);
  }
};

TEST(ApplyDCB, GroupDelayOfTheFirstBroadcastRecord) {
  Biased run;
  run.GroupDelay(-5e-9L);
  ApplyDCB(run.ctx);
  run.ExpectAdded(kC * 5e-9L, 5929.0L / 3600 * kC * 5e-9L); // (77/60)^2
}

TEST(ApplyDCB, SatelliteWithoutBroadcastRecordHasNoGroupDelay) {
  Biased run({9});
  run.GroupDelay(-5e-9L);
  ApplyDCB(run.ctx);
  run.ExpectAdded(0, 0);
}

TEST(ApplyDCB, P1P2BiasReplacesTheGroupDelay) {
  Biased run;
  run.GroupDelay(-5e-9L);
  run.P1P2(2, 0);
  ApplyDCB(run.ctx);
  run.ExpectAdded(kGps2 * kC * 2e-9L, kGps1 * kC * 2e-9L);
}

TEST(ApplyDCB, P1P2BiasChangesP2C1ByTheBiasItself) {
  // k1 - k2 = 1: what a receiver measures as P2 - P1 loses the satellite's P1-P2
  Biased run;
  run.P1P2(2, 0);
  ApplyDCB(run.ctx);
  EXPECT_TRUE(Near(run.data.P2(0).GetObs() - run.data.C1(0).GetObs(), 5 + kC * 2e-9L, 1e-10L));
}

TEST(ApplyDCB, GlonassHasNoGroupDelayAndItsNominalFactorsOnEveryChannel) {
  Biased run({105});
  run.GroupDelay(-5e-9L);
  ApplyDCB(run.ctx);
  run.ExpectAdded(0, 0);
  GLONASSc::SetFrequency(-7, 4);
  run.P1P2(0, 3);
  ApplyDCB(run.ctx);
  run.ExpectAdded(1.53125L * kC * 3e-9L, 2.53125L * kC * 3e-9L);
}

TEST(ApplyDCB, ReceiverOfC1AndP2AddsP1C1ToC1Alone) {
  Biased run;
  run.ctx.RecCodeTrackType = 1;
  run.P1P2(2, 0);
  run.P1C1(-1.5, 0);
  ApplyDCB(run.ctx);
  run.ExpectAdded(kGps2 * kC * 2e-9L - kC * 1.5e-9L, kGps1 * kC * 2e-9L);
}

TEST(ApplyDCB, CrossCorrelatingReceiverAddsP1C1ToBoth) {
  Biased run;
  run.ctx.RecCodeTrackType = 2;
  run.P1P2(2, 0);
  run.P1C1(-1.5, 0);
  ApplyDCB(run.ctx);
  run.ExpectAdded(kGps2 * kC * 2e-9L - kC * 1.5e-9L, kGps1 * kC * 2e-9L - kC * 1.5e-9L);
}

TEST(ApplyDCB, ReceiverOfP1AndP2NeedsNoP1C1) {
  Biased run({9}); // not in the file: no warning, as nobody asks
  run.P1C1(-1.5, 0);
  ApplyDCB(run.ctx);
  run.ExpectAdded(0, 0);
  EXPECT_EQ(run.errors.Text(), "");
}

TEST(ApplyDCB, P1C1AddsToTheGroupDelay) {
  Biased run;
  run.ctx.RecCodeTrackType = 1;
  run.GroupDelay(4e-9L);
  run.P1C1(-1.5, 0);
  ApplyDCB(run.ctx);
  run.ExpectAdded(-kC * 5.5e-9L, -5929.0L / 3600 * kC * 4e-9L);
}

TEST(ApplyDCB, UnlistedSatelliteIsWarnedAboutAndHasNoBias) {
  Biased run({9});
  run.P1P2(2, 0);
  ApplyDCB(run.ctx);
  run.ExpectAdded(0, 0);
  EXPECT_TRUE(run.Warned("SATELLITE: 09 NOT LISTED IN DCB VALUES - SETTING 0.0s VALUES FOR VAL!"))
      << run.errors.Text();
}

TEST(ApplyDCB, SystemsThatAreNotProcessedAreSkipped) {
  Biased run({7, 105});
  run.ctx.isGPS = run.ctx.isGLN = false;
  run.P1P2(2, 3);
  ApplyDCB(run.ctx);
  run.ExpectAdded(0, 0);
  EXPECT_EQ(run.data.C1(1).GetObs(), kCode);
}

TEST(ApplyDCB, MissingValuesStayMissingAndFlagsStay) {
  Biased run;
  run.data.C1(0) = 0.0L;
  run.data.P2(0).SetLli(4);
  run.P1P2(2, 0);
  ApplyDCB(run.ctx);
  EXPECT_TRUE(run.data.C1(0).IsNull());
  EXPECT_EQ(run.data.P2(0).GetLli(), 4);
}

TEST(ApplyDCB, TypesThatTheHeaderLacksAreLeftAlone) {
  Biased run;
  run.header.iP2 = false;
  run.data.P2.Resize(0, 0); // as the reader leaves it
  run.P1P2(2, 0);
  ApplyDCB(run.ctx);
  EXPECT_TRUE(Near(run.data.C1(0).GetObs() - kCode, kGps2 * kC * 2e-9L, 1e-10L));
}

TEST(ApplyDCB, SatelliteOfAnotherSystemIsLookedUpAndKeepsItsCodes) {
  Biased run({7, 205});
  run.P1P2(2, 3);
  ApplyDCB(run.ctx);
  EXPECT_TRUE(run.Warned("SATELLITE: 205 NOT LISTED IN DCB VALUES - SETTING 0.0s VALUES FOR VAL!"))
      << run.errors.Text();
  EXPECT_EQ(run.data.C1(1).GetObs(), kCode);
}

// ---- Azimuth, elevation, weight -----------------------------------------------------------------

/// A point 20 000 km from the receiver in the given direction; up is x, east y, north z.
xyz Towards(long double elevation, long double azimuth) {
  constexpr long double kRange = 2.0e7L;
  return {kEquator + kRange * std::sin(elevation), kRange * std::cos(elevation) * std::sin(azimuth),
          kRange * std::cos(elevation) * std::cos(azimuth)};
}

struct Located : Stage {
  using Stage::Stage;
  Located() : Stage({7, 8, 105, 205}) {
    gpsPrecise = StandingOrbits({{"G07", Towards(0.5L, 1.25L)}});
    glonassPrecise = StandingOrbits({{"R05", Towards(0.125L, 5.5L)}});
    ctx.isGpEph = ctx.isRpEph = true;
    // what an earlier filling left there
    for (long k = 0; k < 4; ++k) ctx.ELV(k) = ctx.AZM(k) = ctx.WGHT(k) = 77;
  }
};

TEST(CalculateAE, DirectionsOfBothSystems) {
  Located run;
  CalculateAE(run.ctx);
  EXPECT_TRUE(Near(run.ctx.ELV(0), 0.5L, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.AZM(0), 1.25L, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.ELV(2), 0.125L, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.AZM(2), 5.5L, 1e-9L));
}

TEST(CalculateAE, SatelliteWithoutOrbitHasZeroAnglesAndWeightOne) {
  Located run;
  run.ctx.obsP = 1;
  CalculateAE(run.ctx);
  for (const long k : {1L, 3L}) { // G08 is not in the file, 205 is of another system
    EXPECT_EQ(run.ctx.ELV(k), 0) << k;
    EXPECT_EQ(run.ctx.AZM(k), 0) << k;
    EXPECT_EQ(run.ctx.WGHT(k), 1) << k;
  }
}

TEST(CalculateAE, WeightIsTheSquaredSineOfTheElevation) {
  Located run;
  run.ctx.obsP = 1;
  CalculateAE(run.ctx);
  // sin^2 = (1 - cos 2e)/2
  EXPECT_TRUE(Near(run.ctx.WGHT(0), (1 - std::cos(1.0L)) / 2, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.WGHT(2), (1 - std::cos(0.25L)) / 2, 1e-9L));
}

TEST(CalculateAE, OtherSelectorsWeighAllEqual) {
  for (const int selector : {0, 2, -1}) {
    Located run;
    run.ctx.obsP = static_cast<short>(selector);
    CalculateAE(run.ctx);
    for (long k = 0; k < 4; ++k) EXPECT_EQ(run.ctx.WGHT(k), 1) << selector;
  }
}

TEST(CalculateAE, SystemsThatAreNotProcessedAreSkipped) {
  Located run;
  run.ctx.obsP = 1;
  run.ctx.isGPS = false;
  CalculateAE(run.ctx);
  EXPECT_EQ(run.ctx.ELV(0), 0);
  EXPECT_EQ(run.ctx.WGHT(0), 1);
  EXPECT_GT(run.ctx.ELV(2), 0.1L);
}

TEST(CalculateAE, RecordsOfAnEpochFollowThoseOfTheOneBefore) {
  Located run;
  Fill(run, {{Second(0), {Codes(8)}}, {Second(30), {}}, {Second(60), {Codes(105), Codes(7)}}});
  CalculateAE(run.ctx);
  EXPECT_EQ(run.ctx.ELV(0), 0);
  EXPECT_TRUE(Near(run.ctx.ELV(1), 0.125L, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.ELV(2), 0.5L, 1e-9L));
}

// ---- The stage
// -------------------------------------------------------------------------------------

TEST(ApplyCorrections, VerboseTellsTheStepsInOrder) {
  Stage run;
  run.ctx.verbose = true;
  ApplyCorrections(run.ctx);
  EXPECT_EQ(run.errors.Text(),
            "Zenta::ApplyCorrections(): OBSERVATIONS AND COORDINATE CORRECTIONS!\n"
            "Zenta::ApplyCorrections():         Applying receiver clock corrections!\n"
            "Zenta::ApplyCorrections():         GLONASS frequency channel determination!\n"
            "Zenta::ApplyCorrections():         Applying DCB values!\n"
            "Zenta::ApplyCorrections():         Azimuths, Elevation angles, Weights!\n");
  EXPECT_EQ(run.ctx.WGHT(0), 1);
}

} // namespace
