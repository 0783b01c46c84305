// The inverse of normal matrices against the plain elimination, against Eigen's inverse by LU
// in the same precision, and against what the floating-point unit can do at all.
//
// Repetitions of all benchmarks are interleaved in random order; the table at the end gives
// ratios of their medians of processor time.

#include "matrix/inv.h"

#include "reference/inv_plain.h"
#include "support/Medians.h"
#include "support/NormalMatrices.h"
#include "support/Ratio.h"
#include "support/SameBits.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#ifdef ZENTA_HAS_EIGEN
#include <Eigen/Dense>
#endif

namespace {

using Square = matrix<long double>;

/// What the inverse is to reach at least; 0 where nothing is asked.
struct Targets {
  double plain;     ///< times faster than the plain elimination
  double eigen;     ///< times faster than Eigen
  double registers; ///< [%] of what the floating-point unit does without memory
};

struct Subject {
  std::string name;
  bool isDense;
  Targets targets;
  Square N;
};

Square DenseSymmetric(long n) {
  std::mt19937_64 engine(1);
  std::normal_distribution<long double> number;
  Square m(n, n);
  for (long i = 0; i < n; ++i)
    for (long j = 0; j <= i; ++j)
      m(i, j) = m(j, i) = number(engine) + (i == j ? static_cast<long double>(n) : 0.0L);
  return m;
}

Subject Structured(const NormalMatrixModel& model, const Targets& targets) {
  Square N = model.Make();
  return {"structured/" + std::to_string(N.NRow()), false, targets, N};
}
Subject Dense(long n, const Targets& targets) {
  return {"dense/" + std::to_string(n), true, targets, DenseSymmetric(n)};
}

/// A day of one receiver: from GPS with pieces of two hours to both systems with biases of all
/// satellites and a quarter of an hour.
std::vector<Subject> Subjects() {
  NormalMatrixModel gps;
  gps.interval = 7200;
  gps.slipsPerHour = 0.1;
  NormalMatrixModel both;
  both.satellitesGLN = 24;
  both.slipsPerHour = 0.1;
  NormalMatrixModel halfHours = both;
  halfHours.satelliteBiases = true;
  halfHours.interval = 1800;
  NormalMatrixModel quarters = halfHours;
  quarters.interval = 900;
  quarters.slipsPerHour = 0.7;
  return {Structured(gps, {1.8, 0, 0}),
          Structured(both, {2.4, 0, 0}),
          Structured(halfHours, {3.2, 6, 0}),
          Structured(quarters, {4.5, 4, 0}),
          Dense(400, {4.5, 0, 0}),
          Dense(800, {5, 1.8, 55})};
}

/// Multiplications with addition that the elimination of a dense matrix can't do without: the
/// columns of the matrix and the finished ones of the right-hand side downwards, those left of
/// the pivot and the whole right-hand side upwards.
double DensePairs(long n) {
  double pairs = 0;
  for (long j = 0; j < n; ++j) {
    pairs += static_cast<double>((n - 1 - j) * (n + j + 1));
    pairs += static_cast<double>(j * (j + n));
  }
  return pairs;
}

void BM_inv(benchmark::State& state, const Square& N) {
  for (auto _ : state) benchmark::DoNotOptimize(inv(N));
}

void BM_inv_plain(benchmark::State& state, const Square& N) {
  for (auto _ : state) benchmark::DoNotOptimize(inv_plain(N));
}

#ifdef ZENTA_HAS_EIGEN
void BM_Eigen(benchmark::State& state, const Square& N) {
  using Dynamic = Eigen::Matrix<long double, Eigen::Dynamic, Eigen::Dynamic>;
  Dynamic m(N.NRow(), N.NCol());
  for (long i = 0; i < N.NRow(); ++i)
    for (long j = 0; j < N.NCol(); ++j) m(i, j) = N(i, j);
  for (auto _ : state) {
    const Dynamic inverse = m.partialPivLu().inverse();
    benchmark::DoNotOptimize(inverse.data());
  }
}
#endif

#ifdef __x86_64__
constexpr long kRegisterPairs = 4 * 100000;

/// Four sums in registers, each with its product of two operands that stay there: a copy, a
/// multiplication and an addition. Assembly, since a compiler would form the product once.
void BM_registers(benchmark::State& state) {
  const long double operands[2] = {0.5L, 1e-6L};
  for (auto _ : state) {
    long rounds = kRegisterPairs / 4;
    asm volatile("fldt %1\n\tfldt %2\n\tfldz\n\tfldz\n\tfldz\n\tfldz\n"
                 "1:\n\t"
                 "fld %%st(4)\n\tfmul %%st(6), %%st\n\tfaddp %%st, %%st(1)\n\t"
                 "fld %%st(4)\n\tfmul %%st(6), %%st\n\tfaddp %%st, %%st(2)\n\t"
                 "fld %%st(4)\n\tfmul %%st(6), %%st\n\tfaddp %%st, %%st(3)\n\t"
                 "fld %%st(4)\n\tfmul %%st(6), %%st\n\tfaddp %%st, %%st(4)\n\t"
                 "dec %0\n\tjnz 1b\n\t"
                 "fstp %%st(0)\n\tfstp %%st(0)\n\tfstp %%st(0)\n\t"
                 "fstp %%st(0)\n\tfstp %%st(0)\n\tfstp %%st(0)"
                 : "+r"(rounds)
                 : "m"(operands[0]), "m"(operands[1])
                 : "cc", "st", "st(1)", "st(2)", "st(3)", "st(4)", "st(5)", "st(6)", "st(7)");
  }
}
#endif

/// A column of the table, empty where it was not measured.
void PrintColumn(double value) {
  if (value > 0)
    std::printf("%18.2f", value);
  else
    std::printf("%18s", "-");
}

void PrintTarget(const Subject& subject, const char* figure, double value, double target) {
  if (target > 0) PrintAtLeast(std::string(figure) + "/" + subject.name, value, target);
}

/// [%] of the rate that the registers allow; 0 where that is not known.
double ShareOfRegisters(const Subject& subject, const Medians& medians) {
#ifdef __x86_64__
  const double pair = medians.Of("registers") / static_cast<double>(kRegisterPairs);
  const double time = medians.Of("inv/" + subject.name);
  if (subject.isDense && time > 0) return 100 * pair * DensePairs(subject.N.NRow()) / time;
#else
  (void)subject, (void)medians;
#endif
  return 0;
}

void PrintRatios(const std::vector<Subject>& subjects, const Medians& medians) {
  std::printf("\n%-16s%18s%18s%18s%18s\n", "", "inv [ms]", "plain/inv", "Eigen/inv",
              "of registers [%]");
  for (const Subject& subject : subjects) {
    const double time = medians.Of("inv/" + subject.name);
    if (time == 0) continue; // filtered out
    std::printf("%-16s", subject.name.c_str());
    PrintColumn(time * 1e3);
    PrintColumn(RatioOf(medians.Of("inv_plain/" + subject.name), time));
    PrintColumn(RatioOf(medians.Of("Eigen/" + subject.name), time));
    PrintColumn(ShareOfRegisters(subject, medians));
    std::printf("\n");
  }
  std::printf("\n");
  for (const Subject& subject : subjects) {
    const double time = medians.Of("inv/" + subject.name);
    const auto faster = [&](const char* kind) {
      return RatioOf(medians.Of(kind + subject.name), time);
    };
    PrintTarget(subject, "plain/inv", faster("inv_plain/"), subject.targets.plain);
    PrintTarget(subject, "Eigen/inv", faster("Eigen/"), subject.targets.eigen);
    PrintTarget(subject, "registers[%]", ShareOfRegisters(subject, medians),
                subject.targets.registers);
  }
}

} // namespace

int main(int argc, char** argv) {
  const std::vector<Subject> subjects = Subjects();
  for (const Subject& subject : subjects) {
    if (SameBits(inv(subject.N), inv_plain(subject.N)) && !invns::IsSingular) continue;
    std::printf("%s: differs from the plain elimination\n", subject.name.c_str());
    return 1;
  }

  for (const Subject& subject : subjects) {
    const auto add = [&subject](const char* kind, auto&& run) {
      benchmark::RegisterBenchmark((std::string(kind) + "/" + subject.name).c_str(), run,
                                   std::cref(subject.N))
          ->Unit(benchmark::kMillisecond);
    };
    add("inv", BM_inv);
    add("inv_plain", BM_inv_plain);
#ifdef ZENTA_HAS_EIGEN
    add("Eigen", BM_Eigen);
#endif
  }
#ifdef __x86_64__
  benchmark::RegisterBenchmark("registers", BM_registers)->Unit(benchmark::kMillisecond);
#endif

  Medians medians;
  if (!medians.RunAll(argc, argv)) return 1;
  PrintRatios(subjects, medians);
}
