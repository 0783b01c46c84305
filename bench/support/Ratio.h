#ifndef BENCH_SUPPORT_RATIO_H
#define BENCH_SUPPORT_RATIO_H

#include <cstdio>
#include <string>

/// One line per figure, "ratio NAME VALUE TARGET", which a script collects from all benchmarks. A
/// figure that was not measured (0) has none.
inline void PrintRatio(const std::string& name, double value, const char* relation, double target) {
  if (value > 0) std::printf("ratio %-36s %8.3f  %s%.3g\n", name.c_str(), value, relation, target);
}
inline void PrintAtLeast(const std::string& name, double value, double target) {
  PrintRatio(name, value, ">=", target);
}
inline void PrintAtMost(const std::string& name, double value, double target) {
  PrintRatio(name, value, "<=", target);
}

/// \returns how many times \p b fits into \p a, 0 where either was not measured.
inline double RatioOf(double a, double b) { return a > 0 && b > 0 ? a / b : 0; }

#endif
