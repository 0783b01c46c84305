// Broadcast against precise orbits on a recorded day, through the stages that use them.

#include "ApplyCorrections.h"
#include "GetInitPos.h"
#include "ReadFiles.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/TinyRun.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

constexpr const char* kFolder = "2010-001-albh-gras/";

/// The stages up to the elevations. \p name is the field for \p file.
std::unique_ptr<TinyRun> Located(bool KorvanC::*inUse, char (KorvanC::*name)[256],
                                 const std::string& file) {
  auto run = std::make_unique<TinyRun>();
  KorvanC& ctx = run->ctx;
  const auto set = [](char(&field)[256], const std::string& value) {
    value.copy(field, sizeof field - 1);
  };
  set(ctx.rnxfile, RealData(std::string(kFolder) + "ALBH0010.10O"));
  set(ctx.*name, RealData(kFolder + file));
  ctx.isRnx = ctx.isGPS = ctx.*inUse = true;
  SetFiles(ctx);
  ReadFiles(ctx);
  GetReceiverProperties(ctx);
  ApplyCorrections(ctx);
  return run;
}

TEST(RecordedOrbits, BroadcastAndPreciseElevationsAgreeWithinAThousandthOfADegree) {
  SKIP_WITHOUT(kFolder);
  const Captured errors(std::cerr); // the last records of the day are used beyond their age
  const auto broadcast = Located(&KorvanC::isGPSnav, &KorvanC::gnavfile, "ALBH0010.10N");
  const auto precise = Located(&KorvanC::isGpEph, &KorvanC::gsp3file, "igs15645.sp3");
  const matrix<long double>& a = broadcast->ctx.ELV;
  const matrix<long double>& b = precise->ctx.ELV;
  ASSERT_EQ(a.Length(), b.Length());
  ASSERT_GT(a.Length(), 20000);
  long double largest = 0;
  for (long k = 0; k < a.Length(); ++k) largest = std::max(largest, std::fabs(a(k) - b(k)));
  EXPECT_LT(largest * 180 / 3.141592653589793L, 0.001L);
  EXPECT_GT(largest, 0); // two orbits, not one read twice
}

} // namespace
