#include "Harness.h"

#include "GNSS/RINEX.h"
#include "GNSS/RINEXData.h"
#include "GNSS/RINEXHeader.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>

namespace {

struct Observations {
  RINEXHeader header;
  RINEXData data{header};
  RINEX file{header, data};

  void Read(const char* name) {
    file.SetFile(name);
    file.ReadFile();
  }
};

void CheckFinite(const Observations& obs) {
  const RINEXHeader& h = obs.header;
  FUZZ_CHECK(std::isfinite(h.version) && std::isfinite(h.interval));
  FUZZ_CHECK(std::isfinite(h.X0.GetX() + h.X0.GetY() + h.X0.GetZ()));
  FUZZ_CHECK(std::isfinite(h.Dp.GetN() + h.Dp.GetE() + h.Dp.GetU()));
  const RINEXData& d = obs.data;
  for (const auto* table : {&d.C1, &d.P1, &d.P2, &d.L1, &d.L2, &d.C2, &d.C5, &d.L5})
    for (long k = 0; k < table->Length(); ++k) FUZZ_CHECK(std::isfinite((*table)(k).GetObs()));
  long records = 0;
  for (long i = 0; i < d.nepochall; ++i) records += d.nsat(i);
  FUZZ_CHECK(records == d.nsatall);
}

/// The fields of the format can hold what was read: a satellite that has a number of its system,
/// values of nine digits in front of the point, flags that are digits, no clock offsets, which are
/// written for twelve satellites only, types that are known, a year of two digits.
bool IsWritable(const Observations& obs) {
  const RINEXHeader& h = obs.header;
  const RINEXData& d = obs.data;
  if (d.IfTimeCorr || h.nobs == 0 || h.nobs > 26) return false;
  for (long j = 0; j < h.nobs; ++j)
    for (long i = 0; i <= j; ++i) {
      const bool hasTable = h.obs(i) <= 11 || h.obs(i) == 13;
      if (!hasTable || (i < j && h.obs(i) == h.obs(j))) return false;
    }
  for (long k = 0; k < d.nsatall; ++k)
    if (d.sat(k) % 100 == 0 || d.sat(k) > 499) return false;
  for (long i = 0; i < d.nepochall; ++i)
    if (d.nsat(i) == 0 || d.flag(i) == ' ') return false;
  for (const auto* table : {&d.C1, &d.P1, &d.P2, &d.L1, &d.L2, &d.C2, &d.C5, &d.L5})
    for (long k = 0; k < table->Length(); ++k) {
      const gnssobs& o = (*table)(k);
      if (std::fabs(o.GetObs()) >= 1e8L || o.GetLli() > 9 || o.GetSs() > 9) return false;
    }
  for (const auto* table : {&d.D1, &d.D2, &d.S1, &d.S2, &d.S5})
    for (long k = 0; k < table->Length(); ++k)
      if (std::fabs((*table)(k).GetObs()) >= 1e8L) return false;
  const xyz& p = h.X0;
  return std::fabs(p.GetX()) < 1e8L && std::fabs(p.GetY()) < 1e8L && std::fabs(p.GetZ()) < 1e8L &&
         std::fabs(h.Dp.GetN()) < 1e8L && std::fabs(h.Dp.GetE()) < 1e8L &&
         std::fabs(h.Dp.GetU()) < 1e8L && std::fabs(h.interval) < 99999 &&
         std::fabs(h.version) < 99;
}

std::string DataOf(const char* name) {
  std::ifstream in(name, std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(in), {});
  return text.substr(std::min(text.size(), text.find("END OF HEADER")));
}

/// What is written reads back, and is then written the same.
void CheckWriting(const Observations& obs) {
  if (!IsWritable(obs)) return;
  obs.file.PrintFile("first");
  Observations again;
  FUZZ_CHECK(!Ends([&] { again.Read("first"); }));
  FUZZ_CHECK(again.data.nepochall == obs.data.nepochall);
  FUZZ_CHECK(again.data.nsatall == obs.data.nsatall);
  again.file.PrintFile("second");
  FUZZ_CHECK(DataOf("first") == DataOf("second"));
}

/// Everything that is formed from observations.
void Form(RINEXData& data) {
  data.SetLC_CLI();
  data.SetLC_CL1();
  data.SetLC_PC1();
  data.SetLC_PP3();
  data.SetLC_PC3();
  data.SetLC_L3();
  data.SetLC_PC4();
  data.SetLC_PP4();
  data.SetLC_L4();
  data.SetLC_MW(true);
}

void Screen(Observations& obs) {
  RINEXData& data = obs.data;
  const matrix<long double> elevation(data.nsatall, 1, 1.0L);
  long n = 0;
  data.SetAmbFile("arcs");
  if (obs.header.iCL1) Ends([&] { data.ScreenCL1(elevation, 0.1L, 3, 5, n); });
  if (!obs.header.iL4) return;
  data.ScreenL4Linear(elevation, 0.1L, 3, 0.03L, 0.01L, n);
  data.ScreenL4(elevation, 0.1L, 3, 0.03L, 0.01L, n);
  if (obs.header.iMW) data.ScreenMW(0.5L, 3, n);
}

} // namespace

FUZZ_TARGET(RINEX) {
  Observations obs;
  obs.Read(WriteInput(input));
  CheckFinite(obs);
  CheckWriting(obs);
  obs.data.HasGPSObs();
  obs.data.HasGLONASSObs();
  if (Ends([&] { Form(obs.data); })) return;
  Screen(obs);
  obs.data.Corr4ClockError();
  long jumps = 0;
  obs.data.CorrMSJumps(jumps);
}
