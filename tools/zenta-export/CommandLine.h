#ifndef ZENTA_EXPORT_COMMANDLINE_H
#define ZENTA_EXPORT_COMMANDLINE_H

namespace exports {

/// The whole command: "zenta-export [options] [report]". \returns the exit status
int RunCommand(int argc, const char* const* argv);

} // namespace exports

#endif
