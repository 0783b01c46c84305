#include "Multipath.h"
#include "Vec3.h"
#include "support/Files.h"
#include "support/Near.h"
#include "teqc/CompactTEQC.h"
#include <gtest/gtest.h>

using namespace sim;

TEST(Compact2Writer, RepeatsListsAndFillsLeftOutEpochs) {
  Compact2Writer writer(mjd(55844, 43200), 30);
  writer.Add(0, {{5, 0.1234}, {112, -1.5}});
  writer.Add(1, {{5, 0.2}, {112, 0}});
  writer.Add(3, {{5, 0.3}});
  EXPECT_EQ(writer.Text(), "COMPACT2\nT_SAMP    30.0000\nSTART_TIME_MJD  55844.500000000000\n"
                           "2 G05 R12\n  0.1234   -1.5000  \n"
                           "-1\n  0.2000    0.0000  \n"
                           "0\n"
                           "1 G05\n  0.3000  \n");
}

TEST(Compact2Writer, TextIsReadByTheProgram) {
  Compact2Writer writer(mjd(55844, 0), 30);
  writer.Add(0, {{5, 0.1234}, {112, -1.5}});
  writer.Add(2, {{5, 0.2}, {112, 0}});
  const ScratchFolder folder;
  CompactTEQC reader;
  reader.SetFile(folder.Write("simu.mp1", writer.Text()).c_str());
  reader.ReadFile();
  EXPECT_EQ(reader.NObs(), 4);
  EXPECT_EQ(reader.NEph(), 2);
}

TEST(Multipath, FadesWithElevationAndIsAWholeTenthOfAMillimetre) {
  Random random(1, "multipath");
  const Multipath multipath(1.5, random);
  for (double degrees = 5; degrees < 90; degrees += 0.5) {
    const double elevation = degrees * kPi / 180;
    for (const int signal : {0, 1}) {
      const double value = multipath.Value(signal, elevation);
      EXPECT_LE(std::abs(value), 1.5 * std::exp(-degrees / 20) + 5e-5);
      EXPECT_NEAR(value * 1e4, std::round(value * 1e4), 1e-6);
    }
  }
}

TEST(Multipath, OfNoAmplitudeIsNone) {
  Random random(1, "multipath");
  EXPECT_EQ(Multipath(0, random).Value(0, 0.3), 0);
}
