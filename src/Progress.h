#ifndef SRC_PROGRESS_H
#define SRC_PROGRESS_H

#include "KorvanC.h"

#include <iostream>

/// One progress line "Zenta::text" on standard error, when verbose.
inline void Progress(const KorvanC& ctx, const char* text) {
  if (ctx.verbose) std::cerr << "Zenta::" << text << '\n';
}

#endif
