#include "PrintSet.h"

#include "KorvanC.h"
#include "PROGINC/VarCout.h"
#include "Progress.h"
#include "funkcije/CppCas.h"

#include <iomanip>
#include <iostream>

namespace {

void PrintHead() {
  PrintChar('_', 120);
  std::cout << "          PROGRAM:               Zenta                                      "
               "CODE AND PHASE BASED IONOSPHERE DELAY\n"
            << "          AUTHORS:               The Zenta developers                       2012\n"
            << "          RELEASE:               20 JUL 2012                                "
               "           DATE: "
            << CppCas().Ascii() << '\n';
  PrintChar('=', 120);
  std::cout << '\n';
}

void PrintFile(const char* label, bool inUse, const char* name) {
  std::cout << "  " << label << ": " << (inUse ? name : " ---") << '\n';
}

void PrintFiles(const KorvanC& ctx) {
  std::cout << "INPUT DATA (FILE NAMES):\n------------------------\n\n";
  PrintFile("Apriori coordinate file             ", ctx.isAprCrd, ctx.aprcrdfile);
  PrintFile("Observation (RINEX) file            ", true, ctx.rnxfile);
  PrintFile("Clock correction file               ", ctx.isClkFile, ctx.clkfile);
  PrintFile("GPS broadcast navigation file       ", ctx.isGPSnav, ctx.gnavfile);
  PrintFile("GLONASS broadcast navigation file   ", ctx.isGLNnav, ctx.rnavfile);
  PrintFile("GPS precise ephemeris file          ", ctx.isGpEph, ctx.gsp3file);
  PrintFile("GLONASS precise ephemeris file      ", ctx.isRpEph, ctx.rsp3file);
  PrintFile("GLONASS frequency channel file      ", ctx.isGLNfrch, ctx.glnfreqch);
  PrintFile("Differential code bias file (P1P2)  ", ctx.isP1P2, ctx.dcbp1p2file);
  PrintFile("Differential code bias file (P1C1)  ", ctx.isP1C1, ctx.dcbp1c1file);
  PrintFile("Differential code bias file (P2C2)  ", ctx.isP2C2, ctx.dcbp2c2file);
  PrintFile("Receiver code tracking type file    ", ctx.isRCodTrc, ctx.rctrackfile);
  PrintFile("Multipath on P1/C1 file             ", ctx.isMP1, ctx.mp1file);
  // Both multipath lines follow the flag of the first file.
  PrintFile("Multipath on P2 file                ", ctx.isMP1, ctx.mp2file);
}

std::ostream& PrintElevation(const KorvanC& ctx) {
  return std::cout << "  Minimum elevation angle             : " << std::setprecision(1)
                   << ctx.MinElevation;
}

void PrintObservations(const KorvanC& ctx) {
  std::cout << "  Observations used in processing     :\n"
            << "                Code observations     :";
  if (!ctx.ifCodeObs) std::cout << "  ---";
  if (ctx.ifCodeObs && ctx.rnxh.iPC1) std::cout << " P1-C1";
  if (ctx.ifCodeObs && ctx.rnxh.iPC4) std::cout << " P4->[P2-C1]";
  std::cout << "\n               Phase observations     :"
            << (ctx.ifPhaseObs ? " L4->[L1-L2]" : "  ---") << '\n';
}

const char* BiasSource(const KorvanC& ctx) {
  if (ctx.isP1P2 || ctx.isP1C1 || ctx.isP2C2) return "DCB values provided by CODE";
  return ctx.isGPSnav ? "Navigation time group delay" : " ---";
}

const char* Weighting(const KorvanC& ctx) {
  if (ctx.obsP == 0) return " ---";
  return ctx.obsP == 1 ? "COS(Z) model" : "";
}

void PrintThreshold(const char* label, bool inUse, long double threshold) {
  std::cout << label;
  if (inUse)
    std::cout << "YES [" << std::setprecision(3) << std::setw(6) << threshold << " m]\n";
  else
    std::cout << "NO\n";
}

void PrintUnknowns(const KorvanC& ctx) {
  const auto yes = [](bool estimated) { return estimated ? "YES\n" : " ---\n"; };
  std::cout << "  Unknowns determined in processing   :\n"
            << "      Receiver DCB values             :";
  if (!ctx.ifEstREC) std::cout << "  ---";
  if (ctx.ifEstREC && ctx.isxP1C1) std::cout << " P1-C1";
  if (ctx.ifEstREC && ctx.isxP2C1) std::cout << " P2-C1";
  std::cout << "\n      GPS DCB values                  : " << yes(ctx.ifEstGPS)
            << "      GLONASS DCB values              : " << yes(ctx.ifEstGLN)
            << "      Ionospheric delay values        : " << yes(ctx.ifEstION)
            << "      Ionospheric gradients           : " << yes(ctx.ifEstIGrad)
            << "      Ionospheric time interval       : ";
  if (ctx.ifEstION) // with the decimals last set: 3 after a threshold, else 1
    std::cout << ctx.IonoInterval << " s";
  else
    std::cout << " ---";
  std::cout << '\n';
}

void PrintProcessing(const KorvanC& ctx) {
  std::cout << "\n\nPROCESSING SETTINGS USED:\n-------------------------\n\n";
  PrintElevation(ctx) << '\n';
  PrintObservations(ctx);
  PrintElevation(ctx) << (ctx.isMinElev ? " [MANUALLY SET]" : " [DEFAULT VALUE]") << '\n';
  std::cout << "  Differential code biases            : " << BiasSource(ctx) << '\n'
            << "  Observation weighting               : " << Weighting(ctx) << '\n'
            << "  Blunder detection in observations   : \n";
  PrintThreshold("      Misclosure vector f [threshold] : ", ctx.isMaxfDiff, ctx.MaxfDiff);
  std::cout << "      Correction vector v [threshold] :\n";
  PrintThreshold("        Code observations             : ", ctx.isThresBlunder, ctx.ThresBlunder);
  PrintThreshold("        Phase observations L4         : ", ctx.isThresBlunderL4,
                 ctx.ThresBlunderL4);
  PrintUnknowns(ctx);
  std::cout << "\n\n";
}

} // namespace

void PrintSet(KorvanC& ctx) {
  Progress(ctx, "PrintSet(): PRINTING PROCESSING SETTINGS!");
  std::cout << std::fixed;
  PrintHead();
  PrintFiles(ctx);
  PrintProcessing(ctx);
}
