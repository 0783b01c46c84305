#ifndef SUPPORT_REPORTNUMBERS_H
#define SUPPORT_REPORTNUMBERS_H

#include <regex>
#include <sstream>
#include <string>

/// The first line of the report \p text, from the estimation on, with something that is not a
/// number where one should be; empty when there is none.
///
/// The square root of a negative variance is not a number by rights: a standard deviation behind
/// "+-", and those of the unit weight.
inline std::string FirstNonNumber(const std::string& text) {
  static const std::regex rightly(R"((\+-|\[SQRT\]:?|REF\. STD\. APOSTERI?ORI +:) *-?nan)");
  static const std::regex nonNumber(R"((^|[^A-Za-z_./])-?(nan|inf)($|[^A-Za-z_./]))");
  const std::size_t start = text.find("ESTIMATION OF IONOSPHERIC DELAY:");
  if (start == std::string::npos) return {};
  std::istringstream in(text.substr(start));
  std::string line;
  while (std::getline(in, line)) {
    if (line.find("Output residual file") != std::string::npos) continue;
    if (line.find("nan") == std::string::npos && line.find("inf") == std::string::npos) continue;
    if (std::regex_search(std::regex_replace(line, rightly, "$1"), nonNumber)) return line;
  }
  return {};
}

#endif
