#ifndef ZENTA_SIM_COMMANDLINE_H
#define ZENTA_SIM_COMMANDLINE_H

namespace sim {

/// The whole command: "zenta-sim make [options]" and "zenta-sim compare TRUTH REPORT".
/// \returns the exit status of the process
int RunCommand(int argc, const char* const* argv);

} // namespace sim

#endif
