#include "SetUnknowns.h"

#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Near.h"
#include "support/TinyRun.h"

namespace {

/// A store of \p n epochs, \p step s apart, each with the records that \p at gives.
template <typename At> std::vector<TinyEpoch> Epochs(long n, long double step, At at) {
  std::vector<TinyEpoch> epochs;
  for (long i = 0; i < n; ++i) {
    mjd t(55844, 0);
    t += step * static_cast<long double>(i);
    epochs.push_back({t, at(i)});
  }
  return epochs;
}

TinyRecord Observed(short sat) {
  TinyRecord r;
  r.sat = sat;
  r.C1 = 2.0e7L;
  r.P1 = 2.0e7L + 1;
  r.P2 = 2.0e7L + 3;
  r.L4 = 5;
  return r;
}

TinyRecord WithoutP1(short sat) {
  TinyRecord r = Observed(sat);
  r.P1 = 0;
  return r;
}

struct Layout : TinyRun {
  Captured errors{std::cerr};

  void Intervals(long n, long double step, long double interval) {
    Fill(*this, Epochs(n, step, [](long) { return std::vector<TinyRecord>{Observed(1)}; }));
    ctx.ifEstION = true;
    ctx.NIonUnkT = 2;
    ctx.IonoInterval = interval;
    SetUnknowns(ctx);
  }
};

// ---- Biases ----------------------------------------------------------------------------------

TEST(SetUnknowns, ReceiverBiasNeedsMoreThanTenGpsValues) {
  for (const long n : {10L, 11L}) {
    Layout run;
    // GLONASS values do not count
    Fill(run, Epochs(n, 30, [](long) { return std::vector{Observed(1), Observed(103)}; }));
    run.ctx.ifEstREC = true;
    SetUnknowns(run.ctx);
    EXPECT_EQ(run.ctx.isxP1C1, n == 11);
    EXPECT_EQ(run.ctx.isxP2C1, n == 11);
    EXPECT_EQ(run.ctx.ixP1C1, n == 11 ? 0 : -1);
    EXPECT_EQ(run.ctx.ixP2C1, n == 11 ? 1 : -1);
    EXPECT_EQ(run.ctx.NUnk, n == 11 ? 2 : 0);
  }
}

TEST(SetUnknowns, WithoutP1C1TheReceiverP2C1ComesFirst) {
  Layout run;
  Fill(run, Epochs(11, 30, [](long) { return std::vector{Observed(1)}; }));
  run.header.iPC1 = false;
  run.ctx.ifEstREC = true;
  SetUnknowns(run.ctx);
  EXPECT_FALSE(run.ctx.isxP1C1);
  EXPECT_EQ(run.ctx.ixP2C1, 0);
}

TEST(SetUnknowns, WithoutP2C1TheReceiverHasP1C1Alone) {
  Layout run;
  Fill(run, Epochs(11, 30, [](long) { return std::vector{Observed(1)}; }));
  run.header.iPC4 = false;
  run.ctx.ifEstREC = true;
  run.ctx.isxP2C1 = true;
  SetUnknowns(run.ctx);
  EXPECT_FALSE(run.ctx.isxP2C1);
  EXPECT_EQ(run.ctx.ixP1C1, 0);
  EXPECT_EQ(run.ctx.NUnk, 1);
}

TEST(SetUnknowns, SatelliteBiasNeedsThreeValues) {
  Layout run;
  Fill(run, Epochs(3, 30, [](long i) {
         return std::vector{Observed(1), i < 2 ? Observed(2) : WithoutP1(2)};
       }));
  run.ctx.ifEstGPS = true;
  SetUnknowns(run.ctx);
  EXPECT_EQ(run.ctx.nP1C1g, 1);
  EXPECT_EQ(run.ctx.nP2C1g, 2);
  // all P1-C1 unknowns before all P2-C1 unknowns
  EXPECT_EQ(run.ctx.ixbSAT(0, 0), 0);
  EXPECT_EQ(run.ctx.ixbSAT(1, 0), -1);
  EXPECT_EQ(run.ctx.ixbSAT(0, 1), 1);
  EXPECT_EQ(run.ctx.ixbSAT(1, 1), 2);
}

TEST(SetUnknowns, GlonassBiasesFollowTheReceivers) {
  Layout run;
  Fill(run, Epochs(11, 30, [](long) { return std::vector{Observed(1), Observed(103)}; }));
  run.ctx.ifEstREC = run.ctx.ifEstGLN = true;
  SetUnknowns(run.ctx);
  EXPECT_EQ(run.ctx.ixbSAT(1, 0), 2);
  EXPECT_EQ(run.ctx.ixbSAT(1, 1), 3);
  EXPECT_EQ(run.ctx.NUnkDCB, 4);
}

TEST(SetUnknowns, BlocksFollowEachOtherWithoutHoles) {
  // GPS 1 and 2, GLONASS 103, two arcs, two intervals: 2 + 2, 1 + 1, 2, 4
  Layout run;
  Fill(run, Epochs(22, 30, [](long) {
         return std::vector{Observed(1), Observed(2), Observed(103)};
       }));
  AddArc(run, 1, 0, 9);
  AddArc(run, 103, 0, 21);
  run.ctx.ifEstGPS = run.ctx.ifEstGLN = run.ctx.ifEstION = true;
  run.ctx.NIonUnkT = 2;
  run.ctx.IonoInterval = 300;
  SetUnknowns(run.ctx);
  const long bias[3][2] = {{0, 2}, {1, 3}, {4, 5}};
  for (long j = 0; j < 3; ++j)
    for (long c = 0; c < 2; ++c) EXPECT_EQ(run.ctx.ixbSAT(j, c), bias[j][c]) << j << c;
  EXPECT_EQ(run.ctx.NUnkDCB, 6);
  EXPECT_EQ(run.ctx.ixAmb(0), 6);
  EXPECT_EQ(run.ctx.ixAmb(1), 7);
  EXPECT_EQ(run.ctx.NUnk, 12);
  // the constraint starts at the delay behind the ambiguities
  EXPECT_EQ(run.ctx.Nall(12, 8), 1);
  EXPECT_EQ(run.ctx.Nall(12, 10), -1);
  EXPECT_EQ(run.ctx.Nall.NRow(), 13);
  EXPECT_EQ(run.ctx.tall.NRow(), 13);
  EXPECT_EQ(run.ctx.ObsPerUnk.NRow(), 12);
}

TEST(SetUnknowns, SatelliteOfAnotherSystemGetsNoBias) {
  Layout run;
  Fill(run, Epochs(11, 30, [](long) { return std::vector{Observed(99), Observed(200)}; }));
  run.ctx.ifEstGPS = run.ctx.ifEstGLN = true;
  SetUnknowns(run.ctx);
  EXPECT_EQ(run.ctx.ixbSAT(0, 0), 0);
  EXPECT_EQ(run.ctx.ixbSAT(1, 0), -1);
  EXPECT_EQ(run.ctx.ixbSAT(1, 1), -1);
}

TEST(SetUnknowns, EmptyLayoutIsNotReported) {
  Layout run;
  Fill(run, Epochs(2, 30, [](long) { return std::vector{Observed(1)}; }));
  run.ctx.ifEstREC = true;
  run.ctx.ifPhaseObs = false;
  SetUnknowns(run.ctx);
  EXPECT_EQ(run.ctx.NUnk, 0);
  EXPECT_EQ(run.ctx.Nall.Length(), 0);
  EXPECT_EQ(run.errors.Text(), "");
  EXPECT_EQ(run.ctx.ixbSAT.NRow(), 1); // there for every run
}

TEST(SetUnknowns, ValuesStartAtZeroAndFirstAmbiguitiesStay) {
  Layout run;
  Fill(run, Epochs(11, 30, [](long) { return std::vector{Observed(1)}; }));
  AddArc(run, 1, 0, 10, 12.5L);
  run.ctx.xP1C1 = run.ctx.xP2C1 = 9;
  run.ctx.ifEstREC = run.ctx.ifEstION = run.ctx.ifEstIGrad = true;
  run.ctx.NIonUnkT = 4;
  run.ctx.IonoInterval = 300;
  SetUnknowns(run.ctx);
  EXPECT_EQ(run.ctx.xP1C1, 0);
  EXPECT_EQ(run.ctx.xP2C1, 0);
  EXPECT_EQ(run.ctx.xAmb(0), 12.5L);
  for (const matrix<long double>* table : {&run.ctx.xbSAT, &run.ctx.xION, &run.ctx.xIGRAD}) {
    ASSERT_EQ(table->NRow(), 1);
    ASSERT_EQ(table->NCol(), 2);
    EXPECT_EQ((*table)(0, 0), 0);
    EXPECT_EQ((*table)(0, 1), 0);
  }
}

TEST(SetUnknowns, VerboseHeadsTheCountsOfTheSatellites) {
  Layout run;
  Fill(run, Epochs(3, 30, [](long) { return std::vector{Observed(1), Observed(103)}; }));
  run.ctx.verbose = run.ctx.ifEstGPS = run.ctx.ifEstGLN = true;
  run.ctx.ifPhaseObs = false;
  SetUnknowns(run.ctx);
  EXPECT_EQ(run.errors.Text(),
            "Zenta::SetUnknowns(): SETTING UNKNOWNS IN ESTIMATION!\n"
            "Zenta::SetUnknowns():         GPS satellite differential code biases:"
            "  #P1C1    1    #P2C1    1\n"
            "Zenta::SetUnknowns():         GLONASS satellite differential code biases:"
            "  #P1C1    1    #P2C1    1\n"
            "Zenta::SetUnknowns():         FINAL:    xR_P1C1[0]  xR_P2C1[0]  xG_P1C1[1]"
            "  xG_P2C1[1]  xR_P1C1[1]  xR_P2C1[1]  xAMB[0]  xION[0]\n"
            "Zenta::SetUnknowns():                   DCB[4]  AMB[0]  ION[0]  ->  #UNK: 4\n");
}

TEST(SetUnknowns, CountsLineIsWrittenWithoutVerbose) {
  Layout run;
  Fill(run, Epochs(3, 30, [](long) { return std::vector{Observed(1), Observed(103)}; }));
  run.ctx.ifEstGPS = run.ctx.ifEstGLN = true;
  SetUnknowns(run.ctx);
  EXPECT_EQ(run.errors.Text(), "  #P1C1    1    #P2C1    1\n  #P1C1    1    #P2C1    1\n");
}

TEST(SetUnknowns, VerboseTellsTheLayout) {
  Layout run;
  Fill(run, Epochs(11, 30, [](long) { return std::vector{Observed(1)}; }));
  run.ctx.verbose = run.ctx.ifEstREC = run.ctx.ifEstION = true;
  run.ctx.NIonUnkT = 2;
  run.ctx.IonoInterval = 300;
  AddArc(run, 1, 0, 10);
  SetUnknowns(run.ctx);
  EXPECT_EQ(run.errors.Text(),
            "Zenta::SetUnknowns(): SETTING UNKNOWNS IN ESTIMATION!\n"
            "Zenta::SetUnknowns():         Receiver GPS differential code biases: P1C1-DCB [0]"
            " P2C1-DCB [1]\n"
            "Zenta::SetUnknowns():         IONOSPHERE delay unknowns:  #intervals: 1"
            "  #unknowns: 2  #constraints: 0\n"
            "Zenta::SetUnknowns():         FINAL:    xR_P1C1[1]  xR_P2C1[1]  xG_P1C1[0]"
            "  xG_P2C1[0]  xR_P1C1[0]  xR_P2C1[0]  xAMB[1]  xION[2]\n"
            "Zenta::SetUnknowns():                   DCB[2]  AMB[1]  ION[2]  ->  #UNK: 5\n");
}

// ---- Intervals -------------------------------------------------------------------------------

TEST(SetIonoIntervals, SpanIsCutWhereItExceedsTheInterval) {
  // 0, 30, ..., 1170 s at 300 s: an interval starts at the first epoch more than 300 s behind
  // the last start, so at 0, 330, 660, 990; the rest 990..1170 is 180 s >= 75 s
  Layout run;
  run.Intervals(40, 30, 300);
  ASSERT_EQ(run.ctx.nIono, 4);
  const long first[] = {0, 11, 22, 33};
  const long last[] = {10, 21, 32, 39};
  for (long k = 0; k < 4; ++k) {
    EXPECT_EQ(run.ctx.IonoEstInd(k, 0), first[k]) << k;
    EXPECT_EQ(run.ctx.IonoEstInd(k, 1), last[k]) << k;
  }
  EXPECT_EQ(run.ctx.nIonoUnk, 8);
  EXPECT_EQ(run.ctx.nIonoConst, 3);
  EXPECT_EQ(run.ctx.Nall.NRow(), 11);
}

TEST(SetIonoIntervals, ConstraintCarriesTheDelayToTheNextInterval) {
  Layout run;
  run.Intervals(40, 30, 300);
  // row 8: delay 0 + rate 0 * 330/3600 - delay 1 = 0
  const matrix<long double>& N = run.ctx.Nall;
  EXPECT_EQ(N(8, 0), 1);
  EXPECT_TRUE(Near(N(8, 1), 330.0L / 3600.0L, 1e-18L));
  EXPECT_EQ(N(8, 2), -1);
  for (long j = 0; j < 11; ++j) EXPECT_EQ(N(8, j), N(j, 8)) << j;
  EXPECT_EQ(N(9, 2), 1);
  EXPECT_EQ(N(9, 4), -1);
  EXPECT_EQ(run.ctx.tall(8), 0);
}

TEST(SetIonoIntervals, WithGradientsTheThirdCoefficientFallsOnTheEastGradient) {
  Layout run;
  Fill(run, Epochs(22, 30, [](long) { return std::vector{Observed(1)}; }));
  run.ctx.ifEstION = run.ctx.ifEstIGrad = true;
  run.ctx.NIonUnkT = 4;
  run.ctx.IonoInterval = 300;
  SetUnknowns(run.ctx);
  ASSERT_EQ(run.ctx.nIono, 2);
  EXPECT_EQ(run.ctx.Nall(8, 2), -1); // u + 2
  EXPECT_EQ(run.ctx.Nall(8, 4), 0);  // the delay of interval 1
  EXPECT_EQ(run.ctx.xIGRAD.NRow(), 2);
}

TEST(SetIonoIntervals, ShortRestOfTheLastBlockOverwritesTheLastRecord) {
  // 23 epochs of 30 s at 300 s: intervals 0..10, 11..21, the rest 22 has a span of 0 < 75 s
  Layout run;
  run.Intervals(23, 30, 300);
  ASSERT_EQ(run.ctx.nIono, 2);
  EXPECT_EQ(run.ctx.IonoEstInd(0, 0), 0);
  EXPECT_EQ(run.ctx.IonoEstInd(0, 1), 10);
  EXPECT_EQ(run.ctx.IonoEstInd(1, 0), 22);
  EXPECT_EQ(run.ctx.IonoEstInd(1, 1), 21);
}

TEST(SetIonoIntervals, RestOfAQuarterOfTheIntervalStands) {
  // 0..300, 330..., the last start at 330 s and a rest of 75 s needs a step that divides it: 15 s
  // steps: starts at 0 and 315; 315 + 75 = 390 is epoch 26
  for (const long n : {26L, 27L}) {
    Layout run;
    run.Intervals(n, 15, 300);
    // 26 epochs: rest 315..375 is 60 s and is joined; 27 epochs: 315..390 is 75 s and stands
    EXPECT_EQ(run.ctx.nIono, n == 27 ? 2 : 1);
    EXPECT_EQ(run.ctx.IonoEstInd(0, 0), n == 27 ? 0 : 25);
    EXPECT_EQ(run.ctx.IonoEstInd(0, 1), 20);
  }
}

TEST(SetIonoIntervals, WithoutIntervalEachEpochIsOne) {
  Layout run;
  run.Intervals(5, 30, 0);
  ASSERT_EQ(run.ctx.nIono, 5);
  for (long k = 0; k < 5; ++k) {
    EXPECT_EQ(run.ctx.IonoEstInd(k, 0), k);
    EXPECT_EQ(run.ctx.IonoEstInd(k, 1), k);
  }
  EXPECT_EQ(run.ctx.nIonoConst, 4);
}

/// Blocks of epochs 30 s apart with 1000 s between them.
std::vector<TinyEpoch> Blocks(std::initializer_list<long> lengths) {
  std::vector<TinyEpoch> epochs;
  mjd t(55844, 0);
  for (const long length : lengths) {
    for (long i = 0; i < length; ++i) {
      epochs.push_back({t, {Observed(1)}});
      t += 30.0L;
    }
    t += 970.0L;
  }
  return epochs;
}

struct BlockLayout : Layout {
  explicit BlockLayout(std::initializer_list<long> lengths) {
    Fill(*this, Blocks(lengths));
    ctx.ifEstION = true;
    ctx.NIonUnkT = 2;
    ctx.IonoInterval = 300;
    SetUnknowns(ctx);
  }
};

TEST(SetIonoIntervals, GapBreaksTheChain) {
  BlockLayout run({8, 8});
  ASSERT_EQ(run.ctx.nIono, 2);
  EXPECT_EQ(run.ctx.IonoEstInd(0, 1), 7);
  EXPECT_EQ(run.ctx.IonoEstInd(1, 0), 8);
  EXPECT_EQ(run.ctx.IonoEstInd(1, 1), 15);
  EXPECT_EQ(run.ctx.nIonoConst, 0);
}

TEST(SetIonoIntervals, BlockOfThreeEpochsBetweenGapsGetsNone) {
  BlockLayout three({8, 3, 8});
  EXPECT_EQ(three.ctx.nIono, 2);
  EXPECT_EQ(three.ctx.IonoEstInd(1, 0), 11);
  BlockLayout four({8, 4, 8}); // 90 s >= 75 s
  EXPECT_EQ(four.ctx.nIono, 3);
  EXPECT_EQ(four.ctx.IonoEstInd(1, 0), 8);
  EXPECT_EQ(four.ctx.IonoEstInd(1, 1), 11);
}

TEST(SetIonoIntervals, GapBeforeTheLastEpochIsNotLookedAt) {
  BlockLayout run({8, 1});
  // one block of 9 epochs; 1000 s behind the start the last epoch begins an interval of its own,
  // whose rest of 0 s is joined
  EXPECT_EQ(run.ctx.nIono, 1);
  EXPECT_EQ(run.ctx.IonoEstInd(0, 0), 8);
}

TEST(SetIonoIntervals, JoinedRestOfAnInnerBlockLeavesTheTableOneRecordShort) {
  // block 1: 0..10 and a rest of one epoch (11); block 2: 12..19. Records (0, 10) -> (11, 12)
  // by the overwriting, then 19 alone; the count is 0 + 1 for the whole
  BlockLayout run({12, 8});
  EXPECT_EQ(run.ctx.nIono, 1);
  EXPECT_EQ(run.ctx.IonoEstInd(0, 0), 11);
  EXPECT_EQ(run.ctx.IonoEstInd(0, 1), 12);
}

TEST(SetIonoIntervals, GapOfTheLimitItselfBreaksNothing) {
  // 601 s between two epochs is no gap; intervals of 1200 s
  for (const long double gap : {601.0L, 601.001L}) {
    Layout run;
    std::vector<TinyEpoch> epochs;
    mjd t(55844, 0);
    for (long i = 0; i < 16; ++i) {
      epochs.push_back({t, {Observed(1)}});
      t += i == 7 ? gap : 60.0L;
    }
    Fill(run, epochs);
    run.ctx.ifEstION = true;
    run.ctx.NIonUnkT = 2;
    run.ctx.IonoInterval = 1200;
    SetUnknowns(run.ctx);
    // in one block: 0..1021 s and on to 1141 s, then a rest of 240 s that is joined; cut: 420 s
    // each
    EXPECT_EQ(run.ctx.nIono, gap > 601 ? 2 : 1);
  }
}

TEST(SetIonoIntervals, ConstraintNeedsLessThanTheGap) {
  // intervals that end 600.5 s and 601 s before the next one
  for (const long double gap : {600.5L, 601.0L}) {
    Layout run;
    std::vector<TinyEpoch> epochs;
    mjd t(55844, 0);
    for (long i = 0; i < 12; ++i) {
      epochs.push_back({t, {Observed(1)}});
      t += i == 5 ? gap : 30.0L;
    }
    Fill(run, epochs);
    run.ctx.ifEstION = true;
    run.ctx.NIonUnkT = 2;
    run.ctx.IonoInterval = 500;
    SetUnknowns(run.ctx);
    ASSERT_EQ(run.ctx.nIono, 2);
    EXPECT_EQ(run.ctx.nIonoConst, gap < 601 ? 1 : 0);
    EXPECT_EQ(run.ctx.Nall.NRow(), gap < 601 ? 5 : 4);
  }
}

TEST(SetIonoIntervals, FewerThanFourEpochsLeaveOneEmptyInterval) {
  Layout run;
  run.Intervals(3, 30, 300);
  ASSERT_EQ(run.ctx.nIono, 1);
  EXPECT_EQ(run.ctx.IonoEstInd(0, 0), 0);
  EXPECT_EQ(run.ctx.IonoEstInd(0, 1), 0);
}

TEST(SetIonoIntervals, BlockShorterThanAQuarterOfTheIntervalLosesEverything) {
  // 210 s at 3600 s: nothing to join the rest to
  Layout run;
  run.Intervals(8, 30, 3600);
  EXPECT_EQ(run.ctx.nIono, 0);
  EXPECT_EQ(run.ctx.NUnk, 0);
}

TEST(SetIonoIntervalsDeathTest, TwoSuchBlocksEndWithTheReportOfTheTable) {
  EXPECT_ENDS(
      {
        TinyRun run;
        std::vector<TinyEpoch> epochs;
        mjd t(55844, 0);
        for (long i = 0; i < 16; ++i) {
          epochs.push_back({t, {Observed(1)}});
          t += i == 7 ? 1000.0L : 30.0L;
        }
        Fill(run, epochs);
        run.ctx.ifEstION = true;
        run.ctx.NIonUnkT = 2;
        run.ctx.IonoInterval = 3600;
        SetUnknowns(run.ctx);
      },
      "Matrix dimensions inproper:  \\[   -1,    2\\]");
}

TEST(SetIonoIntervals, WithoutIonosphereNothingIsCut) {
  Layout run;
  Fill(run, Epochs(11, 30, [](long) { return std::vector{Observed(1)}; }));
  run.ctx.ifEstREC = true;
  run.ctx.IonoInterval = 300;
  SetUnknowns(run.ctx);
  EXPECT_EQ(run.ctx.nIono, 0);
  EXPECT_EQ(run.ctx.Nall.NRow(), 2);
}

// ---- Look-ups --------------------------------------------------------------------------------

TEST(GetIndexSatDCB, UnlistedSatelliteLeavesTheIndicesAlone) {
  matrix<short> list(2, 1);
  list(0) = 4;
  list(1) = 9;
  matrix<long> index(2, 2, -1);
  index(1, 0) = 7;
  index(1, 1) = 8;
  long p1c1 = -5;
  long p2c1 = -6;
  long k = 0;
  GetIndexSatDCB(9, list, index, 2, p1c1, p2c1, k);
  EXPECT_EQ(k, 1);
  EXPECT_EQ(p1c1, 7);
  EXPECT_EQ(p2c1, 8);
  GetIndexSatDCB(5, list, index, 2, p1c1, p2c1, k);
  EXPECT_EQ(k, 2);
  EXPECT_EQ(p1c1, 7);
}

TEST(GetAmbIndex, ArcCoversItsFirstAndItsLastEpoch) {
  TinyRun run;
  Fill(run, Epochs(10, 30, [](long) { return std::vector{Observed(1)}; }));
  AddArc(run, 1, 2, 4);
  AddArc(run, 1, 6, 9);
  const auto at = [&](short sat, long epoch) {
    long arc = 99;
    long k = 0;
    GetAmbIndex(sat, epoch, run.ctx.AmbIndex, run.ctx.AmbSat, run.ctx.nAmb, arc, k);
    return arc;
  };
  EXPECT_EQ(at(1, 1), -1);
  EXPECT_EQ(at(1, 2), 0);
  EXPECT_EQ(at(1, 4), 0);
  EXPECT_EQ(at(1, 5), -1);
  EXPECT_EQ(at(1, 9), 1);
  EXPECT_EQ(at(2, 3), -1);
}

} // namespace
