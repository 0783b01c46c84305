#ifndef SUPPORT_SAMESTORE_H
#define SUPPORT_SAMESTORE_H

#include "GNSS/RINEXData.h"
#include "support/SameBits.h"

#include <string>

namespace samestore {

inline bool Same(short a, short b) { return a == b; }
inline bool Same(char a, char b) { return a == b; }
inline bool Same(long double a, long double b) { return SameBits(a, b); }
inline bool Same(const mjd& a, const mjd& b) {
  return a.GetMJDay() == b.GetMJDay() && SameBits(a.GetSecond(), b.GetSecond());
}
inline bool Same(const gnssobs& a, const gnssobs& b) {
  return SameBits(a.obs, b.obs) && a.lli == b.lli && a.ss == b.ss;
}
inline bool Same(const gnssobsshort& a, const gnssobsshort& b) { return SameBits(a.obs, b.obs); }

template <typename T> bool Same(const matrix<T>& a, const matrix<T>& b) {
  if (a.NRow() != b.NRow() || a.NCol() != b.NCol()) return false;
  for (long k = 0; k < a.Length(); ++k)
    if (!Same(a(k), b(k))) return false;
  return true;
}

} // namespace samestore

/// The first difference, bit by bit, between what two readings of a file left; empty where there is
/// none.
inline std::string FirstDifference(const RINEXData& a, const RINEXData& b) {
  using samestore::Same;
  if (a.nepochall != b.nepochall) return "number of epochs";
  if (a.nsatall != b.nsatall) return "number of records";
  if (a.nComment != b.nComment) return "number of comments";
  if (a.IfTimeCorr != b.IfTimeCorr || !Same(a.TCorr, b.TCorr)) return "clock offsets";
  if (!Same(a.epoch, b.epoch) || !Same(a.obslast, b.obslast)) return "epochs";
  if (!Same(a.flag, b.flag)) return "epoch flags";
  if (!Same(a.nsat, b.nsat)) return "numbers of satellites";
  if (!Same(a.sat, b.sat)) return "satellites";
  if (!Same(a.satList, b.satList)) return "list of satellites";
  if (a.rhead.interval != b.rhead.interval) return "interval";
  for (const auto table : {&RINEXData::C1, &RINEXData::P1, &RINEXData::P2, &RINEXData::L1,
                           &RINEXData::L2, &RINEXData::C2, &RINEXData::C5, &RINEXData::L5})
    if (!Same(a.*table, b.*table)) return "codes or phases";
  for (const auto table :
       {&RINEXData::D1, &RINEXData::D2, &RINEXData::S1, &RINEXData::S2, &RINEXData::S5})
    if (!Same(a.*table, b.*table)) return "Doppler or signal strengths";
  return "";
}

#endif
