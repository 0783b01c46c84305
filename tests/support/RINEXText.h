#ifndef SUPPORT_RINEXTEXT_H
#define SUPPORT_RINEXTEXT_H

#include <cstdio>
#include <initializer_list>
#include <string>

/// Small RINEX 2 observation files for tests, as text.
namespace rinextext {

/// A header line: \p text in columns 1 to 60, then the label.
inline std::string Line(std::string text, const std::string& label) {
  text.resize(60, ' ');
  return text + label + "\n";
}

/// The lines of the observation types, nine to a line.
inline std::string Types(std::initializer_list<const char*> types) {
  char number[8];
  std::snprintf(number, sizeof number, "%6zu", types.size());
  std::string lines;
  std::string line = number;
  std::size_t n = 0;
  for (const char* type : types) {
    line += "    " + std::string(type);
    ++n;
    if (n % 9 != 0 && n != types.size()) continue;
    lines += Line(line, "# / TYPES OF OBSERV");
    line = "      ";
  }
  return types.size() == 0 ? Line(line, "# / TYPES OF OBSERV") : lines;
}

inline std::string End() { return Line("", "END OF HEADER"); }

/// The shortest header that names its types.
inline std::string Header(std::initializer_list<const char*> types) {
  return Line("     2.11           OBSERVATION DATA    M (MIXED)", "RINEX VERSION / TYPE") +
         Types(types) + End();
}

/// An epoch line of 2011-10-10 at \p seconds of the day; \p list as it stands in the file,
/// \p n its number of satellites.
inline std::string Epoch(double seconds, int n, const std::string& list, char flag = '0') {
  const int minutes = static_cast<int>(seconds) / 60;
  char line[64];
  std::snprintf(line, sizeof line, " 11 10 10 %2d %2d%11.7f  %c%3d", minutes / 60, minutes % 60,
                seconds - 60 * minutes, flag, n);
  return line + list + "\n";
}

/// The GPS satellites 1 to \p n as they stand in an epoch line and the lines behind it.
inline std::string Satellites(int n) {
  std::string list;
  for (int k = 1; k <= n; ++k) {
    char sat[16];
    std::snprintf(sat, sizeof sat, "G%2d", k);
    list += sat;
    if (k % 12 == 0 && k < n) list += "\n" + std::string(32, ' ');
  }
  return list;
}

/// A field of an observation line: the value and two blank flags.
inline std::string Field(double value) {
  char field[32];
  std::snprintf(field, sizeof field, "%14.3f  ", value);
  return field;
}

} // namespace rinextext

#endif
