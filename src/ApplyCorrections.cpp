#include "ApplyCorrections.h"

#include "GNSS/GNSSLinCombs.h"
#include "GNSS/LocalFrame.h"
#include "GNSS/SatAzimuthZenit.h"
#include "GNSS/xyz_flh.h"
#include "KorvanC.h"
#include "PROGINC/ProgramError.h"
#include "Progress.h"
#include "SatPosition.h"

#include <cmath>
#include <cstdio>
#include <optional>
#include <unordered_map>

namespace {

constexpr int kColTGD = 25;         // [s] of a GPS broadcast record
constexpr int kColFreqChannel = 10; // of a GLONASS broadcast record

// Below it the frequency of L1 would not be positive; far above, the wavelengths vanish.
constexpr int kLowestChannel = -2847;
constexpr int kHighestChannel = 99999;

bool IsGlonassSlot(short sat) { return sat > 100 && sat <= 199; }

void WarnNoChannel(short sat, const char* source) {
  char text[128];
  std::snprintf(text, sizeof text,
                "GLONASS SATELLITE %3d NOT LISTED IN GLONASS %s FILE - USING FREQ. CHANNEL k = 0!",
                sat, source);
  ProgramWarning("Zenta", text);
}

/// \p k as it is listed, or channel 0 with a warning where \p k has no wavelength.
long double KnownChannel(long double k, short sat, const char* source) {
  if (k >= kLowestChannel && k <= kHighestChannel) return k;
  char text[160];
  std::snprintf(text, sizeof text,
                "GLONASS SATELLITE %3d HAS NO VALID CHANNEL [%Lg] IN GLONASS %s FILE - USING FREQ. "
                "CHANNEL k = 0!",
                sat, k, source);
  ProgramWarning("Zenta", text);
  return 0;
}

long double ListedChannel(KorvanC& ctx, short sat) {
  constexpr const char* kSource = "FREQUENCY CHANNEL";
  const long double k = ctx.glnfc.GetFreqNum(sat, ctx.rnxd.epoch(0));
  if (!ctx.glnfc.GetIsGLNSat()) WarnNoChannel(sat, kSource);
  return KnownChannel(k, sat, kSource);
}

long double BroadcastChannel(KorvanC& ctx, short sat) {
  constexpr const char* kSource = "BROADCAST EPHEMERIS";
  const GLNbEphData& records = ctx.glnnav.rdata;
  for (long i = 0; i < records.sat.Length(); ++i)
    if (records.sat(i) == sat - 100)
      return KnownChannel(records.data(i, kColFreqChannel), sat, kSource);
  WarnNoChannel(sat, kSource);
  return 0;
}

/// The two frequencies of a system as they enter the biases.
struct Frequencies {
  long double g;  ///< (f1/f2)^2
  long double k1; ///< f1^2/(f1^2 - f2^2)
  long double k2; ///< f2^2/(f1^2 - f2^2)
};
const Frequencies kGPS = {(1575.42L / 1227.60L) * (1575.42L / 1227.60L), GNSSc::LCion1,
                          GNSSc::LCion2};
const Frequencies kGLONASS = {81.0L / 49.0L, 81.0L / 32.0L, 49.0L / 32.0L};

/// What to add to the two codes of one satellite [m].
struct CodeCorrection {
  long double C1 = 0;
  long double P2 = 0;
};

long double GroupDelay(const KorvanC& ctx, short sat) {
  const GPSbEphData& records = ctx.gpsnav.gdata;
  for (long i = 0; i < records.sat.Length(); ++i)
    if (records.sat(i) == sat) return records.data(i, kColTGD);
  return 0;
}

CodeCorrection SatelliteCorrection(KorvanC& ctx, short sat, const Frequencies& f) {
  constexpr long double c = GNSSc::c;
  CodeCorrection d;
  if (sat <= 99 && ctx.isGPSnav) {
    d.C1 = -c * GroupDelay(ctx, sat);
    d.P2 = f.g * d.C1;
  }
  if (ctx.isP1P2) {
    const long double bias = ctx.p1p2.GetDCBVAL(sat);
    d.C1 = f.k2 * bias * c;
    d.P2 = f.k1 * bias * c;
  }
  if (ctx.isP1C1 && ctx.RecCodeTrackType != 0) {
    const long double bias = ctx.p1c1.GetDCBVAL(sat);
    d.C1 += c * bias;
    if (ctx.RecCodeTrackType == 2) d.P2 += c * bias;
  }
  return d;
}

void AddWherePresent(gnssobs& value, long double correction) {
  if (!value.IsNull()) value += correction;
}

/// Every record of a satellite in \p corrections.
void CorrectCodes(KorvanC& ctx, const std::unordered_map<short, CodeCorrection>& corrections) {
  RINEXData& store = ctx.rnxd;
  for (long k = 0; k < store.nsatall; ++k) {
    const auto found = corrections.find(store.sat(k));
    if (found == corrections.end()) continue;
    if (ctx.rnxh.iC1) AddWherePresent(store.C1(k), found->second.C1);
    if (ctx.rnxh.iP2) AddWherePresent(store.P2(k), found->second.P2);
  }
}

/// Elevation, azimuth and weight of records, in the local frame of the one receiver.
class RecordLocator {
public:
  explicit RecordLocator(KorvanC& ctx) : ctx_(ctx) {}

  void Locate(long k, const mjd& t) {
    xyz position;
    if (!IsProcessed(ctx_, ctx_.rnxd.sat(k)) || !ctx_.positions.Locate(ctx_, k, t, position))
      return;
    if (!frame_) frame_.emplace(xyz2flh(ctx_.RecPosFC, ctx_.eGPS));
    SatelliteAzimuthElevation(ctx_.RecPosFC, position, *frame_, &ctx_.ELV(k), &ctx_.AZM(k));
    if (ctx_.obsP != 1) return;
    const long double sine = std::sin(ctx_.ELV(k));
    ctx_.WGHT(k) = sine * sine;
  }

private:
  KorvanC& ctx_;
  std::optional<LocalFrame> frame_; ///< once a satellite was located
};

} // namespace

void ApplyCorrections(KorvanC& ctx) {
  Progress(ctx, "ApplyCorrections(): OBSERVATIONS AND COORDINATE CORRECTIONS!");
  Progress(ctx, "ApplyCorrections():         Applying receiver clock corrections!");
  CorrectRecClock(ctx);
  Progress(ctx, "ApplyCorrections():         GLONASS frequency channel determination!");
  SetGlonassFrequency(ctx);
  Progress(ctx, "ApplyCorrections():         Applying DCB values!");
  ApplyDCB(ctx);
  Progress(ctx, "ApplyCorrections():         Azimuths, Elevation angles, Weights!");
  CalculateAE(ctx);
}

void CorrectRecClock(KorvanC& ctx) {
  if (!ctx.isClkFile) return;
  if (ctx.rnxd.nepochall != ctx.clkerr.GetNEpoch())
    ProgramError("Zenta",
                 "NUMBER OF RINEX EPOCH DIFFERENT THAN NUMBER OF CLOCK CORRECTIONS EPOCHS!");
  for (long i = 0; i < ctx.rnxd.nepochall; ++i) ctx.rnxd.epoch(i) += -ctx.clkerr.GetClkErr(i);
}

void SetGlonassFrequency(KorvanC& ctx) {
  if (!ctx.isGLNfrch && !ctx.isGLNnav) return;
  for (long j = 0; j < ctx.rnxd.satList.Length(); ++j) {
    const short sat = ctx.rnxd.satList(j);
    if (!IsGlonassSlot(sat)) continue;
    const long double k = ctx.isGLNfrch ? ListedChannel(ctx, sat) : BroadcastChannel(ctx, sat);
    GLONASSc::SetFrequency(k, static_cast<short>(sat - 101));
  }
}

void ApplyDCB(KorvanC& ctx) {
  // A satellite of neither system goes with the frequencies of the one handled before it.
  const Frequencies* f = &kGPS;
  std::unordered_map<short, CodeCorrection> corrections;
  for (long j = 0; j < ctx.rnxd.satList.Length(); ++j) {
    const short sat = ctx.rnxd.satList(j);
    if (sat <= 199) {
      if (!IsProcessed(ctx, sat)) continue;
      f = sat <= 99 ? &kGPS : &kGLONASS;
    }
    corrections[sat] = SatelliteCorrection(ctx, sat, *f);
  }
  CorrectCodes(ctx, corrections);
}

void CalculateAE(KorvanC& ctx) {
  RINEXData& store = ctx.rnxd;
  ctx.ELV.Resize(store.nsatall, 1, 0.0L);
  ctx.AZM.Resize(store.nsatall, 1, 0.0L);
  ctx.WGHT.Resize(store.nsatall, 1, 1.0L);
  // Eclipses and wind-up, which phases alone have, ask for the same positions once more each.
  if (ctx.ifPhaseObs) ctx.positions.Keep(store.nsatall);
  RecordLocator locator(ctx);
  long k = 0;
  for (long i = 0; i < store.nepochall; ++i)
    for (const long end = k + store.nsat(i); k < end; ++k) locator.Locate(k, store.epoch(i));
}
