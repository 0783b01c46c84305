#ifndef ZENTA_COMMAND_COMMAND_H
#define ZENTA_COMMAND_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

/// What the companion commands have in common.
namespace command {

inline constexpr int kDone = 0;    ///< exit status: all is written
inline constexpr int kRefused = 1; ///< an input is refused, or an output can't be written
inline constexpr int kUsage = 2;   ///< the command line is not understood

/// Reads the command line, then runs \p body. Messages go to standard error under the name of
/// \p app. \returns the exit status
int Run(CLI::App& app, int argc, const char* const* argv, const std::function<void()>& body);

/// Version of Zenta that the command belongs to.
const char* Version();

/// Thrown by a body: the options contradict each other.
struct Usage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

} // namespace command

#endif
