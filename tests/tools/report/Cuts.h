#ifndef TESTS_TOOLS_REPORT_CUTS_H
#define TESTS_TOOLS_REPORT_CUTS_H

#include "report/ReadReport.h"
#include "tools/report/Refused.h"
#include "tools/report/Reports.h"

#include <gtest/gtest.h>
#include <string>

/// Whether \p line opens a section that a shorter run does without.
inline bool OpensLastSection(const std::string& line) {
  return line == "PRINTING OF RESIDUALS:\n" ||
         line == "ESTIMATION OF EPOCH TO EPOCH IONOSPHERIC DELAY:\n";
}

/// Cut before any of its lines, the report \p whole is refused there; uncut it is read.
inline void ExpectEveryCutRefused(const std::string& whole) {
  const std::vector<std::string> lines = LinesOf(whole);
  std::string text;
  const auto refusal = [&text] { return RefusalOf([&] { report::ReadReport("r", text); }); };
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string said = refusal();
    if (OpensLastSection(lines[i])) {
      EXPECT_EQ(said, "") << "whole as far as it goes";
    } else {
      EXPECT_TRUE(said.starts_with("r:" + std::to_string(i + 1) + ": expected ")) << said;
      EXPECT_NE(said.find("the report is cut"), std::string::npos) << said;
    }
    text += lines[i];
  }
  EXPECT_EQ(refusal(), "");
}

#endif
