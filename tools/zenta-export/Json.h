#ifndef ZENTA_EXPORT_JSON_H
#define ZENTA_EXPORT_JSON_H

#include "Results.h"

#include <string>

namespace exports {

/// The results as one JSON document in the layout of docs/schema/zenta-results.schema.json.
/// Numbers in metres are those of the report, digit by digit; what is not a number is null.
std::string ToJson(const Results& results);

} // namespace exports

#endif
