#include "ReadFiles.h"

#include "KorvanC.h"
#include "PROGINC/DecimalComma.h"
#include "PROGINC/InputInWork.h"
#include "PROGINC/ProgramError.h"

#include <iostream>
#include <string>

namespace {

constexpr const char* kSet = "Zenta::SetFiles():         ";
constexpr const char* kRead = "Zenta::ReadFiles():        ";

template <typename Reader>
void Set(const KorvanC& ctx, bool inUse, Reader& reader, const char* name, const char* message) {
  if (!inUse) return;
  reader.SetFile(name);
  if (ctx.verbose) std::cerr << kSet << message << '\n';
}

/// Reads a file in use. \returns whether its progress line is due.
template <typename Reader>
bool Read(const KorvanC& ctx, bool inUse, const char* name, Reader& reader) {
  if (!inUse) return false;
  const InputInWork file(name);
  reader.ReadFile();
  return ctx.verbose;
}

/// As above, for files of decimal numbers whose reader takes any.
template <typename Reader>
bool ReadDecimals(const KorvanC& ctx, bool inUse, const char* name, Reader& reader) {
  if (inUse) RefuseDecimalCommas(name);
  return Read(ctx, inUse, name, reader);
}

void ReadObservations(KorvanC& ctx) {
  if (!Read(ctx, ctx.isRnx, ctx.rnxfile, ctx.rnx)) return;
  std::cerr << kRead << "reading RINEX file - " << ctx.rnxd.GetNEpoch() << " epochs, "
            << ctx.rnxd.GetNObs() << " C1 observations, " << ctx.rnxh.GetNObs() << " obs types\n";
}

void ReadClock(KorvanC& ctx) {
  if (!ReadDecimals(ctx, ctx.isClkFile, ctx.clkfile, ctx.clkerr)) return;
  std::cerr << kRead << "reading RECEIVER CLOCK file - " << ctx.clkerr.GetNEpoch() << " epochs!\n";
}

// These two lines carry the prefix of the stage before; logs are searched for it.
void ReadMultipath(const KorvanC& ctx, bool inUse, CompactTEQC& reader, const char* name,
                   const char* code) {
  if (!ReadDecimals(ctx, inUse, name, reader)) return;
  std::cerr << kSet << "reading MULTIPATH ON " << code << " file - " << reader.NEph() << " epochs "
            << reader.NObs() << " observations\n";
}

template <typename Orbits>
void ReadBroadcast(const KorvanC& ctx, bool inUse, Orbits& reader, const char* name,
                   const char* system) {
  if (!ReadDecimals(ctx, inUse, name, reader)) return;
  std::cerr << kRead << "reading " << system << " NAVIGATION file - " << reader.GetNSat()
            << " records\n";
}

/// What a file of precise orbits lacks, empty where nothing.
std::string LackOf(const GNSSpEph& reader) {
  if (reader.GetNEpoch() <= 0 || reader.GetNSatList() <= 0) return "HOLDS NO ORBITS";
  if (!reader.IsWhole()) return "ENDS BEFORE ITS LAST EPOCH";
  if (!reader.HasNodes()) return "HOLDS TOO FEW EPOCHS";
  return {};
}

// The reader takes any file for one that was cut off; this is the place that knows its name.
void WarnOfLack(const GNSSpEph& reader, const char* name, const char* system) {
  const std::string lack = LackOf(reader);
  if (lack.empty()) return;
  const std::string text =
      std::string(system) + " PRECISE EPHEMERIS FILE " + lack + ": " + name + "!";
  ProgramWarning("Zenta", text.c_str());
}

void ReadPrecise(const KorvanC& ctx, bool inUse, GNSSpEph& reader, const char* name,
                 const char* system) {
  if (!inUse) return;
  if (ReadDecimals(ctx, inUse, name, reader))
    std::cerr << kRead << "reading " << system << " PRECISE EPHEMERIS file - " << reader.GetNEpoch()
              << " epochs " << reader.GetNSatList() << " satellites\n";
  WarnOfLack(reader, name, system);
}

void ReadChannels(KorvanC& ctx) {
  if (Read(ctx, ctx.isGLNfrch, ctx.glnfreqch, ctx.glnfc))
    std::cerr << kRead << "reading GLONASS FREQUENCY CHANNEL file\n";
}

void ReadBiases(const KorvanC& ctx, bool inUse, DCB& reader, const char* name, const char* kind) {
  if (ReadDecimals(ctx, inUse, name, reader))
    std::cerr << kRead << "reading " << kind << " DCB file!\n";
}

} // namespace

void SetFiles(KorvanC& ctx) {
  if (ctx.verbose)
    std::cerr << "Zenta::SetFiles(): SETTING INPUT FILE NAMES AND PROCESSING SETTINGS!\n";
  Set(ctx, ctx.isRnx, ctx.rnx, ctx.rnxfile, "setting RINEX file!");
  Set(ctx, ctx.isClkFile, ctx.clkerr, ctx.clkfile, "RECEIVER CLOCK file!");
  Set(ctx, ctx.isMP1, ctx.mp1, ctx.mp1file, "MULTIPATH ON C1/P1 file!");
  Set(ctx, ctx.isMP2, ctx.mp2, ctx.mp2file, "MULTIPATH ON P2 file!");
  Set(ctx, ctx.isGPSnav, ctx.gpsnav, ctx.gnavfile, "setting GPS NAVIGATION file!");
  Set(ctx, ctx.isGLNnav, ctx.glnnav, ctx.rnavfile, "setting GLONASS NAVIGATION file!");
  Set(ctx, ctx.isGpEph, ctx.pephG, ctx.gsp3file, "setting GPS PRECISE EPHEMERIS file!");
  Set(ctx, ctx.isRpEph, ctx.pephR, ctx.rsp3file, "setting GLONASS PRECISE EPHEMERIS file!");
  Set(ctx, ctx.isGLNfrch, ctx.glnfc, ctx.glnfreqch, "setting GLONASS FREQUENCY CHANNEL file!");
  Set(ctx, ctx.isP1P2, ctx.p1p2, ctx.dcbp1p2file, "setting P1P2 DCB file!");
  Set(ctx, ctx.isP1C1, ctx.p1c1, ctx.dcbp1c1file, "setting P1C1 DCB file!");
  Set(ctx, ctx.isP2C2, ctx.p2c2, ctx.dcbp2c2file, "setting P2C2 DCB file!");
  Set(ctx, ctx.isRCodTrc, ctx.rctrack, ctx.rctrackfile, "setting RECEIVER CODE TRACKING file!");
  Set(ctx, ctx.isAprCrd, ctx.acrd, ctx.aprcrdfile, "setting APRIORI COORDINATE file!");
}

void ReadFiles(KorvanC& ctx) {
  if (ctx.verbose) std::cerr << "Zenta::ReadFiles(): READING INPUT DATA FILES!\n";
  ReadObservations(ctx);
  ReadClock(ctx);
  ReadMultipath(ctx, ctx.isMP1, ctx.mp1, ctx.mp1file, "C1/P1");
  ReadMultipath(ctx, ctx.isMP2, ctx.mp2, ctx.mp2file, "P2");
  ReadBroadcast(ctx, ctx.isGPSnav, ctx.gpsnav, ctx.gnavfile, "GPS");
  ReadBroadcast(ctx, ctx.isGLNnav, ctx.glnnav, ctx.rnavfile, "GLONASS");
  ReadPrecise(ctx, ctx.isGpEph, ctx.pephG, ctx.gsp3file, "GPS");
  ReadPrecise(ctx, ctx.isRpEph, ctx.pephR, ctx.rsp3file, "GLONASS");
  ReadChannels(ctx);
  ReadBiases(ctx, ctx.isP1P2, ctx.p1p2, ctx.dcbp1p2file, "P1P2");
  ReadBiases(ctx, ctx.isP1C1, ctx.p1c1, ctx.dcbp1c1file, "P1C1");
  ReadBiases(ctx, ctx.isP2C2, ctx.p2c2, ctx.dcbp2c2file, "P2C2");
}
