#ifndef TESTS_TOOLS_REPORT_REFUSED_H
#define TESTS_TOOLS_REPORT_REFUSED_H

#include "report/Refusal.h"

#include <string>

/// Message of the Refusal that \p action ends in; empty where it does not.
template <typename Action> std::string RefusalOf(Action action) {
  try {
    action();
  } catch (const report::Refusal& r) {
    return r.what();
  }
  return {};
}

#endif
