#ifndef ZENTA_VIEW_COMMANDLINE_H
#define ZENTA_VIEW_COMMANDLINE_H

namespace view {

/// The whole command: "zenta-view [options] [folder]". \returns the exit status
int RunCommand(int argc, const char* const* argv);

} // namespace view

#endif
