#ifndef SUPPORT_STANDINGORBITS_H
#define SUPPORT_STANDINGORBITS_H

#include "GNSS/GNSSpEph.h"
#include "support/Files.h"

#include <cstdio>
#include <string>
#include <vector>

/// A satellite that stands still in the Earth-fixed frame: its letter and number as in SP3-c,
/// for example G07, and its position [m].
struct Standing {
  std::string id;
  xyz at;
};

/// Precise orbits of such satellites from 2011-10-10 (MJD 55844) 00:00 to 19:00. The file holds
/// millimetres.
inline GNSSpEph StandingOrbits(const std::vector<Standing>& satellites) {
  constexpr int kEpochs = 20;
  char line[256];
  std::snprintf(line, sizeof line,
                "#cP2011 10 10  0  0  0.00000000 %7d ORBIT IGS08 HLM  IGS\n"
                "## 1657  86400.00000000  3600.00000000 55844 0.0000000000000\n+  %3zu   ",
                kEpochs, satellites.size());
  std::string text = line;
  for (std::size_t i = 0; i < 17; ++i) text += i < satellites.size() ? satellites[i].id : "  0";
  for (int k = 0; k < 4; ++k) text += "\n+  ";
  for (int k = 0; k < 5; ++k) text += "\n++ ";
  text += "\n%c\n%c\n%f  1.2500000  1.025000000\n%f\n%i\n%i\n/*\n/*\n/*\n/*\n";
  for (int k = 0; k < kEpochs; ++k) {
    text += "*  2011 10 10\n";
    for (const Standing& s : satellites) {
      std::snprintf(line, sizeof line, "P%s%14.6Lf%14.6Lf%14.6Lf%14.6f\n", s.id.c_str(),
                    s.at.GetX() / 1000, s.at.GetY() / 1000, s.at.GetZ() / 1000, 0.0);
      text += line;
    }
  }
  const ScratchFolder folder;
  GNSSpEph orbits;
  orbits.SetFile(folder.Write("standing.sp3", text + "EOF\n").c_str());
  orbits.ReadFile();
  return orbits;
}

#endif
