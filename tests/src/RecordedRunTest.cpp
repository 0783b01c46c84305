// The stages of a whole run on recorded data: what holds whatever the digits are.

#include "ApplyCorrections.h"
#include "Eclipsing.h"
#include "GNSSf/GNSS_ApplyMultipath.h"
#include "GetInitPos.h"
#include "ParseArgumetns.h"
#include "PrintResults.h"
#include "ProcIono.h"
#include "ProcIonoEph.h"
#include "ReadFiles.h"
#include "SetAmbiguities.h"
#include "SetLinCombinations.h"
#include "SetUnknowns.h"
#include "SlantDelay.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/TinyRun.h"

#include <cmath>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// CAGZ on 2011-10-10, GPS and GLONASS, one hour intervals: arguments as a user gives them.
struct Cagz : TinyRun {
  ScratchFolder folder; // the arc file goes there
  std::filesystem::path before = std::filesystem::current_path();
  Captured out{std::cout};
  Captured errors{std::cerr};

  explicit Cagz(const std::vector<std::string>& more) {
    std::filesystem::current_path(folder.Path());
    std::vector<std::string> texts = {"zenta",
                                      "-r" + RealData("2011-283-cagz/cagz2830.11o"),
                                      "-es" + RealData("2011-283-cagz/cod16571.eph"),
                                      "-el" + RealData("2011-283-cagz/cod16571.eph"),
                                      "-gf" + RealData("derived/glonass-channels.txt"),
                                      "-cb1" + RealData("dcb/P1P21110.DCB"),
                                      "-cb2" + RealData("dcb/P1C11110.DCB"),
                                      "-ct" + RealData("lists/RECEIVER.LST"),
                                      "-ii01:00:00",
                                      "-pCOSZ",
                                      "-me10",
                                      "-ft50",
                                      "-bt10",
                                      "-bl0.5"};
    texts.insert(texts.end(), more.begin(), more.end());
    std::vector<const char*> arguments;
    for (const std::string& text : texts) arguments.push_back(text.c_str());
    ParseArgumetns(ctx, static_cast<int>(arguments.size()), arguments.data());
    CheckArgumetns(ctx);
    SetFiles(ctx);
    ReadFiles(ctx);
    GetReceiverProperties(ctx);
    ApplyCorrections(ctx);
    ApplyMultipath(header, data, multipath1, multipath2, ctx.GetIsMP1(), ctx.GetIsMP2(), false);
    SetLinearCombinations(ctx);
    GetEclipsing(ctx);
    SetAmbiguities(ctx);
    PhaseWindUp(ctx);
    SetUnknowns(ctx);
    std::cout << std::fixed;
    ProcIono(ctx);
    PrintResults(ctx);
  }
  ~Cagz() { std::filesystem::current_path(before); }

  /// Delay of the pieces at epoch \p i.
  long double Linear(long i) {
    const IonoState state = StateAt(ctx, i);
    return state.delay + state.hours * state.rate;
  }
  /// Root mean square [m] of the P2-C1 residuals of the GPS values that took part.
  long double CodeRms() {
    long double sum = 0;
    long n = 0;
    long k = 0;
    ctx.iIono = 0;
    for (long i = 0; i < data.nepochall; ++i) {
      const IonoState state = StateAt(ctx, i);
      for (const long end = k + data.nsat(i); k < end; ++k) {
        if (data.sat(k) > 99 || !ctx.ifOP2C1(k)) continue;
        const IonoCoefficients a =
            CoefficientsOf(FactorsOf(data.sat(k)), ctx.ELV(k), ctx.AZM(k), false);
        const long double slant = SlantDelay(a, state);
        const long double v = ctx.xP2C1 + slant - data.PC4(k).GetObs();
        sum += v * v;
        ++n;
      }
    }
    EXPECT_GT(n, 20000);
    return std::sqrt(sum / static_cast<long double>(n));
  }
};

TEST(RecordedRun, EpochwiseDelaysFollowTheLinearPiecesWithinTheirErrors) {
  SKIP_WITHOUT("2011-283-cagz/cagz2830.11o");
  Cagz run({"-xREC,ION,IONEPH", "-lCODE,PHASE"});
  std::string report;
  {
    const Captured part(std::cout);
    ProcIonoEph(run.ctx);
    report = part.Text();
  }
  std::istringstream lines(report);
  long double difference = 0;
  long double error = 0;
  long within = 0;
  long n = 0;
  run.ctx.iIono = 0;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    long day = 0;
    long double second = 0;
    long double delay = 0;
    long double sigma = 0;
    std::string sign;
    if (!(fields >> day >> second >> delay >> sign >> sigma)) continue;
    // every epoch of the day has a line: they are 30 s apart
    ASSERT_EQ(second, 30 * n);
    const long double d = delay - run.Linear(n);
    difference += d * d;
    error += sigma * sigma;
    if (std::fabs(d) < 2 * sigma) ++within;
    ++n;
  }
  ASSERT_EQ(n, 2880);
  EXPECT_LT(difference, error);
  EXPECT_GT(within, 0.95 * 2880);
}

TEST(RecordedRun, MultipathCorrectionsLowerTheCodeResiduals) {
  SKIP_WITHOUT("derived/cagz2830.mp1");
  Cagz without({"-xREC,ION", "-lCODE"});
  Cagz with({"-xREC,ION", "-lCODE", "-mp1" + RealData("derived/cagz2830.mp1"),
             "-mp2" + RealData("derived/cagz2830.mp2")});
  EXPECT_LT(with.CodeRms(), without.CodeRms());
  EXPECT_LT(with.ctx.s0apost, without.ctx.s0apost);
}

} // namespace
