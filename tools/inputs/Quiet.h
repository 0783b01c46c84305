#ifndef ZENTA_INPUTS_QUIET_H
#define ZENTA_INPUTS_QUIET_H

namespace inputs {

/// Keeps what readers and stages print to themselves while it lives: it was said when the run
/// was made. Should one of them end the process, the last of it goes to standard error.
class Quiet {
public:
  Quiet();
  ~Quiet();
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;
};

} // namespace inputs

#endif
