#ifndef TESTS_TOOLS_REPORT_REPORTS_H
#define TESTS_TOOLS_REPORT_REPORTS_H

#include "report/Input.h"
#include "report/ReadReport.h"

#include "support/Paths.h"

#include <string>
#include <vector>

/// Reports of half an hour of a recorded day: everything there is; satellite biases; code alone
/// with receiver and GLONASS biases; phase alone.
inline const std::vector<std::string> kReports = {"full/report.txt", "satellites.txt", "code.txt",
                                                  "phase.txt"};

inline std::string ReportFile(const std::string& file) {
  return std::string(ZENTA_TEST_DATA) + "/report/" + file;
}
inline std::string ReportText(const std::string& file) {
  return report::ReadInput(ReportFile(file));
}
inline report::Report ReadTestReport(const std::string& file) {
  return report::ReadReport(file, ReportText(file));
}

/// \p text with the first \p from as \p to; unchanged text would test nothing, so a missing
/// \p from gives an empty one.
inline std::string With(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  return at == std::string::npos ? std::string() : text.replace(at, from.size(), to);
}

/// The lines of \p text, each with its end.
inline std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at) + 1;
    lines.push_back(text.substr(at, end - at));
    at = end;
  }
  return lines;
}

#endif
