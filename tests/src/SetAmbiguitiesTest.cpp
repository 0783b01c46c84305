#include "SetAmbiguities.h"

#include "support/Captured.h"
#include "support/Files.h"
#include "support/Near.h"
#include "support/TinyRun.h"

#include <cmath>
#include <filesystem>

namespace {

/// A run in a folder of its own: the arc file goes to the working directory.
struct Arcs : TinyRun {
  ScratchFolder folder;
  std::filesystem::path before = std::filesystem::current_path();
  Captured errors{std::cerr};

  Arcs() { std::filesystem::current_path(folder.Path()); }
  ~Arcs() { std::filesystem::current_path(before); }

  std::string ArcFile() const { return ReadWhole(folder.Name("Ambiq.b")); }
};

TinyRecord Phase(short sat, long double l4) {
  TinyRecord r;
  r.sat = sat;
  r.L4 = l4;
  return r;
}

mjd Second(long double s) {
  mjd t(55844, 0);
  t += s;
  return t;
}

/// \p n epochs of 1 s in which satellite 3 has no record before satellite 105's.
struct TwoSatellites : Arcs {
  TwoSatellites() {
    std::vector<TinyEpoch> epochs;
    for (int i = 0; i < 20; ++i) {
      std::vector<TinyRecord> records;
      if (i >= 4) records.push_back(Phase(105, 2 + 0.001L * i));
      records.push_back(Phase(3, 5 - 0.002L * i));
      epochs.push_back({Second(i), records});
    }
    Fill(*this, epochs);
    header.SetInterval(1);
  }
};

TEST(SetAmbiguities, EachArcIsAnAmbiguityWithItsMeanL4) {
  TwoSatellites run;
  SetAmbiguities(run.ctx);
  ASSERT_EQ(run.ctx.nAmb, 2);
  EXPECT_EQ(run.ctx.AmbSat(0), 3);
  EXPECT_EQ(run.ctx.AmbSat(1), 105);
  const long expected[2][4] = {{0, 0, 19, 20}, {4, 4, 19, 16}};
  for (long j = 0; j < 2; ++j)
    for (long c = 0; c < 4; ++c) EXPECT_EQ(run.ctx.AmbIndex(j, c), expected[j][c]) << j << c;
  EXPECT_TRUE(Near(run.ctx.xAmb(0), 5 - 0.002L * 9.5L, 1e-17L));
  EXPECT_TRUE(Near(run.ctx.xAmb(1), 2 + 0.001L * 11.5L, 1e-17L));
}

TEST(SetAmbiguities, ArcFileHasRecordsOf18Bytes) {
  TwoSatellites run;
  SetAmbiguities(run.ctx);
  const unsigned char expected[36] = {3,   0, 0, 0, 0, 0, 0, 0, 0, 0, 19, 0, 0, 0, 20, 0, 0, 0,
                                      105, 0, 4, 0, 0, 0, 4, 0, 0, 0, 19, 0, 0, 0, 16, 0, 0, 0};
  EXPECT_EQ(run.ArcFile(), std::string(std::begin(expected), std::end(expected)));
}

TEST(SetAmbiguities, SecondRunInTheFolderOverwritesTheArcFile) {
  TwoSatellites run;
  SetAmbiguities(run.ctx);
  run.ctx.MinObsAmb = 17; // the arc of 105 is too short
  SetAmbiguities(run.ctx);
  EXPECT_EQ(run.ctx.nAmb, 1);
  EXPECT_EQ(run.ArcFile().size(), 18U);
}

TEST(SetAmbiguities, ArcFileThatCanNotBeWrittenChangesNothing) {
  TwoSatellites run;
  std::filesystem::create_directory(run.folder.Name("Ambiq.b"));
  SetAmbiguities(run.ctx);
  EXPECT_EQ(run.ctx.nAmb, 2);
  EXPECT_TRUE(Near(run.ctx.xAmb(0), 5 - 0.002L * 9.5L, 1e-17L));
}

TEST(SetAmbiguities, WithoutPhaseNothingHappens) {
  TwoSatellites run;
  run.ctx.verbose = true;
  run.ctx.ifPhaseObs = false;
  SetAmbiguities(run.ctx);
  EXPECT_EQ(run.ctx.nAmb, 0);
  EXPECT_EQ(run.errors.Text(), "");
  EXPECT_FALSE(std::filesystem::exists(run.folder.Name("Ambiq.b")));
}

TEST(SetAmbiguities, FileOfOneFrequencyHasNoArcs) {
  TwoSatellites run;
  run.header.iL2 = run.header.iL4 = false;
  run.data.L4.Resize(0, 0); // never formed
  SetAmbiguities(run.ctx);
  EXPECT_EQ(run.ctx.nAmb, 0);
  EXPECT_EQ(run.ArcFile(), "");
}

TEST(SetAmbiguities, CutOffIsTheDoubleOfTheDegreesAndExcluded) {
  // 10 degrees: 0.17453292519943295 as a double. One satellite at it, one a bit above.
  constexpr double kTenDegrees = 0.17453292519943295;
  Arcs run;
  std::vector<TinyEpoch> epochs;
  for (int i = 0; i < 20; ++i) {
    TinyRecord at = Phase(3, 5);
    TinyRecord above = Phase(4, 6);
    at.elevation = kTenDegrees;
    above.elevation = std::nextafter(static_cast<long double>(kTenDegrees), 1.0L);
    epochs.push_back({Second(30.0L * i), {at, above}});
  }
  Fill(run, epochs);
  run.header.SetInterval(30);
  run.ctx.MinElevation = 10;
  SetAmbiguities(run.ctx);
  ASSERT_EQ(run.ctx.nAmb, 1);
  EXPECT_EQ(run.ctx.AmbSat(0), 4);
}

TEST(SetAmbiguities, ScreeningTakesItsThresholdsFromTheSettings) {
  // a step of 0.05 m after 1 s: the limit is ThresL40 + dThresL4 * 0
  for (const bool cut : {true, false}) {
    TwoSatellites run;
    for (long i = 10; i < 20; ++i) run.data.L4(i < 4 ? i : 4 + 2 * (i - 4) + 1) += 0.05L;
    run.ctx.MinObsAmb = 10;
    run.ctx.ThresL40 = cut ? 0.04L : 0.06L;
    SetAmbiguities(run.ctx);
    EXPECT_EQ(run.ctx.nAmb, cut ? 3 : 2);
  }
}

TEST(SetAmbiguities, MeanIsTakenOverTheObservationsThatTheArcHas) {
  // Epochs 5 to 7 of 0.2 s: satellite 3 is missing in epoch 6, a gap of 0.4 s that is within the
  // interval + 0.7 s.
  Arcs run;
  std::vector<TinyEpoch> epochs;
  for (int i = 0; i < 10; ++i) {
    std::vector<TinyRecord> records = {Phase(9, 1)};
    if (i == 5) records.push_back(Phase(3, 2));
    if (i == 7) records.push_back(Phase(3, 2.03L));
    epochs.push_back({Second(0.2L * i), records});
  }
  Fill(run, epochs);
  run.header.SetInterval(0.2F);
  run.ctx.MinObsAmb = 2;
  SetAmbiguities(run.ctx);
  ASSERT_EQ(run.ctx.nAmb, 2);
  EXPECT_EQ(run.ctx.AmbSat(0), 3);
  EXPECT_EQ(run.ctx.AmbIndex(0, 0), 5);
  EXPECT_EQ(run.ctx.AmbIndex(0, 2), 7);
  EXPECT_EQ(run.ctx.AmbIndex(0, 3), 2);
  EXPECT_TRUE(Near(run.ctx.xAmb(0), 2.015L, 1e-17L));
}

TEST(SetAmbiguities, MeanCountsValuesBelowTheCutOffWithinTheArc) {
  // The screening leaves the low value out of the count, the mean does not look at elevations.
  Arcs run;
  std::vector<TinyEpoch> epochs;
  for (int i = 0; i < 3; ++i) {
    TinyRecord r = Phase(3, 2 + 0.01L * (i == 1 ? 9 : 0));
    if (i == 1) r.elevation = 0;
    epochs.push_back({Second(0.2L * i), {r}});
  }
  Fill(run, epochs);
  run.header.SetInterval(0.2F);
  run.ctx.MinObsAmb = 2;
  SetAmbiguities(run.ctx);
  ASSERT_EQ(run.ctx.nAmb, 1);
  EXPECT_EQ(run.ctx.AmbIndex(0, 3), 2);
  EXPECT_TRUE(Near(run.ctx.xAmb(0), 2.03L, 1e-17L));
}

TEST(SetAmbiguities, VerboseTellsTheNumber) {
  TwoSatellites run;
  run.ctx.verbose = true;
  SetAmbiguities(run.ctx);
  EXPECT_EQ(run.errors.Text(),
            "Zenta::SetAmbiguities(): SETTING AMBIGUITIES FOR PHASE OBSERVATIONS!\n"
            "Zenta::SetAmbiguities():         Screening L4 linear combination!\n"
            "Zenta::SetAmbiguities():         Storing ambiguities!\n"
            "Zenta::SetAmbiguities():         #of ambiguities: 2\n");
}

} // namespace
