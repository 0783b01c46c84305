#include "KorvanC.h"

#include "support/Captured.h"
#include "support/Near.h"
#include "support/TinyRun.h"

#include <string>

namespace {

TEST(KorvanC, RefersToTheObjectsOfItsConstructor) {
  TinyRun run;
  const KorvanC& ctx = run.ctx;
  EXPECT_EQ(&ctx.rnxh, &run.header);
  EXPECT_EQ(&ctx.rnxd, &run.data);
  EXPECT_EQ(&ctx.rnx, &run.file);
  EXPECT_EQ(&ctx.clkerr, &run.clock);
  EXPECT_EQ(&ctx.mp1, &run.multipath1);
  EXPECT_EQ(&ctx.mp2, &run.multipath2);
  EXPECT_EQ(&ctx.gpsnav, &run.gpsBroadcast);
  EXPECT_EQ(&ctx.glnnav, &run.glonassBroadcast);
  EXPECT_EQ(&ctx.pephG, &run.gpsPrecise);
  EXPECT_EQ(&ctx.pephR, &run.glonassPrecise);
  EXPECT_EQ(&ctx.p1p2, &run.dcbP1P2);
  EXPECT_EQ(&ctx.p1c1, &run.dcbP1C1);
  EXPECT_EQ(&ctx.p2c2, &run.dcbP2C2);
  EXPECT_EQ(&ctx.rctrack, &run.codeTracking);
  EXPECT_EQ(&ctx.acrd, &run.coordinates);
  EXPECT_EQ(&ctx.glnfc, &run.glonassChannels);
  EXPECT_EQ(&ctx.stide, &run.sunMoon);
}

TEST(KorvanC, EllipsoidsAreGRS80AndPZ90) {
  TinyRun run;
  EXPECT_EQ(run.ctx.eGPS.GetA(), 6378137.0L);
  EXPECT_TRUE(Near(1 / run.ctx.eGPS.GetF(), 298.257222101L, 1e-9L));
  EXPECT_EQ(run.ctx.eGLN.GetA(), 6378136.0L);
  EXPECT_TRUE(Near(1 / run.ctx.eGLN.GetF(), 298.257839303L, 1e-9L));
}

TEST(KorvanC, NoFileIsNamed) {
  TinyRun run;
  const KorvanC& c = run.ctx;
  for (const char* name :
       {c.rnxfile, c.gnavfile, c.rnavfile, c.gsp3file, c.rsp3file, c.dcbp1p2file, c.dcbp1c1file,
        c.dcbp2c2file, c.mp1file, c.mp2file, c.rctrackfile, c.aprcrdfile, c.glnfreqch, c.clkfile,
        c.resfile, c.gnuplotIon, c.gnuplotIonEph, c.gnuplotDCB})
    EXPECT_STREQ(name, "");
}

TEST(KorvanC, NoFlagIsSet) {
  TinyRun run;
  const KorvanC& c = run.ctx;
  for (const bool flag :
       {c.verbose,    c.iCout,        c.isRnx,           c.isGLNnav,       c.isGPSnav,
        c.isGpEph,    c.isRpEph,      c.isP1P2,          c.isP1C1,         c.isP2C2,
        c.isMP1,      c.isMP2,        c.isRCodTrc,       c.isAprCrd,       c.isGLNfrch,
        c.isClkFile,  c.isGPS,        c.isGLN,           c.ifPrintRes,     c.ifEstREC,
        c.ifEstGPS,   c.ifEstGLN,     c.ifEstION,        c.ifEstIONEph,    c.ifEstIGrad,
        c.ifCodeObs,  c.ifPhaseObs,   c.isMinElev,       c.isThresBlunder, c.isThresBlunderL4,
        c.isMaxfDiff, c.isGNUPlotIon, c.isGNUPlotIonEph, c.isGNUPlotDCB,   c.isxP1C1,
        c.isxP2C1,    c.isxP1C1g,     c.isxP2C1g})
    EXPECT_FALSE(flag);
}

TEST(KorvanC, DefaultsOfTheSettings) {
  TinyRun run;
  const KorvanC& c = run.ctx;
  EXPECT_EQ(c.obsP, 0);
  EXPECT_EQ(c.NIonUnkT, 0);
  EXPECT_EQ(c.WPh2Code, 100);
  EXPECT_EQ(c.MinElevation, 5);
  EXPECT_EQ(c.ThresBlunder, 20);
  EXPECT_EQ(c.ThresBlunderL4, 2);
  EXPECT_EQ(c.MaxfDiff, 50);
  EXPECT_TRUE(Near(3 * c.MaxfDiffP1C1, 50, 1e-17L));
  EXPECT_EQ(c.MinObs, 5);
  EXPECT_TRUE(Near(c.satEclipsThres, 14 * 3.141592653589793L / 180, 1e-16L));
  EXPECT_EQ(c.MaxIonGap, 601);
  EXPECT_EQ(c.MinObsAmb, 15);
  EXPECT_EQ(c.ThresL40, static_cast<long double>(0.03));
  EXPECT_EQ(c.dThresL4, static_cast<long double>(0.01));
  EXPECT_EQ(c.MaxIter, 10);
  EXPECT_EQ(c.IterThres, 0.005);
}

TEST(KorvanC, ResultsStartAtZeroAndIndicesAtNone) {
  TinyRun run;
  const KorvanC& c = run.ctx;
  EXPECT_EQ(c.ixP1C1, -1);
  EXPECT_EQ(c.ixP2C1, -1);
  for (const long count :
       {c.NEclipsSat, c.nP1C1g, c.nP2C1g, c.nP1C1r, c.nP2C1r, c.iIono, c.nIono, c.nIonoConst,
        c.nIonoUnk, c.nAmb, c.NUnkDCB, c.NUnk, c.NObs, c.NObsOutl, c.NObsG, c.NObsR, c.NObsOutlG,
        c.NObsOutlR, static_cast<long>(c.IterDone)})
    EXPECT_EQ(count, 0);
  for (const long double value : {c.xP1C1, c.xP2C1, c.IonoInterval, c.vtPv, c.s0apost, c.NRed,
                                  static_cast<long double>(c.IterThresFin)})
    EXPECT_EQ(value, 0);
}

TEST(KorvanC, EclipsingSatellitesHaveAHundredRows) {
  TinyRun run;
  EXPECT_EQ(run.ctx.EclipsSat.NRow(), 100);
  EXPECT_EQ(run.ctx.EclipsSat.NCol(), 1);
  EXPECT_EQ(run.ctx.EclipsNObs.NRow(), 100);
  EXPECT_EQ(run.ctx.EclipsNObs.NCol(), 1);
}

TEST(KorvanC, FlagsOfTheMultipathStageAreHandedOut) {
  TinyRun run;
  for (const bool set : {true, false}) {
    run.ctx.verbose = set;
    run.ctx.isMP1 = !set;
    run.ctx.isMP2 = set;
    EXPECT_EQ(run.ctx.GetVerbose(), set);
    EXPECT_EQ(run.ctx.GetIsMP1(), !set);
    EXPECT_EQ(run.ctx.GetIsMP2(), set);
  }
}

TEST(KorvanC, BannersAreWrittenOnlyWhenVerbose) {
  TinyRun run;
  Captured out(std::cout);
  Captured errors(std::cerr);
  run.ctx.StartProg();
  run.ctx.EndProg();
  EXPECT_EQ(errors.Text(), "");
  run.ctx.verbose = true;
  run.ctx.StartProg();
  const std::string start = "\nZenta: ***** CODE/PHASE GNSS IONOSPHERE DELAY ESTIMATION *****\n";
  EXPECT_EQ(errors.Text(), start);
  run.ctx.EndProg();
  EXPECT_EQ(errors.Text(), start + "Zenta: ***** SUCCESFULLY ENDING PROGRAM *****!\n\n\n");
  EXPECT_EQ(out.Text(), "");
}

} // namespace
