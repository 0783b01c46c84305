#include "PrintResults.h"

#include "GNSS/TimeConverse.h"
#include "GNSS/mjd.h"
#include "GNSS/ymdhms.h"
#include "KorvanC.h"
#include "PROGINC/OutputFile.h"

#include <cmath>
#include <iomanip>
#include <iostream>
#include <string>

namespace {

using std::setprecision;
using std::setw;

constexpr long double kSigma0 = 1.0;                           // a-priori standard deviation
constexpr long double kMicrosecondsPerMetre = 1 / 299.792458L; // printed as "msec"

std::string Dashes(std::size_t n) { return std::string(n, '-'); }

long double Sigma(const KorvanC& ctx, long k) { return std::sqrt(ctx.s0apost * ctx.QxxAll(k, k)); }

bool IsGPS(short sat) { return sat <= 99; }
bool IsGLONASS(short sat) { return sat >= 100 && sat <= 199; }

// ---- Statistics ------------------------------------------------------------------------------

void PrintStatistics(const KorvanC& ctx) {
  std::cout << "RECEIVER/SATELLITE DCB VALUES AND IONOSPHERE DELAY - RESULTS:\n"
            << Dashes(61) << "\n\n"
            << "  #ITERATIONS: " << setw(10) << ctx.IterDone
            << "       THRESHOLD: " << setprecision(3) << setw(10) << ctx.IterThresFin << '\n'
            << "  #EPOCHS    : " << setw(10) << ctx.rnxd.GetNEpoch() << '\n'
            << "  #OBS       : " << setw(10) << ctx.NObs << "    G: " << setw(8) << ctx.NObsG
            << "    R: " << setw(8) << ctx.NObsR << '\n'
            << "  #OUTLIERS  : " << setw(10) << ctx.NObsOutl << "    G: " << setw(8)
            << ctx.NObsOutlG << "    R: " << setw(8) << ctx.NObsOutlR << "\n\n"
            << setprecision(2) //
            << "  REF. STD. APRIORI                              : " << setw(15) << kSigma0 << '\n'
            << "  REF. STD. APOSTERIORI                          : " << setw(15)
            << std::sqrt(ctx.s0apost) << '\n'
            << "  REFERENCE VARIANCE OF UNIT WEIGHT [GLOBAL TEST]: " << setw(15) << ctx.s0apost
            << "         [SQRT]" << setw(10) << std::sqrt(ctx.s0apost) / kSigma0 << "\n\n";
}

// ---- Biases ----------------------------------------------------------------------------------

/// Opens the file of biases where it is named and there are any.
void OpenBiasFile(const KorvanC& ctx, OutputFile& file) {
  if (!ctx.isGNUPlotDCB || !(ctx.ifEstREC || ctx.ifEstGPS || ctx.ifEstGLN)) return;
  const matrix<mjd>& epoch = ctx.rnxd.epoch;
  mjd middle = epoch(0);
  middle += (epoch(ctx.rnxd.nepochall - 1) - epoch(0)) / 2;
  file.Open(ctx.gnuplotDCB);
  file.Stream() << std::fixed << "#REFERECNE EPOCH: " << middle << '\n'
                << "#TYPE SAT_PRN      P1C1[m]               P2C1[m]\n";
}

/// One bias and its standard deviation [m], 0 where it is not estimated.
void WriteBias(const KorvanC& ctx, long ix, long double value, std::ostream& out) {
  const bool estimated = ix > -1;
  out << setprecision(4) << setw(12) << (estimated ? value : 0.0L) << setw(10)
      << (estimated ? Sigma(ctx, ix) : 0.0L);
}

struct ReceiverLine {
  const char* name;
  const char* afterValue; ///< the line of P2-C1 leaves out the units of the metres
  const char* afterSigma;
};
constexpr ReceiverLine kReceiverP1C1 = {"P1-C1", " m +- ", " m        "};
constexpr ReceiverLine kReceiverP2C1 = {"P2-C1", " +- ", "        "};

void PrintReceiverBias(const KorvanC& ctx, const ReceiverLine& line, long ix, long double value) {
  if (ix < 0) return;
  const long double sigma = Sigma(ctx, ix);
  std::cout << "  " << line.name << " DCB: " << setprecision(4) << setw(12) << value
            << line.afterValue << setw(10) << sigma << line.afterSigma << setprecision(5)
            << setw(12) << value * kMicrosecondsPerMetre << " msec +- " << setw(10)
            << sigma * kMicrosecondsPerMetre << " msec     [" << ctx.ObsPerUnk(ix) << " OBS / "
            << line.name << " DCB]\n";
}

void PrintReceiverBiases(const KorvanC& ctx, OutputFile& file) {
  if (!ctx.ifEstREC) return;
  std::cout << " RECEIVER GPS DCB VALUES:\n " << Dashes(20) << "\n\n";
  PrintReceiverBias(ctx, kReceiverP1C1, ctx.ixP1C1, ctx.xP1C1);
  PrintReceiverBias(ctx, kReceiverP2C1, ctx.ixP2C1, ctx.xP2C1);
  std::cout << '\n';
  if (!file.IsInUse()) return;
  std::ostream& out = file.Stream();
  out << 'R' << setw(8) << ' ';
  WriteBias(ctx, ctx.ixP1C1, ctx.xP1C1, out);
  WriteBias(ctx, ctx.ixP2C1, ctx.xP2C1, out);
  out << '\n';
}

void PrintSatelliteBias(const KorvanC& ctx, long ix, long double value) {
  if (ix < 0 || ctx.ObsPerUnk(ix) <= 0) {
    std::cout << setw(64) << ' ';
    return;
  }
  const long double sigma = Sigma(ctx, ix);
  std::cout << setprecision(4) << setw(12) << value << " +-" << setw(8) << sigma << setw(12)
            << value * kMicrosecondsPerMetre << " +-" << setw(8) << sigma * kMicrosecondsPerMetre
            << "   [" << setw(6) << ctx.ObsPerUnk(ix) << "]  ";
}

/// A system whose satellites have a table of their own.
struct SystemTable {
  const char* name;
  char letter;
  short offset; ///< number of a satellite less the one it has in its system
  bool (*holds)(short sat);
};
constexpr SystemTable kGPS = {"GPS", 'G', 0, IsGPS};
constexpr SystemTable kGLONASS = {"GLONASS", 'R', 100, IsGLONASS};

void PrintSatelliteBiases(const KorvanC& ctx, const SystemTable& system, OutputFile& file) {
  const std::string rule = ' ' + Dashes(126) + '\n';
  const std::string title = std::string("SATELLITE ") + system.name + " DCB VALUES:";
  std::cout << ' ' << title << "\n " << Dashes(title.size()) << "\n\n"
            << "  PRN           P1-C1 DCB [m +- m, msec +- msec]        #OBS/DCB                "
               "P2-C1 DCB [m +- m, msec +- msec]       #OBS/DCB\n"
            << rule;
  for (long j = 0; j < ctx.ixbSAT.NRow(); ++j) {
    const short sat = ctx.rnxd.satList(j);
    if (!system.holds(sat)) continue;
    std::cout << setw(5) << sat;
    for (long c = 0; c < 2; ++c) PrintSatelliteBias(ctx, ctx.ixbSAT(j, c), ctx.xbSAT(j, c));
    std::cout << '\n';
    if (!file.IsInUse()) continue;
    std::ostream& out = file.Stream();
    out << 'S' << setw(6) << system.letter << setw(2) << sat - system.offset;
    for (long c = 0; c < 2; ++c) WriteBias(ctx, ctx.ixbSAT(j, c), ctx.xbSAT(j, c), out);
    out << '\n';
  }
  std::cout << rule << '\n';
}

void PrintBiases(const KorvanC& ctx) {
  OutputFile file;
  OpenBiasFile(ctx, file);
  PrintReceiverBiases(ctx, file);
  if (ctx.ifEstGPS) PrintSatelliteBiases(ctx, kGPS, file);
  if (ctx.ifEstGLN) {
    PrintSatelliteBiases(ctx, kGLONASS, file);
    std::cout << '\n';
  }
  file.Close();
}

// ---- Ambiguities -----------------------------------------------------------------------------

void PrintSatelliteName(short sat) {
  if (IsGPS(sat)) std::cout << setw(6) << 'G' << setw(2) << sat;
  if (IsGLONASS(sat)) std::cout << setw(6) << 'R' << setw(2) << sat - 100;
}

ymdhms CalendarEpoch(const KorvanC& ctx, long i) { return mjd2ymdhms(ctx.rnxd.epoch(i)); }

void PrintAmbiguities(const KorvanC& ctx) {
  const std::string rule = "   " + Dashes(106) + '\n';
  std::cout << "  PHASE L4 AMBIGUITIES (REAL VALUES):\n  " << Dashes(35) << "\n"
            << "    Number of all ambiguities: " << setw(10) << ctx.nAmb << "\n\n"
            << "    ID     PRN        START_EPOCH              END_EPOCH                     "
               "L4 AMBIGUITY[m]       #OBS/AMBIG\n"
            << rule;
  for (long j = 0; j < ctx.nAmb; ++j) {
    if (j > 0 && ctx.AmbSat(j) != ctx.AmbSat(j - 1)) std::cout << '\n';
    std::cout << setw(6) << j + 1;
    PrintSatelliteName(ctx.AmbSat(j));
    std::cout << "   " << CalendarEpoch(ctx, ctx.AmbIndex(j, 0)) << "   "
              << CalendarEpoch(ctx, ctx.AmbIndex(j, 2)) << setprecision(4) << setw(20)
              << ctx.xAmb(j) << " +- " << setw(10) << Sigma(ctx, ctx.NUnkDCB + j) << setw(15)
              << ctx.AmbIndex(j, 3) << '\n';
  }
  std::cout << rule << "\n\n";
}

// ---- Ionosphere ------------------------------------------------------------------------------

/// The line of interval \p i, without its end, as report and file share it.
void WriteInterval(const KorvanC& ctx, long i, std::ostream& out) {
  const long k = ctx.NUnkDCB + ctx.nAmb + ctx.NIonUnkT * i;
  const auto value = [&](int width, long double x, long unknown) {
    out << setprecision(4) << setw(width) << x << " +-" << setw(8) << Sigma(ctx, unknown);
  };
  out << ' ' << ctx.rnxd.epoch(ctx.IonoEstInd(i, 0));
  value(12, ctx.xION(i, 0), k);
  value(14, ctx.xION(i, 1), k + 1);
  if (!ctx.ifEstIGrad) return;
  value(12, ctx.xIGRAD(i, 0), k + 2);
  value(14, ctx.xIGRAD(i, 1), k + 3);
}

void PrintIonosphere(const KorvanC& ctx) {
  const bool gradients = ctx.ifEstIGrad;
  const std::string rule = ' ' + Dashes(62 + (gradients ? 48 : 0) + 17) + '\n';
  std::cout << " IONOSPHERE DELAYS:\n " << Dashes(18) << "\n\n"
            << "  EPOCH[MJD]         ION DELAY[m]          ION DELAY RATE [m/h]"
            << (gradients ? "         ION GRAD E               ION GRAD N" : "")
            << "       #OBS/DELAY\n"
            << rule;
  OutputFile file;
  if (ctx.isGNUPlotIon) {
    file.Open(ctx.gnuplotIon);
    file.Stream() << std::fixed << "#ION_TYPE: LINEAR\n"
                  << "#    EPOCH[MJD]           ION_DELAY[m]      ION_DELAY_RATE[m/h]"
                  << (gradients ? "   ION GRAD E     ION GRAD N" : "") << '\n';
  }
  for (long i = 0; i < ctx.nIono; ++i) {
    WriteInterval(ctx, i, std::cout);
    std::cout << "         [" << setw(6) << ctx.ObsPerUnk(ctx.NUnkDCB + ctx.nAmb + ctx.NIonUnkT * i)
              << "]  \n";
    if (!file.IsInUse()) continue;
    WriteInterval(ctx, i, file.Stream());
    file.Stream() << '\n';
  }
  std::cout << rule << "\n\n";
  file.Close();
}

} // namespace

void PrintResults(KorvanC& ctx) {
  if (ctx.verbose) std::cerr << "Zenta::PrintResults():         Printing results to STDOUT!\n";
  mjdns::NDecSecond = 1;
  ymdhmsns::NDecSecond = 0;
  PrintStatistics(ctx);
  PrintBiases(ctx);
  if (ctx.ifPhaseObs) PrintAmbiguities(ctx);
  if (ctx.ifEstION) PrintIonosphere(ctx);
}
