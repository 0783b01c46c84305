#include "GNSSf/GNSS_ApplyMultipath.h"

#include "GNSS/RINEXData.h"
#include "GNSS/RINEXHeader.h"
#include "teqc/CompactTEQC.h"

#include <algorithm>
#include <iostream>

namespace {

constexpr double MaxEphTimeDiff = 0.001;    // [s]
constexpr double MaxEphTimeDiffStore = 0.3; // [s] where values are only stored

// Calls use(record, value) for every observation record and multipath value of the same
// satellite at the same epoch. Both sides are in the order of time and are walked together.
// \returns the number of calls
template <typename Use>
long ForEachCommon(const RINEXData& rnxd, const CompactTEQC& mp, double tolerance, Use use) {
  // Bounded by the number of values too: a file may begin with epochs that have none.
  const long nEphMP = std::min(mp.NObs(), mp.NEph()) - 1;
  long ComSat = 0;
  long a = 0;
  long b = 0;
  long record = 0; // first of epoch a
  long value = 0;  // first of epoch b
  while (a < rnxd.nepochall && b <= nEphMP) {
    const long double d = rnxd.epoch(a) - mp.GetEpoch(b);
    const bool isAhead = d > tolerance;
    const bool isBehind = d < -tolerance;
    const long nRecords = rnxd.nsat(a);
    const long nValues = mp.GetNSat(b);
    if (!isAhead && !isBehind) {
      for (long r = record; r < record + nRecords; ++r) {
        for (long v = value; v < value + nValues; ++v) {
          if (rnxd.sat(r) != mp.GetSat(v)) continue;
          ++ComSat;
          use(r, mp.GetObs(v));
        }
      }
    }
    if (!isAhead) {
      record += nRecords;
      ++a;
    }
    if (!isBehind) {
      value += nValues;
      ++b;
    }
  }
  return ComSat;
}

void Subtract(gnssobs& code, double multipath) {
  if (!code.IsNull()) code += -multipath;
}

// One file, reported as one line.
template <typename Use>
void ApplyFile(const RINEXData& rnxd, const CompactTEQC& mp, double tolerance, bool verbose,
               const char* what, Use use) {
  if (verbose)
    std::cerr << "Zenta"
              << "::ApplyMultipath():         " << what;
  const long ComSat = ForEachCommon(rnxd, mp, tolerance, use);
  if (verbose) std::cerr << ComSat << " common satellites!" << std::endl;
}

void ApplyToC1P1(const RINEXHeader& rnxh, RINEXData& rnxd, const CompactTEQC& mp, bool verbose,
                 const char* what) {
  ApplyFile(rnxd, mp, MaxEphTimeDiff, verbose, what, [&](long r, double multipath) {
    if (rnxh.iC1) Subtract(rnxd.C1(r), multipath);
    if (rnxh.iP1) Subtract(rnxd.P1(r), multipath);
  });
}

void PrintHeading(bool verbose) {
  if (!verbose) return;
  std::cerr << "Zenta"
            << "::ApplyMultipath(): REMOVING ESTIMATED MULTIPATH FROM TEQC!" << std::endl;
}

} // namespace

void ApplyMultipath(const RINEXHeader& rnxh, RINEXData& rnxd, const CompactTEQC& mp1,
                    const CompactTEQC& mp2, bool isMP1, bool isMP2, bool verbose) {
  if (!isMP1 && !isMP2) return;
  PrintHeading(verbose);
  if (isMP1) ApplyToC1P1(rnxh, rnxd, mp1, verbose, "Multipath on P1/C1 - ");
  if (!isMP2) return;
  ApplyFile(rnxd, mp2, MaxEphTimeDiff, verbose, "Multipath on P2 - ",
            [&](long r, double multipath) {
              if (rnxh.iP2) Subtract(rnxd.P2(r), multipath);
            });
}

void ApplyMultipath(const RINEXHeader& rnxh, RINEXData& rnxd, const CompactTEQC& mp, bool isMP,
                    bool verbose) {
  if (!isMP) return;
  PrintHeading(verbose);
  ApplyToC1P1(rnxh, rnxd, mp, verbose, "Multipath on C1 - ");
}

void ApplyMultipath(const RINEXHeader&, const RINEXData& rnxd, const CompactTEQC& mp, bool isMP,
                    bool verbose, matrix<long double>& values) {
  if (!isMP) return;
  PrintHeading(verbose);
  ApplyFile(rnxd, mp, MaxEphTimeDiffStore, verbose, "Multipath -> ",
            [&](long r, double multipath) { values(r, 0) = multipath; });
}
