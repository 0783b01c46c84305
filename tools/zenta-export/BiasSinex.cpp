#include "BiasSinex.h"

#include "command/Command.h"
#include "report/Conventions.h"
#include "report/Quantities.h"
#include "report/Refusal.h"

#include <cmath>
#include <fmt/format.h>
#include <vector>

namespace exports {

namespace {

using namespace report;

constexpr const char* kOpenTime = "0000:000:00000";

struct Line {
  std::string prn;
  std::string obs2;
  double ns;
  double sigma;
};

class Lines {
public:
  Lines(const Report& r, const inputs::RunInputs* inputs) : inputs_(inputs) {
    if (r.receiverP1C1) Add("G", "C1W", r.receiverP1C1->value, *r.receiverP1C1);
    if (r.receiverP2C1) Add("G", "C2W", r.receiverP2C1->value, *r.receiverP2C1);
    for (const SatelliteBiases& b : r.satellites) AddSatellite(b);
  }
  const std::vector<Line>& All() const { return all_; }

private:
  /// P1 - (C1 + dC1) and P2 + dP2 - (C1 + dC1) is what the estimates explain.
  void AddSatellite(const SatelliteBiases& b) {
    const inputs::CodeCorrection d = CorrectionOf(b.satellite);
    const std::string prn = NameOf(b.satellite);
    const bool gps = IsGPS(b.satellite);
    if (b.p1c1) Add(prn, gps ? "C1W" : "C1P", b.p1c1->value + d.C1, *b.p1c1);
    if (b.p2c1) Add(prn, gps ? "C2W" : "C2P", b.p2c1->value + d.C1 - d.P2, *b.p2c1);
  }

  inputs::CodeCorrection CorrectionOf(Satellite s) const {
    if (inputs_ == nullptr) return {};
    const auto found = inputs_->corrections.find(s);
    return found == inputs_->corrections.end() ? inputs::CodeCorrection{} : found->second;
  }

  void Add(const std::string& prn, const char* obs2, double metres, const Bias& b) {
    // A number without a value has no place in the format.
    if (!std::isfinite(metres) || !std::isfinite(b.sigma)) return;
    all_.push_back({prn, obs2, -ToNanoseconds(metres), ToNanoseconds(b.sigma)});
  }

  const inputs::RunInputs* inputs_;
  std::vector<Line> all_;
};

/// Lines of a block have 80 characters at most.
std::string Comment(const std::string& text) {
  constexpr std::size_t kWidth = 78;
  std::string out;
  std::string line;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_of(" \n\r", at), text.size());
    const std::string word = text.substr(at, end - at);
    if (!line.empty() && line.size() + 1 + word.size() > kWidth) {
      out += "* " + line + '\n';
      line.clear();
    }
    if (!word.empty()) line += (line.empty() ? "" : " ") + word;
    at = end + 1;
  }
  return out + "* " + line + '\n';
}

std::string Reference(const std::string& type, const std::string& info) {
  return fmt::format(" {:<18} {:.60}\n", type, info);
}

std::string Description(const std::string& key, const std::string& value) {
  return fmt::format(" {:<39} {}\n", key, value);
}

std::string SolutionLine(const Line& l, const std::string& station, const std::string& start,
                         const std::string& end) {
  const bool receiver = l.prn.size() == 1;
  return fmt::format(" {:<4} {:<4} {:<3} {:<9} {:<4} {:<4} {} {} {:<4} {:21.4f} {:11.4f}\n", "DSB",
                     receiver ? l.prn : "", l.prn, station, "C1C", l.obs2, start, end, "ns", l.ns,
                     l.sigma);
}

std::string Datum(const Report& r, const inputs::RunInputs* inputs) {
  std::string text = "Datum: " + DatumOf(r);
  if (inputs != nullptr)
    text += " In the lines below the biases that were held fixed are put back.";
  return text;
}

} // namespace

bool NeedsInputs(const Report& r) {
  return !r.satellites.empty() && r.settings.biases != BiasSource::none;
}

std::string ToBiasSinex(const Report& r, const SinexHead& head, const inputs::RunInputs* inputs) {
  const std::vector<Line> lines = Lines(r, inputs).All();
  if (lines.empty()) throw Refusal("the report holds no biases, so there is no Bias-SINEX of it");
  const std::optional<Span> span = SpanOf(r);
  std::string start = span ? SinexTime(span->first) : kOpenTime;
  std::string end = span ? SinexTime(span->last) : kOpenTime;
  if (inputs != nullptr) {
    start = SinexTime(inputs->first);
    end = SinexTime(inputs->last);
  }

  std::string text = fmt::format("%=BIA 1.00 {0} {1} {0} {2} {3} R {4:08}\n", head.agency,
                                 head.created, start, end, lines.size());
  text += "*" + std::string(79, '-') + "\n+FILE/REFERENCE\n" +
          "*INFO_TYPE_________ INFO________________________________________________________\n" +
          Reference("DESCRIPTION", "Differential code biases of one receiver") +
          Reference("OUTPUT", "C1C-C1W, C1C-C2W (GLONASS C1C-C1P, C1C-C2P)") +
          Reference("SOFTWARE", fmt::format("Zenta {}, zenta-export {}", r.settings.release,
                                            command::Version())) +
          Reference("INPUT", r.settings.files.observations) + "-FILE/REFERENCE\n";
  text += "*" + std::string(79, '-') + "\n+FILE/COMMENT\n" + Comment(Datum(r, inputs)) +
          Comment("Sign: DSB = bias(OBS1) - bias(OBS2), in what the receiver measures; subtract a "
                  "bias to correct an observation.") +
          Comment("A line with satellite and station is the sum of their biases.") +
          Comment("Errors: " + kFormalErrors) + "-FILE/COMMENT\n";
  text += "*" + std::string(79, '-') + "\n+BIAS/DESCRIPTION\n" +
          "*KEYWORD________________________________ VALUE(S)_______________________________\n" +
          Description("DETERMINATION_METHOD", "CODE_AND_PHASE_L4_SINGLE_LAYER") +
          Description("BIAS_MODE", "RELATIVE") + Description("TIME_SYSTEM", "G") +
          "-BIAS/DESCRIPTION\n";
  text += "*" + std::string(79, '-') + "\n+BIAS/SOLUTION\n" +
          "*BIAS SVN_ PRN STATION__ OBS1 OBS2 BIAS_START____ BIAS_END______ UNIT "
          "__ESTIMATED_VALUE____ _STD_DEV___\n";
  for (const Line& l : lines) text += SolutionLine(l, head.station, start, end);
  return text + "-BIAS/SOLUTION\n%=ENDBIA\n";
}

} // namespace exports
