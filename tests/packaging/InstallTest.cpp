// cmake --install, into a folder of its own.

#include "support/Files.h"
#include "tools/report/Shell.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <set>

namespace {

namespace fs = std::filesystem;

std::set<std::string> FilesUnder(const fs::path& folder) {
  std::set<std::string> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
    if (!entry.is_directory()) files.insert(fs::relative(entry.path(), folder).string());
  return files;
}

TEST(Install, PutsCommandsPagesAndDocumentsInTheirPlaces) {
  const ScratchFolder prefix;
  const Outcome o = RunProgram(CMAKE_PROGRAM, fmt::format("--install '{}' --prefix '{}'",
                                                          ZENTA_BUILD, prefix.Path().string()));
  ASSERT_EQ(o.status, 0) << o.err;
  std::set<std::string> expected = {"share/zenta/zenta-results.schema.json"};
  for (const char* command : {"zenta", "zenta-export", "zenta-sim", "zenta-view"}) {
    expected.insert(fmt::format("bin/{}", command));
    expected.insert(fmt::format("share/man/man1/{}.1.gz", command));
  }
  for (const char* document : {"README.md", "CITATION.cff", "FORMATS.md", "MODEL.md",
                               "SIMULATOR.md", "TUTORIAL.md", "changelog.gz", "copyright"})
    expected.insert(fmt::format("share/doc/zenta/{}", document));
  EXPECT_EQ(FilesUnder(prefix.Path()), expected);
  for (const char* command : {"zenta-export", "zenta-sim", "zenta-view"})
    EXPECT_EQ(RunProgram(prefix.Name(fmt::format("bin/{}", command)), "--version").status, 0);
  const Outcome page = RunProgram("gzip", "-dc '" + prefix.Name("share/man/man1/zenta.1.gz") + "'");
  EXPECT_EQ(page.out, ReadWhole(std::string(ZENTA_SOURCE) + "/docs/man/zenta.1"));
}

} // namespace
