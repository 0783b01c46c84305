#include "ParseArgumetns.h"

#include "KorvanC.h"
#include "PROGINC/ParseArgument.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/cfilef.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>

namespace {

constexpr const char* kProgram = "Zenta";
constexpr const char* kPrefix = "Zenta::GetFiles():         ";

/// An option that names a file.
struct FileOption {
  const char* letters;        ///< as written behind the dash, lower case
  char (KorvanC::*name)[256]; ///< takes the name
  bool KorvanC::*given;       ///< set, even for an empty name
  const char* description;    ///< progress message
};

// The description of -mp2 speaks of P1 as that of -mp1 does; logs are compared by it.
constexpr FileOption kFileOptions[] = {
    {"r", &KorvanC::rnxfile, &KorvanC::isRnx, "RINEX file name: "},
    {"cf", &KorvanC::clkfile, &KorvanC::isClkFile, "Clock correction input file: "},
    {"eg", &KorvanC::gnavfile, &KorvanC::isGPSnav, "GPS navigation file: "},
    {"er", &KorvanC::rnavfile, &KorvanC::isGLNnav, "GLONASS navigation file: "},
    {"es", &KorvanC::gsp3file, &KorvanC::isGpEph, "GPS precise ephemeris file: "},
    {"el", &KorvanC::rsp3file, &KorvanC::isRpEph, "GLONASS precise ephemeris file: "},
    {"cb1", &KorvanC::dcbp1p2file, &KorvanC::isP1P2, "Differential Code Bias (DCB) file - P1P2: "},
    {"cb2", &KorvanC::dcbp1c1file, &KorvanC::isP1C1, "Differential Code Bias (DCB) file - P1C1: "},
    {"cb3", &KorvanC::dcbp2c2file, &KorvanC::isP2C2, "Differential Code Bias (DCB) file - P2C2: "},
    {"mp1", &KorvanC::mp1file, &KorvanC::isMP1, "Multipath on P1 file: "},
    {"mp2", &KorvanC::mp2file, &KorvanC::isMP2, "Multipath on P1 file: "},
    {"ct", &KorvanC::rctrackfile, &KorvanC::isRCodTrc, "Receiver Code Tracking type file name: "},
    {"gf", &KorvanC::glnfreqch, &KorvanC::isGLNfrch, "GLONASS frequency channel file: "},
    {"ac", &KorvanC::aprcrdfile, &KorvanC::isAprCrd, "Apriori coordinate file name: "},
    {"gpi", &KorvanC::gnuplotIon, &KorvanC::isGNUPlotIon,
     "GNUPlot intput file with ionospheric delay [linear]: "},
    {"gpe", &KorvanC::gnuplotIonEph, &KorvanC::isGNUPlotIonEph,
     "GNUPlot input file with ionospheric delay [epoch]: "},
    {"gpd", &KorvanC::gnuplotDCB, &KorvanC::isGNUPlotDCB,
     "GNUPlot input file with differential code biases: "},
    {"fp", &KorvanC::resfile, &KorvanC::ifPrintRes, "Residual output file: "},
};

/// Options that share their first letters and are told apart by the letter behind them.
struct OptionGroup {
  const char* letters;
  const char* error; ///< when no member of the group matches
};

constexpr OptionGroup kGroups[] = {
    {"e", "EPHEMERIS FILE NOT SET CORRECTLY [ use -e[g|r|s|l]FILENAME ]!"},
    {"cb", "DIFFERENTIAL CODE BIAS (DCB) FILE NOT SET CORRECTLY [ use -cb[1|2|3]FILENAME ]!"},
    {"mp", "MULTIPATH FILE NOT SET CORRECTLY [ use -mp[1|2]FILENAME ]!"},
    {"gp", "GNUPLOT FILE NOT SET CORRECTLY [ use -gp[i,e,d]FILENAME ]!"},
};

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// \p option (without its dash) begins with \p letters, all lower or all upper case.
bool Begins(std::string_view option, std::string_view letters) {
  const std::string_view start = option.substr(0, letters.size());
  if (start == letters) return true;
  std::string upper(letters);
  for (char& c : upper) c = Upper(c);
  return start == upper;
}

const OptionGroup* FindGroup(std::string_view option) {
  for (const OptionGroup& group : kGroups)
    if (Begins(option, group.letters)) return &group;
  return nullptr;
}

/// As Begins; in a group, the group's letters and the letter that follows each choose their case.
bool MatchesFileOption(std::string_view option, std::string_view letters,
                       const OptionGroup* group) {
  if (!group) return Begins(option, letters);
  const std::size_t shared = std::strlen(group->letters);
  return letters.size() > shared && letters.substr(0, shared) == group->letters &&
         option.size() > shared && Upper(option[shared]) == Upper(letters[shared]);
}

bool Holds(std::string_view text, std::string_view keyword) {
  return text.find(keyword) != std::string_view::npos;
}

[[noreturn]] void Fail(const std::string& text) { ProgramError(kProgram, text.c_str()); }
void Warn(const std::string& text) { ProgramWarning(kProgram, text.c_str()); }

void TakeFileName(KorvanC& ctx, const char* arg, const FileOption& option) {
  const std::size_t skip = std::strlen(option.letters) + 1;
  char(&name)[256] = ctx.*option.name;
  if (std::strlen(arg + skip) >= sizeof name) Fail("FILE NAME TOO LONG: " + std::string(arg) + "!");
  const std::string message = std::string(kPrefix) + option.description;
  GetFileName(arg, name, ctx.*option.given, ctx.verbose, static_cast<short>(skip), message.c_str());
}

/// \returns false when \p arg is no file option.
bool ParseFileOption(KorvanC& ctx, const char* arg) {
  const std::string_view option(arg + 1);
  const OptionGroup* group = FindGroup(option);
  for (const FileOption& candidate : kFileOptions) {
    if (!MatchesFileOption(option, candidate.letters, group)) continue;
    TakeFileName(ctx, arg, candidate);
    return true;
  }
  if (group) Fail(group->error);
  return false;
}

template <typename T> void Report(const KorvanC& ctx, const char* description, const T& value) {
  if (ctx.verbose) std::cerr << kPrefix << description << value << "!\n";
}

/// Numbers of a setting that make sense.
struct Range {
  double lowest;
  double highest;
};
constexpr Range kElevations = {0, 90}; // [degree]
constexpr Range kLimits = {0, std::numeric_limits<float>::max()};
constexpr Range kIterations = {1, std::numeric_limits<int>::max()};
constexpr Range kIntervals = {0, 100 * 3600}; // [s] hours have two digits

/// Where the number \p given by \p arg is out of \p range, warns and names the one in use.
template <typename T> void CheckNumber(const char* arg, double given, Range range, const T& used) {
  if (given >= range.lowest && given <= range.highest) return;
  std::ostringstream text;
  text << "NUMBER NOT SENSIBLE: " << arg << " - USING " << used << '!';
  Warn(text.str());
}

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

/// The number behind a two-letter option, as it stands there; kNoNumber without one. One that is
/// infinite, beyond single precision or called "nan" ends the program: 0, as text without a number
/// counts, would turn the meaning of a limit round.
double GivenNumber(const char* arg) {
  const char* const text = arg + 3;
  char* end = nullptr;
  const double number = std::strtod(text, &end);
  if (end == text) return kNoNumber;
  if (!(std::fabs(number) <= kLimits.highest)) Fail("NUMBER NOT FINITE: " + std::string(arg) + "!");
  return number;
}

/// The number behind a two-letter option. Converted in single precision, so that 10.1 becomes
/// the nearest float.
template <typename T>
void TakeFloat(const KorvanC& ctx, const char* arg, const char* description, Range range,
               T& value) {
  value = ParseFloat(arg, 3);
  CheckNumber(arg, GivenNumber(arg), range, value);
  Report(ctx, description, value);
}

void ParseWeighting(KorvanC& ctx, std::string_view arg) {
  if (!Holds(arg, "cosz") && !Holds(arg, "COSZ"))
    Fail("WEIGHTING OF OBSERVATIONS NOT SET CORRECTLY [ use -p[COSZ] ]!");
  ctx.obsP = 1;
  if (ctx.verbose) std::cerr << kPrefix << "Weighting of observations: YES (COS(Z) model)!\n";
}

void ParseObservationTypes(KorvanC& ctx, std::string_view arg) {
  const bool code = Holds(arg, "code") || Holds(arg, "CODE") || Holds(arg, "Code");
  const bool phase = Holds(arg, "phase") || Holds(arg, "PHASE") || Holds(arg, "Phase");
  ctx.ifCodeObs |= code;
  ctx.ifPhaseObs |= phase;
  if (ctx.verbose)
    std::cerr << kPrefix << "Type of observations used in processing: " << (code ? " CODE" : "")
              << (phase ? " PHASE" : "") << '\n';
  if (ctx.ifCodeObs || ctx.ifPhaseObs) return;
  Warn("TYPE OF OBSERVATIONS NOT USED CORRECTLY [ use -l[CODE|PHASE] ]: USING ALL OBSERVATIONS!");
  ctx.ifCodeObs = ctx.ifPhaseObs = true;
}

void ParseInterval(KorvanC& ctx, const char* arg) {
  ctx.IonoInterval = ParseHMS(arg, 3);
  const std::string_view text(arg + 3); // may lack any of its parts
  const bool isTime = text.empty() || text.find_first_of("0123456789") != std::string_view::npos;
  CheckNumber(arg, isTime ? static_cast<double>(ctx.IonoInterval) : kNoNumber, kIntervals,
              ctx.IonoInterval);
  if (ctx.verbose)
    std::cerr << kPrefix << "Ionospheric delay estimation time interval: " << ctx.IonoInterval
              << " s!\n";
}

void ParseMaxIterations(KorvanC& ctx, const char* arg) {
  ctx.MaxIter = ParseInteger(arg, 3);
  const bool isTaken = GivenNumber(arg) == ctx.MaxIter;
  CheckNumber(arg, isTaken ? ctx.MaxIter : kNoNumber, kIterations, ctx.MaxIter);
  Report(ctx, "Maximum number of iteration: ", ctx.MaxIter);
}

void ParseIterationThreshold(KorvanC& ctx, const char* arg) {
  ctx.IterThres = ParseDouble(arg, 3);
  CheckNumber(arg, GivenNumber(arg), kLimits, ctx.IterThres);
  Report(ctx, "Iteration process threshold: ", ctx.IterThres);
}

/// \returns false when \p arg is none of the settings.
bool ParseSetting(KorvanC& ctx, const char* arg) {
  const std::string_view option(arg + 1);
  if (Begins(option, "x")) {
    ParseEstimationType(arg, ctx.ifEstREC, ctx.ifEstGPS, ctx.ifEstGLN, ctx.ifEstION,
                        ctx.ifEstIONEph, ctx.ifEstIGrad, ctx.verbose);
  } else if (Begins(option, "ii")) {
    ParseInterval(ctx, arg);
  } else if (Begins(option, "p")) {
    ParseWeighting(ctx, arg);
  } else if (Begins(option, "l")) {
    ParseObservationTypes(ctx, arg);
  } else if (Begins(option, "me")) {
    ctx.isMinElev = true;
    TakeFloat(ctx, arg, "Minimum elevation angle: ", kElevations, ctx.MinElevation);
  } else if (Begins(option, "bt")) {
    ctx.isThresBlunder = true;
    TakeFloat(ctx, arg, "Threshold for blunder detection (correction vector v): ", kLimits,
              ctx.ThresBlunder);
  } else if (Begins(option, "bl")) {
    ctx.isThresBlunderL4 = true;
    TakeFloat(ctx, arg, "Threshold for blunder detection (correction vector v - L4): ", kLimits,
              ctx.ThresBlunderL4);
  } else if (Begins(option, "ft")) {
    ctx.isMaxfDiff = true;
    TakeFloat(ctx, arg, "Threshold for blunder detection (misclosure vector f): ", kLimits,
              ctx.MaxfDiff);
  } else if (Begins(option, "mi")) {
    ParseMaxIterations(ctx, arg);
  } else if (Begins(option, "mt")) {
    ParseIterationThreshold(ctx, arg);
  } else if (Begins(option, "c")) {
    ctx.iCout = true;
  } else {
    return Begins(option, "v"); // taken before all others
  }
  return true;
}

void ParseOne(KorvanC& ctx, const char* arg) {
  if (arg[0] != '-') {
    Warn(std::string(" - PARAMETHER MANDATORY -> ") + arg);
    return;
  }
  if (ParseFileOption(ctx, arg) || ParseSetting(ctx, arg)) return;
  Warn("UNKNOWN PARAMETHER: -" + std::string(arg + 1).substr(0, 1));
}

bool AsksForVerbose(std::string_view arg) {
  return arg.size() > 1 && (arg[1] == 'v' || arg[1] == 'V');
}

// ---- Checks ----------------------------------------------------------------------------------

void Heading(const KorvanC& ctx, const char* text) {
  if (ctx.verbose) std::cerr << "Zenta::SetFiles(): " << text << '\n';
}
void Detail(const KorvanC& ctx, const char* text) {
  if (ctx.verbose) std::cerr << "Zenta::SetFiles():         " << text << '\n';
}

bool IsAbsent(const char* name) { return name[0] != '\0' && !FileExists(name); }

void RequireFile(const char* name, const char* error) {
  if (IsAbsent(name)) Fail(error);
}

/// Without the file the run goes on, and its flag is cleared.
void DropMissingFile(const char* name, bool& flag, const char* warning) {
  if (!IsAbsent(name)) return;
  flag = false;
  Warn(warning);
}

void CheckObservationFile(KorvanC& ctx) {
  Detail(ctx, "RINEX file!");
  if (ctx.rnxfile[0] == '\0') Fail("NO RINEX (OBSERVATION) FILE SET!");
  RequireFile(ctx.rnxfile, "RINEX (OBSERVATION) FILE CAN NOT BE OPENED!");
}

void CheckCorrectionFiles(KorvanC& ctx) {
  Detail(ctx, "Clock correction file!");
  DropMissingFile(ctx.clkfile, ctx.isClkFile, "CLOCK CORRECTION FILE CAN NOT BE OPENED!");
  DropMissingFile(ctx.mp1file, ctx.isMP1, "MULTIPATH FILE (P1) CAN NOT BE OPENED!");
  DropMissingFile(ctx.mp2file, ctx.isMP2, "MULTIPATH FILE (P2) CAN NOT BE OPENED!");
}

void CheckOrbitFiles(KorvanC& ctx) {
  Detail(ctx, "Ephemeris files!");
  // A GLONASS SP3 file alone is not enough: the receiver's biases rest on GPS.
  if (ctx.gnavfile[0] == '\0' && ctx.gsp3file[0] == '\0' && ctx.rnavfile[0] == '\0')
    Fail("NO EPHEMERIS FILE SET!");
  RequireFile(ctx.gnavfile, "GPS NAVIGATION FILE CAN NOT BE OPENED!");
  RequireFile(ctx.rnavfile, "GLONAS NAVIGATION FILE CAN NOT BE OPENED!");
  RequireFile(ctx.gsp3file, "GPS PRECISE EPHEMERIS FILE CAN NOT BE OPENED!");
  RequireFile(ctx.rsp3file, "GLONASS PRECISE EPHEMERIS FILE CAN NOT BE OPENED!");
  if (ctx.isGPSnav && ctx.isGpEph) {
    ctx.isGPSnav = false;
    Warn("BOTH PRECISE EPHEMERIS AND NAVIGATION FILES FOR GPS SET -> USING ONLY PRECISE EPHEMERIS "
         "FILE!");
  }
  if (ctx.isGLNnav && ctx.isRpEph) {
    ctx.isGLNnav = false;
    Warn("BOTH PRECISE EPHEMERIS AND NAVIGATION FILES FOR GLONASS SET -> USING ONLY PRECISE "
         "EPHEMERIS FILE!");
  }
  if (ctx.isGPSnav || ctx.isGpEph) ctx.isGPS = true;
  if (ctx.isGLNnav || ctx.isRpEph) ctx.isGLN = true;
}

void CheckOtherFiles(KorvanC& ctx) {
  Detail(ctx, "Differential Code Biases files!");
  RequireFile(ctx.dcbp1p2file, "DCB FILE - P1P2 CAN NOT BE OPENED!");
  RequireFile(ctx.dcbp1c1file, "DCB FILE - P1C1 CAN NOT BE OPENED!");
  RequireFile(ctx.dcbp2c2file, "DCB FILE - P2C2 CAN NOT BE OPENED!");
  Detail(ctx, "A-priori coordinate file!");
  DropMissingFile(ctx.aprcrdfile, ctx.isAprCrd,
                  "APRIORI COORDINATE FILE CAN NOT BE OPENED - USING RINEX VALUES!");
  Detail(ctx, "GLONASS frequency channel file!");
  RequireFile(ctx.glnfreqch, "GLONASS FREQUENCY CHANNEL FILE CAN NOT BE OPENED!");
}

void CheckUnknowns(KorvanC& ctx) {
  Detail(ctx, "Type of unknowns in estimation!!");
  if (ctx.ifEstGPS && !ctx.isGPS) {
    ctx.ifEstGPS = false;
    Warn("GPS OBSERVATIONS NOT USED: GPS DCB VALUES NOT SET AS UNKNOWNS!");
  }
  if (ctx.ifEstGLN && !ctx.isGLN) {
    ctx.ifEstGLN = false;
    Warn("GLONASS OBSERVATIONS NOT USED: GLONASS DCB VALUES NOT SET AS UNKNOWNS!");
  }
  if (ctx.ifEstREC && ctx.ifEstGPS) {
    Warn("BOTH GPS DCB UNKNOWNS SET (RECEIVER AND SATELLITE): ESTIMATION OF RECEIVER DCB VALUES "
         "WILL NOT BE PERFORMED (SINGULARITY)!");
    ctx.ifEstREC = false;
  }
  // GLONASS satellite biases alone do not count as unknowns here: the receiver's come along.
  if (!ctx.ifEstREC && !ctx.ifEstGPS && !ctx.ifEstION) {
    Warn("NO UNKNOWNS SET: ESTIMATION OF ONLY RECEIVER DCB VALUES!");
    ctx.ifEstREC = true;
  }
  if (!ctx.ifEstION && ctx.ifEstIGrad) {
    ctx.ifEstIGrad = false;
    Warn("NO IONOSPHERE PARAMETERS ESTIMATION (IONO GRADIENTS UNKNOWNS UNSET)!");
  }
  ctx.NIonUnkT = (ctx.ifEstION ? 2 : 0) + (ctx.ifEstIGrad ? 2 : 0);
}

} // namespace

void ParseArgumetns(KorvanC& ctx, int argc, const char** argv) {
  for (int i = 0; i < argc; ++i)
    if (AsksForVerbose(argv[i])) ctx.verbose = true;
  ctx.StartProg();
  if (ctx.verbose) std::cerr << "Zenta::GetFiles(): PARSING INPUT PARAMETERS!\n";
  for (int i = 1; i < argc; ++i) ParseOne(ctx, argv[i]);
}

void ParseEstimationType(const char* arg, bool& rec, bool& gps, bool& gln, bool& ion, bool& ionEph,
                         bool& iGrad, bool verbose) {
  const struct {
    const char* upper;
    const char* lower;
    bool& flag;
    const char* description;
  } kinds[] = {
      {"REC", "rec", rec, " REC-DCB"},
      {"GPS", "gps", gps, " GPS-DCB"},
      {"GLN", "gln", gln, " GLN-DCB"},
      {"ION", "ion", ion, " ION-Delay[Linear]"},
      {"IONEPH", "ioneph", ionEph, " ION-Delay[Epoch]"},
      {"IGRAD", "igrad", iGrad, " ION-GRADIENT"},
  };
  for (const auto& kind : kinds)
    if (Holds(arg, kind.upper) || Holds(arg, kind.lower)) kind.flag = true;
  if (!verbose) return;
  std::cerr << kPrefix << "Unknowns set: ";
  for (const auto& kind : kinds)
    if (kind.flag) std::cerr << kind.description;
  std::cerr << '\n';
}

void CheckArgumetns(KorvanC& ctx) {
  Heading(ctx, "CHECKING INPUT ARGUMETNS!");
  CheckObservationFile(ctx);
  CheckCorrectionFiles(ctx);
  CheckOrbitFiles(ctx);
  CheckOtherFiles(ctx);
  CheckUnknowns(ctx);
}
