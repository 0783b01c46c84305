#include "FaultTable.h"

#include "support/ReportNumbers.h"
#include "support/Sanitized.h"

#include <cstdio>

namespace {

constexpr long kMostMemory = 1L << 20; // [KiB]
constexpr rlim_t kMostAddresses = rlim_t{2} << 30;
constexpr int kMostSeconds = 20;

/// The rest of the line behind \p mark without the frame; empty where there is no \p mark.
std::string Behind(const std::string& text, const std::string& mark) {
  const std::size_t at = text.find(mark);
  if (at == std::string::npos) return {};
  const std::size_t start = at + mark.size();
  std::string line = text.substr(start, text.find('\n', start) - start);
  for (const char* frame : {" ****", " ####"})
    if (line.ends_with(frame)) line.resize(line.size() - 5);
  return line;
}

std::string RangeReport(const std::string& text) {
  const std::size_t at = text.find("MATRIX::ERROR:");
  if (at == std::string::npos) return {};
  std::string lines = text.substr(at, text.find_last_not_of('\n') + 1 - at);
  for (char& c : lines)
    if (c == '\n') c = ' ';
  return lines;
}

} // namespace

void FaultTable::Add(const std::string& fault, const Outcome& outcome) {
  const std::string end = std::to_string(outcome.status) + " | " + MessageOf(outcome);
  if (count_ > 0 && end == end_) {
    last_ = fault;
    ++count_;
    return;
  }
  Print();
  first_ = last_ = fault;
  end_ = end;
  count_ = 1;
}

void FaultTable::Print() const {
  if (count_ == 0) return;
  const std::string faults =
      count_ == 1 ? first_ : first_ + " ... " + last_ + " (" + std::to_string(count_) + ")";
  std::printf("| %-18s | %-60s | %s\n", kind_.c_str(), faults.c_str(), end_.c_str());
}

std::string ErrorOf(const Outcome& outcome) {
  const std::string all = outcome.out + outcome.err;
  const std::string error = Behind(all, "Error -> ");
  return error.empty() ? RangeReport(all) : error;
}

std::string MessageOf(const Outcome& outcome) {
  const std::string error = ErrorOf(outcome);
  return error.empty() ? Behind(outcome.err + outcome.out, "Warning -> ") : error;
}

Outcome RunFaulty(Start start, const Arguments& arguments) {
  start.seconds = kMostSeconds;
  start.prepare = [prepare = start.prepare] {
    const rlimit addresses = {kMostAddresses, kMostAddresses};
    if (!kSanitized) setrlimit(RLIMIT_AS, &addresses);
    prepare();
  };
  return RunCommand(start, arguments);
}

void ExpectGoodEnd(const Outcome& o, bool maybeSilent) {
  EXPECT_FALSE(o.timedOut);
  EXPECT_EQ(o.signal, 0);
  EXPECT_LT(o.peak, kMostMemory);
  EXPECT_TRUE(o.status == 0 || o.status == 1) << o;
  if (o.status == 0) {
    EXPECT_EQ(FirstNonNumber(o.out), "") << o;
  } else if (!maybeSilent) {
    EXPECT_NE(ErrorOf(o), "") << o;
  }
}

void ExpectReportOrError(const Outcome& o, bool maybeSilent) {
  ExpectGoodEnd(o, maybeSilent);
  if (o.status != 0) return;
  EXPECT_NE(o.out.find("DCB VALUES AND IONOSPHERE DELAY - RESULTS:"), std::string::npos) << o;
}
