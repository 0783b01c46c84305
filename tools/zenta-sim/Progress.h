#ifndef ZENTA_SIM_PROGRESS_H
#define ZENTA_SIM_PROGRESS_H

namespace sim {

/// Percent done on standard error, on one line that is overwritten; silent unless wanted.
class Progress {
public:
  /// \param steps  in all
  Progress(bool wanted, long steps);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// \p step of the steps are done.
  void Done(long step);

private:
  bool wanted_;
  long steps_;
  long shown_ = -1; ///< percent on the screen
};

} // namespace sim

#endif
