// Reading a day of observations, at 30 s and at 1 s, against
//   plain        two passes over the stream, atof (reading_plain.h),
//   from_chars   nothing but std::from_chars over the same fields, which lie in memory,
//   newlines     nothing but the search for line ends in the mapped file.
//
// The files are made by the simulator in a scratch folder. The store of both readers is compared
// value by value before anything is timed. Ratios are those of medians of processor times.

#include "reading_plain.h"

#include "GNSS/RINEX.h"
#include "Scenario.h"
#include "Simulation.h"
#include "support/Medians.h"
#include "support/Ratio.h"
#include "support/SameStore.h"
#include "support/ScratchFolder.h"

#include <benchmark/benchmark.h>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

struct Reading {
  RINEXHeader header;
  RINEXData data{header};
};

void ReadZenta(const std::string& file, Reading& into) {
  RINEX rinex(into.header, into.data);
  rinex.SetFile(file.c_str());
  rinex.ReadFile();
}
bool ReadPlain(const std::string& file, Reading& into) {
  return Reading_plain(into.header, into.data).ReadFile(file.c_str());
}

std::string Whole(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// The values of all observation fields, 14 columns or what the line has of them.
std::vector<std::string_view> Fields(std::string_view text, const RINEXHeader& header) {
  std::vector<std::string_view> fields;
  const auto next = [&text] {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
  };
  while (!text.empty() && next().find("END OF HEADER") == std::string_view::npos) {
  }
  while (!text.empty()) {
    const std::string_view line = next();
    if (!IsFirstObsLine(line)) continue;
    unsigned short year, month, day, hour, minute;
    long double second;
    short satellites;
    ParseFirstObsLine(line, year, month, day, hour, minute, second, satellites);
    for (int listed = 12; listed < satellites; listed += 12) next();
    for (int k = 0; k < satellites; ++k) {
      std::string_view fieldsOfLine;
      for (std::size_t j = 0; j < header.nobs; ++j) {
        if (j % 5 == 0) fieldsOfLine = next();
        const std::size_t column = j % 5 * 16;
        if (column < fieldsOfLine.size()) fields.push_back(fieldsOfLine.substr(column, 14));
      }
    }
  }
  return fields;
}

/// The file in memory, as the kernel has it.
class MappedFile {
public:
  explicit MappedFile(const std::string& name) {
    const int file = open(name.c_str(), O_RDONLY);
    if (file < 0) return;
    const auto length = lseek(file, 0, SEEK_END);
    if (length > 0) {
      size_ = static_cast<std::size_t>(length);
      start_ = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
    }
    close(file);
  }
  ~MappedFile() {
    if (IsOpen()) munmap(start_, size_);
  }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  bool IsOpen() const { return start_ != MAP_FAILED; }
  std::string_view Text() const { return {static_cast<const char*>(start_), size_}; }

private:
  void* start_ = MAP_FAILED;
  std::size_t size_ = 0;
};

void BM_zenta(benchmark::State& state, const std::string& file) {
  for (auto _ : state) {
    Reading reading;
    ReadZenta(file, reading);
    benchmark::DoNotOptimize(reading.data.nsatall);
  }
}

void BM_plain(benchmark::State& state, const std::string& file) {
  for (auto _ : state) {
    Reading reading;
    benchmark::DoNotOptimize(ReadPlain(file, reading));
  }
}

void BM_from_chars(benchmark::State& state, const std::string& file) {
  Reading reading;
  ReadZenta(file, reading);
  const std::string text = Whole(file);
  const std::vector<std::string_view> fields = Fields(text, reading.header);
  std::vector<double> values(fields.size());
  for (auto _ : state) {
    double* value = values.data();
    for (const std::string_view field : fields) {
      const std::size_t first = field.find_first_not_of(' ');
      if (first != std::string_view::npos)
        std::from_chars(field.data() + first, field.data() + field.size(), *value);
      ++value;
    }
    benchmark::ClobberMemory();
  }
}

void BM_newlines(benchmark::State& state, const std::string& file) {
  const MappedFile mapped(file);
  if (!mapped.IsOpen()) return state.SkipWithError("the file can't be mapped");
  for (auto _ : state) {
    const char* at = mapped.Text().data();
    const char* const end = at + mapped.Text().size();
    long lines = 0;
    while (at != end) {
      const void* newline = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
      if (newline == nullptr) break;
      at = static_cast<const char*>(newline) + 1;
      ++lines;
    }
    benchmark::DoNotOptimize(lines);
  }
}

struct Subject {
  std::string name;
  std::string file;
};

Subject Simulate(const ScratchFolder& folder, const std::string& name, double interval) {
  sim::Scenario scenario;
  scenario.folder = folder.Name(name);
  scenario.interval = interval;
  sim::MakeFiles(scenario);
  return {name, scenario.folder + "/simu2830.11o"};
}

bool IsSameReading(const Subject& subject) {
  Reading fast, plain;
  ReadZenta(subject.file, fast);
  const std::string difference =
      ReadPlain(subject.file, plain) ? FirstDifference(fast.data, plain.data) : "end of the file";
  std::printf("%s: %ld epochs, %ld records, %s\n", subject.name.c_str(), fast.data.nepochall,
              fast.data.nsatall,
              difference.empty() ? "every value as read plainly" : "NOT AS READ PLAINLY");
  if (!difference.empty()) std::printf("first difference: %s\n", difference.c_str());
  return difference.empty();
}

void Register(const Subject& subject) {
  const auto add = [&subject](const char* kind, auto&& run) {
    benchmark::RegisterBenchmark((kind + ("/" + subject.name)).c_str(), run,
                                 std::cref(subject.file))
        ->Unit(benchmark::kMillisecond);
  };
  add("zenta", BM_zenta);
  add("plain", BM_plain);
  add("from_chars", BM_from_chars);
  add("newlines", BM_newlines);
}

void PrintRatios(const Subject& subject, const Medians& medians) {
  const auto time = [&](const char* kind) { return medians.Of(kind + ("/" + subject.name)); };
  const std::string name = "reading/" + subject.name + "/";
  PrintAtLeast(name + "plain", RatioOf(time("plain"), time("zenta")), 4.5);
  PrintAtMost(name + "from_chars", RatioOf(time("zenta"), time("from_chars")), 2.2);
  PrintAtMost(name + "newlines", RatioOf(time("zenta"), time("newlines")), 12);
}

} // namespace

int main(int argc, char** argv) {
  const ScratchFolder folder;
  const std::vector<Subject> subjects{Simulate(folder, "day-30s", 30),
                                      Simulate(folder, "day-1s", 1)};
  for (const Subject& subject : subjects)
    if (!IsSameReading(subject)) return 1;
  for (const Subject& subject : subjects) Register(subject);
  Medians medians;
  if (!medians.RunAll(argc, argv)) return 1;
  std::printf("\n");
  for (const Subject& subject : subjects) PrintRatios(subject, medians);
}
