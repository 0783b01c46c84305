#ifndef ZENTA_EXPORT_CSV_H
#define ZENTA_EXPORT_CSV_H

#include "Results.h"

#include <string>
#include <utility>
#include <vector>

namespace exports {

/// The results as tables: name of the file, and its text.
///
/// RFC 4180 with line feeds, behind lines that start with "# " and say what the numbers mean.
/// The first other line names the columns. What is not a number is an empty field.
std::vector<std::pair<std::string, std::string>> ToCsv(const Results& results);

} // namespace exports

#endif
