// The adjustment against its plain twin on made-up stores: every bit of its results, every flag and
// every line of its report.

#include "GNSS/GNSSLinCombs.h"
#include "ProcIono.h"
#include "SetUnknowns.h"
#include "reference/adjustment_plain.h"
#include "support/Captured.h"
#include "support/ObsStore.h"
#include "support/SameBits.h"
#include "support/TinyRun.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

/// What is asked of a run.
struct Request {
  std::string name;
  std::function<void(KorvanC&)> set;
};

/// Half-minute epochs with two gaps, seven satellites of both systems that come and go, values that
/// are missing, low satellites, gross errors, arcs that end early, overlap or are never observed.
class MadeUp : public TinyRun {
public:
  explicit MadeUp(unsigned seed) : random_(seed) {
    for (short slot = 0; slot < 24; ++slot) GLONASSc::SetFrequency(slot - 7.0L, slot);
    std::vector<TinyEpoch> epochs;
    mjd t(55844, 86000); // over midnight
    for (int i = 0; i < kEpochs; ++i) {
      epochs.push_back({t, {}});
      for (const short sat : std::vector<short>{3, 7, 11, 30, 101, 108, 124})
        if (Chance(0.8)) epochs.back().records.push_back(Observed(sat));
      if (Chance(0.2)) epochs.back().records.push_back(Observed(201)); // of no system
      t += i == 37 || i == 75 ? 700.0L : 30.0L;
    }
    Fill(*this, epochs);
    for (const short sat : std::vector<short>{7, 3, 30, 124, 101, 11, 108}) {
      AddArc(*this, sat, 60, kEpochs - 1, Any(3));
      AddArc(*this, sat, Chance(0.5) ? 0 : 5, Chance(0.5) ? 40 : 70, Any(3));
    }
    AddArc(*this, 19, 0, kEpochs - 1, 4); // not observed
    ctx.ifEstION = true;
    ctx.NIonUnkT = 2;
    ctx.IonoInterval = 600;
    ctx.MinElevation = 10;
  }

private:
  static constexpr int kEpochs = 114;

  long double Any(long double size) {
    return std::uniform_real_distribution<long double>(-size, size)(random_);
  }
  bool Chance(double p) { return std::bernoulli_distribution(p)(random_); }
  TinyRecord Observed(short sat) {
    TinyRecord r;
    r.sat = sat;
    r.C1 = 2.1e7L + Any(1e6L);
    r.P1 = Chance(0.1) ? 0 : r.C1 + 1 + Any(1) + (Chance(0.03) ? Any(60) : 0);
    r.P2 = Chance(0.1) ? 0 : r.C1 + 4 + Any(2) + (Chance(0.03) ? Any(200) : 0);
    r.L4 = Chance(0.1) ? 0 : 5 + Any(0.5L) + (Chance(0.03) ? Any(9) : 0);
    r.elevation = 0.8L + Any(0.75L); // down to 3 degrees
    r.azimuth = Any(6);
    r.weight = 1.1L + Any(1);
    return r;
  }

  std::mt19937_64 random_;
};

/// A run behind its adjustment, with all that it printed.
struct Adjusted {
  MadeUp run;
  std::string report;

  Adjusted(unsigned seed, const Request& request, void (*adjust)(KorvanC&)) : run(seed) {
    const Captured out(std::cout);
    const Captured errors(std::cerr);
    std::cout << std::fixed;
    request.set(run.ctx);
    SetUnknowns(run.ctx);
    adjust(run.ctx);
    report = out.Text();
  }
};

void AdjustPlain(KorvanC& ctx) { PlainAdjustment(ctx).Run(); }

bool SameFlags(const matrix<bool>& x, const matrix<bool>& y) {
  if (x.Length() != y.Length()) return false;
  for (long k = 0; k < x.Length(); ++k)
    if (x(k) != y(k)) return false;
  return true;
}

void ExpectSame(const KorvanC& x, const KorvanC& y) {
  EXPECT_TRUE(SameBits(x.Nall, y.Nall));
  EXPECT_TRUE(SameBits(x.tall, y.tall));
  EXPECT_TRUE(SameBits(x.QxxAll, y.QxxAll));
  EXPECT_TRUE(SameBits(x.xAll, y.xAll));
  EXPECT_TRUE(SameBits(x.vtPv, y.vtPv));
  EXPECT_TRUE(SameBits(x.s0apost, y.s0apost));
  EXPECT_TRUE(SameBits(x.NRed, y.NRed));
  EXPECT_TRUE(SameBits(x.xP1C1, y.xP1C1));
  EXPECT_TRUE(SameBits(x.xP2C1, y.xP2C1));
  EXPECT_TRUE(SameBits(x.xbSAT, y.xbSAT));
  EXPECT_TRUE(SameBits(x.xAmb, y.xAmb));
  EXPECT_TRUE(SameBits(x.xION, y.xION));
  EXPECT_TRUE(SameBits(x.xIGRAD, y.xIGRAD));
  EXPECT_TRUE(SameFlags(x.ifOP1C1, y.ifOP1C1));
  EXPECT_TRUE(SameFlags(x.ifOP2C1, y.ifOP2C1));
  EXPECT_TRUE(SameFlags(x.ifOL4, y.ifOL4));
  ASSERT_EQ(x.ObsPerUnk.Length(), y.ObsPerUnk.Length());
  for (long k = 0; k < x.ObsPerUnk.Length(); ++k) EXPECT_EQ(x.ObsPerUnk(k), y.ObsPerUnk(k)) << k;
  EXPECT_EQ(x.NObs, y.NObs);
  EXPECT_EQ(x.NObsOutl, y.NObsOutl);
  EXPECT_EQ(x.IterDone, y.IterDone);
  EXPECT_EQ(x.IterThresFin, y.IterThresFin);
  EXPECT_EQ(x.iIono, y.iIono);
}

const std::vector<Request> kRequests = {
    {"receiver biases", [](KorvanC& ctx) { ctx.ifEstREC = true; }},
    {"receiver and GLONASS biases", [](KorvanC& ctx) { ctx.ifEstREC = ctx.ifEstGLN = true; }},
    {"satellite biases", [](KorvanC& ctx) { ctx.ifEstGPS = ctx.ifEstGLN = true; }},
    {"gradients",
     [](KorvanC& ctx) {
       ctx.ifEstREC = ctx.ifEstIGrad = true;
       ctx.NIonUnkT = 4;
     }},
    {"code alone",
     [](KorvanC& ctx) {
       ctx.ifEstREC = true;
       ctx.ifPhaseObs = false;
     }},
    {"phase alone", [](KorvanC& ctx) { ctx.ifCodeObs = false; }},
    {"no P1", [](KorvanC& ctx) { ctx.ifEstREC = ctx.rnxh.iPC1 = false; }},
    {"GPS alone",
     [](KorvanC& ctx) {
       ctx.ifEstREC = true;
       ctx.isGLN = false;
     }},
    {"no ionosphere",
     [](KorvanC& ctx) {
       ctx.ifEstREC = true;
       ctx.ifEstION = false;
       ctx.NIonUnkT = 0;
     }},
};

const std::vector<Request> kLimits = {
    {"no limits", [](KorvanC&) {}},
    {"misclosures",
     [](KorvanC& ctx) {
       ctx.isMaxfDiff = true;
       ctx.MaxfDiff = 6; // some exceed it in the first iteration alone
     }},
    {"residuals",
     [](KorvanC& ctx) {
       ctx.isThresBlunder = ctx.isThresBlunderL4 = true;
       ctx.ThresBlunder = 10;
       ctx.ThresBlunderL4 = 1.5L;
     }},
    {"all",
     [](KorvanC& ctx) {
       ctx.isMaxfDiff = ctx.isThresBlunder = ctx.isThresBlunderL4 = true;
       ctx.MaxfDiff = 20;
       ctx.ThresBlunder = 3;
       ctx.ThresBlunderL4 = 4;
     }},
};

TEST(Adjustment, EqualsThePlainOneToTheLastBit) {
  const RestoredCoefficients restored;
  long outliers = 0;
  for (const Request& what : kRequests) {
    for (const Request& limits : kLimits) {
      for (const unsigned seed : {1U, 2U, 3U}) {
        SCOPED_TRACE(what.name + ", " + limits.name + ", seed " + std::to_string(seed));
        const Request request{"", [&](KorvanC& ctx) {
                                what.set(ctx);
                                limits.set(ctx);
                              }};
        const Adjusted fast(seed, request, ProcIono);
        const Adjusted plain(seed, request, AdjustPlain);
        ExpectSame(fast.run.ctx, plain.run.ctx);
        EXPECT_EQ(fast.report, plain.report);
        outliers += plain.run.ctx.NObsOutl;
        EXPECT_GT(plain.run.ctx.NObs, 500);
      }
    }
  }
  EXPECT_GT(outliers, 1000); // the limits did bite
}

} // namespace
