#ifndef SRC_STAGES_H
#define SRC_STAGES_H

#include <span>

class KorvanC;

/// One stage of a run.
struct Stage {
  const char* name;
  void (*run)(KorvanC& ctx);
};

/// All that happens between the command line and the end of a run, in order.
std::span<const Stage> Stages();

#endif
