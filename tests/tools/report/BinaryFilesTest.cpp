#include "report/ArcFile.h"
#include "report/ResidualFile.h"

#include "PROGINC/LittleEndian.h"
#include "tools/report/Refused.h"
#include "tools/report/Reports.h"

#include <gtest/gtest.h>
#include <set>

namespace {

using namespace report;

void PutResidual(std::string& out, short sat, short type, long double v) {
  PutInt16(out, sat);
  PutInt16(out, type);
  PutExtended(out, v);
}

/// Satellites 5 and 112; two epochs of two residuals and of one.
std::string TinyResiduals() {
  std::string out;
  PutInt16(out, 2);
  PutInt16(out, 5);
  PutInt16(out, 112);
  PutUint32(out, 55844);
  PutExtended(out, 30.5L);
  PutInt32(out, 2);
  PutResidual(out, 5, 1, -0.25L);
  PutResidual(out, 112, 5, 0.125L);
  PutUint32(out, 55845);
  PutExtended(out, 0);
  PutInt32(out, 1);
  PutResidual(out, 112, 2, 3);
  return out;
}

std::string RefusalOfResiduals(const std::string& bytes) {
  return RefusalOf([&] { ReadResidualFile("f", bytes); });
}

TEST(ResidualFile, ReadsEpochsSatellitesTypesAndValues) {
  const ResidualFile f = ReadResidualFile("f", TinyResiduals());
  EXPECT_EQ(f.satellites, (std::vector<Satellite>{5, 112}));
  ASSERT_EQ(f.blocks.size(), 2U);
  EXPECT_EQ(f.blocks[0].epoch, (Epoch{55844, 30.5}));
  ASSERT_EQ(f.blocks[0].residuals.size(), 2U);
  EXPECT_EQ(f.blocks[0].residuals[0].observable, Observable::P1C1);
  EXPECT_EQ(f.blocks[0].residuals[0].value, -0.25);
  EXPECT_EQ(f.blocks[0].residuals[1].satellite, 112);
  EXPECT_EQ(f.blocks[0].residuals[1].observable, Observable::L4);
  EXPECT_EQ(f.blocks[1].residuals[0].observable, Observable::P2C1);
  EXPECT_EQ(f.Count(), 3);
}

TEST(ResidualFile, CutAtAnyByteButBetweenEpochsIsRefused) {
  const std::string bytes = TinyResiduals();
  const std::set<std::size_t> whole = {6, 6 + 20 + 2 * 16, bytes.size()};
  for (std::size_t n = 0; n <= bytes.size(); ++n)
    EXPECT_EQ(RefusalOfResiduals(bytes.substr(0, n)).empty(), whole.contains(n)) << n;
  EXPECT_EQ(RefusalOfResiduals(bytes.substr(0, 27)),
            "f: byte 26: expected a satellite (2 bytes), found the end of the file; it is cut");
}

TEST(ResidualFile, WhatTheProgramNeverWritesIsRefused) {
  const std::string good = TinyResiduals();
  const auto changed = [&good](std::size_t at, char byte) {
    std::string bytes = good;
    bytes[at] = byte;
    return RefusalOfResiduals(bytes);
  };
  EXPECT_NE(changed(1, '\x80').find("a number of satellites"), std::string::npos);
  EXPECT_NE(changed(9, '\x7f').find("a Modified Julian Day"), std::string::npos);
  EXPECT_NE(changed(19, '\x7f').find("a second of day"), std::string::npos); // exponent
  EXPECT_NE(changed(22, '\0').find("at least one residual"), std::string::npos);
  EXPECT_NE(changed(25, '\x7f'), ""); // 2e9 residuals
  EXPECT_NE(changed(26, '\6').find("a satellite of the list"), std::string::npos);
  EXPECT_NE(changed(28, '\3').find("1, 2 or 5"), std::string::npos);
}

TEST(ResidualFile, RecordedFileHasTheCountOfItsReport) {
  const Report r = ReadTestReport("full/report.txt");
  const ResidualFile f = ReadResidualFile("f", ReportText("full/residuals.res"));
  EXPECT_EQ(f.Count(), r.residuals->count);
  EXPECT_EQ(f.blocks.size(), 60U);
}

std::string TinyArcs() {
  std::string out;
  for (const int sat : {5, 112}) {
    PutInt16(out, static_cast<std::int16_t>(sat));
    PutInt32(out, 10);
    PutInt32(out, 77);
    PutInt32(out, 30);
    PutInt32(out, 21);
  }
  return out;
}

TEST(ArcFile, ReadsRecordsOfEighteenBytes) {
  const std::vector<Arc> arcs = ReadArcFile("f", TinyArcs());
  ASSERT_EQ(arcs.size(), 2U);
  EXPECT_EQ(arcs[1].satellite, 112);
  EXPECT_EQ(arcs[1].firstEpoch, 10);
  EXPECT_EQ(arcs[1].firstRecord, 77);
  EXPECT_EQ(arcs[1].lastEpoch, 30);
  EXPECT_EQ(arcs[1].observations, 21);
  EXPECT_TRUE(ReadArcFile("f", "").empty());
}

TEST(ArcFile, CutWithinARecordIsRefused) {
  const std::string bytes = TinyArcs();
  for (std::size_t n = 0; n <= bytes.size(); ++n)
    EXPECT_EQ(RefusalOf([&] { ReadArcFile("f", bytes.substr(0, n)); }).empty(), n % 18 == 0) << n;
}

TEST(ArcFile, ArcsOfTheRunAreThoseOfItsAmbiguities) {
  const Report r = ReadTestReport("full/report.txt");
  std::vector<Arc> arcs = ReadArcFile("f", ReportText("full/Ambiq.b"));
  ExpectArcsOf(r, "f", arcs);
  const std::vector<Arc> shorter(arcs.begin(), arcs.end() - 1);
  EXPECT_NE(RefusalOf([&] { ExpectArcsOf(r, "f", shorter); }).find("12 arcs"), std::string::npos);
  arcs[3].observations += 1;
  EXPECT_NE(RefusalOf([&] { ExpectArcsOf(r, "f", arcs); }).find("arc 4"), std::string::npos);
}

TEST(Input, FolderAndMissingFileAreRefused) {
  EXPECT_NE(RefusalOf([] { ReadInput("/nowhere/at/all"); }).find("can't be opened"),
            std::string::npos);
  EXPECT_NE(RefusalOf([] { ReadInput("/"); }).find("can't be read"), std::string::npos);
}

} // namespace
