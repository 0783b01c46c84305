#include "ListFiles.h"
#include "Constellation.h"
#include "GNSS/ClkErr.h"
#include "GNSS/DCB.h"
#include "GNSS/GLNSat.h"
#include "GNSS/RecCodeTrack.h"
#include "GNSS/gCRD.h"
#include "support/Files.h"
#include "support/Near.h"
#include <gtest/gtest.h>

using namespace sim;

TEST(ListFiles, BiasesAreReadBackForEverySatellite) {
  const Scenario s;
  const auto biases = MakeBiases(s);
  const ScratchFolder folder;
  DCB p1p2, p1c1, p2c2;
  const auto read = [&](DCB& dcb, const char* name, BiasKind kind) {
    dcb.SetFile(folder.Write(name, BiasFileText(kind, s, biases)).c_str());
    dcb.ReadFile();
  };
  read(p1p2, "P1P21110.DCB", BiasKind::kP1P2);
  read(p1c1, "P1C11110.DCB", BiasKind::kP1C1);
  read(p2c2, "P2C21110.DCB", BiasKind::kP2C2);
  ASSERT_EQ(biases.size(), 56u);
  for (const auto& [sat, bias] : biases) {
    EXPECT_TRUE(Near(p1p2.GetDCBVAL(sat), bias.p1p2 * 1e-9L, 1e-20L));
    EXPECT_TRUE(Near(p1c1.GetDCBVAL(sat), bias.p1c1 * 1e-9L, 1e-20L));
    EXPECT_TRUE(Near(p2c2.GetDCBVAL(sat), bias.p2c2 * 1e-9L, 1e-20L));
    EXPECT_TRUE(Near(p1p2.GetDCBRMS(sat), 0.01e-9L, 1e-20L));
  }
}

TEST(ListFiles, ReceiversOfTheListHaveTheirClasses) {
  const ScratchFolder folder;
  RecCodeTrack list;
  list.SetFile(folder.Write("RECEIVER.LST", ReceiverListText()).c_str());
  EXPECT_EQ(list.GetRecCodeTrack(ReceiverName(Tracking::kP1P2).c_str()), 0);
  EXPECT_EQ(list.GetRecCodeTrack(ReceiverName(Tracking::kC1P2).c_str()), 1);
  EXPECT_EQ(list.GetRecCodeTrack(ReceiverName(Tracking::kC1X2).c_str()), 2);
}

TEST(ListFiles, ChannelsAreThoseOfThePresentPeriod) {
  const ScratchFolder folder;
  GLNSat list;
  list.SetFile(folder.Write("glonass.chn", ChannelListText()).c_str());
  list.ReadFile();
  for (short slot = 1; slot <= kGlonassSatellites; ++slot) {
    const short sat = static_cast<short>(100 + slot);
    EXPECT_EQ(list.GetFreqNum(sat, mjd(55844, 0)), GlonassChannel(slot));
    EXPECT_TRUE(list.GetIsGLNSat());
    EXPECT_EQ(list.GetFreqNum(sat, mjd(51000, 0)), GlonassChannel(slot) + 1); // July 1998
  }
}

TEST(ListFiles, ClockCorrectionsAreReadBackEpochByEpoch) {
  Scenario s;
  s.duration = 600;
  s.withClock = true;
  s.clockOffset = 123.456;
  s.clockDrift = -0.25;
  const EpochTable table = MakeEpochs(s);
  const ScratchFolder folder;
  ClkErr clock;
  clock.SetFile(folder.Write("simu.clk", ClockFileText(table.epochs)).c_str());
  clock.ReadFile();
  ASSERT_EQ(clock.GetNEpoch(), 20);
  for (long i = 0; i < 20; ++i) {
    // 123.456 microseconds at first, 7.5 less every 30 s.
    EXPECT_TRUE(Near(clock.GetClkErr(i), (123.456L - 7.5L * i) * 1e-6L, 1e-17L)) << i;
  }
}

TEST(ListFiles, StationIsFoundAndMovedToTheEpoch) {
  Scenario s;
  const StationMotion motion = {
      {4297150.8972, 1111318.7846, 4565463.3427}, {-0.01, 0.02, 0.03}, mjd(53371, 0)}; // 2005-01-01
  const ScratchFolder folder;
  gCRD coordinates;
  coordinates.SetFile(folder.Write("simu.crd", CoordinateFileText(s, motion)).c_str());
  const mjd epoch(55562, 0); // 2011-01-01, six years later
  const xyz found = coordinates.GetCRD("SIMU", "10001M001", epoch);
  EXPECT_TRUE(coordinates.IsSite());
  EXPECT_TRUE(Near(found.GetX(), 4297150.8372L, 1e-6L));
  EXPECT_TRUE(Near(found.GetY(), 1111318.9046L, 1e-6L));
  EXPECT_TRUE(Near(found.GetZ(), 4565463.5227L, 1e-6L));
}
