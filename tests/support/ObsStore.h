#ifndef SUPPORT_OBSSTORE_H
#define SUPPORT_OBSSTORE_H

#include "GNSS/GNSSLinCombs.h"
#include "GNSS/RINEXData.h"

#include <algorithm>
#include <set>
#include <vector>

/// A header and a store, filled epoch by epoch with records that miss every observation.
///
///     ObsStore obs;
///     obs.AddEpoch(0, {5, 105});
///     obs.AddEpoch(30, {5});
///     obs.Build();
///     obs.data.C1(obs.Record(1, 5)) = 2e7L;
///
/// The header lists C1, P1, P2, L1, L2, C2 and C5 and an interval of 30 s.
class ObsStore {
public:
  ObsStore() { header.SetInterval(30); }

  /// \p second counts on from the midnight that begins day 55844, over further days too.
  void AddEpoch(long double second, std::vector<short> satellites) {
    mjd epoch(55844, 0);
    epoch += second;
    epochs_.push_back(epoch);
    satellites_.push_back(std::move(satellites));
  }
  /// Sizes the tables and fills those of epochs and satellites.
  void Build() {
    constexpr unsigned short kTypes[] = {0, 1, 2, 3, 4, 5, 10};
    header.nobs = std::size(kTypes);
    header.obs.Resize(header.nobs);
    std::copy(std::begin(kTypes), std::end(kTypes), &header.obs(0));
    header.iC1 = header.iP1 = header.iP2 = header.iL1 = header.iL2 = header.iC2 = true;
    header.iC5 = true;
    std::size_t records = 0;
    for (const auto& satellites : satellites_) records += satellites.size();
    data.SetNRecords(epochs_.size(), records);
    data.SetData();
    std::set<short> all;
    long r = 0;
    for (long i = 0; i < data.nepochall; ++i) {
      const auto& satellites = satellites_[static_cast<std::size_t>(i)];
      data.epoch(i) = epochs_[static_cast<std::size_t>(i)];
      data.nsat(i) = static_cast<short>(satellites.size());
      for (const short sat : satellites) data.sat(r++) = sat;
      all.insert(satellites.begin(), satellites.end());
    }
    data.satList.Resize(static_cast<long>(all.size()));
    std::copy(all.begin(), all.end(), &data.satList(0));
  }

  /// First record of epoch \p i.
  long First(long i) const {
    long first = 0;
    for (long e = 0; e < i; ++e) first += data.nsat(e);
    return first;
  }
  /// Record of \p sat at epoch \p i; -1 where it has none.
  long Record(long i, short sat) const {
    const long first = First(i);
    for (long r = first; r < first + data.nsat(i); ++r)
      if (data.sat(r) == sat) return r;
    return -1;
  }

  RINEXHeader header;
  RINEXData data{header};

private:
  std::vector<mjd> epochs_;
  std::vector<std::vector<short>> satellites_;
};

/// Puts the working coefficients and the GLONASS wavelengths back at its end.
class RestoredCoefficients {
public:
  ~RestoredCoefficients() {
    GLC::LCion1 = GNSSc::LCion1;
    GLC::LCion2 = GNSSc::LCion2;
    GLC::lamb1 = GNSSc::lamb1;
    GLC::lamb2 = GNSSc::lamb2;
    GLONASSc::freq.Resize(GLONASSc::kSlots, 2);
    GLONASSc::lamb.Resize(GLONASSc::kSlots, 2);
    GLONASSc::lambWL.Resize(GLONASSc::kSlots, 1);
    GLONASSc::lambNL.Resize(GLONASSc::kSlots, 1);
    GLONASSc::alphaG.Resize(GLONASSc::kSlots, 2);
  }
};

#endif
