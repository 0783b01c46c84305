// What the fuzz targets are grown from, and what they once found, as ordinary tests.

#include "Harness.h"

#include "support/Files.h"

#include <algorithm>

namespace fs = std::filesystem;

/// Names the tests.
static void PrintTo(const FuzzTarget& target, std::ostream* out) { *out << target.name; }

namespace {

/// The working folder is a scratch folder while this lives.
class InScratchFolder {
public:
  InScratchFolder() { fs::current_path(scratch_.Path()); }
  ~InScratchFolder() { fs::current_path(before_); }

private:
  const ScratchFolder scratch_;
  const fs::path before_ = fs::current_path();
};

class Corpus : public testing::TestWithParam<FuzzTarget> {};

TEST_P(Corpus, EveryInputEndsAndKeepsTheProperties) {
  const FuzzTarget& target = GetParam();
  const InScratchFolder working;
  int inputs = 0;
  for (const fs::directory_entry& file :
       fs::directory_iterator(fs::path(ZENTA_FUZZ_CORPUS) / target.name)) {
    SCOPED_TRACE(file.path().string());
    ++inputs;
    EXPECT_NO_THROW(RunTarget(target, ReadWhole(file.path().string())));
  }
  EXPECT_GT(inputs, 0);
}

std::vector<FuzzTarget> Sorted() {
  std::vector<FuzzTarget> targets = FuzzTargets();
  std::sort(targets.begin(), targets.end(), [](const FuzzTarget& a, const FuzzTarget& b) {
    return std::string_view(a.name) < b.name;
  });
  return targets;
}

INSTANTIATE_TEST_SUITE_P(Fuzz, Corpus, testing::ValuesIn(Sorted()),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
