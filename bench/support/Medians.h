#ifndef BENCH_SUPPORT_MEDIANS_H
#define BENCH_SUPPORT_MEDIANS_H

#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

/// Runs all registered benchmarks, printing what ConsoleReporter prints, and remembers the medians
/// of their processor times.
class Medians : public benchmark::ConsoleReporter {
public:
  /// Takes Google Benchmark's options of the command line. Repetitions are interleaved in random
  /// order unless these say otherwise, so that a disturbed machine disturbs all alike.
  /// \returns false for an option that is none.
  bool RunAll(int argc, char** argv, int repetitions = 9) {
    std::vector<std::string> defaults{"--benchmark_enable_random_interleaving=true",
                                      "--benchmark_repetitions=" + std::to_string(repetitions),
                                      "--benchmark_report_aggregates_only=true",
                                      "--benchmark_min_time=0.1"};
    std::vector<char*> arguments{argv[0]};
    for (std::string& argument : defaults) arguments.push_back(argument.data());
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return false;
    benchmark::RunSpecifiedBenchmarks(this);
    return true;
  }
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs)
      if (run.aggregate_name == "median")
        medians_[run.run_name.function_name] =
            run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
  }
  /// [s]; 0 where it was not run.
  double Of(const std::string& name) const {
    const auto found = medians_.find(name);
    return found == medians_.end() ? 0 : found->second;
  }

private:
  std::map<std::string, double> medians_;
};

#endif
