#include "RunInputs.h"

#include "ApplyCorrections.h"
#include "Eclipsing.h"
#include "GetInitPos.h"
#include "KorvanC.h"
#include "Quiet.h"
#include "ReadFiles.h"
#include "RunObjects.h"
#include "SatPosition.h"

#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <memory>

namespace inputs {

namespace {

namespace fs = std::filesystem;
using report::Report;

/// Hands one file on to the context. \returns false where it is named but not found.
class FileGiver {
public:
  FileGiver(const Places& places, std::string& whyNot) : places_(places), whyNot_(whyNot) {}

  void Give(const std::string& name, char (&field)[256], bool& inUse) {
    inUse = !name.empty();
    if (!inUse || !whyNot_.empty()) return;
    const std::string found = Find(name, places_);
    if (found.empty()) {
      whyNot_ = fmt::format("{} is not there", name);
      return;
    }
    if (found.size() >= sizeof field) {
      whyNot_ = fmt::format("the name of {} is too long", found);
      return;
    }
    std::memcpy(field, found.c_str(), found.size() + 1);
  }

private:
  const Places& places_;
  std::string& whyNot_;
};

void GiveFiles(const report::Files& files, FileGiver& giver, KorvanC& ctx) {
  giver.Give(files.observations, ctx.rnxfile, ctx.isRnx);
  giver.Give(files.clock, ctx.clkfile, ctx.isClkFile);
  giver.Give(files.gpsNavigation, ctx.gnavfile, ctx.isGPSnav);
  giver.Give(files.glonassNavigation, ctx.rnavfile, ctx.isGLNnav);
  giver.Give(files.gpsOrbits, ctx.gsp3file, ctx.isGpEph);
  giver.Give(files.glonassOrbits, ctx.rsp3file, ctx.isRpEph);
  giver.Give(files.glonassChannels, ctx.glnfreqch, ctx.isGLNfrch);
  giver.Give(files.dcbP1P2, ctx.dcbp1p2file, ctx.isP1P2);
  giver.Give(files.dcbP1C1, ctx.dcbp1c1file, ctx.isP1C1);
  giver.Give(files.codeTracking, ctx.rctrackfile, ctx.isRCodTrc);
  giver.Give(files.coordinates, ctx.aprcrdfile, ctx.isAprCrd);
  ctx.isGPS = ctx.isGPSnav || ctx.isGpEph;
  ctx.isGLN = ctx.isGLNnav || ctx.isRpEph;
}

std::string Trimmed(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

report::Epoch EpochOf(const mjd& t) {
  return {static_cast<int>(t.GetMJDay()), static_cast<double>(t.GetSecond())};
}

/// By what a code of the satellites changes, from its values \p before.
template <typename Member>
void Compare(const RINEXData& store, const matrix<gnssobs>& before, const matrix<gnssobs>& after,
             Member member, std::map<report::Satellite, CodeCorrection>& corrections) {
  if (before.Length() != store.nsatall) return;
  for (long k = 0; k < store.nsatall; ++k) {
    if (before(k).IsNull()) continue;
    corrections[store.sat(k)].*member = static_cast<double>(after(k).GetObs() - before(k).GetObs());
  }
}

void ApplyBiases(RunObjects& run, RunInputs& inputs) {
  const matrix<gnssobs> C1 = run.data.C1;
  const matrix<gnssobs> P2 = run.data.P2;
  ApplyDCB(run.ctx);
  Compare(run.data, C1, run.data.C1, &CodeCorrection::C1, inputs.corrections);
  Compare(run.data, P2, run.data.P2, &CodeCorrection::P2, inputs.corrections);
}

bool IsEclipsed(RunObjects& run, long i, long k) {
  xyzt p;
  if (!EmissionPosition(run.ctx, run.data.sat(k), run.data.epoch(i), p)) return false;
  const xyz satellite(p.GetX(), p.GetY(), p.GetZ());
  return SunEarthAngle(satellite, run.ctx.SunMag(i) * run.ctx.posSunUnit(i)) <
         run.ctx.satEclipsThres;
}

void FindDirections(RunObjects& run, const Report& r, RunInputs& inputs) {
  CalculateAE(run.ctx);
  // The Sun of every epoch comes with the stage that removes eclipsed phases, so ask for none of
  // the systems while it runs: the phases are not needed.
  const bool gps = run.ctx.isGPS;
  const bool glonass = run.ctx.isGLN;
  run.ctx.ifPhaseObs = r.settings.usesPhase;
  run.ctx.isGPS = run.ctx.isGLN = false;
  GetEclipsing(run.ctx);
  run.ctx.isGPS = gps;
  run.ctx.isGLN = glonass;

  const RINEXData& store = run.data;
  long k = 0;
  for (long i = 0; i < store.nepochall; ++i)
    for (const long end = k + store.nsat(i); k < end; ++k) {
      if (!IsProcessed(run.ctx, store.sat(k))) continue;
      Direction d;
      d.epoch = EpochOf(store.epoch(i));
      d.satellite = store.sat(k);
      d.elevation = static_cast<double>(run.ctx.ELV(k));
      d.azimuth = static_cast<double>(run.ctx.AZM(k));
      d.eclipsed = r.settings.usesPhase && IsEclipsed(run, i, k);
      inputs.directions.push_back(d);
    }
}

} // namespace

std::string Find(const std::string& name, const Places& places) {
  const fs::path path(name);
  std::vector<fs::path> candidates = {path, fs::path(places.beside) / path,
                                      fs::path(places.beside) / path.filename()};
  if (!places.folder.empty())
    candidates.insert(candidates.begin(), fs::path(places.folder) / path.filename());
  std::error_code ignored;
  for (const fs::path& c : candidates)
    if (fs::is_regular_file(c, ignored)) return c.string();
  return {};
}

std::optional<RunInputs> ReadInputs(const Report& r, const Places& places, std::string& whyNot) {
  whyNot.clear();
  const auto run = std::make_unique<RunObjects>();
  KorvanC& ctx = run->ctx;
  FileGiver giver(places, whyNot);
  GiveFiles(r.settings.files, giver, ctx);
  if (!whyNot.empty()) return {};

  const Quiet quiet;
  SetFiles(ctx);
  ReadFiles(ctx);
  if (run->data.nepochall != r.statistics.epochs || run->data.nepochall == 0) {
    whyNot = fmt::format("{} holds {} epochs, the run had {}", ctx.rnxfile, run->data.nepochall,
                         r.statistics.epochs);
    return {};
  }
  GetReceiverProperties(ctx);
  CorrectRecClock(ctx);
  SetGlonassFrequency(ctx);
  RunInputs inputs;
  ApplyBiases(*run, inputs);
  FindDirections(*run, r, inputs);
  inputs.marker = Trimmed(run->header.mname);
  inputs.receiver = Trimmed(run->header.rectype);
  inputs.tracking = static_cast<Tracking>(ctx.RecCodeTrackType);
  inputs.latitude = static_cast<double>(ctx.RecPosFCG.GetF());
  inputs.longitude = static_cast<double>(ctx.RecPosFCG.GetL());
  inputs.height = static_cast<double>(ctx.RecPosFCG.GetH());
  inputs.first = EpochOf(run->data.epoch(0));
  inputs.last = EpochOf(run->data.epoch(run->data.nepochall - 1));
  return inputs;
}

} // namespace inputs
