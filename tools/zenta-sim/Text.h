#ifndef ZENTA_SIM_TEXT_H
#define ZENTA_SIM_TEXT_H

#include "GNSS/ymdhms.h"
#include <string>
#include <string_view>

namespace sim {

/// \p value in 19 columns as d.dddddddddddd with a two-digit exponent behind the letter D
/// (RINEX 2: D19.12).
std::string Exponential(double value);
/// As above with 4 decimals, in 12 columns (D12.4).
std::string ShortExponential(double value);
/// A RINEX header line: \p text in 60 columns, the label behind it, the line end.
std::string HeaderLine(std::string_view text, std::string_view label);
/// Appends \p value in \p width columns with 3 decimals. \p value must fit.
void AppendThousandths(std::string& out, double value, int width);
/// \p value rounded to \p decimals decimals, to the double nearest to that decimal number.
double Rounded(double value, int decimals);
/// Writes \p text to \p name; a file that can't be written ends the process.
void WriteFile(const std::string& name, const std::string& text);

} // namespace sim

#endif
