#ifndef ZENTA_REPORT_REFUSAL_H
#define ZENTA_REPORT_REFUSAL_H

#include <stdexcept>

namespace report {

/// An input that is not what it is taken for. The text names the file, the line or byte, and what
/// was expected there; a command prints it and ends with status 1.
struct Refusal : std::runtime_error {
  using std::runtime_error::runtime_error;
};

} // namespace report

#endif
