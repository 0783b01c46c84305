#ifndef SUPPORT_CAPTURED_H
#define SUPPORT_CAPTURED_H

#include <iostream>
#include <sstream>
#include <string>

/// Collects what is written to one standard stream while it lives, and puts the stream's
/// buffer, flags, precision and fill back at its end.
class Captured {
public:
  explicit Captured(std::ostream& stream)
      : stream_(stream), buffer_(stream.rdbuf(text_.rdbuf())), format_(nullptr) {
    format_.copyfmt(stream);
  }
  ~Captured() {
    stream_.rdbuf(buffer_);
    stream_.copyfmt(format_);
  }
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;
  /// What was written so far.
  std::string Text() const { return text_.str(); }

private:
  std::ostream& stream_;
  std::ostringstream text_;
  std::streambuf* buffer_;
  std::ios format_;
};

#endif
