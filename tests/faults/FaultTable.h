#ifndef FAULTS_FAULTTABLE_H
#define FAULTS_FAULTTABLE_H

#include "support/Program.h"

#include <string>

/// Lines of the table of faults, printed on standard output: what was wrong, the exit status and
/// the message. Faults that follow each other and end alike share a line.
class FaultTable {
public:
  /// \param kind  what the faults are of
  explicit FaultTable(std::string kind) : kind_(std::move(kind)) {}
  ~FaultTable() { Print(); }
  FaultTable(const FaultTable&) = delete;
  FaultTable& operator=(const FaultTable&) = delete;

  void Add(const std::string& fault, const Outcome& outcome);

private:
  void Print() const;

  const std::string kind_;
  std::string first_;
  std::string last_;
  std::string end_;
  int count_ = 0;
};

/// The first error that a run told; empty when none.
std::string ErrorOf(const Outcome& outcome);
/// That, or the first warning.
std::string MessageOf(const Outcome& outcome);

/// A run with a fault, under limits of time and memory.
Outcome RunFaulty(Start start, const Arguments& arguments);

/// It ended by itself within its limits: with status 1 and an error, or with status 0 and a
/// report in which every number is one.
/// \param maybeSilent  status 1 alone may tell of the fault
void ExpectGoodEnd(const Outcome& outcome, bool maybeSilent = false);
/// As above, and a run of status 0 printed its results.
void ExpectReportOrError(const Outcome& outcome, bool maybeSilent = false);

#endif
