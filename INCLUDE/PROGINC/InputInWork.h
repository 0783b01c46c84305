#ifndef PROGINC_INPUTINWORK_H
#define PROGINC_INPUTINWORK_H

/// Names the input file that is read while it lives, for fatal reports from below the readers:
/// those of values and containers do not know it. One at a time.
class InputInWork {
public:
  /// \param name  stays with the caller
  explicit InputInWork(const char* name) { name_ = name; }
  ~InputInWork() { name_ = nullptr; }
  InputInWork(const InputInWork&) = delete;
  InputInWork& operator=(const InputInWork&) = delete;

  /// Its name, empty without one.
  static const char* Name() { return name_ == nullptr ? "" : name_; }
  /// Tells of the file on standard error, in the frame of ProgramError. Without one nothing
  /// happens.
  static void Report();

private:
  inline static const char* name_ = nullptr;
};

#endif
