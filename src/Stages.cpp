#include "Stages.h"

#include "ApplyCorrections.h"
#include "Eclipsing.h"
#include "GNSSf/GNSS_ApplyMultipath.h"
#include "GetInitPos.h"
#include "KorvanC.h"
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

namespace {

void RemoveMultipath(KorvanC& ctx) {
  ApplyMultipath(ctx.rnxh, ctx.rnxd, ctx.mp1, ctx.mp2, ctx.GetIsMP1(), ctx.GetIsMP2(),
                 ctx.GetVerbose());
}

constexpr Stage kStages[] = {
    // Settings
    {"CheckArgumetns", CheckArgumetns},
    // Input
    {"SetFiles", SetFiles},
    {"ReadFiles", ReadFiles},
    // Corrections and modelling
    {"GetReceiverProperties", GetReceiverProperties},
    {"ApplyCorrections", ApplyCorrections},
    {"ApplyMultipath", RemoveMultipath},
    {"SetLinearCombinations", SetLinearCombinations},
    {"GetEclipsing", GetEclipsing},
    {"SetAmbiguities", SetAmbiguities},
    {"PhaseWindUp", PhaseWindUp},
    {"SetUnknowns", SetUnknowns},
    // Estimation and reports
    {"PrintSet", PrintSet},
    {"PrintEclipsingSatellite", PrintEclipsingSatellite},
    {"ProcIono", ProcIono},
    {"PrintResults", PrintResults},
    {"PrintRes", PrintRes},
    {"ProcIonoEph", ProcIonoEph},
};

} // namespace

std::span<const Stage> Stages() { return kStages; }
