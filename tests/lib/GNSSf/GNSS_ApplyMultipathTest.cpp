#include "GNSSf/GNSS_ApplyMultipath.h"

#include "GNSS/RINEX.h"
#include "GNSS/RINEXData.h"
#include "GNSS/RINEXHeader.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/Near.h"
#include "teqc/CompactTEQC.h"

#include <map>
#include <string>
#include <vector>

namespace {

/// One satellite's codes; 0 is no observation.
struct Codes {
  short sat;
  long double C1, P1, P2;
};
/// Observations at [s] behind 55844.0.
struct ObsEpoch {
  long double seconds;
  std::vector<Codes> codes;
};

/// An observation store filled by hand.
struct Store {
  explicit Store(const std::vector<ObsEpoch>& epochs) : data(header) {
    header.iC1 = header.iP1 = header.iP2 = true;
    std::vector<Codes> all;
    data.nepochall = static_cast<long>(epochs.size());
    data.epoch.Resize(data.nepochall);
    data.nsat.Resize(data.nepochall);
    for (long i = 0; i < data.nepochall; ++i) {
      const ObsEpoch& epoch = epochs[static_cast<std::size_t>(i)];
      data.epoch(i) = mjd(55844, epoch.seconds);
      data.nsat(i) = static_cast<short>(epoch.codes.size());
      all.insert(all.end(), epoch.codes.begin(), epoch.codes.end());
    }
    data.nsatall = static_cast<long>(all.size());
    data.sat.Resize(data.nsatall);
    data.C1.Resize(data.nsatall);
    data.P1.Resize(data.nsatall);
    data.P2.Resize(data.nsatall);
    for (long r = 0; r < data.nsatall; ++r) {
      const Codes& codes = all[static_cast<std::size_t>(r)];
      data.sat(r) = codes.sat;
      data.C1(r).SetObs(codes.C1);
      data.P1(r).SetObs(codes.P1);
      data.P2(r).SetObs(codes.P2);
    }
  }
  long double C1(long r) const { return data.C1(r).GetObs(); }
  long double P1(long r) const { return data.P1(r).GetObs(); }
  long double P2(long r) const { return data.P2(r).GetObs(); }

  RINEXHeader header;
  RINEXData data;
};

CompactTEQC Multipath(const std::string& data, const std::string& start = "55844.000000000") {
  const ScratchFolder folder;
  CompactTEQC file;
  const std::string text = "COMPACT2\nT_SAMP    30.0000\nSTART_TIME_MJD  " + start + "\n" + data;
  file.SetFile(folder.Write("test.mp", text).c_str());
  file.ReadFile();
  return file;
}

/// Three epochs of 30 s, of satellites 5, 107 and 9 (never in the plot files).
std::vector<ObsEpoch> ThreeEpochs() {
  const std::vector<Codes> codes = {
      {5, 1001, 2001, 3001}, {107, 1002, 2002, 3002}, {9, 1003, 2003, 3003}};
  return {{0, codes}, {30, codes}, {60, codes}};
}
/// The middle epoch is missing, and the satellites are in another order.
const char* const kFirst = "2 R 7 G05\n   0.250     0.500  \n0\n-1\n   0.125    -1.500  \n";
const char* const kSecond = "0\n3 G05 G06 R07\n   4.000     8.000    16.000  \n";

const CompactTEQC kNone;

/// Runs \p call and returns what it wrote to standard error.
template <typename Call> std::string ErrorText(Call call) {
  const Captured error(std::cerr);
  call();
  return error.Text();
}

} // namespace

TEST(ApplyMultipath, PairOfFilesIsRemovedAtCommonEpochsAndSatellitesAlone) {
  Store store(ThreeEpochs());
  ApplyMultipath(store.header, store.data, Multipath(kFirst), Multipath(kSecond), true, true,
                 false);
  // C1 and P1 of satellites 5 and 107 in epochs 0 and 2, P2 of both in epoch 1
  const std::map<long, long double> first = {{0, 0.5L}, {1, 0.25L}, {6, -1.5L}, {7, 0.125L}};
  const std::map<long, long double> second = {{3, 4}, {4, 16}};
  const auto value = [](const std::map<long, long double>& values, long r) {
    const auto found = values.find(r);
    return found == values.end() ? 0.0L : found->second;
  };
  for (long r = 0; r < 9; ++r) {
    EXPECT_TRUE(Near(store.C1(r), 1001 + r % 3 - value(first, r), 0)) << r;
    EXPECT_TRUE(Near(store.P1(r), 2001 + r % 3 - value(first, r), 0)) << r;
    EXPECT_TRUE(Near(store.P2(r), 3001 + r % 3 - value(second, r), 0)) << r;
  }
}

TEST(ApplyMultipath, NumberOfCommonSatellitesIsReported) {
  Store store(ThreeEpochs());
  const std::string text = ErrorText([&] {
    ApplyMultipath(store.header, store.data, Multipath(kFirst), Multipath(kSecond), true, true,
                   true);
  });
  EXPECT_EQ(text, "Zenta::ApplyMultipath(): REMOVING ESTIMATED MULTIPATH FROM TEQC!\n"
                  "Zenta::ApplyMultipath():         Multipath on P1/C1 - 4 common satellites!\n"
                  "Zenta::ApplyMultipath():         Multipath on P2 - 2 common satellites!\n");
}

TEST(ApplyMultipath, OneFileAloneIsAppliedAndReportedAlone) {
  Store first(ThreeEpochs());
  EXPECT_EQ(ErrorText([&] {
              ApplyMultipath(first.header, first.data, Multipath(kFirst), kNone, true, false, true);
            }),
            "Zenta::ApplyMultipath(): REMOVING ESTIMATED MULTIPATH FROM TEQC!\n"
            "Zenta::ApplyMultipath():         Multipath on P1/C1 - 4 common satellites!\n");
  EXPECT_EQ(first.C1(0), 1000.5L);
  EXPECT_EQ(first.P2(3), 3001);

  Store second(ThreeEpochs());
  EXPECT_EQ(ErrorText([&] {
              ApplyMultipath(second.header, second.data, kNone, Multipath(kSecond), false, true,
                             true);
            }),
            "Zenta::ApplyMultipath(): REMOVING ESTIMATED MULTIPATH FROM TEQC!\n"
            "Zenta::ApplyMultipath():         Multipath on P2 - 2 common satellites!\n");
  EXPECT_EQ(second.C1(0), 1001);
  EXPECT_EQ(second.P2(3), 2997);
}

TEST(ApplyMultipath, WithoutFilesNothingHappens) {
  Store store(ThreeEpochs());
  EXPECT_EQ(ErrorText([&] {
              ApplyMultipath(store.header, store.data, Multipath(kFirst), Multipath(kSecond), false,
                             false, true);
            }),
            "");
  EXPECT_EQ(store.C1(0), 1001);
  EXPECT_EQ(store.P2(3), 3001);
}

TEST(ApplyMultipath, EpochsWithinAMillisecondAreMatched) {
  for (const auto& [offset, matched] :
       {std::pair{0.0009L, true}, {-0.0009L, true}, {0.0011L, false}, {-0.0011L, false}}) {
    Store store({{30 + offset, {{5, 1001, 2001, 3001}}}});
    ApplyMultipath(store.header, store.data,
                   Multipath("1 G05\n   0.500  \n-1\n   0.250  \n-1\n   0.125  \n"), kNone, true,
                   false, false);
    EXPECT_EQ(store.C1(0), matched ? 1000.75L : 1001) << static_cast<double>(offset);
  }
}

TEST(ApplyMultipath, WalkPassesOverEpochsThatOneSideLacks) {
  // Observed at 0, 15, 60, 90, 150 s; multipath at 60, 90, 120, 150 s.
  const Codes codes{5, 1000, 2000, 3000};
  Store store({{0, {codes}},
               {15, {codes, {9, 1000, 2000, 3000}}},
               {60, {codes}},
               {90, {codes}},
               {150, {codes}}});
  const CompactTEQC file =
      Multipath("0\n0\n1 G05\n   1.000  \n-1\n   2.000  \n-1\n   4.000  \n-1\n   8.000  \n");
  ApplyMultipath(store.header, store.data, file, kNone, true, false, false);
  const std::vector<long double> expected = {1000, 1000, 1000, 999, 998, 992};
  for (long r = 0; r < 6; ++r) EXPECT_EQ(store.C1(r), expected[static_cast<std::size_t>(r)]) << r;
}

TEST(ApplyMultipath, SatellitesThatOnlyOneSideHasAreNeitherChangedNorCounted) {
  Store store({{0, {{5, 1001, 2001, 3001}, {6, 1002, 2002, 3002}}}});
  const std::string text = ErrorText([&] {
    ApplyMultipath(store.header, store.data, Multipath("2 G06 G07\n   0.500     0.250  \n"), kNone,
                   true, false, true);
  });
  EXPECT_NE(text.find(" - 1 common satellites!"), std::string::npos);
  EXPECT_EQ(store.C1(0), 1001);
  EXPECT_EQ(store.C1(1), 1001.5L);
}

TEST(ApplyMultipath, MissingObservationsStayMissingButAreCounted) {
  Store store({{0, {{5, 0, 2001, 3001}, {6, 1002, 0.00005L, 0}}}});
  const CompactTEQC file = Multipath("2 G05 G06\n   0.500     0.250  \n");
  const std::string text =
      ErrorText([&] { ApplyMultipath(store.header, store.data, file, file, true, true, true); });
  EXPECT_NE(text.find("P1/C1 - 2 common"), std::string::npos);
  EXPECT_EQ(store.C1(0), 0);
  EXPECT_EQ(store.P1(0), 2000.5L);
  EXPECT_EQ(store.P1(1), 0.00005L);
  EXPECT_EQ(store.P2(1), 0);
}

TEST(ApplyMultipath, FlagsOfTheObservationAreKept) {
  Store store({{0, {{5, 1001, 2001, 3001}}}});
  store.data.C1(0).SetLli(1);
  store.data.C1(0).SetSs(7);
  ApplyMultipath(store.header, store.data, Multipath("1 G05\n   0.500  \n"), kNone, true, false,
                 false);
  EXPECT_EQ(store.data.C1(0).GetLli(), 1);
  EXPECT_EQ(store.data.C1(0).GetSs(), 7);
}

TEST(ApplyMultipath, TypesThatTheHeaderDoesNotDeclareAreLeftAlone) {
  const CompactTEQC file = Multipath("1 G05\n   0.500  \n");
  for (int missing = 0; missing < 3; ++missing) {
    Store store({{0, {{5, 1000, 1000, 1000}}}});
    if (missing == 0) store.header.iC1 = false, store.data.C1.Resize(0, 0);
    if (missing == 1) store.header.iP1 = false, store.data.P1.Resize(0, 0);
    if (missing == 2) store.header.iP2 = false, store.data.P2.Resize(0, 0);
    ApplyMultipath(store.header, store.data, file, file, true, true, false);
    if (missing != 0) {
      EXPECT_EQ(store.C1(0), 999.5L);
    }
    if (missing != 1) {
      EXPECT_EQ(store.P1(0), 999.5L);
    }
    if (missing != 2) {
      EXPECT_EQ(store.P2(0), 999.5L);
    }
  }
}

TEST(ApplyMultipath, MultipathEpochsEndBeforeItsValuesAndTheWalkWithThem) {
  // two epochs of three values: an index of values must not be taken for one of epochs
  Store store({{0, {{5, 1000, 0, 0}}}, {30, {{5, 1000, 0, 0}}}, {60, {{5, 1000, 0, 0}}}});
  const CompactTEQC file = Multipath("3 G05 G06 G07\n   1.000     0.000     0.000  \n"
                                     "-1\n   2.000     0.000     0.000  \n");
  ApplyMultipath(store.header, store.data, file, kNone, true, false, false);
  EXPECT_EQ(store.C1(0), 999);
  EXPECT_EQ(store.C1(1), 998);
  EXPECT_EQ(store.C1(2), 1000);
}

TEST(ApplyMultipath, WalkEndsAtTheNumberOfValuesToo) {
  // Two epochs of no value before one of one: the last epoch is out of the reach of one value.
  Store store({{60, {{5, 1000, 0, 0}}}});
  const CompactTEQC file = Multipath("-1\n\n-1\n\n1 G05\n   1.000  \n");
  ASSERT_EQ(file.NEph(), 3);
  ASSERT_EQ(file.NObs(), 1);
  ApplyMultipath(store.header, store.data, file, kNone, true, false, false);
  EXPECT_EQ(store.C1(0), 1000);
}

TEST(ApplyMultipath, EmptyFilesAndStoresMatchNothing) {
  Store store(ThreeEpochs());
  Store empty({});
  EXPECT_NE(ErrorText([&] {
              ApplyMultipath(store.header, store.data, Multipath(""), Multipath("0\n0\n"), true,
                             true, true);
            }).find("P1/C1 - 0 common satellites!\n"),
            std::string::npos);
  ApplyMultipath(empty.header, empty.data, Multipath(kFirst), kNone, true, false, false);
  EXPECT_EQ(store.C1(0), 1001);
}

TEST(ApplyMultipath, SingleFileIsRemovedFromBothFirstCodes) {
  Store store(ThreeEpochs());
  EXPECT_EQ(
      ErrorText([&] { ApplyMultipath(store.header, store.data, Multipath(kFirst), true, true); }),
      "Zenta::ApplyMultipath(): REMOVING ESTIMATED MULTIPATH FROM TEQC!\n"
      "Zenta::ApplyMultipath():         Multipath on C1 - 4 common satellites!\n");
  EXPECT_EQ(store.C1(0), 1000.5L);
  EXPECT_EQ(store.P1(1), 2001.75L);
  EXPECT_EQ(store.P2(0), 3001);

  Store untouched(ThreeEpochs());
  ApplyMultipath(untouched.header, untouched.data, Multipath(kFirst), false, true);
  EXPECT_EQ(untouched.C1(0), 1001);
}

TEST(ApplyMultipath, ValuesCanBeStoredInsteadOfRemoved) {
  Store store(ThreeEpochs());
  matrix<long double> values(9, 1, -99.0L);
  EXPECT_EQ(ErrorText([&] {
              ApplyMultipath(store.header, store.data, Multipath(kFirst), true, true, values);
            }),
            "Zenta::ApplyMultipath(): REMOVING ESTIMATED MULTIPATH FROM TEQC!\n"
            "Zenta::ApplyMultipath():         Multipath -> 4 common satellites!\n");
  const std::vector<long double> expected = {0.5L, 0.25L, -99, -99, -99, -99, -1.5L, 0.125L, -99};
  for (long r = 0; r < 9; ++r) EXPECT_EQ(values(r), expected[static_cast<std::size_t>(r)]) << r;
  EXPECT_EQ(store.C1(0), 1001);
  EXPECT_EQ(store.P1(0), 2001);
}

TEST(ApplyMultipath, StoredValuesAreMatchedWithinThreeTenthsOfASecond) {
  for (const auto& [offset, matched] :
       {std::pair{0.29L, true}, {-0.29L, true}, {0.31L, false}, {-0.31L, false}}) {
    Store store({{30 + offset, {{5, 1001, 2001, 3001}}}});
    matrix<long double> values(1, 1, -99.0L);
    ApplyMultipath(store.header, store.data, Multipath("0\n1 G05\n   0.250  \n-1\n   0.125  \n"),
                   true, false, values);
    EXPECT_EQ(values(0), matched ? 0.25L : -99) << static_cast<double>(offset);
  }
}

TEST(ApplyMultipathRecorded, EveryValueOfADayFindsItsObservation) {
  SKIP_WITHOUT("2011-283-cagz/cagz2830.11o");
  SKIP_WITHOUT("derived/cagz2830.mp1");
  RINEXHeader header;
  RINEXData data(header);
  RINEX rinex(header, data);
  rinex.SetFile(RealData("2011-283-cagz/cagz2830.11o").c_str());
  rinex.ReadFile();
  const matrix<gnssobs> before = data.C1;
  CompactTEQC file;
  file.SetFile(RealData("derived/cagz2830.mp1").c_str());
  file.ReadFile();

  const std::string text =
      ErrorText([&] { ApplyMultipath(header, data, file, kNone, true, false, true); });
  EXPECT_NE(text.find("Multipath on P1/C1 - 43965 common satellites!\n"), std::string::npos);
  // First record: G02, the first value, 0.145 m.
  EXPECT_EQ(data.sat(0), file.GetSat(0));
  EXPECT_TRUE(Near(before(0).GetObs() - data.C1(0).GetObs(), 0.145L, 1e-10L));
}
