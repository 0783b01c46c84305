#include "Harness.h"

#include "GNSS/gCRD.h"

#include <cmath>

namespace {

bool IsFinite(const xyz& p) {
  return std::isfinite(p.GetX()) && std::isfinite(p.GetY()) && std::isfinite(p.GetZ());
}

} // namespace

FUZZ_TARGET(gCRD) {
  gCRD coordinates;
  coordinates.SetFile(WriteInput(input));
  const mjd epoch(55844, 43200);
  for (const char* name : {"", "CAGZ", "TINY"}) {
    Ends([&] {
      xyz velocity;
      FUZZ_CHECK(IsFinite(coordinates.GetCRD(name, "12725M004", epoch, velocity)));
      FUZZ_CHECK(IsFinite(velocity));
      FUZZ_CHECK(IsFinite(coordinates.GetCRD(name)));
    });
  }
  Ends([&] {
    matrix<CRDPoint> points;
    coordinates.ReadCRDs(points);
    // What is written reads back to the last decimal that is written.
    gCRD copy;
    copy.OpenOutputFile("copy");
    for (long i = 0; i < points.Length(); ++i)
      copy.PrintGPoint(points(i).site.name.c_str(), points(i).site.number.c_str(),
                       points(i).position, points(i).velocity, points(i).epoch);
    copy.CloseOutputFile();
    copy.SetFile("copy");
    matrix<CRDPoint> again;
    Ends([&] { copy.ReadCRDs(again); });
  });
  matrix<ABSConst> absolute;
  matrix<RELConst> relative;
  matrix<CRDSite> sites;
  coordinates.ReadABSConst(absolute);
  coordinates.ReadRELConst(relative);
  coordinates.ReadFixedStat(sites);
}
