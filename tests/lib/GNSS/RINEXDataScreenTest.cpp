#include "GNSS/RINEXData.h"

#include "GNSS/GLNSat.h"
#include "GNSS/GNSSLinCombs.h"
#include "GNSS/RINEX.h"
#include "PROGINC/LittleEndian.h"
#include "reference/screen_plain.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/ObsStore.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <random>
#include <tuple>
#include <utility>

static bool operator==(const PhaseArc& a, const PhaseArc& b) {
  return std::tie(a.sat, a.firstEpoch, a.firstRecord, a.lastEpoch, a.nObs) ==
         std::tie(b.sat, b.firstEpoch, b.firstRecord, b.lastEpoch, b.nObs);
}

static std::ostream& operator<<(std::ostream& out, const PhaseArc& arc) {
  return out << arc.sat << ": " << arc.firstEpoch << '(' << arc.firstRecord << ")-" << arc.lastEpoch
             << " n " << arc.nObs;
}

namespace {

using Arcs = std::vector<PhaseArc>;

constexpr long double kNoCutoff = 0;

/// A store, elevations of 1 for every record, and an arc file in a folder of its own.
class Screening : public testing::Test {
protected:
  /// Epochs at \p seconds with the satellites \p satellites in each; L4, CL1 and MW are 1 m.
  void Build(const std::vector<long double>& seconds, const std::vector<short>& satellites = {5}) {
    for (const long double second : seconds) obs.AddEpoch(second, satellites);
    Build();
  }
  void Build(int epochs, const std::vector<short>& satellites = {5}) {
    for (int i = 0; i < epochs; ++i) obs.AddEpoch(30 * i, satellites);
    Build();
  }
  void Build() {
    obs.Build();
    elev.Resize(data.nsatall, 1, 1);
    for (matrix<gnssobs>* table : {&data.L4, &data.CL1, &data.MW}) {
      table->Resize(data.nsatall);
      for (long r = 0; r < data.nsatall; ++r) (*table)(r) = 1;
    }
    file = folder.Name("arcs");
    data.SetAmbFile(file.c_str());
  }
  /// Adds \p metres to a table of \p sat from epoch \p i on.
  void Step(matrix<gnssobs>& table, long i, long double metres, short sat = 5) {
    for (; i < data.nepochall; ++i) table(obs.Record(i, sat)) += metres;
  }

  /// The arcs, which the file must hold as well.
  Arcs Checked(long nArcs) {
    EXPECT_EQ(nArcs, static_cast<long>(data.arcs.size()));
    EXPECT_EQ(ArcsOf(ReadWhole(file)), data.arcs);
    return data.arcs;
  }
  static Arcs ArcsOf(const std::string& bytes) {
    EXPECT_EQ(bytes.size() % 18, 0U);
    Arcs arcs;
    for (std::size_t at = 0; at < bytes.size(); at += 18)
      arcs.push_back({GetInt16(bytes, at), GetInt32(bytes, at + 2), GetInt32(bytes, at + 6),
                      GetInt32(bytes, at + 10), GetInt32(bytes, at + 14)});
    return arcs;
  }
  void WriteArcs(const Arcs& arcs) {
    std::string bytes;
    for (const PhaseArc& arc : arcs) {
      PutInt16(bytes, arc.sat);
      for (const long number : {arc.firstEpoch, arc.firstRecord, arc.lastEpoch, arc.nObs})
        PutInt32(bytes, static_cast<std::int32_t>(number));
    }
    folder.Write("arcs", bytes);
  }

  Arcs ByL4(long minLength = 1, long double a = 0.05L, long double b = 0) {
    long n = -1;
    data.ScreenL4(elev, kNoCutoff, minLength, a, b, n);
    return Checked(n);
  }
  Arcs ByCL1(long minLength = 1, long double cycles = 5) {
    long n = -1;
    data.ScreenCL1(elev, kNoCutoff, minLength, cycles, n);
    return Checked(n);
  }
  /// Limits with b = 0: steps of 0.06 m, fit within 0.01 m, prediction within 0.02 m.
  Arcs ByLine(long minLength = 3, long double b = 0) {
    long n = -1;
    data.ScreenL4Linear(elev, kNoCutoff, minLength, 0.06L, b, n);
    return Checked(n);
  }
  Arcs ByMW(long n, long double limit = 1e-6L, long minLength = 1) {
    data.ScreenMW(limit, minLength, n);
    return Checked(n);
  }

  const ScratchFolder folder;
  std::string file;
  RestoredCoefficients restored;
  ObsStore obs;
  RINEXData& data = obs.data;
  matrix<long double> elev;
};

using ScreenL4 = Screening;
using ScreenCL1 = Screening;
using ScreenL4Linear = Screening;
using ScreenMW = Screening;

// ---- Differences ------------------------------------------------------------------------------

TEST_F(ScreenL4, ContinuousSatelliteIsOneArc) {
  Build(10);
  EXPECT_EQ(ByL4(), (Arcs{{5, 0, 0, 9, 10}}));
  EXPECT_EQ(ByCL1(), (Arcs{{5, 0, 0, 9, 10}}));
}

TEST_F(ScreenL4, ArcsFollowTheSatelliteListAndCountRecordsOfTheEpoch) {
  Build(4, {7, 3, 5});
  data.L4(obs.Record(2, 3)) += 1;
  EXPECT_EQ(
      ByL4(),
      (Arcs{{3, 0, 0, 1, 2}, {3, 2, 6, 2, 1}, {3, 3, 9, 3, 1}, {5, 0, 0, 3, 4}, {7, 0, 0, 3, 4}}));
  data.satList(0) = 7;
  data.satList(1) = 9; // not observed
  data.satList(2) = 5;
  EXPECT_EQ(ByL4(), (Arcs{{7, 0, 0, 3, 4}, {5, 0, 0, 3, 4}}));
}

TEST_F(ScreenL4, RecordOfTheFileIsEighteenBytes) {
  Build(300, {5, 124});
  for (long i = 0; i < 258; ++i) data.L4(obs.Record(i, 5)) = 0;
  for (long i = 0; i < 300; ++i) data.L4(obs.Record(i, 124)) = 0;
  ByL4();
  using namespace std::string_literals;
  // Satellite 5, epoch 258 = 0x102, record 516 = 0x204, epoch 299 = 0x12b, 42 = 0x2a values.
  EXPECT_EQ(ReadWhole(file), "\x05\0\x02\x01\0\0\x04\x02\0\0\x2b\x01\0\0\x2a\0\0\0"s);
}

TEST_F(ScreenL4, StepAboveTheLimitBeginsAnArc) {
  Build(6);
  Step(data.L4, 2, 0.0625L);
  Step(data.L4, 4, -0.0626L);
  EXPECT_EQ(ByL4(1, 0.0625L), (Arcs{{5, 0, 0, 3, 4}, {5, 4, 4, 5, 2}}));
  EXPECT_EQ(ByL4(1, 0.05L), (Arcs{{5, 0, 0, 1, 2}, {5, 2, 2, 3, 2}, {5, 4, 4, 5, 2}}));
}

// The limit at 5 s is a + b sqrt(5 - 1).
TEST_F(ScreenL4, LimitGrowsWithTheRootOfTheTimeBetween) {
  Build({0, 5, 10, 15});
  Step(data.L4, 1, 0.5625L);
  Step(data.L4, 3, 0.5626L);
  EXPECT_EQ(ByL4(1, 0.0625L, 0.25L), (Arcs{{5, 0, 0, 2, 3}, {5, 3, 3, 3, 1}}));
}

TEST_F(ScreenL4, GapOverTheIntervalBySevenTenthsBeginsAnArc) {
  Build({0, 30, 60.6L, 90.6L, 121.4L, 151.4L});
  EXPECT_EQ(ByL4(), (Arcs{{5, 0, 0, 3, 4}, {5, 4, 4, 5, 2}}));
  EXPECT_EQ(ByCL1(), (Arcs{{5, 0, 0, 3, 4}, {5, 4, 4, 5, 2}}));
}

TEST_F(ScreenL4, MissingOrLowValueLeavesAGap) {
  Build(9);
  data.L4(3) = 0;
  elev(6) = kNoCutoff; // at the cut-off, not above it
  const Arcs expected{{5, 0, 0, 2, 3}, {5, 4, 4, 5, 2}, {5, 7, 7, 8, 2}};
  EXPECT_EQ(ByL4(), expected);
  elev(6) = std::numeric_limits<long double>::quiet_NaN();
  EXPECT_EQ(ByL4(), expected);
}

TEST_F(ScreenL4, ShortArcsAreLeftOut) {
  Build(9);
  data.L4(3) = 0;
  data.L4(6) = 0;
  data.L4(8) = 0;
  EXPECT_EQ(ByL4(2), (Arcs{{5, 0, 0, 2, 3}, {5, 4, 4, 5, 2}}));
  EXPECT_EQ(ByL4(3), (Arcs{{5, 0, 0, 2, 3}}));
  EXPECT_EQ(ByL4(4), Arcs{});
  EXPECT_EQ(ReadWhole(file), "");
}

TEST_F(ScreenL4, EpochsWithinTheGapCountAlthoughTheSatelliteIsMissingThere) {
  obs.AddEpoch(0, {5});
  obs.AddEpoch(10, {7});
  obs.AddEpoch(20, {7, 5});
  Build();
  EXPECT_EQ(ByL4(), (Arcs{{5, 0, 0, 2, 2}, {7, 1, 1, 2, 2}}));
}

TEST_F(ScreenL4, EmptyStoreHasNoArcs) {
  data.SetAmbFile(folder.Name("arcs").c_str());
  file = folder.Name("arcs");
  EXPECT_EQ(ByL4(), Arcs{});
  EXPECT_EQ(ByLine(), Arcs{});
}

TEST_F(ScreenL4, SecondScreeningReplacesTheFirst) {
  Build(5);
  data.L4(2) = 0;
  EXPECT_EQ(ByL4().size(), 2U);
  EXPECT_EQ(ByL4(3).size(), 0U);
}

TEST_F(ScreenL4, FileThatCannotBeCreatedChangesNothingElse) {
  Build(5);
  for (const std::string& name : {folder.Name("absent") + "/arcs", std::string()}) {
    const Captured messages(std::cerr);
    data.SetAmbFile(name.c_str());
    long n = -1;
    data.ScreenL4(elev, kNoCutoff, 1, 0.05L, 0, n);
    EXPECT_EQ(n, 1);
    EXPECT_EQ(data.arcs, (Arcs{{5, 0, 0, 4, 5}}));
    EXPECT_EQ(messages.Text().empty(), name.empty()); // no file is asked for by no name
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_F(ScreenCL1, SlipIsCountedInCyclesOfTheSatellite) {
  GLONASSc::SetFrequency(-7, 0);
  Build(6, {5, 101});
  // Between five cycles of GPS and five of the longest GLONASS wavelength, 0.93804 m.
  ASSERT_LT(GLONASSc::lamb(0, 0), GNSSc::lamb1);
  const long double step = 2.5L * (GLONASSc::lamb(0, 0) + GNSSc::lamb1);
  Step(data.CL1, 3, step, 5);
  Step(data.CL1, 3, -step, 101);
  EXPECT_EQ(ByCL1(), (Arcs{{5, 0, 0, 5, 6}, {101, 0, 0, 2, 3}, {101, 3, 6, 5, 3}}));
}

TEST_F(ScreenCL1, SatellitesWithoutAWavelengthAreSkipped) {
  GLONASSc::SetFrequency(0, 0);
  Build(3, {101, 102, 205});
  EXPECT_EQ(ByCL1(), (Arcs{{101, 0, 0, 2, 3}}));
  EXPECT_EQ(ByL4().size(), 3U);
}

// ---- Random stores and a recorded day against the plain twins ----------------------------------

/// A store with gaps, missing values, slips, satellites twice in an epoch and in any order; the
/// wide lane scatters about a level that jumps, with single values off it.
class RandomStore {
public:
  explicit RandomStore(unsigned seed) : random_(seed) {
    const std::vector<short> all{1, 2, 9, 32, 99, 101, 107, 124, 205, 311};
    const int epochs = Pick(120);
    long double second = 0;
    for (int i = 0; i <= epochs; ++i) {
      std::vector<short> satellites;
      for (const short s : all)
        if (Pick(10) != 0) satellites.push_back(s);
      std::shuffle(satellites.begin(), satellites.end(), random_);
      if (!satellites.empty() && Pick(20) == 0) satellites.push_back(satellites.front());
      obs.AddEpoch(second, satellites);
      second += Pick(12) == 0 ? 30 + 0.25L * Pick(6) : 30;
      if (Pick(25) == 0) second += 30;
    }
    obs.Build();
    RINEXData& data = obs.data;
    std::shuffle(&data.satList(0), &data.satList(0) + data.satList.Length(), random_);
    data.L4.Resize(data.nsatall);
    data.CL1.Resize(data.nsatall);
    elev.Resize(data.nsatall);
    for (long r = 0; r < data.nsatall; ++r) {
      elev(r) = 0.05L * Pick(30);
      if (Pick(15) != 0) data.L4(r) = 1 + 0.01L * Pick(8) + (Pick(30) == 0 ? 1 : 0);
      if (Pick(15) != 0) data.CL1(r) = 1 + 0.1L * Pick(8) + (Pick(30) == 0 ? 10 : 0);
    }
    data.MW.Resize(data.nsatall);
    std::map<short, long double> level;
    for (long r = 0; r < data.nsatall; ++r) {
      long double& jumped = level[data.sat(r)];
      if (Pick(25) == 0) jumped += 0.4L * (Pick(15) - 7);
      if (Pick(20) != 0)
        data.MW(r) = 20 + jumped + 0.05L * Pick(6) + (Pick(20) == 0 ? 0.45L * Pick(9) : 0);
    }
  }

  ObsStore obs;
  matrix<long double> elev;

private:
  int Pick(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  std::mt19937 random_;
};

TEST_F(ScreenL4, OneWalkFindsTheArcsOfOneWalkPerSatellite) {
  for (short slot = 0; slot < 20; ++slot) GLONASSc::SetFrequency(slot - 7, slot); // not 121-124
  std::size_t total = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    RandomStore random(seed);
    RINEXData& store = random.obs.data;
    for (const long minLength : {0L, 1L, 2L, 5L}) {
      long n = -1;
      store.ScreenL4(random.elev, 0.2L, minLength, 0.06L, 0.002L, n);
      EXPECT_EQ(store.arcs, screen_L4_plain(store, random.elev, 0.2L, minLength, 0.06L, 0.002L));
      EXPECT_EQ(n, static_cast<long>(store.arcs.size()));
      total += store.arcs.size();
      store.ScreenCL1(random.elev, 0.2L, minLength, 3, n);
      EXPECT_EQ(store.arcs, screen_CL1_plain(store, random.elev, 0.2L, minLength, 3));
      total += store.arcs.size();
    }
  }
  EXPECT_GT(total, 1000U);
}

TEST_F(ScreenL4Linear, RandomStoresHaveTheArcsThatAreTold) {
  file = folder.Name("arcs");
  std::size_t total = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    RandomStore random(seed);
    RINEXData& store = random.obs.data;
    store.SetAmbFile(file.c_str());
    for (const long minLength : {0L, 1L, 3L, 5L, 9L})
      for (const auto& [a, b] : {std::pair{0.3L, 0.0L}, {0.06L, 0.01L}, {0.0L, 0.02L}}) {
        long n = -1;
        store.ScreenL4Linear(random.elev, 0.05L, minLength, a, b, n);
        EXPECT_EQ(store.arcs, screen_L4_linear_plain(store, random.elev, 0.05L, minLength, a, b));
        EXPECT_EQ(n, static_cast<long>(store.arcs.size()));
        total += store.arcs.size();
      }
  }
  EXPECT_GT(total, 1000U);
}

TEST_F(ScreenMW, RandomStoresHaveTheArcsThatAreTold) {
  file = folder.Name("arcs");
  long sound = 0;
  long split = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    RandomStore random(seed);
    RINEXData& store = random.obs.data;
    store.SetAmbFile(file.c_str());
    for (const long minLength : {0L, 1L, 2L, 6L})
      for (const long double limit : {0.0L, 0.2L, 1.0L, 3.0L}) {
        long n = -1;
        store.ScreenL4(random.elev, -1, 1, 30, 0, n); // cuts at gaps alone
        const Arcs whole = store.arcs;
        store.ScreenMW(limit, minLength, n);
        EXPECT_EQ(store.arcs, screen_MW_plain(store, whole, limit, minLength));
        EXPECT_EQ(n, static_cast<long>(store.arcs.size()));
        for (const PhaseArc& arc : store.arcs)
          ++(std::find(whole.begin(), whole.end(), arc) != whole.end() ? sound : split);
      }
  }
  EXPECT_GT(sound, 1000);
  EXPECT_GT(split, 1000);
}

TEST_F(ScreenL4, RecordedDayHasTheArcsOfOneWalkPerSatellite) {
  SKIP_WITHOUT("2011-283-cagz/cagz2830.11o");
  SKIP_WITHOUT("derived/glonass-channels.txt");
  RINEX rinex(obs.header, data);
  rinex.SetFile(RealData("2011-283-cagz/cagz2830.11o").c_str());
  rinex.ReadFile();
  GLNSat channels;
  channels.SetFile(RealData("derived/glonass-channels.txt").c_str());
  channels.ReadFile();
  for (short slot = 1; slot <= 24; ++slot)
    GLONASSc::SetFrequency(channels.GetFreqNum(static_cast<short>(100 + slot), data.epoch(0)),
                           static_cast<short>(slot - 1));
  data.SetLC_L4();
  data.SetLC_CL1();
  elev.Resize(data.nsatall, 1, 1);
  file = folder.Name("arcs");
  data.SetAmbFile(file.c_str());
  const Arcs byL4 = ByL4(20, 0.05L, 0.001L);
  EXPECT_EQ(byL4, screen_L4_plain(data, elev, kNoCutoff, 20, 0.05L, 0.001L));
  EXPECT_GE(static_cast<long>(byL4.size()), data.satList.Length());
  EXPECT_EQ(ByCL1(20), screen_CL1_plain(data, elev, kNoCutoff, 20, 5));
}

// ---- Along a line -----------------------------------------------------------------------------

TEST_F(ScreenL4Linear, ContinuousSatelliteIsOneArc) {
  Build(20, {7, 5});
  for (long i = 0; i < 20; ++i) Step(data.L4, i, 0.05L); // a line
  EXPECT_EQ(ByLine(), (Arcs{{5, 0, 0, 19, 20}, {7, 0, 0, 19, 20}}));
}

// The gaps may be as long as 30.5 s. With a = 0.06 and b = 0.01, b sqrt(30.5) is 0.055227: steps
// of 0.115227, fit within 0.037613, prediction within 0.075227.
TEST_F(ScreenL4Linear, SlopeUpToTheLimitIsFollowed) {
  Build(12);
  for (long i = 1; i < 12; ++i) Step(data.L4, i, 0.1152L);
  EXPECT_EQ(ByLine(3, 0.01L), (Arcs{{5, 0, 0, 11, 12}}));
  for (long i = 1; i < 12; ++i) Step(data.L4, i, 0.0001L);
  EXPECT_EQ(ByLine(3, 0.01L), Arcs{});
}

// Of three values 0, 0, s the largest misfit is 5 s / 6.
TEST_F(ScreenL4Linear, StartFitsWithinHalfTheGrowth) {
  Build(3);
  data.L4(2) = 1.0451L;
  EXPECT_EQ(ByLine(3, 0.01L), (Arcs{{5, 0, 0, 2, 3}}));
  data.L4(2) = 1.0452L;
  EXPECT_EQ(ByLine(3, 0.01L), Arcs{});
}

TEST_F(ScreenL4Linear, PredictionAllowsForTheGrowth) {
  Build(4);
  data.L4(3) = 1.0752L;
  EXPECT_EQ(ByLine(3, 0.01L), (Arcs{{5, 0, 0, 3, 4}}));
  data.L4(3) = 1.0753L;
  EXPECT_EQ(ByLine(3, 0.01L), (Arcs{{5, 0, 0, 2, 3}}));
}

TEST_F(ScreenL4Linear, SlipEndsTheArcBeforeIt) {
  Build(20);
  Step(data.L4, 10, 1);
  EXPECT_EQ(ByLine(), (Arcs{{5, 0, 0, 9, 10}, {5, 10, 10, 19, 10}}));
}

TEST_F(ScreenL4Linear, RestBehindASlipMustHoldAnArc) {
  Build(20);
  Step(data.L4, 17, 1);
  EXPECT_EQ(ByLine(), (Arcs{{5, 0, 0, 16, 17}, {5, 17, 17, 19, 3}}));
  Step(data.L4, 17, -1);
  Step(data.L4, 18, 1);
  EXPECT_EQ(ByLine(), (Arcs{{5, 0, 0, 17, 18}}));
}

TEST_F(ScreenL4Linear, RoughStartIsPassedOver) {
  Build(20);
  data.L4(0) += 1;
  data.L4(2) += 1;
  EXPECT_EQ(ByLine(), (Arcs{{5, 3, 3, 19, 17}}));
}

TEST_F(ScreenL4Linear, GapOverTheIntervalByHalfASecondEndsTheSegment) {
  std::vector<long double> seconds{0, 30, 60, 90.4L, 120.4L, 150.4L}; // 30.4 s is no gap
  for (int i = 0; i < 4; ++i) seconds.push_back(181 + 30 * i);        // 30.6 s is one
  for (int i = 0; i < 4; ++i) seconds.push_back(301.8L + 30 * i);     // 30.8 s too
  Build(seconds);
  EXPECT_EQ(ByLine(), (Arcs{{5, 0, 0, 5, 6}, {5, 6, 6, 9, 4}, {5, 10, 10, 13, 4}}));
  EXPECT_EQ(ByL4(), (Arcs{{5, 0, 0, 9, 10}, {5, 10, 10, 13, 4}}));
}

TEST_F(ScreenL4Linear, MissingValueEndsTheSegment) {
  Build(20);
  data.L4(5) = 0;
  elev(12) = kNoCutoff;
  EXPECT_EQ(ByLine(), (Arcs{{5, 0, 0, 4, 5}, {5, 6, 6, 11, 6}, {5, 13, 13, 19, 7}}));
  EXPECT_EQ(ByLine(6), (Arcs{{5, 6, 6, 11, 6}, {5, 13, 13, 19, 7}}));
  EXPECT_EQ(ByLine(7), (Arcs{{5, 13, 13, 19, 7}}));
  EXPECT_EQ(ByLine(8), Arcs{});
}

TEST_F(ScreenL4Linear, ArcsOfRandomStoresAreSmoothAndDoNotOverlap) {
  std::size_t total = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    RandomStore random(seed);
    const ObsStore& store = random.obs;
    long n = -1;
    random.obs.data.ScreenL4Linear(random.elev, 0.05L, 4, 0.3L, 0, n);
    PhaseArc before;
    for (const PhaseArc& arc : store.data.arcs) {
      EXPECT_GE(arc.nObs, 4);
      EXPECT_EQ(arc.nObs, arc.lastEpoch - arc.firstEpoch + 1);
      EXPECT_EQ(arc.firstRecord, store.First(arc.firstEpoch));
      if (arc.sat == before.sat) {
        EXPECT_GT(arc.firstEpoch, before.lastEpoch);
      }
      for (long i = arc.firstEpoch; i <= arc.lastEpoch; ++i)
        ASSERT_GE(store.Record(i, arc.sat), 0) << arc;
      for (long i = arc.firstEpoch; i < arc.lastEpoch; ++i)
        EXPECT_LE(store.data.epoch(i + 1) - store.data.epoch(i), 30.5L) << arc;
      before = arc;
    }
    total += store.data.arcs.size();
  }
  EXPECT_GT(total, 100U);
}

TEST_F(ScreenL4Linear, SearchForTheFirstValueGivesTheFirstRecordOfItsEpoch) {
  Build(5, {7, 5});
  for (long i = 0; i < 3; ++i) data.L4(obs.Record(i, 5)) = 0;
  long epoch = 0;
  long rec = 0;
  EXPECT_TRUE(data.FirstSatObsL4(5, epoch, rec, elev, kNoCutoff));
  EXPECT_EQ(epoch, 3);
  EXPECT_EQ(rec, 6);
  EXPECT_TRUE(data.FirstSatObsL4(5, epoch, rec, elev, kNoCutoff));
  EXPECT_EQ(epoch, 3);
  EXPECT_FALSE(data.FirstSatObsL4(9, epoch, rec, elev, kNoCutoff));
  EXPECT_FALSE(data.FirstSatObsL4(5, epoch, rec, elev, 1));
}

TEST_F(ScreenL4Linear, SegmentEndsWithTheDataOrBeforeAGap) {
  Build(5, {7, 5});
  long last = 0;
  long lastRec = 0;
  data.LastSatObsL4(5, 1, 2, last, lastRec, elev, kNoCutoff, 30.5L);
  EXPECT_EQ(last, 4);
  EXPECT_EQ(lastRec, 8);
  data.L4(obs.Record(3, 5)) = 0;
  data.LastSatObsL4(5, 1, 2, last, lastRec, elev, kNoCutoff, 30.5L);
  EXPECT_EQ(last, 2);
  EXPECT_EQ(lastRec, 4);
  data.LastSatObsL4(5, 1, 2, last, lastRec, elev, kNoCutoff, 29.5L);
  EXPECT_EQ(last, 1);
  data.LastSatObsL4(5, 1, 2, last, lastRec, elev, kNoCutoff, 30);
  EXPECT_EQ(last, 2);
}

// Of three values 0, 0, s the largest misfit is 5 s / 6.
TEST_F(ScreenL4Linear, StartNeedsASmallSecondDifferenceAndSmallSteps) {
  Build(3);
  const auto starts = [&](long double y0, long double y1, long double y2, long double fit,
                          long double step) {
    data.L4(0) = y0;
    data.L4(1) = y1;
    data.L4(2) = y2;
    long epoch = 0;
    long rec = 0;
    return data.FindContStart(5, epoch, rec, 2, fit, step);
  };
  EXPECT_TRUE(starts(7, 7, 8.19L, 1, 100));
  EXPECT_FALSE(starts(7, 7, 8.21L, 1, 100));
  EXPECT_TRUE(starts(7, 7, 5.81L, 1, 100));
  EXPECT_FALSE(starts(7, 7, 5.79L, 1, 100));
  EXPECT_TRUE(starts(7, 10, 13, 1, 3));
  EXPECT_FALSE(starts(7, 10, 13, 1, 2.99L));
}

TEST_F(ScreenL4Linear, StartMovesToTheFirstOfTheThree) {
  Build(6, {7, 5});
  data.L4(obs.Record(0, 5)) += 1;
  data.L4(obs.Record(2, 5)) += 1;
  long epoch = 0;
  long rec = 0;
  EXPECT_FALSE(data.FindContStart(5, epoch, rec, 4, 0.01L, 0.06L));
  EXPECT_EQ(epoch, 0);
  EXPECT_TRUE(data.FindContStart(5, epoch, rec, 5, 0.01L, 0.06L));
  EXPECT_EQ(epoch, 3);
  EXPECT_EQ(rec, 6);
  EXPECT_FALSE(data.FindContStart(5, epoch, rec, 4, 0.01L, 0.06L)); // two epochs are left
}

TEST_F(ScreenL4Linear, SlipIsAValueFurtherFromThePredictionThanTheLimit) {
  Build(6, {7, 5});
  for (long i = 0; i < 6; ++i) data.L4(obs.Record(i, 5)) = 2 + 0.5L * static_cast<long double>(i);
  data.L4(obs.Record(4, 5)) += 1;
  long end = 0;
  long endRec = 0;
  EXPECT_TRUE(data.FindCSlipL4(5, 1, 2, 5, end, endRec, 0.99L));
  EXPECT_EQ(end, 3);
  EXPECT_EQ(endRec, 6);
  // At the limit it is none; the next value is then 2 m off its prediction.
  EXPECT_FALSE(data.FindCSlipL4(5, 1, 2, 4, end, endRec, 1));
  EXPECT_EQ(end, 4);
  EXPECT_EQ(endRec, 8);
  EXPECT_TRUE(data.FindCSlipL4(5, 1, 2, 5, end, endRec, 1));
  EXPECT_EQ(end, 4);
  EXPECT_FALSE(data.FindCSlipL4(5, 1, 2, 5, end, endRec, 2));
  EXPECT_EQ(end, 5);
}

TEST_F(ScreenL4Linear, EpochWithoutARecordKeepsTheValueBefore) {
  obs.AddEpoch(0, {5});
  obs.AddEpoch(30, {5});
  obs.AddEpoch(60, {7});
  obs.AddEpoch(90, {5});
  Build();
  long end = 0;
  long endRec = 0;
  EXPECT_FALSE(data.FindCSlipL4(5, 0, 0, 3, end, endRec, 0.01L));
  EXPECT_EQ(end, 3);
}

// ---- Wide lane --------------------------------------------------------------------------------

/// Twenty epochs with a little scatter about 10 m.
class WideLaneArc : public Screening {
protected:
  WideLaneArc() {
    Build(20);
    for (long i = 0; i < 20; ++i) data.MW(i) = 10 + (i % 2 == 0 ? 0.1L : -0.1L);
    WriteArcs({whole});
  }
  const PhaseArc whole{5, 0, 0, 19, 20};
};

TEST_F(WideLaneArc, SoundArcIsKeptAsItIs) {
  const PhaseArc asRead{5, 0, 0, 19, 17}; // its length is not looked at
  WriteArcs({asRead});
  EXPECT_EQ(ByMW(1, 1), (Arcs{asRead}));
  EXPECT_EQ(ByMW(1, 1, 18), (Arcs{asRead}));
}

// Values 1 and 1 + x have the standard deviation x / sqrt 2, here 0.21 m.
TEST_F(ScreenMW, SoundArcScattersByLessThanTheLimit) {
  Build(2);
  data.MW(1) = 1 + 0.21L * std::sqrt(2.0L);
  WriteArcs({{5, 0, 0, 1, 99}});
  EXPECT_EQ(ByMW(1, 0.1001L), (Arcs{{5, 0, 0, 1, 99}}));
  WriteArcs({{5, 0, 0, 1, 99}});
  EXPECT_EQ(ByMW(1, 0.0999L), (Arcs{{5, 0, 0, 1, 2}})); // went through the splitting
}

TEST_F(WideLaneArc, ArcWithoutJumpIsWrittenWithItsValues) {
  data.MW(7) = 0;
  EXPECT_EQ(ByMW(1), (Arcs{{5, 0, 0, 19, 19}}));
}

TEST_F(WideLaneArc, SingleOutlierDoesNotSplit) {
  data.MW(10) += 3;
  EXPECT_EQ(ByMW(1), (Arcs{{5, 0, 0, 19, 19}}));
}

TEST_F(WideLaneArc, OutlierAtTheEndIsLeftOut) {
  data.MW(19) += 3;
  EXPECT_EQ(ByMW(1), (Arcs{{5, 0, 0, 18, 19}}));
}

// Only the first piece counts its first value.
TEST_F(WideLaneArc, TwoOutliersThatAgreeSplitAtTheFirst) {
  Step(data.MW, 10, 3);
  EXPECT_EQ(ByMW(1), (Arcs{{5, 0, 0, 9, 10}, {5, 10, 10, 19, 9}}));
}

TEST_F(WideLaneArc, TwoOutliersThatDisagreeSplitAtTheSecond) {
  Step(data.MW, 10, 3);
  Step(data.MW, 11, 3);
  EXPECT_EQ(ByMW(1), (Arcs{{5, 0, 0, 9, 10}, {5, 11, 11, 19, 8}}));
}

// The wide lane of GPS is 0.8619 m long.
TEST_F(WideLaneArc, OutliersAgreeWithinAWideLane) {
  for (long i = 11; i < 20; ++i) data.MW(i) = 14;
  for (const long double apart : {0.8L, -0.8L, 0.8618L}) {
    data.MW(10) = 14 - apart;
    WriteArcs({whole});
    EXPECT_EQ(ByMW(1), (Arcs{{5, 0, 0, 9, 10}, {5, 10, 10, 19, 9}})) << apart;
  }
  for (const long double apart : {0.9L, -0.9L, 0.8620L}) {
    data.MW(10) = 14 - apart;
    WriteArcs({whole});
    EXPECT_EQ(ByMW(1), (Arcs{{5, 0, 0, 9, 10}, {5, 11, 11, 19, 8}})) << apart;
  }
}

// Of equal values each, the n-th as well, takes its share of the variance: 0.43096^2 m2 at first,
// 0.43096^2 / (n + 1) m2 behind n.
TEST_F(WideLaneArc, OutliersLieBeyondSixTimesTheSpread) {
  const long double sigma = 0.4309592000445875L / 3; // behind eight
  const auto arcsWith = [&](long double ninth, long double tenth, long double rest) {
    for (long i = 0; i < 20; ++i) data.MW(i) = i < 8 ? 10 : 10 + sigma * rest;
    data.MW(8) = 10 + sigma * ninth;
    data.MW(9) = 10 + sigma * tenth;
    WriteArcs({whole});
    return ByMW(1);
  };
  const Arcs splitAtTheNinth{{5, 0, 0, 7, 8}, {5, 8, 8, 19, 11}};
  EXPECT_EQ(arcsWith(5.9L, 5.9L, 5.9L), (Arcs{{5, 0, 0, 19, 20}}));
  EXPECT_EQ(arcsWith(-5.9L, -5.9L, -5.9L), (Arcs{{5, 0, 0, 19, 20}}));
  EXPECT_EQ(arcsWith(6.1L, 6.1L, 6.1L), splitAtTheNinth);
  EXPECT_EQ(arcsWith(-6.1L, -6.1L, -6.1L), splitAtTheNinth);
  EXPECT_EQ(arcsWith(6.1L, 5.9L, 0), (Arcs{{5, 0, 0, 19, 19}})); // a single one
  EXPECT_EQ(arcsWith(6.1L, 6.1L, 0), splitAtTheNinth);
}

// The first value of a later piece is not taken twice: the second has six times the whole
// 0.43096 m, not that over the root of 2.
TEST_F(WideLaneArc, LaterPieceBeginsWithTheWholeSpread) {
  for (long i = 10; i < 20; ++i) data.MW(i) = 21;
  data.MW(10) = 25;
  data.MW(11) = 20; // begins the piece
  data.MW(12) = 22.2L;
  EXPECT_EQ(ByMW(1), (Arcs{{5, 0, 0, 9, 10}, {5, 11, 11, 19, 8}}));
}

TEST_F(WideLaneArc, PiecesShorterThanTheMinimumAreDropped) {
  Step(data.MW, 10, 3);
  EXPECT_EQ(ByMW(1, 1e-6L, 10), (Arcs{{5, 0, 0, 9, 10}}));
  WriteArcs({whole});
  EXPECT_EQ(ByMW(1, 1e-6L, 11), Arcs{});
}

TEST_F(WideLaneArc, SplittingTakesAsManyRecordsAsTheLengthSays) {
  WriteArcs({{5, 0, 0, 19, 5}});
  EXPECT_EQ(ByMW(1), (Arcs{{5, 0, 0, 4, 5}}));
  WriteArcs({{5, 0, 0, 19, 0}});
  EXPECT_EQ(ByMW(1, 1e-6L, 0), Arcs{});
  WriteArcs({{5, 0, 0, 19, -7}});
  EXPECT_EQ(ByMW(1, 1e-6L, 0), Arcs{});
}

TEST_F(WideLaneArc, ArcBeginsAtItsRecordAmongOthers) {
  ObsStore two;
  for (int i = 0; i < 6; ++i) two.AddEpoch(30 * i, {7, 5});
  two.Build();
  two.data.MW.Resize(12);
  for (long i = 0; i < 6; ++i) {
    two.data.MW(2 * i) = 500.0L * static_cast<long double>(i + 1);
    two.data.MW(2 * i + 1) = i < 4 ? 10 : 20;
  }
  two.data.SetAmbFile(file.c_str());
  WriteArcs({{5, 1, 2, 5, 5}});
  long n = 1;
  two.data.ScreenMW(1e-6L, 1, n);
  EXPECT_EQ(two.data.arcs, (Arcs{{5, 1, 2, 3, 3}, {5, 4, 8, 5, 1}}));
}

TEST_F(WideLaneArc, SatelliteWithoutWideLaneHasNoArc) {
  for (long i = 0; i < 20; ++i) data.MW(i) = 0;
  EXPECT_EQ(ByMW(1), Arcs{});
  WriteArcs({{9, 0, 0, 19, 20}});
  EXPECT_EQ(ByMW(1), Arcs{});
}

TEST_F(WideLaneArc, ArcsThatTheFileDoesNotHoldAreDropped) {
  WriteArcs({whole, whole});
  EXPECT_EQ(ByMW(5, 1).size(), 2U);
  folder.Write("arcs", ReadWhole(file).substr(0, 35)); // the second is cut
  EXPECT_EQ(ByMW(2, 1), (Arcs{whole}));
  EXPECT_EQ(ByMW(0, 1), Arcs{});
  WriteArcs({whole});
  EXPECT_EQ(ByMW(-1, 1), Arcs{});
}

TEST_F(WideLaneArc, MissingFileHasNoArcs) {
  std::filesystem::remove(file);
  EXPECT_EQ(ByMW(3), Arcs{});
}

TEST_F(WideLaneArc, OnlyTheAnnouncedArcsAreRead) {
  WriteArcs({whole, {5, 1, 1, 19, 19}});
  EXPECT_EQ(ByMW(1, 1), (Arcs{whole}));
}

using WideLaneArcDeathTest = WideLaneArc;

TEST_F(WideLaneArcDeathTest, ArcOutsideOfTheStoreIsReported) {
  WriteArcs({{5, 0, 0, 2147483647, 20}});
  EXPECT_ENDS(ByMW(1), "MATRIX::ERROR");
  WriteArcs({{5, -1, 0, 19, 20}});
  EXPECT_ENDS(ByMW(1), "MATRIX::ERROR");
  WriteArcs({{5, 0, 2147483647, 19, 20}});
  EXPECT_ENDS(ByMW(1), "MATRIX::ERROR");
}

} // namespace
