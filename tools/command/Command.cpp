#include "Command.h"

#include "report/Refusal.h"

#include <cstdio>
#include <exception>

namespace command {

const char* Version() { return ZENTA_VERSION; }

int Run(CLI::App& app, int argc, const char* const* argv, const std::function<void()>& body) {
  const std::string name = app.get_name();
  app.set_version_flag("--version", name + " " + Version(), "Version of the command");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? kDone : kUsage;
  }
  try {
    body();
    return kDone;
  } catch (const report::Refusal& e) {
    std::fprintf(stderr, "%s: %s\n", name.c_str(), e.what());
    return kRefused;
  } catch (const Usage& e) {
    std::fprintf(stderr, "%s: %s\nRun with --help for more information.\n", name.c_str(), e.what());
    return kUsage;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s: %s\n", name.c_str(), e.what());
    return kRefused;
  }
}

} // namespace command
