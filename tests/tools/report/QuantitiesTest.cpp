#include "report/Quantities.h"

#include <gtest/gtest.h>

namespace {

using namespace report;

// 40.3 m^3/s^2 times 1e16 / f^2, f = 154 * 10.23 MHz, with 40.308193 in place of 40.3:
// 1575.42^2 = 2481948.1764, 403081.93 / 2481948.1764 = 0.16240546
TEST(Quantities, OneTECUDelaysL1BySixteenCentimetres) {
  EXPECT_NEAR(kMetresPerTECU, 0.16240546, 5e-9);
  EXPECT_NEAR(ToTECU(1), 6.1574286, 1e-6); // 2481948.1764 / 403081.93
}

TEST(Quantities, LightTravelsThirtyCentimetresInANanosecond) {
  EXPECT_NEAR(ToNanoseconds(299.792458), 1000, 1e-9);
  EXPECT_NEAR(ToNanoseconds(-1), -3.33564095, 1e-8);
}

} // namespace
