#ifndef ZENTA_REPORT_READREPORT_H
#define ZENTA_REPORT_READREPORT_H

#include "Report.h"

#include <string>
#include <string_view>

namespace report {

/// A whole report of zenta, from its text.
///
/// Every line has to be where and what the program writes; counts that it prints have to agree
/// with the lines that they count. Otherwise a Refusal names line and expectation. Only a report
/// that ends right before one of its last two sections, that of the residual file and that of
/// epoch-wise delays, can't be told from the whole report of a run without them.
///
/// \param name of the text in messages
Report ReadReport(const std::string& name, std::string_view text);

/// Whether \p text starts as a report, messages of readers before it left aside.
bool LooksLikeReport(std::string_view text);

} // namespace report

#endif
