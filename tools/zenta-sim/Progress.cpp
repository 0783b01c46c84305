#include "Progress.h"
#include <fmt/format.h>
#include <iostream>

namespace sim {

Progress::Progress(bool wanted, long steps) : wanted_(wanted), steps_(steps) { Done(0); }

Progress::~Progress() {
  if (wanted_) std::cerr << "\n";
}

void Progress::Done(long step) {
  if (!wanted_) return;
  const long percent = steps_ > 0 ? 100 * step / steps_ : 100;
  if (percent == shown_) return;
  shown_ = percent;
  std::cerr << fmt::format("\rzenta-sim: {:3} %", percent) << std::flush;
}

} // namespace sim
