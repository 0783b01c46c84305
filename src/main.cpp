// Zenta: ionospheric delay and differential code biases of one GNSS receiver.

#include "ApplyCorrections.h"
#include "Eclipsing.h"
#include "GNSSf/GNSS_ApplyMultipath.h"
#include "GetInitPos.h"
#include "KorvanC.h"
#include "PROGINC/RunGuards.h"
#include "ParseArgumetns.h"
#include "PrintRes.h"
#include "PrintResults.h"
#include "PrintSet.h"
#include "ProcIono.h"
#include "ProcIonoEph.h"
#include "ReadFiles.h"
#include "SetAmbiguities.h"
#include "SetLinCombinations.h"
#include "SetUnknowns.h"

int main(int argc, const char** argv) {
  GuardRun();
  RINEXHeader header;
  RINEXData data(header);
  RINEX file(header, data);
  ClkErr clock;
  CompactTEQC multipath1;
  CompactTEQC multipath2;
  GPSbEph gpsBroadcast;
  GLNbEph glonassBroadcast;
  GNSSpEph gpsPrecise;
  GNSSpEph glonassPrecise;
  DCB dcbP1P2;
  DCB dcbP1C1;
  DCB dcbP2C2;
  RecCodeTrack codeTracking;
  gCRD coordinates;
  GLNSat glonassChannels;
  SolidTide sunMoon;
  KorvanC ctx(header, data, file, clock, multipath1, multipath2, gpsBroadcast, glonassBroadcast,
              gpsPrecise, glonassPrecise, dcbP1P2, dcbP1C1, dcbP2C2, codeTracking, coordinates,
              glonassChannels, sunMoon);

  // Settings
  ParseArgumetns(ctx, argc, argv);
  CheckArgumetns(ctx);
  // Input
  SetFiles(ctx);
  ReadFiles(ctx);
  // Corrections and modelling
  GetReceiverProperties(ctx);
  ApplyCorrections(ctx);
  ApplyMultipath(header, data, multipath1, multipath2, ctx.GetIsMP1(), ctx.GetIsMP2(),
                 ctx.GetVerbose());
  SetLinearCombinations(ctx);
  GetEclipsing(ctx);
  SetAmbiguities(ctx);
  PhaseWindUp(ctx);
  SetUnknowns(ctx);
  // Estimation and reports
  PrintSet(ctx);
  PrintEclipsingSatellite(ctx);
  ProcIono(ctx);
  PrintResults(ctx);
  PrintRes(ctx);
  ProcIonoEph(ctx);
  FlushStandardOutput();

  ctx.EndProg();
  return 0;
}
