// The stages that share satellite positions and walk from satellite to satellite, against their
// plain twins on recorded hours: every bit and every warning.

#include "ApplyCorrections.h"
#include "Eclipsing.h"
#include "GetInitPos.h"
#include "ParseArgumetns.h"
#include "ReadFiles.h"
#include "SatelliteRecords.h"
#include "SetAmbiguities.h"
#include "SetLinCombinations.h"
#include "reference/preparation_plain.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/SameBits.h"
#include "support/TinyRun.h"

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

/// Two ways to do the same stages.
struct Stages {
  void (*calculateAE)(KorvanC&);
  void (*getEclipsing)(KorvanC&);
  void (*phaseWindUp)(KorvanC&);
};
constexpr Stages kFast = {CalculateAE, GetEclipsing, PhaseWindUp};
constexpr Stages kPlain = {CalculateAE_plain, GetEclipsing_plain, PhaseWindUp_plain};

/// A run up to the wind-up.
struct Prepared {
  TinyRun run;
  std::vector<long double> meanL4; ///< plain means of the arcs, before the wind-up
  std::string output;
  std::string errors;
};

std::unique_ptr<Prepared> Prepare(const std::vector<std::string>& arguments, const Stages& stages) {
  auto prepared = std::make_unique<Prepared>();
  KorvanC& ctx = prepared->run.ctx;
  std::vector<const char*> argv = {"zenta"};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  const Captured out(std::cout);
  const Captured err(std::cerr);
  ParseArgumetns(ctx, static_cast<int>(argv.size()), argv.data());
  CheckArgumetns(ctx);
  SetFiles(ctx);
  ReadFiles(ctx);
  GetReceiverProperties(ctx);
  CorrectRecClock(ctx);
  SetGlonassFrequency(ctx);
  ApplyDCB(ctx);
  stages.calculateAE(ctx);
  SetLinearCombinations(ctx);
  stages.getEclipsing(ctx);
  SetAmbiguities(ctx);
  for (long j = 0; j < ctx.nAmb; ++j) prepared->meanL4.push_back(MeanL4_plain(ctx, j));
  stages.phaseWindUp(ctx);
  prepared->output = out.Text();
  prepared->errors = err.Text();
  return prepared;
}

long FirstDifference(const matrix<gnssobs>& x, const matrix<gnssobs>& y) {
  for (long k = 0; k < x.Length(); ++k)
    if (!SameBits(x(k).GetObs(), y(k).GetObs())) return k;
  return -1;
}

void ExpectSame(const Prepared& fast, const Prepared& plain) {
  const KorvanC& a = fast.run.ctx;
  const KorvanC& b = plain.run.ctx;
  EXPECT_EQ(FirstDifference(a.ELV, b.ELV), -1);
  EXPECT_EQ(FirstDifference(a.AZM, b.AZM), -1);
  EXPECT_EQ(FirstDifference(a.WGHT, b.WGHT), -1);
  EXPECT_EQ(FirstDifference(a.rnxd.L1, b.rnxd.L1), -1);
  EXPECT_EQ(FirstDifference(a.rnxd.L4, b.rnxd.L4), -1);
  ASSERT_EQ(a.NEclipsSat, b.NEclipsSat);
  for (long j = 0; j < a.NEclipsSat; ++j) {
    EXPECT_EQ(a.EclipsSat(j), b.EclipsSat(j));
    EXPECT_EQ(a.EclipsNObs(j), b.EclipsNObs(j));
  }
  ASSERT_EQ(a.nAmb, b.nAmb);
  EXPECT_GT(a.nAmb, 0);
  for (long j = 0; j < a.nAmb; ++j)
    EXPECT_TRUE(SameBits(a.xAmb(j), plain.meanL4[static_cast<std::size_t>(j)]));
  EXPECT_EQ(fast.output, plain.output);
  EXPECT_EQ(fast.errors, plain.errors);
}

/// A folder of its own: the arcs are written to the working directory.
class Preparation : public testing::Test {
protected:
  void SetUp() override {
    before_ = std::filesystem::current_path();
    std::filesystem::current_path(folder_.Path());
  }
  void TearDown() override { std::filesystem::current_path(before_); }

private:
  ScratchFolder folder_;
  std::filesystem::path before_;
};

std::string Gmsd(const char* option, const char* file) {
  return option + RealData(std::string("2013-166-gmsd/") + file);
}

TEST_F(Preparation, BroadcastOrbitsEqualThePlainStages) {
  SKIP_WITHOUT("2013-166-gmsd");
  const std::vector<std::string> arguments = {Gmsd("-r", "gmsd166e.13o"),
                                              Gmsd("-eg", "gmsd1660.13n"),
                                              Gmsd("-er", "gmsd1660.13g"),
                                              "-xREC,ION",
                                              "-lCODE,PHASE",
                                              "-pCOSZ"};
  const auto fast = Prepare(arguments, kFast);
  ExpectSame(*fast, *Prepare(arguments, kPlain));
  EXPECT_GT(fast->run.ctx.NEclipsSat, 0);
}

TEST_F(Preparation, PositionsWithWarningsWarnAsOftenAsThePlainStages) {
  SKIP_WITHOUT("2014-062-dsrc");
  const std::vector<std::string> arguments = {Gmsd("-r", "gmsd166e.13o"),
                                              "-eg" + RealData("2014-062-dsrc/brdc0620.14n"),
                                              Gmsd("-er", "gmsd1660.13g"),
                                              "-xREC,ION",
                                              "-lPHASE",
                                              "-me0"};
  const auto fast = Prepare(arguments, kFast);
  ExpectSame(*fast, *Prepare(arguments, kPlain));
  EXPECT_NE(fast->errors.find("CALCULATION EPOCH NOT IN EPOCH INTERVAL"), std::string::npos);
}

/// Three epochs of satellites 5, 7 and 105.
void FillThreeEpochs(TinyRun& run) {
  const auto records = [](const std::vector<short>& sats) {
    std::vector<TinyRecord> all;
    for (const short sat : sats) {
      TinyRecord r;
      r.sat = sat;
      all.push_back(r);
    }
    return all;
  };
  Fill(run, {{mjd(55844, 0), records({5, 105})},
             {mjd(55844, 30), records({7})},
             {mjd(55844, 60), records({105, 5, 7})}});
}

std::vector<std::pair<long, long>> Pairs(std::span<const SatelliteRecords::Record> records) {
  std::vector<std::pair<long, long>> pairs;
  for (const auto& r : records) pairs.emplace_back(r.epoch, r.k);
  return pairs;
}

TEST(SatelliteRecords, AreThoseOfTheSatelliteInOrderOfTheStore) {
  using P = std::vector<std::pair<long, long>>;
  TinyRun run;
  FillThreeEpochs(run);
  const SatelliteRecords records(run.data);
  EXPECT_EQ(Pairs(records.Of(5)), (P{{0, 0}, {2, 4}}));
  EXPECT_EQ(Pairs(records.Of(105)), (P{{0, 1}, {2, 3}}));
  EXPECT_EQ(Pairs(records.Of(8)), P());
}

TEST(SatelliteRecords, EpochsAreTakenWithTheFirstAndTheLast) {
  using P = std::vector<std::pair<long, long>>;
  TinyRun run;
  FillThreeEpochs(run);
  const SatelliteRecords records(run.data);
  EXPECT_EQ(Pairs(records.Of(7, 1, 2)), (P{{1, 2}, {2, 5}}));
  EXPECT_EQ(Pairs(records.Of(7, 1, 1)), (P{{1, 2}}));
  EXPECT_EQ(Pairs(records.Of(7, 2, 1)), P());
  EXPECT_EQ(Pairs(records.Of(5, 1, 1)), P());
  EXPECT_EQ(Pairs(records.Of(5, 0, -1)), P());
}

/// A run whose satellite 5 has a GPS broadcast record of noon; satellite 7 has none at all.
struct Broadcast {
  TinyRun run;
  Broadcast() {
    FillThreeEpochs(run);
    GPSbEph& orbits = run.gpsBroadcast;
    orbits.gdata.SetNRecords(1);
    orbits.gdata.sat(0) = 5;
    orbits.gdata.mjdo(0) = mjd(55844, 0);
    orbits.gdata.data(0, 10) = 5153.6L;
    orbits.gdata.data(0, 15) = 0.96L;
    run.ctx.isGPSnav = true;
    run.ctx.RecPosFC = xyz(4e6L, 1e6L, 4.8e6L);
  }
  xyz Locate(const mjd& t) {
    xyz position;
    EXPECT_TRUE(run.ctx.positions.Locate(run.ctx, 0, t, position));
    return position;
  }
};

TEST(RecordPositions, AreComputedOnceWhereTheyAreKept) {
  Broadcast b;
  const mjd t(55844, 100);
  b.run.ctx.positions.Keep(6);
  const xyz first = b.Locate(t);
  b.run.gpsBroadcast.gdata.data(0, 6) = 1; // another orbit is not asked for
  EXPECT_EQ(b.Locate(t), first);
  b.run.ctx.positions.Clear();
  EXPECT_NE(b.Locate(t), first);
}

TEST(RecordPositions, OfASatelliteWithoutOrbitIsNone) {
  Broadcast b;
  b.run.ctx.isGPSnav = false;
  b.run.ctx.positions.Keep(6);
  xyz position;
  EXPECT_FALSE(b.run.ctx.positions.Locate(b.run.ctx, 0, mjd(55844, 0), position));
  EXPECT_FALSE(b.run.ctx.positions.Locate(b.run.ctx, 0, mjd(55844, 0), position));
}

TEST(RecordPositions, ThatWarnedWarnAgain) {
  Broadcast b;
  b.run.ctx.positions.Keep(6);
  const auto warnings = [&] {
    const Captured err(std::cerr);
    b.Locate(mjd(55844, 9000)); // too far from the record
    return err.Text();
  };
  const std::string first = warnings();
  EXPECT_NE(first, "");
  EXPECT_EQ(warnings(), first);
}

} // namespace
