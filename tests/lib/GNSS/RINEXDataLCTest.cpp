#include "GNSS/RINEXData.h"

#include "GNSS/GNSSLinCombs.h"
#include "support/Ends.h"
#include "support/Near.h"
#include "support/ObsStore.h"

#include <functional>

namespace {

constexpr long double kC = 299792458.0L;
constexpr long double kF1 = 1575.42e6L;
constexpr long double kF2 = 1227.60e6L;
// Slot 5 on channel 1.
constexpr long double kF1R = 1602e6L + 562500.0L;
constexpr long double kF2R = 1246e6L + 437500.0L;
constexpr long double kMillisecond = 299792.458L; // [m]

/// One epoch of GPS 5, GLONASS slot 5 and Galileo 5, all with the same observations.
class RINEXDataLC : public testing::Test {
protected:
  RINEXDataLC() {
    GLONASSc::SetFrequency(1, 4);
    obs.AddEpoch(0, {5, 105, 205});
    obs.Build();
    for (long r = 0; r < 3; ++r) {
      obs.data.C1(r) = C1;
      obs.data.P1(r) = P1;
      obs.data.P2(r) = P2;
      obs.data.L1(r) = L1;
      obs.data.L1(r).SetLli(1);
      obs.data.L1(r).SetSs(7);
      obs.data.L2(r) = L2;
    }
  }
  void ExpectValue(const matrix<gnssobs>& table, long r, long double value) {
    ASSERT_EQ(table.Length(), 3);
    EXPECT_TRUE(Near(table(r).GetObs(), value, 1e-9L)) << "record " << r;
    EXPECT_EQ(table(r).GetLli(), 0);
    EXPECT_EQ(table(r).GetSs(), 0);
  }
  void ExpectMissing(const matrix<gnssobs>& table, long r) {
    EXPECT_EQ(table(r).GetObs(), 0);
    EXPECT_EQ(table(r).GetLli(), 0);
  }

  static constexpr long double C1 = 20000000.25L;
  static constexpr long double P1 = 20000001.5L;
  static constexpr long double P2 = 20000007.75L;
  static constexpr long double L1 = 105000000.125L;
  static constexpr long double L2 = 82000000.5L;

  RestoredCoefficients restored;
  ObsStore obs;
  RINEXData& data = obs.data;
};

using RINEXDataLCDeathTest = RINEXDataLC;

TEST_F(RINEXDataLC, CodeDifferences) {
  data.SetLC_PC1();
  data.SetLC_PC4();
  data.SetLC_PP4();
  for (long r = 0; r < 3; ++r) {
    ExpectValue(data.PC1, r, 1.25L);
    ExpectValue(data.PC4, r, 7.5L);
    ExpectValue(data.PP4, r, 6.25L);
  }
  EXPECT_TRUE(obs.header.iPC1 && obs.header.iPC4 && obs.header.iPP4);
}

TEST_F(RINEXDataLC, CodeAndPhaseOnL1) {
  data.SetLC_CLI();
  data.SetLC_CL1();
  ExpectValue(data.CLI, 0, (C1 + kC / kF1 * L1) / 2);
  ExpectValue(data.CLI, 1, (C1 + kC / kF1R * L1) / 2);
  ExpectValue(data.CL1, 0, C1 - kC / kF1 * L1);
  ExpectValue(data.CL1, 1, C1 - kC / kF1R * L1);
  EXPECT_TRUE(obs.header.iCLI && obs.header.iCL1);
}

TEST_F(RINEXDataLC, CombinationsOnL1LeaveTheL2WavelengthAlone) {
  GLC::lamb2 = 7;
  data.SetLC_CLI();
  data.SetLC_CL1();
  EXPECT_EQ(GLC::lamb2, 7);
}

TEST_F(RINEXDataLC, GeometryFreePhase) {
  data.SetLC_L4();
  ExpectValue(data.L4, 0, kC / kF1 * L1 - kC / kF2 * L2);
  ExpectValue(data.L4, 1, kC / kF1R * L1 - kC / kF2R * L2);
  EXPECT_TRUE(obs.header.iL4);
}

TEST_F(RINEXDataLC, OtherSystemsGetTheWavelengthsOfTheRecordBefore) {
  data.SetLC_L4();
  EXPECT_EQ(data.L4(2).GetObs(), data.L4(1).GetObs());
  EXPECT_EQ(GLC::lamb1, GLONASSc::lamb(4, 0));
  EXPECT_EQ(GLC::lamb2, GLONASSc::lamb(4, 1));
  data.L1(1) = 0; // the GLONASS record is missing now: GPS is before Galileo
  data.SetLC_L4();
  EXPECT_EQ(data.L4(2).GetObs(), data.L4(0).GetObs());
}

TEST_F(RINEXDataLC, IonosphereFreePhase) {
  data.SetLC_L3();
  const long double gps =
      (kF1 * kF1 * (kC / kF1 * L1) - kF2 * kF2 * (kC / kF2 * L2)) / (kF1 * kF1 - kF2 * kF2);
  const long double glonass = (81 * (kC / kF1R * L1) - 49 * (kC / kF2R * L2)) / 32; // f1/f2 = 9/7
  ExpectValue(data.L3, 0, gps);
  ExpectValue(data.L3, 1, glonass);
  ExpectValue(data.L3, 2, glonass);
  EXPECT_TRUE(obs.header.iL3);
}

TEST_F(RINEXDataLC, IonosphereFreeCode) {
  data.SetLC_PP3();
  data.SetLC_PC3();
  const long double g1 = kF1 * kF1 / (kF1 * kF1 - kF2 * kF2);
  ExpectValue(data.PP3, 0, g1 * P1 - (g1 - 1) * P2);
  ExpectValue(data.PP3, 1, (81 * P1 - 49 * P2) / 32);
  ExpectMissing(data.PP3, 2);
  ExpectValue(data.PC3, 0, g1 * C1 - (g1 - 1) * P2);
  ExpectValue(data.PC3, 1, (81 * C1 - 49 * P2) / 32);
  ExpectMissing(data.PC3, 2);
  EXPECT_TRUE(obs.header.iPP3 && obs.header.iPC3);
}

TEST_F(RINEXDataLC, IonosphereFreeCodeOfGpsTakesTheCoefficientsThatThePhaseLeft) {
  data.SetLC_L3(); // leaves the GLONASS coefficients of its last records
  data.SetLC_PP3();
  ExpectValue(data.PP3, 0, (81 * P1 - 49 * P2) / 32);
}

TEST_F(RINEXDataLC, MelbourneWuebbenaHasTheGpsLanesForEverySatellite) {
  data.SetLC_MW(false);
  const auto mw = [](long double code, long double lambda1, long double lambda2) {
    return (kF1 * lambda1 * L1 - kF2 * lambda2 * L2) / (kF1 - kF2) -
           (kF1 * code + kF2 * P2) / (kF1 + kF2);
  };
  ExpectValue(data.MW, 0, mw(P1, kC / kF1, kC / kF2));
  ExpectValue(data.MW, 1, mw(P1, kC / kF1R, kC / kF2R));
  data.SetLC_MW(true);
  ExpectValue(data.MW, 0, mw(C1, kC / kF1, kC / kF2));
  EXPECT_TRUE(obs.header.iMW);
}

TEST_F(RINEXDataLC, MelbourneWuebbenaWithoutItsCodeClearsTheFlag) {
  data.SetLC_MW(true);
  const long double before = data.MW(0).GetObs();
  data.P2(0) = 1e7L;
  obs.header.iC1 = false;
  data.SetLC_MW(true);
  EXPECT_FALSE(obs.header.iMW);
  EXPECT_EQ(data.MW(0).GetObs(), before);
  data.SetLC_MW(false);
  EXPECT_TRUE(obs.header.iMW);
  EXPECT_NE(data.MW(0).GetObs(), before);
  for (bool RINEXHeader::*type :
       {&RINEXHeader::iP1, &RINEXHeader::iP2, &RINEXHeader::iL1, &RINEXHeader::iL2}) {
    obs.header.*type = false;
    data.SetLC_MW(false);
    EXPECT_FALSE(obs.header.iMW);
    obs.header.*type = true;
    data.SetLC_MW(false);
    EXPECT_TRUE(obs.header.iMW);
  }
}

TEST_F(RINEXDataLC, MissingInputGivesAMissingCombination) {
  data.L1(0) = 0;
  data.C1(1) = 0.00005L; // below what counts as an observation
  data.P2(2) = 0;
  data.SetLC_CL1();
  data.SetLC_L4();
  data.SetLC_PC1();
  data.SetLC_PC4();
  data.SetLC_MW(true);
  ExpectMissing(data.CL1, 0);
  ExpectMissing(data.CL1, 1);
  ExpectMissing(data.L4, 0);
  EXPECT_FALSE(data.L4(1).IsNull());
  ExpectMissing(data.PC1, 1);
  ExpectMissing(data.PC4, 1);
  ExpectMissing(data.PC4, 2);
  for (long r = 0; r < 3; ++r) ExpectMissing(data.MW, r);
}

TEST_F(RINEXDataLC, MissingTypeLeavesTableAndFlagAsTheyWere) {
  using Builder = void (RINEXData::*)();
  const struct {
    bool RINEXHeader::*type;
    Builder build;
    matrix<gnssobs> RINEXData::*table;
    bool RINEXHeader::*flag;
  } cases[] = {
      {&RINEXHeader::iL1, &RINEXData::SetLC_CLI, &RINEXData::CLI, &RINEXHeader::iCLI},
      {&RINEXHeader::iC1, &RINEXData::SetLC_CLI, &RINEXData::CLI, &RINEXHeader::iCLI},
      {&RINEXHeader::iL1, &RINEXData::SetLC_CL1, &RINEXData::CL1, &RINEXHeader::iCL1},
      {&RINEXHeader::iC1, &RINEXData::SetLC_CL1, &RINEXData::CL1, &RINEXHeader::iCL1},
      {&RINEXHeader::iC1, &RINEXData::SetLC_PC1, &RINEXData::PC1, &RINEXHeader::iPC1},
      {&RINEXHeader::iP1, &RINEXData::SetLC_PC1, &RINEXData::PC1, &RINEXHeader::iPC1},
      {&RINEXHeader::iP1, &RINEXData::SetLC_PP3, &RINEXData::PP3, &RINEXHeader::iPP3},
      {&RINEXHeader::iP2, &RINEXData::SetLC_PP3, &RINEXData::PP3, &RINEXHeader::iPP3},
      {&RINEXHeader::iC1, &RINEXData::SetLC_PC3, &RINEXData::PC3, &RINEXHeader::iPC3},
      {&RINEXHeader::iP2, &RINEXData::SetLC_PC3, &RINEXData::PC3, &RINEXHeader::iPC3},
      {&RINEXHeader::iL1, &RINEXData::SetLC_L3, &RINEXData::L3, &RINEXHeader::iL3},
      {&RINEXHeader::iL2, &RINEXData::SetLC_L3, &RINEXData::L3, &RINEXHeader::iL3},
      {&RINEXHeader::iC1, &RINEXData::SetLC_PC4, &RINEXData::PC4, &RINEXHeader::iPC4},
      {&RINEXHeader::iP2, &RINEXData::SetLC_PC4, &RINEXData::PC4, &RINEXHeader::iPC4},
      {&RINEXHeader::iP1, &RINEXData::SetLC_PP4, &RINEXData::PP4, &RINEXHeader::iPP4},
      {&RINEXHeader::iP2, &RINEXData::SetLC_PP4, &RINEXData::PP4, &RINEXHeader::iPP4},
      {&RINEXHeader::iL1, &RINEXData::SetLC_L4, &RINEXData::L4, &RINEXHeader::iL4},
      {&RINEXHeader::iL2, &RINEXData::SetLC_L4, &RINEXData::L4, &RINEXHeader::iL4},
  };
  for (const auto& c : cases) {
    (data.*c.table).Resize(0, 0);
    obs.header.*c.flag = false;
    obs.header.*c.type = false;
    std::invoke(c.build, data);
    EXPECT_FALSE(obs.header.*c.flag) << &c - cases;
    EXPECT_EQ((data.*c.table).Length(), 0) << &c - cases;
    obs.header.*c.type = true;
    std::invoke(c.build, data);
    EXPECT_TRUE(obs.header.*c.flag) << &c - cases;
    EXPECT_EQ((data.*c.table).Length(), 3) << &c - cases;
  }
}

TEST_F(RINEXDataLC, SecondFormationReplacesTheFirst) {
  data.SetLC_PC1();
  data.P1(0) = P1 + 1;
  data.P1(1) = 0;
  data.SetLC_PC1();
  ExpectValue(data.PC1, 0, 2.25L);
  ExpectMissing(data.PC1, 1);
}

TEST_F(RINEXDataLCDeathTest, GlonassNumberWithoutARowIsReported) {
  data.sat(1) = 100;
  EXPECT_ENDS(data.SetLC_L4(), "MATRIX::ERROR");
}

// ---- Epochs on the grid -----------------------------------------------------------------------

TEST(Corr4ClockError, EpochMovesOntoTheGridAndTheCodesWithIt) {
  ObsStore obs;
  obs.AddEpoch(29.9995L, {5, 6});
  obs.AddEpoch(60.0025L, {5});
  obs.Build();
  RINEXData& data = obs.data;
  for (matrix<gnssobs>* table : {&data.C1, &data.P1, &data.P2, &data.C5, &data.C2, &data.L1}) {
    (*table)(0) = 2e7L;
    (*table)(2) = 2e7L;
  }
  data.C1(0).SetLli(3);
  data.Corr4ClockError();
  EXPECT_TRUE(Near(data.epoch(0).GetSecond(), 30, 1e-9L));
  EXPECT_TRUE(Near(data.epoch(1).GetSecond(), 60, 1e-9L));
  for (const matrix<gnssobs>* table : {&data.C1, &data.P1, &data.P2, &data.C5}) {
    EXPECT_TRUE(Near((*table)(0).GetObs(), 2e7L + 149896.229L, 1e-3L));
    EXPECT_EQ((*table)(1).GetObs(), 0);
    EXPECT_TRUE(Near((*table)(2).GetObs(), 2e7L - 5 * 149896.229L, 1e-3L));
  }
  EXPECT_EQ(data.C1(0).GetLli(), 3);
  EXPECT_EQ(data.C2(0).GetObs(), 2e7L);
  EXPECT_EQ(data.L1(0).GetObs(), 2e7L);
}

TEST(Corr4ClockError, MidnightIsReachedFromBelow) {
  ObsStore obs;
  obs.AddEpoch(86399.999L, {5});
  obs.Build();
  obs.data.Corr4ClockError();
  EXPECT_EQ(obs.data.epoch(0).GetMJDay(), 55845U);
  EXPECT_TRUE(Near(obs.data.epoch(0).GetSecond(), 0, 1e-9L));
}

TEST(Corr4ClockError, HalfAnIntervalMovesOn) {
  ObsStore obs;
  obs.AddEpoch(45, {5});
  obs.Build();
  obs.data.Corr4ClockError();
  EXPECT_TRUE(Near(obs.data.epoch(0).GetSecond(), 60, 1e-9L));
}

TEST(Corr4ClockError, TypeThatTheHeaderDoesNotListIsNotMoved) {
  ObsStore obs;
  obs.AddEpoch(29.9995L, {5});
  obs.Build();
  RINEXData& data = obs.data;
  const struct {
    bool RINEXHeader::*type;
    gnssobs& code;
  } codes[] = {{&RINEXHeader::iC1, data.C1(0)},
               {&RINEXHeader::iP1, data.P1(0)},
               {&RINEXHeader::iP2, data.P2(0)},
               {&RINEXHeader::iC5, data.C5(0)}};
  for (const auto& missing : codes) {
    for (const auto& c : codes) {
      c.code = 2e7L;
      obs.header.*c.type = c.type != missing.type;
    }
    data.epoch(0) = mjd(55844, 29.9995L);
    data.Corr4ClockError();
    for (const auto& c : codes)
      EXPECT_EQ(c.code.GetObs() == 2e7L, c.type == missing.type) << &missing - codes << &c - codes;
  }
}

TEST(Corr4ClockError, NoIntervalMovesNothing) {
  ObsStore obs;
  obs.AddEpoch(29.9995L, {5});
  obs.Build();
  obs.header.SetInterval(0);
  obs.data.Corr4ClockError();
  EXPECT_EQ(obs.data.epoch(0).GetSecond(), 29.9995L);
}

// ---- Millisecond jumps ------------------------------------------------------------------------

/// Four epochs of two GPS satellites; code and phase agree but for what a test adds.
class CorrMSJumps : public testing::Test {
protected:
  CorrMSJumps() {
    for (int i = 0; i < 4; ++i) obs.AddEpoch(30 * i, {5, 7});
    obs.Build();
    for (long r = 0; r < 8; ++r) {
      obs.data.C1(r) = 2e7L + 100.0L * static_cast<long double>(r / 2);
      obs.data.L1(r) = obs.data.C1(r).GetObs() / GNSSc::lamb1;
      obs.data.L2(r) = obs.data.C1(r).GetObs() / GNSSc::lamb2;
    }
    before = obs.data.L1;
    before2 = obs.data.L2;
  }
  /// Adds \p metres to the code of \p sat from epoch \p i on.
  void Jump(long i, short sat, long double metres) {
    for (; i < 4; ++i) obs.data.C1(obs.Record(i, sat)) += metres;
  }
  long Count() {
    long njumps = -1;
    obs.data.CorrMSJumps(njumps);
    return njumps;
  }
  void ExpectPhaseMoved(long r, long double metres) {
    EXPECT_TRUE(Near(obs.data.L1(r).GetObs() - before(r).GetObs(), metres / GNSSc::lamb1, 1e-6L))
        << r;
    EXPECT_TRUE(Near(obs.data.L2(r).GetObs() - before2(r).GetObs(), metres / GNSSc::lamb2, 1e-6L))
        << r;
  }

  RestoredCoefficients restored;
  ObsStore obs;
  matrix<gnssobs> before;
  matrix<gnssobs> before2;
};

TEST_F(CorrMSJumps, JumpAtTheLastEpochIsOne) {
  Jump(3, 5, kMillisecond);
  Jump(3, 7, kMillisecond);
  EXPECT_EQ(Count(), 1);
  for (long r = 0; r < 6; ++r) ExpectPhaseMoved(r, 0);
  for (long r = 6; r < 8; ++r) ExpectPhaseMoved(r, kMillisecond);
}

// The phase of epoch 1, once moved, lies a millisecond off that of epoch 2, and so on.
TEST_F(CorrMSJumps, EveryLaterEpochIsMovedAndCounted) {
  Jump(1, 5, kMillisecond);
  Jump(1, 7, kMillisecond);
  EXPECT_EQ(Count(), 3);
  for (long r = 0; r < 2; ++r) ExpectPhaseMoved(r, 0);
  for (long r = 2; r < 8; ++r) ExpectPhaseMoved(r, kMillisecond);
}

TEST_F(CorrMSJumps, SignOfTheJumpIsDropped) {
  Jump(3, 5, -2 * kMillisecond);
  Jump(3, 7, -2 * kMillisecond);
  EXPECT_EQ(Count(), 1);
  ExpectPhaseMoved(7, 2 * kMillisecond);
}

TEST_F(CorrMSJumps, PartsOfAMillisecondAreNoJump) {
  Jump(2, 5, 0.4L * kMillisecond);
  Jump(2, 7, 0.4L * kMillisecond);
  EXPECT_EQ(Count(), 0);
  Jump(3, 5, 1.00002L * kMillisecond);
  Jump(3, 7, 1.00002L * kMillisecond);
  EXPECT_EQ(Count(), 0);
  for (long r = 0; r < 8; ++r) ExpectPhaseMoved(r, 0);
}

TEST_F(CorrMSJumps, AHundredthOfAThousandthOffIsStillAJump) {
  Jump(3, 5, 1.000009L * kMillisecond);
  Jump(3, 7, 1.000009L * kMillisecond);
  EXPECT_EQ(Count(), 1);
  ExpectPhaseMoved(7, kMillisecond);
}

TEST_F(CorrMSJumps, LastSatelliteComparedTellsTheSize) {
  Jump(3, 5, kMillisecond); // 7 shows none: counted, but of size 0
  EXPECT_EQ(Count(), 1);
  for (long r = 0; r < 8; ++r) ExpectPhaseMoved(r, 0);
}

TEST_F(CorrMSJumps, SatelliteWithoutObservationIsNotCompared) {
  Jump(3, 5, kMillisecond);
  Jump(3, 7, kMillisecond);
  obs.data.C1(obs.Record(3, 7)) = 0;
  obs.data.L2(obs.Record(3, 7)) = 0;
  EXPECT_EQ(Count(), 1);
  ExpectPhaseMoved(6, kMillisecond);
  EXPECT_EQ(obs.data.L2(7).GetObs(), 0);
}

TEST_F(CorrMSJumps, PhaseThatTheHeaderDoesNotListStays) {
  Jump(3, 5, kMillisecond);
  Jump(3, 7, kMillisecond);
  obs.header.iL2 = false;
  EXPECT_EQ(Count(), 1);
  EXPECT_EQ(obs.data.L2(7).GetObs(), before2(7).GetObs());
}

TEST_F(CorrMSJumps, WithoutCodeOrPhaseThereIsNothingToCompare) {
  Jump(3, 5, kMillisecond);
  obs.header.iC1 = false;
  EXPECT_EQ(Count(), 0);
  obs.header.iC1 = true;
  obs.header.iL1 = false;
  EXPECT_EQ(Count(), 0);
}

TEST(CorrMSJumpsGlonass, PhaseMovesByTheWavelengthOfTheChannelIfThereIsOne) {
  const RestoredCoefficients restored;
  GLONASSc::SetFrequency(1, 4);
  ObsStore obs;
  obs.AddEpoch(0, {5, 105, 106, 205});
  obs.AddEpoch(30, {5, 105, 106, 205});
  obs.Build();
  for (long r = 0; r < 8; ++r) {
    obs.data.C1(r) = 2e7L + (r < 4 ? 0 : kMillisecond);
    obs.data.L1(r) = 1e8L;
    obs.data.L2(r) = 1e8L;
  }
  long njumps = 0;
  obs.data.CorrMSJumps(njumps);
  EXPECT_EQ(njumps, 1);
  EXPECT_TRUE(Near(obs.data.L1(5).GetObs(), 1e8L + kMillisecond * kF1R / kC, 1e-6L));
  EXPECT_TRUE(Near(obs.data.L2(5).GetObs(), 1e8L + kMillisecond * kF2R / kC, 1e-6L));
  EXPECT_EQ(obs.data.L1(6).GetObs(), 1e8L); // slot 6 has no channel
  EXPECT_EQ(obs.data.L1(7).GetObs(), 1e8L); // Galileo
}

TEST(CorrMSJumpsGlonass, WavelengthOfACentimetreIsThatOfNoCarrier) {
  const RestoredCoefficients restored;
  for (const auto& [lambda, jumps] : {std::pair{0.0099L, 0}, {0.0101L, 1}, {-0.0101L, 1}}) {
    GLONASSc::lamb(4, 0) = lambda;
    GLONASSc::lamb(4, 1) = 0.0099L;
    ObsStore obs;
    obs.AddEpoch(0, {105});
    obs.AddEpoch(30, {105});
    obs.Build();
    obs.data.C1(0) = 2e7L;
    obs.data.C1(1) = 2e7L + kMillisecond;
    for (long r = 0; r < 2; ++r) obs.data.L1(r) = obs.data.L2(r) = 1e8L;
    long njumps = -1;
    obs.data.CorrMSJumps(njumps);
    EXPECT_EQ(njumps, jumps) << lambda;
    EXPECT_TRUE(Near(obs.data.L1(1).GetObs(), 1e8L + jumps * kMillisecond / lambda, 1e-6L));
    EXPECT_EQ(obs.data.L2(1).GetObs(), 1e8L);
  }
}

TEST(CorrMSJumpsPairs, NoMoreThanAHundredSatellitesAreCompared) {
  const RestoredCoefficients restored;
  std::vector<short> satellites;
  for (short s = 1; s < 100; ++s) satellites.push_back(s);
  for (short s = 101; s < 104; ++s) {
    satellites.push_back(s);
    GLONASSc::SetFrequency(0, static_cast<short>(s - 101));
  }
  ObsStore obs;
  obs.AddEpoch(0, satellites);
  obs.AddEpoch(30, satellites);
  obs.Build();
  for (long r = 0; r < obs.data.nsatall; ++r) {
    obs.data.C1(r) = 2e7L;
    obs.data.L1(r) = 1e8L;
  }
  long njumps = -1;
  obs.data.C1(obs.Record(1, 102)) += kMillisecond; // the 101st
  obs.data.CorrMSJumps(njumps);
  EXPECT_EQ(njumps, 0);
  obs.data.C1(obs.Record(1, 101)) += kMillisecond; // the 100th
  obs.data.CorrMSJumps(njumps);
  EXPECT_EQ(njumps, 1);
}

TEST(CorrMSJumpsPairs, EmptyStoreHasNoJumps) {
  RINEXHeader header;
  RINEXData data(header);
  header.iC1 = header.iL1 = true;
  long njumps = -1;
  data.CorrMSJumps(njumps);
  EXPECT_EQ(njumps, 0);
}

} // namespace
