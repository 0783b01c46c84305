#include "IntervalList.h"

#include <gtest/gtest.h>

namespace {

using Pair = std::pair<long, long>;

TEST(IntervalList, KeepsPairsInOrder) {
  IntervalList list;
  list.Append(0, 9);
  list.Append(10, 19);
  EXPECT_EQ(list.Get(0), Pair(0, 9));
  EXPECT_EQ(list.Get(1), Pair(10, 19));
  EXPECT_EQ(list.Get(2), Pair(0, 0));
}

TEST(IntervalList, JoinedRestOverwritesTheFirstEpochOfTheLastPair) {
  IntervalList list;
  list.Append(0, 9);
  list.Append(10, 19);
  list.JoinRest(22);
  EXPECT_EQ(list.Get(0), Pair(0, 9));
  EXPECT_EQ(list.Get(1), Pair(22, 19));
}

TEST(IntervalList, PairsBehindAJoinedRestAreShiftedByOneNumber) {
  // numbers: 0 9 | 22 19 -> the next number goes over 19
  IntervalList list;
  list.Append(0, 9);
  list.Append(10, 19);
  list.JoinRest(22);
  list.Append(30, 39);
  list.Append(40, 49);
  EXPECT_EQ(list.Get(1), Pair(22, 30));
  EXPECT_EQ(list.Get(2), Pair(39, 40));
  EXPECT_EQ(list.Get(3), Pair(49, 0)); // half a pair
  EXPECT_EQ(list.Get(4), Pair(0, 0));
}

TEST(IntervalList, JoiningBeforeAnyPairLosesWhatFollows) {
  IntervalList list;
  list.JoinRest(5);
  list.Append(6, 9);
  EXPECT_EQ(list.Get(0), Pair(0, 0));
}

} // namespace
