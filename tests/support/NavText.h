#ifndef SUPPORT_NAVTEXT_H
#define SUPPORT_NAVTEXT_H

#include <cstdio>
#include <string>
#include <vector>

/// A header line of a RINEX 2 file: \p content in 60 columns, then \p label.
inline std::string HeaderLine(std::string content, const std::string& label) {
  content.resize(60, ' ');
  return content + label + "\n";
}

/// A record of a RINEX 2 navigation file: satellite, date and values in D19.12, three values in
/// the first line and four in each further one, as the format lays them out.
/// \param date  columns 3 to 22: year, month, day, hour, minute in I3, second in F5.1
inline std::string NavRecord(int satellite, const std::string& date,
                             const std::vector<double>& values) {
  char field[40];
  std::snprintf(field, sizeof field, "%2d", satellite);
  std::string text = field + date;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i >= 3 && (i - 3) % 4 == 0) text += "\n   ";
    std::snprintf(field, sizeof field, "%19.12E", values[i]);
    std::string number = field;
    number[number.find('E')] = 'D';
    text += number;
  }
  return text + "\n";
}

#endif
