// Every kind of input file with every kind of fault.

#include "FaultTable.h"
#include "FaultyFiles.h"
#include "support/InputKinds.h"
#include "support/Sanitized.h"

/// Names the tests.
static void PrintTo(const InputKind& kind, std::ostream* out) { *out << kind.name; }

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kCuts = 200;
/// The build for users runs all cuts.
#ifdef NDEBUG
constexpr std::size_t kStride = kSanitized ? 17 : 1;
#else
constexpr std::size_t kStride = kSanitized ? 17 : 5;
#endif

class InputFaults : public ProgramTest, public testing::WithParamInterface<InputKind> {
protected:
  InputFaults() {
    inputs.epochs = 20;
    inputs.WriteAll(folder);
  }

  Outcome RunWith(const std::string& name) const {
    Start start;
    start.folder = folder.Path().string();
    return RunFaulty(start, With(Delays({"-ii00:05:00", "-me10"}), WithInput(GetParam(), name)));
  }
  void Expect(const std::string& fault, const Outcome& outcome, bool maybeSilent = false) {
    SCOPED_TRACE(fault);
    ExpectReportOrError(outcome, maybeSilent);
    table_.Add(fault, outcome);
  }
  void ExpectGoodEnds(const std::vector<Fault>& faults, std::size_t stride = 1) {
    for (std::size_t k = 0; k < faults.size(); k += stride) {
      const Fault& fault = faults[k];
      folder.Write("bad", fault.text);
      // Observations that end within those of an epoch end the run without a message.
      const bool maybeSilent =
          GetParam().option == kObservations.option && fault.name.starts_with("cut");
      Expect(fault.name, RunWith("bad"), maybeSilent);
    }
  }

private:
  FaultTable table_{GetParam().name};
};

TEST_P(InputFaults, Absent) {
  Expect("missing", RunWith("absent"));
  fs::create_directory(folder.Name("folder"));
  Expect("directory", RunWith("folder"));
  Expect("name without a file", RunWith(""));
  Expect("255 characters", RunWith(std::string(255, 'x')));
}

TEST_P(InputFaults, Unreadable) {
  if (geteuid() == 0) GTEST_SKIP() << "root reads everything";
  fs::permissions(folder.Write("bad", File(GetParam().file)), fs::perms::none);
  Expect("unreadable", RunWith("bad"));
}

TEST_P(InputFaults, Damaged) { ExpectGoodEnds(DamagedFiles(File(GetParam().file))); }

TEST_P(InputFaults, AnotherKindOfFile) {
  for (const InputKind& other : kInputKinds)
    if (File(other.file) != File(GetParam().file))
      Expect(std::string("file of ") + other.name, RunWith(other.file));
}

TEST_P(InputFaults, CutBehindEveryLine) {
  ExpectGoodEnds(CutBehindLines(File(GetParam().file)), kStride);
}

TEST_P(InputFaults, CutAtRandomBytes) {
  ExpectGoodEnds(CutAtRandomBytes(File(GetParam().file), kCuts), kStride);
}

INSTANTIATE_TEST_SUITE_P(Of, InputFaults, testing::ValuesIn(kInputKinds),
                         [](const auto& info) { return std::string(info.param.name); });

using MemoryFaults = ProgramTest;

// A header that announces 480000 records of orbits, where there is room for half of them.
TEST_F(MemoryFaults, TablesBeyondTheMemory) {
  if (kSanitized) GTEST_SKIP() << "the sanitizer needs more for itself";
  std::string orbits = File("sp3");
  orbits.replace(orbits.find("     25 ORBIT"), 7, "  60000");
  folder.Write("bad", orbits);
  Start start;
  start.folder = folder.Path().string();
  start.prepare = [] {
    const rlimit bytes = {48 << 20, 48 << 20};
    setrlimit(RLIMIT_AS, &bytes);
  };
  const Outcome outcome = RunFaulty(start, With(Delays(), WithInput(kGpsPrecise, "bad")));
  ExpectGoodEnd(outcome);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(ErrorOf(outcome), "OUT OF MEMORY!");
  FaultTable(kGpsPrecise.name).Add("tables beyond the memory", outcome);
}

} // namespace
