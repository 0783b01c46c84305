#ifndef SRC_RUNOBJECTS_H
#define SRC_RUNOBJECTS_H

#include "KorvanC.h"

/// The input objects of a run and the context that binds them.
struct RunObjects {
  RINEXHeader header;
  RINEXData data{header};
  RINEX file{header, data};
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
  KorvanC ctx{header,     data,           file,         clock,
              multipath1, multipath2,     gpsBroadcast, glonassBroadcast,
              gpsPrecise, glonassPrecise, dcbP1P2,      dcbP1C1,
              dcbP2C2,    codeTracking,   coordinates,  glonassChannels,
              sunMoon};
};

#endif
