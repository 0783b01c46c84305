#include "KorvanC.h"

#include "funkcije/KotnePretvorbe.h"

#include <iostream>

KorvanC::KorvanC(RINEXHeader& header, RINEXData& data, RINEX& file, ClkErr& clock,
                 CompactTEQC& multipath1, CompactTEQC& multipath2, GPSbEph& gpsBroadcast,
                 GLNbEph& glonassBroadcast, GNSSpEph& gpsPrecise, GNSSpEph& glonassPrecise,
                 DCB& dcbP1P2, DCB& dcbP1C1, DCB& dcbP2C2, RecCodeTrack& codeTracking,
                 gCRD& coordinates, GLNSat& glonassChannels, SolidTide& sunMoon)
    : rnxh(header), rnxd(data), rnx(file), clkerr(clock), mp1(multipath1), mp2(multipath2),
      gpsnav(gpsBroadcast), glnnav(glonassBroadcast), pephG(gpsPrecise), pephR(glonassPrecise),
      p1p2(dcbP1P2), p1c1(dcbP1C1), p2c2(dcbP2C2), rctrack(codeTracking), acrd(coordinates),
      glnfc(glonassChannels), stide(sunMoon), satEclipsThres(deg2rad(14.0L)), EclipsSat(100, 1),
      EclipsNObs(100, 1), ThresL40(0.03), dThresL4(0.01) {
  eGPS.Set(0);
  eGLN.Set(2);
}

void KorvanC::StartProg() const {
  if (!verbose) return;
  std::cerr << "\nZenta: ***** CODE/PHASE GNSS IONOSPHERE DELAY ESTIMATION *****\n";
}

void KorvanC::EndProg() const {
  if (!verbose) return;
  std::cerr << "Zenta: ***** SUCCESFULLY ENDING PROGRAM *****!\n\n\n";
}
