#ifndef SUPPORT_PROGRAM_H
#define SUPPORT_PROGRAM_H

#include "support/Command.h"
#include "support/TinyInputs.h"

#include <string>
#include <vector>

using Arguments = std::vector<std::string>;

/// \p first and then \p more.
inline Arguments With(Arguments first, const Arguments& more) {
  first.insert(first.end(), more.begin(), more.end());
  return first;
}

/// The program, run in a folder of its own with every kind of input file (see TinyInputs).
class ProgramTest : public testing::Test {
protected:
  ProgramTest() { inputs.WriteAll(folder); }

  Outcome Zenta(const Arguments& arguments) const {
    Start start;
    start.folder = folder.Path().string();
    return RunCommand(start, arguments);
  }
  std::string File(const std::string& name) const { return ReadWhole(folder.Name(name)); }
  bool Exists(const std::string& name) const { return std::filesystem::exists(folder.Name(name)); }

  /// The observation file, precise orbits and channels.
  static Arguments Precise(const Arguments& more = {}) {
    return With({"-robs", "-essp3", "-elsp3", "-gfchannels", "-me10"}, more);
  }
  /// The observation file and broadcast orbits.
  static Arguments Broadcast(const Arguments& more = {}) {
    return With({"-robs", "-eggnav", "-errnav", "-me10"}, more);
  }
  /// What is estimated from what in most tests.
  static Arguments Delays(const Arguments& more = {}) {
    return With({"-xREC,ION", "-ii00:10:00", "-lCODE,PHASE"}, more);
  }

  TinyInputs inputs;
  const ScratchFolder folder;
};

/// A report with the date of its head blotted out: what two runs of the same settings share.
inline std::string WithoutDate(std::string report) {
  const std::string label = "DATE: ";
  const std::size_t at = report.find(label);
  if (at != std::string::npos) report.replace(at + label.size(), 20, "yyyy-mm-dd  hh:mm:ss");
  return report;
}

/// The part of \p report from the line that begins with \p title on.
inline std::string From(const std::string& report, const std::string& title) {
  const std::size_t at = report.find("\n" + title);
  return at == std::string::npos ? "" : report.substr(at + 1);
}

#endif
