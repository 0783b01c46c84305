// Numbers that no file and no option should hold.

#include "FaultTable.h"
#include "FaultyFiles.h"
#include "support/InputKinds.h"
#include "support/Sanitized.h"

#include <cstdlib>

/// Names the tests.
static void PrintTo(const InputKind& kind, std::ostream* out) { *out << kind.name; }

namespace {

/// Of one number after the other, each of another line is tried with one value after the other.
/// ZENTA_FAULT_STRIDE=1 tries all.
std::size_t Stride() {
  const char* const given = std::getenv("ZENTA_FAULT_STRIDE");
  const int stride = given ? std::atoi(given) : 0;
  return stride > 0 ? static_cast<std::size_t>(stride) : kSanitized ? 211 : 17;
}

class ValueFaults : public ProgramTest, public testing::WithParamInterface<InputKind> {
protected:
  ValueFaults() {
    inputs.epochs = 20;
    inputs.WriteAll(folder);
  }
  Outcome Run(const Arguments& arguments) const {
    Start start;
    start.folder = folder.Path().string();
    return RunFaulty(start, With(Delays({"-ii00:05:00", "-me10", "-pCOSZ"}), arguments));
  }
};

TEST_P(ValueFaults, InAFile) {
  FaultTable table(GetParam().name);
  const std::vector<Fault> faults = WrongNumbers(File(GetParam().file), 2);
  for (std::size_t k = 0; k < faults.size(); k += Stride()) {
    SCOPED_TRACE(faults[k].name);
    folder.Write("bad", faults[k].text);
    const Outcome outcome = Run(WithInput(GetParam(), "bad"));
    ExpectReportOrError(outcome, GetParam().option == kObservations.option);
    table.Add(faults[k].name, outcome);
  }
}

INSTANTIATE_TEST_SUITE_P(Of, ValueFaults, testing::ValuesIn(kInputKinds),
                         [](const auto& info) { return std::string(info.param.name); });

using OptionFaults = ProgramTest;

TEST_F(OptionFaults, Numbers) {
  FaultTable table("options");
  for (const std::string option : {"-me", "-bt", "-bl", "-ft", "-mi", "-mt", "-ii", "-ii00:00:"})
    for (const char* value : {"", "nan", "inf", "-inf", "1e300", "-1e300", "1e999", "1e-320", "-0",
                              "0", "-1", "99999999999", "0x1p60", "x", "1.5e", "5,5"}) {
      const std::string argument = option + value;
      SCOPED_TRACE(argument);
      Start start;
      start.folder = folder.Path().string();
      const Outcome outcome = RunFaulty(start, With(Precise(Delays()), {"-pCOSZ", argument}));
      ExpectReportOrError(outcome);
      table.Add(argument, outcome);
    }
}

// Where no correction is ever small enough, the limit of iterations ends the run.
TEST_F(OptionFaults, ThresholdThatNoCorrectionMeets) {
  inputs.epochs = 20;
  inputs.WriteAll(folder);
  Start start;
  start.folder = folder.Path().string();
  const Outcome outcome =
      RunFaulty(start, With(Precise(), {"-xREC", "-lCODE", "-mt-1", "-mi1500"}));
  ExpectReportOrError(outcome);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.out.find("  #ITERATIONS:       1500  "), std::string::npos) << outcome;
  FaultTable("options").Add("-mt-1 -mi1500", outcome);
}

} // namespace
