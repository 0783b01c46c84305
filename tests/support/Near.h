#ifndef SUPPORT_NEAR_H
#define SUPPORT_NEAR_H

#include <cmath>
#include <gtest/gtest.h>
#include <iomanip>

/// Compares in 80 bits: EXPECT_TRUE(Near(value, truth, tolerance)).
///
/// EXPECT_NEAR compares doubles and can't see an error below 1e-16. A value that is not a
/// number is near nothing.
inline testing::AssertionResult Near(long double value, long double truth, long double tolerance) {
  const long double off = std::fabs(value - truth);
  if (off <= tolerance) return testing::AssertionSuccess();
  testing::AssertionResult result = testing::AssertionFailure();
  result << std::setprecision(21) << value << " is not " << truth << " within " << tolerance
         << " (off by " << off << ")";
  return result;
}

#endif
