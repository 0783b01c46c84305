#include "PrintRes.h"

#include "GNSS/GNSSLinCombs.h"
#include "support/Captured.h"
#include "support/Files.h"
#include "support/Near.h"
#include "support/ObsStore.h"
#include "support/TinyRun.h"

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace {

// ---- The file, byte by byte --------------------------------------------------------------------

std::string Bytes(const std::vector<int>& values) {
  std::string bytes;
  for (const int value : values) bytes += static_cast<char>(value);
  return bytes;
}

// Numbers of 80 bits: 64 bits of significand with the leading 1, then sign and exponent + 16383.
const std::vector<int> kMinus1_5 = {0, 0, 0, 0, 0, 0, 0, 0xC0, 0xFF, 0xBF, 0, 0}; // -1.1b 2^0
const std::vector<int> k2_25 = {0, 0, 0, 0, 0, 0, 0, 0x90, 0x00, 0x40, 0, 0};     // 1.001b 2^1
const std::vector<int> kMinus7 = {0, 0, 0, 0, 0, 0, 0, 0xE0, 0x01, 0xC0, 0, 0};   // -1.11b 2^2
const std::vector<int> k0_125 = {0, 0, 0, 0, 0, 0, 0, 0x80, 0xFC, 0x3F, 0, 0};    // 1.0b 2^-3
const std::vector<int> k3600 = {0, 0, 0, 0, 0, 0, 0, 0xE1, 0x0A, 0x40, 0, 0};     // 0xE1 2^4

struct Little {
  std::string bytes;
  Little& Int16(int v) { return Add(v, 2); }
  Little& Int32(long v) { return Add(v, 4); }
  Little& Extended(const std::vector<int>& v) {
    bytes += Bytes(v);
    return *this;
  }

private:
  Little& Add(long v, int n) {
    for (int k = 0; k < n; ++k) bytes += static_cast<char>((v >> (8 * k)) & 0xFF);
    return *this;
  }
};

TinyRecord Record(short sat, long double p1c1, long double p2c1, long double l4) {
  TinyRecord r;
  r.sat = sat;
  r.C1 = 2.0e7L;
  r.P1 = p1c1 == 0 ? 0 : r.C1 + p1c1;
  r.P2 = p2c1 == 0 ? 0 : r.C1 + p2c1;
  r.L4 = l4;
  return r;
}

class PrintResTest : public testing::Test {
protected:
  /// Every value of \p epochs took part in the adjustment.
  void Adjusted(const std::vector<TinyEpoch>& epochs) {
    Fill(run, epochs);
    const long n = run.data.GetNObs();
    ctx.ifOP1C1.Resize(n, 1, true);
    ctx.ifOP2C1.Resize(n, 1, true);
    ctx.ifOL4.Resize(n, 1, true);
    ctx.ixbSAT.Resize(run.data.satList.NRow(), 2, -1L);
    ctx.xbSAT.Resize(run.data.satList.NRow(), 2, 0.0L);
    Name("res");
  }
  void Name(const std::string& file) {
    name = folder.Name(file);
    std::strcpy(ctx.resfile, name.c_str());
    ctx.ifPrintRes = true;
  }
  /// What was written into the file.
  std::string Print() {
    Captured out(std::cout);
    Captured errors(std::cerr);
    PrintRes(ctx);
    report = out.Text();
    progress = errors.Text();
    return ReadWhole(name);
  }

  const ScratchFolder folder;
  TinyRun run;
  KorvanC& ctx = run.ctx;
  std::string name;
  std::string report;
  std::string progress;

private:
  RestoredCoefficients restored;
};

TEST_F(PrintResTest, FileFieldByField) {
  Adjusted({{mjd(55844, 3600), {Record(5, 1.5L, -2.25L, 7), Record(105, 0, 7, 0)}},
            {mjd(70000, 0.125L), {Record(5, -0.125L, 1, 1)}}});
  // Of the GLONASS record P2-C1 alone, of the second epoch P1-C1 alone.
  ctx.ifOP1C1(1) = ctx.ifOL4(1) = ctx.ifOP2C1(2) = ctx.ifOL4(2) = false;
  // Without any unknown a residual is minus the observation.
  Little file;
  file.Int16(2).Int16(5).Int16(105);           // head: satellites
  file.Int32(55844).Extended(k3600).Int32(4);  // first epoch: four residuals
  file.Int16(5).Int16(1).Extended(kMinus1_5);  // P1-C1
  file.Int16(5).Int16(2).Extended(k2_25);      // P2-C1
  file.Int16(5).Int16(5).Extended(kMinus7);    // L4
  file.Int16(105).Int16(2).Extended(kMinus7);  // P2-C1
  file.Int32(70000).Extended(k0_125).Int32(1); // second epoch: one residual
  file.Int16(5).Int16(1).Extended(k0_125);     // P1-C1
  EXPECT_EQ(Print(), file.bytes);
  EXPECT_EQ(file.bytes.size(), 2U + 2 * 2 + 2 * 20 + 5 * 16);
}

TEST_F(PrintResTest, ReportTellsFileAndCount) {
  Adjusted({{mjd(55844, 0), {Record(5, 1, 2, 3)}}});
  Print();
  EXPECT_EQ(report, "PRINTING OF RESIDUALS:\n"
                    "----------------------\n"
                    "\n"
                    "  Output residual file : " +
                        name +
                        "\n"
                        "  #of printed residuals: 3\n"
                        "\n");
  EXPECT_EQ(progress, "");
}

TEST_F(PrintResTest, ProgressLineWhenVerbose) {
  Adjusted({{mjd(55844, 0), {Record(5, 1, 2, 3)}}});
  ctx.verbose = true;
  Print();
  EXPECT_EQ(progress, "Zenta::PrintRes(): WRITING RESIDUALS IN BINARY PLOT FILE!\n");
}

TEST_F(PrintResTest, WithoutAFileNothingHappens) {
  Adjusted({{mjd(55844, 0), {Record(5, 1, 2, 3)}}});
  ctx.ifPrintRes = false;
  ctx.verbose = true;
  ctx.iIono = 3;
  EXPECT_EQ(Print(), "");
  EXPECT_EQ(report, "");
  EXPECT_EQ(progress, "");
  EXPECT_EQ(ctx.iIono, 3);
  EXPECT_FALSE(std::filesystem::exists(name));
}

TEST_F(PrintResTest, FileThatCantBeCreatedLeavesTheReport) {
  Adjusted({{mjd(55844, 0), {Record(5, 1, 2, 3)}}});
  Name("no/such/folder");
  EXPECT_EQ(Print(), "");
  EXPECT_NE(report.find("  #of printed residuals: 3\n"), std::string::npos);
  EXPECT_NE(progress.find(name), std::string::npos);
}

// ---- Which residuals
// -----------------------------------------------------------------------------

/// One residual, as read back.
struct Residual {
  short sat;
  short type;
  long double v;
};

/// Reads the 80-bit number at \p at: significand times a power of two.
long double ExtendedAt(const std::string& bytes, std::size_t at) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(bytes.at(at + k)); };
  long double v = 0;
  for (std::size_t k = 8; k-- > 0;) v = v * 256 + byte(k);
  const int exponent = byte(8) + 256 * (byte(9) & 0x7F);
  return std::ldexp(byte(9) & 0x80 ? -v : v, exponent - 16383 - 63);
}
long IntegerAt(const std::string& bytes, std::size_t at, int n) {
  unsigned long v = 0;
  for (int k = n; k-- > 0;)
    v = v * 256 + static_cast<unsigned char>(bytes.at(at + static_cast<std::size_t>(k)));
  return static_cast<long>(v);
}

/// All residuals of a file, whose lengths must agree.
std::vector<Residual> Residuals(const std::string& bytes) {
  std::vector<Residual> all;
  std::size_t at = 2 + 2 * static_cast<std::size_t>(IntegerAt(bytes, 0, 2));
  while (at < bytes.size()) {
    const long count = IntegerAt(bytes, at + 16, 4);
    EXPECT_GT(count, 0);
    at += 20;
    for (long k = 0; k < count; ++k, at += 16)
      all.push_back({static_cast<short>(IntegerAt(bytes, at, 2)),
                     static_cast<short>(IntegerAt(bytes, at + 2, 2)), ExtendedAt(bytes, at + 4)});
  }
  EXPECT_EQ(at, bytes.size());
  return all;
}

TEST_F(PrintResTest, EpochOfRejectedValuesHasNoBlock) {
  Adjusted({{mjd(55844, 0), {Record(5, 1, 2, 3)}}, {mjd(55844, 30), {Record(5, 1, 2, 3)}}});
  ctx.ifOP1C1(0) = ctx.ifOP2C1(0) = ctx.ifOL4(0) = false;
  const std::string bytes = Print();
  EXPECT_EQ(bytes.size(), 2U + 2 + 20 + 3 * 16);
  EXPECT_EQ(ExtendedAt(bytes, 4 + 4), 30); // the second epoch
}

TEST_F(PrintResTest, HeadCountsSatellitesWithoutResiduals) {
  Adjusted({{mjd(55844, 0), {Record(5, 1, 2, 3), Record(6, 1, 2, 3), Record(105, 1, 2, 3)}}});
  for (long k = 0; k < 3; ++k) ctx.ifOP1C1(k) = ctx.ifOP2C1(k) = ctx.ifOL4(k) = false;
  EXPECT_EQ(Print(), Little().Int16(3).Int16(5).Int16(6).Int16(105).bytes);
  EXPECT_NE(report.find("  #of printed residuals: 0\n"), std::string::npos);
}

TEST_F(PrintResTest, KindsThatAreNotUsedAreLeftOut) {
  const auto types = [this] {
    std::vector<short> found;
    for (const Residual& r : Residuals(Print())) found.push_back(r.type);
    return found;
  };
  Adjusted({{mjd(55844, 0), {Record(5, 1, 2, 3)}}});
  EXPECT_EQ(types(), (std::vector<short>{1, 2, 5}));
  ctx.ifPhaseObs = false;
  EXPECT_EQ(types(), (std::vector<short>{1, 2}));
  run.header.iPC1 = false;
  EXPECT_EQ(types(), (std::vector<short>{2}));
  ctx.ifPhaseObs = true;
  ctx.ifCodeObs = false;
  EXPECT_EQ(types(), (std::vector<short>{5}));
  run.header.iL4 = false;
  EXPECT_EQ(types(), (std::vector<short>{}));
  ctx.ifCodeObs = run.header.iPC1 = true;
  run.header.iPC4 = false;
  EXPECT_EQ(types(), (std::vector<short>{1}));
}

TEST_F(PrintResTest, SystemsThatAreNotProcessedAreLeftOut) {
  const auto satellites = [this] {
    std::vector<short> found;
    for (const Residual& r : Residuals(Print())) found.push_back(r.sat);
    return found;
  };
  Adjusted(
      {{mjd(55844, 0),
        {Record(99, 1, 0, 0), Record(100, 1, 0, 0), Record(199, 1, 0, 0), Record(200, 1, 0, 0)}}});
  ctx.ifPhaseObs = run.header.iPC4 = false;
  EXPECT_EQ(satellites(), (std::vector<short>{99, 100, 199}));
  ctx.isGPS = false;
  EXPECT_EQ(satellites(), (std::vector<short>{100, 199}));
  ctx.isGPS = true;
  ctx.isGLN = false;
  EXPECT_EQ(satellites(), (std::vector<short>{99}));
}

// ---- Their values
// --------------------------------------------------------------------------------

TEST_F(PrintResTest, BiasesOfReceiverAndSatellite) {
  Adjusted({{mjd(55844, 0), {Record(5, 1, 2, 0), Record(105, 1, 2, 0)}}});
  ctx.ifPhaseObs = false;
  ctx.xP1C1 = 10;
  ctx.xP2C1 = 100;
  ctx.xbSAT(0, 0) = 0.5L;
  ctx.xbSAT(0, 1) = 0.25L;
  ctx.xbSAT(1, 0) = 0.125L;
  ctx.xbSAT(1, 1) = 0.0625L;
  // None of them is an unknown yet.
  std::vector<Residual> r = Residuals(Print());
  for (const Residual& residual : r) EXPECT_EQ(residual.v, residual.type == 1 ? -1 : -2);

  ctx.ixP1C1 = 0;
  ctx.ixP2C1 = 1;
  for (long j = 0; j < 2; ++j)
    for (long c = 0; c < 2; ++c) ctx.ixbSAT(j, c) = 2 + 2 * j + c;
  r = Residuals(Print());
  ASSERT_EQ(r.size(), 4U);
  EXPECT_EQ(r[0].v, 10 + 0.5L - 1);
  EXPECT_EQ(r[1].v, 100 + 0.25L - 2);
  // GLONASS: the receiver's P1-C1, not its P2-C1
  EXPECT_EQ(r[2].v, 10 + 0.125L - 1);
  EXPECT_EQ(r[3].v, 0.0625L - 2);
}

TEST_F(PrintResTest, GlonassHasNoReceiverTermInP2C1) {
  Adjusted({{mjd(55844, 0), {Record(105, 0, 2, 0)}}});
  ctx.ifPhaseObs = run.header.iPC1 = false;
  ctx.ixP2C1 = 0;
  ctx.xP2C1 = 100;
  const std::vector<Residual> r = Residuals(Print());
  ASSERT_EQ(r.size(), 1U);
  EXPECT_EQ(r[0].v, -2);
}

TEST_F(PrintResTest, AmbiguityOfTheArcThatCoversTheEpoch) {
  Adjusted({{mjd(55844, 0), {Record(5, 0, 0, 3)}},
            {mjd(55844, 30), {Record(5, 0, 0, 3)}},
            {mjd(55844, 60), {Record(5, 0, 0, 3)}}});
  ctx.ifCodeObs = false;
  AddArc(run, 5, 0, 0, 10);
  AddArc(run, 5, 1, 1, 20);
  const std::vector<Residual> r = Residuals(Print());
  ASSERT_EQ(r.size(), 3U);
  EXPECT_EQ(r[0].v, 10 - 3);
  EXPECT_EQ(r[1].v, 20 - 3);
  EXPECT_EQ(r[2].v, -3); // on no arc
}

// At 30 degrees elevation sin z = 6371/6821 cos(30 deg) = 0.808890..., and the slant factor is
// (g - 1)/cos z with g = (77/60)^2 for GPS.
constexpr long double kSinZ = 6371.0L / 6821.0L * 0.86602540378443864676L;

class PrintResIonosphereTest : public PrintResTest {
protected:
  PrintResIonosphereTest() {
    std::vector<TinyEpoch> epochs;
    for (int i = 0; i < 4; ++i) {
      TinyRecord gps = Record(5, 1, 2, 3);
      TinyRecord gln = Record(105, 1, 2, 3);
      gps.elevation = gln.elevation = 3.14159265358979323846L / 6;
      gps.azimuth = gln.azimuth = 3.14159265358979323846L / 3;
      epochs.push_back({mjd(55844, 900 * i), {gps, gln}});
    }
    Adjusted(epochs);
    GLONASSc::alphaG.Resize(24, 2, 0.0L);
    GLONASSc::alphaG(4, 0) = 1.25L;
    GLONASSc::alphaG(4, 1) = 2;
    ctx.IonoEstInd.Resize(2, 2);
    ctx.IonoEstInd(0, 0) = 0;
    ctx.IonoEstInd(0, 1) = 1;
    ctx.IonoEstInd(1, 0) = 2;
    ctx.IonoEstInd(1, 1) = 3;
    ctx.xION.Resize(2, 2);
    ctx.xION(0, 0) = 5;
    ctx.xION(0, 1) = 2;
    ctx.xION(1, 0) = 7;
    ctx.xION(1, 1) = -4;
    ctx.xIGRAD.Resize(2, 2);
    ctx.xIGRAD(0, 0) = ctx.xIGRAD(1, 0) = 0.5L;
    ctx.xIGRAD(0, 1) = ctx.xIGRAD(1, 1) = -0.25L;
    ctx.nIono = 2;
    ctx.iIono = 1; // left by the adjustment
  }
  static long double Slant(short sat) {
    return (sat == 5 ? 5929.0L / 3600.0L - 1 : 0.75L) / std::sqrt(1 - kSinZ * kSinZ);
  }
};

TEST_F(PrintResIonosphereTest, DelayOfTheIntervalAtTheEpoch) {
  ctx.ifEstION = true;
  const std::vector<Residual> r = Residuals(Print());
  ASSERT_EQ(r.size(), 4U * 2 * 3);
  const long double vertical[] = {5, 5 + 2 * 0.25L, 7, 7 - 4 * 0.25L};
  for (std::size_t i = 0; i < r.size(); ++i) {
    const long double ion = Slant(r[i].sat) * vertical[i / 6];
    const long double truth = r[i].type == 1 ? -1 : r[i].type == 2 ? ion - 2 : ion - 3;
    EXPECT_TRUE(Near(r[i].v, truth, 1e-17L)) << i;
  }
}

TEST_F(PrintResIonosphereTest, GradientsWhenEstimated) {
  ctx.ifEstION = ctx.ifEstIGrad = true;
  const std::vector<Residual> r = Residuals(Print());
  ASSERT_EQ(r.size(), 4U * 2 * 3);
  // tan z (east sin 60 + north cos 60)
  const long double tanZ = kSinZ / std::sqrt(1 - kSinZ * kSinZ);
  const long double gradient = tanZ * (0.5L * 0.86602540378443864676L - 0.25L * 0.5L);
  EXPECT_TRUE(Near(r[1].v, Slant(5) * (5 + gradient) - 2, 1e-17L));
  EXPECT_TRUE(Near(r[5].v, Slant(105) * (5 + gradient) - 3, 1e-17L));
}

TEST_F(PrintResIonosphereTest, WithoutIonosphereNoIonosphereTerm) {
  ctx.ifEstION = false;
  for (const Residual& r : Residuals(Print()))
    EXPECT_EQ(r.v, r.type == 1 ? -1 : r.type == 2 ? -2 : -3);
}

TEST_F(PrintResIonosphereTest, IntervalMovesOnOnlyAtEpochsWithResiduals) {
  // Epochs 0 and 2 are rejected: the interval still moves to the second at epoch 3.
  ctx.ifEstION = true;
  for (const long k : {0, 1, 4, 5}) ctx.ifOP1C1(k) = ctx.ifOP2C1(k) = ctx.ifOL4(k) = false;
  const std::vector<Residual> r = Residuals(Print());
  ASSERT_EQ(r.size(), 2U * 2 * 3);
  EXPECT_TRUE(Near(r[1].v, Slant(5) * (5 + 2 * 0.25L) - 2, 1e-17L));
  EXPECT_TRUE(Near(r[7].v, Slant(5) * (7 - 4 * 0.25L) - 2, 1e-17L));
  EXPECT_EQ(ctx.iIono, 1);
}

} // namespace
